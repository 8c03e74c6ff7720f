// Which instructions a processor has, and which of a kernel's levels to call.
//
// A kernel file is included once for each level by core/each_level.inl, in a namespace of the level's name:
// baseline (16-byte vectors, every processor), avx2 (32 bytes), avx512 (64 bytes). No level has fused
// multiply-add, so all of them give the same bits.
#pragma once

namespace korvo {

enum class level { baseline, avx2, avx512 };

// The highest level of this processor, found once.
level processor_level();

}  // namespace korvo

// The form of a kernel for this processor: KORVO_AT_LEVEL(add<T>)(a, b, out, n).
#if defined(__x86_64__)
#define KORVO_AT_LEVEL(...)                                                             \
  (::korvo::processor_level() == ::korvo::level::avx512 ? &::korvo::avx512::__VA_ARGS__ \
   : ::korvo::processor_level() == ::korvo::level::avx2 ? &::korvo::avx2::__VA_ARGS__   \
                                                        : &::korvo::baseline::__VA_ARGS__)
#else
#define KORVO_AT_LEVEL(...) (&::korvo::baseline::__VA_ARGS__)
#endif

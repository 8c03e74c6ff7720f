// Includes the kernel file named by KORVO_KERNELS once for each level. Only functions written in that file
// get the wider instructions; with a compiler flag a file, templates of the standard library would leak out
// of the wide object file and run on processors without them.
//
// A kernel file finds the words of core/vector.inl: KORVO_VECTOR_BYTES, vec<T>, lanes<T>, load, store.
// Headers that it needs are included before this file, and a source file includes this one once.

#define KORVO_VECTOR_BYTES 16
namespace korvo::baseline {
namespace {
#include "core/vector.inl"
#include KORVO_KERNELS
}  // namespace
}  // namespace korvo::baseline
#undef KORVO_VECTOR_BYTES

#if defined(__x86_64__)

#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2")
#endif
#define KORVO_VECTOR_BYTES 32
namespace korvo::avx2 {
namespace {
#include "core/vector.inl"
#include KORVO_KERNELS
}  // namespace
}  // namespace korvo::avx2
#undef KORVO_VECTOR_BYTES
#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif

#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx512f,avx512bw,avx512dq,avx512vl"))), apply_to = function)
#else
#pragma GCC push_options
// Loops that the compiler vectorises stay at 32 bytes: elements are aligned to no more than 16, and wider
// accesses would all cross cache lines.
#pragma GCC target("avx512f,avx512bw,avx512dq,avx512vl,prefer-vector-width=256")
#endif
#define KORVO_VECTOR_BYTES 64
namespace korvo::avx512 {
namespace {
#include "core/vector.inl"
#include KORVO_KERNELS
}  // namespace
}  // namespace korvo::avx512
#undef KORVO_VECTOR_BYTES
#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif

#endif

#undef KORVO_KERNELS

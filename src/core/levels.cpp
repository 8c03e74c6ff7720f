// The processor's level, found once.
#include "core/levels.hpp"

#include <atomic>

namespace korvo {
namespace {

level find_level() {
#if defined(__x86_64__)
  if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
      __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl"))
    return level::avx512;
  if (__builtin_cpu_supports("avx2")) return level::avx2;
#endif
  return level::baseline;
}

constinit std::atomic<int> found{-1};  // every thread that finds it finds the same

}  // namespace

level processor_level() {
  int known = found.load(std::memory_order_relaxed);
  if (known < 0) {
    known = static_cast<int>(find_level());
    found.store(known, std::memory_order_relaxed);
  }
  return static_cast<level>(known);
}

}  // namespace korvo

#include "bench/plain_loops.hpp"

#include <cstdint>

namespace plain {

template <class T>
void add(const T* __restrict a, const T* __restrict b, T* __restrict out, int n) {
  for (int i = 0; i < n; ++i) out[i] = static_cast<T>(a[i] + b[i]);
}
template <class T>
void multiply(const T* __restrict a, const T* __restrict b, T* __restrict out, int n) {
  for (int i = 0; i < n; ++i) out[i] = static_cast<T>(a[i] * b[i]);
}

template void add(const std::uint8_t*, const std::uint8_t*, std::uint8_t*, int);
template void add(const std::int16_t*, const std::int16_t*, std::int16_t*, int);
template void add(const double*, const double*, double*, int);
template void multiply(const std::uint8_t*, const std::uint8_t*, std::uint8_t*, int);
template void multiply(const std::int16_t*, const std::int16_t*, std::int16_t*, int);
template void multiply(const double*, const double*, double*, int);

}  // namespace plain

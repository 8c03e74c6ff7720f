// Arithmetic without undefined behaviour: integers wrap in their width, complex products are written out.
#pragma once

#include <cstdint>
#include <limits>
#include <type_traits>

#include "korvos/core/mat_univ.h"

namespace korvo {

// Integers as 32 unsigned bits, where wrapping is defined; floating values as they are.
template <class T>
constexpr auto modular(T x) {
  if constexpr (std::is_integral_v<T>)
    return static_cast<std::uint32_t>(x);
  else
    return x;
}

// Operations of the elements' own type: modulo 2 to its width, or as IEEE arithmetic has it.
template <class T>
constexpr T sum(T x, T y) {
  return static_cast<T>(modular(x) + modular(y));
}
template <class T>
constexpr T difference(T x, T y) {
  return static_cast<T>(modular(x) - modular(y));
}
template <class T>
constexpr T times(T x, T y) {
  return static_cast<T>(modular(x) * modular(y));
}

// The plain complex operations. A library's product would repair infinities that the formula makes NaN.
template <>
constexpr korvo_dcomplex sum(korvo_dcomplex x, korvo_dcomplex y) {
  return {x.re + y.re, x.im + y.im};
}
template <>
constexpr korvo_dcomplex difference(korvo_dcomplex x, korvo_dcomplex y) {
  return {x.re - y.re, x.im - y.im};
}
template <>
constexpr korvo_dcomplex times(korvo_dcomplex x, korvo_dcomplex y) {
  return {x.re * y.re - x.im * y.im, x.re * y.im + x.im * y.re};
}

// The number of elements of a shape as a record states it: 32 bits, wrapping.
constexpr std::int32_t product(std::int32_t rows, std::int32_t cols) { return times(rows, cols); }

// The values that casts and scalars accept for an element type; the signed ranges are symmetric.
template <class T>
struct accepted {
  static constexpr double highest = std::numeric_limits<T>::max();
  static constexpr double lowest = std::is_signed_v<T> ? -highest : 0.0;
};

// A matrix must not be larger than this, in elements, and neither may an allocation be, in bytes.
constexpr std::int64_t largest_size = std::numeric_limits<std::int32_t>::max();

}  // namespace korvo

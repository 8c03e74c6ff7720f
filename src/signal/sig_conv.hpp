// Boundary modes as rules for indices, and the work of a correlation as its kernels are told it.
#pragma once

#include <cstdint>

#include "core/element.hpp"
#include "korvos/signal/sig_conv.h"

namespace korvo {

// Unsigned, one comparison does for both ends.
constexpr bool lies_within(std::int64_t index, std::int64_t n) {
  return static_cast<std::uint64_t>(index) < static_cast<std::uint64_t>(n);
}

// Where index, any at all, is read in a dimension of size n; -1 where nothing is and the sample is 0.
using index_rule = std::int64_t (*)(std::int64_t index, std::int64_t n);

constexpr std::int64_t zero_outside(std::int64_t index, std::int64_t n) {
  return lies_within(index, n) ? index : -1;
}

constexpr std::int64_t repeat(std::int64_t index, std::int64_t n) {
  if (lies_within(index, n)) return index;
  const std::int64_t remainder = index % n;
  return remainder < 0 ? remainder + n : remainder;
}

// A matrix and its mirror image, repeated: however far out, one remainder folds it.
constexpr std::int64_t mirror(std::int64_t index, std::int64_t n) {
  const std::int64_t folded = repeat(index, 2 * n);
  return folded < n ? folded : 2 * n - 1 - folded;
}

constexpr std::int64_t continue_edge(std::int64_t index, std::int64_t n) {
  return index < 0 ? 0 : index < n ? index : n - 1;
}

// The rule of a boundary mode; null if there is no such mode.
constexpr index_rule rule_of(std::int32_t boundary) {
  switch (boundary) {
    case SIG_BOUNDARY_ZERO:
      return zero_outside;
    case SIG_BOUNDARY_PERIODIC:
      return repeat;
    case SIG_BOUNDARY_REFLECT:
      return mirror;
    case SIG_BOUNDARY_CONTINUE:
      return continue_edge;
    default:
      return nullptr;
  }
}

// The work of a correlation: for each output position,
//
//     out(i, j) = sum over r, c of in(i * row_step - row_offset + r, j * col_step - col_offset + c) * tap(r, c)
//
// with tap(r, c) = taps[(r * kc + c) * tap_step]: a convolution takes the kernel from its last element
// backward.
template <class T>
struct correlation {
  const T* in;
  std::int64_t nrow;
  std::int64_t ncol;
  const T* taps;
  std::int64_t tap_step;
  std::int64_t kr;
  std::int64_t kc;
  std::int64_t row_step;
  std::int64_t col_step;
  std::int64_t row_offset;
  std::int64_t col_offset;
  index_rule rule;
  T* out;
  std::int64_t out_rows;
  std::int64_t out_cols;
};

}  // namespace korvo

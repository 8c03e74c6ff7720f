// Correlation word for word: one sum after another, indices folded one fold at a time.
#pragma once

#include <algorithm>
#include <cstdint>

#include "core/arithmetic.hpp"
#include "tests/support/matrix.hpp"

namespace korvo::reference {

struct placement {
  std::int32_t row_step = 1, col_step = 1, row_origin = 1, col_origin = 1, boundary = 0;
};

// -1 where nothing is.
inline std::int64_t index(std::int64_t r, std::int64_t n, std::int32_t boundary) {
  if (boundary == 1) return r % n < 0 ? r % n + n : r % n;
  if (boundary == 3) return std::clamp<std::int64_t>(r, 0, n - 1);
  if (boundary == 2) r %= 2 * n;  // what two folds bring back
  while (boundary == 2 && (r < 0 || r >= n)) r = r < 0 ? -1 - r : 2 * n - r - 1;
  return r < 0 || r >= n ? -1 : r;
}

template <class M>
element<M> sample(const M& mat, std::int64_t row, std::int64_t col, std::int32_t boundary) {
  const std::int64_t r = index(row, mat.nrow, boundary), c = index(col, mat.ncol, boundary);
  return r < 0 || c < 0 ? element<M>{} : mat.data[r * mat.ncol + c];
}

template <class M>
void correlate(const M& in, const M& kernel, const placement& at, bool flipped, M& out) {
  for (std::int64_t k = 0; k < out.nelem; ++k) {
    const std::int64_t row = k / out.ncol * at.row_step - (kernel.nrow - at.row_origin);
    const std::int64_t col = k % out.ncol * at.col_step - (kernel.ncol - at.col_origin);
    out.data[k] = {};
    for (std::int64_t t = 0; t < kernel.nelem; ++t) {
      const auto x = sample(in, row + t / kernel.ncol, col + t % kernel.ncol, at.boundary);
      out.data[k] = sum(out.data[k], times(x, kernel.data[flipped ? kernel.nelem - 1 - t : t]));
    }
  }
}

}  // namespace korvo::reference

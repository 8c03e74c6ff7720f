// Correlation word for word: one sum after another, indices folded one fold at a time.
#pragma once

#include <cstdint>

#include "core/arithmetic.hpp"
#include "tests/support/matrix.hpp"

namespace korvo::reference {

struct placement {
  std::int32_t row_step = 1, col_step = 1, row_origin = 1, col_origin = 1, boundary = 0;
};

inline std::int64_t index(std::int64_t r, std::int64_t n, std::int32_t boundary) {
  if (boundary == 1) return r % n < 0 ? r % n + n : r % n;
  while (boundary == 2 && (r < 0 || r >= n)) r = r < 0 ? -1 - r : 2 * n - r - 1;
  if (boundary == 3) return r < 0 ? 0 : r >= n ? n - 1 : r;
  return r;
}

template <class M>
element<M> sample(const M& mat, std::int64_t row, std::int64_t col, std::int32_t boundary) {
  const std::int64_t r = index(row, mat.nrow, boundary);
  const std::int64_t c = index(col, mat.ncol, boundary);
  return r < 0 || c < 0 || r >= mat.nrow || c >= mat.ncol ? element<M>{} : mat.data[r * mat.ncol + c];
}

template <class M>
void correlate(const M& in, const M& kernel, const placement& at, bool flipped, M& out) {
  for (std::int64_t i = 0; i < out.nrow; ++i)
    for (std::int64_t j = 0; j < out.ncol; ++j) {
      element<M> total{};
      for (std::int64_t r = 0; r < kernel.nrow; ++r)
        for (std::int64_t c = 0; c < kernel.ncol; ++c) {
          const std::int64_t tap = r * kernel.ncol + c;
          const auto x = sample(in, i * at.row_step - (kernel.nrow - at.row_origin) + r,
                                j * at.col_step - (kernel.ncol - at.col_origin) + c, at.boundary);
          total = sum(total, times(x, kernel.data[flipped ? kernel.nelem - 1 - tap : tap]));
        }
      out.data[i * out.ncol + j] = total;
    }
}

}  // namespace korvo::reference

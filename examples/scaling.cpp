// Scaling by means over blocks, and by two matrix products for what is no whole ratio.
#include "scaling.hpp"

#include <algorithm>
#include <cmath>

namespace demo {
namespace {

// The mean over blocks of step by step pixels: a correlation that computes every step-th position alone. What
// is left over at the right and at the bottom is less than a block.
matrix block_means(const _univ_mat& in, std::int32_t step) {
  const matrix kernel = filled(step, step, 1.0 / (static_cast<double>(step) * step));
  matrix out(in.nrow / step, in.ncol / step);
  check(siguniv_correlate(&in, &kernel, step, step, step, step, SIG_BOUNDARY_CONTINUE, nullptr, &out));
  return out;
}

// Row i says how much of each old sample the new sample i covers.
matrix shares(std::int32_t count, std::int32_t old_count) {
  matrix out = filled(count, old_count, 0.0);
  const double ratio = static_cast<double>(old_count) / count;
  for (std::int32_t i = 0; i < count; ++i) {
    const double from = i * ratio;
    const double to = from + ratio;
    const auto last = std::min(old_count, static_cast<std::int32_t>(std::ceil(to)));
    for (auto j = static_cast<std::int32_t>(from); j < last; ++j) {
      const double covered = std::max(0.0, std::min(to, j + 1.0) - std::max<double>(from, j));
      static_cast<double*>(out.data)[static_cast<std::int64_t>(i) * old_count + j] = covered / ratio;
    }
  }
  return out;
}

matrix product(const _univ_mat& a, const _univ_mat& b) {
  matrix out(a.nrow, b.ncol);
  check(matuniv_multiply(&a, &b, nullptr, &out));
  return out;
}

// Rows first and then columns: shares from the left, and transposed from the right.
matrix resampled(const _univ_mat& in, std::int32_t rows, std::int32_t cols) {
  const matrix across = shares(cols, in.ncol);
  matrix upright(in.ncol, cols);
  check(matuniv_transpose(&across, nullptr, &upright));
  return product(product(shares(rows, in.nrow), in), upright);
}

}  // namespace

double mean(const _univ_mat& in) { return *static_cast<double*>(resampled(in, 1, 1).data); }

matrix scaled(const _univ_mat& in, std::int32_t rows, std::int32_t cols) {
  const std::int32_t step = std::min(in.nrow / rows, in.ncol / cols);
  if (step > 1) return scaled(block_means(in, step), rows, cols);
  if (in.nrow == rows && in.ncol == cols) return as_type(in, KORVO_DOUBLE);
  return resampled(in, rows, cols);
}

planes scaled(const _mat_set& in, std::int32_t rows, std::int32_t cols) {
  return each_plane(in, [&](const _univ_mat& plane) { return scaled(plane, rows, cols); });
}

planes limited(const _mat_set& in, std::int32_t longest) {
  const std::int32_t longer = std::max(in.mats[0].nrow, in.mats[0].ncol);
  const std::int32_t shorter = std::min(in.mats[0].nrow, in.mats[0].ncol);
  const std::int32_t step = std::min(shorter, (longer + longest - 1) / longest);
  return each_plane(in, [&](const _univ_mat& plane) { return block_means(plane, step); });
}

planes fitted(const _mat_set& in, std::int32_t rows, std::int32_t cols) {
  const double old_rows = in.mats[0].nrow;
  const double old_cols = in.mats[0].ncol;
  const double ratio = std::min(rows / old_rows, cols / old_cols);
  const auto size = [ratio](double old) {
    return std::max(1, static_cast<std::int32_t>(std::lround(old * ratio)));
  };
  return scaled(in, size(old_rows), size(old_cols));
}

}  // namespace demo

// Smoothing by the library's correlation.
#include "filters.hpp"

namespace demo {
namespace {

// `in` in a row of zeros, with so many before it.
matrix padded(const _univ_mat& in, std::int32_t before, std::int32_t cols) {
  matrix out = filled(1, cols, 0.0);
  check(matuniv_assign_submat(&in, 0, before, nullptr, &out));
  return out;
}

}  // namespace

matrix bell(std::int32_t width) {
  const matrix box = filled(1, width, 1.0 / width);
  matrix out = padded(box, width - 1, 3 * width - 2);
  for (int again = 0; again < 2; ++again) {
    const matrix before = copy(out);
    check(imguniv_convolve(&before, &box, SIG_BOUNDARY_ZERO, nullptr, &out));
  }
  return out;
}

matrix bell_ahead(std::int32_t width, std::int32_t shift) {
  const matrix weights = bell(width);
  return padded(weights, 2 * shift, 2 * shift + weights.ncol);
}

matrix smoothed(const _univ_mat& in, const _univ_mat& across, const _univ_mat& down, std::int32_t boundary) {
  matrix upright(down.ncol, down.nrow);
  check(matuniv_transpose(&down, nullptr, &upright));
  matrix half_done(in.nrow, in.ncol);
  check(imguniv_correlate(&in, &across, boundary, nullptr, &half_done));
  matrix out(in.nrow, in.ncol);
  check(imguniv_correlate(&half_done, &upright, boundary, nullptr, &out));
  return out;
}

planes smoothed(const _mat_set& in, const _univ_mat& across, const _univ_mat& down, std::int32_t boundary) {
  return each_plane(in, [&](const _univ_mat& plane) { return smoothed(plane, across, down, boundary); });
}

}  // namespace demo

// Bell-shaped kernels, and smoothing with them.
#pragma once

#include <cstdint>

#include "words.hpp"

namespace demo {

// One row of 3 * width - 2 weights with the sum 1: three means over `width` pixels one after the other, which
// is close to a Gaussian with the variance (width^2 - 1) / 4.
matrix bell(std::int32_t width);

// A bell at the end of a row of zeros. Filtering with it also moves the image by `shift` pixels to the left,
// and with its transpose upwards, so that what lies beyond the edge comes into view.
matrix bell_ahead(std::int32_t width, std::int32_t shift);

// Each row with one kernel and then each column with the transpose of the other: the same as the square kernel
// that is their product, at a fraction of the work. In dbl.
matrix smoothed(const _univ_mat& in, const _univ_mat& across, const _univ_mat& down, std::int32_t boundary);
planes smoothed(const _mat_set& in, const _univ_mat& across, const _univ_mat& down, std::int32_t boundary);

}  // namespace demo

// What the stages of edge detectors share: the length of Gaussian kernels.
#pragma once

#include <algorithm>
#include <cmath>

#include "core/code.hpp"
#include "korvos/core/mat_univ.h"

namespace korvo {

// Kept: of sigma rounded up, so that 0.5 and 1.0 have kernels of one length, which is a multiple of 4 and even.
inline double kernel_length(double sigma) { return std::ceil(sigma) * 4.0; }

// Whether sigma is positive and its kernel fits the image, as doubles: NaN is refused.
[[nodiscard]] inline code check_sigma(const _univ_mat* image, double sigma) {
  return sigma > 0.0 && std::min(image->nrow, image->ncol) >= kernel_length(sigma) ? KORVO_ERR_OK
                                                                                   : KORVO_ERR_ILLEGAL_VALUE;
}

}  // namespace korvo

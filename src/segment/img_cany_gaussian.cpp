// Derivative of Gaussian: the two first derivatives of a smoothed image.
#include <cmath>
#include <cstdint>

#include "core/universal.hpp"
#include "core/valid.hpp"
#include "korvos/matrix/mat_assn.h"
#include "korvos/segment/img_cany.h"
#include "korvos/segment/img_conv.h"
#include "korvos/signal/sig_conv.h"
#include "segment/img_cany.hpp"

namespace korvo {
namespace {

code check(const _univ_mat* image, double sigma, const _univ_mat* row_derivative,
           const _univ_mat* column_derivative) {
  if (!image || !row_derivative || !column_derivative) return KORVO_ERR_NULL_POINTER;
  if (row_derivative->type != KORVO_DOUBLE || column_derivative->type != KORVO_DOUBLE)
    return KORVO_ERR_ILLEGAL_TYPE;
  if (shares_data(image, row_derivative) || shares_data(image, column_derivative) ||
      shares_data(row_derivative, column_derivative))
    return KORVO_ERR_ILLEGAL_ADDRESS;
  TRY(check_sigma(image, sigma));
  for (const _univ_mat* mat : {image, row_derivative, column_derivative}) TRY(matuniv_validate(mat));
  return KORVO_ERR_OK;
}

// Samples of a Gaussian and of its derivative. The product of the two has the scale of a plane Gaussian of
// volume 1, so the first is not normalised. Kept: the length is even and no tap lies at the centre.
struct kernels {
  universal_temporary<_dbl_mat> gaussian, derivative;

  code make(double sigma) {
    constexpr double two_pi = 6.283185307179586;
    const auto length = static_cast<std::int32_t>(kernel_length(sigma));
    TRY(gaussian.make(1, length));
    TRY(derivative.make(length, 1));
    auto* const g = static_cast<double*>(gaussian.data);
    auto* const d = static_cast<double*>(derivative.data);
    const double variance = sigma * sigma;
    const double scale = two_pi * (variance * variance);
    for (std::int32_t k = 0; k < length; ++k) {
      const double x = k - (length - 1) * 0.5;
      g[k] = std::exp(-(x * x) / (2.0 * variance));
      d[k] = -g[k] * x / scale;
    }
    return KORVO_ERR_OK;
  }

  code transpose(void* intrp_ptr) {
    TRY(matuniv_transpose(&derivative, intrp_ptr, &derivative));
    return matuniv_transpose(&gaussian, intrp_ptr, &gaussian);
  }
};

// The derivative in one direction, smoothed in the other.
code convolve(const _univ_mat* image, const kernels& by, void* intrp_ptr, _univ_mat* between, _univ_mat* out) {
  TRY(imguniv_convolve(image, &by.derivative, SIG_BOUNDARY_CONTINUE, intrp_ptr, between));
  return imguniv_convolve(between, &by.gaussian, SIG_BOUNDARY_CONTINUE, intrp_ptr, out);
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code imguniv_filter_derivative_of_gaussian(const _univ_mat* image, double sigma, void* intrp_ptr,
                                           _univ_mat* row_derivative, _univ_mat* column_derivative) {
  TRY(check(image, sigma, row_derivative, column_derivative));
  kernels by;
  universal_temporary<_dbl_mat> between;
  TRY(by.make(sigma));
  TRY(between.make_like(image));
  TRY(convolve(image, by, intrp_ptr, &between, row_derivative));
  TRY(by.transpose(intrp_ptr));
  return convolve(image, by, intrp_ptr, &between, column_derivative);
}

}  // extern "C"

// Sobel gradient and edges.
#include "korvos/segment/img_edge.h"

#include "core/universal.hpp"
#include "korvos/matrix/mat_arit.h"
#include "korvos/matrix/mat_thr.h"
#include "korvos/segment/img_cany.h"
#include "korvos/segment/img_conv.h"
#include "korvos/signal/sig_conv.h"

namespace korvo {
namespace {

code correlate_3x3(const _univ_mat* image, double* mask, void* intrp_ptr, _univ_mat* out) {
  const _univ_mat kernel = {3, 3, 9, mask, KORVO_DOUBLE};
  return imguniv_correlate(image, &kernel, SIG_BOUNDARY_ZERO, intrp_ptr, out);
}

// The squared magnitude of the gradient; no root is taken, thresholds are squared instead.
code squared_gradient(const _univ_mat* image, void* intrp_ptr, _univ_mat* out) {
  universal_temporary<_dbl_mat> column_gradient;
  TRY(column_gradient.make_like(image));
  TRY(imguniv_gradient_sobel(image, intrp_ptr, out, &column_gradient));
  for (_univ_mat* const gradient : {out, static_cast<_univ_mat*>(&column_gradient)})
    TRY(matuniv_multiply_elem(gradient, gradient, intrp_ptr, gradient));
  return matuniv_add(out, &column_gradient, intrp_ptr, out);
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code imguniv_gradient_sobel(const _univ_mat* image, void* intrp_ptr, _univ_mat* row_gradient,
                            _univ_mat* column_gradient) {
  double along_columns[] = {-1, 0, 1, -2, 0, 2, -1, 0, 1};
  double along_rows[] = {-1, -2, -1, 0, 0, 0, 1, 2, 1};
  if (!image || !row_gradient || !column_gradient) return KORVO_ERR_NULL_POINTER;
  if (row_gradient == column_gradient) return KORVO_ERR_ILLEGAL_ADDRESS;
  TRY(correlate_3x3(image, along_columns, intrp_ptr, column_gradient));
  return correlate_3x3(image, along_rows, intrp_ptr, row_gradient);
}

code imguniv_edge_sobel(const _univ_mat* image, double low, double high, _univ_scalar edge,
                        _univ_scalar background, void* intrp_ptr, _univ_mat* result) {
  constexpr double highest = 1e+37;
  if (!image || !result) return KORVO_ERR_NULL_POINTER;
  TRY(matuniv_validate(image));
  if (!(high >= low && low > 0.0)) return KORVO_ERR_ILLEGAL_VALUE;
  universal_temporary<_dbl_mat> sum;
  TRY(sum.make_like(image));
  TRY(squared_gradient(image, intrp_ptr, &sum));
  // Kept: a sum of exactly low * low is an edge if the thresholds agree, and no candidate if they do not.
  if (low * low == high * high)
    return matuniv_threshold(&sum, low * low, highest, background, edge, intrp_ptr, result);
  return imguniv_threshold_hysteresis(&sum, low * low, high * high, edge, background, intrp_ptr, result);
}

}  // extern "C"

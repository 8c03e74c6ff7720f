// Canny edges, and the suppression of what is no maximum across an edge.
#include "korvos/segment/img_cany.h"

#include <algorithm>
#include <cstdint>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/levels.hpp"
#include "core/loop.hpp"
#include "core/temporary.hpp"
#include "core/universal.hpp"
#include "core/valid.hpp"
#include "segment/img_cany.hpp"

#define KORVO_KERNELS "segment/img_cany_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

// The frame, where neighbours are missing, is no edge and is never tested.
void clear_frame(_dbl_mat* out) {
  const std::int64_t cols = out->ncol;
  std::fill_n(out->data, cols, 0.0);
  std::fill_n(out->data + (out->nrow - 1) * cols, cols, 0.0);
  for (std::int64_t r = 0; r < out->nrow; ++r) out->data[r * cols] = out->data[(r + 1) * cols - 1] = 0.0;
}

code suppress(const _dbl_mat* gy, const _dbl_mat* gx, void* intrp_ptr, _dbl_mat* out) {
  TRY(valid(gx, gy, out));
  if (!same_shape(gx, gy, out)) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(out, gx) || shares_data(out, gy)) return KORVO_ERR_ILLEGAL_ADDRESS;
  const auto magnitudes = KORVO_AT_LEVEL(magnitudes);
  const auto suppress_row = KORVO_AT_LEVEL(suppress_row);
  const std::int64_t cols = out->ncol;
  const std::int64_t last = out->nrow - 1;
  temporary<_dbl_mat> magnitude;  // of the three rows in use, row r in place r % 3
  TRY(magnitude.make(std::min(3, out->nrow), cols));
  const auto place = [&](std::int64_t r) { return magnitude.data + r % 3 * cols; };
  const auto find = [&](std::int64_t r) {
    magnitudes(gy->data + r * cols, gx->data + r * cols, place(r), cols);
  };
  clear_frame(out);
  checkpoint cost(intrp_ptr);
  TRY(cost.add((static_cast<double>(out->nelem) + out->nrow + out->ncol) * 5.0));
  for (std::int64_t r = 0; r < std::min<std::int64_t>(last, 2); ++r) find(r);
  for (std::int64_t r = 1; r < last; ++r) {
    const std::int64_t at = r * cols;
    find(r + 1);
    suppress_row(gy->data + at, gx->data + at, place(r - 1), place(r), place(r + 1), out->data + at, cols);
    TRY(cost.add(out->ncol * 20.0));
  }
  return KORVO_ERR_OK;
}

// The derivatives are given back before the next stage.
code suppressed_magnitudes(const _univ_mat* image, double sigma, void* intrp_ptr, _univ_mat* out) {
  universal_temporary<_dbl_mat> row_derivative, column_derivative;
  TRY(row_derivative.make_like(image));
  TRY(column_derivative.make_like(image));
  TRY(imguniv_filter_derivative_of_gaussian(image, sigma, intrp_ptr, &row_derivative, &column_derivative));
  return imguniv_edge_nonmaxima_suppress(&row_derivative, &column_derivative, intrp_ptr, out);
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code imgdbl_edge_nonmaxima_suppress(const _dbl_mat* row_derivative, const _dbl_mat* column_derivative,
                                    void* intrp_ptr, _dbl_mat* result) {
  return suppress(row_derivative, column_derivative, intrp_ptr, result);
}

code imguniv_edge_nonmaxima_suppress(const _univ_mat* row_derivative, const _univ_mat* column_derivative,
                                     void* intrp_ptr, _univ_mat* result) {
  if (!row_derivative || !column_derivative || !result) return KORVO_ERR_NULL_POINTER;
  if (row_derivative->type != KORVO_DOUBLE || column_derivative->type != KORVO_DOUBLE ||
      result->type != KORVO_DOUBLE)
    return KORVO_ERR_ILLEGAL_TYPE;
  const auto gy = as<_dbl_mat>(*row_derivative);
  const auto gx = as<_dbl_mat>(*column_derivative);
  auto out = as<_dbl_mat>(*result);
  return suppress(&gy, &gx, intrp_ptr, &out);
}

code imguniv_edge_canny(const _univ_mat* image, double sigma, double low, double high, _univ_scalar edge,
                        _univ_scalar background, void* intrp_ptr, _univ_mat* result) {
  if (!image || !result) return KORVO_ERR_NULL_POINTER;
  if (!(high >= low)) return KORVO_ERR_ILLEGAL_VALUE;
  TRY(check_sigma(image, sigma));
  TRY(matuniv_validate(image));
  universal_temporary<_dbl_mat> magnitude;
  TRY(magnitude.make_like(image));
  TRY(suppressed_magnitudes(image, sigma, intrp_ptr, &magnitude));
  return imguniv_threshold_hysteresis(&magnitude, low, high, edge, background, intrp_ptr, result);
}

}  // extern "C"

// Maximum overlap discrete wavelet transform: forward, packet, inverse.
#include "korvos/wavelet/wav_modw.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "core/checkpoint.hpp"
#include "core/element.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"
#include "korvos/matrix/mat_arit.h"
#include "korvos/matrix/mat_assn.h"
#include "korvos/matrix/mat_cast.h"
#include "wavelet/wav_modw_passes.hpp"

namespace korvo {
namespace {

// A matrix of binary64 numbers over a buffer.
_univ_mat columns(double* data, std::int32_t rows, std::int32_t cols) {
  return {rows, cols, product(rows, cols), data, KORVO_DOUBLE};
}

// The caller's filters, rescaled for the maximum overlap form.
class filters {
 public:
  [[nodiscard]] code make(const _univ_mat* wavelet, const _univ_mat* scaling, void* intrp_ptr) {
    TRY(rescale(wavelet, intrp_ptr, wavelet_));
    return rescale(scaling, intrp_ptr, scaling_);
  }

  // The first level of a series of `period` instants.
  stage finest(std::int64_t period) const { return {wavelet_.data, scaling_.data, wavelet_.nrow, 1, period}; }

 private:
  static code rescale(const _univ_mat* filter, void* intrp_ptr, temporary<_dbl_mat>& to) {
    constexpr _univ_scalar half_energy = {_univ_value{.dbl = 0.7071067811865476}, KORVO_DOUBLE};
    TRY(to.make(filter->nrow, 1));
    _univ_mat rescaled = columns(to.data, to.nrow, 1);
    return matuniv_multiply_scalar(filter, half_energy, intrp_ptr, &rescaled);
  }

  temporary<_dbl_mat> wavelet_;
  temporary<_dbl_mat> scaling_;
};

bool is_double(const _univ_mat* mat) { return mat->type == KORVO_DOUBLE; }

bool are_columns(const _univ_mat* wavelet, const _univ_mat* scaling) {
  return wavelet->ncol == 1 && scaling->ncol == 1;
}

code validate(const _univ_mat* in, const _univ_mat* wavelet, const _univ_mat* scaling, const _univ_mat* out) {
  for (const _univ_mat* mat : {in, wavelet, scaling, out}) TRY(matuniv_validate(mat));
  return KORVO_ERR_OK;
}

// The levels, the lengths of the filters and the shape of the result, in this order.
code check_sizes(std::int32_t period, const _univ_mat* wavelet, const _univ_mat* scaling, std::int32_t levels,
                 std::int64_t cols, const _univ_mat* out) {
  const auto highest = static_cast<std::int32_t>(std::bit_width(static_cast<std::uint32_t>(period))) - 1;
  if (levels < 1 || levels > highest) return KORVO_ERR_ILLEGAL_SIZE;
  if (wavelet->nrow != scaling->nrow) return KORVO_ERR_ILLEGAL_SIZE;
  return out->nrow == period && out->ncol == cols ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_SIZE;
}

// How many levels of a constant tally have no poll between them. Without a host none is missed.
std::int32_t unpolled(const checkpoint& cost, const void* intrp_ptr, std::int32_t levels) {
  return intrp_ptr ? cost.strip(0.0, levels) : levels;
}

code check_forward(const _univ_mat* series, const _univ_mat* wavelet_filter, const _univ_mat* scaling_filter,
                   std::int32_t levels, const _univ_mat* wavelet, const _univ_mat* scaling) {
  TRY(validate(series, wavelet_filter, scaling_filter, wavelet));
  if (series->ncol != 1 || !are_columns(wavelet_filter, scaling_filter)) return KORVO_ERR_ILLEGAL_SIZE;
  if (!scaling) return KORVO_ERR_NULL_POINTER;
  if (!is_double(wavelet_filter) || !is_double(scaling_filter) || !is_double(wavelet) || !is_double(scaling) ||
      series->type == KORVO_DCOMPLEX)
    return KORVO_ERR_ILLEGAL_TYPE;
  TRY(check_sizes(series->nrow, wavelet_filter, scaling_filter, levels, levels, wavelet));
  // kept: the second result is neither validated nor compared, only never written outside
  if (!scaling->data) return KORVO_ERR_NULL_POINTER;
  if (scaling->ncol < levels || std::int64_t{series->nrow - 1} * scaling->ncol + levels > scaling->nelem)
    return KORVO_ERR_ILLEGAL_SIZE;
  return shares_data(wavelet, scaling) ? KORVO_ERR_ILLEGAL_ADDRESS : KORVO_ERR_OK;
}

code forward(const _univ_mat* series, const _univ_mat* wavelet_filter, const _univ_mat* scaling_filter,
             std::int32_t levels, void* intrp_ptr, const _univ_mat* wavelet, const _univ_mat* scaling) {
  TRY(check_forward(series, wavelet_filter, scaling_filter, levels, wavelet, scaling));
  const std::int32_t period = series->nrow;
  filters filter;
  line approximation;
  TRY(filter.make(wavelet_filter, scaling_filter, intrp_ptr));
  TRY(approximation.make(period));
  _univ_mat cast = columns(approximation.data(), period, 1);
  TRY(matuniv_cast(series, 0, intrp_ptr, &cast));
  approximation.go_on();
  checkpoint cost(intrp_ptr, 3.0 * period);  // kept: one tally at every level, which does not grow
  for (std::int32_t j = 0; j < levels;) {
    pass together(filter.finest(period), j, 1, j);
    const std::int32_t taken = together.take(unpolled(cost, intrp_ptr, levels - j));
    TRY(together.analyse(approximation.data(), wavelet, scaling));
    TRY(cost.add_strip(0.0, taken));
    j += taken;
    if (j < levels) approximation.take(data_of(scaling) + j - 1, scaling->ncol);
  }
  return KORVO_ERR_OK;
}

code check_packet(const _univ_mat* series, const _univ_mat* wavelet_filter, const _univ_mat* scaling_filter,
                  std::int32_t levels, const _univ_mat* out) {
  TRY(validate(series, wavelet_filter, scaling_filter, out));
  if (series->ncol != 1 || !are_columns(wavelet_filter, scaling_filter)) return KORVO_ERR_ILLEGAL_SIZE;
  const std::int64_t nodes = (std::int64_t{2} << std::clamp(levels, 0, most_transforms)) - 1;
  TRY(check_sizes(series->nrow, wavelet_filter, scaling_filter, levels, nodes, out));
  for (const _univ_mat* mat : {series, wavelet_filter, scaling_filter, out})
    if (!is_double(mat)) return KORVO_ERR_ILLEGAL_TYPE;
  return KORVO_ERR_OK;
}

// A poll for each tap of a constant tally: once one is not due, none of the rest is.
code poll_taps(checkpoint& cost, std::int64_t taps) {
  for (; taps > 0 && cost.strip(0.0, 2) == 1; --taps) TRY(cost.test());
  return KORVO_ERR_OK;
}

code packet(const _univ_mat* series, const _univ_mat* wavelet_filter, const _univ_mat* scaling_filter,
            std::int32_t levels, void* intrp_ptr, _univ_mat* out) {
  TRY(check_packet(series, wavelet_filter, scaling_filter, levels, out));
  const std::int64_t period = series->nrow;
  filters filter;
  line parent;
  temporary<_dbl_mat> tree;  // a node a row
  TRY(filter.make(wavelet_filter, scaling_filter, intrp_ptr));
  TRY(parent.make(period));
  TRY(tree.make(out->ncol, period));
  std::copy_n(data_of(series), period, tree.data);
  checkpoint cost(intrp_ptr, 3.0 * static_cast<double>(period));  // kept: one tally, which does not grow
  const std::int64_t parents = (std::int64_t{1} << levels) - 1;
  for (std::int64_t node = 0; node < parents; ++node) {
    stage at = filter.finest(period);
    at.step <<= std::bit_width(static_cast<std::uint32_t>(node + 1)) - 1;
    const bool is_odd = node % 2 == 0 && node > 0;  // within its level, which begins at an odd row
    double* const left = tree.data + (2 * node + 1) * period;
    double* const right = left + period;
    TRY(poll_taps(cost, 2 * period * wavelet_filter->nrow));
    parent.take(tree.data + node * period, 1);
    analyse_run(at, parent.data(), 0, period, is_odd ? left : right, is_odd ? right : left);
  }
  const _univ_mat nodes = columns(tree.data, tree.nrow, tree.ncol);
  return matuniv_transpose(&nodes, intrp_ptr, out);
}

code check_inverse(const _univ_mat* crystals, const _univ_mat* wavelet_filter, const _univ_mat* scaling_filter,
                   std::int32_t levels, const _univ_mat* out) {
  TRY(validate(crystals, wavelet_filter, scaling_filter, out));
  if (!are_columns(wavelet_filter, scaling_filter)) return KORVO_ERR_ILLEGAL_SIZE;
  for (const _univ_mat* mat : {crystals, wavelet_filter, scaling_filter, out})
    if (!is_double(mat)) return KORVO_ERR_ILLEGAL_TYPE;
  TRY(check_sizes(crystals->nrow, wavelet_filter, scaling_filter, levels, std::int64_t{levels} + 1, out));
  if (!same_shape(crystals, out)) return KORVO_ERR_ILLEGAL_SIZE;
  return shares_data(crystals, out) ? KORVO_ERR_ILLEGAL_ADDRESS : KORVO_ERR_OK;
}

code inverse(const _univ_mat* crystals, const _univ_mat* wavelet_filter, const _univ_mat* scaling_filter,
             std::int32_t levels, void* intrp_ptr, const _univ_mat* out) {
  TRY(check_inverse(crystals, wavelet_filter, scaling_filter, levels, out));
  const std::int64_t period = crystals->nrow;
  const std::int64_t stride = out->ncol;
  filters filter;
  line approximation;
  line detail;
  TRY(filter.make(wavelet_filter, scaling_filter, intrp_ptr));
  TRY(approximation.make(period));
  TRY(detail.make(period));
  approximation.take(data_of(crystals), stride);
  put(approximation.data(), period, data_of(out), stride);
  checkpoint cost(intrp_ptr, 3.0 * static_cast<double>(period));  // kept: one tally, which does not grow
  for (std::int32_t k = 1; k <= levels;) {
    pass together(filter.finest(period), levels - k, -1, k);
    const std::int32_t taken = together.take(unpolled(cost, intrp_ptr, levels - k + 1));
    detail.take(data_of(crystals) + k, stride);
    TRY(together.synthesise(approximation.data(), detail.data(), crystals, out));
    TRY(cost.add_strip(0.0, taken));
    k += taken;
    if (k <= levels) approximation.take(data_of(out) + k - 1, stride);
  }
  return KORVO_ERR_OK;
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code wavuniv_transform_maximum_overlap(const _univ_mat* series, const _univ_mat* wavelet_filter,
                                       const _univ_mat* scaling_filter, int32_t levels, void* intrp_ptr,
                                       _univ_mat* wavelet, _univ_mat* scaling) {
  return forward(series, wavelet_filter, scaling_filter, levels, intrp_ptr, wavelet, scaling);
}

code wavuniv_transform_maximum_overlap_packet(const _univ_mat* series, const _univ_mat* wavelet_filter,
                                              const _univ_mat* scaling_filter, int32_t levels, void* intrp_ptr,
                                              _univ_mat* out) {
  return packet(series, wavelet_filter, scaling_filter, levels, intrp_ptr, out);
}

code wavuniv_transform_maximum_overlap_inverse(const _univ_mat* crystals, const _univ_mat* wavelet_filter,
                                               const _univ_mat* scaling_filter, int32_t levels, void* intrp_ptr,
                                               _univ_mat* out) {
  return inverse(crystals, wavelet_filter, scaling_filter, levels, intrp_ptr, out);
}

}  // extern "C"

// Discrete Fourier transform of columns of any length; DCT-II and its inverse, along columns and in two
// dimensions.
#include "korvos/signal/sig_tran.h"

#include <algorithm>
#include <cstdint>

#include "core/dispatch.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"
#include "korvos/matrix/mat_assn.h"
#include "korvos/matrix/mat_cast.h"
#include "signal/sig_tran.hpp"

namespace korvo {
namespace {

// Columns change places with runs, some at a time so that a line of the cache is used whole.
template <class F>
void for_column_elements(std::int64_t rows, std::int64_t columns, F f) {
  constexpr std::int64_t together = 4;
  for (std::int64_t first = 0; first < columns; first += together)
    for (std::int64_t r = 0; r < rows; ++r)
      for (std::int64_t c = first; c < std::min(first + together, columns); ++c)
        f(r * columns + c, c * rows + r);
}

template <class M>
code check_fourier(const M* in, const _cpx_mat* out) {
  TRY(valid(in));
  TRY(valid(out));
  return same_shape(in, out) ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_SIZE;
}

code transform_fourier(const _cpx_mat* in, std::uint8_t inverse, void* intrp_ptr, _cpx_mat* out) {
  TRY(check_fourier(in, out));
  const std::int32_t direction = inverse == 1 ? 1 : -1;  // kept: 1 alone means inverse
  temporary<_cpx_mat> runs;
  TRY(runs.make(in->ncol, in->nrow));
  for_column_elements(in->nrow, in->ncol,
                      [&](std::int64_t at, std::int64_t k) { runs.data[k] = in->data[at]; });
  TRY(localfn_sig_fft_mixed_radix(runs.data, runs.nelem, in->nrow, direction, intrp_ptr));
  for_column_elements(in->nrow, in->ncol,
                      [&](std::int64_t at, std::int64_t k) { out->data[at] = runs.data[k]; });
  return KORVO_ERR_OK;
}

code transform_fourier(const _dbl_mat* in, std::uint8_t inverse, void* intrp_ptr, _cpx_mat* out) {
  TRY(check_fourier(in, out));
  temporary<_cpx_mat> complex;
  TRY(complex.make(in->nrow, in->ncol));
  TRY(matdbl_cast_to_cpx(in, intrp_ptr, &complex));
  return transform_fourier(static_cast<const _cpx_mat*>(&complex), inverse, intrp_ptr, out);
}

using columns_transform = code (*)(_dbl_mat* mat, void* intrp_ptr);

// A single row is transformed along itself, as the column that it is in memory.
code transform_cosine(const _dbl_mat* in, void* intrp_ptr, _dbl_mat* out, columns_transform transform) {
  TRY(valid(in, out));
  if (!same_shape(in, out)) return KORVO_ERR_OK;  // kept: not an error, and nothing is done
  TRY(matdbl_assign(in, intrp_ptr, out));
  if (out->nelem == 1) return KORVO_ERR_OK;
  _dbl_mat columns = *out;
  if (columns.nrow == 1) TRY(matdbl_transpose(out, intrp_ptr, &columns));
  return transform(&columns, intrp_ptr);
}

// Rows first.
code transform_both_ways(const _dbl_mat* in, void* intrp_ptr, _dbl_mat* out) {
  temporary<_dbl_mat> turned;
  TRY(turned.make(in->ncol, in->nrow));
  TRY(matdbl_transpose(in, intrp_ptr, &turned));
  TRY(localfn_sig_dct_II_columns(&turned, intrp_ptr));
  TRY(matdbl_transpose(&turned, intrp_ptr, out));
  return localfn_sig_dct_II_columns(out, intrp_ptr);
}

// Columns first.
code transform_both_ways_back(const _dbl_mat* in, void* intrp_ptr, _dbl_mat* out) {
  temporary<_dbl_mat> turned;
  TRY(turned.make(in->ncol, in->nrow));
  TRY(matdbl_assign(in, intrp_ptr, out));
  TRY(localfn_sig_dct_II_inverse_columns(out, intrp_ptr));
  TRY(matdbl_transpose(out, intrp_ptr, &turned));
  TRY(localfn_sig_dct_II_inverse_columns(&turned, intrp_ptr));
  return matdbl_transpose(&turned, intrp_ptr, out);
}

code transform_cosine_2d(const _dbl_mat* in, std::uint8_t inverse, void* intrp_ptr, _dbl_mat* out) {
  TRY(valid(in, out));
  if (!same_shape(in, out)) return KORVO_ERR_ILLEGAL_SIZE;
  if (in->nelem == 1) return matdbl_assign(in, intrp_ptr, out);
  if (in->nrow == 1 || in->ncol == 1) return KORVO_ERR_ILLEGAL_SIZE;
  const auto transform = inverse != 0 ? transform_both_ways_back : transform_both_ways;  // kept: any byte but 0
  return transform(in, intrp_ptr, out);
}

template <class F>
code universal_cosine(const _univ_mat* in, _univ_mat* out, F form) {
  return dispatch_same(in, out, records<_dbl_mat>{}, form);
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code sigcpx_transform_discrete_fourier(const _cpx_mat* in, uint8_t inverse, void* intrp_ptr, _cpx_mat* out) {
  return transform_fourier(in, inverse, intrp_ptr, out);
}

code sigdbl_transform_discrete_fourier(const _dbl_mat* in, uint8_t inverse, void* intrp_ptr, _cpx_mat* out) {
  return transform_fourier(in, inverse, intrp_ptr, out);
}

code siguniv_transform_discrete_fourier(const _univ_mat* in, uint8_t inverse, void* intrp_ptr, _univ_mat* out) {
  if (!in || !out) return KORVO_ERR_NULL_POINTER;
  if (out->type != KORVO_DCOMPLEX) return KORVO_ERR_ILLEGAL_TYPE;
  return dispatch(in->type, records<_dbl_mat, _cpx_mat>{}, [&]<class M> {
    const M from = as<M>(*in);
    _cpx_mat to = as<_cpx_mat>(*out);
    return transform_fourier(&from, inverse, intrp_ptr, &to);
  });
}

code sigdbl_transform_discrete_cosine_II(const _dbl_mat* in, void* intrp_ptr, _dbl_mat* out) {
  return transform_cosine(in, intrp_ptr, out, localfn_sig_dct_II_columns);
}

code sigdbl_transform_discrete_cosine_II_inverse(const _dbl_mat* in, void* intrp_ptr, _dbl_mat* out) {
  return transform_cosine(in, intrp_ptr, out, localfn_sig_dct_II_inverse_columns);
}

code sigdbl_transform_discrete_cosine_II_2d(const _dbl_mat* in, uint8_t inverse, void* intrp_ptr,
                                            _dbl_mat* out) {
  return transform_cosine_2d(in, inverse, intrp_ptr, out);
}

code siguniv_transform_discrete_cosine_II(const _univ_mat* in, void* intrp_ptr, _univ_mat* out) {
  return universal_cosine(in, out, [&](const _dbl_mat* from, _dbl_mat* to) {
    return sigdbl_transform_discrete_cosine_II(from, intrp_ptr, to);
  });
}

code siguniv_transform_discrete_cosine_II_inverse(const _univ_mat* in, void* intrp_ptr, _univ_mat* out) {
  return universal_cosine(in, out, [&](const _dbl_mat* from, _dbl_mat* to) {
    return sigdbl_transform_discrete_cosine_II_inverse(from, intrp_ptr, to);
  });
}

code siguniv_transform_discrete_cosine_II_2d(const _univ_mat* in, uint8_t inverse, void* intrp_ptr,
                                             _univ_mat* out) {
  return universal_cosine(in, out, [&](const _dbl_mat* from, _dbl_mat* to) {
    return sigdbl_transform_discrete_cosine_II_2d(from, inverse, intrp_ptr, to);
  });
}

}  // extern "C"

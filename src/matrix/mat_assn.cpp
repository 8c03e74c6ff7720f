// Moving elements: assign, assign_scalar, assign_zeropad, assign_submat, extract, transpose, translate, flips.
#include "korvos/matrix/mat_assn.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/levels.hpp"
#include "core/valid.hpp"

#define KORVO_KERNELS "matrix/mat_assn_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

template <class M>
element<M>* row_of(const M* mat, std::int64_t row) {
  return mat->data + row * mat->ncol;
}

// Whether a piece of `size` from `start` lies inside `limit`.
bool lies_inside(std::int64_t start, std::int64_t size, std::int64_t limit) {
  return start >= 0 && start + size <= limit;
}

template <class M>
code assign(const M* in, void* intrp_ptr, M* out) {
  TRY(valid(in, out));
  if (!same_shape(in, out)) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(in, out)) return KORVO_ERR_OK;
  std::copy_n(in->data, in->nelem, out->data);
  return checkpoint(intrp_ptr).add(out->nelem);
}

template <class M>
code assign_scalar(element<M> scalar, void* intrp_ptr, M* out) {
  TRY(valid(out));
  std::fill_n(out->data, out->nelem, scalar);
  return checkpoint(intrp_ptr).add(2.0 * out->nelem);
}

template <class M>
code assign_submat(const M* in, std::int32_t row, std::int32_t col, void* intrp_ptr, M* out) {
  TRY(valid(in, out));
  if (!lies_inside(row, in->nrow, out->nrow) || !lies_inside(col, in->ncol, out->ncol))
    return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(in, out)) return KORVO_ERR_ILLEGAL_ADDRESS;
  checkpoint cost(intrp_ptr);
  for (std::int32_t i = 0; i < in->nrow; ++i) {
    std::copy_n(row_of(in, i), in->ncol, row_of(out, row + i) + col);
    TRY(cost.add(8.0 * in->ncol));
  }
  return KORVO_ERR_OK;
}

template <class M>
code assign_zeropad(const M* in, void* intrp_ptr, M* out) {
  TRY(assign_submat(in, 0, 0, intrp_ptr, out));
  checkpoint cost(intrp_ptr);
  for (std::int32_t i = 0; i < out->nrow; ++i) {
    const std::int32_t kept = i < in->nrow ? in->ncol : 0;
    std::fill_n(row_of(out, i) + kept, out->ncol - kept, element<M>{});
    TRY(cost.add(4.0 * (out->ncol - kept)));
  }
  return KORVO_ERR_OK;
}

// The shared buffer is tested before the bounds: kept so, the opposite of assign_submat.
template <class M>
code extract(const M* in, std::int32_t row, std::int32_t col, void* intrp_ptr, M* out) {
  TRY(valid(in, out));
  if (shares_data(in, out)) return KORVO_ERR_ILLEGAL_ADDRESS;
  if (!lies_inside(row, out->nrow, in->nrow) || !lies_inside(col, out->ncol, in->ncol))
    return KORVO_ERR_ILLEGAL_SIZE;
  checkpoint cost(intrp_ptr);
  const double column_cost = 8.0 * (out->nrow - 1);
  for (std::int32_t j = 0; j < out->ncol;) {  // columns, in strips that are copied row by row
    const std::int32_t cols = cost.strip(column_cost, out->ncol - j);
    for (std::int32_t i = 0; i < out->nrow; ++i)
      std::copy_n(row_of(in, row + std::int64_t{i}) + col + j, cols, row_of(out, i) + j);
    TRY(cost.add_strip(column_cost, cols));
    j += cols;
  }
  return KORVO_ERR_OK;
}

template <class T>
void transpose_rows(const T* in, std::int32_t in_rows, std::int32_t in_cols, std::int32_t first,
                    std::int32_t count, T* out) {
  KORVO_AT_LEVEL(transpose_rows<T>)(in, in_rows, in_cols, first, count, out);
}

// Two doubles are a vector of the narrowest level already: columns of rows at a time, plainly.
void transpose_rows(const korvo_dcomplex* in, std::int32_t in_rows, std::int32_t in_cols, std::int32_t first,
                    std::int32_t count, korvo_dcomplex* out) {
  for (std::int64_t j = 0; j < in_rows; ++j)
    for (std::int64_t i = first; i < first + count; ++i) out[i * in_rows + j] = in[j * in_cols + i];
}

template <class M>
code transpose(const M* in, void* intrp_ptr, M* out) {
  constexpr std::int32_t strip_rows = 32;  // lines of so many rows are filled while they lie in the cache
  TRY(valid(in, out));
  if (shares_data(in, out)) {
    if (in->nrow != 1 && in->ncol != 1) return KORVO_ERR_ILLEGAL_SIZE;
    std::swap(out->nrow, out->ncol);
    return KORVO_ERR_OK;
  }
  if (out->nrow != in->ncol || out->ncol != in->nrow) return KORVO_ERR_ILLEGAL_SIZE;
  checkpoint cost(intrp_ptr);
  const double row_cost = 8.0 * out->ncol;
  for (std::int32_t i = 0; i < out->nrow;) {
    const std::int32_t rows = cost.strip(row_cost, std::min(strip_rows, out->nrow - i));
    transpose_rows(in->data, in->nrow, in->ncol, i, rows, out->data);
    TRY(cost.add_strip(row_cost, rows));
    i += rows;
  }
  return KORVO_ERR_OK;
}

template <class M>
code translate(const M* in, std::int32_t row_shift, std::int32_t col_shift, element<M> fill, void* intrp_ptr,
               M* out) {
  TRY(valid(in, out));
  if (shares_data(in, out) || !same_shape(in, out)) return KORVO_ERR_ILLEGAL_SIZE;
  if (row_shift == 0 && col_shift == 0) return assign(in, intrp_ptr, out);
  TRY(assign_scalar(fill, intrp_ptr, out));
  const std::int64_t dr = row_shift;
  const std::int64_t dc = col_shift;
  const std::int64_t cols = in->ncol - std::abs(dc);
  if (std::abs(dr) >= in->nrow || cols <= 0) return KORVO_ERR_OK;
  checkpoint cost(intrp_ptr);
  const std::int64_t last = in->nrow - std::max<std::int64_t>(0, dr);
  for (std::int64_t i = std::max<std::int64_t>(0, -dr); i < last; ++i) {
    std::copy_n(row_of(in, i) + std::max<std::int64_t>(0, -dc), cols,
                row_of(out, i + dr) + std::max<std::int64_t>(0, dc));
    TRY(cost.add(8.0 * static_cast<double>(cols) + 8.0));
  }
  return KORVO_ERR_OK;
}

// Both elements of a pair are read before either is written, so out may be in.
template <class M>
code flip_left_right(const M* in, void* intrp_ptr, M* out) {
  TRY(valid(in, out));
  if (!same_shape(in, out)) return KORVO_ERR_ILLEGAL_SIZE;
  checkpoint cost(intrp_ptr);
  for (std::int32_t r = 0; r < in->nrow; ++r) {
    const element<M>* const from = row_of(in, r);
    element<M>* const to = row_of(out, r);
    for (std::int32_t i = 0, k = in->ncol - 1; i <= k; ++i, --k) {
      const element<M> left = from[i];
      const element<M> right = from[k];
      to[i] = right;
      to[k] = left;
    }
    TRY(cost.add(8.0 * in->ncol));
  }
  return KORVO_ERR_OK;
}

template <class M>
code flip_up_down(const M* in, void* intrp_ptr, M* out) {
  TRY(valid(in, out));
  if (!same_shape(in, out)) return KORVO_ERR_ILLEGAL_SIZE;
  checkpoint cost(intrp_ptr);
  for (std::int32_t i = 0, k = in->nrow - 1; i <= k; ++i, --k) {
    for (std::int32_t c = 0; c < in->ncol; ++c) {
      const element<M> upper = row_of(in, i)[c];
      const element<M> lower = row_of(in, k)[c];
      row_of(out, i)[c] = lower;
      row_of(out, k)[c] = upper;
    }
    TRY(cost.add(8.0 * in->ncol));
  }
  return KORVO_ERR_OK;
}

}  // namespace
}  // namespace korvo

using namespace korvo;

#define IN_OUT(name, M, method) \
  code name(const M* in, void* intrp_ptr, M* out) { return method(in, intrp_ptr, out); }
#define FILL(name, M, T) \
  code name(T scalar, void* intrp_ptr, M* out) { return assign_scalar(scalar, intrp_ptr, out); }
#define AT(name, M, method)                                                   \
  code name(const M* in, int32_t row, int32_t col, void* intrp_ptr, M* out) { \
    return method(in, row, col, intrp_ptr, out);                              \
  }
#define TRANSLATE(name, M, T)                                                                     \
  code name(const M* in, int32_t row_shift, int32_t col_shift, T fill, void* intrp_ptr, M* out) { \
    return translate(in, row_shift, col_shift, fill, intrp_ptr, out);                             \
  }
#define UNIVERSAL(name, list, method)                                                              \
  code name(const _univ_mat* in, void* intrp_ptr, _univ_mat* out) {                                \
    return dispatch_same(in, out, list{},                                                          \
                         [&](const auto* from, auto* to) { return method(from, intrp_ptr, to); }); \
  }
#define UNIVERSAL_AT(name, method)                                                                           \
  code name(const _univ_mat* in, int32_t row, int32_t col, void* intrp_ptr, _univ_mat* out) {                \
    return dispatch_same(in, out, all_records{},                                                             \
                         [&](const auto* from, auto* to) { return method(from, row, col, intrp_ptr, to); }); \
  }

extern "C" {

IN_OUT(matu8_assign, _u8_mat, assign)
IN_OUT(matu16_assign, _u16_mat, assign)
IN_OUT(matu32_assign, _u32_mat, assign)
IN_OUT(mats16_assign, _s16_mat, assign)
IN_OUT(mats32_assign, _s32_mat, assign)
IN_OUT(matflt_assign, _flt_mat, assign)
IN_OUT(matdbl_assign, _dbl_mat, assign)
UNIVERSAL(matuniv_assign, real_records, assign)

FILL(matu8_assign_scalar, _u8_mat, uint8_t)
FILL(matu16_assign_scalar, _u16_mat, uint16_t)
FILL(matu32_assign_scalar, _u32_mat, uint32_t)
FILL(mats16_assign_scalar, _s16_mat, int16_t)
FILL(mats32_assign_scalar, _s32_mat, int32_t)
FILL(matflt_assign_scalar, _flt_mat, float)
FILL(matdbl_assign_scalar, _dbl_mat, double)
FILL(matcpx_assign_scalar, _cpx_mat, korvo_dcomplex)

code matuniv_assign_scalar(_univ_scalar scalar, void* intrp_ptr, _univ_mat* out) {
  if (!out) return KORVO_ERR_NULL_POINTER;
  if (scalar.type != out->type) return KORVO_ERR_ILLEGAL_TYPE;
  return dispatch(out->type, all_records{}, [&]<class M> {
    M to = as<M>(*out);
    return assign_scalar(number<M>(scalar), intrp_ptr, &to);
  });
}

IN_OUT(matu8_assign_zeropad, _u8_mat, assign_zeropad)
IN_OUT(matu16_assign_zeropad, _u16_mat, assign_zeropad)
IN_OUT(matu32_assign_zeropad, _u32_mat, assign_zeropad)
IN_OUT(mats16_assign_zeropad, _s16_mat, assign_zeropad)
IN_OUT(mats32_assign_zeropad, _s32_mat, assign_zeropad)
IN_OUT(matflt_assign_zeropad, _flt_mat, assign_zeropad)
IN_OUT(matdbl_assign_zeropad, _dbl_mat, assign_zeropad)
UNIVERSAL(matuniv_assign_zeropad, real_records, assign_zeropad)

AT(matu8_assign_submat, _u8_mat, assign_submat)
AT(matu16_assign_submat, _u16_mat, assign_submat)
AT(matu32_assign_submat, _u32_mat, assign_submat)
AT(mats16_assign_submat, _s16_mat, assign_submat)
AT(mats32_assign_submat, _s32_mat, assign_submat)
AT(matflt_assign_submat, _flt_mat, assign_submat)
AT(matdbl_assign_submat, _dbl_mat, assign_submat)
AT(matcpx_assign_submat, _cpx_mat, assign_submat)
UNIVERSAL_AT(matuniv_assign_submat, assign_submat)

AT(matu8_extract, _u8_mat, extract)
AT(matu16_extract, _u16_mat, extract)
AT(matu32_extract, _u32_mat, extract)
AT(mats16_extract, _s16_mat, extract)
AT(mats32_extract, _s32_mat, extract)
AT(matflt_extract, _flt_mat, extract)
AT(matdbl_extract, _dbl_mat, extract)
AT(matcpx_extract, _cpx_mat, extract)
UNIVERSAL_AT(matuniv_extract, extract)

IN_OUT(matu8_transpose, _u8_mat, transpose)
IN_OUT(matu16_transpose, _u16_mat, transpose)
IN_OUT(matu32_transpose, _u32_mat, transpose)
IN_OUT(mats16_transpose, _s16_mat, transpose)
IN_OUT(mats32_transpose, _s32_mat, transpose)
IN_OUT(matflt_transpose, _flt_mat, transpose)
IN_OUT(matdbl_transpose, _dbl_mat, transpose)
IN_OUT(matcpx_transpose, _cpx_mat, transpose)
UNIVERSAL(matuniv_transpose, all_records, transpose)

TRANSLATE(matu8_translate, _u8_mat, uint8_t)
TRANSLATE(matu16_translate, _u16_mat, uint16_t)
TRANSLATE(matu32_translate, _u32_mat, uint32_t)
TRANSLATE(mats16_translate, _s16_mat, int16_t)
TRANSLATE(mats32_translate, _s32_mat, int32_t)
TRANSLATE(matflt_translate, _flt_mat, float)
TRANSLATE(matdbl_translate, _dbl_mat, double)

code matuniv_translate(const _univ_mat* in, int32_t row_shift, int32_t col_shift, _univ_scalar fill,
                       void* intrp_ptr, _univ_mat* out) {
  if (!in || !out) return KORVO_ERR_NULL_POINTER;
  if (fill.type != out->type) return KORVO_ERR_ILLEGAL_TYPE;
  return dispatch_same(in, out, real_records{}, [&]<class M>(const M* from, M* to) {
    return translate(from, row_shift, col_shift, number<M>(fill), intrp_ptr, to);
  });
}

IN_OUT(matu8_flip_left_right, _u8_mat, flip_left_right)
IN_OUT(matu16_flip_left_right, _u16_mat, flip_left_right)
IN_OUT(matu32_flip_left_right, _u32_mat, flip_left_right)
IN_OUT(mats16_flip_left_right, _s16_mat, flip_left_right)
IN_OUT(mats32_flip_left_right, _s32_mat, flip_left_right)
IN_OUT(matflt_flip_left_right, _flt_mat, flip_left_right)
IN_OUT(matdbl_flip_left_right, _dbl_mat, flip_left_right)
IN_OUT(matcpx_flip_left_right, _cpx_mat, flip_left_right)
UNIVERSAL(matuniv_flip_left_right, all_records, flip_left_right)

IN_OUT(matu8_flip_up_down, _u8_mat, flip_up_down)
IN_OUT(matu16_flip_up_down, _u16_mat, flip_up_down)
IN_OUT(matu32_flip_up_down, _u32_mat, flip_up_down)
IN_OUT(mats16_flip_up_down, _s16_mat, flip_up_down)
IN_OUT(mats32_flip_up_down, _s32_mat, flip_up_down)
IN_OUT(matflt_flip_up_down, _flt_mat, flip_up_down)
IN_OUT(matdbl_flip_up_down, _dbl_mat, flip_up_down)
IN_OUT(matcpx_flip_up_down, _cpx_mat, flip_up_down)
UNIVERSAL(matuniv_flip_up_down, all_records, flip_up_down)

}  // extern "C"

/* SPDX-License-Identifier: MIT */
/** @file mat_assn.h  Moving elements: copy, fill, paste, cut, pad, transpose, translate, flip.
 *
 *  Nothing is computed here and nothing allocated. Typed forms validate their matrices in the order of the
 *  arguments (codes of `validate`). Universal forms never cast:
 *
 *  - KORVO_ERR_NULL_POINTER: a matrix is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: the types differ (that of the scalar included), or there is no form for the type.
 *
 *  Rows and columns count from 0. Unless a family says otherwise the buffers of `in` and `out` do not overlap.
 *  KORVO_ERR_INTERRUPT leaves `out` partly written. The costs are the same for all element types. */
#ifndef KORVOS_MATRIX_MAT_ASSN_H
#define KORVOS_MATRIX_MAT_ASSN_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** @name assign
 *  out = in, one block move. If the two are one buffer nothing is done, and nothing polled. There is no form
 *  for cpx.
 *
 *  Cost `nelem`, polled once, after the work.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ. */
/** @{ */
KORVO_API _korvo_errcode matu8_assign(const _u8_mat* in, void* intrp_ptr, _u8_mat* out);
KORVO_API _korvo_errcode matu16_assign(const _u16_mat* in, void* intrp_ptr, _u16_mat* out);
KORVO_API _korvo_errcode matu32_assign(const _u32_mat* in, void* intrp_ptr, _u32_mat* out);
KORVO_API _korvo_errcode mats16_assign(const _s16_mat* in, void* intrp_ptr, _s16_mat* out);
KORVO_API _korvo_errcode mats32_assign(const _s32_mat* in, void* intrp_ptr, _s32_mat* out);
KORVO_API _korvo_errcode matflt_assign(const _flt_mat* in, void* intrp_ptr, _flt_mat* out);
KORVO_API _korvo_errcode matdbl_assign(const _dbl_mat* in, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode matuniv_assign(const _univ_mat* in, void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name assign_scalar
 *  Every element of `out` becomes `scalar`. In the universal form the scalar must have the type of `out`; it
 *  is never converted.
 *
 *  Cost 2 * `nelem`, polled once, after the work. */
/** @{ */
KORVO_API _korvo_errcode matu8_assign_scalar(uint8_t scalar, void* intrp_ptr, _u8_mat* out);
KORVO_API _korvo_errcode matu16_assign_scalar(uint16_t scalar, void* intrp_ptr, _u16_mat* out);
KORVO_API _korvo_errcode matu32_assign_scalar(uint32_t scalar, void* intrp_ptr, _u32_mat* out);
KORVO_API _korvo_errcode mats16_assign_scalar(int16_t scalar, void* intrp_ptr, _s16_mat* out);
KORVO_API _korvo_errcode mats32_assign_scalar(int32_t scalar, void* intrp_ptr, _s32_mat* out);
KORVO_API _korvo_errcode matflt_assign_scalar(float scalar, void* intrp_ptr, _flt_mat* out);
KORVO_API _korvo_errcode matdbl_assign_scalar(double scalar, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode matcpx_assign_scalar(korvo_dcomplex scalar, void* intrp_ptr, _cpx_mat* out);
KORVO_API _korvo_errcode matuniv_assign_scalar(_univ_scalar scalar, void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name assign_zeropad
 *  `in` at the upper left of `out`, and 0 in the rest. There is no form for cpx.
 *
 *  Cost that of assign_submat; then a tally of its own, 4 a padded element, polled after each row.
 *  - KORVO_ERR_ILLEGAL_SIZE: `in` is larger than `out` in a direction.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `out` is the buffer of `in`. No padding has been written. */
/** @{ */
KORVO_API _korvo_errcode matu8_assign_zeropad(const _u8_mat* in, void* intrp_ptr, _u8_mat* out);
KORVO_API _korvo_errcode matu16_assign_zeropad(const _u16_mat* in, void* intrp_ptr, _u16_mat* out);
KORVO_API _korvo_errcode matu32_assign_zeropad(const _u32_mat* in, void* intrp_ptr, _u32_mat* out);
KORVO_API _korvo_errcode mats16_assign_zeropad(const _s16_mat* in, void* intrp_ptr, _s16_mat* out);
KORVO_API _korvo_errcode mats32_assign_zeropad(const _s32_mat* in, void* intrp_ptr, _s32_mat* out);
KORVO_API _korvo_errcode matflt_assign_zeropad(const _flt_mat* in, void* intrp_ptr, _flt_mat* out);
KORVO_API _korvo_errcode matdbl_assign_zeropad(const _dbl_mat* in, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode matuniv_assign_zeropad(const _univ_mat* in, void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name assign_submat
 *  Pastes `in` into `out`: out(row + i, col + j) = in(i, j). The rest of `out` is untouched.
 *
 *  Cost 8 * columns of `in` a row, polled after each row.
 *  - KORVO_ERR_ILLEGAL_SIZE: `in` at `row`, `col` does not lie inside `out`. This is tested first.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `out` is the buffer of `in`. */
/** @{ */
KORVO_API _korvo_errcode matu8_assign_submat(const _u8_mat* in, int32_t row, int32_t col, void* intrp_ptr,
                                             _u8_mat* out);
KORVO_API _korvo_errcode matu16_assign_submat(const _u16_mat* in, int32_t row, int32_t col, void* intrp_ptr,
                                              _u16_mat* out);
KORVO_API _korvo_errcode matu32_assign_submat(const _u32_mat* in, int32_t row, int32_t col, void* intrp_ptr,
                                              _u32_mat* out);
KORVO_API _korvo_errcode mats16_assign_submat(const _s16_mat* in, int32_t row, int32_t col, void* intrp_ptr,
                                              _s16_mat* out);
KORVO_API _korvo_errcode mats32_assign_submat(const _s32_mat* in, int32_t row, int32_t col, void* intrp_ptr,
                                              _s32_mat* out);
KORVO_API _korvo_errcode matflt_assign_submat(const _flt_mat* in, int32_t row, int32_t col, void* intrp_ptr,
                                              _flt_mat* out);
KORVO_API _korvo_errcode matdbl_assign_submat(const _dbl_mat* in, int32_t row, int32_t col, void* intrp_ptr,
                                              _dbl_mat* out);
KORVO_API _korvo_errcode matcpx_assign_submat(const _cpx_mat* in, int32_t row, int32_t col, void* intrp_ptr,
                                              _cpx_mat* out);
KORVO_API _korvo_errcode matuniv_assign_submat(const _univ_mat* in, int32_t row, int32_t col, void* intrp_ptr,
                                               _univ_mat* out);
/** @} */

/** @name extract
 *  Cuts `out` from `in`: out(i, j) = in(row + i, col + j); the shape of `out` says how much.
 *
 *  Walks column by column. Cost 8 * (rows of `out` - 1) a column, polled after each column.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `out` is the buffer of `in`. This is tested first.
 *  - KORVO_ERR_ILLEGAL_SIZE: the piece does not lie inside `in`. */
/** @{ */
KORVO_API _korvo_errcode matu8_extract(const _u8_mat* in, int32_t row, int32_t col, void* intrp_ptr,
                                       _u8_mat* out);
KORVO_API _korvo_errcode matu16_extract(const _u16_mat* in, int32_t row, int32_t col, void* intrp_ptr,
                                        _u16_mat* out);
KORVO_API _korvo_errcode matu32_extract(const _u32_mat* in, int32_t row, int32_t col, void* intrp_ptr,
                                        _u32_mat* out);
KORVO_API _korvo_errcode mats16_extract(const _s16_mat* in, int32_t row, int32_t col, void* intrp_ptr,
                                        _s16_mat* out);
KORVO_API _korvo_errcode mats32_extract(const _s32_mat* in, int32_t row, int32_t col, void* intrp_ptr,
                                        _s32_mat* out);
KORVO_API _korvo_errcode matflt_extract(const _flt_mat* in, int32_t row, int32_t col, void* intrp_ptr,
                                        _flt_mat* out);
KORVO_API _korvo_errcode matdbl_extract(const _dbl_mat* in, int32_t row, int32_t col, void* intrp_ptr,
                                        _dbl_mat* out);
KORVO_API _korvo_errcode matcpx_extract(const _cpx_mat* in, int32_t row, int32_t col, void* intrp_ptr,
                                        _cpx_mat* out);
KORVO_API _korvo_errcode matuniv_extract(const _univ_mat* in, int32_t row, int32_t col, void* intrp_ptr,
                                         _univ_mat* out);
/** @} */

/** @name transpose
 *  out(i, j) = in(j, i). If the two are one buffer and `in` is a vector, `nrow` and `ncol` of `out` change
 *  places and nothing else happens, no poll either.
 *
 *  Cost 8 * columns of `out` a row of `out`, polled after each.
 *  - KORVO_ERR_ILLEGAL_SIZE: `out` has not the transposed shape; or the two are one buffer and `in` is not a
 *    vector, since no true matrix is transposed in place. */
/** @{ */
KORVO_API _korvo_errcode matu8_transpose(const _u8_mat* in, void* intrp_ptr, _u8_mat* out);
KORVO_API _korvo_errcode matu16_transpose(const _u16_mat* in, void* intrp_ptr, _u16_mat* out);
KORVO_API _korvo_errcode matu32_transpose(const _u32_mat* in, void* intrp_ptr, _u32_mat* out);
KORVO_API _korvo_errcode mats16_transpose(const _s16_mat* in, void* intrp_ptr, _s16_mat* out);
KORVO_API _korvo_errcode mats32_transpose(const _s32_mat* in, void* intrp_ptr, _s32_mat* out);
KORVO_API _korvo_errcode matflt_transpose(const _flt_mat* in, void* intrp_ptr, _flt_mat* out);
KORVO_API _korvo_errcode matdbl_transpose(const _dbl_mat* in, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode matcpx_transpose(const _cpx_mat* in, void* intrp_ptr, _cpx_mat* out);
KORVO_API _korvo_errcode matuniv_transpose(const _univ_mat* in, void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name translate
 *  Moves the content: out(i + row_shift, j + col_shift) = in(i, j) wherever the target lies inside, and `fill`
 *  in the rest. A positive shift moves down or right; nothing wraps round. There is no form for cpx, and in the
 *  universal form the fill must have the type of the matrices.
 *
 *  Cost that of assign (both shifts 0) or assign_scalar; then 8 * (columns copied) + 8 a row of `in` that is
 *  copied, polled after each.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ, or `out` is the buffer of `in`, shifted or not. */
/** @{ */
KORVO_API _korvo_errcode matu8_translate(const _u8_mat* in, int32_t row_shift, int32_t col_shift, uint8_t fill,
                                         void* intrp_ptr, _u8_mat* out);
KORVO_API _korvo_errcode matu16_translate(const _u16_mat* in, int32_t row_shift, int32_t col_shift,
                                          uint16_t fill, void* intrp_ptr, _u16_mat* out);
KORVO_API _korvo_errcode matu32_translate(const _u32_mat* in, int32_t row_shift, int32_t col_shift,
                                          uint32_t fill, void* intrp_ptr, _u32_mat* out);
KORVO_API _korvo_errcode mats16_translate(const _s16_mat* in, int32_t row_shift, int32_t col_shift,
                                          int16_t fill, void* intrp_ptr, _s16_mat* out);
KORVO_API _korvo_errcode mats32_translate(const _s32_mat* in, int32_t row_shift, int32_t col_shift,
                                          int32_t fill, void* intrp_ptr, _s32_mat* out);
KORVO_API _korvo_errcode matflt_translate(const _flt_mat* in, int32_t row_shift, int32_t col_shift, float fill,
                                          void* intrp_ptr, _flt_mat* out);
KORVO_API _korvo_errcode matdbl_translate(const _dbl_mat* in, int32_t row_shift, int32_t col_shift, double fill,
                                          void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode matuniv_translate(const _univ_mat* in, int32_t row_shift, int32_t col_shift,
                                           _univ_scalar fill, void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name flip_left_right
 *  out(i, j) = in(i, ncol - 1 - j). `out` may be `in`.
 *
 *  Cost 8 * `ncol` a row, polled after each.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ. */
/** @{ */
KORVO_API _korvo_errcode matu8_flip_left_right(const _u8_mat* in, void* intrp_ptr, _u8_mat* out);
KORVO_API _korvo_errcode matu16_flip_left_right(const _u16_mat* in, void* intrp_ptr, _u16_mat* out);
KORVO_API _korvo_errcode matu32_flip_left_right(const _u32_mat* in, void* intrp_ptr, _u32_mat* out);
KORVO_API _korvo_errcode mats16_flip_left_right(const _s16_mat* in, void* intrp_ptr, _s16_mat* out);
KORVO_API _korvo_errcode mats32_flip_left_right(const _s32_mat* in, void* intrp_ptr, _s32_mat* out);
KORVO_API _korvo_errcode matflt_flip_left_right(const _flt_mat* in, void* intrp_ptr, _flt_mat* out);
KORVO_API _korvo_errcode matdbl_flip_left_right(const _dbl_mat* in, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode matcpx_flip_left_right(const _cpx_mat* in, void* intrp_ptr, _cpx_mat* out);
KORVO_API _korvo_errcode matuniv_flip_left_right(const _univ_mat* in, void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name flip_up_down
 *  out(i, j) = in(nrow - 1 - i, j). `out` may be `in`.
 *
 *  Cost 8 * `ncol` a pair of rows, polled after each pair.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ. */
/** @{ */
KORVO_API _korvo_errcode matu8_flip_up_down(const _u8_mat* in, void* intrp_ptr, _u8_mat* out);
KORVO_API _korvo_errcode matu16_flip_up_down(const _u16_mat* in, void* intrp_ptr, _u16_mat* out);
KORVO_API _korvo_errcode matu32_flip_up_down(const _u32_mat* in, void* intrp_ptr, _u32_mat* out);
KORVO_API _korvo_errcode mats16_flip_up_down(const _s16_mat* in, void* intrp_ptr, _s16_mat* out);
KORVO_API _korvo_errcode mats32_flip_up_down(const _s32_mat* in, void* intrp_ptr, _s32_mat* out);
KORVO_API _korvo_errcode matflt_flip_up_down(const _flt_mat* in, void* intrp_ptr, _flt_mat* out);
KORVO_API _korvo_errcode matdbl_flip_up_down(const _dbl_mat* in, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode matcpx_flip_up_down(const _cpx_mat* in, void* intrp_ptr, _cpx_mat* out);
KORVO_API _korvo_errcode matuniv_flip_up_down(const _univ_mat* in, void* intrp_ptr, _univ_mat* out);
/** @} */

KORVO_END_DECLARATIONS

#endif

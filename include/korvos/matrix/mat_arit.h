/* SPDX-License-Identifier: MIT */
/** @file mat_arit.h  Arithmetic on matrices: sums, differences, products, absolute values, rescaling.
 *
 *  Integers wrap in their width, with no saturation and no error; only casts test ranges. There are no forms
 *  for cpx.
 *
 *  Typed forms validate `a`, then `b`, then `out` (codes of `validate`), unless they say otherwise. In
 *  universal forms the type of `out` decides: an operand of another type is cast to it first, in a temporary,
 *  without clipping.
 *
 *  - KORVO_ERR_NULL_POINTER: a matrix is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: a floating operand and an integer `out`, a cast that does not exist, or no form.
 *  - KORVO_ERR_OVERFLOW: an element of an operand does not fit the type of `out`.
 *  - KORVO_ERR_MALLOC: no memory for a temporary. */
#ifndef KORVOS_MATRIX_MAT_ARIT_H
#define KORVOS_MATRIX_MAT_ARIT_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** @name add
 *  out = a + b, element by element.
 *
 *  `out` may be the buffer of `a` or of `b`; otherwise they do not overlap. Cost 3 * `nelem`, polled once,
 *  after the work: `out` is complete even if the answer is KORVO_ERR_INTERRUPT.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ. */
/** @{ */
KORVO_API _korvo_errcode matu8_add(const _u8_mat* a, const _u8_mat* b, void* intrp_ptr, _u8_mat* out);
KORVO_API _korvo_errcode matu16_add(const _u16_mat* a, const _u16_mat* b, void* intrp_ptr, _u16_mat* out);
KORVO_API _korvo_errcode matu32_add(const _u32_mat* a, const _u32_mat* b, void* intrp_ptr, _u32_mat* out);
KORVO_API _korvo_errcode mats16_add(const _s16_mat* a, const _s16_mat* b, void* intrp_ptr, _s16_mat* out);
KORVO_API _korvo_errcode mats32_add(const _s32_mat* a, const _s32_mat* b, void* intrp_ptr, _s32_mat* out);
KORVO_API _korvo_errcode matflt_add(const _flt_mat* a, const _flt_mat* b, void* intrp_ptr, _flt_mat* out);
KORVO_API _korvo_errcode matdbl_add(const _dbl_mat* a, const _dbl_mat* b, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode matuniv_add(const _univ_mat* a, const _univ_mat* b, void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name subtract
 *  out = a - b, element by element.
 *
 *  `out` may be the buffer of `a` or of `b`; otherwise they do not overlap. Cost 3 * `nelem`, polled once,
 *  after the work: `out` is complete even if the answer is KORVO_ERR_INTERRUPT.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ. */
/** @{ */
KORVO_API _korvo_errcode matu8_subtract(const _u8_mat* a, const _u8_mat* b, void* intrp_ptr, _u8_mat* out);
KORVO_API _korvo_errcode matu16_subtract(const _u16_mat* a, const _u16_mat* b, void* intrp_ptr, _u16_mat* out);
KORVO_API _korvo_errcode matu32_subtract(const _u32_mat* a, const _u32_mat* b, void* intrp_ptr, _u32_mat* out);
KORVO_API _korvo_errcode mats16_subtract(const _s16_mat* a, const _s16_mat* b, void* intrp_ptr, _s16_mat* out);
KORVO_API _korvo_errcode mats32_subtract(const _s32_mat* a, const _s32_mat* b, void* intrp_ptr, _s32_mat* out);
KORVO_API _korvo_errcode matflt_subtract(const _flt_mat* a, const _flt_mat* b, void* intrp_ptr, _flt_mat* out);
KORVO_API _korvo_errcode matdbl_subtract(const _dbl_mat* a, const _dbl_mat* b, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode matuniv_subtract(const _univ_mat* a, const _univ_mat* b, void* intrp_ptr,
                                          _univ_mat* out);
/** @} */

/** @name multiply_elem
 *  out = a * b, element by element.
 *
 *  `out` may be the buffer of `a` or of `b`; otherwise they do not overlap. Cost 3 * `nelem`, polled once,
 *  after the work: `out` is complete even if the answer is KORVO_ERR_INTERRUPT.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ. */
/** @{ */
KORVO_API _korvo_errcode matu8_multiply_elem(const _u8_mat* a, const _u8_mat* b, void* intrp_ptr, _u8_mat* out);
KORVO_API _korvo_errcode matu16_multiply_elem(const _u16_mat* a, const _u16_mat* b, void* intrp_ptr,
                                              _u16_mat* out);
KORVO_API _korvo_errcode matu32_multiply_elem(const _u32_mat* a, const _u32_mat* b, void* intrp_ptr,
                                              _u32_mat* out);
KORVO_API _korvo_errcode mats16_multiply_elem(const _s16_mat* a, const _s16_mat* b, void* intrp_ptr,
                                              _s16_mat* out);
KORVO_API _korvo_errcode mats32_multiply_elem(const _s32_mat* a, const _s32_mat* b, void* intrp_ptr,
                                              _s32_mat* out);
KORVO_API _korvo_errcode matflt_multiply_elem(const _flt_mat* a, const _flt_mat* b, void* intrp_ptr,
                                              _flt_mat* out);
KORVO_API _korvo_errcode matdbl_multiply_elem(const _dbl_mat* a, const _dbl_mat* b, void* intrp_ptr,
                                              _dbl_mat* out);
KORVO_API _korvo_errcode matuniv_multiply_elem(const _univ_mat* a, const _univ_mat* b, void* intrp_ptr,
                                               _univ_mat* out);
/** @} */

/** @name multiply
 *  The matrix product. Each element is a sum over k in ascending order, begun at 0, in the element's own type.
 *
 *  Cost 8 * columns of `out` * columns of `a` a row of `out`, polled after each; rows beyond an interrupted one
 *  are not written. Validates `out`, then `a`, then `b`.
 *  - KORVO_ERR_ILLEGAL_SIZE: `out` is not rows of `a` by columns of `b`, or columns of `a` are not rows of `b`.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `out` is the buffer of `a` or of `b`. */
/** @{ */
KORVO_API _korvo_errcode matu8_multiply(const _u8_mat* a, const _u8_mat* b, void* intrp_ptr, _u8_mat* out);
KORVO_API _korvo_errcode matu16_multiply(const _u16_mat* a, const _u16_mat* b, void* intrp_ptr, _u16_mat* out);
KORVO_API _korvo_errcode matu32_multiply(const _u32_mat* a, const _u32_mat* b, void* intrp_ptr, _u32_mat* out);
KORVO_API _korvo_errcode mats16_multiply(const _s16_mat* a, const _s16_mat* b, void* intrp_ptr, _s16_mat* out);
KORVO_API _korvo_errcode mats32_multiply(const _s32_mat* a, const _s32_mat* b, void* intrp_ptr, _s32_mat* out);
KORVO_API _korvo_errcode matflt_multiply(const _flt_mat* a, const _flt_mat* b, void* intrp_ptr, _flt_mat* out);
KORVO_API _korvo_errcode matdbl_multiply(const _dbl_mat* a, const _dbl_mat* b, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode matuniv_multiply(const _univ_mat* a, const _univ_mat* b, void* intrp_ptr,
                                          _univ_mat* out);
/** @} */

/** @name add_scalar
 *  out = a + scalar, element by element.
 *
 *  Universal form: a scalar of another type than `out` is converted, an integer one or to flt or dbl.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) the scalar or `out` is cpx; the scalar is floating and `out` is not;
 *    or the scalar is out of the range that casts have for the type of `out`. This is no overflow.
 *
 *  `out` may be the buffer of `a`; otherwise they do not overlap. Cost 3 * `nelem`, polled once,
 *  after the work: `out` is complete even if the answer is KORVO_ERR_INTERRUPT.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ. */
/** @{ */
KORVO_API _korvo_errcode matu8_add_scalar(const _u8_mat* a, uint8_t scalar, void* intrp_ptr, _u8_mat* out);
KORVO_API _korvo_errcode matu16_add_scalar(const _u16_mat* a, uint16_t scalar, void* intrp_ptr, _u16_mat* out);
KORVO_API _korvo_errcode matu32_add_scalar(const _u32_mat* a, uint32_t scalar, void* intrp_ptr, _u32_mat* out);
KORVO_API _korvo_errcode mats16_add_scalar(const _s16_mat* a, int16_t scalar, void* intrp_ptr, _s16_mat* out);
KORVO_API _korvo_errcode mats32_add_scalar(const _s32_mat* a, int32_t scalar, void* intrp_ptr, _s32_mat* out);
KORVO_API _korvo_errcode matflt_add_scalar(const _flt_mat* a, float scalar, void* intrp_ptr, _flt_mat* out);
KORVO_API _korvo_errcode matdbl_add_scalar(const _dbl_mat* a, double scalar, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode matuniv_add_scalar(const _univ_mat* a, _univ_scalar scalar, void* intrp_ptr,
                                            _univ_mat* out);
/** @} */

/** @name multiply_scalar
 *  out = a * scalar, element by element.
 *
 *  Universal form: a scalar of another type than `out` is converted, an integer one or to flt or dbl.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) the scalar or `out` is cpx; the scalar is floating and `out` is not;
 *    or the scalar is out of the range that casts have for the type of `out`. This is no overflow.
 *
 *  `out` may be the buffer of `a`; otherwise they do not overlap. Cost 3 * `nelem`, polled once,
 *  after the work: `out` is complete even if the answer is KORVO_ERR_INTERRUPT.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ. */
/** @{ */
KORVO_API _korvo_errcode matu8_multiply_scalar(const _u8_mat* a, uint8_t scalar, void* intrp_ptr, _u8_mat* out);
KORVO_API _korvo_errcode matu16_multiply_scalar(const _u16_mat* a, uint16_t scalar, void* intrp_ptr,
                                                _u16_mat* out);
KORVO_API _korvo_errcode matu32_multiply_scalar(const _u32_mat* a, uint32_t scalar, void* intrp_ptr,
                                                _u32_mat* out);
KORVO_API _korvo_errcode mats16_multiply_scalar(const _s16_mat* a, int16_t scalar, void* intrp_ptr,
                                                _s16_mat* out);
KORVO_API _korvo_errcode mats32_multiply_scalar(const _s32_mat* a, int32_t scalar, void* intrp_ptr,
                                                _s32_mat* out);
KORVO_API _korvo_errcode matflt_multiply_scalar(const _flt_mat* a, float scalar, void* intrp_ptr,
                                                _flt_mat* out);
KORVO_API _korvo_errcode matdbl_multiply_scalar(const _dbl_mat* a, double scalar, void* intrp_ptr,
                                                _dbl_mat* out);
KORVO_API _korvo_errcode matuniv_multiply_scalar(const _univ_mat* a, _univ_scalar scalar, void* intrp_ptr,
                                                 _univ_mat* out);
/** @} */

/** @name abs
 *  out = |a|, element by element. The lowest number of s16 and s32 has no counterpart and stays; so does -0.0.
 *  The universal form casts nothing: it copies unsigned matrices by assign, at its cost.
 *
 *  `out` may be the buffer of `a`; otherwise they do not overlap. Cost 3 * `nelem`, polled once,
 *  after the work: `out` is complete even if the answer is KORVO_ERR_INTERRUPT.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) the types differ, or are cpx.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ. */
/** @{ */
KORVO_API _korvo_errcode mats16_abs(const _s16_mat* a, void* intrp_ptr, _s16_mat* out);
KORVO_API _korvo_errcode mats32_abs(const _s32_mat* a, void* intrp_ptr, _s32_mat* out);
KORVO_API _korvo_errcode matflt_abs(const _flt_mat* a, void* intrp_ptr, _flt_mat* out);
KORVO_API _korvo_errcode matdbl_abs(const _dbl_mat* a, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode matuniv_abs(const _univ_mat* a, void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name rescale
 *  Maps the range of `a` linearly onto [new_minimum, new_maximum]: out = (x - minimum) * factor + new_minimum,
 *  all in binary64, and cut towards 0 for integer types. The factor is 0 for a constant matrix, which so
 *  becomes `new_minimum`.
 *
 *  `out` may be the buffer of `a`; otherwise they do not overlap. Validates `out` first, then finds the range
 *  of `a`, whose poll is the only one.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) `a` or a scalar has another type than `out`; nothing is cast.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ.
 *  - KORVO_ERR_ILLEGAL_VALUE: `new_maximum` is below `new_minimum`, or one of them is NaN. */
/** @{ */
KORVO_API _korvo_errcode matu8_rescale(const _u8_mat* a, uint8_t new_minimum, uint8_t new_maximum,
                                       void* intrp_ptr, _u8_mat* out);
KORVO_API _korvo_errcode matu16_rescale(const _u16_mat* a, uint16_t new_minimum, uint16_t new_maximum,
                                        void* intrp_ptr, _u16_mat* out);
KORVO_API _korvo_errcode matu32_rescale(const _u32_mat* a, uint32_t new_minimum, uint32_t new_maximum,
                                        void* intrp_ptr, _u32_mat* out);
KORVO_API _korvo_errcode mats16_rescale(const _s16_mat* a, int16_t new_minimum, int16_t new_maximum,
                                        void* intrp_ptr, _s16_mat* out);
KORVO_API _korvo_errcode mats32_rescale(const _s32_mat* a, int32_t new_minimum, int32_t new_maximum,
                                        void* intrp_ptr, _s32_mat* out);
KORVO_API _korvo_errcode matflt_rescale(const _flt_mat* a, float new_minimum, float new_maximum,
                                        void* intrp_ptr, _flt_mat* out);
KORVO_API _korvo_errcode matdbl_rescale(const _dbl_mat* a, double new_minimum, double new_maximum,
                                        void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode matuniv_rescale(const _univ_mat* a, _univ_scalar new_minimum, _univ_scalar new_maximum,
                                         void* intrp_ptr, _univ_mat* out);
/** @} */

KORVO_END_DECLARATIONS

#endif

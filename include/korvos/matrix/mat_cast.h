/* SPDX-License-Identifier: MIT */
/** @file mat_cast.h  Casts: the one place that says what happens to a value that does not fit.
 *
 *  Typed casts validate `in` and then `out` (codes of `validate`). There is no cast from an integer type to
 *  cpx, and none from cpx but to dbl. No cast allocates. */
#ifndef KORVOS_MATRIX_MAT_CAST_H
#define KORVOS_MATRIX_MAT_CAST_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** Element by element from `in` to `out`, of the same shape and possibly another type. Equal types are copied,
 *  with no range test. `clip_or_not` is one byte, any value but 0 meaning true; casts without such an argument
 *  ignore it.
 *
 *  - KORVO_ERR_NULL_POINTER: `in` or `out` is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: there is no cast for the pair of types; between two cpx matrices there is none.
 *  - otherwise the codes of the typed cast, or of assign. */
KORVO_API _korvo_errcode matuniv_cast(const _univ_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                      _univ_mat* out);

/** @name casts with a range test
 *  What does not fit is KORVO_ERR_OVERFLOW, with the elements before it converted and the rest untouched, or
 *  with `clip_or_not` it becomes the limit on its side.
 *
 *  | to  | lowest      | highest    |
 *  |-----|-------------|------------|
 *  | u8  | 0           | 255        |
 *  | u16 | 0           | 65535      |
 *  | u32 | 0           | 4294967295 |
 *  | s16 | -32767      | 32767      |
 *  | s32 | -2147483647 | 2147483647 |
 *  | flt | -1e37       | 1e37       |
 *
 *  The signed ranges are symmetric. Floating values are rounded to floor(x + 0.5) first, so that halves go up,
 *  and it is the rounded value that must fit. NaN is out of range; with clipping it becomes the lowest value,
 *  but dbl to flt keeps it. To flt, 1e37 rounded to binary32 is stored when clipping, and infinities do not
 *  fit. From cpx the real part is taken: an imaginary part other than 0 does not fit, and clipping drops it.
 *
 *  Cost 5 * `nelem`, to flt and from cpx 4 * `nelem`; polled once, after the work.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ.
 *  - KORVO_ERR_OVERFLOW: an element does not fit and `clip_or_not` is 0. */
/** @{ */
KORVO_API _korvo_errcode matu16_cast_to_u8(const _u16_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                           _u8_mat* out);
KORVO_API _korvo_errcode matu16_cast_to_s16(const _u16_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                            _s16_mat* out);
KORVO_API _korvo_errcode matu32_cast_to_u8(const _u32_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                           _u8_mat* out);
KORVO_API _korvo_errcode matu32_cast_to_u16(const _u32_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                            _u16_mat* out);
KORVO_API _korvo_errcode matu32_cast_to_s16(const _u32_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                            _s16_mat* out);
KORVO_API _korvo_errcode matu32_cast_to_s32(const _u32_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                            _s32_mat* out);
KORVO_API _korvo_errcode mats16_cast_to_u8(const _s16_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                           _u8_mat* out);
KORVO_API _korvo_errcode mats16_cast_to_u16(const _s16_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                            _u16_mat* out);
KORVO_API _korvo_errcode mats16_cast_to_u32(const _s16_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                            _u32_mat* out);
KORVO_API _korvo_errcode mats32_cast_to_u8(const _s32_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                           _u8_mat* out);
KORVO_API _korvo_errcode mats32_cast_to_u16(const _s32_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                            _u16_mat* out);
KORVO_API _korvo_errcode mats32_cast_to_u32(const _s32_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                            _u32_mat* out);
KORVO_API _korvo_errcode mats32_cast_to_s16(const _s32_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                            _s16_mat* out);
KORVO_API _korvo_errcode matflt_cast_to_u8(const _flt_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                           _u8_mat* out);
KORVO_API _korvo_errcode matflt_cast_to_u16(const _flt_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                            _u16_mat* out);
KORVO_API _korvo_errcode matflt_cast_to_u32(const _flt_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                            _u32_mat* out);
KORVO_API _korvo_errcode matflt_cast_to_s16(const _flt_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                            _s16_mat* out);
KORVO_API _korvo_errcode matflt_cast_to_s32(const _flt_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                            _s32_mat* out);
KORVO_API _korvo_errcode matdbl_cast_to_u8(const _dbl_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                           _u8_mat* out);
KORVO_API _korvo_errcode matdbl_cast_to_u16(const _dbl_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                            _u16_mat* out);
KORVO_API _korvo_errcode matdbl_cast_to_u32(const _dbl_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                            _u32_mat* out);
KORVO_API _korvo_errcode matdbl_cast_to_s16(const _dbl_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                            _s16_mat* out);
KORVO_API _korvo_errcode matdbl_cast_to_s32(const _dbl_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                            _s32_mat* out);
KORVO_API _korvo_errcode matdbl_cast_to_flt(const _dbl_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                            _flt_mat* out);
KORVO_API _korvo_errcode matcpx_cast_to_dbl(const _cpx_mat* in, uint8_t clip_or_not, void* intrp_ptr,
                                            _dbl_mat* out);
/** @} */

/** @name casts that always fit
 *  The exact value, or where flt cannot hold it the nearest; to cpx with 0 as imaginary part.
 *
 *  Cost 2 * `nelem`, to cpx 4 * `nelem`; polled once, after the work.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ. */
/** @{ */
KORVO_API _korvo_errcode matu8_cast_to_u16(const _u8_mat* in, void* intrp_ptr, _u16_mat* out);
KORVO_API _korvo_errcode matu8_cast_to_u32(const _u8_mat* in, void* intrp_ptr, _u32_mat* out);
KORVO_API _korvo_errcode matu8_cast_to_s16(const _u8_mat* in, void* intrp_ptr, _s16_mat* out);
KORVO_API _korvo_errcode matu8_cast_to_s32(const _u8_mat* in, void* intrp_ptr, _s32_mat* out);
KORVO_API _korvo_errcode matu8_cast_to_flt(const _u8_mat* in, void* intrp_ptr, _flt_mat* out);
KORVO_API _korvo_errcode matu8_cast_to_dbl(const _u8_mat* in, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode matu16_cast_to_u32(const _u16_mat* in, void* intrp_ptr, _u32_mat* out);
KORVO_API _korvo_errcode matu16_cast_to_s32(const _u16_mat* in, void* intrp_ptr, _s32_mat* out);
KORVO_API _korvo_errcode matu16_cast_to_flt(const _u16_mat* in, void* intrp_ptr, _flt_mat* out);
KORVO_API _korvo_errcode matu16_cast_to_dbl(const _u16_mat* in, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode matu32_cast_to_flt(const _u32_mat* in, void* intrp_ptr, _flt_mat* out);
KORVO_API _korvo_errcode matu32_cast_to_dbl(const _u32_mat* in, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode mats16_cast_to_s32(const _s16_mat* in, void* intrp_ptr, _s32_mat* out);
KORVO_API _korvo_errcode mats16_cast_to_flt(const _s16_mat* in, void* intrp_ptr, _flt_mat* out);
KORVO_API _korvo_errcode mats16_cast_to_dbl(const _s16_mat* in, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode mats32_cast_to_flt(const _s32_mat* in, void* intrp_ptr, _flt_mat* out);
KORVO_API _korvo_errcode mats32_cast_to_dbl(const _s32_mat* in, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode matflt_cast_to_dbl(const _flt_mat* in, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode matflt_cast_to_cpx(const _flt_mat* in, void* intrp_ptr, _cpx_mat* out);
KORVO_API _korvo_errcode matdbl_cast_to_cpx(const _dbl_mat* in, void* intrp_ptr, _cpx_mat* out);
/** @} */

/** out = real + i imag. One of the two may be null, which means 0 throughout. `out` is validated; they are not,
 *  only compared for shape, and a null `data` in them counts as no pointer.
 *
 *  Polled twice, after the real parts with a tally of `nelem` and at the end with 2 * `nelem`.
 *  - KORVO_ERR_NULL_POINTER: both are null, or one that is given has no data.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ. If only `imag` is given, the real parts are 0 by then. */
KORVO_API _korvo_errcode matdbl_to_complex(const _dbl_mat* real, const _dbl_mat* imag, void* intrp_ptr,
                                           _cpx_mat* out);

/** Takes a complex matrix apart. One of `real` and `imag` may be null. `in` is validated; they are not, only
 *  compared for shape with it.
 *
 *  Polled twice, with a tally of 2 * `nelem` both times, so that the second normally does not fire.
 *  - KORVO_ERR_NULL_POINTER: both are null, or one that is given has no data.
 *  - KORVO_ERR_ILLEGAL_SIZE: a shape differs. The real parts have been taken if it is that of `imag`. */
KORVO_API _korvo_errcode matcpx_to_double(const _cpx_mat* in, void* intrp_ptr, _dbl_mat* real, _dbl_mat* imag);

KORVO_END_DECLARATIONS

#endif

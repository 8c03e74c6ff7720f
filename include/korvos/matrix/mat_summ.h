/* SPDX-License-Identifier: MIT */
/** @file mat_summ.h  Summaries of a matrix: its range. */
#ifndef KORVOS_MATRIX_MAT_SUMM_H
#define KORVOS_MATRIX_MAT_SUMM_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** @name range
 *  The least and the greatest element. Starts from the first element and compares in storage order, so a NaN
 *  there stays in both results and a later one is passed over; of -0.0 and 0.0 the first met stays.
 *  The universal form gives scalars of the type of `in`.
 *
 *  Cost 3 * `nelem`, polled once, after the work; the results are set before the poll.
 *  - KORVO_ERR_NULL_POINTER: `minimum` or `maximum` is null. The codes of `validate` come first in the typed
 *    forms, and after it in the universal one; the results are then not written.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) there is no form for the type: cpx. */
/** @{ */
KORVO_API _korvo_errcode matu8_range(const _u8_mat* in, void* intrp_ptr, uint8_t* minimum, uint8_t* maximum);
KORVO_API _korvo_errcode matu16_range(const _u16_mat* in, void* intrp_ptr, uint16_t* minimum,
                                      uint16_t* maximum);
KORVO_API _korvo_errcode matu32_range(const _u32_mat* in, void* intrp_ptr, uint32_t* minimum,
                                      uint32_t* maximum);
KORVO_API _korvo_errcode mats16_range(const _s16_mat* in, void* intrp_ptr, int16_t* minimum, int16_t* maximum);
KORVO_API _korvo_errcode mats32_range(const _s32_mat* in, void* intrp_ptr, int32_t* minimum, int32_t* maximum);
KORVO_API _korvo_errcode matflt_range(const _flt_mat* in, void* intrp_ptr, float* minimum, float* maximum);
KORVO_API _korvo_errcode matdbl_range(const _dbl_mat* in, void* intrp_ptr, double* minimum, double* maximum);
KORVO_API _korvo_errcode matuniv_range(const _univ_mat* in, void* intrp_ptr, _univ_scalar* minimum,
                                       _univ_scalar* maximum);
/** @} */

KORVO_END_DECLARATIONS

#endif

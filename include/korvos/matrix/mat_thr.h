/* SPDX-License-Identifier: MIT */
/** @file mat_thr.h  Threshold: one value inside a range, another outside. */
#ifndef KORVOS_MATRIX_MAT_THR_H
#define KORVOS_MATRIX_MAT_THR_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** Sets each element of `out` to `inside` where `low` <= `in` <= `high`, and to `outside` elsewhere.
 *
 *  `in` is of any real type, and is compared as a double, so the limits need not be values of its type. A NaN
 *  lies outside every range; with `high` below `low` everything does. `out` has the size of `in` and the type
 *  of the two scalars, which may be any. It may be `in` itself if the types agree.
 *
 *  Cost 3 an element, polled after each 4096 elements and at the end.
 *  - KORVO_ERR_NULL_POINTER: `in` or `out` is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: a scalar is not of the type of `out`; or `in` is cpx; or `out`
 *    has no element type. The codes of `validate` come next.
 *  - KORVO_ERR_ILLEGAL_SIZE: the sizes differ.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: the matrices share their data and differ in type.
 *  - KORVO_ERR_ILLEGAL_VALUE: `low` or `high` is NaN. */
KORVO_API _korvo_errcode matuniv_threshold(const _univ_mat* in, double low, double high, _univ_scalar outside,
                                           _univ_scalar inside, void* intrp_ptr, _univ_mat* out);

KORVO_END_DECLARATIONS

#endif

/* SPDX-License-Identifier: MIT */
/** @file img_edge.h  Sobel gradient and edges. */
#ifndef KORVOS_SEGMENT_IMG_EDGE_H
#define KORVOS_SEGMENT_IMG_EDGE_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** The gradient by the masks of I. Sobel (1968), by imguniv_correlate() with SIG_BOUNDARY_ZERO, not divided by
 *  8:
 *
 *      column gradient  -1 0 1      row gradient  -1 -2 -1
 *                       -2 0 2                     0  0  0
 *                       -1 0 1                     1  2  1
 *
 *  The row gradient is the one along the row index and answers to horizontal edges. Both are positive where the
 *  image grows with the index; the image is taken to be 0 outside, so its frame is an edge too. `image` is of
 *  any type that can be cast to that of the outputs, which are dbl or cpx. No cost but that of the two
 *  correlations; the column gradient comes first.
 *
 *  - KORVO_ERR_NULL_POINTER: a matrix is null.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: the outputs are one record. Two records of one buffer are not refused, and the
 *    row gradient stays in it.
 *  - the codes of imguniv_correlate(). */
KORVO_API _korvo_errcode imguniv_gradient_sobel(const _univ_mat* image, void* intrp_ptr,
                                                _univ_mat* row_gradient, _univ_mat* column_gradient);

/** Edges where the Sobel gradient is large: `edge` marks them in `result`, `background` all else. Nothing thins
 *  them.
 *
 *  The square of the magnitude is compared with the squares of the thresholds, which are in units of
 *  imguniv_gradient_sobel(). If their squares are equal, all from `low` ^ 2 to 1e37 is an edge, both included.
 *  Else the edges are those of imguniv_threshold_hysteresis(), for which just `low` ^ 2 is no candidate.
 *
 *  `image` is of any real type. `result` is of any integer type or dbl, with equal squares of any type, and may
 *  be `image`. Two temporaries of the size of the image in dbl. No cost but that of the gradient, of two
 *  products and a sum, and of the threshold or the hysteresis. Checks, in order:
 *
 *  - KORVO_ERR_NULL_POINTER: `image` or `result` is null.
 *  - the codes of `validate` for `image`.
 *  - KORVO_ERR_ILLEGAL_VALUE: `high` is less than `low`, `low` is not positive, or one is NaN.
 *  - the codes of the gradient, and then of matuniv_threshold(), which takes `edge` and `background` that are
 *    equal, or of imguniv_threshold_hysteresis(), which does not. */
KORVO_API _korvo_errcode imguniv_edge_sobel(const _univ_mat* image, double low, double high, _univ_scalar edge,
                                            _univ_scalar background, void* intrp_ptr, _univ_mat* result);

KORVO_END_DECLARATIONS

#endif

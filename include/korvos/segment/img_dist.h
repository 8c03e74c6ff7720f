/* SPDX-License-Identifier: MIT */
/** @file img_dist.h  Distance transform. */
#ifndef KORVOS_SEGMENT_IMG_DIST_H
#define KORVOS_SEGMENT_IMG_DIST_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** How the distance between the centres of two pixels is measured. */
enum {
  IMG_METRIC_EUCLIDEAN = 0,  /**< sqrt(dr * dr + dc * dc) */
  IMG_METRIC_CITY_BLOCK = 1, /**< |dr| + |dc|: steps to the 4 neighbours */
  IMG_METRIC_CHESSBOARD = 2  /**< max(|dr|, |dc|): steps to the 8 neighbours */
};

/** Distance from each pixel to the nearest feature pixel, one that equals `feature`: 0 on those, 1e37
 *  everywhere if there is none. The distances are exact: squares are whole numbers until the one square root at
 *  the end.
 *
 *  `image` is of any real type, `feature` of its type (a NaN equals nothing), `out` dbl of the same size. A
 *  pass down and up the columns, then the lower envelope along each row; the time is linear in the pixels (A.
 *  Meijster, J. Roerdink, W. Hesselink, "A general algorithm for computing distance transforms in linear time",
 *  2000). Cost 4 * columns a row of the first pass, 20 * columns a row of the second, polled after each row.
 *  - KORVO_ERR_NULL_POINTER: `image` or `out` is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: `out` is not dbl, `feature` is not of the type of `image`, or that is cpx. The
 *    codes of `validate` come next.
 *  - KORVO_ERR_ILLEGAL_SIZE: the sizes differ.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `image` and `out` share their data.
 *  - KORVO_ERR_ILLEGAL_VALUE: `metric` is none of the three.
 *  - KORVO_ERR_MALLOC: no memory for four rows of work space. */
KORVO_API _korvo_errcode imguniv_transform_distance(const _univ_mat* image, int32_t metric,
                                                    _univ_scalar feature, void* intrp_ptr, _univ_mat* out);

KORVO_END_DECLARATIONS

#endif

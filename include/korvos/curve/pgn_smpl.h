/* SPDX-License-Identifier: MIT */
/** @file pgn_smpl.h  Resampling of polygons. */
#ifndef KORVOS_CURVE_PGN_SMPL_H
#define KORVOS_CURVE_PGN_SMPL_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** Resamples `polygon` at equal distances along its contour: as many vertices as `out` has rows, each
 *  interpolated linearly between its two neighbours on the contour. Both are dbl of 2 columns, x and y. The
 *  first vertex is that of `polygon`. Of an open contour the last is too; a closed one (`closed` not 0) goes on
 *  from the last vertex to the first, and n vertices part it into n pieces of one length. A contour without
 *  length gives its first vertex n times.
 *
 *  Cost 10 a vertex of `polygon`, then 20 a vertex of `out`, polled after each of the two passes.
 *  - KORVO_ERR_NULL_POINTER: `polygon` or `out` is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: one is not dbl. The codes of `validate` come next.
 *  - KORVO_ERR_ILLEGAL_SIZE: one has not 2 columns.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: the two share their data.
 *  - KORVO_ERR_ILLEGAL_VALUE: the length is not finite, as with a coordinate that is NaN or infinite. */
KORVO_API _korvo_errcode pgnuniv_resample_linear(const _univ_mat* polygon, uint8_t closed, void* intrp_ptr,
                                                 _univ_mat* out);

KORVO_END_DECLARATIONS

#endif

/* SPDX-License-Identifier: MIT */
/** @file wav_wtmm.h  Modulus maxima of a wavelet transform. */
#ifndef KORVOS_WAVELET_WAV_WTMM_H
#define KORVOS_WAVELET_WAV_WTMM_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** Marks where the modulus of a transform has a local maximum along time. `transform` (KORVO_DOUBLE) has one
 *  scale to a row, the coarsest last, and one instant to a column; `mask` (KORVO_SINT32) gets 1 at a maximum
 *  and 0 elsewhere.
 *
 *      mask(r, j) = 1  if  |w(r, j - 1)| + tolerance < |w(r, j)|  and  |w(r, j)| > |w(r, j + 1)| + tolerance
 *
 *  Comparisons are strict: a flat top has no mark, and NaN makes none beside it. `tolerance`, in the unit of
 *  the transform, is what a maximum must stand out by; it may be negative. In the first and the last column
 *  there is no mark if `include_ends` is 0; with any other value only the one neighbour is tested. The element
 *  that follows the first one of a row is taken from the data as they lie, so that with a single column it is
 *  the next row's; the very last element has none and is not marked.
 *
 *  `mask` must have as many elements as `transform`; its shape is not compared, and it is filled as a flat run.
 *  After each row the tally is set to 3 * columns, not added to, and polled; rows already done stay.
 *
 *  - KORVO_ERR_NULL_POINTER: a matrix is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: `transform` is not KORVO_DOUBLE, or `mask` not KORVO_SINT32.
 *  - the codes of matuniv_validate() for `transform`, `mask`.
 *  - KORVO_ERR_ILLEGAL_SIZE: the numbers of elements differ.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: the two are one buffer.
 *
 *  Method: S. Mallat and W. L. Hwang, Singularity detection and processing with wavelets, 1992. */
KORVO_API _korvo_errcode wavuniv_transform_modulus_maxima(const _univ_mat* transform, double tolerance,
                                                          uint8_t include_ends, void* intrp_ptr,
                                                          _univ_mat* mask);

KORVO_END_DECLARATIONS

#endif

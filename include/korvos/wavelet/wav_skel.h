/* SPDX-License-Identifier: MIT */
/** @file wav_skel.h  Skeleton of a wavelet transform: modulus maxima linked across scales. */
#ifndef KORVOS_WAVELET_WAV_SKEL_H
#define KORVOS_WAVELET_WAV_SKEL_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** Links the marks of `mask`, the elements above 0 of a KORVO_SINT32 matrix as
 *  wavuniv_transform_modulus_maxima() makes it, from the coarsest scale, the last of its R rows, to the finest:
 *  the ridge lines of the transform. Time is circular with the period of its C columns.
 *
 *  Rows are taken from the last to the first. The chains so far, in their order, seek a mark of the row as
 *  localfn_wav_seek_chain() tells, no further away than the integer part of
 *
 *      2^(-((R - r) / voices)) * C * 0.5                   in row r, with an integer division
 *
 *  where `voices`, at least 1, is the number of scales to the octave: the jump allowed halves with each octave.
 *  A chain that finds none ends, and a mark that no chain took begins a new one, from the left, behind those
 *  that are there: localfn_wav_grow_chain_set(). So each mark belongs to one chain, and a single mark may be a
 *  chain.
 *
 *  `points` and `lengths` are KORVO_SINT32 matrices that own their buffers, and are resized by
 *  matuniv_realloc(), once all chains are known:
 *
 *      points    a row for each mark: row and column of it in `mask`; chain after chain, each from its
 *                coarsest to its finest point
 *      lengths   a row for each chain: how many points it has
 *
 *  Chains that begin at a coarser scale come first, and those that begin in one row come from the left. Without
 *  any mark both have one row: (-1, -1) and 0.
 *
 *  With 3 voices:
 *
 *      row 0   . . 1 . . 1 .            points   2 3   1 3   0 2   0 5        lengths   3
 *      row 1   . . . 1 . . .                     (a row for each pair)                  1
 *      row 2   . . . 1 . . .
 *
 *  Polls are those of the two routines, and after each row one with the tally set to 3 * C, not added to. Time
 *  is at most R * C + (chains of each row) * C.
 *
 *  - KORVO_ERR_NULL_POINTER: a matrix is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: a matrix is not KORVO_SINT32.
 *  - the codes of matuniv_validate() for the matrices.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: two of the matrices are one buffer.
 *  - KORVO_ERR_ILLEGAL_VALUE: `voices` is below 1.
 *  - KORVO_ERR_MALLOC: no memory for a temporary.
 *  - KORVO_ERR_INTERRUPT: the host asked to stop. The results are as they were up to here.
 *  - KORVO_ERR_MALLOC, KORVO_ERR_ILLEGAL_VALUE: a result cannot be resized and is good for `free` only; see
 *    matuniv_realloc().
 *
 *  Method: S. Mallat and W. L. Hwang, Singularity detection and processing with wavelets, 1992. */
KORVO_API _korvo_errcode wavuniv_transform_modulus_maxima_skeleton(const _univ_mat* mask, int32_t voices,
                                                                   void* intrp_ptr, _univ_mat* points,
                                                                   _univ_mat* lengths);

KORVO_END_DECLARATIONS

#endif

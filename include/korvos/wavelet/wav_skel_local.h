/* SPDX-License-Identifier: MIT */
/** @file wav_skel_local.h  The two steps of chaining modulus maxima: linking to a row, and growing the set.
 *
 *  Works on KORVO_SINT32 matrices only. Marks are the elements above 0 of a mask with one scale to a row and C
 *  instants to a row. A set of K chains is two matrices, `tips` and `origins`, with a column for each chain:
 *
 *      tips     row 0  the instant where the chain has come to         0 to C - 1, or -1 for a dead chain
 *               row 1  the instant it goes on to in the row sought     written by seek: -1 if the chain dies
 *      origins  row 0  the instant where the chain began
 *               row 1  -1 if the chain dies in the row sought          written by seek for those only
 *
 *  One round over a row r, with two chains at 7 and 20 and one that begins at 33:
 *
 *      tips  7 20    localfn_wav_seek_chain(), row r      tips  7 20
 *            .  .    marks at 9 and 33, 20 finds none           9 -1
 *      localfn_wav_grow_chain_set() with new tip 33       tips  9 33
 *      matuniv_realloc(&tips, 2, tips.ncol)               tips  9 33
 *                                                               .  .      ready for row r - 1
 *
 *  wavuniv_transform_modulus_maxima_skeleton() does all of it. */
#ifndef KORVOS_WAVELET_WAV_SKEL_LOCAL_H
#define KORVOS_WAVELET_WAV_SKEL_LOCAL_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** Links each chain, in their order, to a mark of row `row` of `mask`, or lets it die. Time is circular.
 *
 *  For a chain at `pos`, `best` begins at `pos` and the best distance at 2 * C. The marks of the row are
 *  visited from left to right: one at c, with e = c - best, has the distance min(|e|, |C + e|, |e - C|), and if
 *  that is below the best distance, c becomes `best`. So the leftmost wins a tie, and distances are measured
 *  from the mark that is best so far, not from `pos`.
 *
 *  A chain dies if no chain has seen a mark in this call yet, or if its best distance exceeds
 *  `maximum_distance`: chain_map(row, pos) and row 1 of its tips and origins become -1. Otherwise it is linked:
 *  mask(row, best) becomes -1, so that no other chain takes it, chain_map(row, pos) and row 1 of its tips
 *  become `best`, and `*linked`, which the caller sets to 0 first, grows by 1. A dead chain stays dead: row 1
 *  of its tips and origins becomes -1, and nothing else happens for it.
 *
 *  `tips` and `origins` have two rows and a column for each chain; `chain_map` has the shape of `mask`. After
 *  each chain that was not dead before the tally is set to 3 * best, not added to, and polled. Time is at most
 *  chains * C.
 *
 *  - KORVO_ERR_NULL_POINTER: a matrix or `linked` is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: a matrix is not KORVO_SINT32.
 *  - the codes of matuniv_validate() for the matrices.
 *  - KORVO_ERR_ILLEGAL_SIZE: `chain_map` has not the shape of `mask`; `tips` or `origins` has not two rows, or
 *    they differ in columns.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: two of the matrices are one buffer.
 *  - KORVO_ERR_OUT_OF_BOUNDS: there is no row `row`, or a tip is neither -1 nor from 0 to C - 1.
 *  - KORVO_ERR_ILLEGAL_VALUE: `maximum_distance` is NaN. Nothing has been written up to here.
 *  - KORVO_ERR_INTERRUPT: the host asked to stop; chains already visited keep what was written. */
KORVO_API _korvo_errcode localfn_wav_seek_chain(_univ_mat* mask, _univ_mat* tips, _univ_mat* origins,
                                                _univ_mat* chain_map, int32_t row, double maximum_distance,
                                                void* intrp_ptr, int32_t* linked);

/** Drops the dead chains of a set, moves the others to the front in their order, and puts new chains after
 *  them. `tips` and `origins` own their buffers and are resized, by matuniv_realloc(), to one row with room for
 *  the kept and the new chains together.
 *
 *  A chain is kept if the last row of `tips` is not -1 for it: row 1 after a search, row 0 if there is but one.
 *  Its tip is taken from that row, its origin from row 0. `new_tips` and `new_origins` have one row each and
 *  may be one buffer. They are put in place by matuniv_assign_submat(), which polls once for each.
 *
 *  - KORVO_ERR_NULL_POINTER: a matrix is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: a matrix is not KORVO_SINT32.
 *  - the codes of matuniv_validate() for the matrices.
 *  - KORVO_ERR_ILLEGAL_SIZE: `tips` and `origins`, or `new_tips` and `new_origins`, differ in columns; the
 *    former have more than two rows, or the latter more than one.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `tips` or `origins` is the buffer of another of the matrices.
 *  - KORVO_ERR_MALLOC, KORVO_ERR_ILLEGAL_VALUE: the set cannot be resized; see matuniv_realloc(). Both matrices
 *    are then good for `free` only.
 *  - KORVO_ERR_INTERRUPT: the host asked to stop; the set has its new size, and not all of the new chains. */
KORVO_API _korvo_errcode localfn_wav_grow_chain_set(const _univ_mat* new_tips, const _univ_mat* new_origins,
                                                    void* intrp_ptr, _univ_mat* tips, _univ_mat* origins);

KORVO_END_DECLARATIONS

#endif

/* SPDX-License-Identifier: MIT */
/** @file cls_gla.h  Design of vector quantisers: a codebook is refined, or grown by splitting.
 *
 *  A training set has one vector a row, of any real type; what is not dbl is cast to a temporary. A codebook
 *  has one codeword a row and is dbl. The distortion is the mean over all training vectors of the squared
 *  Euclidean distance to the nearest codeword: by vector, not by element. The cell of a codeword are the
 *  training vectors nearest to it.
 *
 *  Both routines rest on the generalised Lloyd algorithm (Linde, Buzo and Gray, 1980). Each iteration finds
 *  the cells and ends the design, without changing the codebook again, when the distortion is 0 or when it
 *  falls by less than `threshold` of itself. Else each codeword becomes the mean of its cell. While there are
 *  empty cells, the means of the occupied ones become the first codewords, in descending order of the cells'
 *  distortion, and the others perturbed copies of the first. After ten such attempts in a row the design ends
 *  as it stands, which is a success. Codewords whose cells are empty in the end are dropped, so fewer may
 *  result than were asked for.
 *
 *  In perturbation an element x moves away from 0, with u uniform in [0, 1) from `rand_ptr` (see ut_rand.h):
 *  to x * (1 + u * multiplicative) where |x| is at least 0.9 * additive, else by u * additive; a 0 becomes
 *  u * additive. The scales are those given, halved with each attempt. Elements are taken in their order, one
 *  number each.
 *
 *  `search_mode` says how the nearest codeword is found:
 *
 *  - 0: among all, abreast. Of codewords at the same distance the lowest row wins.
 *  - 1: among those whose norm is as near to that of the vector as the best so far allows (Huang, Bi, Stiles
 *    and Harris, 1992). Of codewords at the same distance the one of lower norm wins, as a rule.
 *  - 2: the same, without those that a table of K * K distances between codewords rules out (Vidal, 1986).
 *
 *  Without such ties the three differ in time only, as far as rounding goes: the norms of modes 1 and 2 must
 *  be exact enough to tell distances apart, and their squares must be finite.
 *
 *  `codebook`, `populations` and `cell_distortions` own their buffers: they are reallocated to the number of
 *  codewords kept where that differs. `populations` (KORVO_SINT32) and `cell_distortions` (KORVO_DOUBLE, the
 *  mean squared distance in each cell) are single columns, as long as the codebook; they and `distortion` may
 *  be null, and they are written at the end only. After any failure the codebook is partly designed, at the
 *  number of rows it had reached. Where it is KORVO_ERR_MALLOC, each of the three records may state a size
 *  that it has no memory for, as `realloc` leaves it, and is then good for `free` only.
 *
 *  Memory, allocated before anything is written: the codebook once or twice, a few numbers a codeword, in
 *  mode 2 the table; the cast training set. Each search is a tally of its own from 0: the elements of the
 *  codebook, in mode 1 ten times that, polled once at the end of the pass over the training set. A
 *  cast of the training set and the copy of a codebook poll as matuniv_cast() and matuniv_assign() do.
 *
 *  Checks, in order:
 *
 *  - the codes of matuniv_validate() for `training`, `initial`, `codebook`.
 *  - KORVO_ERR_ILLEGAL_TYPE: `initial` or `codebook` is not dbl; `training` is cpx.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes of `initial` and `codebook`, or the columns of `training` and
 *    `codebook` differ.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `codebook` is the buffer of `training`.
 *  - KORVO_ERR_ILLEGAL_VALUE: `threshold`, `additive_scale` or `multiplicative_scale` is not above 0.
 *  - `populations`, then `cell_distortions`, unless null: the codes of matuniv_validate();
 *    KORVO_ERR_ILLEGAL_TYPE; KORVO_ERR_ILLEGAL_SIZE: not a column with as many rows as `codebook`.
 *  - KORVO_ERR_ILLEGAL_VALUE: `search_mode` is not 0, 1 or 2.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `populations` or `cell_distortions` is the buffer of another matrix.
 *
 *  Then:
 *
 *  - KORVO_ERR_MALLOC: no memory.
 *  - KORVO_ERR_OVERFLOW: a training vector has no codeword at a squared distance below 1e37, or one with a
 *    NaN has none at all.
 *  - KORVO_ERR_NOT_CONVERGING: the distortion has risen.
 *  - KORVO_ERR_NULL_POINTER: a random number is needed, and `rand_ptr` is null.
 *  - KORVO_ERR_INTERRUPT: the host asked to stop. */
#ifndef KORVOS_CLASSIFY_CLS_GLA_H
#define KORVOS_CLASSIFY_CLS_GLA_H

#include "korvos/core/mat_set.h"

KORVO_BEGIN_DECLARATIONS

/** Refines the codebook `initial`, which is copied to `codebook` with matuniv_assign(). The two may be one
 *  matrix; a second record of the same buffer does not learn of a reallocation. */
KORVO_API _korvo_errcode clsuniv_vector_quantizer_design_gla(
    const _univ_mat* training, const _univ_mat* initial, double threshold, double additive_scale,
    double multiplicative_scale, int32_t search_mode, void* intrp_ptr, void* rand_ptr, _univ_mat* codebook,
    double* distortion, _univ_mat* populations, _univ_mat* cell_distortions);

/** Grows a codebook of as many codewords as `codebook` has rows; what is in it is ignored. It begins with
 *  the vector 0, which moves to the mean of the training set. Each codebook is refined, and then perturbed
 *  copies of the first codewords join it, until it has twice as many or as many as wanted. It grows no further
 *  when cells stay empty or the distortion is 0. */
KORVO_API _korvo_errcode clsuniv_vector_quantizer_design_lbg(const _univ_mat* training, double threshold,
                                                             double additive_scale, double multiplicative_scale,
                                                             int32_t search_mode, void* intrp_ptr,
                                                             void* rand_ptr, _univ_mat* codebook,
                                                             double* distortion, _univ_mat* populations,
                                                             _univ_mat* cell_distortions);

KORVO_END_DECLARATIONS

#endif

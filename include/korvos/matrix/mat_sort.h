/* SPDX-License-Identifier: MIT */
/** @file mat_sort.h  Sorting: elements in ascending order, and the index that brings them there. */
#ifndef KORVOS_MATRIX_MAT_SORT_H
#define KORVOS_MATRIX_MAT_SORT_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** @name sort_index
 *  The order of the elements of `in`: `index` becomes the permutation of 0, 1, ..., `nelem` - 1 with which
 *  in[index[k]] does not fall as k rises. Equal elements keep the order in which they are stored; a NaN counts
 *  as greater than every number.
 *
 *  The partial form need not order everything: with `positions`, a list of places of any shape, index[p] is
 * what the full order would have there for each p of the list, what is before it is not greater and what is
 * after it is not less. Without it (null) everything is ordered. A median is a list of one place.
 *
 *  Merge sort, or selection by repeated partition (C. A. R. Hoare, "Algorithm 65: Find", 1961; worst case
 * linear times logarithmic: D. Musser, 1997). Cost 10 an element of each run that is sorted, merged or
 * searched, polled after each.
 *  - The codes of `validate` for `in`, `index` and `positions` come first.
 *  - KORVO_ERR_ILLEGAL_SIZE: `in` and `index` differ in size.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `index` shares its data with `in` or `positions`.
 *  - KORVO_ERR_OUT_OF_BOUNDS: a position is not in 0 to `nelem` - 1.
 *  - KORVO_ERR_MALLOC: no memory for a second index, or for a copy of the positions. */
/** @{ */
KORVO_API _korvo_errcode matdbl_sort_index_partial(const _dbl_mat* in, const _s32_mat* positions,
                                                   void* intrp_ptr, _s32_mat* index);
/** @} */

/** Stores the elements of `in`, of any real type, in `out` in ascending order, NaN last: `out`, of the same
 * shape and type, is filled in storage order. Equal elements keep their order, which only -0.0 and 0.0 show.
 *
 *  Cost as above, and 2 an element for the permutation, polled once.
 *  - KORVO_ERR_NULL_POINTER: `in` or `out` is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: the types differ, or are cpx. The codes of `validate` come next.
 *  - KORVO_ERR_ILLEGAL_SIZE: the sizes differ.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: the two share their data.
 *  - KORVO_ERR_MALLOC: no memory for the index. */
KORVO_API _korvo_errcode matuniv_sort(const _univ_mat* in, void* intrp_ptr, _univ_mat* out);

KORVO_END_DECLARATIONS

#endif

/* SPDX-License-Identifier: MIT */
/** @file mat_tile.h  A set and the one matrix that holds its elements interleaved. */
#ifndef KORVOS_MATRIX_MAT_TILE_H
#define KORVOS_MATRIX_MAT_TILE_H

#include "korvos/core/mat_set.h"

KORVO_BEGIN_DECLARATIONS

/** @name tile, untile
 *  A set of one dimension n counts as a grid of 1 by n matrices, one of two dimensions d0, d1 as a grid of d0
 *  by d1. Every element of the tiled matrix's d0-by-d1 blocks comes from the matrix at its place in the grid:
 *  element (r, c) of matrix (i, j) lies at (d0 * r + i, d1 * c + j). So three colour planes and a matrix of
 *  pixels are turned into each other: sample k of pixel (r, c) lies at (r, 3 * c + k).
 *
 *  matset_tile() fills `out` from the set, matset_untile() the matrices of `set` from `in`. Elements are moved
 *  as they are; there are forms for all eight types. The matrices of a set that is written lie apart from one
 *  another.
 *
 *  Cost 8 * (columns of the tiled matrix) for each of its rows, polled after each.
 *  - KORVO_ERR_NULL_POINTER: `set`, or `out` or `in`, is null.
 *  - otherwise the codes of matset_verify_allsame(), and those of `validate` for each matrix of the set and for
 *    `out` or `in`, in this order.
 *  - KORVO_ERR_ILLEGAL_TYPE: the types of the set and of the tiled matrix differ.
 *  - KORVO_ERR_ILLEGAL_SIZE: the set has more than two dimensions, or the tiled matrix is not d0 times as many
 *    rows and d1 times as many columns as a matrix of the set.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: the tiled matrix shares its data with a matrix of the set. */
/** @{ */
KORVO_API _korvo_errcode matset_tile(const _mat_set* set, void* intrp_ptr, _univ_mat* out);
KORVO_API _korvo_errcode matset_untile(const _univ_mat* in, void* intrp_ptr, _mat_set* set);
/** @} */

KORVO_END_DECLARATIONS

#endif

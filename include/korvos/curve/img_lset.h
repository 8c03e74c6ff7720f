/* SPDX-License-Identifier: MIT */
/** @file img_lset.h  Minimal paths by a propagating front. */
#ifndef KORVOS_CURVE_IMG_LSET_H
#define KORVOS_CURVE_IMG_LSET_H

#include "korvos/core/mat_univ.h"
#include "korvos/curve/pgn_regn.h"

KORVO_BEGIN_DECLARATIONS

/** A potential that is low along edges: the distance, in pixels, from each pixel of `image` to the nearest edge
 *  that imguniv_edge_canny() finds with `sigma`, `low` and `high`; 0 on edges, 1e37 everywhere if there is
 *  none. `image` is of any type that routine takes, `out` dbl of the same size; it may be `image` itself.
 *
 *  Polls are those of imguniv_edge_canny() and imguniv_transform_distance().
 *  - KORVO_ERR_NULL_POINTER: `image` or `out` is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: `out` is not dbl, or `image` has no edges to find (cpx). The codes of `validate`
 *    come next.
 *  - KORVO_ERR_ILLEGAL_SIZE: the sizes differ.
 *  - KORVO_ERR_ILLEGAL_VALUE: as imguniv_edge_canny() has it of `sigma`, `low`, `high` and the image's size.
 *  - KORVO_ERR_MALLOC: no memory for the edges, or for what the two routines need. */
KORVO_API _korvo_errcode imguniv_potential_canny(const _univ_mat* image, double sigma, double low, double high,
                                                 void* intrp_ptr, _univ_mat* out);

/** The arrival times of a front that starts from one pixel and spends `potential` on each pixel that it
 *  crosses: the level set of which paths of least cost are the lines of steepest descent. `potential` and `out`
 *  are dbl of one size. The start pixel has level 0; one that the front does not reach would have 1e37.
 *
 *  Fast marching on the 4 neighbours (J. Sethian, "A fast marching level set method for monotonically advancing
 *  fronts", 1996): the pixel of the least level is frozen, and each neighbour that is not frozen is solved
 *  anew. With P its potential, a the smaller level of its neighbours above and below, b that of those to its
 *  left and right, counting those that the front has touched, its level becomes
 *
 *      T = a + P if a + P < b;  b + P if b + P < a;  else 0
 *      T = max(T, (a + b) / 2 + sqrt(P * P / 2 - (a - b) * (a - b) / 4))   if both are known and the root is
 *  real
 *
 *  which replaces its old level even if it is larger. A pixel of row 1 does not look at row 0, nor one of
 *  column 1 at column 0; so a start in the first row or column of an image that has more than one of them is
 *  refused, as soon as the neighbour below or to the right finds no level to start from.
 *
 *  The front is a binary heap of rows * columns / 4 entries, to which a pixel that is solved again is pushed
 *  again. Time grows with n log n. Cost 52 a solution, and half the number of entries for each push (with the
 *  new one) and pop (with the one that is taken); polled at each.
 *  - KORVO_ERR_NULL_POINTER: a matrix is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: one is not dbl. The codes of `validate` come next.
 *  - KORVO_ERR_ILLEGAL_SIZE: the sizes differ.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: the two share their data.
 *  - KORVO_ERR_ILLEGAL_VALUE: the start is outside the image, or a pixel has no neighbour to be solved from.
 *  - KORVO_ERR_ILLEGAL_SIZE: the front outgrows the heap; always with fewer than 4 pixels.
 *  - KORVO_ERR_MALLOC: no memory for the labels of the pixels or for the heap. */
KORVO_API _korvo_errcode imguniv_minpath_levelset_from_potential(const _univ_mat* potential, int32_t start_row,
                                                                 int32_t start_col, void* intrp_ptr,
                                                                 _univ_mat* out);

/** @name minpath
 *  The path of least cost between two pixels: from a level set of the front that began at the start pixel, or
 *  from the potential itself, of which the level set is then made in a temporary.
 *
 *  The path is traced from the end pixel: each step goes to the lowest of the 4 neighbours that it has not
 *  visited and whose level is below 1e37; of equal ones up comes before left, right and down. Where there is
 *  none the path jumps to the start and ends, with a link of direction 6 and length 1 whichever way that lies:
 *  so ends the path from a pixel that the front did not reach.
 *
 *  `chain` receives the path from the end pixel to the start pixel, in directions 0 (right), 2 (down), 4 (left)
 *  and 6 (up). `polygon` receives a vertex at its beginning and one at the end of each link, at the centres of
 *  pixels: links + 1 by 2, dbl, **the row in column 0 and the column in column 1**, unlike the polygons of
 *  pgn_regn.h. Either may be null, not both. Both are allocated here and belong to the caller, and are left
 *  empty on failure. With start and end the same pixel the chain has no link and the polygon one vertex.
 *
 *  Cost 130 a step, polled at each, then 10 a link of the polygon, polled at each.
 *  - KORVO_ERR_NULL_POINTER: the matrix is null, or `chain` and `polygon` are.
 *  - KORVO_ERR_ILLEGAL_TYPE: the matrix is not dbl. The codes of `validate` come next.
 *  - KORVO_ERR_ILLEGAL_VALUE: the start or the end is outside the image.
 *  - (from a potential) the codes of imguniv_minpath_levelset_from_potential().
 *  - KORVO_ERR_MALLOC: no memory for a map of the pixels, for the path, or for the level set. */
/** @{ */
KORVO_API _korvo_errcode imguniv_minpath_from_levelset(const _univ_mat* levelset, int32_t start_row,
                                                       int32_t start_col, int32_t end_row, int32_t end_col,
                                                       void* intrp_ptr, pgn_chain* chain, _univ_mat* polygon);
KORVO_API _korvo_errcode imguniv_minpath_from_potential(const _univ_mat* potential, int32_t start_row,
                                                        int32_t start_col, int32_t end_row, int32_t end_col,
                                                        void* intrp_ptr, pgn_chain* chain, _univ_mat* polygon);
/** @} */

KORVO_END_DECLARATIONS

#endif

/* SPDX-License-Identifier: MIT */
/** @file pgn_regn.h  Chains and polygons: boundary tracing, conversion, area and line rendering.
 *
 *  A polygon is a dbl matrix of 2 columns with a vertex a row: column 0 is x, the image column, column 1 is y,
 *  the image row. Pixel (r, c) is the unit square centred on x = c, y = r, and y grows downward. */
#ifndef KORVOS_CURVE_PGN_REGN_H
#define KORVOS_CURVE_PGN_REGN_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** Run-length chain of pixels: each link is a step in its direction, repeated. It owns both arrays. Directions
 *  go clockwise on the screen (H. Freeman, 1961):
 *
 *      5 6 7
 *      4   0
 *      3 2 1
 *
 *  A traced chain is closed: its links lead back to the start pixel, and none is stored beyond them. */
typedef struct pgn_chain {
  int32_t start_row, start_col; /**< the first pixel */
  int32_t num_links;            /**< 0 for an empty chain, whose arrays are null */
  int32_t* run_lengths;         /**< steps of each link, at least 1 */
  int8_t* directions;           /**< of each link, 0 to 7 */
} pgn_chain;

static_assert(offsetof(pgn_chain, num_links) == 8 && offsetof(pgn_chain, run_lengths) == 16 &&
                  offsetof(pgn_chain, directions) == 16 + sizeof(void*) &&
                  sizeof(pgn_chain) == 16 + 2 * sizeof(void*),
              "layout of the chain");

/** @name chain
 *  Makes a chain with room for `num_links` links, not cleared, changes that number, gives both arrays back.
 *  With 0 links malloc makes an empty record and realloc frees; on an empty record realloc allocates. The start
 *  pixel is left alone. What free leaves is an empty record; for it a null or an empty chain is no error.
 *
 *  - KORVO_ERR_NULL_POINTER: (malloc, realloc) `chain` is null.
 *  - KORVO_ERR_ILLEGAL_VALUE: (malloc, realloc) `num_links` is negative; nothing has changed.
 *  - KORVO_ERR_MALLOC: no memory. After malloc the record is empty; after realloc it is good to be used and
 *    freed, with as many links as both its old and its new number allow. */
/** @{ */
KORVO_API _korvo_errcode pgn_chain_malloc(pgn_chain* chain, int32_t num_links);
KORVO_API _korvo_errcode pgn_chain_realloc(pgn_chain* chain, int32_t num_links);
KORVO_API _korvo_errcode pgn_chain_free(pgn_chain* chain);
/** @} */

/** @name boundary_chain_from_region
 *  Traces the boundary of a region, the 8-connected set of pixels with exactly the value of the seed at `row`,
 *  `col`, clockwise: at each pixel its neighbours are tried in their order from the one that follows the last
 *  step's background (Moore neighbour tracing; T. Pavlidis, "Algorithms for Graphics and Image Processing",
 *  1982).
 *
 *  The start pixel is the left end of the seed's run in its row. There the trace is done when it finds the
 *  direction of its first link again: a thin region passes its start pixel more than once. What is left of the
 *  start may be a hole of the region, and then the hole is traced. A pixel without neighbours, as any NaN is,
 *  has an empty chain. Nothing is read of `chain`.
 *
 *  Cost 50 a step, polled once, at the end.
 *  - KORVO_ERR_NULL_POINTER: `image` or `chain` is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) the image is none of u8, u16, u32, s32, dbl. The codes of `validate`
 *    come next.
 *  - KORVO_ERR_ILLEGAL_VALUE: the seed lies outside the image.
 *  - KORVO_ERR_MALLOC, KORVO_ERR_INTERRUPT: no memory for the links; the host asked to stop. The chain is
 *    empty. */
/** @{ */
KORVO_API _korvo_errcode pgnu8_boundary_chain_from_region(const _u8_mat* image, int32_t row, int32_t col,
                                                          void* intrp_ptr, pgn_chain* chain);
KORVO_API _korvo_errcode pgnu16_boundary_chain_from_region(const _u16_mat* image, int32_t row, int32_t col,
                                                           void* intrp_ptr, pgn_chain* chain);
KORVO_API _korvo_errcode pgnu32_boundary_chain_from_region(const _u32_mat* image, int32_t row, int32_t col,
                                                           void* intrp_ptr, pgn_chain* chain);
KORVO_API _korvo_errcode pgns32_boundary_chain_from_region(const _s32_mat* image, int32_t row, int32_t col,
                                                           void* intrp_ptr, pgn_chain* chain);
KORVO_API _korvo_errcode pgndbl_boundary_chain_from_region(const _dbl_mat* image, int32_t row, int32_t col,
                                                           void* intrp_ptr, pgn_chain* chain);
KORVO_API _korvo_errcode pgnuniv_boundary_chain_from_region(const _univ_mat* image, int32_t row, int32_t col,
                                                            void* intrp_ptr, pgn_chain* chain);
/** @} */

/** @name boundary_chain_to_polygon
 *  The polygon around the pixels of a traced chain, clockwise along the corners of pixels, without a repeated
 *  vertex. Diagonal runs become stairs; an empty chain becomes the square of its start pixel.
 *
 *  `polygon` is made here: nothing but the type of the universal form, which must be dbl, is read of it.
 *
 *  Cost 50 a link, polled after each.
 *  - KORVO_ERR_NULL_POINTER: `chain` or `polygon` is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) `polygon` is not dbl.
 *  - KORVO_ERR_ILLEGAL_VALUE: the number of links is negative.
 *  - KORVO_ERR_NULL_POINTER: the chain has links and not both arrays.
 *  - KORVO_ERR_ILLEGAL_VALUE: a direction is outside 0 to 7, a run is shorter than 1, a link turns back to the
 *    left as no trace does, or no link turns.
 *  - KORVO_ERR_MALLOC: no memory for the polygon.
 *
 *  After a failure to convert the links the polygon has been freed and its record is 0. */
/** @{ */
KORVO_API _korvo_errcode pgndbl_boundary_chain_to_polygon(const pgn_chain* chain, void* intrp_ptr,
                                                          _dbl_mat* polygon);
KORVO_API _korvo_errcode pgnuniv_boundary_chain_to_polygon(const pgn_chain* chain, void* intrp_ptr,
                                                           _univ_mat* polygon);
/** @} */

/** @name render_region
 *  Each pixel of `result` becomes the signed area of the polygon within it, by exact formulas, no sampling: 1
 *  for a pixel wholly covered by a polygon that goes clockwise on the screen, -1 by one that goes the other
 *  way, and what overlaps adds up. Parts of the polygon beyond the image are cut off without loss.
 *
 *  Row by row each edge adds, in the order of its first vertex, the area between itself and the right end of
 *  the row. One rule is settled and not exact: where an edge that falls to the left (its y falls as x rises)
 *  spans four columns or more within one row, the columns between its end columns continue from the first of
 *  them as those of a rising edge would.
 *
 *  Cost that of matdbl_sort_index_partial() for the y; then 3 a vertex, polled; 30 a vertex that a row begins
 *  with and 50 * (columns + 2) an edge in each row, polled once a row.
 *  - KORVO_ERR_NULL_POINTER: a matrix is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) one is not dbl. The codes of `validate` come next.
 *  - KORVO_ERR_ILLEGAL_SIZE: `polygon` has not 2 columns, or fewer than 2 rows.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: the two share their data.
 *  - KORVO_ERR_ILLEGAL_VALUE: a coordinate is NaN or above 1e9 in magnitude.
 *  - KORVO_ERR_MALLOC: no memory for the edges, or for a row. */
/** @{ */
KORVO_API _korvo_errcode pgndbl_render_region(const _dbl_mat* polygon, void* intrp_ptr, _dbl_mat* result);
KORVO_API _korvo_errcode pgnuniv_render_region(const _univ_mat* polygon, void* intrp_ptr, _univ_mat* result);
/** @} */

/** @name render_line
 *  Every pixel of `result` becomes `background`, then those along the sides of the polygon become `line`: from
 *  each vertex to the one before it, and from the first to the last only if `closed` is not 0. A side takes one
 *  pixel to each row, or to each column if it is wider than high, the nearest to it, by a decision variable in
 *  the coordinates as they are (after J. Bresenham, "Algorithm for computer control of a digital plotter",
 *  1965). Two vertices and `closed` draw their side twice.
 *
 *  `result` is u8, u16, s16, u32, s32 or dbl, and both values have its type.
 *
 *  Cost that of assign_scalar; then for each side 10 a point that is found and 10 a point that is set, polled
 *  after each. With M the larger of the rows and columns of `result`, points are those in M by M.
 *  - KORVO_ERR_NULL_POINTER: `polygon` is null; (universal) `result` is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: `polygon` is not dbl; (typed) `result` is null; a value is not of the type of
 *    `result`, or that is none of the six. The codes of `validate` for `result` come next.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: the two share their data.
 *  - the codes of `validate` for `polygon`. From here on `result` is all background.
 *  - KORVO_ERR_ILLEGAL_SIZE: `polygon` has not 2 columns, or fewer than 2 rows.
 *  - KORVO_ERR_ILLEGAL_VALUE: a coordinate is NaN or above 1e9 in magnitude.
 *  - KORVO_ERR_MALLOC: no memory for M points. */
/** @{ */
KORVO_API _korvo_errcode pgndbl_render_line(const _dbl_mat* polygon, uint8_t closed, _univ_scalar line,
                                            _univ_scalar background, void* intrp_ptr, _univ_mat* result);
KORVO_API _korvo_errcode pgnuniv_render_line(const _univ_mat* polygon, uint8_t closed, _univ_scalar line,
                                             _univ_scalar background, void* intrp_ptr, _univ_mat* result);
/** @} */

KORVO_END_DECLARATIONS

#endif

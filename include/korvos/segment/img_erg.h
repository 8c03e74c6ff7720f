/* SPDX-License-Identifier: MIT */
/** @file img_erg.h  Region growing: piecewise polynomial segmentation by greedy merging.
 *
 *  The image is cut into blocks of `grid_rows` by `grid_cols` pixels, each a region with a least-squares
 *  polynomial for each band. Then the two neighbours whose merging costs least are merged, again and again,
 *  while there are more than `minimum_regions` and the least cost is below `maximum_scale` (G. Koepfler, C.
 *  Lopez and J. M. Morel, "A Multiscale Algorithm for Image Segmentation by Variational Method", 1994).
 *
 *  The polynomials are in x = column / columns - 0.5 and y = row / rows - 0.5, over the whole image, and have M
 *  terms:
 *
 *  - `product_basis` 0: M = 2 * order + 1; 1, x, y, x^2, y^2, ...
 *  - `product_basis` not 0: M = (order + 1)^2; x^a * y^b for a from 0 to `order`, and for each a such b.
 *
 *  A boundary is one unbroken stretch between two regions: it ends at the frame of the image and where three or
 *  four boundaries meet. Two regions may have several, each with its own cost
 *
 *      cost = sum over bands of weight * (d' A inverse(A + B) B d) / length
 *
 *  for matrices A and B of the normal equations, the difference d of coefficients and the length in pixels: the
 *  rise in squared error for each pixel of boundary that goes. With order 0 and means p, q that is (p - q)^2 *
 *  |A| * |B| / (|A| + |B|) / length. Of equal costs that which has been found first is taken, and to begin with
 *  horizontal boundaries come before vertical ones, line by line. A cost that is NaN is the last of all and
 *  ends the merging. After a merge all boundaries of the region are costed anew.
 *
 *  What is made, each only if its pointer is not null, and at least one of the first four:
 *
 *  - `approximation`: the polynomials at the pixels. For integer types floor(value + 0.5) modulo 2 to the
 *    width, without saturation; NaN and infinities become 0.
 *  - `boundaries`, KORVO_UINT8: 1 on the pixels below and right of boundaries up to the pixels of the corners
 *    where they end, 0 elsewhere. The frame of the image is no boundary.
 *  - `labels`, KORVO_SINT32: from 1, in the order of the first block of each region, row by row.
 *  - `coefficients`: allocated here, a dbl matrix of regions by M for each band, in the order of the labels.
 *    The record is overwritten; the caller owns what it holds, and after a failure it is as it was.
 *  - `region_count`, and `final_scale`: the cost of the next merge, which has not been made.
 *
 *  Outputs may lie in the buffers of the image, so that it can be approximated in place, but not in each
 *  other's. All or none of them are written.
 *
 *  Time grows with the pixels once and then with merges times boundaries around the merged regions, each with a
 *  factorisation of M by M. Memory: (M * M + 2 * M * bands) doubles and about 200 bytes for each block. Cost,
 *  with N blocks: 80 * N + 70 for the blocks, 120 * N + 100 for each merge, polled after each; and what
 *  matuniv_sort() of the regions costs. */
#ifndef KORVOS_SEGMENT_IMG_ERG_H
#define KORVOS_SEGMENT_IMG_ERG_H

#include "korvos/core/mat_set.h"

KORVO_BEGIN_DECLARATIONS

/** @name region_grow_klm
 *  The bands are the members of a set, of any real type; `weights`, dbl, has one for each, and their sum is 1.
 *  The form for one image has one band of weight 1, and `coefficients` is that band's matrix.
 *
 *  Checks, in order:
 *
 *  - KORVO_ERR_NULL_POINTER: `image` or `weights` is null, or all of the first four outputs are.
 *  - the codes of matset_verify_allsame() for `image`.
 *  - KORVO_ERR_ILLEGAL_TYPE: the bands are cpx, or the weights not dbl.
 *  - the codes of `validate` for the bands and `weights`.
 *  - KORVO_ERR_ILLEGAL_VALUE: the number of weights is not that of the bands, one of them is negative or NaN,
 *    or their sum s is further than 1e-10 * (|s| + 1) from 1.
 *  - the codes of matset_verify_aresame() for `image` and `approximation`, of `validate` for its members.
 *  - the codes of `validate` for `boundaries`, and KORVO_ERR_ILLEGAL_TYPE; the same for `labels`.
 *  - KORVO_ERR_ILLEGAL_SIZE: `boundaries` or `labels` is not of the shape of the image.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: two of the outputs share their data.
 *  - KORVO_ERR_ILLEGAL_VALUE: `maximum_scale` is negative or NaN, `minimum_regions` below 2, `order` below 0.
 *  - KORVO_ERR_ILLEGAL_SIZE: a side of the blocks is below order + 1 or does not divide that of the image, or
 *    there is only one block.
 *
 *  And on the way:
 *
 *  - KORVO_ERR_MALLOC: no memory, as for an order so high that there can be none.
 *  - KORVO_ERR_SINGULAR_MATRIX: a pivot of the normal equations is 0 or less: the order is too high for blocks
 *    that are so small in the image.
 *  - KORVO_ERR_ROUNDOFF: a cost is negative, and the last band's part of it, without its weight, is not within
 *    1e-09 of 0.
 *  - KORVO_ERR_INTERRUPT: the host said so; nothing has been written. */
/** @{ */
KORVO_API _korvo_errcode imgset_region_grow_klm(const _mat_set* image, const _univ_mat* weights, int32_t order,
                                                uint8_t product_basis, int32_t grid_rows, int32_t grid_cols,
                                                int32_t minimum_regions, double maximum_scale, void* intrp_ptr,
                                                _mat_set* approximation, _univ_mat* boundaries,
                                                _univ_mat* labels, _mat_set* coefficients,
                                                int32_t* region_count, double* final_scale);
KORVO_API _korvo_errcode imguniv_region_grow_klm(const _univ_mat* image, int32_t order, uint8_t product_basis,
                                                 int32_t grid_rows, int32_t grid_cols, int32_t minimum_regions,
                                                 double maximum_scale, void* intrp_ptr,
                                                 _univ_mat* approximation, _univ_mat* boundaries,
                                                 _univ_mat* labels, _univ_mat* coefficients,
                                                 int32_t* region_count, double* final_scale);
/** @} */

KORVO_END_DECLARATIONS

#endif

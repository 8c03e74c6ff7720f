/* SPDX-License-Identifier: MIT */
/** @file img_ccmp.h  Connected components of an image or a stack of images.
 *
 *  Labels the pixels that equal one value, exactly and in the type of the element, so that any grey value,
 *  label or code can be the foreground of an image that need not be binary. Of a dbl image, 0.0 and -0.0 are
 *  one value, and NaN equals nothing.
 *
 *  `labels` becomes 0 where there is background and 1, 2, ... on the components, in the raster order of their
 *  first pixels: row by row, each from the left, and of a stack plane by plane. `*count` is one more than the
 *  number of components: the size of a table that is indexed by label. It is 1 if there is no foreground, and
 *  counts label 0 even if there is no background.
 *
 *  A `min_size` above 1 turns components of fewer pixels into background; the others keep their order and are
 *  numbered anew without gaps.
 *
 *  Method: the runs of foreground in each row are joined to those they touch in the row above through a table
 *  of equivalent labels, in one pass (A. Rosenfeld and J. L. Pfaltz, 1966; by runs: R. M. Haralick and L. G.
 *  Shapiro, 1992). Time grows with the number of pixels, whatever the shapes. The table has an entry for each
 *  run and grows by 5000 at a time; `min_size` takes an entry for each component; besides there are three rows
 *  of one bit a pixel. `labels` may be the buffer of an image of the same element size.
 *
 *  After a failure on the way, and after a stop, the elements of `labels` are neither those from before nor
 *  labels, and `*count` is as it was. */
#ifndef KORVOS_SEGMENT_IMG_CCMP_H
#define KORVOS_SEGMENT_IMG_CCMP_H

#include "korvos/core/mat_set.h"

KORVO_BEGIN_DECLARATIONS

/** @name connected_components
 *  Of one image: with `connectivity` 0 pixels are neighbours along rows and columns (4-connectivity), with any
 *  other value also diagonally (8-connectivity). There is no form for flt and cpx. In the universal form
 *  `labels` and `foreground` have the types KORVO_UINT32 and that of `image`.
 *
 *  Cost (columns) * 5 for the first row, and for each further row (columns) * 25, diagonally * 100; then twice
 *  the number of elements. Polled after each row and after each of the two.
 *
 *  - KORVO_ERR_NULL_POINTER: (universal) `image` or `labels` is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) `labels` is not u32, `foreground` has not the type of `image`, or
 *    there is no form for it.
 *  - the codes of `validate` for `image`, `labels`.
 *  - KORVO_ERR_ILLEGAL_SIZE: `labels` has not the shape of `image`.
 *  - KORVO_ERR_NULL_POINTER: `count` is null.
 *  - KORVO_ERR_MALLOC: no memory for the table or the rows. */
/** @{ */
KORVO_API _korvo_errcode imgu8_connected_components(const _u8_mat* image, int32_t connectivity,
                                                    uint8_t foreground, uint32_t min_size, void* intrp_ptr,
                                                    _u32_mat* labels, uint32_t* count);
KORVO_API _korvo_errcode imgu16_connected_components(const _u16_mat* image, int32_t connectivity,
                                                     uint16_t foreground, uint32_t min_size, void* intrp_ptr,
                                                     _u32_mat* labels, uint32_t* count);
KORVO_API _korvo_errcode imgu32_connected_components(const _u32_mat* image, int32_t connectivity,
                                                     uint32_t foreground, uint32_t min_size, void* intrp_ptr,
                                                     _u32_mat* labels, uint32_t* count);
KORVO_API _korvo_errcode imgs16_connected_components(const _s16_mat* image, int32_t connectivity,
                                                     int16_t foreground, uint32_t min_size, void* intrp_ptr,
                                                     _u32_mat* labels, uint32_t* count);
KORVO_API _korvo_errcode imgs32_connected_components(const _s32_mat* image, int32_t connectivity,
                                                     int32_t foreground, uint32_t min_size, void* intrp_ptr,
                                                     _u32_mat* labels, uint32_t* count);
KORVO_API _korvo_errcode imgdbl_connected_components(const _dbl_mat* image, int32_t connectivity,
                                                     double foreground, uint32_t min_size, void* intrp_ptr,
                                                     _u32_mat* labels, uint32_t* count);
KORVO_API _korvo_errcode imguniv_connected_components(const _univ_mat* image, int32_t connectivity,
                                                      _univ_scalar foreground, uint32_t min_size,
                                                      void* intrp_ptr, _univ_mat* labels, uint32_t* count);
/** @} */

/** Of a stack of images of one shape and type, the planes in the order of the set: pixels are neighbours along
 *  rows, columns and planes (6-connectivity), and `connectivity` is not looked at. `min_size` counts the pixels
 *  of all planes. There is no form for s16, flt and cpx.
 *
 *  Cost of the first plane as of a 4-connected image, in a tally of its own; then (columns) * 20 for each row,
 *  and twice (elements) * (planes). Polled after each row and after each of the two.
 *
 *  - the codes of matset_verify_allsame() for `images`, `labels`.
 *  - KORVO_ERR_NULL_POINTER: `count` is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: `labels` is not u32.
 *  - KORVO_ERR_ILLEGAL_SIZE: the sets do not have the same number of matrices, or these not the same shape.
 *  - KORVO_ERR_ILLEGAL_TYPE: `foreground` has not the type of `images`, or there is no form for it.
 *  - the codes of matuniv_validate() for the matrices of `images`, `labels`.
 *  - KORVO_ERR_MALLOC: no memory for the table or the rows. */
KORVO_API _korvo_errcode imgset_connected_components_3d(const _mat_set* images, int32_t connectivity,
                                                        _univ_scalar foreground, uint32_t min_size,
                                                        void* intrp_ptr, _mat_set* labels, uint32_t* count);

KORVO_END_DECLARATIONS

#endif

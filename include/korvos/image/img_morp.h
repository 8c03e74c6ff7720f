/* SPDX-License-Identifier: MIT */
/** @file img_morp.h  Binary morphology: erosion, dilation, opening, closing.
 *
 *  Two values are a convention of the call: a pixel equal to `foreground` is foreground, every other one counts
 *  as background, and `result` holds these two values only. `image` and `result` are u8, u16, s32 or dbl, of
 *  one type and shape; `element` is u8 of any shape, and its entries that are not 0 are the structuring
 *  element.
 *
 *  With the origin at (p, q), entry (i, j) lies over pixel (r - p + i, c - q + j) when the element is placed at
 *  (r, c). **Both operations place it so, and none reflects it.** The origin may lie anywhere, outside the
 *  element too, which translates the result. There is one pass to a call. Erosion and dilation are those of J.
 *  Serra, Image Analysis and Mathematical Morphology (1982), but for the reflection.
 *
 *  The work space is some 100 KB whatever the image's size, which is not copied. Time grows with (pixels) *
 *  (entries that are not 0); for rectangles without a zero with (pixels) * log(sides), up to 32 by 32 entries,
 *  of which larger ones are put together. `result` is never one of the inputs. Checks, in order:
 *
 *  - KORVO_ERR_NULL_POINTER: (universal) a matrix is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) `result`, `foreground` or `background` is not of the type of `image`,
 *    `element` is not u8, or there is no form for the type.
 *  - the codes of `validate` for `image`, `element`, `result`.
 *  - KORVO_ERR_ILLEGAL_SIZE: `result` has another shape than `image`.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `result` is the buffer of `image` or of `element`.
 *  - KORVO_ERR_ILLEGAL_VALUE: `foreground` equals `background`.
 *  - KORVO_ERR_MALLOC: no memory for the work space. */
#ifndef KORVOS_IMAGE_IMG_MORP_H
#define KORVOS_IMAGE_IMG_MORP_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** @name erode
 *  A pixel is foreground where all entries lie over foreground inside the image: the outside is background. An
 *  element without entries gives foreground everywhere.
 *
 *  The tally begins at the number of elements of `element`. Cost (((3 * columns + 3) * rows) + 4) * (columns of
 *  `image`) a row of `image`, with the columns and rows of `element`; polled after each row. */
/** @{ */
KORVO_API _korvo_errcode imgu8_binary_erode(const _u8_mat* image, const _u8_mat* element, int32_t origin_row,
                                            int32_t origin_col, uint8_t foreground, uint8_t background,
                                            void* intrp_ptr, _u8_mat* result);
KORVO_API _korvo_errcode imgu16_binary_erode(const _u16_mat* image, const _u8_mat* element, int32_t origin_row,
                                             int32_t origin_col, uint16_t foreground, uint16_t background,
                                             void* intrp_ptr, _u16_mat* result);
KORVO_API _korvo_errcode imgs32_binary_erode(const _s32_mat* image, const _u8_mat* element, int32_t origin_row,
                                             int32_t origin_col, int32_t foreground, int32_t background,
                                             void* intrp_ptr, _s32_mat* result);
KORVO_API _korvo_errcode imgdbl_binary_erode(const _dbl_mat* image, const _u8_mat* element, int32_t origin_row,
                                             int32_t origin_col, double foreground, double background,
                                             void* intrp_ptr, _dbl_mat* result);
KORVO_API _korvo_errcode imguniv_binary_erode(const _univ_mat* image, const _univ_mat* element,
                                              int32_t origin_row, int32_t origin_col, _univ_scalar foreground,
                                              _univ_scalar background, void* intrp_ptr, _univ_mat* result);
/** @} */

/** @name dilate
 *  Each pixel of the foreground paints the pixels that the entries lie over when the element is placed at it,
 *  as far as they are inside. An element without entries gives background everywhere. An entry at (i, j) moves
 *  the foreground by (i - p, j - q), where an erosion moves it by (p - i, q - j).
 *
 *  Cost and poll of assign_scalar, with which `result` becomes background; then (((3 * columns + 3) * rows) +
 *  2) * (columns of `image`) a row of `image`; polled after each row. */
/** @{ */
KORVO_API _korvo_errcode imgu8_binary_dilate(const _u8_mat* image, const _u8_mat* element, int32_t origin_row,
                                             int32_t origin_col, uint8_t foreground, uint8_t background,
                                             void* intrp_ptr, _u8_mat* result);
KORVO_API _korvo_errcode imgu16_binary_dilate(const _u16_mat* image, const _u8_mat* element, int32_t origin_row,
                                              int32_t origin_col, uint16_t foreground, uint16_t background,
                                              void* intrp_ptr, _u16_mat* result);
KORVO_API _korvo_errcode imgs32_binary_dilate(const _s32_mat* image, const _u8_mat* element, int32_t origin_row,
                                              int32_t origin_col, int32_t foreground, int32_t background,
                                              void* intrp_ptr, _s32_mat* result);
KORVO_API _korvo_errcode imgdbl_binary_dilate(const _dbl_mat* image, const _u8_mat* element, int32_t origin_row,
                                              int32_t origin_col, double foreground, double background,
                                              void* intrp_ptr, _dbl_mat* result);
KORVO_API _korvo_errcode imguniv_binary_dilate(const _univ_mat* image, const _univ_mat* element,
                                               int32_t origin_row, int32_t origin_col, _univ_scalar foreground,
                                               _univ_scalar background, void* intrp_ptr, _univ_mat* result);
/** @} */

/** @name open and close
 *  Opening is an erosion and then a dilation, closing a dilation and then an erosion, both with the origin (0,
 *  0), by way of a temporary like `image`. Costs and polls are those of the two steps. The steps check what is
 *  not listed here.
 *
 *  - KORVO_ERR_NULL_POINTER: a matrix is null.
 *  - the codes of `validate` for `image`.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `result` is the buffer of `image`.
 *  - KORVO_ERR_MALLOC: no memory for the temporary.
 *  - otherwise the codes of the first step, and then of the second. */
/** @{ */
KORVO_API _korvo_errcode imguniv_binary_open(const _univ_mat* image, const _univ_mat* element,
                                             _univ_scalar foreground, _univ_scalar background, void* intrp_ptr,
                                             _univ_mat* result);
KORVO_API _korvo_errcode imguniv_binary_close(const _univ_mat* image, const _univ_mat* element,
                                              _univ_scalar foreground, _univ_scalar background, void* intrp_ptr,
                                              _univ_mat* result);
/** @} */

KORVO_END_DECLARATIONS

#endif

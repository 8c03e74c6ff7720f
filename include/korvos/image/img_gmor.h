/* SPDX-License-Identifier: MIT */
/** @file img_gmor.h  Grey-scale morphology: erosion, dilation, opening, closing.
 *
 *  The additive form: minima of differences and maxima of sums (S. R. Sternberg, Grayscale morphology, 1986).
 *  `function` is a matrix of any shape, and **every entry takes part**, zeros too: a flat element is a matrix
 *  of zeros. `image`, `function` and `result` are u8, u16, s32 or dbl. Differences and sums are formed in the
 *  type of the element and **wrap** in its width before they are compared, unsigned in u8 and u16: 3 - 5 is 254
 *  there, and 250 + 10 is 4. Who needs more room takes a wider type.
 *
 *  The origin (p, q) may lie anywhere, outside `function` too. S reads `image` under the boundary mode:
 *  SIG_BOUNDARY_ZERO (0), outside of 0, or SIG_BOUNDARY_CONTINUE (3), outside of the nearest pixel; no other.
 *  The running value begins with entry (0, 0) and is replaced by what beats it, in the order of rows: a NaN of
 *  the first entry stays, later ones lose.
 *
 *  Cost (columns * rows * (columns of `image`) + 1) * 8 a row of `image`, with the columns and rows of
 *  `function`; polled after each row, and rows already done stay in `result`. The work space is some 100 KB
 *  whatever the image's size. Time grows with (pixels) * (entries); for zeros with (pixels) * log(sides), up to
 *  32 by 32 of them, of which larger ones are put together, but not where a dbl image has NaN or -0.0. Checks
 *  of the typed forms:
 *
 *  - the codes of `validate` for `image`, `function`, `result`.
 *  - KORVO_ERR_ILLEGAL_SIZE: `result` has another shape than `image`.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `result` is the buffer of `image` or of `function`.
 *  - KORVO_ERR_ILLEGAL_VALUE: `boundary` is neither 0 nor 3; nothing has been written.
 *  - KORVO_ERR_MALLOC: no memory for the work space.
 *
 *  In universal forms the type of `result` decides, and `image` and `function` are cast to it in temporaries,
 *  without clipping:
 *
 *  - KORVO_ERR_NULL_POINTER: a matrix is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: a floating operand and an integer `result`, or no form for the type of `result`.
 *  - KORVO_ERR_OVERFLOW: an element does not fit the type of `result`.
 *  - KORVO_ERR_MALLOC: no memory for a temporary. */
#ifndef KORVOS_IMAGE_IMG_GMOR_H
#define KORVOS_IMAGE_IMG_GMOR_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** @name erode
 *  result(r, c) = minimum over i, j of S(r - p + i, c - q + j) - function(i, j) */
/** @{ */
KORVO_API _korvo_errcode imgu8_grayscale_erode(const _u8_mat* image, const _u8_mat* function,
                                               int32_t origin_row, int32_t origin_col, int32_t boundary,
                                               void* intrp_ptr, _u8_mat* result);
KORVO_API _korvo_errcode imgu16_grayscale_erode(const _u16_mat* image, const _u16_mat* function,
                                                int32_t origin_row, int32_t origin_col, int32_t boundary,
                                                void* intrp_ptr, _u16_mat* result);
KORVO_API _korvo_errcode imgs32_grayscale_erode(const _s32_mat* image, const _s32_mat* function,
                                                int32_t origin_row, int32_t origin_col, int32_t boundary,
                                                void* intrp_ptr, _s32_mat* result);
KORVO_API _korvo_errcode imgdbl_grayscale_erode(const _dbl_mat* image, const _dbl_mat* function,
                                                int32_t origin_row, int32_t origin_col, int32_t boundary,
                                                void* intrp_ptr, _dbl_mat* result);
KORVO_API _korvo_errcode imguniv_grayscale_erode(const _univ_mat* image, const _univ_mat* function,
                                                 int32_t origin_row, int32_t origin_col, int32_t boundary,
                                                 void* intrp_ptr, _univ_mat* result);
/** @} */

/** @name dilate
 *  result(r, c) = maximum over i, j of S(r + p - i, c + q - j) + function(i, j)
 *
 *  The function is reflected through its origin, unlike in erode, and unlike the elements of img_morp.h. */
/** @{ */
KORVO_API _korvo_errcode imgu8_grayscale_dilate(const _u8_mat* image, const _u8_mat* function,
                                                int32_t origin_row, int32_t origin_col, int32_t boundary,
                                                void* intrp_ptr, _u8_mat* result);
KORVO_API _korvo_errcode imgu16_grayscale_dilate(const _u16_mat* image, const _u16_mat* function,
                                                 int32_t origin_row, int32_t origin_col, int32_t boundary,
                                                 void* intrp_ptr, _u16_mat* result);
KORVO_API _korvo_errcode imgs32_grayscale_dilate(const _s32_mat* image, const _s32_mat* function,
                                                 int32_t origin_row, int32_t origin_col, int32_t boundary,
                                                 void* intrp_ptr, _s32_mat* result);
KORVO_API _korvo_errcode imgdbl_grayscale_dilate(const _dbl_mat* image, const _dbl_mat* function,
                                                 int32_t origin_row, int32_t origin_col, int32_t boundary,
                                                 void* intrp_ptr, _dbl_mat* result);
KORVO_API _korvo_errcode imguniv_grayscale_dilate(const _univ_mat* image, const _univ_mat* function,
                                                  int32_t origin_row, int32_t origin_col, int32_t boundary,
                                                  void* intrp_ptr, _univ_mat* result);
/** @} */

/** @name open and close
 *  Opening is an erosion and then a dilation, closing a dilation and then an erosion, both with the origin (0,
 *  0) and the same boundary mode, by way of a temporary of the shape and the type of `image`, whatever that of
 *  `result`. Costs, polls and checks are those of the two steps, after these:
 *
 *  - KORVO_ERR_NULL_POINTER: `image` is null.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `result` is the buffer of `image`.
 *  - KORVO_ERR_MALLOC: no memory for the temporary. */
/** @{ */
KORVO_API _korvo_errcode imguniv_grayscale_open(const _univ_mat* image, const _univ_mat* function,
                                                int32_t boundary, void* intrp_ptr, _univ_mat* result);
KORVO_API _korvo_errcode imguniv_grayscale_close(const _univ_mat* image, const _univ_mat* function,
                                                 int32_t boundary, void* intrp_ptr, _univ_mat* result);
/** @} */

KORVO_END_DECLARATIONS

#endif

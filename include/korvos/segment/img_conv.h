/* SPDX-License-Identifier: MIT */
/** @file img_conv.h  Neighbourhoods of images: centred convolution and correlation, local mean and variance. */
#ifndef KORVOS_SEGMENT_IMG_CONV_H
#define KORVOS_SEGMENT_IMG_CONV_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** @name convolve, correlate
 *  siguniv_convolve() and siguniv_correlate() with steps 1 and a centred kernel of kr by kc elements. With half
 *  sizes hr = kr / 2 and hc = kc / 2, cut to integers, and i, j running over the kernel:
 *
 *      correlation  out(r, c) = sum of image(r - hr + i, c - hc + j) * kernel(i, j)
 *      convolution  out(r, c) = sum of image(r - hr + i, c - hc + j) * kernel(kr - 1 - i, kc - 1 - j)
 *
 *  An odd kernel is centred on its middle element; the extra tap of an even one lies on the side of the lower
 *  indices of the image. `out` may be smaller than the image and then holds the upper left of the result.
 *
 *  `kernel` is validated first; all else is as there, boundary modes and codes included. */
/** @{ */
KORVO_API _korvo_errcode imguniv_convolve(const _univ_mat* image, const _univ_mat* kernel, int32_t boundary,
                                          void* intrp_ptr, _univ_mat* out);
KORVO_API _korvo_errcode imguniv_correlate(const _univ_mat* image, const _univ_mat* kernel, int32_t boundary,
                                           void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name local_mean
 *  The mean over a window of window_rows by window_cols pixels, both odd, centred on each pixel. Running sums
 *  along a row: each mean is the previous one plus the mean of what enters less what leaves, so rounding errors
 *  run along a row and no further, and the work grows with window_rows and not with the area.
 *
 *  Each sum takes the rows of its window in their order, from 0; the first of a row of the result takes its
 *  columns within each row. It is divided by the area of the window before the previous mean is added.
 *
 *  SIG_BOUNDARY_ZERO: pixels outside count as 0, so means fall towards the edges. SIG_BOUNDARY_CONTINUE: the
 *  edge goes on. No other mode is taken. Cost of a row (13 * window_rows + 3) * columns + 8 * window_rows *
 *  window_cols + 3, polled after each. No allocation. Checks, in order:
 *
 *  - KORVO_ERR_NULL_POINTER, KORVO_ERR_ILLEGAL_TYPE: (universal) null, or not both dbl.
 *  - the codes of `validate` for `image`, `out`.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `out` is the buffer of `image`.
 *  - KORVO_ERR_ILLEGAL_SIZE: a window size is larger than the image, even, or below 1.
 *  - KORVO_ERR_ILLEGAL_VALUE: another boundary mode; the first element of `out` has become 0. */
/** @{ */
KORVO_API _korvo_errcode imgdbl_local_mean(const _dbl_mat* image, int32_t window_rows, int32_t window_cols,
                                           int32_t boundary, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode imguniv_local_mean(const _univ_mat* image, int32_t window_rows, int32_t window_cols,
                                            int32_t boundary, void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name local_variance
 *  The population variance over the same windows, by running sums of pixels and of their squares: the first
 *  of a row is the mean square less the square of the mean, and each further one
 *
 *      (what enters, squared, less what leaves, squared) / area + previous variance
 *          + (previous mean) ^ 2 - mean ^ 2
 *
 *  from left to right. It is never clamped: rounding may leave tiny negative values in flat areas. Cost of
 *  a row (15 * window_rows + 8) * columns + 8 * window_rows * window_cols + 6; all else as for local_mean. */
/** @{ */
KORVO_API _korvo_errcode imgdbl_local_variance(const _dbl_mat* image, int32_t window_rows, int32_t window_cols,
                                               int32_t boundary, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode imguniv_local_variance(const _univ_mat* image, int32_t window_rows,
                                                int32_t window_cols, int32_t boundary, void* intrp_ptr,
                                                _univ_mat* out);
/** @} */

KORVO_END_DECLARATIONS

#endif

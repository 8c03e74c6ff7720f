/* SPDX-License-Identifier: MIT */
/** @file img_intp.h  Interpolation: the value of an image between its pixels. */
#ifndef KORVOS_IMAGE_IMG_INTP_H
#define KORVOS_IMAGE_IMG_INTP_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** The value of `image`, of any real type, at (`row`, `col`) between its pixels: bilinear interpolation of the
 *  four pixels at the floor and the ceiling of each coordinate. Pixel centres lie at whole numbers. A corner
 *  outside the image reads 0, so the value falls to 0 within one pixel of the frame, and a position further
 *  out, or one that is NaN, gives 0. With dr and dc the fractional parts, the sum is formed in this order:
 *
 *      (1 - dr) * (1 - dc) * upper left + (1 - dr) * dc * upper right
 *        + dr * (1 - dc) * lower left + dr * dc * lower right
 *
 *  The time is constant: nothing is polled.
 *  - KORVO_ERR_NULL_POINTER: `image` or `value` is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: `image` is cpx. The codes of `validate` come next. */
KORVO_API _korvo_errcode imguniv_interpolate_linear(const _univ_mat* image, double row, double col,
                                                    void* intrp_ptr, double* value);

KORVO_END_DECLARATIONS

#endif

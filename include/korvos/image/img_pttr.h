/* SPDX-License-Identifier: MIT */
/** @file img_pttr.h  Mapping of grey values. */
#ifndef KORVOS_IMAGE_IMG_PTTR_H
#define KORVOS_IMAGE_IMG_PTTR_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** Maps the grey values from `low` to `high` onto 0 to 255, as a display does with its window and level.
 *
 *  A pixel x at or below `low` becomes 0, one above `high` 255, and one between them
 *  floor((x - low) * 255 / (high - low) + 0.5). With `low` equal to `high` this is a threshold: 0 at or below
 *  it, 255 above. A NaN becomes 0. A window with an infinite limit is too wide to tell its pixels apart: all
 *  of them up to `high` become 0.
 *
 *  @param image  u8, u16, u32, s32 or dbl
 *  @param out    u8, of the shape of `image`; may be a u8 image itself
 *
 *  Cost 5 * `nelem`, polled once, after the work. The checks, in their order:
 *  - KORVO_ERR_NULL_POINTER: `image` or `out` is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: `out` is not u8, or `image` is of no type listed above.
 *  - otherwise the codes of `validate`, for `image` and then `out`.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `out` is the buffer of an image that is not u8.
 *  - KORVO_ERR_ILLEGAL_VALUE: a limit is NaN, or `high` is below `low`. */
KORVO_API _korvo_errcode imguniv_map_window_level(const _univ_mat* image, double low, double high,
                                                  void* intrp_ptr, _univ_mat* out);

KORVO_END_DECLARATIONS

#endif

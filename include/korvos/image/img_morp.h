/* SPDX-License-Identifier: MIT */
/** @file img_morp.h  Binary morphology: erosion, dilation, opening, closing. */
#ifndef KORVOS_IMAGE_IMG_MORP_H
#define KORVOS_IMAGE_IMG_MORP_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

KORVO_END_DECLARATIONS

#endif

/* SPDX-License-Identifier: MIT */
/** @file img_gmor.h  Grey-scale morphology: erosion, dilation, opening, closing. */
#ifndef KORVOS_IMAGE_IMG_GMOR_H
#define KORVOS_IMAGE_IMG_GMOR_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

KORVO_END_DECLARATIONS

#endif

/* SPDX-License-Identifier: MIT */
/** @file img_ccmp.h  Connected components of an image or a stack of images. */
#ifndef KORVOS_SEGMENT_IMG_CCMP_H
#define KORVOS_SEGMENT_IMG_CCMP_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

KORVO_END_DECLARATIONS

#endif

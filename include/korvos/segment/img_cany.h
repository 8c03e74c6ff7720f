/* SPDX-License-Identifier: MIT */
/** @file img_cany.h  Canny edges and their stages: derivative of Gaussian, non-maxima suppression, hysteresis. */
#ifndef KORVOS_SEGMENT_IMG_CANY_H
#define KORVOS_SEGMENT_IMG_CANY_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

KORVO_END_DECLARATIONS

#endif

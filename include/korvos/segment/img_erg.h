/* SPDX-License-Identifier: MIT */
/** @file img_erg.h  Region growing: piecewise polynomial segmentation by greedy merging. */
#ifndef KORVOS_SEGMENT_IMG_ERG_H
#define KORVOS_SEGMENT_IMG_ERG_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

KORVO_END_DECLARATIONS

#endif

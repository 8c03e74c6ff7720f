/* SPDX-License-Identifier: MIT */
/** @file img_mrf.h */
#ifndef KORVOS_CLASSIFY_IMG_MRF_H
#define KORVOS_CLASSIFY_IMG_MRF_H

#include "korvos/core/mat_set.h"

KORVO_BEGIN_DECLARATIONS

KORVO_END_DECLARATIONS

#endif

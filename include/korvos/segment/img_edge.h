/* SPDX-License-Identifier: MIT */
/** @file img_edge.h  Sobel gradient and edges. */
#ifndef KORVOS_SEGMENT_IMG_EDGE_H
#define KORVOS_SEGMENT_IMG_EDGE_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

KORVO_END_DECLARATIONS

#endif

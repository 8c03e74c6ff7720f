/* SPDX-License-Identifier: MIT */
/** @file mat_num.h */
#ifndef KORVOS_NUMERIC_MAT_NUM_H
#define KORVOS_NUMERIC_MAT_NUM_H

#include "korvos/core/mat_set.h"

KORVO_BEGIN_DECLARATIONS

KORVO_END_DECLARATIONS

#endif

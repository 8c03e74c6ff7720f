/* SPDX-License-Identifier: MIT */
/** @file cls_gla.h */
#ifndef KORVOS_CLASSIFY_CLS_GLA_H
#define KORVOS_CLASSIFY_CLS_GLA_H

#include "korvos/core/mat_set.h"

KORVO_BEGIN_DECLARATIONS

KORVO_END_DECLARATIONS

#endif

/* SPDX-License-Identifier: MIT */
/** @file korvos.h  Everything korvos exports. */
#ifndef KORVOS_H
#define KORVOS_H

#include "korvos/core/api.h"
#include "korvos/core/mat_set.h"
#include "korvos/core/mat_univ.h"
#include "korvos/core/ut_alloc.h"
#include "korvos/core/ut_debug.h"
#include "korvos/core/ut_err.h"
#include "korvos/core/ut_intrp.h"
#include "korvos/core/ut_rand.h"
#include "korvos/host/korvos.h"

#endif

/* SPDX-License-Identifier: MIT */
/** @file ut_debug.h  Names kept for hosts that link them; none of them does anything.
 *
 *  The library prints nothing and never ends the process: errors reach the caller by return code only. */
#ifndef KORVOS_CORE_UT_DEBUG_H
#define KORVOS_CORE_UT_DEBUG_H

#include "korvos/core/api.h"

KORVO_BEGIN_DECLARATIONS

/** @return 0 */
KORVO_API int32_t korvo_msg_print(const char* format, ...);
/** Does nothing. */
KORVO_API void korvo_msg_print_line(const char* text);
/** Does nothing. */
KORVO_API void korvo_msg_print_time(const char* text);
/** Does nothing. */
KORVO_API void korvo_msg_set_level(int32_t level);
/** Does nothing; the process goes on. */
KORVO_API void korvo_abort(void);

KORVO_END_DECLARATIONS

#endif

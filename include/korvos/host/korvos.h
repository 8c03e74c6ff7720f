/* SPDX-License-Identifier: MIT */
/** @file host/korvos.h  What the host looks for in the library file. */
#ifndef KORVOS_HOST_KORVOS_H
#define KORVOS_HOST_KORVOS_H

#include "korvos/core/api.h"

KORVO_BEGIN_DECLARATIONS

/** Self-registration: there is nothing to register. @return 0 */
KORVO_API int32_t DllRegisterServer(void);
/** Self-registration: there is nothing to register. @return 0 */
KORVO_API int32_t DllUnregisterServer(void);

KORVO_END_DECLARATIONS

#endif

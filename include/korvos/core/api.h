/* SPDX-License-Identifier: MIT */
/** @file api.h  What every public header needs: version, linkage, export, and the enumeration attributes. */
#ifndef KORVOS_CORE_API_H
#define KORVOS_CORE_API_H

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#define KORVOS_VERSION_MAJOR 1
#define KORVOS_VERSION_MINOR 0
#define KORVOS_VERSION_PATCH 0

#ifdef __cplusplus
#define KORVO_BEGIN_DECLARATIONS extern "C" {
#define KORVO_END_DECLARATIONS }
#define KORVO_NODISCARD [[nodiscard]]
#define KORVO_INT32_ENUM : int32_t
#else
#define KORVO_BEGIN_DECLARATIONS
#define KORVO_END_DECLARATIONS
#define KORVO_NODISCARD
#define KORVO_INT32_ENUM
#endif

#if defined(__GNUC__)
#define KORVO_API __attribute__((visibility("default")))
#else
#define KORVO_API
#endif

#endif

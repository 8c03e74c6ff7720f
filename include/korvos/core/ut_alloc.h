/* SPDX-License-Identifier: MIT */
/** @file ut_alloc.h  The allocator through which every buffer of the library passes. */
#ifndef KORVOS_CORE_UT_ALLOC_H
#define KORVOS_CORE_UT_ALLOC_H

#include "korvos/core/ut_err.h"

KORVO_BEGIN_DECLARATIONS

/** Allocates `nbytes` bytes from the process heap, not cleared, and stores their address in `*ptr`.
 *
 *  - KORVO_ERR_NULL_POINTER: `ptr` is null.
 *  - KORVO_ERR_ILLEGAL_VALUE: `nbytes` is 0 or negative; `*ptr` is untouched.
 *  - KORVO_ERR_MALLOC: the heap has no memory; `*ptr` is null. */
KORVO_API _korvo_errcode korvo_malloc(int32_t nbytes, void** ptr);

/** Allocates `count` elements of `element_size` bytes, all bytes 0, and stores their address in `*ptr`.
 *
 *  - KORVO_ERR_NULL_POINTER: `ptr` is null.
 *  - KORVO_ERR_ILLEGAL_VALUE: `count` is 0 or negative, or `element_size` is 0; `*ptr` is untouched.
 *  - KORVO_ERR_MALLOC: the heap has no memory, or the product does not fit an address; `*ptr` is null. */
KORVO_API _korvo_errcode korvo_calloc(int32_t count, size_t element_size, void** ptr);

/** Changes the size of the block at `*ptr` to `nbytes` bytes and stores its new address there.
 *  Note the order of the arguments, the opposite of korvo_malloc().
 *
 *  - KORVO_ERR_ILLEGAL_VALUE: `nbytes` is 0 or negative. This is tested first.
 *  - KORVO_ERR_NULL_POINTER: `ptr` is null.
 *  - KORVO_ERR_MALLOC: the heap has no memory; `*ptr` still holds the old block, unchanged. */
KORVO_API _korvo_errcode korvo_realloc(void** ptr, int32_t nbytes);

/** Gives a block back to the process heap; a null pointer is harmless.
 *  @return always KORVO_ERR_OK */
KORVO_API _korvo_errcode korvo_free(void* ptr);

KORVO_END_DECLARATIONS

#endif

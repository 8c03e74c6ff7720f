/* SPDX-License-Identifier: MIT */
/** @file ut_rand.h  Random numbers: the same seed gives the same numbers on every machine.
 *
 *  The generator is xoshiro256** (Blackman and Vigna, 2018), its state filled from the seed by SplitMix64
 *  (Steele, Lea and Flood, 2014). Uniform numbers are its upper 53 bits divided by 2^53. Normal numbers are a
 *  ratio of uniforms (Kinderman and Monahan, 1977) with the bounds of Leva (1992); the logarithm they need is
 *  formed from plain arithmetic, so that they do not depend on the machine's mathematical library.
 *  All state lies behind the pointer: states are independent, and there is no global one. */
#ifndef KORVOS_CORE_UT_RAND_H
#define KORVOS_CORE_UT_RAND_H

#include "korvos/core/ut_err.h"

KORVO_BEGIN_DECLARATIONS

/** Makes a random state with the seed 5489 and stores it in `*rand_ptr`; end it with korvo_rand_end().
 *
 *  - KORVO_ERR_NULL_POINTER: `rand_ptr` is null.
 *  - KORVO_ERR_MALLOC: no memory for the state; `*rand_ptr` is null. */
KORVO_API _korvo_errcode korvo_rand_begin(void** rand_ptr);

/** Frees a random state; a null pointer is harmless.
 *  @return always KORVO_ERR_OK */
KORVO_API _korvo_errcode korvo_rand_end(void* rand_ptr);

/** Starts the sequence that belongs to `seed`.
 *
 *  - KORVO_ERR_NULL_POINTER: `rand_ptr` is null. */
KORVO_API _korvo_errcode korvo_rand_set_seed(uint32_t seed, void* rand_ptr);

/** Stores the next number, uniform in [0, 1), in `*value`.
 *
 *  - KORVO_ERR_NULL_POINTER: `rand_ptr` or `value` is null. */
KORVO_API _korvo_errcode korvo_rand_uniform(void* rand_ptr, double* value);

/** Stores the next number, normal with mean 0 and standard deviation 1, in `*value`.
 *
 *  - KORVO_ERR_NULL_POINTER: `rand_ptr` or `value` is null. */
KORVO_API _korvo_errcode korvo_rand_normal(void* rand_ptr, double* value);

KORVO_END_DECLARATIONS

#endif

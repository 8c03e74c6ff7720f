/* SPDX-License-Identifier: MIT */
/** @file ut_intrp.h  How a host stops a long calculation.
 *
 *  A long routine keeps a tally of its cost, in rough machine operations, and a checkpoint, both from 0.0.
 *  After a piece of work it adds to the tally, and when the tally has passed the checkpoint it calls
 *  korvo_interrupt(), which moves the checkpoint on by korvo_interrupt_threshold and asks the host.
 *  So even a short routine polls once, and a test that is not due costs one comparison. */
#ifndef KORVOS_CORE_UT_INTRP_H
#define KORVOS_CORE_UT_INTRP_H

#include "korvos/core/ut_err.h"

KORVO_BEGIN_DECLARATIONS

/** The cost between two polls. 0.0, the initial value, means that none has been chosen: the first call of
 *  korvo_interrupt() then makes it 10000000.0. A host may store any other value at any time. The library
 *  reads and writes it with relaxed atomics; it is the one mutable object that calls share. */
extern KORVO_API double korvo_interrupt_threshold;

/** Moves a checkpoint on and asks the host whether to stop.
 *
 *  If `next_checkpoint` is not null and `cost` is strictly greater than it, the threshold is added to it, once.
 *  Whatever came of that, the host is then polled, if there is one.
 *
 *  @param cost             the cost tally of the calling routine
 *  @param next_checkpoint  the checkpoint of the calling routine; may be null
 *  @param intrp_ptr        the host's interrupt record (see ::korvo_host); null: nobody can interrupt
 *  @return 1 if the host answered exactly 1, which asks to stop; otherwise 0 */
KORVO_API uint8_t korvo_interrupt(double cost, double* next_checkpoint, void* intrp_ptr);

/** An operation of the host's object: called with the object and the number 1, it answers 1 to stop. */
typedef int32_t (*korvo_poll_function)(void* object, int32_t one);

/** A host of one's own, in plain C. What `intrp_ptr` points at is a record whose second pointer-sized field
 *  points at an object; the object begins with a pointer to a table of operations, and the eleventh of them
 *  is the poll. The first ten are never called. A C++ object with virtual operations, the eleventh of which
 *  takes and returns an `int`, has this layout already.
 *
 *  Fill one with korvo_host_init() and pass its address as `intrp_ptr`; it must stay where it is. */
typedef struct korvo_host {
  void* reserved;                   /**< not looked at */
  void* object;                     /**< the address of `table` below */
  const korvo_poll_function* table; /**< the object: its first field is the table of operations */
  void* context;                    /**< for the poll's own use: korvo_host_context() */
  korvo_poll_function operations[11];
} korvo_host;

/** Makes `host` poll by `poll`, and gives it `context` to find through korvo_host_context(). */
static inline void* korvo_host_init(korvo_host* host, korvo_poll_function poll, void* context) {
  for (int i = 0; i < 10; ++i) host->operations[i] = NULL;
  host->operations[10] = poll;
  host->context = context;
  host->table = host->operations;
  host->object = &host->table;
  host->reserved = NULL;
  return host;
}

/** Within a poll: the context of the host whose object was passed. */
static inline void* korvo_host_context(void* object) {
  return ((korvo_host*)(void*)((char*)object - offsetof(korvo_host, table)))->context;
}

KORVO_END_DECLARATIONS

#endif

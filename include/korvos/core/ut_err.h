/* SPDX-License-Identifier: MIT */
/** @file ut_err.h  Error codes and their messages. */
#ifndef KORVOS_CORE_UT_ERR_H
#define KORVOS_CORE_UT_ERR_H

#include "korvos/core/api.h"

KORVO_BEGIN_DECLARATIONS

/** The value of every routine: 0 is success, and the first failure ends the routine.
 *  Compiled as C++ the enumeration is `[[nodiscard]]`, so that no failure is overlooked. */
enum KORVO_NODISCARD _korvo_errcode KORVO_INT32_ENUM{
    KORVO_ERR_OK = 0,               /**< done */
    KORVO_ERR_MALLOC = 1,           /**< the heap had no memory; nothing was lost */
    KORVO_ERR_NULL_POINTER = 2,     /**< a pointer that is needed is null */
    KORVO_ERR_ILLEGAL_ADDRESS = 3,  /**< a result shares its buffer with an operand and must not */
    KORVO_ERR_ILLEGAL_SIZE = 4,     /**< shapes do not agree, or a matrix is not valid */
    KORVO_ERR_ILLEGAL_TYPE = 5,     /**< an element type that the routine does not take or cannot cast */
    KORVO_ERR_ILLEGAL_VALUE = 6,    /**< a scalar argument out of its range */
    KORVO_ERR_OUT_OF_BOUNDS = 7,    /**< an index past the data */
    KORVO_ERR_DIVIDE_BY_ZERO = 8,   /**< a divisor is 0 */
    KORVO_ERR_IO = 9,               /**< a stream failed, ended early, or holds something else */
    KORVO_ERR_OVERFLOW = 10,        /**< an element does not fit the type it is to be stored in */
    KORVO_ERR_INTERRUPT = 11,       /**< the host asked to stop */
    KORVO_ERR_SINGULAR_MATRIX = 12, /**< a matrix has no inverse, or nearly none */
    KORVO_ERR_NOT_CONVERGING = 13,  /**< an iteration does not settle */
    KORVO_ERR_ROUNDOFF = 14,        /**< rounding errors have used up the precision */
    KORVO_ERR_SINGULARITY = 15,     /**< the data have a singularity */
    KORVO_ERR_NOT_IMPLEMENTED = 16  /**< there is no such feature */
};
typedef enum _korvo_errcode _korvo_errcode;

/** Stores in `*text` the message of `error`: constant text, never to be freed.
 *  A value outside the enumeration has the message of KORVO_ERR_ILLEGAL_VALUE; a null `text` is ignored.
 *  @return always KORVO_ERR_OK */
KORVO_API _korvo_errcode korvo_err_string(_korvo_errcode error, const char** text);

KORVO_END_DECLARATIONS

#endif

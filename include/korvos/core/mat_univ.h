/* SPDX-License-Identifier: MIT */
/** @file mat_univ.h  Element types, typed matrices, the universal matrix; making, wrapping, resizing, freeing.
 *
 *  A matrix is a plain record whose elements lie dense and row after row: element (i, j), both from 0, is
 *  `data[i * ncol + j]`. There is no stride, so a matrix is also one flat run of `nelem` elements.
 *
 *  A matrix from `malloc` owns its buffer and is given back by the `free` of its kind. A matrix from `wrap`
 *  borrows its buffer, which must outlive it, and is never freed or reallocated. The record does not say
 *  which of the two it is: its owner keeps track. */
#ifndef KORVOS_CORE_MAT_UNIV_H
#define KORVOS_CORE_MAT_UNIV_H

#include "korvos/core/ut_err.h"

KORVO_BEGIN_DECLARATIONS

/** Element types. The values are part of the binary interface. */
enum _korvo_type KORVO_INT32_ENUM {
  KORVO_UINT8 = 0,   /**< u8: unsigned 8-bit integer */
  KORVO_SINT8 = 1,   /**< reserved: can be wrapped, and every other operation refuses it */
  KORVO_UINT16 = 2,  /**< u16: unsigned 16-bit integer */
  KORVO_SINT16 = 3,  /**< s16: signed 16-bit integer */
  KORVO_UINT32 = 4,  /**< u32: unsigned 32-bit integer */
  KORVO_SINT32 = 5,  /**< s32: signed 32-bit integer */
  KORVO_FLOAT = 6,   /**< flt: IEEE 754 binary32 */
  KORVO_DOUBLE = 7,  /**< dbl: IEEE 754 binary64 */
  KORVO_DCOMPLEX = 8 /**< cpx: two binary64 values, real part then imaginary part */
};
typedef enum _korvo_type _korvo_type;

/** Complex number. */
typedef struct korvo_dcomplex {
  double re, im;
} korvo_dcomplex;

/** Matrix of u8 elements. */
typedef struct _u8_mat {
  int32_t nrow, ncol; /**< rows and columns, each at least 1 */
  int32_t nelem;      /**< nrow * ncol */
  uint8_t* data;
} _u8_mat;
/** Matrix of u16 elements. */
typedef struct _u16_mat {
  int32_t nrow, ncol; /**< rows and columns, each at least 1 */
  int32_t nelem;      /**< nrow * ncol */
  uint16_t* data;
} _u16_mat;
/** Matrix of u32 elements. */
typedef struct _u32_mat {
  int32_t nrow, ncol; /**< rows and columns, each at least 1 */
  int32_t nelem;      /**< nrow * ncol */
  uint32_t* data;
} _u32_mat;
/** Matrix of s16 elements. */
typedef struct _s16_mat {
  int32_t nrow, ncol; /**< rows and columns, each at least 1 */
  int32_t nelem;      /**< nrow * ncol */
  int16_t* data;
} _s16_mat;
/** Matrix of s32 elements. */
typedef struct _s32_mat {
  int32_t nrow, ncol; /**< rows and columns, each at least 1 */
  int32_t nelem;      /**< nrow * ncol */
  int32_t* data;
} _s32_mat;
/** Matrix of flt elements. */
typedef struct _flt_mat {
  int32_t nrow, ncol; /**< rows and columns, each at least 1 */
  int32_t nelem;      /**< nrow * ncol */
  float* data;
} _flt_mat;
/** Matrix of dbl elements. */
typedef struct _dbl_mat {
  int32_t nrow, ncol; /**< rows and columns, each at least 1 */
  int32_t nelem;      /**< nrow * ncol */
  double* data;
} _dbl_mat;
/** Matrix of cpx elements. */
typedef struct _cpx_mat {
  int32_t nrow, ncol; /**< rows and columns, each at least 1 */
  int32_t nelem;      /**< nrow * ncol */
  korvo_dcomplex* data;
} _cpx_mat;

/** Matrix of a type known at run time: the fields of the typed records, at the same places, then the type. */
typedef struct _univ_mat {
  int32_t nrow, ncol; /**< rows and columns, each at least 1 */
  int32_t nelem;      /**< nrow * ncol */
  void* data;
  _korvo_type type; /**< how to read `data` */
} _univ_mat;

/** The number in a ::_univ_scalar. */
typedef union _univ_value {
  uint8_t u8;
  int8_t s8;
  uint16_t u16;
  int16_t s16;
  uint32_t u32;
  int32_t s32;
  float flt;
  double dbl;
  korvo_dcomplex cpx;
} _univ_value;

/** A number of a type known at run time, passed by value to universal routines. */
typedef struct _univ_scalar {
  _univ_value value;
  _korvo_type type; /**< which member of `value` is set */
} _univ_scalar;

static_assert(sizeof(_korvo_errcode) == 4 && sizeof(_korvo_type) == 4, "enumerations are 32 bits wide");
static_assert(sizeof(korvo_dcomplex) == 16, "a complex number is two doubles");
static_assert(sizeof(_univ_scalar) == 24 && offsetof(_univ_scalar, type) == 16, "layout of the scalar");
static_assert(offsetof(_univ_mat, data) == 16 && offsetof(_univ_mat, type) == 16 + sizeof(void*) &&
                  sizeof(_univ_mat) == 16 + 2 * sizeof(void*),
              "layout of the universal matrix");
static_assert(offsetof(_u8_mat, data) == 16 && sizeof(_u8_mat) == 16 + sizeof(void*),
              "layout of the u8 matrix");
static_assert(offsetof(_u16_mat, data) == 16 && sizeof(_u16_mat) == 16 + sizeof(void*),
              "layout of the u16 matrix");
static_assert(offsetof(_u32_mat, data) == 16 && sizeof(_u32_mat) == 16 + sizeof(void*),
              "layout of the u32 matrix");
static_assert(offsetof(_s16_mat, data) == 16 && sizeof(_s16_mat) == 16 + sizeof(void*),
              "layout of the s16 matrix");
static_assert(offsetof(_s32_mat, data) == 16 && sizeof(_s32_mat) == 16 + sizeof(void*),
              "layout of the s32 matrix");
static_assert(offsetof(_flt_mat, data) == 16 && sizeof(_flt_mat) == 16 + sizeof(void*),
              "layout of the flt matrix");
static_assert(offsetof(_dbl_mat, data) == 16 && sizeof(_dbl_mat) == 16 + sizeof(void*),
              "layout of the dbl matrix");
static_assert(offsetof(_cpx_mat, data) == 16 && sizeof(_cpx_mat) == 16 + sizeof(void*),
              "layout of the cpx matrix");

/** @name malloc
 *  Gives `mat` the shape `nrow` by `ncol` and a buffer of its own, not cleared.
 *
 *  The products are plain 32-bit arithmetic: a byte count that wraps to 0 or below is refused after the
 *  record has been written, and one that wraps to a positive number gives a short buffer, so a caller that
 *  takes sizes from outside tests them first. `matuniv_malloc` stores `type` before anything else.
 *
 *  - KORVO_ERR_NULL_POINTER: `mat` is null.
 *  - KORVO_ERR_ILLEGAL_SIZE: `nrow` or `ncol` is below 1; the record is not written.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) `type` is KORVO_SINT8 or no type; only the type has been written.
 *  - KORVO_ERR_ILLEGAL_VALUE: the byte count wraps to 0 or below; `data` is as it was.
 *  - KORVO_ERR_MALLOC: no memory; `data` is null. */
/** @{ */
KORVO_API _korvo_errcode matu8_malloc(_u8_mat* mat, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode matu16_malloc(_u16_mat* mat, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode matu32_malloc(_u32_mat* mat, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode mats16_malloc(_s16_mat* mat, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode mats32_malloc(_s32_mat* mat, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode matflt_malloc(_flt_mat* mat, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode matdbl_malloc(_dbl_mat* mat, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode matcpx_malloc(_cpx_mat* mat, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode matuniv_malloc(_univ_mat* mat, int32_t nrow, int32_t ncol, _korvo_type type);
/** @} */

/** @name realloc
 *  Changes the shape of a matrix that owns its buffer. Storage is flat: a new `ncol` reads the old elements
 *  in other places and moves none; new elements are not cleared. It cannot serve as a first allocation.
 *
 *  - KORVO_ERR_NULL_POINTER, KORVO_ERR_ILLEGAL_SIZE: the matrix is not valid; nothing has changed.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) `type` of the matrix is KORVO_SINT8 or no type.
 *  - KORVO_ERR_ILLEGAL_SIZE: `nrow` or `ncol` is below 1; nothing has changed.
 *  - KORVO_ERR_ILLEGAL_VALUE, KORVO_ERR_MALLOC: the byte count wraps to 0 or below, as in malloc; no memory.
 *    `data` is still the old buffer and the record states the new size, so it is good for `free` only. */
/** @{ */
KORVO_API _korvo_errcode matu8_realloc(_u8_mat* mat, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode matu16_realloc(_u16_mat* mat, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode matu32_realloc(_u32_mat* mat, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode mats16_realloc(_s16_mat* mat, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode mats32_realloc(_s32_mat* mat, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode matflt_realloc(_flt_mat* mat, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode matdbl_realloc(_dbl_mat* mat, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode matcpx_realloc(_cpx_mat* mat, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode matuniv_realloc(_univ_mat* mat, int32_t nrow, int32_t ncol);
/** @} */

/** @name free
 *  Gives the buffer back and makes `data` null; the sizes stay. A null record, and a record without a
 *  buffer, is success, so that a second `free` is harmless.
 *
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) `type` is KORVO_SINT8 or no type; nothing is freed. */
/** @{ */
KORVO_API _korvo_errcode matu8_free(_u8_mat* mat);
KORVO_API _korvo_errcode matu16_free(_u16_mat* mat);
KORVO_API _korvo_errcode matu32_free(_u32_mat* mat);
KORVO_API _korvo_errcode mats16_free(_s16_mat* mat);
KORVO_API _korvo_errcode mats32_free(_s32_mat* mat);
KORVO_API _korvo_errcode matflt_free(_flt_mat* mat);
KORVO_API _korvo_errcode matdbl_free(_dbl_mat* mat);
KORVO_API _korvo_errcode matcpx_free(_cpx_mat* mat);
KORVO_API _korvo_errcode matuniv_free(_univ_mat* mat);
/** @} */

/** @name validate
 *  Whether a record is a matrix. The first fault, in this order, is returned:
 *
 *  - KORVO_ERR_NULL_POINTER: `mat` is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) `type` is KORVO_SINT8 or no type.
 *  - KORVO_ERR_ILLEGAL_SIZE: `nrow` or `ncol` is below 1.
 *  - KORVO_ERR_NULL_POINTER: `data` is null.
 *  - KORVO_ERR_ILLEGAL_SIZE: `nelem` is not `nrow * ncol`. The product is formed without wrapping: a matrix
 *    of more than 2147483647 elements does not exist, whatever its `nelem` says. */
/** @{ */
KORVO_API _korvo_errcode matu8_validate(const _u8_mat* mat);
KORVO_API _korvo_errcode matu16_validate(const _u16_mat* mat);
KORVO_API _korvo_errcode matu32_validate(const _u32_mat* mat);
KORVO_API _korvo_errcode mats16_validate(const _s16_mat* mat);
KORVO_API _korvo_errcode mats32_validate(const _s32_mat* mat);
KORVO_API _korvo_errcode matflt_validate(const _flt_mat* mat);
KORVO_API _korvo_errcode matdbl_validate(const _dbl_mat* mat);
KORVO_API _korvo_errcode matcpx_validate(const _cpx_mat* mat);
KORVO_API _korvo_errcode matuniv_validate(const _univ_mat* mat);
/** @} */

/** @name wrap_data
 *  Makes `mat` a matrix of the elements at `data`, which it borrows. There is no typed form for cpx.
 *
 *  The typed forms fill the record and then return what `validate` says of it. `matuniv_wrap_data` looks at
 *  less: not at the sizes, and it takes KORVO_SINT8.
 *
 *  - KORVO_ERR_NULL_POINTER: `mat` or `data` is null; the universal form then writes nothing.
 *  - KORVO_ERR_ILLEGAL_SIZE: (typed) `nrow` or `ncol` is below 1, or their product is too large.
 *  - KORVO_ERR_ILLEGAL_VALUE: (universal) `type` is outside 0 to 8; it has been written. */
/** @{ */
KORVO_API _korvo_errcode matu8_wrap_data(_u8_mat* mat, uint8_t* data, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode matu16_wrap_data(_u16_mat* mat, uint16_t* data, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode matu32_wrap_data(_u32_mat* mat, uint32_t* data, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode mats16_wrap_data(_s16_mat* mat, int16_t* data, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode mats32_wrap_data(_s32_mat* mat, int32_t* data, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode matflt_wrap_data(_flt_mat* mat, float* data, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode matdbl_wrap_data(_dbl_mat* mat, double* data, int32_t nrow, int32_t ncol);
KORVO_API _korvo_errcode matuniv_wrap_data(_univ_mat* mat, void* data, int32_t nrow, int32_t ncol,
                                           _korvo_type type);
/** @} */

/** Makes `mat` a universal matrix with the four fields of `typed`, a record of the kind that belongs to `type`.
 *  The buffer is shared; the record is not validated. KORVO_SINT8 is taken.
 *
 *  - KORVO_ERR_NULL_POINTER: `mat` or `typed` is null.
 *  - KORVO_ERR_ILLEGAL_VALUE: `type` is outside 0 to 8; it has been written. */
KORVO_API _korvo_errcode matuniv_wrap_matrix(_univ_mat* mat, const void* typed, _korvo_type type);

KORVO_END_DECLARATIONS

#endif

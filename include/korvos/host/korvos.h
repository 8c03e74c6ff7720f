/* SPDX-License-Identifier: MIT */
/** @file host/korvos.h  The bridge to the host: its matrices, its messages, and what it looks for.
 *
 *  The host holds every array as an ::aMatrix: column by column, doubles, real and imaginary parts apart.
 *  The bridge copies between that and the library's matrices, element (i, j) to element (i, j); nothing is
 *  computed. The two never share a buffer. No copy polls. A copy is refused before its first element, or
 *  done. */
#ifndef KORVOS_HOST_KORVOS_H
#define KORVOS_HOST_KORVOS_H

#include "korvos/core/mat_set.h"

KORVO_BEGIN_DECLARATIONS

/** The host's matrix. Element (i, j) is `real[rows_allocated * j + i]`, and `imag` likewise. */
typedef struct aMatrix {
  int32_t reserved_first;  /**< the host's own: neither read nor written here */
  int32_t rows_allocated;  /**< from one column to the next, in elements: at least `rows` */
  uint32_t bytes_per_part; /**< size of the whole array at `real`, and of that at `imag` */
  int32_t reserved_fourth; /**< the host's own: neither read nor written here */
  double* real;            /**< null: all real parts are 0.0 */
  double* imag;            /**< null: all imaginary parts are 0.0 */
  int32_t rows, cols;
} aMatrix;

static_assert(offsetof(aMatrix, rows_allocated) == 4 && offsetof(aMatrix, bytes_per_part) == 8 &&
                  offsetof(aMatrix, reserved_fourth) == 12 && offsetof(aMatrix, real) == 16 &&
                  offsetof(aMatrix, imag) == 16 + sizeof(void*) &&
                  offsetof(aMatrix, rows) == 16 + 2 * sizeof(void*) &&
                  offsetof(aMatrix, cols) == 20 + 2 * sizeof(void*) &&
                  sizeof(aMatrix) == 24 + 2 * sizeof(void*),
              "layout of the host's matrix");

/** @name copies
 *  Checks, in order:
 *
 *  - KORVO_ERR_NULL_POINTER: an argument is null.
 *  - the codes of matuniv_validate(), or matset_verify_allsame(), for the library's side.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ, or `rows_allocated` is below `rows`.
 *  - KORVO_ERR_ILLEGAL_TYPE: an element type that the routine does not take.
 *  - (sets) the codes of matuniv_validate() for each matrix.
 *  - KORVO_ERR_ILLEGAL_SIZE: (to the host) an array is to be made, and `bytes_per_part` is too small for it.
 *
 *  From the host: dbl takes a host matrix without `imag` only, even if all of `imag` is 0.0; cpx takes any.
 *  Other types are refused. Where an array of the host is null, 0.0 is read.
 *
 *  To the host: every type but KORVO_SINT8, each element exactly; `imag` is written from cpx only, and
 *  otherwise stays as it is. An array that is null stays null while there is nothing but 0.0 to store. From
 *  the first element on that is not 0.0 (NaN is not) all are stored: in an array of `bytes_per_part` / 8
 *  doubles, zeros to start with, from calloc(), which the host gives back by free(). Where there is no
 *  memory for it, it stays null, and the copy is KORVO_ERR_OK all the same. Both parts of
 *  a cpx matrix follow this rule on their own. An array that is there gets every element; what lies between
 *  two columns is never touched.
 *
 *  Colour: a set of three matrices, the planes, is one host matrix of the same rows and three times the
 *  columns, plane after plane. From the host the planes are dbl, and `imag` is not looked at. To the host
 *  they have any real type, and a set of one matrix, a grey image, is stored three times over. */
/** @{ */
KORVO_API _korvo_errcode matuniv_assign_from_sheetrix(const aMatrix* in, _univ_mat* out);
KORVO_API _korvo_errcode matuniv_assign_to_sheetrix(const _univ_mat* in, aMatrix* out);
KORVO_API _korvo_errcode matset_assign_from_sheetrix_color(const aMatrix* in, _mat_set* out);
KORVO_API _korvo_errcode matset_assign_to_sheetrix_color(const _mat_set* in, aMatrix* out);
/** @} */

/** @name column pointers
 *  An array of `cols` pointers, one to the first element of each column of `real` or `imag`, or nulls where
 *  that is null. It comes from malloc(), and the caller gives it back by free().
 *  @return null if there is no memory, `matrix` is null, `cols` is below 1 or `rows_allocated` negative */
/** @{ */
KORVO_API double** allocRealColArr(const aMatrix* matrix);
KORVO_API double** allocImagColArr(const aMatrix* matrix);
/** @} */

/** The host's messages, each the index of its text in ::shx_std_error_messages. */
enum _std_errormsg KORVO_INT32_ENUM {
  STD_ERRORMSG_FILE_NOT_FOUND = 0,
  STD_ERRORMSG_FILE_IO_ERROR = 1,
  STD_ERRORMSG_CANNOT_UNDERSTAND_DATA_FILE = 2,
  STD_ERRORMSG_UNRECOGNIZED_IMAGE_FORMAT = 3,
  STD_ERRORMSG_ERROR_WRITING_FILE = 4,
  STD_ERRORMSG_INTERRUPTED = 5,
  STD_ERRORMSG_ILLEGAL_CONTEXT = 6,
  STD_ERRORMSG_ERROR_IN_CONSTANT = 7,
  STD_ERRORMSG_UNKNOWN_ERROR = 8,
  STD_ERRORMSG_WRONG_NUMBER_OF_ARGUMENTS = 9,
  STD_ERRORMSG_TOO_FEW_ARGUMENTS = 10,
  STD_ERRORMSG_TOO_MANY_ARGUMENTS = 11,
  STD_ERRORMSG_NON_SCALAR_VALUE = 12,
  STD_ERRORMSG_MUST_BE_REAL = 13,
  STD_ERRORMSG_MUST_BE_IMAGINARY = 14,
  STD_ERRORMSG_MUST_BE_INTEGER = 15,
  STD_ERRORMSG_MUST_BE_VECTOR = 16,
  STD_ERRORMSG_MUST_BE_REAL_VECTOR = 17,
  STD_ERRORMSG_MUST_BE_ARRAY = 18,
  STD_ERRORMSG_MAY_NOT_BE_NESTED = 19,
  STD_ERRORMSG_MUST_BE_REAL_ARRAY = 20,
  STD_ERRORMSG_MUST_BE_RANGE = 21,
  STD_ERRORMSG_MUST_BE_FUNCTION = 22,
  STD_ERRORMSG_MUST_BE_STRING = 23,
  STD_ERRORMSG_MUST_BE_LIST = 24,
  STD_ERRORMSG_MUST_BE_SCALAR_OR_ARRAY = 25,
  STD_ERRORMSG_MUST_BE_SCALAR_OR_VECTOR = 26,
  STD_ERRORMSG_MUST_BE_SCALAR_OR_REAL_VECTOR = 27,
  STD_ERRORMSG_MUST_BE_STRING_OR_VECTOR = 28,
  STD_ERRORMSG_MUST_BE_STRING_SCALAR_OR_VECTOR = 29,
  STD_ERRORMSG_MUST_BE_NONZERO = 30,
  STD_ERRORMSG_MUST_BE_POSITIVE = 31,
  STD_ERRORMSG_MUST_BE_POSITIVE_INTEGER = 32,
  STD_ERRORMSG_MUST_BE_ODD_INTEGER = 33,
  STD_ERRORMSG_MUST_BE_EVEN_INTEGER = 34,
  STD_ERRORMSG_MUST_BE_NONNEGATIVE = 35,
  STD_ERRORMSG_INVALID_PROBABILITY_VALUE = 36,
  STD_ERRORMSG_MUST_BE_INCREASING = 37,
  STD_ERRORMSG_ARRAY_SIZE_MISMATCH = 38,
  STD_ERRORMSG_UNEQUAL_VECTOR_DIMENSIONS = 39,
  STD_ERRORMSG_MUST_BE_SQUARE = 40,
  STD_ERRORMSG_NOT_A_PACKED_IMAGE_MATRIX = 41,
  STD_ERRORMSG_EMPTY_MATRIX = 42,
  STD_ERRORMSG_MUST_BE_A_MULTIDIMENSIONAL_ARRAY = 43,
  STD_ERRORMSG_WRONG_SIZE_VECTOR = 44,
  STD_ERRORMSG_INVALID_DIMENSION = 45,
  STD_ERRORMSG_OUT_OF_MEMORY = 46,
  STD_ERRORMSG_MATRIX_TOO_BIG = 47,
  STD_ERRORMSG_OVERFLOW = 48,
  STD_ERRORMSG_FLOATING_POINT_ERROR = 49,
  STD_ERRORMSG_STACK_OVERFLOW = 50,
  STD_ERRORMSG_NOT_CONVERGING = 51,
  STD_ERRORMSG_TOO_MANY_ITERATIONS = 52,
  STD_ERRORMSG_UNEXPECTED_RETURN_VALUE = 53,
  STD_ERRORMSG_SINGULARITY = 54,
  STD_ERRORMSG_INTEGER_TOO_SMALL = 55,
  STD_ERRORMSG_INTEGER_TOO_LARGE = 56,
  STD_ERRORMSG_SIGNIFICANCE_LOST = 57
};
typedef enum _std_errormsg _std_errormsg;

static_assert(sizeof(_std_errormsg) == 4, "enumerations are 32 bits wide");

/** The texts of the host's messages. */
extern KORVO_API const char* const shx_std_error_messages[58];

/** The host's message for a code of the library.
 *  @return out of memory, invalid dimension, floating point error (for a division by zero), file i/o error,
 *  overflow or interrupted; for all other codes, KORVO_ERR_OK among them, unexpected return value */
KORVO_API _std_errormsg korvo_err_translate(_korvo_errcode error);

/** Self-registration: there is nothing to register. @return 0 */
KORVO_API int32_t DllRegisterServer(void);
/** Self-registration: there is nothing to register. @return 0 */
KORVO_API int32_t DllUnregisterServer(void);

KORVO_END_DECLARATIONS

#endif

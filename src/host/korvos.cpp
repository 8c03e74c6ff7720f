// What the host looks for: its messages, the translation of codes, the entry points for registration.
#include "korvos/host/korvos.h"

extern "C" {

const char* const shx_std_error_messages[58] = {"file not found",
                                                "file i/o error",
                                                "can't understand data file",
                                                "unrecognized image format",
                                                "error writing file",
                                                "interrupted",
                                                "illegal context",
                                                "error in constant",
                                                "Unknown error",
                                                "wrong number of arguments",
                                                "too few arguments",
                                                "too many arguments",
                                                "non-scalar value",
                                                "must be real",
                                                "must be imaginary",
                                                "must be integer",
                                                "must be vector",
                                                "must be real vector",
                                                "must be array",
                                                "may not be nested",
                                                "must be real array",
                                                "must be range",
                                                "must be function",
                                                "must be string",
                                                "Must be list",
                                                "EfiMustBeScalarOrArray",
                                                "EfiMustBeScalarOrVector",
                                                "EfiMustBeScalarOrRealVector",
                                                "EfiMustBeStringOrVector",
                                                "EfiMustBeStringScalarOrVector",
                                                "must be nonzero",
                                                "must be positive",
                                                "must be positive integer",
                                                "must be odd integer",
                                                "must be even integer",
                                                "must be nonnegative",
                                                "invalid probability value",
                                                "must be increasing",
                                                "array size mismatch",
                                                "unequal vector dimensions",
                                                "must be square",
                                                "not a packed image matrix",
                                                "empty matrix",
                                                "Must be a multidimensional array",
                                                "wrong size vector",
                                                "invalid dimension",
                                                "out of memory",
                                                "matrix too big",
                                                "overflow",
                                                "floating point error",
                                                "stack overflow",
                                                "not converging",
                                                "too many iterations",
                                                "unexpected return value",
                                                "singularity",
                                                "integer too small",
                                                "integer too large",
                                                "significance lost"};

_std_errormsg korvo_err_translate(_korvo_errcode error) {
  switch (error) {
    case KORVO_ERR_MALLOC:
      return STD_ERRORMSG_OUT_OF_MEMORY;
    case KORVO_ERR_ILLEGAL_SIZE:
      return STD_ERRORMSG_INVALID_DIMENSION;
    case KORVO_ERR_DIVIDE_BY_ZERO:
      return STD_ERRORMSG_FLOATING_POINT_ERROR;
    case KORVO_ERR_IO:
      return STD_ERRORMSG_FILE_IO_ERROR;
    case KORVO_ERR_OVERFLOW:
      return STD_ERRORMSG_OVERFLOW;
    case KORVO_ERR_INTERRUPT:
      return STD_ERRORMSG_INTERRUPTED;
    default:  // KORVO_ERR_OK too: a success has no message
      return STD_ERRORMSG_UNEXPECTED_RETURN_VALUE;
  }
}

// There is nothing to register.
int32_t DllRegisterServer(void) { return 0; }
int32_t DllUnregisterServer(void) { return 0; }

}  // extern "C"

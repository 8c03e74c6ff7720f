// The return code of every routine, and the one early return.
#pragma once

#include "korvos/core/ut_err.h"

namespace korvo {

using code = _korvo_errcode;

}  // namespace korvo

// Ends the routine with the code of expr unless that is success. Nothing else in the library hides a return.
#define TRY(expr)                                                             \
  do {                                                                        \
    if (const ::korvo::code try_ = (expr); try_ != KORVO_ERR_OK) return try_; \
  } while (0)

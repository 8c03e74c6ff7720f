// Error messages.
#include "korvos/core/ut_err.h"

#include <array>
#include <cstddef>

namespace {

constexpr std::array messages = {
    "OK, no error",
    "Memory allocation error",
    "Passed in a null pointer",
    "Illegal memory address",
    "Illegal data size",
    "Illegal data type",
    "Illegal data value",
    "Access past data bounds",
    "Divide by zero",
    "Input-output error",
    "Data overflow",
    "User interrupted calculation",
    "Singular or nearly singular matrix",
    "Iterative algorithm is not converging",
    "Cumulative roundoff errors",
    "Singularity encountered in data",
    "Feature has not been implemented",
};

}  // namespace

extern "C" _korvo_errcode korvo_err_string(_korvo_errcode error, const char** text) {
  const auto index = static_cast<std::size_t>(error);
  if (text) *text = messages[index < messages.size() ? index : std::size_t{KORVO_ERR_ILLEGAL_VALUE}];
  return KORVO_ERR_OK;
}

#include "korvos/core/ut_err.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string message(int error) {
  const char* text = nullptr;
  EXPECT_EQ(korvo_err_string(static_cast<_korvo_errcode>(error), &text), KORVO_ERR_OK);
  return text;
}

TEST(Err, HasItsMessageForEachValue) {
  std::string all;
  for (int error = 0; error <= 16; ++error) all += message(error) + '\n';
  EXPECT_EQ(
      all,
      "OK, no error\nMemory allocation error\nPassed in a null pointer\nIllegal memory address\n"
      "Illegal data size\nIllegal data type\nIllegal data value\nAccess past data bounds\nDivide by zero\n"
      "Input-output error\nData overflow\nUser interrupted calculation\n"
      "Singular or nearly singular matrix\nIterative algorithm is not converging\n"
      "Cumulative roundoff errors\nSingularity encountered in data\nFeature has not been implemented\n");
  for (const int error : {17, -1, INT32_MAX, INT32_MIN}) EXPECT_EQ(message(error), "Illegal data value");
  EXPECT_EQ(korvo_err_string(KORVO_ERR_IO, nullptr), KORVO_ERR_OK);
}

}  // namespace

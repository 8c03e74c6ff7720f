#include "korvos/core/ut_err.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(Err, HasItsMessageForEachValue) {
  std::string all;
  const char* text = nullptr;
  for (const int error : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, -1}) {
    EXPECT_EQ(korvo_err_string(static_cast<_korvo_errcode>(error), &text), KORVO_ERR_OK);
    all += text + std::string("\n");
  }
  EXPECT_EQ(
      all,
      "OK, no error\nMemory allocation error\nPassed in a null pointer\nIllegal memory address\n"
      "Illegal data size\nIllegal data type\nIllegal data value\nAccess past data bounds\nDivide by zero\n"
      "Input-output error\nData overflow\nUser interrupted calculation\nSingular or nearly singular "
      "matrix\nIterative algorithm is not converging\nCumulative roundoff errors\nSingularity encountered "
      "in data\nFeature has not been implemented\nIllegal data value\nIllegal data value\n");
  EXPECT_EQ(korvo_err_string(KORVO_ERR_IO, nullptr), KORVO_ERR_OK);
}

}  // namespace

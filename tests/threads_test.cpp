// Callers on several threads, each with its own matrices and host: run under the thread sanitizer too.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "korvos/matrix/mat_arit.h"
#include "korvos/matrix/mat_assn.h"
#include "tests/support/host.hpp"
#include "tests/support/matrix.hpp"

TEST(Threads, ShareNothingButTheThreshold) {
  threshold unset(0.0);
  constexpr int size = 60;
  const auto a = korvo::dbl_matrix::random(size, size, 1);
  korvo::dbl_matrix expected(size, size);
  ASSERT_EQ(matdbl_multiply(&a, &a, nullptr, &expected), KORVO_ERR_OK);
  korvo_interrupt_threshold = 0.0;  // settled anew by whichever thread polls first

  std::vector<int> right(4);
  std::vector<std::thread> callers;
  for (int& verdict : right)
    callers.emplace_back([&verdict, &a, &expected] {
      fake_host host;
      korvo::dbl_matrix out(size, size);
      korvo::dbl_matrix turned(size, size);
      verdict = matdbl_multiply(&a, &a, host.intrp_ptr(), &out) == KORVO_ERR_OK &&
                matdbl_transpose(&a, host.intrp_ptr(), &turned) == KORVO_ERR_OK &&
                out.elements() == expected.elements() && host.polls() == 2;
    });
  for (std::thread& caller : callers) caller.join();
  EXPECT_EQ(right, std::vector<int>(4, 1));
  EXPECT_EQ(korvo_interrupt_threshold, 10000000.0);
}

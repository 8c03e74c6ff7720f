#include "korvos/core/ut_intrp.h"

#include <gtest/gtest.h>

#include "tests/support/host.hpp"

namespace {

const double initial_threshold = korvo_interrupt_threshold;  // before any test

TEST(Interrupt, MovesTheCheckpointOnceAndOnlyWhenItIsPassed) {
  const threshold fresh(0.0);
  double next = 0.0;
  for (const double expected : {1e7, 2e7, 3e7, 3e7}) {  // the last cost is not strictly greater
    EXPECT_EQ(korvo_interrupt(3e7, &next, nullptr), 0);
    EXPECT_EQ(next, expected);
  }
  EXPECT_EQ(korvo_interrupt_threshold, 1e7);
  EXPECT_EQ(initial_threshold, 0.0);
  for (const double chosen : {500.0, -1.0}) {
    const threshold set(chosen);
    next = 0.0;
    EXPECT_EQ(korvo_interrupt(3.0, &next, nullptr), 0);
    EXPECT_EQ(next, chosen);
    EXPECT_EQ(korvo_interrupt_threshold, chosen);
  }
}

TEST(Interrupt, PollsWhateverTheCheckpointSays) {
  const threshold fresh(0.0);
  double far = 1e300;
  for (const int32_t answer : {1, 2, 0, -1, 257, INT32_MIN}) {
    fake_host host(0, answer);
    EXPECT_EQ(korvo_interrupt(1.0, nullptr, host.intrp_ptr()), answer == 1 ? 1 : 0) << answer;
    EXPECT_EQ(korvo_interrupt(1.0, &far, host.intrp_ptr()), answer == 1 ? 1 : 0);
    EXPECT_EQ(host.polls(), 2);
  }
  EXPECT_EQ(far, 1e300);
  EXPECT_EQ(korvo_interrupt_threshold, 1e7) << "settled without a checkpoint, too";
}

TEST(Interrupt, HasNothingToAskAHostWithoutAnObject) {
  void* record[] = {nullptr, nullptr};
  EXPECT_EQ(korvo_interrupt(1.0, nullptr, record), 0);
}

}  // namespace

#include "korvos/core/ut_intrp.h"

#include <gtest/gtest.h>

#include "tests/support/host.hpp"

namespace {

const double initial_threshold = korvo_interrupt_threshold;  // before any test

TEST(Interrupt, MovesTheCheckpointOnceAndOnlyWhenItIsPassed) {
  EXPECT_EQ(initial_threshold, 0.0);
  for (const double chosen : {0.0, 500.0, -1.0}) {
    const threshold set(chosen);
    const double settled = chosen == 0.0 ? 1e7 : chosen;
    double next = 0.0, at_cost = settled;
    EXPECT_EQ(korvo_interrupt(3e7, &next, nullptr) + korvo_interrupt(settled, &at_cost, nullptr), 0);
    EXPECT_EQ(next, settled) << "once, however far ahead the cost is";
    EXPECT_EQ(at_cost, settled) << "a cost that is not strictly greater";
    EXPECT_EQ(korvo_interrupt_threshold, settled);
  }
}

// A host in C++: virtual functions in a row, of which the eleventh polls.
template <int n>
struct operations : operations<n - 1> {
  using operations<n - 1>::operation;
  virtual int operation(int (* /*unused*/)[n]) { return 1; }
};
template <>
struct operations<0> {
  void operation() {}
};
struct virtual_host final : operations<10> {
  virtual int poll(int one) { return ++polls, one == 1 ? answer : 1; }
  int polls = 0, answer = 0;
};

TEST(Interrupt, PollsWhateverTheCheckpointSays) {
  const threshold fresh(0.0);
  virtual_host host;
  void *record[] = {nullptr, &host}, *empty[] = {nullptr, nullptr};
  double far = 1e300;
  for (const int answer : {1, 2, 0, -1, 257, INT32_MIN}) {
    host.answer = answer;
    for (double* const next : {&far, static_cast<double*>(nullptr)})
      EXPECT_EQ(korvo_interrupt(1.0, next, record), answer == 1 ? 1 : 0) << answer;
  }
  EXPECT_EQ(host.polls, 12);
  EXPECT_EQ(far, 1e300);
  EXPECT_EQ(korvo_interrupt(1.0, nullptr, empty), 0) << "a host without an object";
}

}  // namespace

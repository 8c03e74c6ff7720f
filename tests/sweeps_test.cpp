// Every exit of every exported routine: allocations that fail, hosts that stop it, inputs that must not change.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/calls/calls.hpp"
#include "tests/support/declared_names.hpp"
#include "tests/support/heap.hpp"
#include "tests/support/host.hpp"
#include "tests/support/levels.hpp"

namespace {

struct outcome {
  _korvo_errcode result = KORVO_ERR_OK;
  std::uint64_t results = 0;
  int allocations = 0;
};

class Sweep : public testing::TestWithParam<call_row> {
 protected:
  // Runs the call once in a scene of its own, with the k-th allocation failing, and checks that it leaves
  // nothing behind and its inputs alone.
  outcome run(void* intrp_ptr, int failing_allocation = 0, bool and_after = false) {
    const int live_before = heap::live_blocks();
    outcome seen;
    {
      scene s;
      const ready_call call = GetParam().prepare(s);
      if (failing_allocation > 0)
        heap::fail_at(failing_allocation, and_after);
      else
        heap::fail_never();
      seen.result = call(intrp_ptr);
      seen.allocations = heap::allocations();
      heap::fail_never();
      EXPECT_TRUE(s.inputs_are_unchanged());
      seen.results = s.results();
    }
    EXPECT_EQ(heap::live_blocks(), live_before) << "something stayed allocated, or was freed twice";
    return seen;
  }

  threshold every_test_polls_{1e-9};
};

TEST_P(Sweep, GivesTheSameBitsAgain) {
  const outcome first = run(nullptr);
  ASSERT_EQ(first.result, KORVO_ERR_OK);
  each_level([&] { EXPECT_EQ(run(nullptr).results, first.results); });
}

TEST_P(Sweep, ReportsEveryFailedAllocation) {
  const int allocations = run(nullptr).allocations;
  for (int k = 1; k <= allocations; ++k)
    for (const bool and_after : {false, true})
      EXPECT_EQ(run(nullptr, k, and_after).result, KORVO_ERR_MALLOC) << "allocation " << k;
}

TEST_P(Sweep, StopsAtEveryPoll) {
  fake_host patient;
  ASSERT_EQ(run(patient.intrp_ptr()).result, KORVO_ERR_OK);
  for (int k = 1; k <= patient.polls(); ++k) {
    fake_host host(k);
    const _korvo_errcode result = run(host.intrp_ptr()).result;
    if (result == KORVO_ERR_OK && GetParam().may_be_silent) continue;
    EXPECT_EQ(result, KORVO_ERR_INTERRUPT) << "poll " << k;
    EXPECT_EQ(host.polls(), k) << "polled again after it was stopped";
  }
}

TEST_P(Sweep, GoesOnForAnyAnswerButOne) {
  const outcome undisturbed = run(nullptr);
  for (const int32_t answer : {2, 0, -1}) {
    fake_host host(0, answer);
    const outcome seen = run(host.intrp_ptr());
    EXPECT_EQ(seen.result, KORVO_ERR_OK);
    EXPECT_EQ(seen.results, undisturbed.results);
  }
}

std::string test_name(const testing::TestParamInfo<call_row>& info) {
  std::string name = info.param.name;
  std::replace(name.begin(), name.end(), '/', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Calls, Sweep, testing::ValuesIn(all_calls()), test_name);

TEST(Table, HasARowForEachExportedRoutine) {
  std::set<std::string> rows;
  for (const call_row& row : all_calls()) rows.insert(row.name.substr(0, row.name.find('/')));
  const std::vector<std::string> declared = declared_names();
  ASSERT_FALSE(declared.empty());
  for (const std::string& name : declared) EXPECT_TRUE(rows.erase(name) == 1) << "no row for " << name;
  for (const std::string& name : rows) ADD_FAILURE() << "row for a name that no header declares: " << name;
}

}  // namespace

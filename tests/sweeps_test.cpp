// Every exit of every exported routine: allocations that fail, hosts that stop it, inputs that must not change.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <set>

#include "tests/calls/calls.hpp"
#include "tests/support/heap.hpp"
#include "tests/support/host.hpp"
#include "tests/support/levels.hpp"
#include "tests/support/locale.hpp"

namespace {

// What goes wrong in a call: the k-th allocation, and all after it too; the k-th use of its stream; a file that
// ends early.
struct trouble {
  int allocation = INT_MAX;
  bool and_after = false;
  int stream_call = INT_MAX;
  std::size_t most_text = std::string::npos;
  faults spoiled = {};
};

struct outcome {
  _korvo_errcode result = KORVO_ERR_OK;
  std::uint64_t results = 0;
  int allocations = 0, stream_calls = 0;
  long position = 0;  // in the stream
};

class Sweep : public testing::TestWithParam<call_row> {
 protected:
  // Runs the call once in a scene of its own, and checks that it leaves nothing behind and its inputs alone.
  outcome run(void* intrp_ptr, const trouble& in = {}) {
    const int live_before = heap::live_blocks();
    outcome seen;
    {
      scene s;
      s.failing_call = in.stream_call;
      s.most_text = in.most_text;
      s.spoiled = in.spoiled;
      const ready_call call = GetParam().prepare(s);
      heap::fail_at(in.allocation, in.and_after);
      seen.result = call(intrp_ptr);
      seen.allocations = heap::allocations();
      heap::fail_never();
      EXPECT_TRUE(s.inputs_are_unchanged());
      seen.results = s.results();
      if (s.streamed) seen.stream_calls = s.streamed->calls(), seen.position = std::ftell(s.streamed->get());
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
      EXPECT_EQ(run(nullptr, {k, and_after}).result, KORVO_ERR_MALLOC) << "allocation " << k;
}

// Each fault alone, and with all that the routine looks for after it.
TEST_P(Sweep, RefusesInItsOrder) {
  for (faults rest = GetParam().refused; !rest.empty(); rest.erase(rest.begin())) {
    EXPECT_EQ(run(nullptr, {.spoiled = rest}).result, rest[0].expected) << "and " << rest.size() - 1 << " more";
    EXPECT_EQ(run(nullptr, {.spoiled = {rest[0]}}).result, rest[0].expected) << rest.size() - 1 << " to come";
  }
}

// In a locale with a decimal comma, which must change nothing and be back after every call.
TEST_P(Sweep, ReportsEveryFaultOfAStreamInAnyLocale) {
  const outcome whole = run(nullptr);
  if (whole.stream_calls == 0) return;
  const comma_locale host;
  EXPECT_EQ(run(nullptr).results, whole.results);
  for (int k = 1; k <= whole.stream_calls; ++k)
    EXPECT_EQ(run(nullptr, {.stream_call = k}).result, KORVO_ERR_IO) << "call " << k;
  for (long size = 0; GetParam().reads && size < whole.position; ++size) {
    const _korvo_errcode result = run(nullptr, {.most_text = static_cast<std::size_t>(size)}).result;
    EXPECT_TRUE(result == KORVO_ERR_IO || result == KORVO_ERR_ILLEGAL_TYPE) << "cut to " << size;
  }
  EXPECT_EQ(host.is_set(), host.is_available());
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
  std::ifstream declared(KORVOS_DECLARED_NAMES);  // by the public headers
  for (std::string name; std::getline(declared, name);)
    EXPECT_TRUE(rows.erase(name) == 1) << "no row for " << name;
  for (const std::string& name : rows) ADD_FAILURE() << "row for a name that no header declares: " << name;
}

TEST(Table, HasUniversalFormsThatGiveTheBitsOfTheTypedOnes) {
  std::map<std::string, std::uint64_t> results;
  for (const call_row& row : all_calls()) {
    scene s;
    EXPECT_EQ(row.prepare(s)(nullptr), KORVO_ERR_OK);
    results[row.name] = s.results();
  }
  for (const char* other : {"matuniv_range", "matuniv_wrap_data"}) results.erase(other);  // by their arguments
  for (const auto& [name, result] : results) {
    const std::string universal = name.starts_with("matdbl_") ? "matuniv_" + name.substr(7) : name;
    EXPECT_TRUE(!results.contains(universal) || results[universal] == result) << name;
  }
}

}  // namespace

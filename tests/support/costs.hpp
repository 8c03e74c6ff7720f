// The stated costs of a routine, seen through its polls.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/host.hpp"

// The polls of a tally that takes these values one after another, each tested.
inline int polls_of(const std::vector<double>& tallies, double distance) {
  int polls = 0;
  double next = 0.0;
  for (const double tally : tallies) {
    if (!(next < tally)) continue;
    ++polls;
    next += distance;
  }
  return polls;
}

// The tally of a part that polls once, whatever the distance between polls.
constexpr double once = 1e300;

// Calls call(intrp_ptr) with distances between polls that tell the stated tallies from others: every test
// polls, and polls that are just due, just not due, or rare. `parts` are those of the routine and of those that
// it calls: the tallies after each piece of work.
template <class Call>
void expect_tallies_of(Call call, const std::vector<std::vector<double>>& parts) {
  std::vector<double> distances = {1e-9, 1e7};
  for (const std::vector<double>& tallies : parts)
    for (const double tally : tallies)
      for (const double share : {1.0, 0.5, 1.0 / 3.0})
        for (const double nudge : {0.999, 1.0, 1.001})
          if (tally < once) distances.push_back(tally * share * nudge);
  for (const double distance : distances) {
    const threshold set(distance);
    fake_host host;
    EXPECT_EQ(call(host.intrp_ptr()), KORVO_ERR_OK);
    int polls = 0;
    for (const std::vector<double>& tallies : parts) polls += polls_of(tallies, distance);
    EXPECT_EQ(host.polls(), polls) << "with " << distance << " between polls";
  }
}
template <class Call>
void expect_tallies(Call call, const std::vector<double>& tallies, const std::vector<double>& before = {}) {
  expect_tallies_of(call, {before, tallies});
}

// The tallies of `steps` pieces of work of one cost.
inline std::vector<double> steps_of(int steps, double cost) {
  std::vector<double> tallies;
  for (int i = 1; i <= steps; ++i) tallies.push_back(i * cost);
  return tallies;
}

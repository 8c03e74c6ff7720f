// The words that every routine is written in.
#include "core/arithmetic.hpp"
#include "core/checkpoint.hpp"
#include "core/temporary.hpp"
#include "tests/support/all.hpp"

namespace {

using namespace korvo;

// The steps after which a tally of 2000 equal costs polls, in strips of at most `limit` or, at 0, singly.
std::vector<int> polled_steps(double tally, double cost, int limit) {
  fake_host host;
  checkpoint point(host.intrp_ptr(), tally);
  std::vector<int> polled;
  for (int done = 0, length = 1; done < 2000; done += length) {
    const int most = std::min(limit, 2000 - done), before = host.polls();
    if (limit > 0) length = point.strip(cost, most);
    EXPECT_TRUE(limit == 0 || (length >= 1 && length <= most));
    EXPECT_EQ(limit == 0 ? point.add(cost) : point.add_strip(cost, length), KORVO_ERR_OK);
    if (host.polls() > before) polled.push_back(done + length);
  }
  return polled;
}

TEST(Checkpoint, PollsInStripsWhereSingleStepsWould) {
  for (const double distance : {1e-9, 0.7, 3.0, 500.0, 8000.0, 8000.1, 1e7, 1e15 + 500.0, -1.0, std::nan("")})
    for (const double cost : {0.0, 1e-3, 0.1, 1.0 / 3.0, 1.0, 7.0, 8.0, 2345.678, 3e7})
      for (const double tally : {0.0, 5.0, 1e4, 1e15})  // where sums are rounded: 0.1 counts as 0.125
        for (const int limit : {1, 32, 2000}) {
          const threshold set(distance);
          EXPECT_EQ(polled_steps(tally, cost, limit), polled_steps(tally, cost, 0)) << cost << ", " << distance;
        }
  const threshold set(1e6);
  fake_host host;
  checkpoint point(host.intrp_ptr());
  EXPECT_EQ(point.strip(0.0, 1000), 1000) << "no work, no poll";
  EXPECT_EQ(point.add(8.0), KORVO_ERR_OK);
  EXPECT_EQ(point.strip(8.0, 1000), 1000) << "kernels run undisturbed until a test is due";
  EXPECT_GE(point.strip(8.0, 1000000), 124998);
}

TEST(Checkpoint, PollsForBulkAsOftenAsForItsSteps) {
  for (const double distance : {1e-9, 1.0, 99.5, 100.0, 777.0, 1e5, 1e9, -1.0})
    for (const double cost : {0.0, 1.0, 10.0, 100.0})
      for (const int steps : {1, 3, 64}) {
        const threshold set(distance);
        fake_host host, twin_host;
        checkpoint bulk(host.intrp_ptr(), 50.0), singles(twin_host.intrp_ptr(), 50.0);
        for (int call = 0; call < 3; ++call) {
          EXPECT_EQ(bulk.add_rounds(5, cost, steps, 25.0), KORVO_ERR_OK);
          for (int round = 0; round < 5; ++round, singles.count(25.0))
            for (int i = 0; i < steps; ++i) EXPECT_EQ(singles.add(cost), KORVO_ERR_OK);
          EXPECT_EQ(host.polls(), twin_host.polls()) << distance << ", " << cost << ", " << steps;
        }
      }
}

TEST(Temporary, IsSizedIn64Bits) {
  heap::fail_never();
  temporary<_dbl_mat> mat;
  scratch<double> work;
  for (const std::int64_t rows : {0, -1}) EXPECT_EQ(mat.make(rows, rows), KORVO_ERR_ILLEGAL_SIZE);
  for (const std::int64_t rows : {1 << 14, 1 << 16, 1 << 30}) EXPECT_EQ(mat.make(rows, rows), KORVO_ERR_MALLOC);
  for (const auto count : {INT64_C(1) << 28, INT64_C(1) << 61, INT64_MAX})
    EXPECT_EQ(work.make(count), KORVO_ERR_MALLOC);
  for (const auto count : {INT64_C(0), -(INT64_C(1) << 32) + 1})
    EXPECT_EQ(work.make(count), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(heap::allocations(), 0);
}

TEST(Arithmetic, TakesComplexNumbersPlainly) {
  EXPECT_EQ(times(korvo_dcomplex{1, 2}, korvo_dcomplex{3, 5}), (korvo_dcomplex{-7, 11}));
  EXPECT_TRUE(std::isnan(times(korvo_dcomplex{HUGE_VAL, HUGE_VAL}, korvo_dcomplex{1, 0}).re)) << "not mended";
}

}  // namespace

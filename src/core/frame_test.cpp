// The words that every routine is written in.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "core/arithmetic.hpp"
#include "core/checkpoint.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"
#include "tests/support/heap.hpp"
#include "tests/support/host.hpp"
#include "tests/support/matrix.hpp"

namespace {

using namespace korvo;

constexpr double inf = std::numeric_limits<double>::infinity();

// The steps after which a tally of `steps` equal costs polls, in strips of at most `limit` or, at 0, singly.
std::vector<int> polled_steps(double tally, double cost, int steps, int limit) {
  fake_host host;
  checkpoint point(host.intrp_ptr(), tally);
  std::vector<int> polled;
  for (int done = 0; done < steps;) {
    const int most = std::min(std::max(1, limit), steps - done);
    const int length = limit == 0 ? 1 : point.strip(cost, most);
    EXPECT_TRUE(length >= 1 && length <= most);
    const int before = host.polls();
    EXPECT_EQ(limit == 0 ? point.add(cost) : point.add_strip(cost, length), KORVO_ERR_OK);
    done += length;
    if (host.polls() > before) polled.push_back(done);
  }
  return polled;
}

TEST(Checkpoint, PollsInStripsWhereSingleStepsWould) {
  for (const double distance : {1e-9, 0.7, 3.0, 500.0, 8000.0, 8000.1, 1e7, inf, -1.0, std::nan("")})
    for (const double cost : {0.0, 1e-3, 0.1, 1.0 / 3.0, 1.0, 7.0, 8.0, 2345.678, 3e7})
      for (const double tally : {0.0, 5.0, 1e4}) {
        const threshold set(distance);
        const std::vector<int> expected = polled_steps(tally, cost, 5000, 0);
        for (const int limit : {1, 32, 5000})
          EXPECT_EQ(polled_steps(tally, cost, 5000, limit), expected) << cost << " every " << distance;
      }
  const threshold set(1e15 + 1000.0);  // where sums are rounded: 0.2 counts as 0.25
  EXPECT_EQ(polled_steps(1e15, 0.2, 9000, 9000), polled_steps(1e15, 0.2, 9000, 0));
}

TEST(Checkpoint, LetsKernelsRunUndisturbedUntilATestIsDue) {
  const threshold set(1e6);
  fake_host host(3);
  checkpoint point(host.intrp_ptr());
  EXPECT_EQ(point.test(), KORVO_ERR_OK);
  EXPECT_EQ(point.strip(0.0, 1000), 1000);
  point.count(8.0);
  EXPECT_EQ(host.polls(), 0) << "no work, or no test: no poll";
  EXPECT_EQ(point.strip(8.0, 1000), 1);
  EXPECT_EQ(point.test(), KORVO_ERR_OK);
  EXPECT_EQ(point.strip(8.0, 1000), 1000);
  EXPECT_GE(point.strip(8.0, 1000000), 124999);
  for (const double tally : {1e6, 5.0, 1e9}) EXPECT_EQ(point.set(tally), KORVO_ERR_OK);
  EXPECT_EQ(host.polls(), 2);
  EXPECT_EQ(point.test(), KORVO_ERR_INTERRUPT) << "far ahead, each test polls";
}

TEST(Temporary, IsSizedIn64Bits) {
  heap::fail_never();
  temporary<_dbl_mat> mat;
  scratch<double> work;
  for (const std::int64_t rows : {0, -1}) EXPECT_EQ(mat.make(rows, rows), KORVO_ERR_ILLEGAL_SIZE);
  for (const std::int64_t rows : {1 << 14, 1 << 16, 1 << 30}) EXPECT_EQ(mat.make(rows, rows), KORVO_ERR_MALLOC);
  for (const std::int64_t count : {INT64_C(1) << 28, INT64_C(1) << 61, INT64_MAX})
    EXPECT_EQ(work.make(count), KORVO_ERR_MALLOC);
  for (const std::int64_t count : {INT64_C(0), INT64_C(-1), -(INT64_C(1) << 32) + 1, INT64_MIN})
    EXPECT_EQ(work.make(count), KORVO_ERR_ILLEGAL_VALUE) << count;
  EXPECT_EQ(heap::allocations(), 0);
  heap::fail_at(1);
  EXPECT_EQ(work.make((1 << 28) - 1), KORVO_ERR_MALLOC) << "the largest that the heap is asked for";
  EXPECT_EQ(heap::allocations(), 1);
  heap::fail_never();
}

TEST(Arithmetic, TakesComplexNumbersPlainly) {
  EXPECT_EQ(sum(korvo_dcomplex{1, 2}, korvo_dcomplex{3, 5}), (korvo_dcomplex{4, 7}));
  EXPECT_EQ(difference(korvo_dcomplex{1, 2}, korvo_dcomplex{3, 5}), (korvo_dcomplex{-2, -3}));
  EXPECT_EQ(times(korvo_dcomplex{1, 2}, korvo_dcomplex{3, 5}), (korvo_dcomplex{-7, 11}));
  const korvo_dcomplex mended = times(korvo_dcomplex{inf, inf}, korvo_dcomplex{1, 0});
  EXPECT_TRUE(std::isnan(mended.re) && std::isnan(mended.im)) << "a library's product would give infinities";
}

TEST(Valid, ReturnsTheFirstFaultAndDoesNotWrap) {
  double x = 0.0;
  const _dbl_mat good = {1, 1, 1, &x};
  const _dbl_mat other_count = {1, 1, 2, &x};
  const _dbl_mat too_many = {65536, 65537, 65536, &x};  // the product of 32 bits
  const _dbl_mat* const null = nullptr;
  EXPECT_EQ(valid(&good, &good, &good), KORVO_ERR_OK);
  EXPECT_EQ(valid(&too_many), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(valid(&good, &other_count, null), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(valid(&good, null, &other_count), KORVO_ERR_NULL_POINTER);
}

}  // namespace

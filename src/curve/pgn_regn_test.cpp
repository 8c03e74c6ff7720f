#include "korvos/curve/pgn_regn.h"

#include <bit>

#include "tests/support/all.hpp"

using namespace korvo;

namespace {

using numbers = std::vector<double>;

dbl_matrix polygon_of(const pgn_chain& from, _korvo_errcode expected = KORVO_ERR_OK) {
  _dbl_mat polygon = {};
  EXPECT_EQ(pgndbl_boundary_chain_to_polygon(&from, nullptr, &polygon), expected);
  dbl_matrix result(polygon.nrow, polygon.ncol);
  std::copy_n(polygon.data, polygon.nelem, result.data);
  return (void)matdbl_free(&polygon), result;
}

// Pixels as bits 8 * row + col + 9: a step in any direction loses nothing.
using bits = std::uint64_t;
bits spread(bits from, bits within, bool diagonally) {
  const bits wide = from | from << 1 | from >> 1, high = diagonally ? wide : from;
  const bits next = (wide | high << 8 | high >> 8) & within;
  return next == from ? from : spread(next, within, diagonally);
}

// Each edge in each row on its own: the mean over its height of what lies right of it in each pixel.
dbl_matrix slow_area(const dbl_matrix& p, int rows, int cols) {
  dbl_matrix out(rows, cols);
  const auto integral = [](double u) { return u <= 0 ? 0 : u < 1 ? u * u / 2 : u - 0.5; };
  for (int k = 0; k < rows * p.nrow; ++k) {
    const int r = k / p.nrow, i = k % p.nrow, j = (i + 1) % p.nrow, upper = p(i, 1) < p(j, 1) ? i : j;
    const double slope = (p(j, 0) - p(i, 0)) / (p(j, 1) - p(i, 1)), top = std::max(p(upper, 1), r - 0.5);
    const double height = std::min(p(i + j - upper, 1), r + 0.5) - top;
    if (!(height > 0)) continue;
    const double x0 = p(upper, 0) + (top - p(upper, 1)) * slope, x1 = x0 + height * slope;
    // Settled: beyond the first column between its ends a falling edge goes on as if it rose.
    const double first = std::max(std::floor(std::min(x0, x1) + 0.5) + 1, 0.0);
    for (int c = 0; c < cols; ++c) {
      const double settled = slope < 0 && c > first && c < std::floor(std::max(x0, x1) + 0.5) ? c - first : 0;
      const double u0 = c - settled + 0.5 - x0, u1 = c - settled + 0.5 - x1;
      const double mean = x0 == x1 ? std::clamp(u0, 0.0, 1.0) : (integral(u1) - integral(u0)) / (u1 - u0);
      out(r, c) += (height * mean + settled / slope) * (upper == i ? -1 : 1);
    }
  }
  return out;
}

using pixels = std::vector<std::uint8_t>;
pixels drawn(std::initializer_list<double> ends, int rows, int cols, bool closed = false) {
  u8_matrix out(rows, cols);
  const dbl_matrix polygon(static_cast<int>(ends.size()) / 2, 2, ends);
  _univ_mat to = out.universal();
  EXPECT_EQ(pgndbl_render_line(&polygon, closed, {{.u8 = 1}, to.type}, {{.u8 = 0}, to.type}, nullptr, &to), 0);
  return out.elements();
}

}  // namespace

// From each start, and back once for each region, unless it has a hole.
TEST(BoundaryTrace, EndsOnEveryImageAndItsPolygonCoversTheRegion) {
  for (int shape = 5; shape < 25; ++shape) {
    u8_matrix image(shape / 5, shape % 5 + 1);
    dbl_matrix area(shape / 5, shape % 5 + 1);
    const auto at = [&](int i) { return 8 * (i / image.ncol) + i % image.ncol + 9; };
    for (bits pattern = 0, ones = 0; pattern < bits{1} << image.nelem; ++pattern, ones = 0) {
      for (int i = 0; i < image.nelem; ++i) ones |= bits{image.data[i] = pattern >> i & 1} << at(i);
      for (bits starts = ones & ~(ones << 1); starts != 0; starts &= starts - 1) {
        const int start = std::countr_zero(starts), row = start / 8 - 1, col = start % 8 - 1;
        pgn_chain round = {};
        ASSERT_EQ(pgnu8_boundary_chain_from_region(&image, row, col, nullptr, &round), KORVO_ERR_OK);
        const bits region = spread(bits{1} << start, ones, true);
        const bool is_first = std::countr_zero(region) == start;
        if (is_first && (spread(1, ~region, false) | region) == ~bits{0}) {
          const dbl_matrix polygon = polygon_of(round);
          ASSERT_EQ(pgndbl_render_region(&polygon, nullptr, &area), KORVO_ERR_OK);
          for (int i = 0; i < area.nelem; ++i) ASSERT_EQ(area.data[i], double(region >> at(i) & 1)) << pattern;
        }
        ASSERT_EQ(pgn_chain_free(&round), KORVO_ERR_OK);
      }
    }
  }
}

TEST(BoundaryTrace, GoesRoundFromTheLeftEndOfTheSeedsRun) {
  pgn_chain seen = {};
  const auto trace = [&](const dbl_matrix& image, int row, int col, void* host = nullptr) {
    return (void)pgn_chain_free(&seen), pgndbl_boundary_chain_from_region(&image, row, col, host, &seen);
  };
  const dbl_matrix block(2, 3, {2, 2, 2, 2, 2, NAN});
  EXPECT_TRUE(trace(block, 1, 2) == KORVO_ERR_OK && seen.start_col == 2 && seen.num_links == 0);
  for (const int i : {-1, 3, INT32_MIN, INT32_MAX})
    EXPECT_TRUE(trace(block, i, 0) == trace(block, 0, i) && trace(block, i, i) == KORVO_ERR_ILLEGAL_VALUE);
  expect_tallies([&](void* host) { return trace(block, 1, 1, host); }, {250.0});
  EXPECT_TRUE(seen.start_row == 1 && seen.start_col == 0);
  EXPECT_EQ(numbers(seen.directions, seen.directions + seen.num_links), (numbers{6, 0, 3, 4}));
  EXPECT_EQ(numbers(seen.run_lengths, seen.run_lengths + seen.num_links), (numbers{1, 2, 1, 1}));
  EXPECT_EQ((heap::fail_at(2), pgn_chain_realloc(&seen, 3)), KORVO_ERR_MALLOC);
  heap::fail_never();
  EXPECT_EQ(seen.num_links, 3);  // as many as both arrays hold
  for (const int n : {-1, INT32_MAX}) EXPECT_NE(pgn_chain_realloc(&seen, n), KORVO_ERR_OK);
  EXPECT_EQ(pgn_chain_free(&seen), KORVO_ERR_OK);
}

TEST(ChainPolygon, GoesAlongTheCornersOfPixelsHoweverFar) {
  std::int8_t square[] = {0, 2, 4, 6}, ahead[] = {0, 0}, left[] = {0, 5}, none[] = {0, 8};
  std::int32_t far[] = {INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX}, two[] = {2, 2, 0};
  EXPECT_EQ(polygon_of({}).elements(), (numbers{-0.5, 0.5, -0.5, -0.5, 0.5, -0.5, 0.5, 0.5}));
  const double l = INT32_MAX - 0.5, h = 2.0 * INT32_MAX + 0.5;
  EXPECT_EQ(polygon_of({INT32_MAX, INT32_MAX, 4, far, square}).elements(), (numbers{l, l, h, l, h, h, l, h}));
  for (std::int8_t* const way : {ahead, left, none}) polygon_of({0, 0, 2, two, way}, KORVO_ERR_ILLEGAL_VALUE);
  for (const int n : {-1, 3}) polygon_of({0, 0, n, two, square}, KORVO_ERR_ILLEGAL_VALUE);
  polygon_of({0, 0, 1, two, nullptr}, KORVO_ERR_NULL_POINTER);
}

TEST(RegionRendering, AddsThePartsOfItsEdgesInEachRow) {
  const double ranges[][4] = {{1, 10, 1, 6},  {-9, 29, -9, 29},       {-30, 28, -3, 15}, {13, 17, 0, 9},
                              {0, 12, -9, 8}, {-5e3, 1e4, -5e3, 1e4}, {4, 0.3, -2, 13},  {-2, 17, 3.1, 0.8}};
  for (const auto& [x, width, y, height] : ranges)
    for (unsigned seed = 0; seed < 30; ++seed) {
      const dbl_matrix p = dbl_matrix::random(seed % 5 ? 1 + int(seed % 5) : 70, 2, seed, 0.0, 1000.0);
      for (int i = 0; i < p.nrow; ++i) {
        p(i, 0) = x + width * p(i, 0) / 1000.123, p(i, 1) = y + height * p(i, 1) / 1000.456;
        if (seed % 3 == 0) p(i, 1) = std::floor(2 * p(i, 1)) / 2;  // level sides, and vertices between rows
      }
      const dbl_matrix slow = slow_area(p, 9, 13);
      dbl_matrix area(9, 13, 7.0);
      ASSERT_EQ(pgndbl_render_region(&p, nullptr, &area), KORVO_ERR_OK);
      for (int i = 0; i < area.nelem; ++i)
        ASSERT_NEAR(area.data[i], slow.data[i], 1e-9) << seed << " from " << x;
    }
  dbl_matrix square(4, 2, {1, 1, 3, 1, 3, 3, 1, 3}), out(5, 5);
  const auto call = [&](void* host) { return pgndbl_render_region(&square, host, &out); };
  expect_tallies_of(call, {{40.0}, {12.0, 772.0, 1472.0, 2232.0}});
  for (const double far : {double{NAN}, -double{INFINITY}, 1.1e9})
    EXPECT_EQ((square.data[7] = far, call(nullptr)), KORVO_ERR_ILLEGAL_VALUE);
}

// Too narrow for the rule of falling edges to matter.
TEST(RegionRendering, KeepsTheAreaAndIsNegatedByTheOtherWayRound) {
  for (unsigned seed = 0; seed < 200; ++seed) {
    const dbl_matrix p = dbl_matrix::random(3 + int(seed % 6), 2, seed, 0.0, 1000.0), reversed(p.nrow, 2);
    double twice = 0.0;
    for (int i = 0; i < p.nrow; ++i) p(i, 0) = 4 + p(i, 0) / 400.3, p(i, 1) = p(i, 1) / 126.1;
    for (int i = 0; i < p.nrow; ++i) {
      const int next = (i + 1) % p.nrow, last = p.nrow - 1 - i;
      twice += p(i, 0) * p(next, 1) - p(next, 0) * p(i, 1);
      reversed(i, 0) = p(last, 0), reversed(i, 1) = p(last, 1);
    }
    dbl_matrix area(9, 13), other(9, 13);
    ASSERT_EQ(pgndbl_render_region(&p, nullptr, &area), KORVO_ERR_OK);
    ASSERT_EQ(pgndbl_render_region(&reversed, nullptr, &other), KORVO_ERR_OK);
    double sum = 0.0;
    for (int i = 0; i < area.nelem; ++i) {
      sum += area.data[i];
      ASSERT_NEAR(other.data[i], -area.data[i], 1e-9) << seed;
    }
    EXPECT_NEAR(sum, twice / 2, 1e-9) << seed;
  }
}

TEST(LineRendering, TakesTheNearestPixelsClipsAndClosesIfAsked) {
  for (int pair = 0; pair < 48 * 48; ++pair) {
    const int a[] = {pair % 6, pair / 6 % 8}, b[] = {pair / 48 % 6, pair / 288};
    const int wide = std::abs(a[1] - b[1]) > std::abs(a[0] - b[0]), way = b[wide] < a[wide] ? -1 : 1;
    pixels wanted(48);
    for (int k = 0; k <= std::abs(b[wide] - a[wide]); ++k) {
      const double share = k == 0 ? 0.0 : double(k) * (b[1 - wide] - a[1 - wide]) / std::abs(b[wide] - a[wide]);
      const int at[] = {a[wide] + way * k, a[1 - wide] + static_cast<int>(std::ceil(share - 0.5))};
      wanted.at(static_cast<std::size_t>(8 * at[wide] + at[1 - wide])) = 1;
    }
    ASSERT_EQ(drawn({double(a[1]), double(a[0]), double(b[1]), double(b[0])}, 6, 8), wanted) << pair;
  }
  EXPECT_EQ(drawn({-8e8 - 1, -4e8, 8e8 - 1, 4e8}, 3, 4), (pixels{1, 0, 0, 0, 0, 1, 1, 0, 0, 0, 0, 1}));
  for (const std::uint8_t closed : pixels{0, 1})
    EXPECT_EQ(drawn({0, 0, 2, 0, 2, 2}, 3, 3, closed), (pixels{1, 1, 1, 0, closed, 1, 0, 0, 1}));
  dbl_matrix out(2, 3, 7.0), diagonal(2, 2, {0, 0, 2, 2});
  _univ_mat to = out.universal();
  const auto call = [&](void* host) {
    return pgndbl_render_line(&diagonal, 1, {{}, to.type}, {{}, to.type}, host, &to);
  };
  expect_tallies_of(call, {{12.0}, steps_of(12, 10.0)});
  diagonal(1, 1) = NAN, out(1, 1) = 7.0;
  EXPECT_TRUE(call(nullptr) == KORVO_ERR_ILLEGAL_VALUE && out(1, 1) == 0.0);
}

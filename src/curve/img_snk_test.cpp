#include "korvos/curve/img_snk.h"

#include <numbers>

#include "korvos/curve/pgn_smpl.h"
#include "tests/support/all.hpp"

using namespace korvo;

namespace {

constexpr int side = 64, center = 32;

dbl_matrix circle(int n, double radius) {
  dbl_matrix out(n, 2);
  for (int i = 0; i < n; ++i) {
    const double angle = 2 * std::numbers::pi * i / n;
    out(i, 0) = center + radius * std::cos(angle), out(i, 1) = center + radius * std::sin(angle);
  }
  return out;
}

// Images that pull nowhere, or all ways as a function of (row, column) has it.
struct field {
  dbl_matrix energy{side, side, 1.0}, rows{side, side}, columns{side, side};
};

_korvo_errcode minimize(const field& on, const dbl_matrix& from, bool automatic, const snake_params* with,
                        snake_params* results, const dbl_matrix& out) {
  return imguniv_snake_minimize(univ(on.energy), univ(on.rows), univ(on.columns), univ(from), automatic, with,
                                nullptr, results, univ(out));
}

}  // namespace

// One iteration: its result solves five diagonals, of which those of a closed contour go on round the contour
// before; gradients of 2 and -3 everywhere push besides.
TEST(Snake, IterationSolvesTheStatedSystem) {
  for (const int type : {IMG_CONTOUR_CLOSED, IMG_CONTOUR_OPEN})
    for (const int n : {3, 4, 5, 11}) {
      snake_params with = {type, 0.7, 0.3, 0.05, 0.2, 1, 0.0, 0.0}, results{};
      field on;
      std::fill_n(on.rows.data, on.rows.nelem, 2.0);
      std::fill_n(on.columns.data, on.columns.nelem, -3.0);
      const dbl_matrix start = circle(n, 3);
      dbl_matrix before(n, 2), after(n, 2);
      const bool closed = type == IMG_CONTOUR_CLOSED;
      ASSERT_EQ(pgnuniv_resample_linear(univ(start), closed, nullptr, univ(before)), KORVO_ERR_OK);
      ASSERT_EQ(minimize(on, start, false, &with, &results, after), KORVO_ERR_NOT_CONVERGING);
      ASSERT_EQ(results.max_iterations, 1);
      const double own = 1 / results.step;  // perhaps halved
      for (int i = 0; i < n; ++i)
        for (const int axis : {0, 1}) {
          const bool end = !closed && (i == 0 || i == n - 1);
          double sum = ((end ? 2 : 6) * with.beta + (end ? 1 : 2) * with.alpha + own) * after(i, axis);
          for (const int k : {i - 2, i - 1, i + 1, i + 2}) {
            const bool by_end = !closed && (std::min(i, k) == 0 || std::max(i, k) == n - 1);
            const double one_off = -with.alpha - (by_end ? 3 : 4) * with.beta;
            const bool inside = k >= 0 && k < n;
            if (inside || closed)
              sum += (std::abs(k - i) == 2 ? with.beta : one_off) *
                     (inside ? after(k, axis) : before((k + n) % n, axis));
          }
          EXPECT_NEAR(sum, before(i, axis) * own - with.gamma * (axis == 0 ? -3.0 : 2.0), 1e-9);
        }
    }
}

TEST(Snake, SettlesOnTheEdgeOfADisk) {
  constexpr double radius = 14;
  dbl_matrix image(side, side);
  for (int r = 0; r < side; ++r)
    for (int c = 0; c < side; ++c) image(r, c) = std::hypot(r - center, c - center) <= radius ? 200 : 20;
  const dbl_matrix start = circle(40, radius + 3);
  const snake_params with = {IMG_CONTOUR_CLOSED, 0.01, 0.01, 10, 0.2, 1000, 0.02, 0.0};
  snake_params results{};
  dbl_matrix out(60, 2);
  ASSERT_EQ(imguniv_snake(univ(image), univ(start), 2.0, 0, &with, nullptr, &results, univ(out)), KORVO_ERR_OK);
  for (int i = 0; i < 60; ++i)
    EXPECT_NEAR(std::hypot(out(i, 0) - center - 0.5, out(i, 1) - center - 0.5), radius, 0.5)
        << "half a pixel on, as the energy is";
  EXPECT_GT(results.max_iterations, 5);
}

TEST(Snake, RejectsJumpsHalvesTheStepAndCountsNothing) {
  field on;
  std::fill_n(on.columns.data, on.columns.nelem, 8.0);
  const snake_params with = {IMG_CONTOUR_CLOSED, 0, 0, 1, 0.8, 1, 0.0, 0.0};
  snake_params results{};
  results.move_threshold = 77;
  dbl_matrix out(8, 2);
  ASSERT_EQ(minimize(on, circle(8, 5), false, &with, &results, out), KORVO_ERR_NOT_CONVERGING);
  EXPECT_EQ(results.step, 0.1) << "the first that moves no more than 1 pixel";
  EXPECT_EQ(results.max_iterations, 1);
  EXPECT_TRUE(results.move_threshold == 77 && results.contour_type == 0) << "other fields stay";
  EXPECT_NEAR(out(0, 0), center + 5 - 0.8, 1e-12);
}

TEST(Snake, WeighsItselfAtTheStartAndAfterEachFifthIteration) {
  const dbl_matrix start = circle(12, 10);
  dbl_matrix out(12, 2), four(12, 2), five(12, 2);
  snake_params with = {IMG_CONTOUR_CLOSED, -1, -1, -1, 0.01, 4, 0.0, 0.0}, after_four{}, after_five{};
  EXPECT_EQ(minimize({}, start, false, &with, &after_four, out), KORVO_ERR_ILLEGAL_VALUE);
  ASSERT_EQ(minimize({}, start, true, &with, &after_four, four), KORVO_ERR_NOT_CONVERGING);
  const double chord = 2 * 10 * std::sin(std::numbers::pi / 12);
  EXPECT_NEAR(after_four.alpha, 1 / chord, 1e-9) << "12 over twice the halves of 12 chords";
  EXPECT_NEAR(after_four.gamma, 0.5, 1e-12) << "energy 1 everywhere";
  with.max_iterations = 5;
  ASSERT_EQ(minimize({}, start, true, &with, &after_five, five), KORVO_ERR_NOT_CONVERGING);
  EXPECT_NE(after_five.alpha, after_four.alpha);
  double length = 0;
  for (int i = 0; i < 12; ++i)
    length += std::hypot(five(i, 0) - five((i + 11) % 12, 0), five(i, 1) - five((i + 11) % 12, 1));
  EXPECT_NEAR(after_five.alpha, 12 / length, 1e-9);
}

TEST(Snake, DefaultsAndRestsAndEndsOnNan) {
  const dbl_matrix start = circle(9, 5);
  snake_params results{};
  dbl_matrix out(9, 2), same(9, 2), still(9, 2);
  const snake_params plain = {IMG_CONTOUR_CLOSED, 1, 1, 1, 0.5, 50, 0.05, 0.05};
  const _korvo_errcode code = minimize({}, start, false, nullptr, &results, out);
  EXPECT_EQ(minimize({}, start, false, &plain, &results, same), code);
  EXPECT_EQ(out.elements(), same.elements());
  const snake_params rest = {IMG_CONTOUR_CLOSED, 1, 1, 1, 0.5, 50, 0.05, 1.0};
  EXPECT_EQ(minimize({}, start, false, &rest, &results, still), KORVO_ERR_OK);
  EXPECT_EQ(results.max_iterations, 0);
  EXPECT_NEAR(still(0, 0), center + 5, 1e-12);
  for (const double weight : {double{INFINITY}, 1e308}) {
    const snake_params wild = {IMG_CONTOUR_CLOSED, weight, 1, 1, 0.5, 50, 0.05, 0.05};
    EXPECT_EQ(minimize({}, start, false, &wild, &results, out), KORVO_ERR_NOT_CONVERGING);
    EXPECT_EQ(out.elements(), still.elements()) << "the last accepted contour";
  }
}

TEST(Snake, RefusesParametersOutsideTheirLimits) {
  const dbl_matrix start = circle(5, 5), out(5, 2);
  snake_params results{};
  const auto expect_refused = [&](const snake_params& with) {
    EXPECT_EQ(minimize({}, start, false, &with, &results, out), KORVO_ERR_ILLEGAL_VALUE);
  };
  for (double snake_params::*const field :
       {&snake_params::alpha, &snake_params::beta, &snake_params::gamma, &snake_params::step,
        &snake_params::move_threshold, &snake_params::stop_fraction})
    for (const double value : {-0.1, double{NAN}}) {
      snake_params with = {IMG_CONTOUR_CLOSED, 1, 1, 1, 0.5, 50, 0.05, 0.05};
      with.*field = value, expect_refused(with);
    }
  expect_refused({IMG_CONTOUR_CLOSED, 1, 1, 1, 0, 50, 0.05, 0.05});
  expect_refused({IMG_CONTOUR_CLOSED, 1, 1, 1, 0.5, 0, 0.05, 0.05});
  expect_refused({2, 1, 1, 1, 0.5, 50, 0.05, 0.05});
}

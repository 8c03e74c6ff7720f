#include "korvos/signal/sig_pow2.h"

#include "korvos/matrix/mat_assn.h"
#include "korvos/signal/sig_tran.h"
#include "tests/support/all.hpp"

namespace {

using namespace korvo;

constexpr auto hartley = sigdbl_transform_hartley;
constexpr auto cosine = sigdbl_transform_discrete_cosine_II_pow2;
constexpr auto inverse_cosine = sigdbl_transform_discrete_cosine_II_inverse_pow2;
constexpr auto cosine_2d = sigdbl_transform_discrete_cosine_II_2d_pow2;

dbl_matrix random(std::int32_t rows, std::int32_t cols) { return dbl_matrix::random(rows, cols, 1, -1.0, 1.0); }

// Each row by the form for vectors, in place.
template <class Form>
dbl_matrix by_rows(Form form, dbl_matrix x) {
  for (std::int32_t i = 0; i < x.nrow; ++i) {
    _dbl_mat row = {1, x.ncol, x.ncol, &x(i, 0)};
    EXPECT_EQ(form(&row, nullptr, &row), KORVO_ERR_OK);
  }
  return x;
}

double distance(const dbl_matrix& a, const dbl_matrix& b) {
  double most = 0.0;
  for (std::int32_t i = 0; i < a.nelem; ++i) most = std::max(most, std::fabs(a.data[i] - b.data[i]));
  return most;
}

// By way of the Fourier transform.
dbl_matrix slow_hartley(const dbl_matrix& x) {
  dbl_matrix result(1, x.nelem);
  const _dbl_mat column = {x.nelem, 1, x.nelem, x.data};
  cpx_matrix spectrum(x.nelem, 1);
  EXPECT_EQ(sigdbl_transform_discrete_fourier(&column, 0, nullptr, &spectrum), KORVO_ERR_OK);
  for (std::int32_t k = 0; k < x.nelem; ++k)
    result.data[k] = (spectrum.data[k].re - spectrum.data[k].im) / std::sqrt(x.nelem);
  return result;
}

// With v[1] in each turn, or with v[i], which the inverse undoes.
dbl_matrix slow_cosine(const dbl_matrix& x, bool first_in_all) {
  const std::int32_t n = x.nelem, h = n / 2;
  dbl_matrix u(1, n);
  for (std::int32_t i = 0; i < h; ++i) u.data[i] = x.data[2 * i], u.data[h + i] = x.data[n - 1 - 2 * i];
  const dbl_matrix v = slow_hartley(u), y = v;
  for (std::int32_t i = 1; i < h; ++i) {
    const double t = std::acos(-1.0) * (0.25 + i / (2.0 * n)), low = v.data[first_in_all ? 1 : i];
    y.data[i] = low * std::cos(t) + v.data[n - i] * std::sin(t);
    y.data[n - i] = low * std::sin(t) - v.data[n - i] * std::cos(t);
  }
  return y;
}

TEST(Hartley, IsPartOfTheFourierTransformAndItsOwnInverse) {
  for (std::int32_t n = 1; n <= 2048; n *= 2) {
    const dbl_matrix x = random(1, n), result = by_rows(hartley, x);
    EXPECT_LT(distance(result, slow_hartley(x)), 1e-14);
    EXPECT_LT(distance(by_rows(hartley, result), x), 1e-14);
  }
}

TEST(CosinePow2, HasTheFirstElementInEachTurnSoThatOnlyShortOnesGoBack) {
  for (std::int32_t n = 2; n <= 256; n *= 2) {
    const dbl_matrix x = random(1, n), y = by_rows(cosine, x);
    EXPECT_LT(distance(y, slow_cosine(x, true)), 1e-14);
    EXPECT_LT(distance(by_rows(inverse_cosine, slow_cosine(x, false)), x), 1e-14);
    EXPECT_EQ(distance(by_rows(inverse_cosine, y), x) < 1e-10, n <= 4);
  }
}

TEST(Cosine2dPow2, TakesRowsFirstAndGoesBackByColumnsFirst) {
  const auto turned = [](const dbl_matrix& x) {
    dbl_matrix result(x.ncol, x.nrow);
    EXPECT_EQ(matdbl_transpose(&x, nullptr, &result), KORVO_ERR_OK);
    return result;
  };
  for (const auto& [rows, cols] : {std::pair(8, 16), {32, 4}, {1, 8}, {8, 1}, {4, 2}, {1, 1}}) {
    const dbl_matrix in = random(rows, cols);
    for (const std::uint8_t inverse : {std::uint8_t{0}, std::uint8_t{2}}) {
      const dbl_matrix twin = inverse == 0
                                  ? turned(by_rows(cosine, turned(by_rows(cosine, in))))
                                  : by_rows(inverse_cosine, turned(by_rows(inverse_cosine, turned(in))));
      dbl_matrix out(rows, cols), same = in;  // and into the input itself
      EXPECT_EQ(cosine_2d(&in, inverse, nullptr, &out), KORVO_ERR_OK);
      EXPECT_EQ(cosine_2d(&same, inverse, nullptr, &same), KORVO_ERR_OK);
      EXPECT_EQ(out.elements(), twin.elements());
      EXPECT_EQ(same.elements(), twin.elements());
    }
  }
}

TEST(TransformPow2, PollsAfterEachGroupAndPair) {
  std::vector<double> core;
  double tally = 0.0;
  for (const auto& [groups, cost] : {std::pair(1, 280.0), {1, 160.0}, {3, 40.0}, {5, 40.0}, {11, 20.0}}) {
    for (int i = 0; i < groups; ++i) core.push_back(tally += cost);
    tally += 5.0 * 32;  // the division of the stage, without a poll
  }
  dbl_matrix x = random(1, 32), four = random(4, 1);
  expect_tallies([&](void* host) { return hartley(&x, host, &x); }, core);
  expect_tallies([&](void* host) { return hartley(&four, host, &four); }, {});
  for (const auto form : {cosine, inverse_cosine}) {
    expect_tallies([&](void* host) { return form(&x, host, &x); }, {320, 640}, core);
    expect_tallies([&](void* host) { return form(&four, host, &four); }, {40, 80});
  }
}

TEST(TransformPow2, RefusesOtherLengths) {
  dbl_matrix three(1, 3), square(2, 2), wide(2, 6);
  for (const auto form : {hartley, cosine, inverse_cosine})
    for (dbl_matrix* const x : {&three, &square, &wide}) EXPECT_EQ(form(x, nullptr, x), KORVO_ERR_ILLEGAL_SIZE);
  for (dbl_matrix* const x : {&three, &wide}) EXPECT_EQ(cosine_2d(x, 0, nullptr, x), KORVO_ERR_ILLEGAL_SIZE);
}

}  // namespace

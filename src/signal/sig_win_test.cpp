#include "korvos/signal/sig_win.h"

#include <functional>

#include "tests/support/all.hpp"

namespace {

using namespace korvo;

const long double tau = 2.0L * std::acos(-1.0L);

long double cosines(long double t, long double a, long double b, long double c, long double d = 0) {
  return a - b * std::cos(t) + c * std::cos(2 * t) - d * std::cos(3 * t);
}
long double hann(long double i, long double n) { return cosines((i + 1) * tau / (n + 1), 0.5L, 0.5L, 0); }
long double tapered(long double i, long double m) { return i < std::floor(m / 2) ? hann(i, m) : 1; }

auto with(double parameter, _korvo_errcode (*form)(double, void*, _dbl_mat*)) {
  return [=](void* host, _dbl_mat* out) { return form(parameter, host, out); };
}
#define AT(...) \
  []([[maybe_unused]] long double i, [[maybe_unused]] long double n) -> long double { return __VA_ARGS__; }

// A typed form with its parameter settled, its tallies by N, and element i from the nearer end by its formula.
const struct window {
  std::function<_korvo_errcode(void*, _dbl_mat*)> fill;
  std::vector<double> tallies;
  std::function<long double(long double i, long double n)> at;
} windows[] = {
    {sigdbl_window_rectangle, {5}, AT(1)},
    {sigdbl_window_triangle, {5}, AT((i + 1) * 2 / (n + 1))},
    {sigdbl_window_hanning, {50}, hann},
    {sigdbl_window_hamming, {50}, AT(cosines(i* tau / (n - 1), 0.54L, 0.46L, 0))},
    {sigdbl_window_blackman, {100}, AT(cosines((i + 1) * tau / (n + 1), 0.42L, 0.5L, 0.08L))},
    {sigdbl_window_nuttall,
     {200},
     AT(i == 0 ? 0 : cosines(i * tau / (n - 1), 0.3635819L, 0.4891775L, 0.1365995L, 0.0106411L))},
    {sigdbl_window_born_jordan, {5}, AT(1 / (std::floor((n - 1) / 2) - i + 1))},
    {with(0.0, sigdbl_window_raised_cosine), {5}, AT(1)},
    {with(1.0, sigdbl_window_raised_cosine), {5, 15}, AT(tapered(i, n))},
    {with(0.6, sigdbl_window_raised_cosine), {5, 15}, AT(tapered(i, std::floor(n * 0.6L)))},
    {with(2.5, sigdbl_window_gaussian),
     {100},
     AT(n == 1 ? 1 : std::exp(-12.5L * std::pow(0.5L - i / (n - 1), 2)))},
};

TEST(Window, IsItsFormulaFromBothEndsAtItsCost) {
  for (const window& each : windows)
    for (const std::int32_t n : {1, 2, 3, 8, 9, 33})
      for (dbl_matrix out : {dbl_matrix(1, n, 7.0), dbl_matrix(n, 1, 7.0)}) {
        std::vector<double> tallies = each.tallies;
        for (double& tally : tallies) tally *= n;
        expect_tallies([&](void* host) { return each.fill(host, &out); }, tallies);
        for (std::int32_t i = 0; i < n; ++i) {
          const auto expected = static_cast<double>(each.at(std::min(i, n - 1 - i), n));
          const bool both_nan = std::isnan(out.data[i]) && std::isnan(expected);  // Hamming's single element
          EXPECT_TRUE(both_nan || std::fabs(out.data[i] - expected) < 1e-15) << out.data[i] << ", " << expected;
        }
      }
}

TEST(KaiserWindow, FallsAtItsFirstElementOnly) {
  for (const double beta : {0.0, 0.5, 1.0, 1.4, 2.0, 10.0, 100.0})
    for (const std::int32_t n : {1, 2, 3, 9, 33}) {
      dbl_matrix out(n, 1);
      expect_tallies([&](void* host) { return sigdbl_window_kaiser(beta, host, &out); }, {200.0 * n, 210.0 * n},
                     {1.0, once});  // and I0 polls twice
      const double i0 = std::cyl_bessel_i(0.0, (n - 1) * beta * static_cast<double>(tau) / 2 / n);
      EXPECT_TRUE(n == 1 ? std::isnan(out.data[0]) : std::fabs(out.data[0] * i0 - 1.0) < 5e-7) << beta;
      for (std::int32_t i = 1; i < n; ++i) EXPECT_EQ(out.data[i], 1.0);
    }
}

// Element by its distance from the centre, unscaled, in Dolph's form: by the polynomial of degree n - 1.
long double dolph(long double attenuation, int n, long double distance) {
  const long double x0 = std::cosh(std::acosh(1 + std::pow(10.0L, attenuation / 20)) / (n - 1));
  long double sum = 0;
  for (int j = 0; j < n; ++j) {
    const long double x = x0 * std::cos(tau * j / 2 / n), t = std::fabs(x);
    const long double p = t > 1 ? std::cosh((n - 1) * std::acosh(t)) : std::cos((n - 1) * std::acos(t));
    sum += (x < 0 && n % 2 == 0 ? -p : p) * std::cos(tau * j * distance / n);
  }
  return sum;
}

// Few decibels make for steep flanks, on which each step's rounding grows: 2e-12 of the element then.
TEST(ChebyshevWindow, IsTheInverseSumOfItsPolynomial) {
  for (const int n : {2, 3, 8, 9, 33, 64, 200, 301})
    for (const double attenuation : {20.0, 60.0, 100.0, 200.0}) {
      dbl_matrix out(1, n);
      ASSERT_EQ(sigdbl_window_chebyshev(attenuation, nullptr, &out), KORVO_ERR_OK);
      const long double peak = dolph(attenuation, n, n % 2 == 0 ? 0.5L : 0);
      for (int i = 0; i < n; ++i) {
        const long double expected = dolph(attenuation, n, std::fabs(i - (n - 1) / 2.0L)) / peak;
        EXPECT_LT(std::fabs(out.data[i] - expected) / std::max(1.0L, expected), 2e-12L) << i << " of " << n;
      }
    }
  dbl_matrix nine(1, 9);
  const auto fill = with(40.0, sigdbl_window_chebyshev);
  expect_tallies([&](void* host) { return fill(host, &nine); }, {1350, 1800, 2250, 2700, 3150});
}

TEST(ChebyshevWindow, IsFiniteForAnyAttenuation) {
  std::vector<double> attenuations = {0.0, 1e-300, 317.0, 700.0, 3080.0, 1e4, HUGE_VAL};
  for (double a = 6100.0; a < 6180.0; a += 0.5) attenuations.push_back(a);  // the least ratios there are
  for (const double attenuation : attenuations)
    for (std::int32_t n = 1; n < 70; ++n) {
      dbl_matrix out(1, n);
      EXPECT_EQ(sigdbl_window_chebyshev(attenuation, nullptr, &out), KORVO_ERR_OK);
      EXPECT_EQ(out.data[n / 2], 1.0);
      for (const double w : out.elements()) ASSERT_TRUE(std::isfinite(w)) << attenuation << ", " << n;
      EXPECT_TRUE(attenuation < HUGE_VAL || n != 5 || std::fabs(out.data[0] * 6.0 - 1.0) < 1e-14);  // binomial
    }
}

TEST(Window, RefusesInOrder) {
  dbl_matrix out(1, 4);
  for (const double wrong : {-1e-9, std::nan("")}) {
    for (const auto form : {sigdbl_window_gaussian, sigdbl_window_kaiser, sigdbl_window_chebyshev})
      EXPECT_EQ(form(wrong, nullptr, &out), KORVO_ERR_ILLEGAL_VALUE);
    EXPECT_EQ(sigdbl_window_raised_cosine(wrong, nullptr, nullptr), KORVO_ERR_ILLEGAL_VALUE);
  }
  EXPECT_EQ(sigdbl_window_raised_cosine(1.0 + 1e-9, nullptr, nullptr), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(sigdbl_window_raised_cosine(1.0, nullptr, nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(sigdbl_window_gaussian(0.0, nullptr, &out), KORVO_ERR_ILLEGAL_VALUE);
  _univ_mat bytes = {1, 4, 4, nullptr, KORVO_UINT8};
  EXPECT_EQ(siguniv_window_raised_cosine(-1.0, nullptr, &bytes), KORVO_ERR_ILLEGAL_TYPE);
}

}  // namespace

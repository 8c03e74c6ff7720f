#include "korvos/signal/sig_tfrq.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "tests/support/costs.hpp"
#include "tests/support/fenced.hpp"
#include "tests/support/levels.hpp"

namespace {

using namespace korvo;

#define PLANES(form, op) form##_timefreq_autocorrelate_##op
constexpr auto wigner = PLANES(sigdbl, wigner), cone = PLANES(sigdbl, cone),
               born_jordan = PLANES(sigdbl, born_jordan), margeneau_hill = PLANES(sigdbl, margeneau_hill);
constexpr auto custom = PLANES(sigdbl, custom);
constexpr auto choi_williams = PLANES(sigdbl, choi_williams);

// The definitions step by step, with a record of what they touch outside and of the tallies they test.
struct twin {
  int N, R, C, step;
  dbl_matrix signal = dbl_matrix::random(1, N, 3, -20.0 / 3.0, 20.0);
  dbl_matrix out{R, C};
  bool outside = false;
  double tally = 0.0;
  std::vector<double> tallies = {};

  double s(int i, int padding = 0) {
    if (i < 0 || i >= N + padding) outside = true;
    return i < 0 || i >= N ? 0.0 : signal.data[i];
  }
  void put(int tau, int c, double x) {
    if (c >= C)
      outside = true;
    else
      out(tau, c) = x;
  }
  void test(double cost) { tallies.push_back(tally += cost); }

  void wigner() {
    const int L = R / 2;
    if (N == L) put(0, 0, s(N - 1) * s(N - 1));
    if (N <= L) return;
    std::vector<double> acc(static_cast<std::size_t>(R));
    int c = 0, t = 0;
    const auto instant = [&](int lags, int rows) {
      double* const a = acc.data();
      for (int tau = 0; tau < lags; ++tau)
        a[tau] += (s(t - tau / 2) * s(t + (tau + 1) / 2) + s(t - (tau + 1) / 2) * s(t + tau / 2)) * 0.5;
      if (t % step != 0) return;
      for (int tau = 0; tau < rows; ++tau) put(tau, c, a[tau]);
      acc.assign(acc.size(), 0.0), ++c;
    };
    for (; t < L; ++t) instant(t, L), tally += 200.0 * L;
    for (; c < C; ++t, test(200.0 * std::min(R, N - t))) instant(std::min(R, N - t), std::min(R, N - t));
  }
  void cone() {
    if (N == R) put(0, 0, s(N - 1) * s(N - 1) - s(N - 2) * s(N - 2));
    if (N <= R) return;
    std::vector<double> acc;
    for (int tau = 0; tau < R; ++tau) put(tau, 0, s(tau) * s(0)), acc.push_back(out(tau, 0));
    tally = 100.0 * R;
    for (int c = 1, t = 1; c < C; test(200.0 * std::min(R, N - t))) {
      for (int tau = 0; tau < std::min(R, N - t); ++tau) {
        double& a = acc[static_cast<std::size_t>(tau)];
        a += s(t + tau) * s(t);
        if (t - tau >= 1) a -= s(t - 1 - tau) * s(t - 1);
        if (t % step == 0) put(tau, c, a);
      }
      if (t++ % step == 0) ++c;
    }
  }
  void born_jordan() {
    cone();
    for (int i = 0; i < out.nelem; ++i) out.data[i] *= 1.0 / (i / C + 1.0);
  }
  void margeneau_hill() {
    if (R >= N) return;
    int t = 0, c = 0;
    const auto column = [&](int lags) {
      for (int tau = 0; tau < lags; ++tau) put(tau, c, (s(t - tau) + s(t + tau)) * s(t) * 0.5);
      t += step, ++c;
    };
    for (int M = 0; t < R - 1; test(20.0 * M)) column(M), M = std::min(R, t);
    while (c < C) column(std::min(R, N - t)), test(20.0 * std::min(R, N - t));
  }
  void custom(const dbl_matrix& K) {
    const int kr = K.nrow, P = R + kr;
    int t = 0, c = 0;
    const auto lag = [&](int tau, int limit) {
      const auto pair = [&](int x, int y) { return s(t + x, P) * s(t - y, P) + s(t + y, P) * s(t - x, P); };
      const auto first =
          s(t + (tau + 1) / 2, P) * s(t - tau / 2, P) + s(t - (tau + 1) / 2, P) * s(t + tau / 2, P);
      double sum = K(0, tau) * first * 0.5;
      for (int mu = limit; mu >= 1; --mu) sum += K(mu, tau) * pair((tau + mu) / 2, (tau - mu + 1) / 2);
      put(tau, c, sum);
    };
    const auto end = [&] { tally = 0.0, test(200.0 * kr), t += step, ++c; };
    while (t < P / 2) {
      for (int tau = std::min(2 * t, R - 1) - 1; tau >= 0; --tau, test(50.0 * kr))
        lag(tau, std::min(2 * t - tau, kr) - 1);
      end();
    }
    while (c < std::min(N, C)) {
      for (int tau = std::min(R - 1, N - t) - 1; tau >= 0; --tau) lag(tau, std::min(N - t, kr) - 1);
      end();
    }
  }
};

// The same bits where the definition stays inside, else a refusal before anything is written.
template <class Call>
void expect_twin(const twin& expected, Call call) {
  fenced<_dbl_mat> out(expected.R, expected.C);
  const dbl_matrix untouched(expected.R, expected.C, fenced<_dbl_mat>::post());
  const dbl_matrix& result = expected.outside ? untouched : expected.out;
  ASSERT_EQ(call(&out), expected.outside ? KORVO_ERR_ILLEGAL_SIZE : KORVO_ERR_OK)
      << expected.N << ' ' << expected.R << ' ' << expected.C << ' ' << expected.step;
  ASSERT_EQ(std::memcmp(out.data, result.data, sizeof(double) * result.elements().size()), 0)
      << expected.N << ' ' << expected.R << ' ' << expected.C << ' ' << expected.step;
  EXPECT_TRUE(out.fences_stand());
}

struct distribution {
  decltype(&sigdbl_timefreq_autocorrelate_wigner) form;
  void (twin::*define)();
};
constexpr distribution distributions[] = {{wigner, &twin::wigner},
                                          {cone, &twin::cone},
                                          {born_jordan, &twin::born_jordan},
                                          {margeneau_hill, &twin::margeneau_hill}};

void expect_all_twins(int N, int R, int C, int step, std::initializer_list<int> kernel_rows) {
  const twin fresh = {N, R, C, step};
  for (const distribution& d : distributions) {
    twin t = fresh;
    (t.*d.define)();
    expect_twin(t, [&](_dbl_mat* out) { return d.form(&t.signal, step, nullptr, out); });
  }
  for (const int rows : kernel_rows) {
    twin t = fresh;
    const auto kernel = dbl_matrix::random(rows, R, 5, -1.0 / 3.0, 3.0);
    if (R > N)
      t.outside = true;
    else
      t.custom(kernel);
    expect_twin(t, [&](_dbl_mat* out) { return custom(&t.signal, step, &kernel, nullptr, out); });
  }
}

TEST(TimeFrequency, FollowsTheDefinitionsInEveryShapeThatStaysInside) {
  constexpr int most = 6;
  for (int N = 1; N <= most; ++N)
    for (int R = 1; R <= most + 3; ++R)
      for (int C = 1; C <= most; ++C)
        for (int step = 1; step <= most; ++step) expect_all_twins(N, R, C, step, {1, 2, 5});
  each_level([] {
    expect_all_twins(150, 75, 90, 1, {1, 37, 90});
    expect_all_twins(150, 20, 80, 3, {40});
    expect_all_twins(40, 13, 45, 50, {9});
  });
}

TEST(ChoiWilliams, SmoothsWithItsKernelWhoseRowsSigmaLimits) {
  for (const auto& [width, rows] : {std::pair{2.0, 3 * 6}, {HUGE_VAL, 3}, {0.001, 30}, {1e-320, 30}}) {
    const double sigma = width;
    _dbl_mat made = {};
    ASSERT_EQ(sigdbl_kernel_choi_williams(5, 30, sigma, nullptr, &made), KORVO_ERR_OK);
    ASSERT_TRUE(made.nrow == rows && made.ncol == 5 && made.nelem == rows * 5) << made.nrow;
    dbl_matrix K(rows, 5);
    const double d = std::sqrt(sigma * 0.07957747154594767), e = sigma * -0.25;
    for (int i = 0; i < rows; ++i)
      for (int j = 0; j < 5; ++j) K(i, j) = j == 0 ? i == 0 : d / j * std::exp(i * i * e / (j * j));
    if (sigma < HUGE_VAL) {
      EXPECT_EQ(std::memcmp(made.data, K.data, sizeof(double) * K.elements().size()), 0);
      twin t = {30, 5, 20, 1};
      t.custom(K);
      expect_twin(t, [&](_dbl_mat* out) { return choi_williams(&t.signal, sigma, 1, nullptr, out); });
    }
    EXPECT_EQ(matdbl_free(&made), KORVO_ERR_OK);
  }
}

TEST(ChoiWilliams, RefusesParametersAndLeavesNoKernelBehind) {
  dbl_matrix in(1, 4), out(5, 9, 7.0), unmade(1, 1);
  _dbl_mat kernel = unmade;
  EXPECT_EQ(sigdbl_kernel_choi_williams(1, 1, 1.0, nullptr, nullptr), KORVO_ERR_NULL_POINTER);
  for (const int lags : {0, 1})
    EXPECT_EQ(sigdbl_kernel_choi_williams(lags, 1 - lags, 1.0, nullptr, &kernel), KORVO_ERR_ILLEGAL_VALUE);
  for (const double sigma : {0.0, -1.0, std::nan("")}) {
    EXPECT_EQ(sigdbl_kernel_choi_williams(1, 1, sigma, nullptr, &kernel), KORVO_ERR_ILLEGAL_VALUE);
    EXPECT_EQ(choi_williams(&in, sigma, 1, nullptr, &out), KORVO_ERR_ILLEGAL_VALUE);  // and lags > samples
  }
  EXPECT_EQ(kernel.data, unmade.data);
  EXPECT_EQ(choi_williams(&in, 1.0, 1, nullptr, &out), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(out.elements(), dbl_matrix(5, 9, 7.0).elements());
  EXPECT_EQ(sigdbl_kernel_choi_williams(INT32_MAX, INT32_MAX, 1e-300, nullptr, &kernel), KORVO_ERR_MALLOC);
  EXPECT_EQ(kernel.data, nullptr);
  const threshold each(1e-9);
  fake_host host(3);
  kernel = unmade;
  EXPECT_EQ(sigdbl_kernel_choi_williams(5, 30, 1.0, host.intrp_ptr(), &kernel), KORVO_ERR_INTERRUPT);
  EXPECT_EQ(kernel.data, nullptr);
  _univ_mat any = in.universal();
  EXPECT_EQ(siguniv_kernel_choi_williams(0, 1, 1.0, nullptr, &any, KORVO_FLOAT), KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(any.type, KORVO_FLOAT);
  EXPECT_EQ(siguniv_kernel_choi_williams(0, 1, 1.0, nullptr, nullptr, KORVO_FLOAT), KORVO_ERR_NULL_POINTER);
}

// Zeroing, and copying a row into a longer one, poll once each whatever the distance between polls.
constexpr double once = 1e300;

TEST(TimeFrequency, CostsFallPastTheSignalAndBeginAnewAtEachSmoothedInstant) {
  for (const distribution& d : distributions) {
    if (d.form == born_jordan) continue;
    for (const int step : {1, 3}) {
      twin t = {30, 7, 24, step};
      (t.*d.define)();
      expect_tallies([&](void* host) { return d.form(&t.signal, step, host, &t.out); }, t.tallies, {once});
    }
  }
  for (const int rows : {3, 20}) {
    twin t = {30, 7, 24, 1};
    const auto kernel = dbl_matrix::random(rows, 7, 5);
    t.custom(kernel);
    expect_tallies([&](void* host) { return custom(&t.signal, 1, &kernel, host, &t.out); }, t.tallies,
                   {once, once, once});
  }
  dbl_matrix in(1, 4), out(5, 7);  // too short for the cone: the second step has a tally of its own
  expect_tallies([&](void* host) { return born_jordan(&in, 1, host, &out); }, steps_of(7, 50.0), {once});
  _dbl_mat made = {};
  std::vector<double> tallies = steps_of(18, 1800.0);
  for (double& tally : tallies) tally += 90.0;
  expect_tallies(
      [&](void* host) {
        EXPECT_EQ(matdbl_free(&made), KORVO_ERR_OK);
        return sigdbl_kernel_choi_williams(5, 30, 2.0, host, &made);
      },
      tallies);
  EXPECT_EQ(matdbl_free(&made), KORVO_ERR_OK);
}

TEST(TimeFrequency, KeepsTheColumnsDoneWhenStopped) {
  const twin t = {60, 9, 40, 1};
  const auto kernel = dbl_matrix::random(3, 9, 5);
  const auto expect = [&](auto call, int poll, int columns) {
    dbl_matrix whole(9, 40), stopped(9, 40, 7.0);
    EXPECT_EQ(call(nullptr, &whole), KORVO_ERR_OK);
    const threshold each(1e-9);
    fake_host host(poll);
    EXPECT_EQ(call(host.intrp_ptr(), &stopped), KORVO_ERR_INTERRUPT);
    for (int i = 0; i < whole.nelem; ++i) EXPECT_EQ(stopped.data[i], i % 40 < columns ? whole.data[i] : 0.0);
  };
  const auto planes = [&](auto form) {
    return [&, form](void* host, _dbl_mat* out) { return form(&t.signal, 1, host, out); };
  };
  expect(planes(wigner), 2, 5);  // 4 columns without a poll
  expect(planes(cone), 12, 12);
  expect(planes(margeneau_hill), 12, 11);
  // Lags 0, 2, 4, 6, 8, 8 in the first phase, each with a poll, and one more for each instant.
  const auto smoothed = [&](void* host, _dbl_mat* out) { return custom(&t.signal, 1, &kernel, host, out); };
  expect(smoothed, 3 + 1 + 3 + 5 + 4, 3);
  expect(smoothed, 3 + 6 + 28 + 4, 10);
}

TEST(TimeFrequency, RunsFarPastTheSignalInLittleTime) {
  const dbl_matrix in(1, 40, 3.0);
  for (const distribution& d : distributions) {
    dbl_matrix out(1, 100000), expected(1, 100000);
    expected(0, 0) = 9.0;
    EXPECT_EQ(d.form(&in, INT32_MAX, nullptr, &out), KORVO_ERR_OK);
    EXPECT_EQ(out.elements(), expected.elements());
  }
}

TEST(TimeFrequency, RefusesInOrder) {
  dbl_matrix in(5, 1), out(2, 9, 7.0), square(2, 2), taps(3, 2), wide(1, 6);
  _dbl_mat shared = {2, 2, 4, square.data}, of_taps = {2, 1, 2, taps.data}, broken = {2, 9, 1, out.data};
  const auto expect = [&](_korvo_errcode expected, const _dbl_mat* s, int step, _dbl_mat* to) {
    for (const distribution& d : distributions) EXPECT_EQ(d.form(s, step, nullptr, to), expected);
    EXPECT_EQ(choi_williams(s, NAN, step, nullptr, to), expected);
    EXPECT_EQ(custom(s, step, &wide, nullptr, to), expected);
  };
  _dbl_mat vector = {1, 2, 2, square.data};
  expect(KORVO_ERR_NULL_POINTER, nullptr, 0, &broken);
  expect(KORVO_ERR_ILLEGAL_SIZE, &square, 0, &broken);
  expect(KORVO_ERR_ILLEGAL_SIZE, &square, 0, &shared);
  expect(KORVO_ERR_ILLEGAL_ADDRESS, &vector, 0, &shared);
  expect(KORVO_ERR_ILLEGAL_VALUE, &in, 0, &out);
  EXPECT_EQ(custom(&in, 0, nullptr, nullptr, &out), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(custom(&in, 1, &wide, nullptr, &out), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(custom(&in, 1, &taps, nullptr, &of_taps), KORVO_ERR_ILLEGAL_ADDRESS);  // and too few columns
  EXPECT_EQ(out.elements(), dbl_matrix(2, 9, 7.0).elements());
  const _univ_mat s = in.universal(), bytes = {5, 1, 5, in.data, KORVO_UINT8};
  _univ_mat to = out.universal();
  for (const auto form : {PLANES(siguniv, wigner), PLANES(siguniv, cone), PLANES(siguniv, born_jordan),
                          PLANES(siguniv, margeneau_hill)}) {
    EXPECT_EQ(form(&bytes, 0, nullptr, nullptr), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(form(&bytes, 0, nullptr, &to), KORVO_ERR_ILLEGAL_TYPE);
  }
  EXPECT_EQ(PLANES(siguniv, choi_williams)(&bytes, 0.0, 0, nullptr, &to), KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(PLANES(siguniv, custom)(nullptr, 0, &bytes, nullptr, &to), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(PLANES(siguniv, custom)(&bytes, 0, &s, nullptr, &to), KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(PLANES(siguniv, custom)(&s, 0, &bytes, nullptr, &to), KORVO_ERR_ILLEGAL_TYPE);
}

}  // namespace

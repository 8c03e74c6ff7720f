#include "korvos/signal/sig_tfrq.h"

#include "tests/support/all.hpp"

namespace {

using namespace korvo;

constexpr auto wigner = sigdbl_timefreq_autocorrelate_wigner, cone = sigdbl_timefreq_autocorrelate_cone,
               born_jordan = sigdbl_timefreq_autocorrelate_born_jordan,
               margeneau_hill = sigdbl_timefreq_autocorrelate_margeneau_hill;
constexpr auto custom = sigdbl_timefreq_autocorrelate_custom;
constexpr auto choi_williams = sigdbl_timefreq_autocorrelate_choi_williams;

// The definitions, a cell at a time. Those that would read outside the signal say so.
struct twin {
  int N, R, C, step;
  const dbl_matrix* kernel = nullptr;
  dbl_matrix signal = dbl_matrix::random(1, N, 3, -20.0 / 3.0, 20.0);
  bool outside = false;

  double s(int i) {
    outside = outside || i < 0 || i >= N;
    return padded(i);
  }
  double padded(int i) const { return i < 0 || i >= N ? 0.0 : signal.data[i]; }
  int left(int t) const { return std::min(R, N - t); }

  double wigner(int tau, int t) {
    const int L = R / 2;
    if (N <= L) return N == L && tau + t == 0 ? s(N - 1) * s(N - 1) : 0.0;
    double sum = 0.0;
    for (int u = std::max(0, t - step + 1); u <= t; ++u)
      if (tau < (u < L ? u : left(u)))
        sum += (s(u - tau / 2) * s(u + (tau + 1) / 2) + s(u - (tau + 1) / 2) * s(u + tau / 2)) * 0.5;
    return tau < (t < L ? L : left(t)) ? sum : 0.0;
  }
  double cone(int tau, int t) {
    if (N == R && tau + t == 0) return s(N - 1) * s(N - 1) - s(N - 2) * s(N - 2);
    if (N <= R || tau >= left(t)) return 0.0;
    double sum = s(tau) * s(0);
    for (int u = 1; u <= t; ++u) {
      sum += s(u + tau) * s(u);
      if (u - tau >= 1) sum -= s(u - 1 - tau) * s(u - 1);
    }
    return sum;
  }
  double born_jordan(int tau, int t) { return cone(tau, t) * (1.0 / (tau + 1.0)); }
  double margeneau_hill(int tau, int t) {
    if (R >= N || tau >= (t < R - 1 ? t : left(t))) return 0.0;
    return (s(t - tau) + s(t + tau)) * s(t) * 0.5;
  }
  double custom(int tau, int t) {
    const int kr = kernel->nrow, mid = (R + kr) / 2, least = t < mid ? 2 * t : N - t;
    if (tau >= std::min(R - 1, least) || (t >= mid && t / step >= N)) return 0.0;
    const auto pair = [&](int x, int y) {
      return padded(t + x) * padded(t - y) + padded(t + y) * padded(t - x);
    };
    double sum = (*kernel)(0, tau) * pair((tau + 1) / 2, tau / 2) * 0.5;
    for (int mu = std::min(t < mid ? least - tau : least, kr) - 1; mu >= 1; --mu)
      sum += (*kernel)(mu, tau) * pair((tau + mu) / 2, (tau - mu + 1) / 2);
    return sum;
  }
};

struct distribution {
  decltype(wigner) form;
  double (twin::*cell)(int, int);
};
const distribution distributions[] = {{wigner, &twin::wigner},
                                      {cone, &twin::cone},
                                      {born_jordan, &twin::born_jordan},
                                      {margeneau_hill, &twin::margeneau_hill}};

// The same bits where the definition stays inside, else a refusal before anything is written. The instants
// below `start` need columns; those up to the next column after it are looked at too.
template <class Call>
void expect_twin(twin t, decltype(distribution::cell) cell, int start, Call call) {
  dbl_matrix expected(t.R, t.C);
  for (int c = 0; c < t.C || (c - 1) * t.step < start - 1; ++c)
    for (int tau = 0; tau < t.R; ++tau) {
      const double x = (t.*cell)(tau, c * t.step);
      if (c < t.C) expected(tau, c) = x;
      t.outside = t.outside || (c >= t.C && c * t.step < start);
    }
  fenced<_dbl_mat> out(t.R, t.C);
  if (t.outside) std::fill_n(expected.data, expected.nelem, out.post());
  ASSERT_EQ(call(&out), t.outside ? KORVO_ERR_ILLEGAL_SIZE : KORVO_ERR_OK)
      << t.N << ' ' << t.R << ' ' << t.C << ' ' << t.step;
  ASSERT_TRUE(same_bits<_dbl_mat>(out, expected)) << t.N << ' ' << t.R << ' ' << t.C << ' ' << t.step;
  EXPECT_TRUE(out.fences_stand());
}

void expect_all_twins(int N, int R, int C, int step, std::initializer_list<int> kernel_rows) {
  twin t = {N, R, C, step};
  for (const distribution& d : distributions) {
    const int start = d.form == wigner                    ? (N > R / 2 ? R / 2 : 0)
                      : d.form == margeneau_hill && R < N ? R - 1
                                                          : 0;
    expect_twin(t, d.cell, start, [&](_dbl_mat* out) { return d.form(&t.signal, step, nullptr, out); });
  }
  for (const int rows : kernel_rows) {
    const auto kernel = dbl_matrix::random(rows, R, 5, -1.0 / 3.0, 3.0);
    t.kernel = &kernel;
    t.outside = R > N;
    expect_twin(t, &twin::custom, R > 1 ? (R + rows) / 2 : 0,
                [&](_dbl_mat* out) { return custom(&t.signal, step, &kernel, nullptr, out); });
  }
}

TEST(TimeFrequency, FollowsTheDefinitionsInEveryShapeThatStaysInside) {
  constexpr int most = 6;
  for (int N = 1; N <= most; ++N)
    for (int R = 1; R <= most + 5; ++R)
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
    const twin t = {30, 5, 20, 1, &K};
    if (sigma < HUGE_VAL) {
      EXPECT_TRUE(same_bits<_dbl_mat>(made, K));
      expect_twin(t, &twin::custom, 0,
                  [&](_dbl_mat* out) { return choi_williams(&t.signal, sigma, 1, nullptr, out); });
    }
    EXPECT_EQ(matdbl_free(&made), KORVO_ERR_OK);
  }
}

TEST(ChoiWilliams, RefusesParametersAndLeavesNoKernelBehind) {
  const dbl_matrix unmade(1, 1);
  _dbl_mat kernel = unmade;
  _univ_mat any = unmade.universal();
  EXPECT_EQ(siguniv_kernel_choi_williams(0, 1, 1.0, nullptr, &any, KORVO_FLOAT), KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(any.type, KORVO_FLOAT);
  EXPECT_EQ(sigdbl_kernel_choi_williams(1, 1, std::nan(""), nullptr, &kernel), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(kernel.data, unmade.data);
  EXPECT_EQ(sigdbl_kernel_choi_williams(INT32_MAX, INT32_MAX, 1e-300, nullptr, &kernel), KORVO_ERR_MALLOC);
  EXPECT_EQ(kernel.data, nullptr);
}

// Zeroing, and copying a row into a longer one, poll once each.
TEST(TimeFrequency, CostsFallPastTheSignalAndBeginAnewAtEachSmoothedInstant) {
  const auto signal = dbl_matrix::random(1, 30, 3), kernel = dbl_matrix::random(20, 7, 5);
  dbl_matrix plane(7, 24);
  const auto expect = [&](auto form, double tally, double cost, int first, int pace) {
    std::vector<double> tallies;
    for (int next = first; next <= 23 * 3 + pace; next += pace) {
      const bool early = form == margeneau_hill && next - 3 < 6;
      tallies.push_back(tally += cost * std::min(7, early ? next : 30 - next));
    }
    expect_tallies([&](void* host) { return form(&signal, 3, host, &plane); }, tallies, {once});
  };
  expect(wigner, 200.0 * 3 * 3, 200.0, 3 + 1, 1);
  expect(cone, 100.0 * 7, 200.0, 1 + 1, 1);
  expect(margeneau_hill, 0.0, 20.0, 3, 3);
  std::vector<double> smoothing, weights = steps_of(18, 1800.0);
  double tally = 0.0;
  for (int c = 0; c < 24; ++c, smoothing.push_back(tally = 200.0 * 20))
    for (int lag = std::min(2 * c, 6); lag > 0 && c < (7 + 20) / 2; --lag)
      smoothing.push_back(tally += 50.0 * 20);
  expect_tallies_of([&](void* host) { return custom(&signal, 1, &kernel, host, &plane); },
                    {{once, once, once}, smoothing});
  dbl_matrix in(1, 4), out(5, 7);  // too short for the cone: the second step has a tally of its own
  expect_tallies([&](void* host) { return born_jordan(&in, 1, host, &out); }, steps_of(7, 50.0), {once});
  _dbl_mat made = {};
  for (double& weight : weights) weight += 90.0;
  expect_tallies(
      [&](void* host) {
        EXPECT_EQ(matdbl_free(&made), KORVO_ERR_OK);
        return sigdbl_kernel_choi_williams(5, 30, 2.0, host, &made);
      },
      weights);
  EXPECT_EQ(matdbl_free(&made), KORVO_ERR_OK);
}

TEST(TimeFrequency, KeepsTheColumnsDoneWhenStopped) {
  const auto signal = dbl_matrix::random(1, 60, 3), kernel = dbl_matrix::random(3, 9, 5);
  const auto expect = [](auto call, int poll, int columns) {
    dbl_matrix whole(9, 40), stopped(9, 40, 7.0);
    EXPECT_EQ(call(nullptr, &whole), KORVO_ERR_OK);
    const threshold each(1e-9);
    fake_host host(poll);
    EXPECT_EQ(call(host.intrp_ptr(), &stopped), KORVO_ERR_INTERRUPT);
    for (int i = 0; i < whole.nelem; ++i) EXPECT_EQ(stopped.data[i], i % 40 < columns ? whole.data[i] : 0.0);
  };
  for (const auto& [form, poll, columns] : {std::tuple{wigner, 2, 5}, {cone, 12, 12}, {margeneau_hill, 12, 11}})
    expect([&, f = form](void* host, _dbl_mat* out) { return f(&signal, 1, host, out); }, poll, columns);
  // Lags 0, 2, 4, 6, 8, 8 in the first phase, each with a poll, and one more for each instant.
  const auto smoothed = [&](void* host, _dbl_mat* out) { return custom(&signal, 1, &kernel, host, out); };
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

}  // namespace

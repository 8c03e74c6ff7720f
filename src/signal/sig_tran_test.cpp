#include "korvos/signal/sig_tran.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstring>
#include <numeric>
#include <vector>

#include "signal/sig_tran.hpp"
#include "tests/support/costs.hpp"
#include "tests/support/levels.hpp"
#include "tests/support/matrix.hpp"

namespace {

using namespace korvo;
using wide = std::complex<long double>;

constexpr long double two_pi = 6.283185307179586476925286766559L;

// exp(sign 2 pi i j / n)
wide root(std::int64_t j, std::int64_t n, int sign) {
  const long double angle = two_pi * static_cast<long double>(j % n) / static_cast<long double>(n);
  return {std::cos(angle), sign * std::sin(angle)};
}

cpx_matrix transformed(const cpx_matrix& in, std::uint8_t inverse) {
  cpx_matrix out(in.nrow, in.ncol);
  EXPECT_EQ(sigcpx_transform_discrete_fourier(&in, inverse, nullptr, &out), KORVO_ERR_OK);
  return out;
}

// Root mean square of the difference, relative to that of the second.
double distance(const cpx_matrix& a, const std::vector<wide>& b) {
  long double difference = 0.0L, size = 0.0L;
  for (std::size_t i = 0; i < b.size(); ++i) {
    difference += std::norm(wide(a.data[i].re, a.data[i].im) - b[i]);
    size += std::norm(b[i]);
  }
  return static_cast<double>(std::sqrt(difference / size));
}

std::vector<wide> numbers_of(const cpx_matrix& m) {
  std::vector<wide> result;
  for (const korvo_dcomplex& x : m.elements()) result.emplace_back(x.re, x.im);
  return result;
}

// The sum from its definition, for the wanted elements only.
wide direct(const std::vector<wide>& x, const std::vector<wide>& roots, std::size_t k) {
  wide sum = 0.0L;
  for (std::size_t j = 0, at = 0; j < x.size(); ++j, at = (at + k) % x.size()) sum += x[j] * roots[at];
  return sum;
}

TEST(Fourier, IsTheSumOfItsDefinitionForEveryLengthTo512BothWaysAtEachLevel) {
  for (std::int32_t n = 1; n <= 512; ++n) {
    const auto in = cpx_matrix::random(n, 1, static_cast<unsigned>(n), -1.0, 1.0);
    const std::vector<wide> x = numbers_of(in);
    const int sign = n % 2 == 0 ? -1 : 1;
    std::vector<wide> roots, expected;
    for (std::int32_t j = 0; j < n; ++j) roots.push_back(root(j, n, sign));
    for (std::size_t k = 0; k < x.size(); ++k) expected.push_back(direct(x, roots, k));
    if (sign > 0)
      for (wide& value : expected) value /= n;
    each_level([&] {
      const cpx_matrix out = transformed(in, sign > 0);
      EXPECT_LT(distance(out, expected), 1e-14) << n;
      EXPECT_LT(distance(transformed(out, sign < 0), x), 1e-14) << n;  // and back
    });
  }
}

// Long ones: a few elements from the definition, Parseval's sum, and the way back.
TEST(Fourier, IsExactForLongLengthsAndPrimes) {
  for (const std::int32_t n : {1009, 1024, 2310, 4096, 10007, 44100, 1 << 16, 720720, 1 << 20}) {
    const auto in = cpx_matrix::random(n, 1, 7, -1.0, 1.0);
    const cpx_matrix out = transformed(in, 0);
    const std::vector<wide> x = numbers_of(in), y = numbers_of(out);
    std::vector<wide> roots;
    for (std::int32_t j = 0; j < n; ++j) roots.push_back(root(j, n, -1));
    const double bound = n <= 4096 ? 1e-14 : 1e-13;
    const auto energy = [](const std::vector<wide>& of) {
      return std::accumulate(of.begin(), of.end(), 0.0L,
                             [](auto s, const wide& v) { return s + std::norm(v); });
    };
    const long double scale = std::sqrt(energy(y) / n);  // the typical size of an element
    EXPECT_NEAR(static_cast<double>(energy(y) / energy(x) / n), 1.0, bound);
    for (const std::size_t k : {std::size_t{1}, y.size() / 3, y.size() - 1})
      EXPECT_LT(std::abs(y[k] - direct(x, roots, k)) / scale, 4.0 * bound) << n << ", " << k;
    EXPECT_LT(distance(transformed(out, 1), x), bound) << n;
  }
}

TEST(Fourier, KeepsTheLawsOfShiftsAndRealInput) {
  for (const std::int32_t n : {2, 3, 4, 5, 7, 12, 16, 49, 60, 97, 143, 1024, 1155}) {
    const auto x = cpx_matrix::random(n, 1, 3, -1.0, 1.0);
    cpx_matrix delayed(n, 1), impulse(n, 1), single(n, 1);
    const dbl_matrix real = dbl_matrix::random(n, 1, 5, -1.0, 1.0);
    cpx_matrix spectrum(n, 1);
    std::rotate_copy(x.data, x.data + n - 1, x.data + n, delayed.data);
    impulse(0, 0) = {1.0, 0.0};
    single(1, 0) = {1.0, 0.0};
    std::vector<wide> expected = numbers_of(transformed(x, 0)), turns;
    for (std::int32_t k = 0; k < n; ++k) turns.push_back(root(k, n, -1));
    for (std::size_t k = 0; k < expected.size(); ++k) expected[k] *= turns[k];
    EXPECT_LT(distance(transformed(delayed, 0), expected), 1e-14);
    EXPECT_LT(distance(transformed(single, 2), turns), 1e-14);  // 2 is forward: 1 alone is inverse
    EXPECT_LT(distance(transformed(single, 255), turns), 1e-14);
    const cpx_matrix flat = transformed(impulse, 0);
    for (const korvo_dcomplex& one : flat.elements()) EXPECT_EQ(one, (korvo_dcomplex{1.0, 0.0}));
    EXPECT_EQ(sigdbl_transform_discrete_fourier(&real, 0, nullptr, &spectrum), KORVO_ERR_OK);
    for (std::int32_t k = 1; k < n; ++k) {
      EXPECT_NEAR(spectrum(k, 0).re, spectrum(n - k, 0).re, 1e-12);
      EXPECT_NEAR(spectrum(k, 0).im, -spectrum(n - k, 0).im, 1e-12);
    }
  }
}

TEST(Fourier, GivesEachColumnTheBitsItHasAloneInPlaceToo) {
  for (const std::int32_t n : {1, 2, 3, 7, 8, 12, 60, 100, 143, 1024, 3600, 40000}) {
    auto all = cpx_matrix::random(n, 7, 1, -1.0, 1.0);
    const cpx_matrix in = all;
    EXPECT_EQ(sigcpx_transform_discrete_fourier(&all, 1, nullptr, &all), KORVO_ERR_OK);
    for (const std::int32_t c : {0, 3, 6}) {
      cpx_matrix one(n, 1), seen(n, 1);
      for (std::int32_t r = 0; r < n; ++r) one(r, 0) = in(r, c), seen(r, 0) = all(r, c);
      EXPECT_EQ(
          std::memcmp(transformed(one, 1).data, seen.data, sizeof(korvo_dcomplex) * one.elements().size()), 0)
          << n << ", " << c;
    }
  }
  const auto row = cpx_matrix::random(1, 9, 1);  // columns of length 1: unchanged, and not scaled
  for (const bool inverse : {false, true}) EXPECT_EQ(transformed(row, inverse).elements(), row.elements());
}

TEST(FourierFactors, AreSquaresThenSquareFreeThenSquaresMirrored) {
  const auto table = [](std::int32_t n) {
    fourier_factors f;
    localfn_sig_fft_factorize(n, &f);
    return std::vector<std::int32_t>(f.table, f.table + f.count);
  };
  using list = std::vector<std::int32_t>;
  EXPECT_EQ(table(4), (list{2, 2}));
  EXPECT_EQ(table(8), (list{2, 2, 2}));
  EXPECT_EQ(table(16), (list{4, 4}));
  EXPECT_EQ(table(32), (list{4, 2, 4}));
  EXPECT_EQ(table(9), (list{3, 3}));  // a rest that is the square of the next trial is left as two
  EXPECT_EQ(table(44100), (list{2, 3, 5, 7, 7, 5, 3, 2}));
  EXPECT_EQ(table(720720), (list{4, 3, 5, 7, 11, 13, 3, 4}));
  for (const std::int32_t n : {1 << 30, 1162261467, 2147483646, 2147302921}) {  // 3^19; 46339 squared
    const list factors = table(n);
    EXPECT_EQ(std::accumulate(factors.begin(), factors.end(), std::int64_t{1}, std::multiplies<>()), n);
  }
}

TEST(Fourier, PollsAtItsCostsAndKeepsSilentWhenItIsStopped) {
  const auto in = cpx_matrix::random(8, 2, 1);
  cpx_matrix out(8, 2);
  const auto run = [&](void* host) { return sigcpx_transform_discrete_fourier(&in, 1, host, &out); };
  // Factors 2 2 2 of two columns, then the swaps of the outer ones, then the scaling.
  std::vector<double> tallies;
  double tally = 50.0 + 100.0 + 50.0 + 100.0;
  const auto steps = [&](int count, double cost) {
    for (int i = 0; i < count; ++i) tallies.push_back(tally += cost);
  };
  for (const int part : {4, 2, 1}) {
    const int spans = 8 / part;
    tally += 10.0;
    steps(spans, 15.0);
    for (int j = 1; j <= part / 2; ++j) {
      for (int side = part - j > j ? 2 : 1; side > 0; --side) steps(spans, 20.0), tally += 10.0;
      tally += 25.0;
    }
  }
  steps(4, 10.0);
  steps(1, 3.0 * 16.0);
  expect_tallies(run, tallies);
  const threshold every_test_polls(1e-9);
  for (int k = 1; k <= static_cast<int>(tallies.size()); ++k) {
    fake_host host(k);
    EXPECT_EQ(run(host.intrp_ptr()), KORVO_ERR_OK);
    EXPECT_EQ(host.polls(), k);  // it has stopped all the same
  }
}

TEST(Fourier, RefusesInOrder) {
  cpx_matrix in(3, 2), turned(2, 3);
  dbl_matrix real(3, 2);
  _cpx_mat broken = {3, 2, 5, in.data};
  EXPECT_EQ(sigcpx_transform_discrete_fourier(nullptr, 0, nullptr, &broken), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(sigcpx_transform_discrete_fourier(&in, 0, nullptr, &turned), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(sigdbl_transform_discrete_fourier(&real, 0, nullptr, &broken), KORVO_ERR_ILLEGAL_SIZE);
  _univ_mat complex = in.universal(), number = real.universal(), flat = {0, 0, 0, nullptr, KORVO_FLOAT};
  EXPECT_EQ(siguniv_transform_discrete_fourier(nullptr, 0, nullptr, &number), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(siguniv_transform_discrete_fourier(&flat, 0, nullptr, &complex), KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(siguniv_transform_discrete_fourier(&complex, 0, nullptr, &number), KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(siguniv_transform_discrete_cosine_II(&flat, nullptr, &flat), KORVO_ERR_ILLEGAL_TYPE);
}

double cosine(std::int32_t j, std::int32_t k, std::int32_t n) {
  return static_cast<double>(root(std::int64_t{2 * j + 1} * k, std::int64_t{4} * n, 1).real()) *
         std::sqrt((k == 0 ? 1.0 : 2.0) / n);
}

// Element k of the transform of a run of n elements, `step` apart.
double direct_cosine(const double* x, std::int32_t step, std::int32_t n, std::int32_t k) {
  double sum = 0.0;
  for (std::int32_t j = 0; j < n; ++j) sum += x[std::int64_t{j} * step] * cosine(j, k, n);
  return sum;
}

TEST(CosineII, TransformsColumnsOrASingleRowAndBackInPlaceToo) {
  const auto near = [](const dbl_matrix& a, const dbl_matrix& b) {
    for (std::int32_t i = 0; i < a.nelem; ++i) EXPECT_NEAR(a.data[i], b.data[i], 1e-13) << i;
  };
  for (const auto& [rows, cols] : {std::pair{1, 1}, {7, 1}, {1, 12}, {5, 3}, {16, 2}, {33, 4}}) {
    const auto in = dbl_matrix::random(rows, cols, 1, -1.0, 1.0);
    dbl_matrix out(rows, cols), expected(rows, cols);
    const std::int32_t n = rows == 1 ? cols : rows, step = rows == 1 ? 1 : cols;
    for (std::int32_t r = 0; r < rows; ++r)
      for (std::int32_t c = 0; c < cols; ++c)
        expected(r, c) = rows == 1 ? direct_cosine(in.data, 1, n, c) : direct_cosine(in.data + c, step, n, r);
    EXPECT_EQ(sigdbl_transform_discrete_cosine_II(&in, nullptr, &out), KORVO_ERR_OK);
    near(out, expected);
    EXPECT_EQ(sigdbl_transform_discrete_cosine_II_inverse(&out, nullptr, &out), KORVO_ERR_OK);
    near(out, in);

    if (rows == 1 || cols == 1) continue;
    for (std::int32_t r = 0; r < rows; ++r)
      for (std::int32_t c = 0; c < cols; ++c) {
        double sum = 0.0;  // along the rows of what the columns gave
        for (std::int32_t j = 0; j < cols; ++j)
          sum += direct_cosine(in.data + j, cols, rows, r) * cosine(j, c, cols);
        expected(r, c) = sum;
      }
    EXPECT_EQ(sigdbl_transform_discrete_cosine_II_2d(&in, 0, nullptr, &out), KORVO_ERR_OK);
    near(out, expected);
    EXPECT_EQ(sigdbl_transform_discrete_cosine_II_2d(&out, 2, nullptr, &out),
              KORVO_ERR_OK);  // 2 is inverse here
    near(out, in);
  }
}

TEST(CosineII, TakesUnequalShapesForNothingToDoButNotInTwoDimensions) {
  const dbl_matrix in(4, 3, 1.0), row(1, 4, 1.0);
  dbl_matrix out(3, 4, 7.0), kept = out, across(1, 4);
  EXPECT_EQ(sigdbl_transform_discrete_cosine_II(&in, nullptr, &out), KORVO_ERR_OK);
  EXPECT_EQ(sigdbl_transform_discrete_cosine_II_inverse(&in, nullptr, &out), KORVO_ERR_OK);
  EXPECT_EQ(out.elements(), kept.elements());
  EXPECT_EQ(sigdbl_transform_discrete_cosine_II_2d(&in, 0, nullptr, &out), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(sigdbl_transform_discrete_cosine_II_2d(&row, 0, nullptr, &across), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(sigdbl_transform_discrete_cosine_II(nullptr, nullptr, &out), KORVO_ERR_NULL_POINTER);
}

}  // namespace

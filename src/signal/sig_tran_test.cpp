#include "korvos/signal/sig_tran.h"

#include <complex>
#include <numeric>

#include "signal/sig_tran.hpp"
#include "tests/support/all.hpp"

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

TEST(Fourier, IsTheSumOfItsDefinitionForEveryLengthTo512BothWaysAtEachLevel) {
  for (std::int32_t n = 1; n <= 512; ++n) {
    const auto in = cpx_matrix::random(n, 1, static_cast<unsigned>(n), -1.0, 1.0);
    const std::vector<wide> x = numbers_of(in);
    const bool inverse = n % 2 == 1;
    std::vector<wide> roots, expected(x.size());
    for (std::int32_t j = 0; j < n; ++j) roots.push_back(root(j, n, inverse ? 1 : -1));
    for (std::size_t k = 0; k < x.size(); ++k)
      for (std::size_t j = 0; j < x.size(); ++j)
        expected[k] += x[j] * roots[j * k % x.size()] / (inverse ? n : 1.0L);
    each_level([&] {
      const cpx_matrix out = transformed(in, inverse);
      EXPECT_LT(distance(out, expected), 1e-14) << n;
      EXPECT_LT(distance(transformed(out, !inverse), x), 1e-14) << n;  // and back
    });
  }
}

// The sum from its definition, for the wanted elements only.
wide direct(const std::vector<wide>& x, const std::vector<wide>& roots, std::size_t k) {
  wide sum = 0.0L;
  for (std::size_t j = 0, at = 0; j < x.size(); ++j, at = (at + k) % x.size()) sum += x[j] * roots[at];
  return sum;
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

// What turns delays into roots, and an impulse into ones, is this transform and no other.
TEST(Fourier, TurnsDelaysIntoRootsAndImpulsesIntoOnes) {
  for (const std::int32_t n : {2, 49, 97, 143, 1009, 2310, 4096, 44100, 1 << 16}) {
    const auto in = cpx_matrix::random(n, 1, 7, -1.0, 1.0);
    const double bound = n <= 4096 ? 1e-14 : 1e-13;
    cpx_matrix delayed(n, 1), impulse(n, 1), out = transformed(in, 0);
    std::rotate_copy(in.data, in.data + n - 1, in.data + n, delayed.data);
    std::vector<wide> expected = numbers_of(out);
    for (std::int32_t k = 0; k < n; ++k) expected[static_cast<std::size_t>(k)] *= root(k, n, -1);
    EXPECT_LT(distance(transformed(delayed, 2), expected), bound) << n;  // 1 alone is inverse
    impulse(0, 0) = {1.0, 0.0};
    EXPECT_EQ(transformed(impulse, 255).elements(), cpx_matrix(n, 1, impulse(0, 0)).elements());
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
      EXPECT_TRUE(same_bits<_cpx_mat>(transformed(one, 1), seen)) << n << ", " << c;
    }
  }
  const auto row = cpx_matrix::random(1, 9, 1);  // columns of length 1: unchanged, and not scaled
  EXPECT_EQ(transformed(row, 1).elements(), row.elements());
  const auto real = dbl_matrix::random(60, 2, 5);
  cpx_matrix spectrum(60, 2), same(60, 2);
  for (std::int32_t i = 0; i < 120; ++i) same.data[i].re = real.data[i];
  EXPECT_EQ(sigdbl_transform_discrete_fourier(&real, 0, nullptr, &spectrum), KORVO_ERR_OK);
  EXPECT_TRUE(same_bits<_cpx_mat>(spectrum, transformed(same, 0)));
  for (std::int32_t k = 1; k < 60; ++k) {  // real numbers have a symmetric spectrum
    EXPECT_NEAR(spectrum(k, 1).re, spectrum(60 - k, 1).re, 1e-11);
    EXPECT_NEAR(spectrum(k, 1).im, -spectrum(60 - k, 1).im, 1e-11);
  }
}

TEST(FourierFactors, AreSquaresThenSquareFreeThenSquaresMirrored) {
  using list = std::vector<std::int32_t>;
  const std::pair<std::int32_t, list> lengths[] = {{8, {2, 2, 2}},
                                                   {16, {4, 4}},
                                                   {32, {4, 2, 4}},
                                                   {9, {3, 3}},  // a rest that is the square of the next trial
                                                   {44100, {2, 3, 5, 7, 7, 5, 3, 2}},
                                                   {720720, {4, 3, 5, 7, 11, 13, 3, 4}},
                                                   {2147302921, {149, 311, 311, 149}}};
  for (const auto& [n, factors] : lengths) {
    fourier_factors f;
    localfn_sig_fft_factorize(n, &f);
    EXPECT_EQ(list(f.table, f.table + f.count), factors);
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

// The transform of columns, or of a single row along itself.
dbl_matrix slow_cosine(const dbl_matrix& in) {
  dbl_matrix out(in.nrow, in.ncol);
  const std::int32_t n = in.nrow == 1 ? in.ncol : in.nrow, step = in.nelem / n;
  for (std::int32_t i = 0; i < in.nelem; ++i)
    for (std::int32_t j = 0, k = i / step; j < n; ++j)
      out.data[i] += in.data[j * step + i % step] * std::sqrt((k == 0 ? 1.0 : 2.0) / n) *
                     static_cast<double>(root((2 * j + 1) * k, 4 * n, 1).real());
  return out;
}
dbl_matrix turned(const dbl_matrix& in) {
  dbl_matrix out(in.ncol, in.nrow);
  for (std::int32_t i = 0; i < in.nelem; ++i) out(i % in.ncol, i / in.ncol) = in.data[i];
  return out;
}

TEST(CosineII, TransformsColumnsOrASingleRowAndBackInPlaceToo) {
  const auto near = [](const dbl_matrix& a, const dbl_matrix& b) {
    for (std::int32_t i = 0; i < a.nelem; ++i) EXPECT_NEAR(a.data[i], b.data[i], 1e-13) << i;
  };
  for (const auto& [rows, cols] : {std::pair{1, 1}, {7, 1}, {1, 12}, {5, 3}, {16, 2}, {33, 4}}) {
    const auto in = dbl_matrix::random(rows, cols, 1, -1.0, 1.0);
    dbl_matrix out(rows, cols);
    EXPECT_EQ(sigdbl_transform_discrete_cosine_II(&in, nullptr, &out), KORVO_ERR_OK);
    near(out, slow_cosine(in));
    EXPECT_EQ(sigdbl_transform_discrete_cosine_II_inverse(&out, nullptr, &out), KORVO_ERR_OK);
    near(out, in);
    if (rows == 1 || cols == 1) continue;
    EXPECT_EQ(sigdbl_transform_discrete_cosine_II_2d(&in, 0, nullptr, &out), KORVO_ERR_OK);
    near(out, turned(slow_cosine(turned(slow_cosine(in)))));
    EXPECT_EQ(sigdbl_transform_discrete_cosine_II_2d(&out, 2, nullptr, &out), KORVO_ERR_OK);
    near(out, in);  // 2 is inverse here
  }
}

TEST(CosineII, TakesUnequalShapesForNothingToDoButNotInTwoDimensions) {
  const dbl_matrix in(4, 3, 1.0), row(1, 4, 1.0);
  dbl_matrix out(3, 4, 7.0), across(1, 4);
  EXPECT_EQ(sigdbl_transform_discrete_cosine_II(&in, nullptr, &out), KORVO_ERR_OK);
  EXPECT_EQ(sigdbl_transform_discrete_cosine_II_inverse(&in, nullptr, &out), KORVO_ERR_OK);
  EXPECT_EQ(out.elements(), dbl_matrix(3, 4, 7.0).elements());
  EXPECT_EQ(sigdbl_transform_discrete_cosine_II_2d(&in, 0, nullptr, &out), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(sigdbl_transform_discrete_cosine_II_2d(&row, 0, nullptr, &across), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(sigdbl_transform_discrete_cosine_II(nullptr, nullptr, &out), KORVO_ERR_NULL_POINTER);
}

}  // namespace

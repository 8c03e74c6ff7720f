#include "korvos/signal/sig_conv.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "signal/sig_conv.hpp"
#include "tests/reference/correlate.hpp"
#include "tests/support/costs.hpp"
#include "tests/support/fenced.hpp"
#include "tests/support/forms.hpp"
#include "tests/support/levels.hpp"

namespace {

using namespace korvo;
using reference::placement;

struct shapes {
  std::int32_t rows, cols, kernel_rows, kernel_cols, out_rows, out_cols;
};

// Integers over their whole range, so that sums wrap; fractions that round, so that their order shows.
template <class M>
matrix<M> numbers(std::int32_t rows, std::int32_t cols, unsigned seed) {
  using T = element<M>;
  matrix<M> mat(rows, cols);
  std::mt19937 engine(seed);
  for (std::int32_t i = 0; i < mat.nelem; ++i) {
    const auto bits = engine();
    if constexpr (std::is_integral_v<T>)
      mat.data[i] = static_cast<T>(bits);
    else
      mat.data[i] = as_element<T>(static_cast<double>(bits) / 3e9 - 0.5);
  }
  return mat;
}

template <class M, class Form>
_korvo_errcode call(Form form, const M& in, const M& kernel, const placement& at, void* intrp_ptr, M& out) {
  return form(&in, &kernel, at.row_step, at.col_step, at.row_origin, at.col_origin, at.boundary, intrp_ptr,
              &out);
}

template <auto form>
void expect_twin(const shapes& size, const placement& at, bool flipped) {
  using M = record_of<form>;
  const auto in = numbers<M>(size.rows, size.cols, 1);
  const auto kernel = numbers<M>(size.kernel_rows, size.kernel_cols, 2);
  fenced<M> out(size.out_rows, size.out_cols);
  matrix<M> expected(size.out_rows, size.out_cols);
  reference::correlate<M>(in, kernel, at, flipped, expected);
  ASSERT_EQ(call<M>(form, in, kernel, at, nullptr, out), KORVO_ERR_OK);
  EXPECT_EQ(std::memcmp(out.data, expected.data, sizeof(element<M>) * expected.elements().size()), 0)
      << size.rows << "x" << size.cols << " under " << size.kernel_rows << "x" << size.kernel_cols << ", steps "
      << at.row_step << "," << at.col_step << ", mode " << at.boundary;
  EXPECT_TRUE(out.fences_stand());
}

void expect_twins(const shapes& size, const placement& at) {
  each_form<sigu8_correlate, sigu16_correlate, sigu32_correlate, sigs32_correlate, sigdbl_correlate,
            sigcpx_correlate>([&]<auto form> { expect_twin<form>(size, at, false); });
  each_form<sigu8_convolve, sigu16_convolve, sigu32_convolve, sigs32_convolve, sigdbl_convolve,
            sigcpx_convolve>([&]<auto form> { expect_twin<form>(size, at, true); });
}

TEST(Correlate, SumsInOrderForEachFormAtEachLevel) {
  constexpr shapes sizes[] = {{1, 1, 1, 1, 1, 1},     {1, 1, 3, 4, 1, 1},     {3, 5, 9, 11, 3, 5},
                              {1, 90, 1, 7, 1, 90},   {90, 1, 7, 1, 80, 1},   {9, 37, 3, 2, 9, 37},
                              {14, 90, 7, 5, 14, 90}, {13, 75, 6, 3, 13, 71}, {11, 290, 5, 1, 11, 290},
                              {9, 70, 1, 5, 9, 70},   {8, 60, 2, 2, 8, 60},   {2, 40, 3, 70, 2, 33}};
  each_level([&] {
    for (const shapes& size : sizes)
      for (const std::int32_t boundary : {0, 1, 2, 3}) {
        const std::int32_t row_origin = (size.kernel_rows + 1) / 2;
        const std::int32_t col_origin = (size.kernel_cols + 1) / 2;
        expect_twins(size, {1, 1, row_origin, col_origin, boundary});
      }
  });
}

TEST(Correlate, TakesAnyStepsAndOriginsAtEachLevel) {
  std::mt19937 engine(7);
  const auto upto = [&](std::int32_t n) {
    return static_cast<std::int32_t>(engine() % static_cast<unsigned>(n)) + 1;
  };
  each_level([&] {
    for (int round = 0; round < 60; ++round) {
      const shapes in = {upto(12), upto(80), upto(9), upto(20), 0, 0};
      const shapes size = {in.rows, in.cols, in.kernel_rows, in.kernel_cols, upto(in.rows), upto(in.cols)};
      expect_twins(size, {upto(3), upto(3), upto(in.kernel_rows), upto(in.kernel_cols), round % 4});
    }
    expect_twins({31, 60, 6, 3, 15, 60}, {2, 1, 4, 1, SIG_BOUNDARY_REFLECT});
    constexpr std::int32_t farthest = std::numeric_limits<std::int32_t>::max();
    for (const std::int32_t boundary : {0, 1, 3})  // the twin would fold too often
      expect_twins({4, 5, 2, 3, 4, 5}, {farthest, farthest - 1, 1, 2, boundary});
  });
}

TEST(Correlate, StopsAtTheRowOfAPollAndCostsTheColumnsOfTheInput) {
  each_form<sigu8_correlate, sigdbl_correlate, sigcpx_correlate, sigu8_convolve, sigdbl_convolve>(
      []<auto form> {
        using M = record_of<form>;
        const auto in = matrix<M>::random(18, 30, 1);
        const auto kernel = matrix<M>::random(5, 3, 2);
        matrix<M> out(9, 20);
        const double cost = 5.0 * 3.0 * 30.0 * (std::is_same_v<M, _cpx_mat> ? 8.0 : 4.0);
        const auto run = [&](void* intrp_ptr, M& to) {
          return call<M>(form, in, kernel, {2, 1, 3, 2, 0}, intrp_ptr, to);
        };
        expect_tallies([&](void* intrp_ptr) { return run(intrp_ptr, out); }, steps_of(9, cost));

        const threshold every_third_row(2.5 * cost);
        fake_host host(2);  // after the first row and the third
        matrix<M> stopped(9, 20, as_element<element<M>>(77));
        EXPECT_EQ(run(host.intrp_ptr(), stopped), KORVO_ERR_INTERRUPT);
        EXPECT_EQ(run(nullptr, out), KORVO_ERR_OK);
        for (std::int32_t i = 0; i < out.nelem; ++i)
          ASSERT_EQ(stopped.data[i], i < 3 * 20 ? out.data[i] : as_element<element<M>>(77)) << i;
      });
}

TEST(Correlate, RefusesInOrder) {
  each_form<sigu8_correlate, sigu16_correlate, sigu32_correlate, sigs32_correlate, sigdbl_correlate,
            sigcpx_correlate, sigu8_convolve, sigu16_convolve, sigu32_convolve, sigs32_convolve,
            sigdbl_convolve, sigcpx_convolve>([]<auto form> {
    using M = record_of<form>;
    const auto seven = as_element<element<M>>(7);
    const auto in = matrix<M>::random(4, 5, 1);
    const auto kernel = matrix<M>::random(3, 3, 2);
    const auto one = matrix<M>::random(1, 1, 3);
    matrix<M> out(4, 5, seven);
    const M broken = {4, 5, 19, out.data};
    const M larger_in = {4, 6, 24, in.data};
    const M same_in = in;
    const auto run = [&](const M* k, std::int32_t step, std::int32_t origin, std::int32_t boundary, M to) {
      return form(&in, k, 1, step, 1, origin, boundary, nullptr, &to);
    };
    EXPECT_EQ(form(&in, &kernel, 0, 1, 1, 1, 0, nullptr, nullptr), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(run(nullptr, 0, 1, 0, larger_in), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(run(&kernel, 0, 1, 0, broken), KORVO_ERR_ILLEGAL_SIZE);
    EXPECT_EQ(run(&kernel, 0, 1, 0, larger_in), KORVO_ERR_ILLEGAL_SIZE);
    EXPECT_EQ(run(&kernel, 0, 1, 0, same_in), KORVO_ERR_ILLEGAL_ADDRESS);
    EXPECT_EQ(run(&one, 0, 1, 0, one), KORVO_ERR_ILLEGAL_ADDRESS);
    for (const std::int32_t value : {std::numeric_limits<std::int32_t>::min(), -1, 0}) {
      EXPECT_EQ(run(&kernel, value, 1, 9, out), KORVO_ERR_ILLEGAL_VALUE);
      EXPECT_EQ(run(&kernel, 1, value, 9, out), KORVO_ERR_ILLEGAL_VALUE);
    }
    EXPECT_EQ(run(&kernel, 1, 4, 9, out), KORVO_ERR_ILLEGAL_VALUE);
    EXPECT_EQ(form(&in, &kernel, 1, 1, 4, 1, 9, nullptr, &out), KORVO_ERR_ILLEGAL_VALUE);
    EXPECT_EQ(form(&in, &kernel, 0, 1, 1, 1, 9, nullptr, &out), KORVO_ERR_ILLEGAL_VALUE);
    EXPECT_EQ(form(&in, &kernel, 1, 1, 0, 1, 9, nullptr, &out), KORVO_ERR_ILLEGAL_VALUE);
    EXPECT_EQ(out(0, 0), seven);
    for (const std::int32_t boundary : {-1, 4}) {  // noticed when the first sum has been begun
      out(0, 0) = seven;
      EXPECT_EQ(run(&kernel, 1, 1, boundary, out), KORVO_ERR_ILLEGAL_VALUE);
      EXPECT_EQ(out(0, 0), element<M>{});
      EXPECT_EQ(out(0, 1), seven);
    }
  });
  // The complex convolution looks at its kernel before all else, and then at the one it was given.
  const cpx_matrix kernel(3, 3);
  const _cpx_mat bad_kernel = {0, 3, 0, kernel.data};
  EXPECT_EQ(sigcpx_correlate(nullptr, &bad_kernel, 1, 1, 1, 1, 0, nullptr, nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(sigcpx_convolve(nullptr, &bad_kernel, 1, 1, 1, 1, 0, nullptr, nullptr), KORVO_ERR_ILLEGAL_SIZE);
}

TEST(Correlate, PlacesTheKernelByItsOrigin) {
  const dbl_matrix in(1, 4, {1, 2, 3, 4});
  const dbl_matrix kernel(1, 3, {1, 10, 100});
  const auto run = [&](auto form, std::int32_t origin, std::int32_t boundary, std::int32_t step = 1) {
    dbl_matrix out(1, 4);
    EXPECT_EQ(call<_dbl_mat>(form, in, kernel, {1, step, 1, origin, boundary}, nullptr, out), KORVO_ERR_OK);
    return out.elements();
  };
  using row = std::vector<double>;
  EXPECT_EQ(run(sigdbl_correlate, 3, SIG_BOUNDARY_ZERO), (row{321, 432, 43, 4}));
  EXPECT_EQ(run(sigdbl_correlate, 1, SIG_BOUNDARY_ZERO), (row{100, 210, 321, 432}));
  EXPECT_EQ(run(sigdbl_convolve, 3, SIG_BOUNDARY_ZERO), (row{123, 234, 340, 400}));
  EXPECT_EQ(run(sigdbl_correlate, 3, SIG_BOUNDARY_PERIODIC), (row{321, 432, 143, 214}));
  EXPECT_EQ(run(sigdbl_correlate, 3, SIG_BOUNDARY_REFLECT), (row{321, 432, 443, 344}));
  EXPECT_EQ(run(sigdbl_correlate, 3, SIG_BOUNDARY_CONTINUE), (row{321, 432, 443, 444}));
  EXPECT_EQ(run(sigdbl_correlate, 3, SIG_BOUNDARY_ZERO, 3), (row{321, 4, 0, 0}));

  const cpx_matrix a(1, 1, korvo_dcomplex{1, 2});
  const cpx_matrix b(1, 1, korvo_dcomplex{3, 4});
  cpx_matrix product(1, 1);
  EXPECT_EQ(call<_cpx_mat>(sigcpx_correlate, a, b, {}, nullptr, product), KORVO_ERR_OK);
  EXPECT_EQ(product(0, 0), (korvo_dcomplex{-5, 10}));  // nothing is conjugated
}

TEST(Correlate, MultipliesTheZerosOutsideToo) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  each_level([] {
    const dbl_matrix in(3, 100, -0.0);
    dbl_matrix kernel(3, 3);
    dbl_matrix out(3, 100, 7.0);
    EXPECT_EQ(call<_dbl_mat>(sigdbl_correlate, in, dbl_matrix(1, 1, 1.0), {}, nullptr, out), KORVO_ERR_OK);
    for (const double x : out.elements()) EXPECT_TRUE(x == 0.0 && !std::signbit(x));  // sums begin at 0
    kernel(0, 1) = infinity;
    const dbl_matrix ones(3, 100, 1.0);
    EXPECT_EQ(call<_dbl_mat>(sigdbl_correlate, ones, kernel, {1, 1, 2, 2, 0}, nullptr, out), KORVO_ERR_OK);
    for (std::int32_t j = 0; j < 100; ++j)
      EXPECT_TRUE(std::isnan(out(0, j)) && out(1, j) == infinity && out(2, j) == infinity) << j;
  });
}

TEST(BoundaryRules, FoldAnyIndex) {
  constexpr std::int64_t far = std::int64_t{1} << 62;
  for (const std::int32_t boundary : {0, 1, 2, 3})
    for (std::int64_t n = 1; n < 5; ++n)
      for (std::int64_t r = -30; r < 30; ++r) {
        const std::int64_t stated = reference::index(r, n, boundary);
        EXPECT_EQ(rule_of(boundary)(r, n), stated < 0 || stated >= n ? -1 : stated);
      }
  EXPECT_EQ(mirror(far, 3), far % 6 < 3 ? far % 6 : 5 - far % 6);
  EXPECT_EQ(repeat(-far, 3), 3 - far % 3);
  const u8_matrix mat(2, 2, {1, 2, 3, 4});
  EXPECT_EQ(sample<_u8_mat>(mat, rule_of(SIG_BOUNDARY_CONTINUE), -5, 9), 2);
  EXPECT_EQ(sample<_u8_mat>(mat, rule_of(SIG_BOUNDARY_ZERO), 1, 2), 0);
}

TEST(UniversalCorrelate, BringsBothOperandsToTheTypeOfTheResult) {
  const u8_matrix bytes(2, 3, {1, 2, 3, 4, 5, 6});
  const dbl_matrix half(1, 1, 0.5);
  const s32_matrix thousand(1, 1, 1000);
  const auto both = [](const _univ_mat& in, const _univ_mat& kernel, _univ_mat out) {
    const _korvo_errcode result = siguniv_correlate(&in, &kernel, 1, 1, 1, 1, 0, nullptr, &out);
    EXPECT_EQ(siguniv_convolve(&in, &kernel, 1, 1, 1, 1, 0, nullptr, &out), result);
    return result;
  };
  each_record(records<_u16_mat, _u32_mat, _s32_mat, _dbl_mat, _cpx_mat>{}, [&]<class M> {
    const bool real = !std::is_same_v<M, _cpx_mat>;  // a byte has no cast to cpx
    const auto three = matrix<M>(1, 1, as_element<element<M>>(3));
    matrix<M> out(2, 3);
    EXPECT_EQ(both(bytes.universal(), three.universal(), out.universal()),
              real ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_TYPE);
    if constexpr (real) {
      EXPECT_EQ(out(1, 2), element<M>{18});
      EXPECT_EQ(both(bytes.universal(), half.universal(), out.universal()),
                is_floating(tag<M>::type) ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_TYPE);
    }
  });
  EXPECT_EQ(both(bytes.universal(), thousand.universal(), u8_matrix(2, 3).universal()), KORVO_ERR_OVERFLOW);
  EXPECT_EQ(both(bytes.universal(), bytes.universal(), s16_matrix(2, 3).universal()), KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(both(half.universal(), half.universal(), flt_matrix(1, 1).universal()), KORVO_ERR_ILLEGAL_TYPE);
  _univ_mat out = bytes.universal();
  EXPECT_EQ(both(out, bytes.universal(), out), KORVO_ERR_ILLEGAL_ADDRESS);
  EXPECT_EQ(siguniv_correlate(nullptr, &out, 0, 1, 1, 1, 0, nullptr, &out), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(siguniv_convolve(&out, &out, 0, 1, 1, 1, 0, nullptr, nullptr), KORVO_ERR_NULL_POINTER);
}

// Two members of one row each under a kernel of two, and their parameters.
class SetCorrelate : public testing::Test {
 protected:
  _korvo_errcode run(decltype(&sigset_correlate) form, const _s32_mat* origins) {
    _mat_set in = {1, &count, 2, samples};
    _mat_set kernel = {1, &count, 2, taps};
    _mat_set out = {1, &out_count, out_count, results};
    return form(&in, &kernel, row_step, &steps, &steps, origins, 0, nullptr, &out);
  }
  u8_matrix first{1, 2, {1, 2}};
  dbl_matrix second{1, 2, {3, 4}};
  u8_matrix kernel_of_first{1, 2, {1, 10}};
  dbl_matrix first_out{1, 2};
  dbl_matrix second_out{1, 2};
  std::int32_t count = 2;
  std::int32_t out_count = 2;
  _univ_mat samples[2] = {first.universal(), second.universal()};
  _univ_mat taps[2] = {kernel_of_first.universal(), kernel_of_first.universal()};
  _univ_mat results[2] = {first_out.universal(), second_out.universal()};
  s32_matrix steps{1, 2, {1, 1}};
  const _s32_mat* row_step = &steps;
  s32_matrix col_origin{2, 1, {2, 1}};
  using row = std::vector<double>;
};

TEST_F(SetCorrelate, GivesEachMemberItsParameters) {
  EXPECT_EQ(run(sigset_correlate, &col_origin), KORVO_ERR_OK);
  EXPECT_EQ(first_out.elements(), (row{21, 2}));
  EXPECT_EQ(second_out.elements(), (row{30, 43}));
  EXPECT_EQ(run(sigset_convolve, &col_origin), KORVO_ERR_OK);
  EXPECT_EQ(first_out.elements(), (row{12, 20}));
  EXPECT_EQ(second_out.elements(), (row{3, 34}));
}

TEST_F(SetCorrelate, ChecksColumnOriginsInConvolutionOnly) {
  const s32_matrix one_origin(1, 1, 2);
  const _s32_mat no_data = {1, 2, 2, nullptr};
  EXPECT_EQ(run(sigset_convolve, nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(run(sigset_convolve, &one_origin), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(first_out.elements(), (row{0, 0}));
  EXPECT_EQ(run(sigset_correlate, nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(run(sigset_correlate, &no_data), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(run(sigset_correlate, &one_origin), KORVO_ERR_OUT_OF_BOUNDS);
  EXPECT_EQ(first_out.elements(), (row{21, 2}));  // done before the second member failed
  row_step = &one_origin;
  EXPECT_EQ(run(sigset_correlate, &col_origin), KORVO_ERR_ILLEGAL_SIZE);
  row_step = &steps;
  out_count = 1;
  EXPECT_EQ(run(sigset_correlate, nullptr), KORVO_ERR_ILLEGAL_SIZE);
  count = 3;
  EXPECT_EQ(run(sigset_correlate, nullptr), KORVO_ERR_ILLEGAL_VALUE);
}

}  // namespace

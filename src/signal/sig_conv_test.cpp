#include "korvos/signal/sig_conv.h"

#include <random>

#include "tests/reference/correlate.hpp"
#include "tests/support/all.hpp"

namespace {

using namespace korvo;
using reference::placement;

#define FORMS(op) sigu8_##op, sigu16_##op, sigu32_##op, sigs32_##op, sigdbl_##op, sigcpx_##op

template <class M, class Form>
_korvo_errcode call(Form form, const M* in, const M* kernel, const placement& at, void* host, M* out) {
  return form(in, kernel, at.row_step, at.col_step, at.row_origin, at.col_origin, at.boundary, host, out);
}

// Integers over their whole range, so that sums wrap; fractions that round, so that their order shows.
template <class M>
matrix<M> numbers(std::int32_t rows, std::int32_t cols, unsigned seed) {
  using limits = std::numeric_limits<element<M>>;
  if constexpr (limits::is_integer) return matrix<M>::random(rows, cols, seed, limits::min(), limits::max());
  return matrix<M>::random(rows, cols, seed, -20.0 / 3.0, 20.0);
}

using shapes = std::array<std::int32_t, 6>;  // of the input, the kernel, and the result

void expect_twins(const shapes& size, const placement& at) {
  int form_number = 0;
  each_form<FORMS(correlate), FORMS(convolve)>([&]<auto form> {
    using M = record_of<form>;
    const auto in = numbers<M>(size[0], size[1], 1), kernel = numbers<M>(size[2], size[3], 2);
    fenced<M> out(size[4], size[5]);
    matrix<M> twin(size[4], size[5]);
    reference::correlate<M>(in, kernel, at, form_number++ >= 6, twin);
    EXPECT_EQ(call<M>(form, &in, &kernel, at, nullptr, &out), KORVO_ERR_OK);
    EXPECT_TRUE(out.fences_stand());
    EXPECT_TRUE(same_bits<M>(out, twin))
        << form_number << ": " << testing::PrintToString(size) << ", " << at.col_step << ", " << at.boundary;
  });
}

TEST(Correlate, SumsInOrderForEachFormAtEachLevel) {
  constexpr shapes sizes[] = {{1, 1, 3, 4, 1, 1},       {3, 5, 9, 11, 3, 5},    {1, 90, 1, 7, 1, 90},
                              {90, 1, 7, 1, 80, 1},     {14, 90, 7, 5, 14, 90}, {13, 75, 6, 3, 13, 71},
                              {11, 290, 5, 1, 11, 290}, {9, 70, 1, 5, 9, 70},   {2, 40, 3, 70, 2, 33}};
  const dbl_matrix ones(3, 90, 1.0), infinite(2, 1, HUGE_VAL);
  dbl_matrix out(3, 90);
  std::mt19937 engine(7);
  const auto upto = [&](std::int32_t n) { return 1 + static_cast<std::int32_t>(engine() % 997) % n; };
  each_level([&] {
    for (const std::int32_t mode : {0, 1, 2, 3}) {
      for (const shapes& size : sizes) expect_twins(size, {1, 1, (size[2] + 1) / 2, (size[3] + 1) / 2, mode});
      for (int round = 0; round < 15; ++round) {
        const shapes in = {upto(31), upto(80), upto(9), upto(20)};
        expect_twins({in[0], in[1], in[2], in[3], upto(in[0]), upto(in[1])},
                     {upto(3), upto(3), upto(in[2]), upto(in[3]), mode});
      }
      for (const std::int32_t n : {1, 2, 3, 5})  // folded from far
        expect_twins({n, 6 - n, 2, 3, n, 6 - n}, {INT32_MAX, INT32_MAX - 1, 1, 2, mode});
    }
    EXPECT_EQ(call<_dbl_mat>(sigdbl_correlate, &ones, &infinite, {}, nullptr, &out), KORVO_ERR_OK);
    EXPECT_TRUE(std::isnan(out(0, 45)) && std::isinf(out(1, 45)));  // the zeros outside are multiplied too
  });
}

TEST(Correlate, StopsAtTheRowOfAPollAndCostsTheColumnsOfTheInput) {
  each_form<sigu8_correlate, sigcpx_correlate, sigdbl_convolve>([]<auto form> {
    using M = record_of<form>;
    const auto in = matrix<M>::random(18, 30, 1), kernel = matrix<M>::random(5, 3, 2);
    matrix<M> out(9, 20), stopped(9, 20), expected(9, 20);
    const double cost = 5.0 * 3.0 * 30.0 * (std::is_same_v<M, _cpx_mat> ? 8.0 : 4.0);
    const auto run = [&](void* host, M* to) { return call<M>(form, &in, &kernel, {2, 1, 3, 2, 0}, host, to); };
    expect_tallies([&](void* host) { return run(host, &out); }, steps_of(9, cost));
    const threshold every_third_row(2.5 * cost);
    fake_host host(2);  // after the first row and the third
    EXPECT_EQ(run(host.intrp_ptr(), &stopped), KORVO_ERR_INTERRUPT);
    std::copy_n(out.data, 3 * 20, expected.data);
    EXPECT_EQ(stopped.elements(), expected.elements());
  });
}

TEST(Correlate, BeginsTheFirstSumBeforeItFindsAnUnknownBoundary) {
  each_form<FORMS(correlate), FORMS(convolve)>([]<auto form> {
    using M = record_of<form>;
    const auto seven = as_element<element<M>>(7);
    matrix<M> in(4, 5), kernel(3, 2), out(4, 5);
    constexpr placement wrong[] = {{0, 1, 1, 1, 9}, {1, 1, INT32_MIN, 1, 9}, {1, 1, 4, 1, 9},
                                   {1, 1, 1, 3, 9}, {1, 1, 3, 2, -1},        {1, 1, 1, 1, 4}};
    for (const placement& at : wrong) {
      out(0, 0) = out(0, 1) = seven;
      EXPECT_EQ(call<M>(form, &in, &kernel, at, nullptr, &out), KORVO_ERR_ILLEGAL_VALUE);
      EXPECT_EQ(out(0, 0), at.boundary == 9 ? seven : element<M>{});
      EXPECT_EQ(out(0, 1), seven);
    }
  });
  // The complex convolution looks at its kernel before all else.
  korvo_dcomplex element{};
  const _cpx_mat no_rows = {0, 3, 0, &element};
  EXPECT_EQ(call<_cpx_mat>(sigcpx_convolve, nullptr, &no_rows, {}, nullptr, nullptr), KORVO_ERR_ILLEGAL_SIZE);
}

TEST(UniversalCorrelate, BringsBothOperandsToTheTypeOfTheResult) {
  const u8_matrix bytes(2, 3, {1, 2, 3, 4, 5, 6});
  const auto expect = [&](_korvo_errcode expected, const auto& kernel, const auto& out) {
    const _univ_mat in = bytes.universal(), taps = kernel.universal();
    _univ_mat to = out.universal();
    for (const auto form : {siguniv_correlate, siguniv_convolve})
      EXPECT_EQ(call<_univ_mat>(form, &in, &taps, {}, nullptr, &to), expected);
  };
  each_record(records<_u8_mat, _u16_mat, _u32_mat, _s32_mat, _dbl_mat>{}, [&]<class M> {
    const matrix<M> out(2, 3);
    expect(KORVO_ERR_OK, s32_matrix(1, 1, 3), out);
    EXPECT_EQ(out(1, 2), element<M>{18});
  });
  expect(KORVO_ERR_ILLEGAL_TYPE, u8_matrix(1, 1), cpx_matrix(2, 3));  // a byte has no cast to cpx
  expect(KORVO_ERR_ILLEGAL_TYPE, u8_matrix(1, 1), flt_matrix(2, 3));
  expect(KORVO_ERR_OVERFLOW, s32_matrix(1, 1, 1000), u8_matrix(2, 3));
}

// Two members, the rows of these matrices, each with its column origin.
TEST(SetCorrelate, ChecksColumnOriginsInConvolutionOnly) {
  const u8_matrix in(2, 2, {1, 2, 3, 4}), kernel(1, 2, {1, 10});
  const dbl_matrix out(2, 2);
  const s32_matrix ones(1, 2, 1), origins(2, 1, {2, 1}), one(1, 1, 2);
  _univ_mat samples[] = {{1, 2, 2, in.data, KORVO_UINT8}, {1, 2, 2, in.data + 2, KORVO_UINT8}};
  _univ_mat taps[] = {kernel.universal(), kernel.universal()};
  _univ_mat results[] = {{1, 2, 2, out.data, KORVO_DOUBLE}, {1, 2, 2, out.data + 2, KORVO_DOUBLE}};
  std::int32_t two = 2;
  const _mat_set in_set = {1, &two, 2, samples}, taps_set = {1, &two, 2, taps};
  const auto expect = [&](auto expected, auto form, auto row_step, auto origin, std::vector<double> left) {
    _mat_set out_set = {1, &two, 2, results};
    std::fill_n(out.data, 4, 0.0);
    EXPECT_EQ(form(&in_set, &taps_set, row_step, &ones, &ones, origin, 0, nullptr, &out_set), expected);
    EXPECT_EQ(out.elements(), left);
  };
  expect(KORVO_ERR_OK, sigset_convolve, &ones, &origins, {12, 20, 3, 34});
  expect(KORVO_ERR_OK, sigset_correlate, &ones, &origins, {21, 2, 30, 43});
  expect(KORVO_ERR_NULL_POINTER, sigset_convolve, &one, nullptr, {0, 0, 0, 0});
  expect(KORVO_ERR_ILLEGAL_SIZE, sigset_convolve, &ones, &one, {0, 0, 0, 0});
  expect(KORVO_ERR_ILLEGAL_SIZE, sigset_correlate, &one, nullptr, {0, 0, 0, 0});
  expect(KORVO_ERR_NULL_POINTER, sigset_correlate, &ones, nullptr, {0, 0, 0, 0});
  expect(KORVO_ERR_OUT_OF_BOUNDS, sigset_correlate, &ones, &one, {21, 2, 0, 0});  // the second member fails
}

}  // namespace

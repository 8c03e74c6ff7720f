#include "korvos/matrix/mat_arit.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>

#include "tests/support/costs.hpp"
#include "tests/support/fenced.hpp"
#include "tests/support/forms.hpp"
#include "tests/support/heap.hpp"
#include "tests/support/levels.hpp"

namespace {

using namespace korvo;

// Integers over their whole range; floating numbers with unusual ones among them.
template <class M>
void fill(M& mat, unsigned seed) {
  using T = element<M>;
  using limits = std::numeric_limits<T>;
  std::mt19937 engine(seed);
  for (std::int32_t i = 0; i < mat.nelem; ++i) {
    const auto bits = static_cast<std::uint32_t>(engine());
    if constexpr (limits::is_integer)
      mat.data[i] = static_cast<T>(bits);
    else if (bits % 16 == 0)
      mat.data[i] = std::array{T(-0.0), limits::denorm_min(), limits::epsilon()}[bits / 16 % 3];
    else if (bits % 1001 == 0)
      mat.data[i] = limits::infinity();  // rarely, since sums over them say little
    else
      mat.data[i] = static_cast<T>(bits / 3e9 - 0.5);
  }
}

// Arithmetic as the element types have it, integers through 64 bits.
template <class T, class F>
T plainly(F f, T x, T y) {
  if constexpr (std::is_integral_v<T>)
    return static_cast<T>(f(static_cast<std::uint64_t>(x), static_cast<std::uint64_t>(y)));
  else
    return f(x, y);
}

// All bits, but any NaN for a NaN.
template <class M>
void expect_bits(const M& out, const std::vector<element<M>>& expected) {
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const auto x = out.data[i];
    ASSERT_TRUE((x != x && expected[i] != expected[i]) || std::memcmp(&x, &expected[i], sizeof x) == 0)
        << "element " << i << " is " << +x << " and should be " << +expected[i];
  }
}

// A form with two operands or with a scalar, the result apart from them, or one of them, or all the same.
template <auto form, class F>
void expect_plain(F f, std::int32_t n, int shared) {
  using M = record_of<form>;
  constexpr bool scalar = std::is_invocable_v<decltype(form), const M*, element<M>, void*, M*>;
  fenced<M> x(1, n);
  fenced<M> y(1, n);
  fenced<M> z(1, n);
  fill(x, 1);
  fill(y, static_cast<unsigned>(n));
  const M& b = shared == 3 ? x : y;
  M& out = shared == 0 ? z : shared == 2 ? y : x;
  std::vector<element<M>> expected;
  for (std::int32_t i = 0; i < n; ++i) expected.push_back(plainly(f, x.data[i], b.data[scalar ? 0 : i]));
  if constexpr (scalar)
    EXPECT_EQ(form(&x, b.data[0], nullptr, &out), KORVO_ERR_OK);
  else
    EXPECT_EQ(form(&x, &b, nullptr, &out), KORVO_ERR_OK);
  expect_bits(out, expected);
  EXPECT_TRUE(x.fences_stand() && y.fences_stand() && z.fences_stand());
}

template <auto... forms, class F>
void expect_plain_loops(F f) {
  each_level([&] {
    for (const std::int32_t n : {1, 2, 3, 7, 8, 9, 15, 16, 17, 31, 33, 63, 64, 65, 130})
      for (const int shared : {0, 1, 2, 3}) (expect_plain<forms>(f, n, shared), ...);
  });
}

constexpr auto plus = [](auto x, auto y) { return x + y; };
constexpr auto minus = [](auto x, auto y) { return x - y; };
constexpr auto product = [](auto x, auto y) { return x * y; };

TEST(ElementWise, IsThePlainLoopAtEachLevel) {
  expect_plain_loops<matu8_add, matu16_add, matu32_add, mats16_add, mats32_add, matflt_add, matdbl_add,
                     matu8_add_scalar, matu16_add_scalar, matu32_add_scalar, mats16_add_scalar,
                     mats32_add_scalar, matflt_add_scalar, matdbl_add_scalar>(plus);
  expect_plain_loops<matu8_subtract, matu16_subtract, matu32_subtract, mats16_subtract, mats32_subtract,
                     matflt_subtract, matdbl_subtract>(minus);
  expect_plain_loops<matu8_multiply_elem, matu16_multiply_elem, matu32_multiply_elem, mats16_multiply_elem,
                     mats32_multiply_elem, matflt_multiply_elem, matdbl_multiply_elem, matu8_multiply_scalar,
                     matu16_multiply_scalar, matu32_multiply_scalar, mats16_multiply_scalar,
                     mats32_multiply_scalar, matflt_multiply_scalar, matdbl_multiply_scalar>(product);
}

TEST(Abs, NegatesWhatIsBelowZeroInTheWidth) {
  each_form<mats16_abs, mats32_abs, matflt_abs, matdbl_abs>([]<auto abs> {
    using T = element<record_of<abs>>;
    const T lowest = std::is_integral_v<T> ? std::numeric_limits<T>::min() : T(-0.0);  // both stay as they are
    matrix<record_of<abs>> mat(1, 5, {-3, 4, 0, -1, 1});
    mat(0, 4) = lowest;
    EXPECT_EQ(abs(&mat, nullptr, &mat), KORVO_ERR_OK);
    expect_bits(mat, {T(3), T(4), T(0), T(1), lowest});
  });
}

TEST(Multiply, SumsInOrderInTheElementAtEachLevel) {
  constexpr int shapes[][3] = {{1, 1, 1},    {1, 2, 1},    {3, 5, 4},  {17, 9, 33},
                               {33, 65, 40}, {5, 100, 71}, {50, 1, 50}};
  each_level([&] {
    each_form<matu8_multiply, matu16_multiply, matu32_multiply, mats16_multiply, mats32_multiply,
              matflt_multiply, matdbl_multiply>([&]<auto multiply> {
      using M = record_of<multiply>;
      using T = element<M>;
      for (const auto& [rows, inner, cols] : shapes) {
        fenced<M> a(rows, inner);
        fenced<M> b(inner, cols);
        fenced<M> out(rows, cols);
        fill(a, 3);
        fill(b, 4);
        std::vector<T> expected;
        for (int i = 0; i < rows; ++i)
          for (int j = 0; j < cols; ++j) {
            T sum{};
            for (int k = 0; k < inner; ++k)
              sum = plainly(plus, sum, plainly(product, a.data[i * inner + k], b.data[k * cols + j]));
            expected.push_back(sum);
          }
        EXPECT_EQ(multiply(&a, &b, nullptr, &out), KORVO_ERR_OK);
        expect_bits(out, expected);
        EXPECT_TRUE(out.fences_stand());
      }
    });
  });
}

TEST(Multiply, RefusesInOrderAndStopsAfterARow) {
  u8_matrix a(2, 3, 1);
  u8_matrix b(3, 4, 1);
  u8_matrix out(2, 4, 9);
  u8_matrix square(2, 2);
  u8_matrix other(2, 2);
  const _u8_mat no_data = {2, 3, 6, nullptr};
  _u8_mat no_rows = {0, 4, 0, nullptr};
  EXPECT_EQ(matu8_multiply(&no_data, &b, nullptr, &no_rows), KORVO_ERR_ILLEGAL_SIZE)
      << "out is validated first";
  EXPECT_EQ(matu8_multiply(&no_data, &no_rows, nullptr, &out), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matu8_multiply(&a, &a, nullptr, &a), KORVO_ERR_ILLEGAL_SIZE) << "sizes before addresses";
  EXPECT_EQ(matu8_multiply(&a, &b, nullptr, &b), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(matu8_multiply(&b, &b, nullptr, &out), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(matu8_multiply(&square, &other, nullptr, &square), KORVO_ERR_ILLEGAL_ADDRESS);
  EXPECT_EQ(matu8_multiply(&other, &square, nullptr, &square), KORVO_ERR_ILLEGAL_ADDRESS);
  fake_host host(1);
  EXPECT_EQ(matu8_multiply(&a, &b, host.intrp_ptr(), &out), KORVO_ERR_INTERRUPT);
  EXPECT_EQ(out.elements(), u8_matrix(2, 4, {3, 3, 3, 3, 9, 9, 9, 9}).elements());
  const u8_matrix tall(6, 3, 1);
  u8_matrix result(6, 4);
  expect_tallies([&](void* intrp_ptr) { return matu8_multiply(&tall, &b, intrp_ptr, &result); },
                 steps_of(6, 96.0));
}

TEST(ElementWise, ValidatesComparesShapesAndPollsOnceAfterTheWork) {
  s16_matrix a(2, 3, 1);
  s16_matrix out(2, 3);
  s16_matrix turned(3, 2);
  const _s16_mat no_data = {2, 3, 6, nullptr};
  _s16_mat no_rows = {0, 4, 0, nullptr};
  for (auto* const form : {&mats16_add, &mats16_subtract, &mats16_multiply_elem}) {
    EXPECT_EQ(form(&a, &no_data, nullptr, &no_rows), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(form(&a, &a, nullptr, &turned), KORVO_ERR_ILLEGAL_SIZE);
    EXPECT_EQ(form(&a, &turned, nullptr, &out), KORVO_ERR_ILLEGAL_SIZE);
  }
  EXPECT_EQ(mats16_add_scalar(&no_data, 1, nullptr, &no_rows), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(mats16_add_scalar(&a, 1, nullptr, &turned), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(mats16_abs(&no_data, nullptr, &no_rows), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(mats16_abs(&a, nullptr, &turned), KORVO_ERR_ILLEGAL_SIZE);
  fake_host host(1);
  EXPECT_EQ(mats16_add(&a, &a, host.intrp_ptr(), &out), KORVO_ERR_INTERRUPT);
  EXPECT_EQ(out.elements(), s16_matrix(2, 3, 2).elements()) << "complete all the same";
  expect_tallies([&](void* intrp_ptr) { return mats16_add(&a, &a, intrp_ptr, &out); }, {18.0});
  expect_tallies([&](void* intrp_ptr) { return mats16_add_scalar(&a, 2, intrp_ptr, &out); }, {18.0});
  expect_tallies([&](void* intrp_ptr) { return mats16_abs(&a, intrp_ptr, &out); }, {18.0});
  expect_tallies([&](void* intrp_ptr) { return mats16_rescale(&a, 2, 3, intrp_ptr, &out); }, {18.0});
}

TEST(Rescale, MapsTheRangeAndCutsTowardsZero) {
  each_form<matu8_rescale, matu16_rescale, matu32_rescale, mats16_rescale, mats32_rescale, matflt_rescale,
            matdbl_rescale>([]<auto rescale> {
    using M = record_of<rescale>;
    using limits = std::numeric_limits<element<M>>;
    using T = element<M>;
    const auto expect = [](matrix<M> mat, T low, T high, const matrix<M>& expected) {
      EXPECT_EQ(rescale(&mat, low, high, nullptr, &mat), KORVO_ERR_OK);
      EXPECT_EQ(mat.elements(), expected.elements());
    };
    expect({1, 4, {2, 7, 3, 12}}, T(10), T(15), {1, 4, {10, 12.5, 10.5, 15}});
    expect({2, 2, T(7)}, T(10), T(20), {2, 2, T(10)});
    matrix<M> whole(1, 2, limits::lowest());
    whole(0, 1) = limits::max();
    if (limits::digits == 53) return;  // there the difference overflows
    expect({1, 2, {0, 1}}, limits::lowest(), limits::max(), whole);
    expect(whole, T(0), T(100), {1, 2, {0, 100}});
  });
}

TEST(Rescale, RefusesInOrder) {
  const dbl_matrix in(2, 3);
  dbl_matrix out(2, 3);
  dbl_matrix turned(3, 2);
  const _dbl_mat no_data = {2, 3, 6, nullptr};
  _dbl_mat no_rows = {0, 4, 0, nullptr};
  fake_host host(1);
  EXPECT_EQ(matdbl_rescale(&no_data, 5, 4, nullptr, &no_rows), KORVO_ERR_ILLEGAL_SIZE)
      << "out is validated first";
  EXPECT_EQ(matdbl_rescale(&no_data, 5, 4, nullptr, &turned), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matdbl_rescale(&in, 5, 4, host.intrp_ptr(), &turned), KORVO_ERR_INTERRUPT)
      << "the poll of the range";
  EXPECT_EQ(matdbl_rescale(&in, 5, 4, nullptr, &turned), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(matdbl_rescale(&in, 5, 4, nullptr, &out), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(matdbl_rescale(&in, std::nan(""), 4, nullptr, &out), KORVO_ERR_ILLEGAL_VALUE);
}

TEST(UniversalPair, BringsOperandsToTheTypeOfTheResult) {
  u8_matrix bytes(2, 1, 3);
  s16_matrix shorts(2, 1, 5);
  s32_matrix ints(2, 1, 300);
  flt_matrix floats(2, 1, 0.5F);
  dbl_matrix doubles(2, 1, 7.0);
  cpx_matrix real(2, 1, korvo_dcomplex{2.0, 0.0});
  cpx_matrix complex(2, 1, korvo_dcomplex{2.0, 1.0});
  dbl_matrix result(2, 1);
  u8_matrix small(2, 1);
  _univ_mat u8 = bytes.universal(), s16 = shorts.universal(), s32 = ints.universal(), flt = floats.universal(),
            dbl = doubles.universal(), re = real.universal(), cpx = complex.universal();
  _univ_mat to_dbl = result.universal(), to_u8 = small.universal();
  _univ_mat reserved = {2, 1, 2, to_u8.data, KORVO_SINT8};
  struct {
    const _univ_mat &a, &b;
    _univ_mat& out;
    _korvo_errcode code;
    int temporaries;
    double sum;
  } const cases[] = {{u8, s16, to_dbl, KORVO_ERR_OK, 2, 8.0},
                     {dbl, flt, to_dbl, KORVO_ERR_OK, 1, 7.5},
                     {re, dbl, to_dbl, KORVO_ERR_OK, 1, 9.0},
                     {dbl, dbl, to_dbl, KORVO_ERR_OK, 0, 14.0},
                     {cpx, dbl, to_dbl, KORVO_ERR_OVERFLOW, 1, 14.0},
                     {s32, s32, to_u8, KORVO_ERR_OVERFLOW, 1, 14.0},
                     {s16, s32, to_u8, KORVO_ERR_OVERFLOW, 2, 14.0},
                     {dbl, s32, to_u8, KORVO_ERR_ILLEGAL_TYPE, 0, 14.0},
                     {s16, flt, to_u8, KORVO_ERR_ILLEGAL_TYPE, 1, 14.0},
                     {re, flt, flt, KORVO_ERR_ILLEGAL_TYPE, 1, 14.0},
                     {cpx, cpx, re, KORVO_ERR_ILLEGAL_TYPE, 0, 14.0},
                     {u8, cpx, re, KORVO_ERR_ILLEGAL_TYPE, 1, 14.0},
                     {u8, u8, reserved, KORVO_ERR_ILLEGAL_TYPE, 0, 14.0},
                     {reserved, reserved, reserved, KORVO_ERR_ILLEGAL_TYPE, 0, 14.0}};
  const int before = heap::live_blocks();
  for (const auto& call : cases) {
    heap::fail_never();
    EXPECT_EQ(matuniv_add(&call.a, &call.b, nullptr, &call.out), call.code) << &call - cases;
    EXPECT_EQ(heap::allocations(), call.temporaries) << &call - cases;
    EXPECT_EQ(heap::live_blocks(), before);
    EXPECT_EQ(result(1, 0), call.sum);
  }
  const double expected[] = {8.0, -2.0, 15.0, 15.0};
  const double* next = expected;
  const s16_matrix five(1, 1, 5);
  const _univ_mat scalar = five.universal();
  for (auto* const form : {&matuniv_add, &matuniv_subtract, &matuniv_multiply_elem, &matuniv_multiply}) {
    EXPECT_EQ(form(nullptr, &cpx, nullptr, &to_u8), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(form(&cpx, nullptr, nullptr, &to_u8), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(form(&cpx, &cpx, nullptr, nullptr), KORVO_ERR_NULL_POINTER);
    fake_host host;
    EXPECT_EQ(form(&u8, form == matuniv_multiply ? &scalar : &s16, host.intrp_ptr(), &to_dbl), KORVO_ERR_OK);
    EXPECT_EQ(result(1, 0), *next++);
    EXPECT_EQ(host.polls(), 3) << "one in each cast and one in the work";
  }
}

_univ_scalar s32_scalar(std::int32_t x) { return {_univ_value{.s32 = x}, KORVO_SINT32}; }

template <class M>
std::pair<_korvo_errcode, element<M>> added(const matrix<M>& a, _univ_scalar scalar) {
  matrix<M> sum(1, 1);
  const _univ_mat in = a.universal();
  _univ_mat out = sum.universal();
  const _korvo_errcode result = matuniv_add_scalar(&in, scalar, nullptr, &out);
  return {result, sum(0, 0)};
}

// A scalar of s32 to a result of M fits from low to high, and no further.
template <class M>
void expect_range(std::int32_t low, std::int32_t high) {
  const matrix<M> zero(1, 1);
  for (const std::int32_t x : {low, high})
    EXPECT_EQ(added(zero, s32_scalar(x)), std::pair(KORVO_ERR_OK, static_cast<element<M>>(x)));
  for (const std::int32_t x : {low - 1, high == INT32_MAX ? -1 : high + 1})
    EXPECT_EQ(added(zero, s32_scalar(x)), std::pair(KORVO_ERR_ILLEGAL_TYPE, element<M>{}));
}

TEST(UniversalScalar, IsAnIntegerThatFitsOrAnyNumberForFloatingResults) {
  expect_range<_u8_mat>(0, 255);
  expect_range<_u16_mat>(0, 65535);
  expect_range<_u32_mat>(0, INT32_MAX);
  expect_range<_s16_mat>(-32767, 32767);
  const _univ_scalar one = {_univ_value{.dbl = 1.0}, KORVO_DOUBLE};
  const _univ_scalar complex = {_univ_value{.cpx = {1, 0}}, KORVO_DCOMPLEX};
  const _univ_scalar large = {_univ_value{.u32 = 0x80000000}, KORVO_UINT32};
  const _univ_scalar lowest = {_univ_value{.s16 = -32768}, KORVO_SINT16};
  EXPECT_EQ(added(s32_matrix(1, 1), large).first, KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(added(u8_matrix(1, 1), one).first, KORVO_ERR_ILLEGAL_TYPE) << "though the value fits";
  EXPECT_EQ(added(dbl_matrix(1, 1), complex).first, KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(added(cpx_matrix(1, 1), one).first, KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(added(dbl_matrix(1, 1), {_univ_value{}, static_cast<_korvo_type>(9)}).first,
            KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(added(dbl_matrix(1, 1, 0.5), {_univ_value{.u8 = 3}, KORVO_UINT8}), std::pair(KORVO_ERR_OK, 3.5));
  EXPECT_EQ(added(dbl_matrix(1, 1), {_univ_value{.flt = 0.1F}, KORVO_FLOAT}).second, double{0.1F});
  EXPECT_EQ(added(s16_matrix(1, 1), lowest).second, -32768) << "its own type is not tested";
  EXPECT_EQ(added(s32_matrix(1, 1), {_univ_value{.s8 = -5}, KORVO_SINT8}).second, -5);
  EXPECT_EQ(added(u8_matrix(1, 1), {_univ_value{.s8 = -5}, KORVO_SINT8}).first, KORVO_ERR_ILLEGAL_TYPE);
}

TEST(UniversalScalar, IsJudgedBeforeTheOperandIsBrought) {
  s32_matrix ints(1, 1, 300);
  u8_matrix bytes(1, 1, 3);
  dbl_matrix doubles(1, 1);
  _univ_mat s32 = ints.universal(), u8 = bytes.universal(), dbl = doubles.universal();
  for (auto* const form : {&matuniv_add_scalar, &matuniv_multiply_scalar}) {
    EXPECT_EQ(form(nullptr, s32_scalar(-2), nullptr, &u8), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(form(&s32, s32_scalar(-2), nullptr, nullptr), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(form(&s32, s32_scalar(-2), nullptr, &u8), KORVO_ERR_ILLEGAL_TYPE);
    EXPECT_EQ(form(&s32, s32_scalar(2), nullptr, &u8), KORVO_ERR_OVERFLOW);
    EXPECT_EQ(form(&dbl, s32_scalar(2), nullptr, &u8), KORVO_ERR_ILLEGAL_TYPE);
  }
  EXPECT_EQ(matuniv_multiply_scalar(&u8, s32_scalar(-2), nullptr, &dbl), KORVO_ERR_OK);
  EXPECT_EQ(doubles(0, 0), -6.0);
}

TEST(UniversalAbsAndRescale, TakeOneTypeOnly) {
  double data[] = {1.0, 0.0};
  double more[] = {7.0, 7.0};
  for (int type = -1; type <= 9; ++type) {
    const auto tagged = static_cast<_korvo_type>(type);
    const auto another = tagged == KORVO_FLOAT ? KORVO_DOUBLE : KORVO_FLOAT;
    const _korvo_errcode expected =
        type == 0 || (type >= 2 && type <= 7) ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_TYPE;
    const _univ_mat in = {1, 1, 1, data, tagged};
    _univ_mat out = {1, 1, 1, more, tagged};
    _univ_mat differs = {1, 1, 1, more, another};
    const _univ_scalar same = {_univ_value{.cpx = {0, 0}}, tagged};
    const _univ_scalar other = {_univ_value{.cpx = {0, 0}}, another};
    EXPECT_EQ(matuniv_rescale(&in, same, same, nullptr, &out), expected) << type;
    EXPECT_EQ(matuniv_rescale(&in, same, other, nullptr, &out), KORVO_ERR_ILLEGAL_TYPE);
    EXPECT_EQ(matuniv_rescale(&in, other, same, nullptr, &out), KORVO_ERR_ILLEGAL_TYPE);
    EXPECT_EQ(matuniv_rescale(&in, other, other, nullptr, &differs), KORVO_ERR_ILLEGAL_TYPE);
    EXPECT_EQ(matuniv_rescale(&in, same, same, nullptr, nullptr), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(matuniv_abs(&in, nullptr, &differs), KORVO_ERR_ILLEGAL_TYPE);
    EXPECT_EQ(matuniv_abs(nullptr, nullptr, &out), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(matuniv_abs(&in, nullptr, &out), expected) << type;
  }
  EXPECT_EQ(more[0], 1.0);
}

}  // namespace

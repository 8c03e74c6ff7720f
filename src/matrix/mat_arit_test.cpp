#include "korvos/matrix/mat_arit.h"

#include "korvos/matrix/mat_cast.h"
#include "tests/support/all.hpp"

namespace {

using namespace korvo;

// Integers over their whole range; floating numbers with unusual ones among them.
template <class M>
void fill(M& mat, unsigned seed) {
  using T = element<M>;
  using limits = std::numeric_limits<T>;
  const T unusual[] = {T(-0.0), limits::denorm_min(), limits::epsilon()};
  std::mt19937 engine(seed);
  for (std::int32_t i = 0; i < mat.nelem; ++i) {
    const auto bits = static_cast<std::uint32_t>(engine());
    mat.data[i] = static_cast<T>(limits::is_integer ? bits : bits / 3e9 - 0.5);
    if (!limits::is_integer && bits % 16 == 0) mat.data[i] = unusual[bits / 16 % 3];
  }
}

// Arithmetic as the element types have it, integers through 64 bits.
template <class T, class F>
T plainly(F f, T x, T y) {
  using wide = std::conditional_t<std::is_integral_v<T>, std::uint64_t, T>;
  return static_cast<T>(f(static_cast<wide>(x), static_cast<wide>(y)));
}

// A form with two operands or with a scalar, the result apart from them, or one of them, or all the same.
template <auto form, class F>
void expect_plain(F f, std::int32_t n, int shared) {
  using M = record_of<form>;
  constexpr bool scalar = std::is_invocable_v<decltype(form), const M*, element<M>, void*, M*>;
  fenced<M> x(1, n), y(1, n), z(1, n);
  fill(x, 1);
  fill(y, static_cast<unsigned>(n));
  const M& b = shared == 3 ? x : y;
  M& out = shared == 0 ? z : shared == 2 ? y : x;
  const matrix<M> expected(1, n);
  for (std::int32_t i = 0; i < n; ++i) expected.data[i] = plainly(f, x.data[i], b.data[scalar ? 0 : i]);
  if constexpr (scalar)
    EXPECT_EQ(form(&x, b.data[0], nullptr, &out), KORVO_ERR_OK);
  else
    EXPECT_EQ(form(&x, &b, nullptr, &out), KORVO_ERR_OK);
  EXPECT_TRUE(same_bits<M>(out, expected))
      << n << " elements of type " << tag<M>::type << ", shared " << shared;
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
  expect_plain_loops<REAL_FORMS(add), REAL_FORMS(add_scalar)>(plus);
  expect_plain_loops<REAL_FORMS(subtract)>(minus);
  expect_plain_loops<REAL_FORMS(multiply_elem), REAL_FORMS(multiply_scalar)>(product);
}

TEST(Abs, NegatesWhatIsBelowZeroInTheWidth) {
  each_form<mats16_abs, mats32_abs, matflt_abs, matdbl_abs>([]<auto abs> {
    using M = record_of<abs>;
    using T = element<M>;
    const matrix<M> mat(1, 4, {-3, 4, 0, 0}), expected(1, 4, {3, 4, 0, 0});
    mat(0, 3) = expected(0, 3) = std::is_integral_v<T> ? std::numeric_limits<T>::min() : T(-0.0);  // stay
    M same = mat;
    EXPECT_EQ(abs(&mat, nullptr, &same), KORVO_ERR_OK);
    EXPECT_TRUE(same_bits<M>(mat, expected));
  });
}

TEST(Multiply, SumsInOrderInTheElementAtEachLevel) {
  constexpr int shapes[][3] = {{1, 2, 1}, {17, 9, 33}, {33, 65, 40}, {5, 100, 71}, {50, 1, 50}};
  each_level([&] {
    each_form<REAL_FORMS(multiply)>([&]<auto multiply> {
      using M = record_of<multiply>;
      for (const auto& [rows, inner, cols] : shapes) {
        fenced<M> a(rows, inner), b(inner, cols), out(rows, cols);
        fill(a, 3);
        fill(b, 4);
        const matrix<M> expected(rows, cols);
        for (int i = 0; i < rows * cols * inner; ++i) {
          const int r = i / cols / inner, k = i / cols % inner, c = i % cols;
          const auto term = plainly(product, a.data[r * inner + k], b.data[k * cols + c]);
          expected(r, c) = plainly(plus, expected(r, c), term);
        }
        EXPECT_EQ(multiply(&a, &b, nullptr, &out), KORVO_ERR_OK);
        EXPECT_TRUE(same_bits<M>(out, expected) && out.fences_stand()) << rows << " of type " << tag<M>::type;
      }
    });
  });
}

TEST(Multiply, StopsAfterARow) {
  const u8_matrix a(2, 3, 1), b(3, 4, 1);
  u8_matrix out(2, 4, 9);
  fake_host host(1);
  EXPECT_EQ(matu8_multiply(&a, &b, host.intrp_ptr(), &out), KORVO_ERR_INTERRUPT);
  EXPECT_EQ(out.elements(), u8_matrix(2, 4, {3, 3, 3, 3, 9, 9, 9, 9}).elements());
  expect_tallies([&](void* intrp_ptr) { return matu8_multiply(&a, &b, intrp_ptr, &out); }, {96.0, 192.0});
}

TEST(ElementWise, ValidatesComparesShapesAndPollsOnceAfterTheWork) {
  s16_matrix a(2, 3, 1), out(2, 3), turned(3, 2);
  fake_host host(1);
  EXPECT_EQ(mats16_add(&a, &a, host.intrp_ptr(), &out), KORVO_ERR_INTERRUPT);
  EXPECT_EQ(out.elements(), s16_matrix(2, 3, 2).elements()) << "complete all the same";
  EXPECT_EQ(mats16_rescale(&a, 2, 3, fake_host(1).intrp_ptr(), &turned), KORVO_ERR_INTERRUPT) << "of the range";
  expect_tallies([&](void* intrp_ptr) { return mats16_add(&a, &a, intrp_ptr, &out); }, {18.0});
  expect_tallies([&](void* intrp_ptr) { return mats16_rescale(&a, 2, 3, intrp_ptr, &out); }, {18.0});
}

TEST(Rescale, MapsTheRangeAndCutsTowardsZero) {
  each_form<REAL_FORMS(rescale)>([]<auto rescale> {
    using T = element<record_of<rescale>>;
    using limits = std::numeric_limits<T>;
    const auto expect = [](std::vector<T> in, T low, T high, const std::vector<T>& expected) {
      record_of<rescale> mat = {1, static_cast<int>(in.size()), static_cast<int>(in.size()), in.data()};
      EXPECT_EQ(rescale(&mat, low, high, nullptr, &mat), KORVO_ERR_OK);
      EXPECT_EQ(in, expected);
    };
    expect({2, 7, 3, 12}, 10, 15, {10, T(12.5), T(10.5), 15});
    expect({7, 7}, 10, 20, {10, 10});
    if (limits::digits == 53) return;  // there the difference overflows
    expect({0, 1}, limits::lowest(), limits::max(), {limits::lowest(), limits::max()});
    expect({limits::lowest(), limits::max()}, 0, 100, {0, 100});
  });
  dbl_matrix in(2, 3);
  EXPECT_EQ(matdbl_rescale(&in, std::nan(""), 4, nullptr, &in), KORVO_ERR_ILLEGAL_VALUE);
}

_korvo_errcode taken(bool good) { return good ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_TYPE; }
bool is_real(int type) { return type == KORVO_UINT8 || (type >= KORVO_UINT16 && type <= KORVO_DOUBLE); }

// A number as a matrix of any type, with room for the widest.
struct cell {
  cell(int type, double x) : mat{1, 1, 1, room, static_cast<_korvo_type>(type)} {
    const _univ_mat from = {1, 1, 1, &x, KORVO_DOUBLE};
    (void)matuniv_cast(&from, 0, nullptr, &mat);
  }
  double value() const {
    double x = 0.0;
    _univ_mat to = {1, 1, 1, &x, KORVO_DOUBLE};
    (void)matuniv_cast(&mat, 0, nullptr, &to);
    return x;
  }
  double room[2] = {};
  _univ_mat mat;
};

TEST(UniversalPair, BringsOperandsToTheTypeOfTheResult) {
  const auto brings = [](int from, int to) {
    return from == to || (is_real(from) && is_real(to) && (from < KORVO_FLOAT || to >= KORVO_FLOAT)) ||
           (from == KORVO_DCOMPLEX && to == KORVO_DOUBLE);
  };
  for (int i = 0; i < 729; ++i) {
    const int type = i % 9, left = i / 9 % 9, right = i / 81;
    const cell a(left, 7), b(right, 5);
    cell out(type, 9);
    fake_host host;
    const bool good = is_real(type) && brings(left, type) && brings(right, type);
    EXPECT_EQ(matuniv_subtract(&a.mat, &b.mat, host.intrp_ptr(), &out.mat), taken(good)) << i;
    EXPECT_TRUE(!is_real(type) || out.value() == (good ? 2 : 9)) << i;
    EXPECT_TRUE(!good || host.polls() == 1 + (left != type) + (right != type)) << i;
  }
  const cell s32(KORVO_SINT32, 300), dbl(KORVO_DOUBLE, 7);
  cell u8(KORVO_UINT8, 3);
  EXPECT_EQ(matuniv_add(&s32.mat, &dbl.mat, nullptr, &u8.mat), KORVO_ERR_OVERFLOW) << "the first operand first";
  EXPECT_EQ(matuniv_add(&dbl.mat, &s32.mat, nullptr, &u8.mat), KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(matuniv_add(&dbl.mat, nullptr, nullptr, &u8.mat), KORVO_ERR_NULL_POINTER);
}

TEST(UniversalScalar, IsAnIntegerThatFitsOrAnyNumberForFloatingResults) {
  const auto expect = [](_univ_scalar scalar, int type, bool fits, double x) {
    const cell in(type, 0);
    cell out(type, 0);
    EXPECT_EQ(matuniv_add_scalar(&in.mat, scalar, nullptr, &out.mat), taken(fits)) << x;
    EXPECT_EQ(out.value(), fits ? x : 0.0) << "in type " << type;
  };
  const auto s32 = [](std::int32_t x) { return _univ_scalar{_univ_value{.s32 = x}, KORVO_SINT32}; };
  for (const int x : {-32768, -32767, -1, 0, 255, 256, 32767, 32768, 65535, 65536, INT32_MAX})
    for (const auto& [type, low, high] : {std::tuple{KORVO_UINT8, 0, 255},
                                          {KORVO_UINT16, 0, 65535},
                                          {KORVO_UINT32, 0, INT32_MAX},
                                          {KORVO_SINT16, -32767, 32767},
                                          {KORVO_DOUBLE, INT32_MIN, INT32_MAX}})
      expect(s32(x), type, x >= low && x <= high, x);
  for (const int type : {KORVO_UINT8, KORVO_SINT32, KORVO_FLOAT, KORVO_DCOMPLEX})
    expect({_univ_value{.dbl = 1}, KORVO_DOUBLE}, type, type == KORVO_FLOAT, 1);  // though the value fits
  expect({_univ_value{.u32 = 0x80000000}, KORVO_UINT32}, KORVO_SINT32, false, 0);
  expect({_univ_value{.s16 = -32768}, KORVO_SINT16}, KORVO_SINT16, true, -32768);  // its own type: no test
  expect({_univ_value{.s8 = -5}, KORVO_SINT8}, KORVO_SINT32, true, -5);
  expect({_univ_value{.cpx = {1, 0}}, KORVO_DCOMPLEX}, KORVO_DOUBLE, false, 0);
  const cell wide(KORVO_SINT32, 300);
  cell u8(KORVO_UINT8, 3);  // the scalar before the operand
  EXPECT_EQ(matuniv_multiply_scalar(&wide.mat, s32(-2), nullptr, &u8.mat), KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(matuniv_multiply_scalar(&wide.mat, s32(2), nullptr, &u8.mat), KORVO_ERR_OVERFLOW);
}

TEST(UniversalAbsAndRescale, TakeOneTypeOnly) {
  const auto scalar = [](int type) { return _univ_scalar{_univ_value{}, static_cast<_korvo_type>(type)}; };
  for (int i = 0; i < 1000; ++i) {
    const int type = i % 10, low = i / 10 % 10, high = i / 100;
    const bool alike = is_real(type) && low == type;
    const cell in(type, 1);
    cell out(low, 7), same(type, 7);
    EXPECT_EQ(matuniv_abs(&in.mat, nullptr, &out.mat), taken(alike)) << i;
    EXPECT_EQ(matuniv_rescale(&in.mat, scalar(low), scalar(high), nullptr, &same.mat),
              taken(alike && high == type));
    EXPECT_EQ(matuniv_rescale(&in.mat, scalar(type), scalar(type), nullptr, &out.mat), taken(alike)) << i;
  }
}

}  // namespace

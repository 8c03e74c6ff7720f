#include "korvos/matrix/mat_cast.h"

#include <bit>

#include "tests/support/all.hpp"

namespace {

using namespace korvo;

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

template <class D>
struct verdict {
  D value;  // clipped, where it does not fit
  bool fits;
};

// The rule of casts, an element at a time.
template <class D, class S>
verdict<D> rule(S x) {
  if constexpr (std::is_same_v<S, korvo_dcomplex>) {
    return {x.re, x.im == 0.0};
  } else if constexpr (std::is_same_v<D, korvo_dcomplex>) {
    return {{x, 0.0}, true};
  } else if constexpr (std::is_integral_v<D>) {
    const long double high = std::ldexp(1.0L, std::numeric_limits<D>::digits) - 1.0L;
    const long double low = std::is_signed_v<D> ? -high : 0.0L;
    const long double r = std::is_integral_v<S> ? static_cast<long double>(x) : std::floor(double(x) + 0.5);
    if (!(r >= low)) return {static_cast<D>(low), false};  // NaN too
    return {static_cast<D>(std::min(r, high)), r <= high};
  } else {
    if (std::is_same_v<S, double> && (x > 1e37 || x < -1e37))
      return {std::bit_cast<float>(x > 0 ? 0x7CF0BDC2 : 0xFCF0BDC2), false};
    return {static_cast<D>(x), true};
  }
}

// Numbers at the limits of all types, beside them, and beyond.
template <class S>
std::vector<S> samples() {
  const double above = std::nextafter(1e37, inf);
  std::vector<double> numbers = {inf, -inf, nan, -0.0, 5e-324, -5e-324, 0.49999999999999994};
  for (const double x : {4503599627370497.5, 1e37, -1e37, 3e38, -3e38, 1e-45, above, -above})
    numbers.push_back(x);
  for (const double limit : {0.0, 255.0, 32767.0, 65535.0, 2147483647.0, 4294967295.0, -32767.0, -2147483647.0})
    for (const double step : {-2.0, -1.0, -0.6, -0.5, -0.4, 0.0, 0.4, 0.5, 1.0, 2.0})
      for (const double x : {limit + step, std::nextafter(limit + step, -inf)}) numbers.push_back(x);
  std::vector<S> all;
  for (const double x : numbers)
    if constexpr (std::is_same_v<S, korvo_dcomplex>)
      all.insert(all.end(), {{x, 0.0}, {x, -0.0}, {x, 1.0}, {x, nan}, {x, 5e-324}});
    else if (std::is_floating_point_v<S> || (std::trunc(x) == x && x >= double{std::numeric_limits<S>::min()} &&
                                             x <= double{std::numeric_limits<S>::max()}))
      all.push_back(static_cast<S>(x));
  return all;
}

// Casts n numbers of a list, over and over, with x in one place, off the alignment of vectors: up to the first
// that does not fit, unless it clips.
template <class M, class N>
void expect_run(const std::vector<element<M>>& list, std::int32_t n, std::uint8_t clip, std::int32_t at,
                element<M> x) {
  fenced<M> in(1, n);
  fenced<N> out(1, n);
  for (std::int32_t i = 0; i < n; ++i)
    in.data[i] = i == at ? x : list[static_cast<std::size_t>(i) % list.size()];
  const _univ_mat source = {1, n, n, in.data, tag<M>::type};
  _univ_mat destination = {1, n, n, out.data, tag<N>::type};
  fake_host host;
  const _korvo_errcode result = matuniv_cast(&source, clip, host.intrp_ptr(), &destination);
  const matrix<N> expected(1, n, out.post());
  bool stopped = false;
  for (std::int32_t i = 0; i < n && !stopped; ++i) {
    const auto [value, fits] = rule<element<N>>(in.data[i]);
    stopped = !fits && clip == 0;
    if (!stopped) expected.data[i] = value;
  }
  ASSERT_TRUE(same_bits<N>(out, expected)) << n << " from type " << source.type << " to " << destination.type;
  EXPECT_EQ(result, stopped ? KORVO_ERR_OVERFLOW : KORVO_ERR_OK);
  EXPECT_EQ(host.polls(), stopped ? 0 : 1);
  EXPECT_TRUE(out.fences_stand());
}

template <class M, class N>
void expect_rule() {
  const auto all = samples<element<M>>();
  std::vector<element<M>> fitting, misfits;
  for (const auto& x : all) (rule<element<N>>(x).fits ? fitting : misfits).push_back(x);
  for (const auto& x : all) expect_run<M, N>(all, 1, 0, 0, x);
  for (const std::int32_t count : {2, 3, 7, 8, 9, 15, 17, 31, 33, 63, 65, 400})
    for (const auto& [list, clip] : {std::pair{&all, std::uint8_t{2}}, {&fitting, std::uint8_t{0}}})
      expect_run<M, N>(*list, count, clip, 0, list->back());
  for (const std::int32_t offender : {0, 2047, 2048, 5000})  // around the strips of a cast
    for (std::size_t i = 0; i < misfits.size(); i += 7)
      expect_run<M, N>(fitting, 5003, 0, offender, misfits[i]);
}

// Which casts there are, and copies: [from][to].
constexpr const char* pairs[] = {"y.yyyyyy.", ".........", "y.yyyyyy.", "y.yyyyyy.", "y.yyyyyy.",
                                 "y.yyyyyy.", "y.yyyyyyy", "y.yyyyyyy", ".......y."};

TEST(Cast, FollowsTheRuleAtEachLevel) {
  each_level([] {
    each_record(all_records{}, []<class M> {
      each_record(all_records{}, []<class N> {
        if constexpr (pairs[tag<M>::type][tag<N>::type] == 'y' && !std::is_same_v<M, N>) expect_rule<M, N>();
      });
    });
  });
}

TEST(Cast, RoundsHalvesUpAndComparesWhatIsRounded) {
  const dbl_matrix in(1, 9, {-0.4, -0.5, 2.5, 255.4, 255.5, -0.6, -2.5, -32768.0, nan});
  s16_matrix shorts(1, 9);
  EXPECT_EQ(matdbl_cast_to_s16(&in, 2, nullptr, &shorts), KORVO_ERR_OK);
  EXPECT_EQ(shorts.elements(), s16_matrix(1, 9, {0, 0, 3, 255, 256, -1, -2, -32767, -32767}).elements());
}

TEST(UniversalCast, HasThePairsOfTheTable) {
  double from[2] = {}, to[2] = {};
  for (int s = -1; s <= 9; ++s)
    for (int d = -1; d <= 9; ++d) {
      const _univ_mat in = {1, 1, 1, from, static_cast<_korvo_type>(s)};
      _univ_mat out = {1, 1, 1, to, static_cast<_korvo_type>(d)};
      const bool exists = s >= 0 && s <= 8 && d >= 0 && d <= 8 && pairs[s][d] == 'y';
      EXPECT_EQ(matuniv_cast(&in, 0, nullptr, &out), exists ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_TYPE) << s << d;
    }
}

TEST(Complex, IsPutTogetherAndTakenApart) {
  const dbl_matrix real(1, 1, 2), imag(1, 1, 4);
  dbl_matrix other(2, 1), re(1, 1), im(1, 1);
  cpx_matrix out(1, 1);
  const auto expect = [&](const _dbl_mat* a, const _dbl_mat* b, _korvo_errcode code, korvo_dcomplex left) {
    EXPECT_EQ(matdbl_to_complex(a, b, nullptr, &out), code);
    EXPECT_EQ(out(0, 0), left);
  };
  expect(nullptr, nullptr, KORVO_ERR_NULL_POINTER, {0, 0});
  expect(&real, &other, KORVO_ERR_ILLEGAL_SIZE, {0, 0});
  expect(&real, nullptr, KORVO_ERR_OK, {2, 0});
  expect(nullptr, &imag, KORVO_ERR_OK, {0, 4});
  expect(&real, &imag, KORVO_ERR_OK, {2, 4});
  EXPECT_EQ(matcpx_to_double(&out, nullptr, nullptr, nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matcpx_to_double(&out, nullptr, &re, &other), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(re(0, 0), 2) << "the first part has been taken by then";
  EXPECT_EQ(matcpx_to_double(&out, nullptr, nullptr, &im), KORVO_ERR_OK);
  EXPECT_EQ(im(0, 0), 4);
  expect_tallies([&](void* host) { return matdbl_to_complex(&real, &imag, host, &out); }, {1.0, 2.0});
  expect_tallies([&](void* host) { return matcpx_to_double(&out, host, &re, &im); }, {2.0, 2.0});
  expect(nullptr, &other, KORVO_ERR_ILLEGAL_SIZE, {0, 4});  // the real parts have been cleared by then
}

}  // namespace

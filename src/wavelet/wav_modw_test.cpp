#include "korvos/wavelet/wav_modw.h"

#include "tests/support/all.hpp"

namespace {

using namespace korvo;

dbl_matrix numbers(int rows, int cols, unsigned seed) {
  return dbl_matrix::random(rows, cols, seed, -20.0 / 3.0, 20.0);
}

// A call of each routine, and records that a test may spoil.
struct work {
  work(int n_, int length, int levels_) : n(n_), levels(levels_), g(numbers(length, 1, 2)) {}
  _korvo_errcode forward(void* host) {
    return wavuniv_transform_maximum_overlap(&in, &wavelet, &scaling, levels, host, &out, &second);
  }
  _korvo_errcode packet(void* host) {
    return wavuniv_transform_maximum_overlap_packet(&in, &wavelet, &scaling, levels, host, &nodes);
  }
  _korvo_errcode inverse(void* host) {
    return wavuniv_transform_maximum_overlap_inverse(&from, &wavelet, &scaling, levels, host, &to);
  }
  int n, levels;
  dbl_matrix g, h = numbers(g.nrow, 1, 3), x = numbers(n, 1, 1), crystals = numbers(n, levels + 1, 4);
  dbl_matrix w{n, levels}, v{n, levels}, tree{n, n < 9999 ? (2 << levels) - 1 : 1}, back{n, levels + 1};
  _univ_mat in = x.universal(), wavelet = g.universal(), scaling = h.universal(), out = w.universal(),
            second = v.universal(), nodes = tree.universal(), from = crystals.universal(),
            to = back.universal();
};
using form = _korvo_errcode (work::*)(void*);
constexpr form forms[] = {&work::forward, &work::packet, &work::inverse};

// The sums of all results as they are defined; reach is l * s, with its sign.
double tap(const dbl_matrix& filter, int l, const dbl_matrix& x, int col, std::int64_t t, std::int64_t reach) {
  return filter(l, 0) * 0.7071067811865476 * x(static_cast<int>(((t - reach) % x.nrow + x.nrow) % x.nrow), col);
}
double filtered(const dbl_matrix& filter, const dbl_matrix& x, int col, int t, std::int64_t s) {
  double sum = 0.0;
  for (int l = 0; l < filter.nrow; ++l) sum += tap(filter, l, x, col, t, l * s);
  return sum;
}
void calculate(const work& s) {
  for (int j = 0; j < s.levels; ++j)
    for (int t = 0; t < s.n; ++t)
      for (const auto& [filter, to] : {std::pair{&s.g, &s.w}, {&s.h, &s.v}})
        (*to)(t, j) = filtered(*filter, j > 0 ? s.v : s.x, std::max(j - 1, 0), t, 1 << j);
  for (int t = 0; t < s.n; ++t) s.tree(t, 0) = s.x(t, 0), s.back(t, 0) = s.crystals(t, 0);
  for (int j = 1; j <= s.levels; ++j)
    for (int i = 0; i < s.n << j; ++i) {
      const int node = i / s.n, parent = node / 2 + (1 << (j - 1)) - 1;
      s.tree(i % s.n, (1 << j) - 1 + node) =
          filtered(node % 4 % 3 == 0 ? s.h : s.g, s.tree, parent, i % s.n, 1 << (j - 1));
    }
  for (int c = 0; c < s.levels; ++c)
    for (int t = 0; t < s.n; ++t)
      for (std::int64_t l = 0, step = -1 << (s.levels - 1 - c); l < s.h.nrow; ++l)
        s.back(t, c + 1) += tap(s.h, static_cast<int>(l), s.back, c, t, l * step) +
                            tap(s.g, static_cast<int>(l), s.crystals, c + 1, t, l * step);
}

TEST(MaximumOverlap, AddsTapsInOrderAtEachLevel) {
  for (const auto& [n, length, levels] : {std::array{2, 1, 1},
                                          {5, 9, 2},
                                          {8, 2, 3},
                                          {33, 70, 4},
                                          {100, 2, 6},
                                          {129, 3, 2},
                                          {1000, 4, 5},
                                          {1500, 6, 6}}) {
    const work twin(n, length, levels);
    calculate(twin);
    each_level([&, n = n, length = length, levels = levels] {
      fake_host host;  // with one, the first level is done alone
      for (void* const intrp_ptr : {static_cast<void*>(nullptr), host.intrp_ptr()}) {
        work s(n, length, levels);
        for (const form call : forms) EXPECT_EQ((s.*call)(intrp_ptr), KORVO_ERR_OK);
        EXPECT_EQ(s.w.elements(), twin.w.elements());
        EXPECT_EQ(s.v.elements(), twin.v.elements());
        EXPECT_EQ(s.tree.elements(), twin.tree.elements());
        EXPECT_EQ(s.back.elements(), twin.back.elements());
      }
    });
  }
}

TEST(MaximumOverlap, GivesTheSeriesBack) {
  const std::vector<double> daubechies[] = {
      {0.70710678118654757, 0.70710678118654757},
      {0.48296291314453416, 0.83651630373780794, 0.22414386804201339, -0.12940952255126037},
      {0.23037781330889651, 0.71484657055291567, 0.63088076792985892, -0.027983769416859854,
       -0.18703481171909309, 0.030841381835560764, 0.032883011666885197, -0.010597401785069032},
      {0.054415842243104008, 0.31287159091429995, 0.67563073629728976, 0.58535468365420673,
       -0.015829105256349306, -0.28401554296154691, 0.00047248457391328279, 0.12874742662047847,
       -0.017369301001807547, -0.044088253930794755, 0.013981027917398282, 0.0087460940474057766,
       -0.0048703529934515741, -0.00039174037337694705, 0.00067544940645056933, -0.00011747678412476953}};
  for (const std::vector<double>& filter : daubechies)
    for (const int n : {8, 9, 100, 1000, 10000}) {
      const int length = static_cast<int>(filter.size());
      work s(n, length, std::min(static_cast<int>(std::log2(n)), 12));
      std::copy(filter.begin(), filter.end(), s.h.data);
      for (int l = 0; l < length; ++l) s.g(l, 0) = (l % 2 == 0 ? 1.0 : -1.0) * s.h(length - 1 - l, 0);
      for (int shift = 0; shift < length; shift += 2) {
        double dot = 0.0;
        for (int l = shift; l < length; ++l) dot += s.h(l, 0) * s.h(l - shift, 0);
        EXPECT_NEAR(dot, shift == 0 ? 1.0 : 0.0, 1e-14);
      }
      EXPECT_EQ(s.forward(nullptr), KORVO_ERR_OK);
      for (int i = 0; i < s.crystals.nelem; ++i) {
        const int t = i / (s.levels + 1), k = i % (s.levels + 1);
        s.crystals(t, k) = k == 0 ? s.v(t, s.levels - 1) : s.w(t, s.levels - k);
      }
      EXPECT_EQ(s.inverse(nullptr), KORVO_ERR_OK);
      for (int t = 0; t < n; ++t) EXPECT_NEAR(s.back(t, s.levels), s.x(t, 0), 1e-12);
    }
}

TEST(MaximumOverlap, HasNoMoreLevelsThanTheSeriesHasOctaves) {
  for (const form call : forms)
    for (const int levels : {INT32_MIN, -1, 0, 7, 31, INT32_MAX}) {
      work s(100, 4, 3);
      s.levels = levels;
      EXPECT_EQ((s.*call)(nullptr), KORVO_ERR_ILLEGAL_SIZE);
    }
}

TEST(MaximumOverlap, TakesAnyRealSeriesAndLooksAtTheSecondResultForItsTypeOnly) {
  each_record(all_records{}, [&]<class M> {
    work s(20, 4, 2);
    const auto x = matrix<M>::random(20, 1, 5);
    const dbl_matrix second(20, 2);
    s.in = x.universal(), s.second = second.universal(), s.second.nrow = 0;
    if constexpr (std::is_arithmetic_v<element<M>>) {
      EXPECT_EQ(s.forward(nullptr), KORVO_ERR_OK);
      std::copy_n(x.data, 20, s.x.data);
      calculate(s);
      EXPECT_EQ(second.elements(), s.v.elements());
    } else {
      EXPECT_EQ(s.forward(nullptr), KORVO_ERR_ILLEGAL_TYPE);
    }
  });
}

TEST(MaximumOverlap, SetsTheTallyAndDoesNotAddToIt) {
  const std::vector<double> taps(20 * 4 * (2 + 4 + 8), 60.0);
  for (const double distance : {1e-9, 9.0, 17.0, 31.0, 59.9, 60.0, 1e7}) {
    const threshold set(distance);
    const int levels = polls_of({60.0, 60.0, 60.0}, distance);
    const int nodes = polls_of(taps, distance) + polls_of(steps_of(20, 8.0 * 15.0), distance);
    const int expected[] = {3 + levels, 2 + nodes, 2 + levels};  // one for each filter, and one for the cast
    for (const form& call : forms) {
      work s(20, 4, 3);
      fake_host host;
      EXPECT_EQ((s.*call)(host.intrp_ptr()), KORVO_ERR_OK);
      EXPECT_EQ(host.polls(), expected[&call - forms]);
    }
  }
}

}  // namespace

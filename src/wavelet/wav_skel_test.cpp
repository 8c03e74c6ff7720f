#include "korvos/wavelet/wav_skel.h"

#include "korvos/wavelet/wav_skel_local.h"
#include "korvos/wavelet/wav_wtmm.h"
#include "tests/support/all.hpp"

namespace {

using namespace korvo;
using numbers = std::vector<std::int32_t>;

// What a search takes; row 1 of 3 is sought.
struct search {
  search(std::int32_t cols, const numbers& at, const numbers& from, double distance)
      : mask(3, cols, 1),
        map(3, cols, 9),
        tips(2, static_cast<int>(from.size()), 5),
        origins(tips),
        most(distance) {
    for (int c = 0; c < cols; ++c) mask(1, c) = std::count(at.begin(), at.end(), c) > 0 ? 3 : 0;
    std::copy(from.begin(), from.end(), tips.data);
  }
  _korvo_errcode operator()(void* host = nullptr) {
    return localfn_wav_seek_chain(&m, &t, &o, &p, row, most, host, &linked);
  }
  // Column by column, as it is told.
  void by_columns() {
    bool seen = false;
    for (int k = 0; k < tips.ncol; ++k) {
      const int pos = tips(0, k), cols = mask.ncol;
      int best = pos, nearest = 2 * cols;
      for (int c = 0; c < cols && pos >= 0; ++c) {
        const int e = c - best, d = std::min({std::abs(e), std::abs(cols + e), std::abs(e - cols)});
        seen = seen || mask(1, c) > 0;
        if (mask(1, c) > 0 && d < nearest) best = c, nearest = d;
      }
      const bool links = pos >= 0 && seen && nearest <= most;
      tips(1, k) = links ? best : -1;
      if (pos >= 0) map(1, pos) = tips(1, k);
      if (links) mask(1, best) = -1;
      if (!links) origins(1, k) = -1;
      linked += links;
    }
  }
  s32_matrix mask, map, tips, origins;
  _univ_mat m = mask.universal(), p = map.universal(), t = tips.universal(), o = origins.universal();
  double most;
  std::int32_t row = 1, linked = 40;
};

TEST(SeekChain, LinksRoundTheCircleAndWalks) {
  const struct {
    numbers marks, from;
    double most;
    numbers next;
  } cases[] = {{{8, 12}, {10}, 3.0, {8}},             // a tie
               {{8, 11}, {10}, 3.0, {8}},             // 11 is 3 from the best so far, 8
               {{2, 9}, {10}, 3.0, {-1}},             // 9 is best, but 7 from the best before it
               {{18}, {1}, 3.0, {18}},                // left edge to right
               {{1}, {18}, 2.9, {-1}},                // right edge to left, too far
               {{5}, {4, 7}, 100.0, {5, 7}},          // kept: the second stays, since a mark has been seen
               {{5}, {4, -1, 6}, 9.0, {5, -1, -1}}};  // one was dead before
  for (const auto& [marks, from, most, next] : cases) {
    search s(20, marks, from, most);
    EXPECT_EQ(s(), KORVO_ERR_OK);
    EXPECT_EQ(numbers(s.tips.data + s.tips.ncol, s.tips.data + s.tips.nelem), next);
  }
}

TEST(SeekChain, IsTheScanOfEveryColumn) {
  std::mt19937 engine(3);
  const auto below = [&](std::size_t n) { return static_cast<int>(engine() % 99991 % n); };
  for (int round = 0; round < 300; ++round) {
    const int cols = 1 + below(60), density = 2 + below(12);
    numbers marks, from = {-1};
    for (int c = 0; c < cols; ++c) {
      if (below(20) < density) marks.push_back(c);
      if (below(20) < 8) from.insert(from.begin() + below(from.size()), c);
    }
    search s(cols, marks, from, below(30)), twin(cols, marks, from, s.most);
    EXPECT_EQ(s(), KORVO_ERR_OK);
    twin.by_columns();
    for (const auto part : {&search::mask, &search::map, &search::tips, &search::origins})
      EXPECT_EQ((s.*part).elements(), (twin.*part).elements());
    EXPECT_EQ(s.linked, twin.linked);
  }
}

TEST(SeekChain, RefusesInOrderAndPollsAChain) {
  expect_tallies([](void* host) { return search(20, {7, 9}, {6, -1, 10, 4}, 3.0)(host); }, {21.0, 27.0, 12.0});
  for (const auto& [row, tip] : {std::pair{-1, 0}, {3, 0}, {INT32_MAX, 0}, {1, -2}, {1, 20}}) {
    search s(20, {7}, {6, -1}, NAN);
    EXPECT_EQ(s(), KORVO_ERR_ILLEGAL_VALUE);
    s.row = row, s.tips(0, 1) = tip;
    EXPECT_EQ(s(), KORVO_ERR_OUT_OF_BOUNDS);
    s.p.data = s.m.data;
    EXPECT_EQ(s(), KORVO_ERR_ILLEGAL_ADDRESS);
    s.t.nrow = s.o.nrow = 1, s.t.nelem = s.o.nelem = 2;
    EXPECT_EQ(s(), KORVO_ERR_ILLEGAL_SIZE);
    s.m.data = nullptr;
    EXPECT_EQ(s(), KORVO_ERR_NULL_POINTER);
    s.o.type = KORVO_UINT32;
    EXPECT_EQ(s(), KORVO_ERR_ILLEGAL_TYPE);
  }
}

// A matrix on the heap.
struct owned : _univ_mat {
  owned(std::int32_t rows, const numbers& elements) : _univ_mat{} {
    EXPECT_EQ(matuniv_malloc(this, rows, static_cast<int>(elements.size()) / rows, KORVO_SINT32), KORVO_ERR_OK);
    std::copy(elements.begin(), elements.end(), as<_s32_mat>(*this).data);
  }
  owned(const owned&) = delete;
  ~owned() { (void)matuniv_free(this); }
  numbers elements() const { return {as<_s32_mat>(*this).data, as<_s32_mat>(*this).data + nelem}; }
};

TEST(GrowChainSet, KeepsTheLivingAndPutsTheNewAfterThem) {
  const owned added(1, {33, 34}), begun(1, {3, 4}), longer(1, {1, 2, 3});
  owned tips(2, {7, 20, 9, 5, -1, 6}), origins(2, {1, 2, 3, 0, -1, 0});
  const auto grow = [&](const _univ_mat& to) {
    return localfn_wav_grow_chain_set(&added, &to, nullptr, &tips, &origins);
  };
  EXPECT_EQ(grow(begun), KORVO_ERR_OK);
  for (const _univ_mat* wrong : {static_cast<const _univ_mat*>(&longer), static_cast<const _univ_mat*>(&tips)})
    EXPECT_EQ(grow(*wrong), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(localfn_wav_grow_chain_set(&added, &added, nullptr, &tips, &tips), KORVO_ERR_ILLEGAL_ADDRESS);
  EXPECT_EQ(tips.elements(), (numbers{5, 6, 33, 34}));
  EXPECT_EQ(origins.elements(), (numbers{1, 3, 3, 4}));
  as<_s32_mat>(tips).data[0] = -1;  // of one row
  EXPECT_EQ(grow(added), KORVO_ERR_OK);
  EXPECT_EQ(tips.elements(), (numbers{6, 33, 34, 33, 34}));
}

struct chains {
  explicit chains(const s32_matrix& marks, std::int32_t voices = 1) {
    const _univ_mat mask = marks.universal();
    EXPECT_EQ(wavuniv_transform_modulus_maxima_skeleton(&mask, voices, nullptr, &points, &lengths),
              KORVO_ERR_OK);
  }
  owned points{2, {0, 0, 0, 0}}, lengths{1, {0, 0}};
};

TEST(Skeleton, WritesChainAfterChainFromTheCoarsestPoint) {
  const chains found(s32_matrix(3, 7, {0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 5, -4, 0, 0, 0, 0, 0, 1, 0, 0, 0}), 3);
  EXPECT_EQ(found.points.elements(), (numbers{2, 3, 1, 3, 0, 2, 0, 5}));
  EXPECT_EQ(found.lengths.elements(), (numbers{3, 1}));
  const chains none(s32_matrix(3, 7, -1));
  EXPECT_EQ(none.points.elements(), (numbers{-1, -1}));
  EXPECT_EQ(none.lengths.elements(), numbers{0});
}

// The jump allowed in row r of 4, in 16 columns: 8 in row 3 with 2 voices, then 4, 4, 2.
TEST(Skeleton, AllowsHalfTheJumpAnOctaveOn) {
  s32_matrix mask(4, 16);
  for (const auto& [r, c] : {std::array{3, 0}, {2, 12}, {1, 8}, {0, 5}}) mask(r, c) = 1;
  EXPECT_EQ(chains(mask, 2).lengths.elements(), (numbers{3, 1}));
  EXPECT_EQ(chains(mask, INT32_MAX).lengths.elements(), numbers{4});
}

TEST(Skeleton, HasEachMarkInOneChain) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    auto mask = s32_matrix::random(9, 40, seed, -3.0, 2.0);
    const chains found(mask, 3);
    const numbers points = found.points.elements();
    const std::int32_t* point = points.data();
    for (const int length : found.lengths.elements())
      for (int i = 0; i < length; ++i, point += 2) {
        EXPECT_TRUE(i == 0 || point[0] == point[-2] - 1);
        EXPECT_GT(std::exchange(mask(point[0], point[1]), 0), 0);  // each mark once
      }
    EXPECT_LE(*std::max_element(mask.data, mask.data + mask.nelem), 0);
    EXPECT_EQ(point, points.data() + points.size());
  }
}

// A transform by direct sums over a period of 128, from fine to coarse with two voices.
template <class Signal, class Wavelet>
chains ridges(Signal signal, Wavelet wavelet) {
  const dbl_matrix w(8, 128);
  const s32_matrix mask(8, 128);
  for (int r = 0; r < 8; ++r)
    for (int t = 0; t < 128; ++t)
      for (int u = -64; u < 64; ++u) {
        const double x = u / std::exp2(0.5 * r);
        w(r, t) += signal((t + u + 128) % 128) * wavelet(x) * std::exp(-0.5 * x * x);
      }
  const _univ_mat transform = w.universal();
  _univ_mat marks = mask.universal();
  EXPECT_EQ(wavuniv_transform_modulus_maxima(&transform, 0.01, 0, nullptr, &marks), KORVO_ERR_OK);
  return chains(mask, 2);
}

TEST(Skeleton, FollowsRidgesThroughAllScales) {
  const auto step = [](int t) { return t == 40 || t == 100 ? 0.5 : t > 40 && t < 100 ? 1.0 : 0.0; };
  const auto cusp = [](int t) { return std::abs((t + 24) % 128 - 64); };
  const chains found[] = {ridges(step, [](double x) { return -x; }),
                          ridges(cusp, [](double x) { return 1.0 - x * x; })};
  for (const chains& each : found) {
    numbers straight;
    for (const int col : {40, 100 + 4 * (&each == &found[1])})
      for (int r = 7; r >= 0; --r) straight.insert(straight.end(), {r, col});
    EXPECT_EQ(each.points.elements(), straight);
    EXPECT_EQ(each.lengths.elements(), (numbers{8, 8}));
  }
}

}  // namespace

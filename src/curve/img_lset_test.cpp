#include "korvos/curve/img_lset.h"

#include <random>

#include "korvos/segment/img_cany.h"
#include "korvos/segment/img_dist.h"
#include "tests/support/all.hpp"

using namespace korvo;

namespace {

struct way {
  pgn_chain chain{};
  _univ_mat polygon{};
  way() = default;
  way(const way&) = delete;
  ~way() {
    (void)pgn_chain_free(&chain);
    (void)matuniv_free(&polygon);
  }
  std::vector<int> directions() const { return {chain.directions, chain.directions + chain.num_links}; }
  std::vector<int> runs() const { return {chain.run_lengths, chain.run_lengths + chain.num_links}; }
  std::vector<double> vertices() const {
    const auto* const x = static_cast<const double*>(polygon.data);
    return {x, x + polygon.nelem};
  }
};

_korvo_errcode levels(const dbl_matrix& potential, int row, int col, const dbl_matrix& out) {
  const _univ_mat from = potential.universal();
  _univ_mat to = out.universal();
  return imguniv_minpath_levelset_from_potential(&from, row, col, nullptr, &to);
}

// Looks through the whole image for the next pixel to freeze: of all that was ever pushed for a pixel, the
// lowest key brings its turn.
dbl_matrix slow_levels(const dbl_matrix& potential, int row, int col) {
  const int rows = potential.nrow, cols = potential.ncol;
  dbl_matrix level(rows, cols, 1e37), key(rows, cols, 1e37);
  u8_matrix label(rows, cols);
  const auto known = [&](int r, int c) { return r >= 0 && r < rows && c >= 0 && c < cols && label(r, c) != 0; };
  const auto lower = [&](bool low, int r, int c, int r2, int c2) {
    return std::min(low && known(r, c) ? level(r, c) : 1e37, known(r2, c2) ? level(r2, c2) : 1e37);
  };
  level(row, col) = key(row, col) = 0, label(row, col) = 2;
  for (;;) {
    int best = -1;
    for (int i = 0; i < level.nelem; ++i)
      if (label.data[i] == 2 && (best < 0 || key.data[i] < key.data[best])) best = i;
    if (best < 0) return level;
    label.data[best] = 1;
    for (const auto& [dr, dc] : {std::pair{-1, 0}, {0, -1}, {0, 1}, {1, 0}}) {
      const int r = best / cols + dr, c = best % cols + dc;
      if (r < 0 || c < 0 || r >= rows || c >= cols || label(r, c) == 1) continue;
      const double a = lower(r > 1, r - 1, c, r + 1, c), b = lower(c > 1, r, c - 1, r, c + 1),
                   p = potential(r, c);
      double t = a < b && a + p < b ? a + p : b < a && b + p < a ? b + p : 0.0;
      const double under = p * p * 0.5 - (a - b) * (a - b) * 0.25;
      if (a < 1e37 && b < 1e37 && under >= 0) t = std::max(t, (a + b) * 0.5 + std::sqrt(under));
      level(r, c) = t, label(r, c) = 2, key(r, c) = std::min(key(r, c), t);
    }
  }
}

}  // namespace

TEST(LevelSet, IsThatOfASearchForTheLowestTrialPixel) {
  std::mt19937 engine(7);
  std::uniform_real_distribution<double> cost(0.0, 3.0);
  for (const auto& [rows, cols] : {std::pair{45, 47}, {23, 80}, {1, 40}, {40, 1}, {60, 60}}) {
    dbl_matrix potential(rows, cols), level(rows, cols);
    for (int i = 0; i < potential.nelem; ++i) potential.data[i] = cost(engine);
    const int row = rows / 2, col = cols / 2;
    ASSERT_EQ(levels(potential, row, col, level), KORVO_ERR_OK);
    EXPECT_EQ(level.elements(), slow_levels(potential, row, col).elements()) << rows << 'x' << cols;
  }
}

TEST(LevelSet, OfUnitCostIsStatedNearTheStart) {
  const dbl_matrix potential(40, 40, 1.0);
  dbl_matrix level(40, 40);
  ASSERT_EQ(levels(potential, 4, 4, level), KORVO_ERR_OK);
  EXPECT_TRUE(level(4, 4) == 0 && level(3, 4) == 1 && level(4, 5) == 1);
  EXPECT_EQ(level(5, 5), 1 + std::sqrt(0.5));
}

TEST(LevelSet, RefusesStartsInTheFirstRowAndColumnAndFrontsWithoutRoom) {
  const dbl_matrix potential(40, 41, 1.0);
  dbl_matrix level(40, 41);
  EXPECT_EQ(levels(potential, 0, 3, level), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(levels(potential, 3, 0, level), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(levels(potential, 39, 40, level), KORVO_ERR_OK);
  for (const auto& [row, col] : {std::pair{-1, 3}, {40, 3}, {3, -1}, {3, 41}})
    EXPECT_EQ(levels(potential, row, col, level), KORVO_ERR_ILLEGAL_VALUE);
  const dbl_matrix tiny(1, 3, 1.0);
  dbl_matrix result(1, 3);
  EXPECT_EQ(levels(tiny, 0, 0, result), KORVO_ERR_ILLEGAL_SIZE);
  const dbl_matrix small(3, 3, 1.0);
  dbl_matrix out(3, 3);
  EXPECT_EQ(levels(small, 1, 1, out), KORVO_ERR_ILLEGAL_SIZE);
}

TEST(LevelSet, EndsWhateverThePotentialHolds) {
  for (const double odd : {double{NAN}, double{INFINITY}, -5.0, 1e300}) {
    dbl_matrix potential = dbl_matrix::random(40, 40, 3), level(40, 40);
    for (int i = 7; i < 1600; i += 13) potential.data[i] = odd;
    const _korvo_errcode code = levels(potential, 20, 20, level);
    EXPECT_TRUE(code == KORVO_ERR_OK || code == KORVO_ERR_ILLEGAL_SIZE);
  }
}

TEST(MinimalPath, GoesThroughAMaze) {
  const char* const maze[] = {"############", "#..#.......#", "#..#.#####.#", "#..#.#...#.#",
                              "#..###.#.#.#", "#......#.#.#", "########.#.#", "#........#.#",
                              "#.########.#", "#..........#", "#..........#", "############"};
  constexpr int cell = 6;  // pixels a side
  dbl_matrix potential(12 * cell, 12 * cell);
  for (int r = 0; r < 12 * cell; ++r)
    for (int c = 0; c < 12 * cell; ++c) potential(r, c) = maze[r / cell][c / cell] == '#' ? 1000 : 1;
  const _univ_mat from = potential.universal();
  way found;
  ASSERT_EQ(imguniv_minpath_from_potential(&from, 15, 15, 21, 27, nullptr, &found.chain, &found.polygon),
            KORVO_ERR_OK);
  constexpr int row_step[] = {0, 0, 1, 0, 0, 0, -1, 0}, col_step[] = {1, 0, 0, 0, -1, 0, 0, 0};
  int row = found.chain.start_row, col = found.chain.start_col;
  EXPECT_TRUE(row == 21 && col == 27);
  for (int k = 0; k < found.chain.num_links; ++k)
    for (int i = 0; i < found.chain.run_lengths[k]; ++i) {
      row += row_step[found.chain.directions[k]], col += col_step[found.chain.directions[k]];
      EXPECT_EQ(maze[row / cell][col / cell], '.') << row << ',' << col;
    }
  EXPECT_TRUE(row == 15 && col == 15);
  EXPECT_EQ(found.polygon.nrow, found.chain.num_links + 1);
  EXPECT_EQ(found.vertices().end()[-2], 15);
}

TEST(MinimalPath, TakesUpBeforeLeftBeforeRightBeforeDown) {
  const auto ways = [](const dbl_matrix& level, int row, int col, int end_row, int end_col) {
    const _univ_mat from = level.universal();
    way found;
    EXPECT_EQ(imguniv_minpath_from_levelset(&from, row, col, end_row, end_col, nullptr, &found.chain, nullptr),
              KORVO_ERR_OK);
    return std::pair(found.directions(), found.runs());
  };
  using list = std::vector<int>;
  EXPECT_EQ(ways({3, 3, {1, 1, 9, 1, 5, 1, 9, 1, 0}}, 2, 2, 1, 1),
            std::pair(list{6, 4, 2, 0}, list{1, 1, 2, 2}));
  EXPECT_EQ(ways({2, 3, {1, 5, 1, 0, 9, 9}}, 1, 0, 0, 1).first, (list{4, 2}));
  EXPECT_EQ(ways({2, 2, {5, 1, 1, 0}}, 1, 1, 0, 0).first, (list{0, 2}));
}

TEST(MinimalPath, JumpsToTheStartWhereThereIsNoWayAndRests) {
  const dbl_matrix cut(2, 3, {0, 1e37, 1e37, 1e37, 1e37, 1e37});
  const _univ_mat from = cut.universal();
  way jump, rest;
  ASSERT_EQ(imguniv_minpath_from_levelset(&from, 0, 0, 1, 2, nullptr, &jump.chain, nullptr), KORVO_ERR_OK);
  EXPECT_EQ(jump.directions(), (std::vector<int>{6}));
  ASSERT_EQ(imguniv_minpath_from_levelset(&from, 1, 2, 1, 2, nullptr, &rest.chain, &rest.polygon),
            KORVO_ERR_OK);
  EXPECT_EQ(rest.chain.num_links, 0);
  EXPECT_EQ(rest.vertices(), (std::vector<double>{1, 2}));
  EXPECT_EQ(imguniv_minpath_from_levelset(&from, 1, 2, 1, 2, nullptr, nullptr, nullptr),
            KORVO_ERR_NULL_POINTER);
  way refused;
  EXPECT_EQ(imguniv_minpath_from_levelset(&from, 1, 3, 1, 2, nullptr, &refused.chain, nullptr),
            KORVO_ERR_ILLEGAL_VALUE);
}

TEST(MinimalPath, PotentialIsTheDistanceToTheEdges) {
  dbl_matrix image(20, 24), out(20, 24), distance(20, 24);
  for (int i = 0; i < image.nelem; ++i) image.data[i] = i % 24 < 12 ? 0 : 100;
  u8_matrix edges(20, 24);
  const _univ_mat from = image.universal();
  _univ_mat to = out.universal(), marks = edges.universal(), expected = distance.universal();
  const _univ_scalar one = {{.u8 = 1}, KORVO_UINT8}, zero = {{.u8 = 0}, KORVO_UINT8};
  ASSERT_EQ(imguniv_potential_canny(&from, 1.0, 1, 5, nullptr, &to), KORVO_ERR_OK);
  ASSERT_EQ(imguniv_edge_canny(&from, 1.0, 1, 5, one, zero, nullptr, &marks), KORVO_ERR_OK);
  ASSERT_EQ(imguniv_transform_distance(&marks, 0, one, nullptr, &expected), KORVO_ERR_OK);
  EXPECT_EQ(out.elements(), distance.elements());
  EXPECT_LT(*std::min_element(out.elements().begin(), out.elements().end()), 1);
}

#include "korvos/segment/img_erg.h"

#include <map>
#include <tuple>
#include <unordered_map>

#include "segment/img_erg.hpp"
#include "tests/support/all.hpp"

namespace {

using namespace korvo;

enum drawing { noise, flat, stripes, checker, rings };

struct picture {
  picture(drawing what, std::int32_t rows, std::int32_t cols, std::int32_t bands = 1) : count(bands) {
    kept.reserve(static_cast<std::size_t>(bands));
    for (std::int32_t b = 1; b <= bands; ++b) {
      const dbl_matrix& x = kept.emplace_back(dbl_matrix::random(rows, cols, static_cast<unsigned>(b)));
      for (std::int32_t r = 0; r < rows && what != noise; ++r)
        for (std::int32_t c = 0; c < cols; ++c)
          x(r, c) = what == stripes   ? (r + c) / 5 % 2
                    : what == checker ? (r + c) % 2
                    : what == rings   ? std::max(std::abs(r - rows / 2), std::abs(c - cols / 2)) / 3 % 2
                                      : 0;
      mats.push_back(x.universal());
      weights.push_back(b * 2.0 / (bands * (bands + 1)));
    }
    set = {1, &count, count, mats.data()};
  }
  picture& operator=(picture&&) = delete;
  growth_plan plan(std::int32_t order, bool product, std::int32_t grid_rows, std::int32_t grid_cols) const {
    return {&set, weights.data(), order, product, grid_rows, grid_cols};
  }

  std::int32_t count;
  std::vector<dbl_matrix> kept = {};
  std::vector<_univ_mat> mats = {};
  std::vector<double> weights = {};
  _mat_set set{};
};

// An unbroken stretch of boundary: regions, ends and length. A closed one has no ends.
using stretch = std::array<std::int64_t, 5>;
stretch stretch_of(std::int32_t a, std::int32_t b, std::int32_t v, std::int32_t w, std::int64_t length) {
  if (v == w) v = w = nothing;
  return {std::min(a, b), std::max(a, b), std::min(v, w), std::max(v, w), length};
}

// All of them, sorted, from the boundaries of single blocks and the region of each block.
std::vector<stretch> stretches(const boundary_graph& grid, const std::int32_t* region) {
  const auto side = [&](std::int64_t i, int s) { return region[grid.edge(i).region[s]]; };
  std::unordered_map<std::int32_t, std::vector<std::int32_t>> met, ends;  // pieces at vertices; of unions
  std::vector<std::int32_t> pieces(static_cast<std::size_t>(grid.edge_count()));
  std::int32_t* const whole = pieces.data();  // the union of each
  const auto root = [&](std::int32_t i) {
    while (whole[i] != i) i = whole[i];
    return i;
  };
  for (std::int32_t i = 0; i < grid.edge_count(); whole[i] = i, ++i)
    for (const std::int32_t v : grid.edge(i).vertex)
      if (side(i, 0) != side(i, 1)) met[v].push_back(i);
  for (const auto& [v, here] : met)
    if (here.size() == 2) whole[root(here[0])] = root(here[1]);
  std::unordered_map<std::int32_t, std::int64_t> length;
  for (std::int32_t i = 0; i < grid.edge_count(); ++i) {
    if (side(i, 0) == side(i, 1)) continue;
    length[root(i)] += grid.edge(i).length;
    for (const std::int32_t v : grid.edge(i).vertex)
      if (met[v].size() != 2) ends[root(i)].push_back(v);
  }
  std::vector<stretch> sorted;
  for (const auto& [i, n] : length) {
    ends[i].resize(2, nothing);
    sorted.push_back(stretch_of(side(i, 0), side(i, 1), ends[i][0], ends[i][1], n));
  }
  std::sort(sorted.begin(), sorted.end());
  return sorted;
}

// The weighted squared error of the polynomials over two regions together, by elimination on normal equations.
long double error_of(const growth_plan& plan, const std::int32_t* region, std::int32_t a, std::int32_t b) {
  const std::int32_t n = plan.order + 1, m = plan.product_basis ? n * n : 2 * n - 1, all = m + plan.image->nmat;
  long double sums[16][20] = {}, term[20], error = 0.0L;
  for (std::int32_t p = 0; p < plan.rows() * plan.cols(); ++p) {
    const std::int32_t r = p / plan.cols(), c = p % plan.cols();
    const std::int32_t own = region[r / plan.grid_rows * plan.block_cols() + c / plan.grid_cols];
    if (own != a && own != b) continue;
    const long double x = 1.0L * c / plan.cols() - 0.5L, y = 1.0L * r / plan.rows() - 0.5L;
    for (std::int32_t i = 0; i < m; ++i)
      term[i] =
          plan.product_basis ? std::pow(x, i / n) * std::pow(y, i % n) : std::pow(i % 2 ? x : y, (i + 1) / 2);
    for (std::int32_t k = m; k < all; ++k) {
      term[k] = static_cast<const double*>(plan.image->mats[k - m].data)[p];
      error += plan.weights[k - m] * term[k] * term[k];
    }
    for (std::int32_t i = 0; i < m; ++i)
      for (std::int32_t k = 0; k < all; ++k) sums[i][k] += term[i] * term[k];
  }
  for (std::int32_t i = 0; i < m; ++i) {
    for (std::int32_t k = m; k < all; ++k) error -= plan.weights[k - m] * sums[i][k] * sums[i][k] / sums[i][i];
    for (std::int32_t k = m - 1; k > i; --k)
      for (std::int32_t j = all - 1; j >= i; --j) sums[k][j] -= sums[k][i] / sums[i][i] * sums[i][j];
  }
  return error;
}

// Merges to two regions; after each of some merges holds all edges against what is found afresh.
void follow(const growth_plan& plan, int every, bool costs) {
  region_growth growth(plan);
  boundary_graph grid;
  ASSERT_TRUE(growth.begin() == KORVO_ERR_OK && grid.make(plan) == KORVO_ERR_OK);
  const std::int32_t blocks = growth.region_count;
  std::vector<std::int32_t> map(static_cast<std::size_t>(blocks));
  std::int32_t* const region = map.data();
  for (int step = 0; growth.region_count > 2; ++step) {
    const boundary_edge& next = growth.graph.edge(growth.order.cheapest());
    const std::int32_t a = std::min(next.region[0], next.region[1]), length = growth.boundary_length;
    ASSERT_EQ(growth.merge(), KORVO_ERR_OK);
    ASSERT_TRUE(growth.graph.intact(a));
    EXPECT_EQ(growth.boundary_length + std::int64_t{growth.graph.edge(growth.order.cheapest()).length}, length);
    if ((step + 1) % every != 0 && growth.region_count > 2) continue;
    std::vector<stretch> edges;
    for (std::int32_t k = 0; k < blocks; ++k) region[k] = growth.id[k] == k ? k : region[growth.id[k]];
    for (std::int32_t k = 0; k < blocks; ++k)
      for (auto i = growth.graph.first_of(k); i != nothing; i = growth.graph.next_of(i, k)) {
        const boundary_edge& e = growth.graph.edge(i);
        if (e.region[0] != k) continue;
        edges.push_back(stretch_of(k, e.region[1], e.vertex[0], e.vertex[1], e.length));
        EXPECT_LE(growth.scale, growth.order.cost(i));
        if (!costs) continue;
        const auto error = [&](int x, int y) { return error_of(plan, region, e.region[x], e.region[y]); };
        const auto rise = static_cast<double>(error(0, 1) - error(0, 0) - error(1, 1));
        EXPECT_NEAR(growth.order.cost(i) * e.length, rise, (plan.order < 2 ? 1e-9 : 1e-7) * (1.0 + rise));
      }
    std::sort(edges.begin(), edges.end());
    ASSERT_TRUE(edges == stretches(grid, region)) << "after " << step + 1 << " merges";
    ASSERT_EQ(growth.order.count(), std::ssize(edges));
  }
}

TEST(RegionGrowing, KeepsOneEdgeAndItsCostForEachStretchOfBoundary) {
  for (const drawing what : {noise, rings, stripes})
    for (const bool product : {false, true}) {
      follow(picture(what, 12, 10).plan(0, product, 2, 2), 1, true);
      follow(picture(what, 9, 16, 3).plan(1, product, 3, 2), 1, true);
      follow(picture(what, 12, 15, 2).plan(2, product, 4, 3), 1, true);
      follow(picture(what, 2, 14).plan(1, product, 2, 2), 1, true);
    }
}

TEST(BoundaryGraph, StaysWholeFromSinglePixelsToTwoRegions) {
  for (const drawing what : {noise, flat, stripes, rings, checker}) {
    const std::int32_t size = what == noise || what == rings ? 256 : 99;
    follow(picture(what, 31, 23).plan(0, false, 1, 1), 20, false);
    follow(picture(what, size, size).plan(0, false, 1, 1), 30000, false);
  }
}

// The region that goes at each merge, in a sum: that of the lists of edges, kept and searched as stated.
TEST(RegionGrowing, MergesEqualsFirstInFirstOut) {
  const picture drawn(flat, 24, 17);
  region_growth growth(drawn.plan(0, false, 1, 1));
  std::int64_t sum = 0;
  for (code result = growth.begin(); growth.region_count > 2 && result == KORVO_ERR_OK;
       result = growth.merge()) {
    const boundary_edge& next = growth.graph.edge(growth.order.cheapest());
    sum = (sum * 31 + std::max(next.region[0], next.region[1])) % 1000003;
  }
  EXPECT_EQ(sum, 736370);
}

TEST(EdgeOrder, TakesTheLeastCostAndOfEqualsTheOldest) {
  constexpr double costs[] = {0.0, -0.0, 1.0, 2.0, HUGE_VAL, NAN};
  edge_order order;
  ASSERT_EQ(order.make(50), KORVO_ERR_OK);
  std::map<std::int32_t, std::tuple<bool, double, int>> twin;
  for (int step = 0; step < 5000; ++step) {
    const std::int32_t edge = step * 7919 % 50;
    const double cost = costs[step * 31 % 97 % 6];
    const bool there = twin.contains(edge), removed = there && step % 3 == 0;
    removed ? order.remove(edge) : there ? order.renew(edge, cost) : order.insert(edge, cost);
    twin[edge] = {std::isnan(cost), std::isnan(cost) ? 0.0 : cost, step};
    if (removed) twin.erase(edge);
    ASSERT_EQ(order.count(), std::ssize(twin));
    for (const auto& [other, key] : twin) ASSERT_LE(twin[order.cheapest()], key);
  }
}

struct single {
  code grow(std::int32_t order, std::int32_t grid, std::int32_t least, double most, void* host = nullptr) {
    const _univ_mat from = image.universal();
    _univ_mat fitted = from, edges = boundaries.universal(), places = labels.universal(), made{};
    const code result = imguniv_region_grow_klm(&from, order, 0, grid, grid, least, most, host, &fitted, &edges,
                                                &places, &made, &count, &scale);
    if (made.data) coefficients.assign(static_cast<double*>(made.data), static_cast<double*>(made.data) + 2);
    return (void)korvo_free(made.data), result;
  }
  u8_matrix image, boundaries = u8_matrix(image.nrow, image.ncol);
  s32_matrix labels = s32_matrix(image.nrow, image.ncol);
  std::vector<double> coefficients = {};
  std::int32_t count = 0;
  double scale = 0.0;
};

TEST(RegionGrowing, WritesWhatItFoundOverTheImage) {
  single run{u8_matrix(4, 4, {90, 90, 10, 10, 90, 90, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10})};
  ASSERT_EQ(run.grow(0, 2, 2, 0.0), KORVO_ERR_OK);
  EXPECT_EQ(run.count, 4);  // no cost is below a scale of 0
  ASSERT_EQ(run.grow(0, 2, 2, 1e9), KORVO_ERR_OK);
  EXPECT_EQ(run.count, 2);
  EXPECT_EQ(run.scale, 80.0 * 80.0 * 4.0 * 12.0 / 16.0 / 4.0);  // of the merge that was not made
  EXPECT_EQ(run.coefficients, (std::vector<double>{90, 10}));
  EXPECT_EQ(run.labels.elements(),
            s32_matrix(4, 4, {1, 1, 2, 2, 1, 1, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2}).elements());
  EXPECT_EQ(run.boundaries.elements(), u8_matrix(4, 4, {0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 1}).elements());
  expect_tallies_of([&](void* host) { return run.grow(0, 2, 3, 1e9, host); },
                    {{80.0 * 4 + 70, 80.0 * 4 + 70 + 120.0 * 4 + 100}, {30.0}, {6.0}});  // and the sorting
}

TEST(RegionGrowing, WrapsWhatOvershootsAByte) {
  single run{u8_matrix(4, 8)};
  for (std::int32_t r = 0; r < 4; ++r)
    run.image(r, 3) = run.image(r, 5) = run.image(r, 6) = run.image(r, 7) = 255;
  ASSERT_EQ(run.grow(1, 4, 2, 1.0), KORVO_ERR_OK);
  EXPECT_EQ(run.image(0, 0), 256 - 51);
  EXPECT_EQ(run.image(3, 7), 306 - 256);
}

TEST(RegionGrowing, JudgesANegativeCostByTheLastBandAlone) {
  picture drawn(flat, 5, 130, 2);
  std::fill_n(drawn.kept[0].data, 650, 1000.0);  // too fine for an order of 4: products round to below 0
  EXPECT_EQ(region_growth(drawn.plan(4, false, 5, 5)).begin(), KORVO_ERR_OK);
  std::swap(drawn.mats[0], drawn.mats[1]);
  EXPECT_EQ(region_growth(drawn.plan(4, false, 5, 5)).begin(), KORVO_ERR_ROUNDOFF);
}

TEST(RegionGrowing, RefusesOrdersAndWeightsThatCannotBe) {
  const picture drawn(noise, 256, 256, 2);
  const dbl_matrix weights(2, 1, {0.25, 0.75});
  const s32_matrix labels(256, 256);
  _univ_mat given = weights.universal(), to = labels.universal();
  const auto expect = [&](_korvo_errcode expected, std::int32_t order, std::uint8_t product,
                          double most = 1.0) {
    EXPECT_EQ(imgset_region_grow_klm(&drawn.set, &given, order, product, 128, 128, 2, most, nullptr, nullptr,
                                     nullptr, &to, nullptr, nullptr, nullptr),
              expected);
  };
  expect(KORVO_ERR_ILLEGAL_SIZE, INT32_MAX, 1);
  expect(KORVO_ERR_MALLOC, 127, 1);
  expect(KORVO_ERR_SINGULAR_MATRIX, 127, 0);
  expect(KORVO_ERR_ILLEGAL_VALUE, 0, 0, NAN);
  for (const double x : {-0.25, 0.2501, static_cast<double>(NAN)}) {
    weights(0, 0) = x;
    expect(KORVO_ERR_ILLEGAL_VALUE, 0, 0);
  }
  given.type = KORVO_FLOAT;
  expect(KORVO_ERR_ILLEGAL_TYPE, 0, 0);
}

}  // namespace

#include "korvos/classify/cls_gla.h"

#include <valarray>

#include "classify/cls_utnn.hpp"
#include "korvos/core/ut_rand.h"
#include "tests/support/all.hpp"

namespace {

using namespace korvo;
using numbers = std::vector<double>;

// Refines `from`, or grows a codebook.
_korvo_errcode run(const _univ_mat& in, const _univ_mat* from, const double (&by)[3], std::int32_t mode,
                   void* host, void* rand, _univ_mat* book, double* mean, _univ_mat* n, _univ_mat* each) {
  if (!from)
    return clsuniv_vector_quantizer_design_lbg(&in, by[0], by[1], by[2], mode, host, rand, book, mean, n, each);
  return clsuniv_vector_quantizer_design_gla(&in, from, by[0], by[1], by[2], mode, host, rand, book, mean, n,
                                             each);
}

// The same for outputs of `size` codewords: the code, the distortion, and of each cell the codeword, the
// population and the distortion.
numbers design(const _univ_mat& in, const dbl_matrix* from, std::int32_t size, std::int32_t mode,
               double scale = 0.5, void* host = nullptr) {
  _univ_mat book, n, each;
  void* rand = nullptr;
  numbers all = {-1.0, -1.0};
  EXPECT_EQ(korvo_rand_begin(&rand), KORVO_ERR_OK);
  EXPECT_EQ(matuniv_malloc(&book, size, in.ncol, KORVO_DOUBLE), KORVO_ERR_OK);
  EXPECT_EQ(matuniv_malloc(&n, size, 1, KORVO_SINT32), KORVO_ERR_OK);
  EXPECT_EQ(matuniv_malloc(&each, size, 1, KORVO_DOUBLE), KORVO_ERR_OK);
  const _univ_mat initial = from ? from->universal() : book;
  all[0] =
      run(in, from ? &initial : nullptr, {1e-9, scale, scale / 4}, mode, host, rand, &book, &all[1], &n, &each);
  for (std::int32_t k = 0; all[0] == 0 && k < book.nrow && n.nrow == book.nrow && each.nrow == n.nrow; ++k) {
    const double* const codeword = static_cast<double*>(book.data) + k * book.ncol;
    all.insert(all.end(), codeword, codeword + book.ncol);
    all.insert(all.end(), {1.0 * static_cast<int*>(n.data)[k], static_cast<double*>(each.data)[k]});
  }
  for (_univ_mat* mat : {&book, &n, &each}) (void)matuniv_free(mat);
  return (void)korvo_rand_end(rand), all;
}

using numerals = std::valarray<double>;
struct cell {
  numerals codeword, centroid{};
  int population = 0;
  double distortion = 0.0;
};
numerals row_of(const dbl_matrix& mat, std::int32_t i) {
  return {&mat(i, 0), static_cast<std::size_t>(mat.ncol)};
}

// The same by its definition: both designs are one loop, in which an iteration that settles may split.
numbers twin(const dbl_matrix& training, const dbl_matrix& from, std::size_t most) {
  std::vector<cell> cells;
  for (std::int32_t k = 0; k < from.nrow; ++k) cells.push_back({row_of(from, k)});
  void* rand = nullptr;
  EXPECT_EQ(korvo_rand_begin(&rand), KORVO_ERR_OK);
  double mean = 0.0, previous = 1e37;
  for (int retry = 0;;) {
    for (cell& c : cells) c = {c.codeword, 0.0 * c.codeword};
    mean = 0.0;
    for (std::int32_t i = 0; i < training.nrow; ++i) {
      const numerals x = row_of(training, i);
      const auto d = [&](const cell& c) { return numerals((c.codeword - x) * (c.codeword - x)).sum(); };
      cell& c = *std::ranges::min_element(cells, {}, d);
      mean += d(c), c.distortion += d(c), c.centroid += x, ++c.population;
    }
    mean /= training.nrow;
    for (cell& c : cells)
      if (c.population > 0) c.centroid /= c.population, c.distortion /= c.population;
    const auto empty = static_cast<std::size_t>(std::ranges::count(cells, 0, &cell::population));
    const bool settled = empty > 0 ? retry == 10 : (previous - mean) / mean < 1e-9;
    if (mean == 0 || (settled && (empty > 0 || cells.size() == most))) break;
    const auto order = [](const cell& c) { return std::pair(c.population > 0, c.distortion); };
    if (empty > 0) std::ranges::reverse(cells), std::ranges::stable_sort(cells, std::greater{}, order);
    const std::size_t occupied = cells.size() - empty;
    for (cell& c : cells) c.codeword = settled ? c.codeword : c.centroid;
    if (settled) cells.resize(std::min(2 * occupied, most));
    for (std::size_t i = occupied; i < cells.size(); ++i)
      for (double& x : cells[i].codeword = cells[i - occupied].codeword) {
        double u = 0.0, a = std::ldexp(0.5, -retry), b = a / 4;
        EXPECT_EQ(korvo_rand_uniform(rand, &u), KORVO_ERR_OK);
        x = std::abs(x) >= 0.9 * a ? x * (1 + u * b) : x < 0 ? x - u * a : x + u * a;
      }
    retry = empty > 0 ? retry + 1 : 0;
    previous = settled ? 1e37 : mean;
  }
  numbers all = {0.0, mean};
  for (const cell& c : cells) {
    if (c.population == 0) continue;
    all.insert(all.end(), begin(c.codeword), end(c.codeword));
    all.insert(all.end(), {1.0 * c.population, c.distortion});
  }
  return (void)korvo_rand_end(rand), all;
}

TEST(QuantiserDesign, FollowsItsDefinitionInEachModeAtEachLevel) {
  for (const auto& sizes : {std::array{1, 1, 1}, {50, 1, 7}, {200, 3, 33}, {97, 16, 18}, {30, 2, 40}}) {
    const std::int32_t count = sizes[0], width = sizes[1], size = sizes[2];
    const auto in = dbl_matrix::random(count, width, 1, -9, 9),
               from = dbl_matrix::random(size, width, 2, -9, 9);
    for (std::int32_t i = 0; i < in.nelem; ++i) in.data[i] = std::cbrt(in.data[i] + i);
    from(0, 0) = 1e6;  // near nothing
    const auto most = static_cast<std::size_t>(size);
    const numbers refined = twin(in, from, most), grown = twin(in, {1, width}, most);
    each_level([&] {
      for (const std::int32_t mode : {0, 1, 2}) {
        EXPECT_EQ(design(in.universal(), &from, size, mode), refined) << count << ", " << mode;
        EXPECT_EQ(design(in.universal(), nullptr, size, mode), grown) << count << ", " << mode;
      }
    });
  }
}

TEST(QuantiserDesign, EndsAsWorkedByHand) {
  constexpr double far = 1e19, big = 1e16;
  for (const std::int32_t mode : {0, 1, 2}) {
    using list = std::initializer_list<double>;
    const auto column = [](list from) { return dbl_matrix(static_cast<int>(from.size()), 1, from); };
    const auto refined = [=](list in, list from, double scale = 0.5, void* host = nullptr) {
      const dbl_matrix book = column(from);
      return design(column(in).universal(), &book, book.nrow, mode, scale, host);
    };
    EXPECT_EQ(design(u8_matrix(3, 1, 2).universal(), nullptr, 8, mode), (numbers{0, 0, 2, 3, 0}));
    EXPECT_EQ(refined({2, 2, 2}, {1, 7, 90}), (numbers{0, 0, 2, 3, 0}));
    // Of equal distances the lowest row, or the lowest norm; and a codeword where the range by norms ends.
    EXPECT_EQ(refined({1, 2, 3}, {3, 1}), mode == 0 ? (numbers{0, 0.5 / 3, 2.5, 2, 0.25, 1, 1, 0})
                                                    : (numbers{0, 0.5 / 3, 3, 1, 0, 1.5, 2, 0.25}));
    EXPECT_EQ(refined({1, 2, -0.5}, {2, -0.5}), (numbers{0, 0.5 / 3, 1.5, 2, 0.25, -0.5, 1, 0}));
    EXPECT_EQ(refined({far, -far}, {-far, far * (1 + 1e-9)}), (numbers{0, 0, -far, 1, 0, far, 1, 0}));
    EXPECT_EQ(refined({3, 5}, {3, NAN, 5}), (numbers{0, 0, 3, 1, 0, 5, 1, 0}));
    EXPECT_EQ(refined({big, big + 2, big + 2}, {big + 2})[0], KORVO_ERR_NOT_CONVERGING);  // the mean is rounded
    for (const double x : {far, double{NAN}}) EXPECT_EQ(refined({1, x}, {1, 7})[0], KORVO_ERR_OVERFLOW);
    // Perturbations too small to move a codeword: ten passes more, each a tally of its own, and the copy's.
    fake_host host;
    EXPECT_EQ(refined({1, 3}, {2, 100}, 1e-30, host.intrp_ptr()), (numbers{0, 1, 2, 2, 1}));
    EXPECT_EQ(host.polls(), 12);
  }
}

TEST(NearestSearch, GivesRowsAndNeedNotGiveCentroids) {
  for (const std::int32_t mode : {0, 1, 2}) {
    std::int32_t n[3], rows[3];
    double each[3], mean = 0.0;
    nearest_search search;
    EXPECT_EQ(search.make(mode, 3, 1), KORVO_ERR_OK);
    const dbl_matrix in(3, 1, {9, 1, 4}), book(3, 1, {4, 8, 0});
    EXPECT_EQ(search.pass(in, book, nullptr, {n, each, nullptr, rows}, &mean), KORVO_ERR_OK);
    EXPECT_EQ(std::vector<int>(rows, rows + 3), (std::vector<int>{1, 2, 0}));
  }
}

// Each fault is added to those that are found later.
TEST(QuantiserDesign, RefusesInOrder) {
  const dbl_matrix t(4, 3), c(4, 3), o(4, 3), d(4, 1);
  const s32_matrix counts(4, 1);
  _univ_mat in = t.universal(), initial = c.universal(), book = o.universal(), n = counts.universal(),
            each = d.universal();
  double scales[] = {1.0, 1.0, 1.0};
  std::int32_t mode = 2;
  const auto expect = [&](_korvo_errcode code) {
    for (const _univ_mat* from : {&initial, static_cast<_univ_mat*>(nullptr)})
      EXPECT_EQ(run(in, from, scales, mode, nullptr, nullptr, &book, nullptr, &n, &each), code);
  };
  for (void* const shared : {in.data, book.data, n.data}) each.data = shared, expect(KORVO_ERR_ILLEGAL_ADDRESS);
  for (void* const shared : {in.data, book.data}) n.data = shared, expect(KORVO_ERR_ILLEGAL_ADDRESS);
  for (const std::int32_t wrong : {-1, 3}) mode = wrong, expect(KORVO_ERR_ILLEGAL_VALUE);
  for (_univ_mat* column : {&each, &n}) {
    column->nrow = 2, column->ncol = 2, expect(KORVO_ERR_ILLEGAL_SIZE);
    column->type = KORVO_FLOAT, expect(KORVO_ERR_ILLEGAL_TYPE);
    column->nelem = 3, expect(KORVO_ERR_ILLEGAL_SIZE);
  }
  for (double& scale : scales)
    for (const double wrong : {0.0, -1.0, double{NAN}}) scale = wrong, expect(KORVO_ERR_ILLEGAL_VALUE);
  in.data = book.data, expect(KORVO_ERR_ILLEGAL_ADDRESS);
  in.nrow = 3, in.ncol = 4, expect(KORVO_ERR_ILLEGAL_SIZE);
  in.type = KORVO_DCOMPLEX, expect(KORVO_ERR_ILLEGAL_TYPE);
  in.type = KORVO_DOUBLE, book.type = KORVO_FLOAT, expect(KORVO_ERR_ILLEGAL_TYPE);
  book.nelem = 11, expect(KORVO_ERR_ILLEGAL_SIZE);
  in.data = nullptr, expect(KORVO_ERR_NULL_POINTER);
}

}  // namespace

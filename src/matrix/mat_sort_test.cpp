#include "korvos/matrix/mat_sort.h"

#include <algorithm>
#include <numeric>

#include "tests/support/all.hpp"

using namespace korvo;

namespace {

bool before(double x, double y) { return x < y || (x == x && y != y); }

std::vector<std::int32_t> stable_order(const dbl_matrix& in) {
  std::vector<std::int32_t> order(in.elements().size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(),
                   [&](std::int32_t i, std::int32_t j) { return before(in.data[i], in.data[j]); });
  return order;
}

// Many equal numbers, and some NaN.
dbl_matrix tied(std::int32_t rows, std::int32_t cols) {
  dbl_matrix in = dbl_matrix::random(rows, cols, 3, -6, 6);
  for (std::int32_t i = 5; i < in.nelem; i += 11) in.data[i] = NAN;
  return in;
}

}  // namespace

TEST(Sort, IndexIsThatOfAStableSort) {
  for (const auto& [rows, cols] : {std::pair{1, 1}, {1, 17}, {128, 128}, {1, 16385}, {97, 911}}) {
    const dbl_matrix in = tied(rows, cols);
    s32_matrix index(rows, cols);
    ASSERT_EQ(matdbl_sort_index_partial(&in, nullptr, nullptr, &index), KORVO_ERR_OK);
    EXPECT_EQ(index.elements(), stable_order(in));
  }
}

TEST(Sort, PartialIndexIsRightAtItsPlacesAndPartsTheRest) {
  const dbl_matrix in = tied(31, 37);
  const std::vector<std::int32_t> order = stable_order(in);
  s32_matrix index(31, 37);
  for (const auto& list : {std::vector{573.0}, {0, 1146}, {700, 3, 3, 4, 699, 12, 1000}}) {
    s32_matrix places(1, static_cast<std::int32_t>(list.size()));
    std::copy(list.begin(), list.end(), places.data);
    ASSERT_EQ(matdbl_sort_index_partial(&in, &places, nullptr, &index), KORVO_ERR_OK);
    for (const std::int32_t place : places.elements()) {
      const double x = in.data[index.data[place]];
      EXPECT_EQ(index.data[place], order[static_cast<std::size_t>(place)]);
      for (std::int32_t k = 0; k < in.nelem; ++k)
        EXPECT_FALSE(k < place ? before(x, in.data[index.data[k]]) : before(in.data[index.data[k]], x));
    }
    std::vector<std::int32_t> all = index.elements();
    std::sort(all.begin(), all.end());
    for (std::int32_t k = 0; k < in.nelem; ++k) ASSERT_EQ(all[static_cast<std::size_t>(k)], k);
  }
  for (const double beyond : {-1.0, 1147.0}) {
    const s32_matrix places(1, 1, {beyond});
    EXPECT_EQ(matdbl_sort_index_partial(&in, &places, nullptr, &index), KORVO_ERR_OUT_OF_BOUNDS);
  }
}

TEST(Sort, ElementsOfEveryRealTypeAscend) {
  each_record(real_records{}, []<class M> {
    const matrix<M> in = matrix<M>::random(13, 29, 4);
    matrix<M> out(13, 29);
    const _univ_mat from = in.universal();
    _univ_mat to = out.universal();
    ASSERT_EQ(matuniv_sort(&from, nullptr, &to), KORVO_ERR_OK);
    std::vector<element<M>> sorted = in.elements();
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(out.elements(), sorted);
  });
}

#include "korvos/segment/img_dist.h"

#include "tests/support/all.hpp"

using namespace korvo;

namespace {

double length(int metric, double rows, double cols) {
  rows = std::abs(rows), cols = std::abs(cols);
  if (metric == IMG_METRIC_CITY_BLOCK) return rows + cols;
  return metric == IMG_METRIC_CHESSBOARD ? std::max(rows, cols) : std::sqrt(rows * rows + cols * cols);
}

double nearest(const u8_matrix& image, int metric, int r, int c) {
  double best = 1e37;
  for (int i = 0; i < image.nrow; ++i)
    for (int j = 0; j < image.ncol; ++j)
      if (image(i, j) == 1) best = std::min(best, length(metric, i - r, j - c));
  return best;
}

}  // namespace

TEST(DistanceTransform, IsExactInEachMetric) {
  const std::pair<int, int> shapes[] = {{1, 1}, {1, 23}, {31, 1}, {17, 29}, {24, 9}};
  for (const auto& [rows, cols] : shapes)
    for (const unsigned rarity : {2U, 7U, 60U, 100000U})
      for (const int metric : {IMG_METRIC_EUCLIDEAN, IMG_METRIC_CITY_BLOCK, IMG_METRIC_CHESSBOARD}) {
        u8_matrix image(rows, cols);
        std::mt19937 engine(rarity);
        for (std::int32_t i = 0; i < image.nelem; ++i) image.data[i] = engine() % rarity == 0;
        dbl_matrix out(rows, cols);
        const _univ_mat from = image.universal();
        _univ_mat to = out.universal();
        ASSERT_EQ(imguniv_transform_distance(&from, metric, {{.u8 = 1}, KORVO_UINT8}, nullptr, &to),
                  KORVO_ERR_OK);
        for (int r = 0; r < rows; ++r)
          for (int c = 0; c < cols; ++c)
            ASSERT_EQ(out(r, c), nearest(image, metric, r, c)) << rows << 'x' << cols << " metric " << metric;
      }
}

TEST(DistanceTransform, TakesEachRealTypeAndNoNan) {
  each_record(real_records{}, []<class M> {
    const matrix<M> image(1, 3, {5, 7, 5});
    dbl_matrix out(1, 3);
    const _univ_mat from = image.universal();
    _univ_mat to = out.universal();
    _univ_scalar seven{{}, from.type};
    seven.value.*tag<M>::member = 7;
    EXPECT_EQ(imguniv_transform_distance(&from, 0, seven, nullptr, &to), KORVO_ERR_OK);
    EXPECT_TRUE(out(0, 0) == 1 && out(0, 1) == 0 && out(0, 2) == 1);
    if constexpr (std::is_same_v<M, _dbl_mat>) {
      image(0, 0) = NAN;
      EXPECT_EQ(imguniv_transform_distance(&from, 0, {{.dbl = NAN}, KORVO_DOUBLE}, nullptr, &to), KORVO_ERR_OK);
      EXPECT_EQ(out(0, 0), 1e37);
    }
  });
}

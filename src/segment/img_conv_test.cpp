#include "korvos/segment/img_conv.h"

#include "korvos/signal/sig_conv.h"
#include "tests/reference/correlate.hpp"
#include "tests/support/all.hpp"

namespace {

using namespace korvo;
using reference::sample;

TEST(CentredCorrelate, PutsTheExtraTapOfAnEvenKernelBefore) {
  const u8_matrix image(2, 2, {1, 2, 3, 4}), even(2, 2, {1, 3, 5, 7}), odd(1, 3, {1, 10, 50}), out(2, 2);
  const _univ_mat in = image.universal(), broken = {0, 1, 0, out.data, KORVO_UINT8};
  _univ_mat result = out.universal();
  const auto expect = [&](auto form, const _univ_mat& taps, const u8_matrix& expected) {
    EXPECT_EQ(form(nullptr, &broken, 9, nullptr, &result), KORVO_ERR_ILLEGAL_SIZE);  // the kernel comes first
    EXPECT_EQ(form(&in, &taps, SIG_BOUNDARY_CONTINUE, nullptr, &result), KORVO_ERR_OK);
    EXPECT_EQ(out.elements(), expected.elements());
  };
  expect(imguniv_correlate, even.universal(), {2, 2, {16, 26, 40, 50}});
  expect(imguniv_convolve, even.universal(), {2, 2, {16, 22, 24, 30}});
  expect(imguniv_correlate, odd.universal(), {2, 2, {111, 121, 233, 243}});
}

// Both statistics in the stated order. In the first column of a row the window has no one before it: 0 stands
// for what leaves it and for the statistics before, and changes no bit.
void local_twin(const dbl_matrix& image, std::int32_t wr, std::int32_t wc, std::int32_t boundary,
                dbl_matrix& means, dbl_matrix& variances) {
  const std::int32_t hc = wc / 2;
  for (std::int32_t r = 0; r < image.nrow; ++r)
    for (std::int32_t c = 0; c < image.ncol; ++c) {
      double s1 = 0.0, s2 = 0.0;
      for (std::int32_t i = r - wr / 2; i <= r + wr / 2; ++i)
        for (std::int32_t j = c == 0 ? -hc : c + hc; j <= c + hc; ++j) {
          const double x = sample<_dbl_mat>(image, i, j, boundary);
          const double y = c == 0 ? 0.0 : sample<_dbl_mat>(image, i, c - hc - 1, boundary);
          s1 += x - y;
          s2 += x * x - y * y;
        }
      const double before = c == 0 ? 0.0 : means(r, c - 1), variance = c == 0 ? 0.0 : variances(r, c - 1);
      const double mean = means(r, c) = s1 / (wr * wc) + before;
      variances(r, c) = s2 / (wr * wc) + variance + before * before - mean * mean;
    }
}

TEST(LocalStatistics, SumInOrderAtEachLevel) {
  constexpr int cases[][4] = {{1, 1, 1, 1},   {6, 9, 1, 1},     {6, 9, 1, 3},       {9, 150, 3, 5},
                              {13, 40, 5, 1}, {15, 300, 15, 9}, {11, 151, 11, 151}, {1, 30, 1, 29},
                              {90, 5, 83, 3}, {14, 17, 7, 17}};
  each_level([&] {
    for (const auto& [rows, cols, wr, wc] : cases)
      for (const std::int32_t boundary : {SIG_BOUNDARY_ZERO, SIG_BOUNDARY_CONTINUE}) {
        const auto image = dbl_matrix::random(rows, cols, 3, -20.0 / 3.0, 20.0);  // its sums round
        dbl_matrix means(rows, cols), variances(rows, cols);
        local_twin(image, wr, wc, boundary, means, variances);
        fenced<_dbl_mat> mean(rows, cols), variance(rows, cols);
        EXPECT_EQ(imgdbl_local_mean(&image, wr, wc, boundary, nullptr, &mean), KORVO_ERR_OK);
        EXPECT_EQ(imgdbl_local_variance(&image, wr, wc, boundary, nullptr, &variance), KORVO_ERR_OK);
        EXPECT_EQ(mean.elements(), means.elements()) << rows << "x" << cols << ", " << wr << "x" << wc;
        EXPECT_EQ(variance.elements(), variances.elements()) << rows << "x" << cols << ", " << wr << "x" << wc;
        EXPECT_TRUE(mean.fences_stand() && variance.fences_stand());
      }
  });
}

TEST(LocalStatistics, RefuseWindowsAndThenBoundariesWithTheFirstSum) {
  each_form<imgdbl_local_mean, imgdbl_local_variance>([]<auto form> {
    const dbl_matrix image(6, 5, 1.0);
    for (const std::int32_t boundary : {-1, 1, 2, 4}) {
      dbl_matrix out(6, 5, 7.0);
      for (const std::int32_t size : {-1, 0, 2, 7, INT32_MAX})
        for (const auto& [rows, cols] : {std::pair{1, size}, {size, 1}})
          EXPECT_EQ(form(&image, rows, cols, boundary, nullptr, &out), KORVO_ERR_ILLEGAL_SIZE);
      EXPECT_EQ(out(0, 0), 7.0);
      EXPECT_EQ(form(&image, 3, 5, boundary, nullptr, &out), KORVO_ERR_ILLEGAL_VALUE);
      EXPECT_TRUE(out(0, 0) == 0.0 && out(0, 1) == 7.0);
    }
  });
}

TEST(LocalStatistics, CostTheirRows) {
  const dbl_matrix image(11, 30);
  dbl_matrix out(11, 30);
  const auto expect = [&](auto form, double cost) {
    expect_tallies([&](void* host) { return form(&image, 5, 7, 0, host, &out); }, steps_of(11, cost));
  };
  expect(imgdbl_local_mean, (5 * 13.0 + 3.0) * 30 + 35 * 8.0 + 3.0);
  expect(imgdbl_local_variance, (5 * 15.0 + 8.0) * 30 + 35 * 8 + 6);
}

}  // namespace

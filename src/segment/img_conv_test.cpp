#include "korvos/segment/img_conv.h"

#include <gtest/gtest.h>

#include <cstring>

#include "korvos/signal/sig_conv.h"
#include "tests/reference/correlate.hpp"
#include "tests/support/costs.hpp"
#include "tests/support/fenced.hpp"
#include "tests/support/forms.hpp"
#include "tests/support/levels.hpp"

namespace {

using namespace korvo;
using reference::sample;

// Numbers whose sums round, so that their order shows.
dbl_matrix fractions(std::int32_t rows, std::int32_t cols) {
  auto mat = dbl_matrix::random(rows, cols, 3, -20.0, 60.0);
  for (std::int32_t i = 0; i < mat.nelem; ++i) mat.data[i] /= 3.0;
  return mat;
}

TEST(CentredCorrelate, PutsTheExtraTapOfAnEvenKernelBefore) {
  using bytes = std::vector<std::uint8_t>;
  const u8_matrix image(2, 2, {1, 2, 3, 4});
  const u8_matrix even(2, 2, {1, 3, 5, 7});
  const u8_matrix odd(1, 3, {1, 10, 50});
  const auto run = [&](auto form, const u8_matrix& kernel, std::int32_t boundary, std::int32_t rows) {
    u8_matrix out(rows, 2);
    const _univ_mat in = image.universal();
    const _univ_mat taps = kernel.universal();
    _univ_mat result = out.universal();
    EXPECT_EQ(form(&in, &taps, boundary, nullptr, &result), KORVO_ERR_OK);
    return out.elements();
  };
  EXPECT_EQ(run(imguniv_correlate, even, SIG_BOUNDARY_ZERO, 2), (bytes{7, 19, 24, 50}));
  EXPECT_EQ(run(imguniv_convolve, even, SIG_BOUNDARY_ZERO, 2), (bytes{1, 5, 8, 30}));
  EXPECT_EQ(run(imguniv_correlate, odd, SIG_BOUNDARY_CONTINUE, 1), (bytes{111, 121}));
  EXPECT_EQ(run(imguniv_convolve, odd, SIG_BOUNDARY_PERIODIC, 1), (bytes{112, 71}));
}

TEST(CentredCorrelate, ValidatesTheKernelFirst) {
  for (const auto form : {imguniv_convolve, imguniv_correlate}) {
    const dbl_matrix image(3, 3);
    _univ_mat in = image.universal();
    _univ_mat kernel = in;
    EXPECT_EQ(form(nullptr, nullptr, 0, nullptr, nullptr), KORVO_ERR_NULL_POINTER);
    kernel.ncol = 0;
    EXPECT_EQ(form(nullptr, &kernel, 0, nullptr, nullptr), KORVO_ERR_ILLEGAL_SIZE);
    kernel.type = KORVO_SINT8;
    EXPECT_EQ(form(nullptr, &kernel, 0, nullptr, nullptr), KORVO_ERR_ILLEGAL_TYPE);
    kernel = in;
    EXPECT_EQ(form(nullptr, &kernel, 0, nullptr, &in), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(form(&in, &kernel, 9, nullptr, &in), KORVO_ERR_ILLEGAL_ADDRESS);
    const dbl_matrix one(1, 1, 5.0);
    _univ_mat out = one.universal();
    EXPECT_EQ(form(&in, &kernel, 9, nullptr, &out), KORVO_ERR_ILLEGAL_VALUE);
    EXPECT_EQ(one(0, 0), 0.0);
  }
}

// Both statistics word for word, pixel after pixel.
void local_twin(const dbl_matrix& image, std::int32_t wr, std::int32_t wc, std::int32_t boundary,
                dbl_matrix& means, dbl_matrix& variances) {
  const std::int32_t hr = wr / 2;
  const std::int32_t hc = wc / 2;
  const double n = wr * wc;
  for (std::int32_t r = 0; r < image.nrow; ++r) {
    double s1 = 0.0;
    double s2 = 0.0;
    for (std::int32_t i = r - hr; i <= r + hr; ++i)
      for (std::int32_t j = -hc; j <= hc; ++j) {
        const double x = sample<_dbl_mat>(image, i, j, boundary);
        s1 += x;
        s2 += x * x;
      }
    means(r, 0) = s1 / n;
    variances(r, 0) = s2 / n - means(r, 0) * means(r, 0);
    for (std::int32_t c = 1; c < image.ncol; ++c) {
      double d1 = 0.0;
      double d2 = 0.0;
      for (std::int32_t i = r - hr; i <= r + hr; ++i) {
        const double x = sample<_dbl_mat>(image, i, c + hc, boundary);
        const double y = sample<_dbl_mat>(image, i, c - hc - 1, boundary);
        d1 += x - y;
        d2 += x * x - y * y;
      }
      const double before = means(r, c - 1);
      const double mean = means(r, c) = d1 / n + before;
      variances(r, c) = d2 / n + variances(r, c - 1) + before * before - mean * mean;
    }
  }
}

TEST(LocalStatistics, SumInOrderAtEachLevel) {
  constexpr int cases[][4] = {{1, 1, 1, 1},   {6, 9, 1, 1},     {6, 9, 1, 3},       {9, 150, 3, 5},
                              {13, 40, 5, 1}, {15, 300, 15, 9}, {11, 151, 11, 151}, {1, 30, 1, 29},
                              {90, 5, 83, 3}, {14, 17, 7, 17}};
  each_level([&] {
    for (const auto& [rows, cols, wr, wc] : cases)
      for (const std::int32_t boundary : {SIG_BOUNDARY_ZERO, SIG_BOUNDARY_CONTINUE}) {
        const auto image = fractions(rows, cols);
        dbl_matrix means(rows, cols);
        dbl_matrix variances(rows, cols);
        local_twin(image, wr, wc, boundary, means, variances);
        fenced<_dbl_mat> out(rows, cols);
        EXPECT_EQ(imgdbl_local_mean(&image, wr, wc, boundary, nullptr, &out), KORVO_ERR_OK);
        EXPECT_EQ(out.elements(), means.elements()) << rows << "x" << cols << ", " << wr << "x" << wc;
        EXPECT_EQ(imgdbl_local_variance(&image, wr, wc, boundary, nullptr, &out), KORVO_ERR_OK);
        EXPECT_EQ(out.elements(), variances.elements()) << rows << "x" << cols << ", " << wr << "x" << wc;
        EXPECT_TRUE(out.fences_stand());
      }
  });
}

TEST(LocalStatistics, CountZerosOutsideAndContinueConstants) {
  const dbl_matrix image(9, 9, 4.0);
  dbl_matrix out(9, 9);
  EXPECT_EQ(imgdbl_local_mean(&image, 9, 9, SIG_BOUNDARY_ZERO, nullptr, &out), KORVO_ERR_OK);
  EXPECT_DOUBLE_EQ(out(0, 0), 4.0 * 25 / 81);
  EXPECT_DOUBLE_EQ(out(4, 4), 4.0);
  EXPECT_DOUBLE_EQ(out(8, 8), 4.0 * 25 / 81);
  EXPECT_EQ(imgdbl_local_mean(&image, 3, 5, SIG_BOUNDARY_CONTINUE, nullptr, &out), KORVO_ERR_OK);
  EXPECT_EQ(out.elements(), image.elements());
}

TEST(LocalStatistics, RefuseInOrder) {
  each_form<imgdbl_local_mean, imgdbl_local_variance>([]<auto form> {
    const dbl_matrix image(6, 5, 1.0);
    dbl_matrix out(6, 5, 7.0);
    dbl_matrix other(5, 6);
    _dbl_mat same = image;
    _dbl_mat broken = out;
    broken.nelem = 0;
    EXPECT_EQ(form(nullptr, 2, 2, 9, nullptr, &broken), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(form(&image, 2, 2, 9, nullptr, &broken), KORVO_ERR_ILLEGAL_SIZE);
    same.nrow = 1;
    same.nelem = 5;
    EXPECT_EQ(form(&image, 2, 2, 9, nullptr, &same), KORVO_ERR_ILLEGAL_SIZE);
    same = image;
    EXPECT_EQ(form(&image, 2, 2, 9, nullptr, &same), KORVO_ERR_ILLEGAL_ADDRESS);
    for (const std::int32_t size : {-3, -1, 0, 2, 4, 7, INT32_MIN, INT32_MAX}) {
      EXPECT_EQ(form(&image, size, 1, 9, nullptr, &out), KORVO_ERR_ILLEGAL_SIZE) << size;
      EXPECT_EQ(form(&image, 1, size, 9, nullptr, &out), KORVO_ERR_ILLEGAL_SIZE) << size;
    }
    EXPECT_EQ(out(0, 0), 7.0);
    for (const std::int32_t boundary : {-1, 1, 2, 4}) {
      out(0, 0) = 7.0;
      EXPECT_EQ(form(&image, 3, 5, boundary, nullptr, &out), KORVO_ERR_ILLEGAL_VALUE);
      EXPECT_EQ(out(0, 0), 0.0);
      EXPECT_EQ(out(0, 1), 7.0);
    }
  });
  for (const auto form : {imguniv_local_mean, imguniv_local_variance}) {
    const dbl_matrix image(3, 3);
    const _univ_mat in = image.universal();
    _univ_mat bytes = in;
    bytes.type = KORVO_UINT8;
    EXPECT_EQ(form(nullptr, 2, 2, 9, nullptr, &bytes), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(form(&bytes, 2, 2, 9, nullptr, nullptr), KORVO_ERR_NULL_POINTER);
    _univ_mat out = in;
    EXPECT_EQ(form(&bytes, 2, 2, 9, nullptr, &bytes), KORVO_ERR_ILLEGAL_TYPE);
    EXPECT_EQ(form(&in, 2, 2, 9, nullptr, &bytes), KORVO_ERR_ILLEGAL_TYPE);
    EXPECT_EQ(form(&in, 1, 1, 0, nullptr, &out), KORVO_ERR_ILLEGAL_ADDRESS);
  }
}

TEST(LocalStatistics, CostTheirRowsAndStopAfterOne) {
  const auto image = fractions(11, 30);
  dbl_matrix whole(11, 30);
  const auto check = [&](auto form, double cost) {
    const auto run = [&](void* intrp_ptr, dbl_matrix& out) {
      return form(&image, 5, 7, SIG_BOUNDARY_ZERO, intrp_ptr, &out);
    };
    expect_tallies([&](void* intrp_ptr) { return run(intrp_ptr, whole); }, steps_of(11, cost));
    const threshold every_seventh_row(6.5 * cost);
    fake_host host(2);
    dbl_matrix stopped(11, 30, 77.0);
    EXPECT_EQ(run(host.intrp_ptr(), stopped), KORVO_ERR_INTERRUPT);
    for (std::int32_t i = 0; i < whole.nelem; ++i)
      ASSERT_EQ(stopped.data[i], i < 7 * 30 ? whole.data[i] : 77.0) << i;
  };
  check(imgdbl_local_mean, (5 * 13.0 + 3.0) * 30 + 35 * 8.0 + 3.0);
  check(imgdbl_local_variance, (5 * 15.0 + 8.0) * 30 + 35 * 8 + 6);
}

}  // namespace

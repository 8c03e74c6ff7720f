#include "korvos/segment/img_cany.h"

#include "tests/support/all.hpp"

namespace {

using namespace korvo;

template <class M, class R>
_korvo_errcode hysteresis(const matrix<M>& image, double low, double high, double value, const matrix<R>& out,
                          void* host = nullptr) {
  _univ_mat in = image.universal(), to = out.universal();
  _univ_scalar edge = {{}, tag<R>::type}, background = edge;
  edge.value.*tag<R>::member = as_element<element<R>>(value);
  background.value.*tag<R>::member = as_element<element<R>>(3);
  return imguniv_threshold_hysteresis(&in, low, high, edge, background, host, &to);
}

TEST(DerivativeOfGaussian, AnswersAnImpulseHalfAPixelOffByEvenKernels) {
  for (const auto& [sigma, half] : {std::pair{0.25, 2}, {0.5, 2}, {1.0, 2}, {1.7, 4}}) {
    const dbl_matrix image(17, 18, 1.0), row(17, 18), column(17, 18);
    image(8, 9) = 2.0;
    _univ_mat in = image.universal(), to_row = row.universal(), to_column = column.universal();
    EXPECT_EQ(imguniv_filter_derivative_of_gaussian(&in, sigma, nullptr, &to_row, &to_column), KORVO_ERR_OK);
    for (int i = 0; i < image.nelem; ++i) {
      const double y = (i - i % 18) / 18.0 - 8.5, x = i % 18 - 9.5, squares = x * x + y * y;
      const double size = std::exp(-squares / (2 * sigma * sigma)) / (6.283185307179586 * std::pow(sigma, 4));
      const double g = std::max(std::abs(y), std::abs(x)) < half ? size : 0.0;
      EXPECT_TRUE(std::abs(row.data[i] + g * y) < 1e-13 && std::abs(column.data[i] + g * x) < 1e-13) << sigma;
    }
  }
}

double suppressed(const dbl_matrix& gy, const dbl_matrix& gx, int r, int c) {
  const auto m = [&](int i, int j) { return std::sqrt(gy(i, j) * gy(i, j) + gx(i, j) * gx(i, j)); };
  if (r == 0 || c == 0 || r == gy.nrow - 1 || c == gy.ncol - 1) return 0.0;
  const double y = gy(r, c), x = gx(r, c), x_size = std::abs(x), y_size = std::abs(y);
  const double t = x_size <= y_size ? x / y : y / x, a = std::abs(t);
  const int s = (t > 0.0) - (t < 0.0), by_rows = x_size <= y_size;
  bool lower = !(x_size > 1e-08 || y_size > 1e-08);
  for (const int way : {1, -1}) {
    const double next = m(r + way * by_rows, c + way * (1 - by_rows));
    lower |= m(r, c) < (1.0 - a) * next + a * m(r + way * (by_rows ? 1 : s), c + way * (by_rows ? s : 1));
  }
  return lower ? 0.0 : m(r, c);
}

TEST(NonmaximaSuppression, KeepsWhatTheDefinitionKeepsAlsoAPlateauAndCostsItsInnerRows) {
  constexpr double values[] = {-2.0, -1.0, -0.5, -0.0, 0.0, 0.75, 1.0, 2.5, 1e-08, 1.1e-08, HUGE_VAL, NAN};
  for (const auto& [rows, cols, kind] : {std::array{1, 9, 12}, {6, 2, 12}, {17, 61, 8}, {23, 40, 12}}) {
    const auto gy = dbl_matrix::random(rows, cols, 3, 0, kind), gx = dbl_matrix::random(rows, cols, 4, 0, kind);
    for (double* const x : {gy.data, gx.data})
      for (int i = 0; i < gy.nelem; ++i) x[i] = values[static_cast<int>(x[i])];
    each_level([&] {
      dbl_matrix out(gy.nrow, gy.ncol, 7.0);
      EXPECT_EQ(imgdbl_edge_nonmaxima_suppress(&gy, &gx, nullptr, &out), KORVO_ERR_OK);
      for (int i = 0; i < out.nelem; ++i) {
        const double twin = suppressed(gy, gx, i / out.ncol, i % out.ncol);
        EXPECT_TRUE(out.data[i] == twin || (std::isnan(out.data[i]) && std::isnan(twin))) << i;
      }
    });
  }
  dbl_matrix ridge(3, 6, {0, 1, 2, 2, 1, 0, 0, 1, 2, 2, 1, 0, 0, 1, 2, 2, 1, 0}), out(3, 6);  // for both
  const auto suppress = [&](void* host) { return imgdbl_edge_nonmaxima_suppress(&ridge, &ridge, host, &out); };
  expect_tallies(suppress, {135, 255});
  EXPECT_TRUE(out(1, 1) == 0.0 && out(1, 2) == std::sqrt(8.0) && out(1, 3) == out(1, 2) && out(1, 4) == 0.0);
}

TEST(Hysteresis, KeepsComponentsWithAStrongPixelForEachPairOfTypes) {
  const auto expect = [](const auto& image, double low, double high, const auto& expected) {
    const std::remove_cvref_t<decltype(expected)> out(expected.nrow, expected.ncol);
    EXPECT_EQ(hysteresis(image, low, high, 7, out), KORVO_ERR_OK);
    EXPECT_EQ(out.elements(), expected.elements()) << low << ", " << high;
  };
  each_record(real_records{}, [&]<class M> {
    each_record(records<_u8_mat, _u16_mat, _u32_mat, _s16_mat, _s32_mat, _dbl_mat>{}, [&]<class R> {
      const matrix<M> image(3, 6, {6, 4, 4, 4, 8, 0, 4, 5, 4, 4, 4, 4, 4, 4, 9, 4, 8, 4});
      expect(image, 4, 9, matrix<R>(3, 6, {7, 3, 3, 3, 3, 3, 3, 7, 3, 3, 3, 3, 3, 3, 7, 3, 3, 3}));
      expect(image, 4.5, 8, matrix<R>(3, 6, {7, 3, 3, 3, 7, 3, 3, 7, 3, 3, 3, 3, 3, 3, 7, 3, 7, 3}));
      expect(image, 9, 9, matrix<R>(3, 6, 3));
    });
  });
  expect(dbl_matrix(1, 5, {-2e37, 9, 4, NAN, 9}), 4, 9, u8_matrix(1, 5, {7, 7, 3, 7, 7}));
  expect(flt_matrix(1, 1, 99.7F), 50, 99.7, u8_matrix(1, 1, 7));  // a float that is less than 99.7
}

TEST(Hysteresis, LooksAtItsValuesBeforeSizesAndForLabelsLastAndCostsTwoPasses) {
  const auto image = dbl_matrix::random(4, 9, 5);
  EXPECT_EQ(hysteresis(image, 3, 2, 3, cpx_matrix(4, 8)), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(hysteresis(image, 3, 2, 7, flt_matrix(4, 9)), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(hysteresis(image, 1, 2, 7, flt_matrix(4, 9)), KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(hysteresis(cpx_matrix(4, 9), 1, 2, 7, image), KORVO_ERR_ILLEGAL_TYPE);
  expect_tallies_of([&](void* host) { return hysteresis(image, 20, 40, 7, u8_matrix(4, 9), host); },
                    {{108}, {45, 945, 1845, 2745, 2781, 2817}, {144, 252}});
}

TEST(Canny, IsItsStagesAndFindsNothingOnAFlatImage) {
  for (const double most : {9.0, 250.0}) {
    const auto image = u8_matrix::random(31, 27, 8, 9.0, most);
    const dbl_matrix row(31, 27), column(31, 27), thin(31, 27), staged(31, 27);
    _univ_mat in = image.universal(), y = row.universal(), x = column.universal(), m = thin.universal();
    const _univ_scalar edge = {{.u8 = 7}, KORVO_UINT8}, background = {{.u8 = 3}, KORVO_UINT8};
    EXPECT_EQ(imguniv_filter_derivative_of_gaussian(&in, 1.5, nullptr, &y, &x), KORVO_ERR_OK);
    EXPECT_EQ(imguniv_edge_nonmaxima_suppress(&y, &x, nullptr, &m), KORVO_ERR_OK);
    EXPECT_EQ(hysteresis(thin, 4, 9, 7, staged), KORVO_ERR_OK);
    EXPECT_EQ(imguniv_edge_canny(&in, 1.5, 4, 9, edge, background, nullptr, &in), KORVO_ERR_OK);  // in place
    EXPECT_TRUE(std::equal(image.data, image.data + image.nelem, staged.data));
    EXPECT_EQ(std::count(image.data, image.data + image.nelem, 7) > 40, most > 9.0);
  }
}

}  // namespace

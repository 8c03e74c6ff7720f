#include "korvos/image/img_morp.h"

#include "tests/support/all.hpp"

namespace {

using namespace korvo;

#define FORMS(tag) img##tag##_binary_erode, img##tag##_binary_dilate

// The definitions: an erosion looks at pixels, a dilation paints them. Foreground 1, background 2.
template <class M>
matrix<M> twin(bool dilates, const M& image, const _u8_mat& by, std::int64_t p, std::int64_t q) {
  matrix<M> out(image.nrow, image.ncol, as_element<element<M>>(dilates ? 2 : 1));
  for (std::int32_t x = 0; x < image.nelem; ++x)
    for (std::int32_t k = 0; k < by.nelem; ++k) {
      const std::int64_t row = x / image.ncol - p + k / by.ncol, col = x % image.ncol - q + k % by.ncol;
      const bool inside = row >= 0 && row < image.nrow && col >= 0 && col < image.ncol;
      if (dilates && by.data[k] && inside && image.data[x] == 1) out.data[row * image.ncol + col] = 1;
      if (!dilates && by.data[k] && !(inside && image.data[row * image.ncol + col] == 1)) out.data[x] = 2;
    }
  return out;
}

// 0, 1, 2 and most often `common`.
template <class M>
matrix<M> image_of(std::int32_t rows, std::int32_t cols, int common) {
  auto image = matrix<M>::random(rows, cols, 1);
  for (std::int32_t k = 0; k < image.nelem; ++k)
    image.data[k] = as_element<element<M>>(image.data[k] >= 3 ? common : int(image.data[k]));
  return image;
}

template <auto... forms>
void expect_twins(std::int32_t rows, std::int32_t cols, const u8_matrix& by, std::int32_t p, std::int32_t q) {
  bool dilates = true;  // erosions and dilations by turns
  each_form<forms...>([&]<auto form> {
    using M = record_of<form>;
    dilates = !dilates;
    const auto image = image_of<M>(rows, cols, dilates ? 0 : 1);
    fenced<M> out(rows, cols);
    ASSERT_EQ(form(&image, &by, p, q, 1, 2, nullptr, &out), KORVO_ERR_OK);
    ASSERT_TRUE(same_bits<M>(out, twin<M>(dilates, image, by, p, q)) && out.fences_stand()) << p << ", " << q;
  });
}

TEST(BinaryMorphology, FollowsItsDefinitionForEveryElementAndFarOrigins) {
  for (int pattern = 0; pattern < 512; ++pattern) {
    u8_matrix by(3, 3);
    for (int k = 0; k < 9; ++k) by.data[k] = static_cast<std::uint8_t>(pattern >> k & 1);
    expect_twins<FORMS(u8)>(9, 70, by, pattern % 4, 1);
  }
  each_level([&] {
    expect_twins<FORMS(u8), FORMS(u16), FORMS(s32), FORMS(dbl)>(41, 150, u8_matrix(2, 9, 5), 1, 4);
    expect_twins<FORMS(u8)>(7, 5, image_of<_u8_mat>(12, 40, 0), 5, 20);
    expect_twins<FORMS(u8)>(34, 530, image_of<_u8_mat>(35, 5, 0), 20, 1);  // parts, tiles
    expect_twins<FORMS(u8)>(3, 530, u8_matrix(35, 34, 1), 17, 17);
    for (const int p : {-3, INT32_MIN, INT32_MAX}) expect_twins<FORMS(u8)>(40, 70, u8_matrix(3, 70, 1), p, p);
  });
}

TEST(BinaryMorphology, CostsTheSizeOfTheElementAndBeginsAnErosionWithIt) {
  u8_matrix image(40, 30), by(3, 5), out(40, 30);
  std::vector<double> erosion = steps_of(40, 58.0 * 30);
  for (double& tally : erosion) tally += 15.0;
  expect_tallies([&](void* h) { return imgu8_binary_erode(&image, &by, 1, 1, 1, 0, h, &out); }, erosion);
  expect_tallies([&](void* h) { return imgu8_binary_dilate(&image, &by, 1, 1, 1, 0, h, &out); },
                 steps_of(40, 56.0 * 30), {2.0 * 40 * 30});
}

TEST(BinaryOpening, ComposesTheStepsAtOriginZeroAndRefusesTheImageItself) {
  const auto image = image_of<_dbl_mat>(20, 30, 1), result = image;
  const u8_matrix element(2, 3, 1);
  const _univ_scalar one{{.dbl = 1.0}, KORVO_DOUBLE}, two{{.dbl = 2.0}, KORVO_DOUBLE};
  _univ_mat in = image.universal(), by = element.universal(), out = result.universal();
  for (const auto open : {imguniv_binary_open, imguniv_binary_close}) {
    const bool closes = open == imguniv_binary_close;
    const auto first = twin<_dbl_mat>(closes, image, element, 0, 0);
    EXPECT_EQ(open(&in, &by, one, two, nullptr, &out), KORVO_ERR_OK);
    EXPECT_TRUE(same_bits<_dbl_mat>(result, twin<_dbl_mat>(!closes, first, element, 0, 0)));
    EXPECT_EQ(open(&in, nullptr, one, two, nullptr, &in), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(open(&in, &by, one, one, nullptr, &in), KORVO_ERR_ILLEGAL_ADDRESS);
  }
  in.type = KORVO_UINT32;
  EXPECT_EQ(imguniv_binary_open(&in, &by, one, two, nullptr, &out), KORVO_ERR_ILLEGAL_TYPE);
}

}  // namespace

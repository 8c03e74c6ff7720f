#include "korvos/image/img_gmor.h"

#include "core/arithmetic.hpp"
#include "tests/support/all.hpp"

namespace {

using namespace korvo;

#define FORMS(tag) img##tag##_grayscale_erode, img##tag##_grayscale_dilate

// The stated loop.
template <class M>
matrix<M> twin(bool dilates, const M& in, const M& by, std::int64_t p, std::int64_t q, bool continues) {
  matrix<M> out(in.nrow, in.ncol);
  for (std::int64_t x = 0; x < in.nelem; ++x)
    for (std::int64_t k = 0; k < by.nelem; ++k) {
      const std::int64_t i = k / by.ncol - p, j = k % by.ncol - q;
      const std::int64_t r = x / in.ncol + (dilates ? -i : i), c = x % in.ncol + (dilates ? -j : j);
      const std::int64_t row = std::clamp<std::int64_t>(r, 0, in.nrow - 1);
      const std::int64_t col = std::clamp<std::int64_t>(c, 0, in.ncol - 1);
      const auto sample = continues || (row == r && col == c) ? in.data[row * in.ncol + col] : element<M>{};
      const auto candidate = dilates ? sum(sample, by.data[k]) : difference(sample, by.data[k]);
      if (k == 0 || (dilates ? candidate > out.data[x] : candidate < out.data[x])) out.data[x] = candidate;
    }
  return out;
}

template <class M>
void expect_twins(const matrix<M>& image, const matrix<M>& by, std::int32_t p, std::int32_t q) {
  bool dilates = true;  // erosions and dilations by turns
  each_form<FORMS(u8), FORMS(u16), FORMS(s32), FORMS(dbl)>([&]<auto form> {
    dilates = !dilates;
    if constexpr (std::is_same_v<record_of<form>, M>)
      for (const std::int32_t mode : {0, 3}) {
        fenced<M> out(image.nrow, image.ncol);
        ASSERT_EQ(form(&image, &by, p, q, mode, nullptr, &out), KORVO_ERR_OK);
        ASSERT_TRUE(same_bits<M>(out, twin<M>(dilates, image, by, p, q, mode == 3)) && out.fences_stand());
      }
  });
}

TEST(GreyMorphology, FollowsItsDefinitionAndWrapsForEachFormAtEachLevel) {
  each_level([] {
    each_record(records<_u8_mat, _u16_mat, _s32_mat, _dbl_mat>{}, []<class M> {
      constexpr std::int64_t most = std::int64_t{1} << (8 * std::min<std::size_t>(4, sizeof(element<M>)));
      const double low = std::is_signed_v<element<M>> ? -0.5 * most : 0.0;
      const auto any = [=](int r, int c) { return matrix<M>::random(r, c, 1, low, low + most); };
      expect_twins<M>(any(34, 90), any(3, 5), 1, 2);
      expect_twins<M>(any(3, 5), any(35, 7), 30, -2);
      expect_twins<M>(any(2, 40), any(2, 45), -1, 50);
      for (const std::int32_t far : {INT32_MIN, INT32_MAX}) expect_twins<M>(any(4, 6), any(3, 2), far, far);
      expect_twins<M>(any(33, 530), matrix<M>(2, 3), 2, 3);  // flat ones
      expect_twins<M>(any(3, 70), matrix<M>(33, 35), 9, 33);
    });
  });
}

TEST(GreyMorphology, KeepsTheOrderThatNaNAndTheSignsOfZerosShow) {
  const auto image = dbl_matrix::random(5, 300, 3, 0.0, 3.0);
  for (std::int32_t k = 0; k < image.nelem; ++k) {  // left and right of tiles without
    if (k % 300 < 90 && k % 7 == 0) image.data[k] = k % 2 ? NAN : -0.0;
    if (k % 300 > 180) image.data[k] *= k % 2 ? 0.0 : -0.0;
  }
  each_level([&] {
    expect_twins<_dbl_mat>(image, dbl_matrix(3, 4), 1, 1);
    expect_twins<_dbl_mat>(image, dbl_matrix(3, 40, -0.0), 1, 7);
    expect_twins<_dbl_mat>(image, dbl_matrix::random(3, 2, 4, 0.0, 1.0), 1, 1);
  });
}

TEST(GreyMorphology, CostsEightForEachSampleAndOneMoreARow) {
  dbl_matrix in(40, 30), by(3, 5), to(40, 30);
  const auto call = [&](void* host) { return imgdbl_grayscale_dilate(&in, &by, 1, 1, 3, host, &to); };
  expect_tallies(call, steps_of(40, 3608.0));
}

TEST(UniversalGreyMorphology, TakesTheTypeOfTheResultAndItsTemporaryThatOfTheImage) {
  const u8_matrix bytes = u8_matrix::random(9, 11, 1), seven(2, 3, 7);
  const dbl_matrix between(9, 11), by(2, 3, 7.0), result(9, 11);
  _univ_mat in = bytes.universal(), function = seven.universal(), out = result.universal();
  for (const auto open : {imguniv_grayscale_open, imguniv_grayscale_close}) {
    const bool closes = open == imguniv_grayscale_close;
    EXPECT_EQ(open(&in, &function, 0, nullptr, &out), KORVO_ERR_OK);
    std::copy_n(twin<_u8_mat>(closes, bytes, seven, 0, 0, false).data, 99, between.data);  // wrapped
    EXPECT_TRUE(same_bits<_dbl_mat>(result, twin<_dbl_mat>(!closes, between, by, 0, 0, false)));
    EXPECT_EQ(open(&in, &function, 0, nullptr, nullptr), KORVO_ERR_NULL_POINTER);
  }
}

}  // namespace

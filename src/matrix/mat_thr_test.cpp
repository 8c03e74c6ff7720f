#include "korvos/matrix/mat_thr.h"

#include "tests/support/all.hpp"

using namespace korvo;

namespace {

constexpr double limits[][2] = {{3, 30},     {2.5, 30.25}, {-1e37, 7},     {-INFINITY, INFINITY},
                                {30, 3},     {-5.5, -0.5}, {7, 7},         {6.25, 6.75},
                                {-1e300, 0}, {0, 1e300},   {-3e9, -2.5e9}, {5e9, 6e9}};

_univ_scalar scalar(_korvo_type type, _univ_value value) { return {value, type}; }

}  // namespace

TEST(Threshold, MarksTheClosedRangeOfEveryRealType) {
  each_record(real_records{}, [&]<class M> {
    const matrix<M> in = matrix<M>::random(5, 1723, 1, std::is_signed_v<element<M>> ? -40 : 0, 50);
    s16_matrix out(5, 1723);
    const _univ_mat from = in.universal();
    _univ_mat to = out.universal();
    for (const auto& [low, high] : limits) {
      ASSERT_EQ(matuniv_threshold(&from, low, high, scalar(KORVO_SINT16, {.s16 = -3}),
                                  scalar(KORVO_SINT16, {.s16 = 4}), nullptr, &to),
                KORVO_ERR_OK);
      for (std::int32_t i = 0; i < in.nelem; ++i) {
        const auto x = static_cast<double>(in.data[i]);
        ASSERT_EQ(out.data[i], low <= x && x <= high ? 4 : -3) << x << " in " << low << " to " << high;
      }
    }
  });
}

TEST(Threshold, TakesNanAsOutsideAndWorksInPlace) {
  dbl_matrix image(1, 4, {NAN, 1, 2, 3});
  _univ_mat mat = image.universal();
  const _univ_scalar outside = scalar(KORVO_DOUBLE, {.dbl = -1}), inside = scalar(KORVO_DOUBLE, {.dbl = NAN});
  EXPECT_EQ(matuniv_threshold(&mat, -INFINITY, 2, outside, inside, nullptr, &mat), KORVO_ERR_OK);
  EXPECT_TRUE(image(0, 0) == -1 && image(0, 1) != image(0, 1) && image(0, 3) == -1);
  _univ_mat other = {1, 4, 4, mat.data, KORVO_UINT8};
  const _univ_scalar byte = scalar(KORVO_UINT8, {.u8 = 1});
  EXPECT_EQ(matuniv_threshold(&mat, 0, 1, byte, byte, nullptr, &other), KORVO_ERR_ILLEGAL_ADDRESS);
}

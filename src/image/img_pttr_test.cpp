#include "korvos/image/img_pttr.h"

#include <cfloat>

#include "tests/support/all.hpp"

using namespace korvo;

namespace {

// With more range and digits than the library has, so that the extreme limits take no care here. Where a limit
// is infinite the quotient is none, which comes to 0.
std::uint8_t grey_of(long double x, long double low, long double high) {
  const long double inside = std::floor((x - low) * 255 / (high - low) + 0.5L);
  return x <= low ? 0 : x > high ? 255 : inside >= 0 ? static_cast<std::uint8_t>(inside) : 0;
}

TEST(MapWindowLevel, FollowsItsFormulaForEachTypeAndLimitsOfAnySize) {
  const double numbers[] = {-INFINITY, -DBL_MAX, -3.25, 0,       5e-324,   1e-323, 2.75,
                            10,        30,       60,    DBL_MAX, INFINITY, NAN};
  const auto check = [&]<class M> {
    auto image = matrix<M>::random(5, 29, 3, std::is_signed_v<element<M>> ? -20.0 : 0.0, 60.0);
    for (std::int32_t i = 0; i < image.nelem && is_floating(tag<M>::type); i += 3)
      image.data[i] = static_cast<element<M>>(numbers[i % 13]);
    const u8_matrix grey(5, 29);
    const _univ_mat in = image.universal();
    _univ_mat out = grey.universal();
    for (const double low : numbers)
      for (const double high : numbers) {
        const auto result = low <= high ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_VALUE;
        ASSERT_EQ(imguniv_map_window_level(&in, low, high, nullptr, &out), result);
        for (std::int32_t i = 0; i < image.nelem && result == KORVO_ERR_OK; ++i)
          ASSERT_EQ(grey.data[i], grey_of(image.data[i], low, high))
              << image.data[i] << ": " << low << ", " << high;
      }
  };
  each_level([&] { each_record(records<_u8_mat, _u16_mat, _u32_mat, _s32_mat, _dbl_mat>{}, check); });
}

TEST(MapWindowLevel, PollsOnceAndWorksInPlaceOnBytes) {
  const u8_matrix grey(2, 2, {0, 10, 15, 20}), expected(2, 2, {0, 0, 128, 255});
  _univ_mat in = grey.universal(), out = in;
  const auto call = [&](void* host) { return imguniv_map_window_level(&in, 10.0, 20.0, host, &out); };
  EXPECT_EQ(call(nullptr), KORVO_ERR_OK);
  EXPECT_EQ(grey.elements(), expected.elements());
  expect_tallies(call, {5.0 * 4});
  for (const _korvo_type type : {KORVO_SINT8, KORVO_SINT16, KORVO_FLOAT, KORVO_DCOMPLEX}) {
    in.type = type;
    EXPECT_EQ(call(nullptr), KORVO_ERR_ILLEGAL_TYPE);
  }
}

}  // namespace

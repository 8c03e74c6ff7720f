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

// Each fault is met before all that were brought in earlier.
TEST(MapWindowLevel, RefusesInItsOrderPollsOnceAndWorksInPlaceOnBytes) {
  const dbl_matrix image(2, 2);
  const u8_matrix grey(2, 2, {0, 10, 15, 20}), expected(2, 2, {0, 0, 128, 255});
  _univ_mat in = image.universal(), out = grey.universal();
  const auto call = [&](double low, double high, void* intrp_ptr = nullptr) {
    return imguniv_map_window_level(&in, low, high, intrp_ptr, &out);
  };
  const auto refuse = [&](_korvo_errcode code) { EXPECT_EQ(call(NAN, NAN), code); };
  out.data = in.data, refuse(KORVO_ERR_ILLEGAL_ADDRESS);
  out.nrow = 1, out.ncol = 4, refuse(KORVO_ERR_ILLEGAL_SIZE);
  out.data = nullptr, refuse(KORVO_ERR_NULL_POINTER);
  in.nelem = 5, refuse(KORVO_ERR_ILLEGAL_SIZE);
  for (const _korvo_type type : {KORVO_SINT8, KORVO_SINT16, KORVO_FLOAT, KORVO_DCOMPLEX})
    in.type = type, refuse(KORVO_ERR_ILLEGAL_TYPE);
  in.type = KORVO_DOUBLE, out.type = KORVO_UINT16, refuse(KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(imguniv_map_window_level(nullptr, 0, 1, nullptr, &out), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(imguniv_map_window_level(&in, 0, 1, nullptr, nullptr), KORVO_ERR_NULL_POINTER);

  in = out = grey.universal();
  EXPECT_EQ(call(10, 20), KORVO_ERR_OK);
  EXPECT_EQ(grey.elements(), expected.elements());
  expect_tallies([&](void* intrp_ptr) { return call(0.0, 3.0, intrp_ptr); }, {5.0 * 4});
}

}  // namespace

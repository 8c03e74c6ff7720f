#include "korvos/image/img_pttr.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/support/costs.hpp"
#include "tests/support/levels.hpp"
#include "tests/support/matrix.hpp"

using namespace korvo;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double largest = std::numeric_limits<double>::max();

template <class M>
_korvo_errcode map(const matrix<M>& image, double low, double high, u8_matrix& grey) {
  const _univ_mat in = image.universal();
  _univ_mat out = grey.universal();
  return imguniv_map_window_level(&in, low, high, nullptr, &out);
}

std::vector<std::uint8_t> mapped(const dbl_matrix& image, double low, double high) {
  u8_matrix grey(image.nrow, image.ncol, 99);
  EXPECT_EQ(map(image, low, high, grey), KORVO_ERR_OK);
  return grey.elements();
}

using bytes = std::vector<std::uint8_t>;

TEST(MapWindowLevel, FollowsItsFormulaForEachType) {
  const double windows[][2] = {{10, 40}, {0, 50}, {-3.25, 17.5}, {30, 30}, {60, 70}};
  const auto check = [&]<class M> {
    const double least = std::is_signed_v<element<M>> ? -20.0 : 0.0;
    const auto image = matrix<M>::random(5, 29, 3, least, 60.0);
    u8_matrix grey(5, 29);
    for (const auto& [low, high] : windows) {
      ASSERT_EQ(map(image, low, high, grey), KORVO_ERR_OK);
      for (std::int32_t i = 0; i < image.nelem; ++i) {
        const double x = image.data[i];
        const double expected = x <= low    ? 0.0
                                : x >= high ? 255.0
                                            : std::floor((x - low) * 255 / (high - low) + 0.5);
        ASSERT_EQ(grey.data[i], expected) << x << " in " << low << ", " << high;
      }
    }
  };
  each_level([&] { each_record(records<_u8_mat, _u16_mat, _u32_mat, _s32_mat, _dbl_mat>{}, check); });
}

TEST(MapWindowLevel, IsAThresholdWhenTheLimitsAreOne) {
  const dbl_matrix image(1, 6, {-infinity, 2.5, 2.75, infinity, nan, 3.0});
  EXPECT_EQ(mapped(image, 2.75, 2.75), (bytes{0, 0, 0, 255, 0, 255}));
  EXPECT_EQ(mapped(image, infinity, infinity), (bytes{0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(mapped(image, -infinity, -infinity), (bytes{0, 255, 255, 255, 0, 255}));
}

TEST(MapWindowLevel, StaysInTheByteForLimitsOfAnySize) {
  const dbl_matrix image(1, 6, {-infinity, -largest, 0.0, largest, infinity, nan});
  EXPECT_EQ(mapped(image, -largest, largest), (bytes{0, 0, 128, 255, 255, 0}));
  EXPECT_EQ(mapped(image, -infinity, 0.0), (bytes{0, 0, 0, 255, 255, 0}));
  EXPECT_EQ(mapped(image, 0.0, infinity), (bytes{0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(mapped(image, -infinity, infinity), (bytes{0, 0, 0, 0, 0, 0}));
  // Next to each other: the quotient is the one rounding has left, never above 255.
  const dbl_matrix close(1, 2, {5e-324, 1e-323});
  EXPECT_EQ(mapped(close, 0.0, 1e-323), (bytes{128, 255}));
}

TEST(MapWindowLevel, RefusesInItsOrderPollsOnceAndWorksInPlaceOnBytes) {
  dbl_matrix image(2, 2, {1, 2, 3, 4});
  u8_matrix grey(2, 2);
  _univ_mat in = image.universal();
  _univ_mat out = grey.universal();
  const auto call = [&](double low, double high) {
    return imguniv_map_window_level(&in, low, high, nullptr, &out);
  };
  EXPECT_EQ(call(nan, 1.0), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(call(1.0, nan), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(call(1.0, 0.5), KORVO_ERR_ILLEGAL_VALUE);
  // Each fault is met before all that were brought in earlier.
  out.data = in.data;
  EXPECT_EQ(call(nan, nan), KORVO_ERR_ILLEGAL_ADDRESS);
  out.nrow = 1;
  out.ncol = 4;
  EXPECT_EQ(call(nan, nan), KORVO_ERR_ILLEGAL_SIZE);
  out.data = nullptr;
  EXPECT_EQ(call(nan, nan), KORVO_ERR_NULL_POINTER);
  in.nelem = 5;
  EXPECT_EQ(call(nan, nan), KORVO_ERR_ILLEGAL_SIZE);
  for (const _korvo_type other : {KORVO_SINT8, KORVO_SINT16, KORVO_FLOAT, KORVO_DCOMPLEX}) {
    in.type = other;
    EXPECT_EQ(call(nan, nan), KORVO_ERR_ILLEGAL_TYPE);
  }
  in.type = KORVO_DOUBLE;
  out.type = KORVO_UINT16;
  EXPECT_EQ(call(nan, nan), KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(imguniv_map_window_level(nullptr, 0, 1, nullptr, &out), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(imguniv_map_window_level(&in, 0, 1, nullptr, nullptr), KORVO_ERR_NULL_POINTER);

  out = grey.universal();
  in = image.universal();
  expect_tallies([&](void* intrp_ptr) { return imguniv_map_window_level(&in, 0.0, 3.0, intrp_ptr, &out); },
                 {5.0 * 4});

  u8_matrix bytes_in_place(1, 4, {0, 10, 15, 20});
  ASSERT_EQ(map(bytes_in_place, 10, 20, bytes_in_place), KORVO_ERR_OK);
  EXPECT_EQ(bytes_in_place.elements(), (bytes{0, 0, 128, 255}));
}

}  // namespace

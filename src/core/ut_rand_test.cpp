#include "korvos/core/ut_rand.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

double draw(void* state, _korvo_errcode (*next)(void*, double*)) {
  double value = 0.0;
  EXPECT_EQ(next(state, nullptr), KORVO_ERR_NULL_POINTER) << "and draws nothing";
  EXPECT_EQ(next(state, &value), state ? KORVO_ERR_OK : KORVO_ERR_NULL_POINTER);
  return value;
}

// The words of xoshiro256** seeded by SplitMix64, and numbers that rest on them, as another program computed
// them. A single normal number accepted or rejected wrongly would shift all that follow.
TEST(Rand, GivesTheNumbersOfTheNamedMethodsAndTheirMoments) {
  void *fresh = nullptr, *other = nullptr;  // drawing from one does not move the other
  ASSERT_FALSE(korvo_rand_begin(&fresh) || korvo_rand_begin(&other) || korvo_rand_set_seed(1, other));
  for (const uint64_t word : {0x29e60cec1609c414U, 0x0399f3d9f7b6106bU, 0xae39ca6a197b5e36U})
    EXPECT_EQ(draw(fresh, korvo_rand_uniform), std::ldexp(static_cast<double>(word >> 11), -53));
  EXPECT_EQ(draw(other, korvo_rand_normal), 0x1.e368961549833p-4);
  double sums[5] = {}, z = 0.0;
  for (int i = 1; i < 100000; ++i) {
    const double u = draw(fresh, korvo_rand_uniform);
    z = draw(other, korvo_rand_normal);
    const double terms[5] = {u, u * u, z, z * z, std::fabs(z) > 2.0 ? 1.0 : 0.0};
    for (int k = 0; k < 5; ++k) sums[k] += terms[k];
    ASSERT_TRUE(u >= 0.0 && u < 1.0);
  }
  EXPECT_EQ(z, -0x1.e2be45407e3d9p-4);
  const double expected[5] = {1.0 / 2.0, 1.0 / 3.0, 0.0, 1.0, std::erfc(std::sqrt(2.0))};
  for (int k = 0; k < 5; ++k) EXPECT_NEAR(sums[k] / 1e5, expected[k], 0.015) << k;
  EXPECT_FALSE(korvo_rand_end(fresh) || korvo_rand_end(other));
  for (auto* const next : {&korvo_rand_uniform, &korvo_rand_normal}) (void)draw(nullptr, next);
  EXPECT_EQ(korvo_rand_begin(nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(korvo_rand_set_seed(1, nullptr), KORVO_ERR_NULL_POINTER);
}

}  // namespace

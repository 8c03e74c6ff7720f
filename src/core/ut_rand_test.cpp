#include "korvos/core/ut_rand.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

class random_state {
 public:
  explicit random_state(uint32_t seed = 5489) {
    EXPECT_EQ(korvo_rand_begin(&state_), KORVO_ERR_OK);
    if (seed != 5489) (void)korvo_rand_set_seed(seed, state_);
  }
  random_state(const random_state&) = delete;
  random_state& operator=(const random_state&) = delete;
  ~random_state() { (void)korvo_rand_end(state_); }

  std::vector<double> draw(int count, _korvo_errcode (*next)(void*, double*)) {
    std::vector<double> numbers(static_cast<std::size_t>(count));
    for (double& x : numbers) EXPECT_EQ(next(state_, &x), KORVO_ERR_OK);
    return numbers;
  }

 private:
  void* state_ = nullptr;
};

// The words of xoshiro256** seeded by SplitMix64, and numbers that rest on them, as another program computed
// them. A single normal number accepted or rejected wrongly would shift all that follow.
TEST(Rand, GivesTheNumbersOfTheNamedMethods) {
  random_state fresh;
  random_state other(1);  // drawing from one does not move the other
  const auto first = fresh.draw(1, korvo_rand_uniform);
  const auto normal = other.draw(100000, korvo_rand_normal);
  const auto rest = fresh.draw(2, korvo_rand_uniform);
  EXPECT_EQ(first[0], std::ldexp(static_cast<double>(0x29e60cec1609c414U >> 11), -53));
  EXPECT_EQ(rest[0], std::ldexp(static_cast<double>(0x0399f3d9f7b6106bU >> 11), -53));
  EXPECT_EQ(rest[1], std::ldexp(static_cast<double>(0xae39ca6a197b5e36U >> 11), -53));
  EXPECT_EQ(normal[0], 0x1.e368961549833p-4);
  EXPECT_EQ(normal[1], -0x1.c042690cbca9fp-2);
  EXPECT_EQ(normal[99999], -0x1.e2be45407e3d9p-4);
}

TEST(Rand, HasTheMomentsOfItsDistributions) {
  random_state random(2);
  double sums[5] = {};
  for (const double u : random.draw(200000, korvo_rand_uniform)) {
    ASSERT_TRUE(u >= 0.0 && u < 1.0);
    sums[0] += u;
    sums[1] += u * u;
  }
  for (const double z : random.draw(200000, korvo_rand_normal)) {
    sums[2] += z;
    sums[3] += z * z;
    sums[4] += std::fabs(z) > 2.0 ? 1.0 : 0.0;
  }
  const double expected[5] = {1.0 / 2.0, 1.0 / 3.0, 0.0, 1.0, std::erfc(std::sqrt(2.0))};
  for (int k = 0; k < 5; ++k) EXPECT_NEAR(sums[k] / 200000, expected[k], 0.01) << k;
}

TEST(Rand, RefusesNull) {
  double value = 0.0;
  EXPECT_EQ(korvo_rand_begin(nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(korvo_rand_set_seed(1, nullptr), KORVO_ERR_NULL_POINTER);
  for (auto* const draw : {&korvo_rand_uniform, &korvo_rand_normal}) {
    EXPECT_EQ(draw(nullptr, &value), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(draw(&value, nullptr), KORVO_ERR_NULL_POINTER);
  }
}

}  // namespace

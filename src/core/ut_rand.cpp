// Random numbers: xoshiro256** behind uniform and normal numbers.
#include "korvos/core/ut_rand.h"

#include <bit>
#include <cmath>
#include <cstdint>

#include "core/code.hpp"
#include "korvos/core/ut_alloc.h"

namespace korvo {
namespace {

constexpr std::uint32_t default_seed = 5489;

struct generator {
  std::uint64_t state[4];
};

// SplitMix64, which spreads a small seed over the whole state.
void seed_generator(generator& random, std::uint64_t seed) {
  for (std::uint64_t& word : random.state) {
    seed += 0x9e3779b97f4a7c15U;
    std::uint64_t z = seed;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9U;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebU;
    word = z ^ (z >> 31);
  }
}

// xoshiro256**.
std::uint64_t next_word(generator& random) {
  std::uint64_t* const s = random.state;
  const std::uint64_t result = std::rotl(s[1] * 5, 7) * 9;
  const std::uint64_t t = s[1] << 17;
  s[2] ^= s[0];
  s[3] ^= s[1];
  s[1] ^= s[2];
  s[0] ^= s[3];
  s[2] ^= t;
  s[3] = std::rotl(s[3], 45);
  return result;
}

double next_uniform(generator& random) { return static_cast<double>(next_word(random) >> 11) * 0x1p-53; }

// The natural logarithm of x in (0, 1], from IEEE operations alone: ln x = e ln 2 + 2 artanh z with
// z = (m - 1) / (m + 1) and m in [0.5, 1). The mathematical library may differ between processors.
double natural_log(double x) {
  int exponent = 0;
  const double m = std::frexp(x, &exponent);
  const double z = (m - 1.0) / (m + 1.0);
  double series = 0.0;
  for (int k = 33; k >= 1; k -= 2) series = series * (z * z) + 1.0 / k;
  return exponent * 0.6931471805599453 + 2.0 * z * series;
}

// Ratio of uniforms (Kinderman and Monahan 1977); the quadratic bounds of Leva (1992) spare the logarithm.
double next_normal(generator& random) {
  for (;;) {
    const double u = 1.0 - next_uniform(random);  // in (0, 1]
    const double v = 1.7156 * (next_uniform(random) - 0.5);
    const double x = u - 0.449871;
    const double y = std::fabs(v) + 0.386595;
    const double q = x * x + y * (0.19600 * y - 0.25472 * x);
    const bool inside = q < 0.27597 || (q <= 0.27846 && v * v <= -4.0 * natural_log(u) * u * u);
    if (inside) return v / u;
  }
}

code draw(void* rand_ptr, double* value, double (*next)(generator&)) {
  if (!rand_ptr || !value) return KORVO_ERR_NULL_POINTER;
  *value = next(*static_cast<generator*>(rand_ptr));
  return KORVO_ERR_OK;
}

}  // namespace
}  // namespace korvo

extern "C" {

_korvo_errcode korvo_rand_begin(void** rand_ptr) {
  TRY(korvo_malloc(sizeof(korvo::generator), rand_ptr));
  return korvo_rand_set_seed(korvo::default_seed, *rand_ptr);
}

_korvo_errcode korvo_rand_end(void* rand_ptr) { return korvo_free(rand_ptr); }

_korvo_errcode korvo_rand_set_seed(uint32_t seed, void* rand_ptr) {
  if (!rand_ptr) return KORVO_ERR_NULL_POINTER;
  korvo::seed_generator(*static_cast<korvo::generator*>(rand_ptr), seed);
  return KORVO_ERR_OK;
}

_korvo_errcode korvo_rand_uniform(void* rand_ptr, double* value) {
  return korvo::draw(rand_ptr, value, korvo::next_uniform);
}

_korvo_errcode korvo_rand_normal(void* rand_ptr, double* value) {
  return korvo::draw(rand_ptr, value, korvo::next_normal);
}

}  // extern "C"

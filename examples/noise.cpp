// Random numbers, and value noise made of them.
#include "noise.hpp"

#include <cmath>
#include <cstddef>

namespace demo {

dice::dice(std::uint32_t seed) {
  check(korvo_rand_begin(&state_));
  (void)korvo_rand_set_seed(seed, state_);  // fails only without a state
}

double dice::uniform() {
  double value = 0.0;
  check(korvo_rand_uniform(state_, &value));
  return value;
}

double dice::normal() {
  double value = 0.0;
  check(korvo_rand_normal(state_, &value));
  return value;
}

noise::noise(std::uint32_t seed) : values_(static_cast<std::size_t>(period) * period) {
  dice throws(seed);
  for (double& value : values_) value = throws.uniform();
}

double noise::lattice(long x, long y) const {
  return values_[static_cast<std::size_t>((y & (period - 1)) * period + (x & (period - 1)))];
}

double noise::at(double x, double y) const {
  const double column = std::floor(x);
  const double row = std::floor(y);
  const auto ease = [](double t) { return t * t * (3.0 - 2.0 * t); };
  const double right = ease(x - column);
  const double down = ease(y - row);
  const long c = static_cast<long>(column);
  const long r = static_cast<long>(row);
  const double above = lattice(c, r) * (1.0 - right) + lattice(c + 1, r) * right;
  const double below = lattice(c, r + 1) * (1.0 - right) + lattice(c + 1, r + 1) * right;
  return above * (1.0 - down) + below * down;
}

double noise::layers(double x, double y, int count) const {
  double sum = 0.0;
  double strength = 1.0;
  double total = 0.0;
  for (int layer = 0; layer < count; ++layer) {
    sum += strength * at(x + 17.0 * layer, y + 31.0 * layer);  // apart, so that lattices do not coincide
    total += strength;
    strength *= 0.5;
    x *= 2.0;
    y *= 2.0;
  }
  return sum / total;
}

}  // namespace demo

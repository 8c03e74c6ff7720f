// Steps of 1, 2 or 5 times a power of ten.
#include "ticks.hpp"

#include <array>
#include <cmath>
#include <cstdio>

namespace demo {
namespace {

double round_step(double least) {
  const double ten = std::pow(10.0, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 5.0})
    if (factor * ten >= least * (1.0 - 1e-9)) return factor * ten;
  return 10.0 * ten;
}

std::string written(double value, double step) {
  const int decimals = step < 1.0 ? static_cast<int>(std::ceil(-std::log10(step) - 1e-9)) : 0;
  const bool is_short = decimals <= 4 && std::fabs(value) < 1e7;
  std::array<char, 32> text{};
  (void)std::snprintf(text.data(), text.size(), is_short ? "%.*f" : "%.*g", is_short ? decimals : 3, value);
  return text.data();
}

}  // namespace

std::vector<tick> ticks_of(const axis& values, double most) {
  const bool is_even = values.marks == scale::even;
  const double step = is_even ? round_step((values.high - values.low) / most) : 1.0;
  const double first = std::ceil(values.low / step - 1e-9);
  const double count = std::floor((values.high - first * step) / step + 1e-9);
  std::vector<tick> out;
  for (int i = 0; i <= count; ++i) {
    const double whole = first + i;
    const double at = whole == 0.0 ? 0.0 : whole * step;  // no -0
    out.push_back({at, is_even ? written(at, step) : written(std::exp2(at), std::exp2(at))});
  }
  return out;
}

}  // namespace demo

// Shades of even lightness, by way of a space in which distances are those that are seen (Ottosson 2020).
#include "colours.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace demo {
namespace {

constexpr std::size_t shades = 256;

std::uint8_t displayed(double light) {
  const double inside = std::clamp(light, 0.0, 1.0);
  const double curved = inside <= 0.0031308 ? 12.92 * inside : 1.055 * std::pow(inside, 1.0 / 2.4) - 0.055;
  return static_cast<std::uint8_t>(std::lround(255.0 * curved));
}

// Lightness and chroma from 0, hue as an angle.
ink seen(double lightness, double chroma, double hue) {
  const double a = chroma * std::cos(hue);
  const double b = chroma * std::sin(hue);
  const auto cube = [](double x) { return x * x * x; };
  const double l = cube(lightness + 0.3963377774 * a + 0.2158037573 * b);
  const double m = cube(lightness - 0.1055613458 * a - 0.0638541728 * b);
  const double s = cube(lightness - 0.0894841775 * a - 1.2914855480 * b);
  return {displayed(4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s),
          displayed(-1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s),
          displayed(-0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s)};
}

std::array<ink, shades> make_shades() {
  std::array<ink, shades> out{};
  for (std::size_t i = 0; i < shades; ++i) {
    const double t = static_cast<double>(i) / (shades - 1);
    const double chroma = 0.03 + 0.17 * std::sin(std::numbers::pi * std::pow(t, 0.8));
    out[i] = seen(0.17 + 0.79 * t, chroma, (280.0 + 190.0 * t) * std::numbers::pi / 180.0);
  }
  return out;
}

}  // namespace

ink shade(double value) {
  static const std::array<ink, shades> table = make_shades();
  return table[static_cast<std::size_t>(std::lround(std::clamp(value, 0.0, 1.0) * (shades - 1)))];
}

ink label_colour(std::uint32_t label) {
  if (label == 0) return paper;
  constexpr double golden_angle = 2.399963229728653;
  const double lightness = 0.55 + 0.3 * std::fmod(label * 0.754877666, 1.0);
  return seen(lightness, 0.14, std::fmod(label * golden_angle, 2.0 * std::numbers::pi));
}

}  // namespace demo

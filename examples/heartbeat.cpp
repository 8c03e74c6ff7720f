// Each beat is a sum of five bells; beats come at almost even times, on a baseline that wanders.
#include "heartbeat.hpp"

#include <array>
#include <cmath>
#include <numbers>

#include "noise.hpp"

namespace demo {
namespace {

constexpr double two_pi = 2.0 * std::numbers::pi;
constexpr double rate = 360.0;         // samples a second
constexpr double steps = 200.0;        // of the converter to the millivolt
constexpr double noise_level = 0.010;  // millivolt

// Seconds from the peak of the beat, width in seconds, height in millivolt.
struct bell_wave {
  double when, width, height;
};
constexpr std::array<bell_wave, 5> waves{{{-0.175, 0.024, 0.13},   // P
                                          {-0.028, 0.009, -0.14},  // Q
                                          {0.000, 0.011, 1.10},    // R
                                          {0.030, 0.010, -0.26},   // S
                                          {0.270, 0.048, 0.30}}};  // T

double beat(double since_peak) {
  double sum = 0.0;
  for (const bell_wave& wave : waves) {
    const double t = (since_peak - wave.when) / wave.width;
    sum += wave.height * std::exp(-0.5 * t * t);
  }
  return sum;
}

double baseline(double seconds) {
  return 0.08 * std::sin(two_pi * 0.21 * seconds) + 0.05 * std::sin(two_pi * 0.067 * seconds + 1.0);
}

// Breathing slows the heart down and speeds it up.
double interval(double seconds, dice& throws) {
  return 0.80 + 0.04 * std::sin(two_pi * 0.24 * seconds) + 0.015 * throws.normal();
}

}  // namespace

std::vector<double> heartbeats(std::size_t count) {
  dice throws(1901);
  std::vector<double> peaks{-0.5};
  while (peaks.back() < static_cast<double>(count) / rate + 1.0)
    peaks.push_back(peaks.back() + interval(peaks.back(), throws));
  std::vector<double> out;
  for (std::size_t i = 0; i < count; ++i) {
    const double seconds = static_cast<double>(i) / rate;
    double value = baseline(seconds) + noise_level * throws.normal();
    for (const double peak : peaks) value += beat(seconds - peak);
    out.push_back(std::round(value * steps) / steps);
  }
  return out;
}

}  // namespace demo

// Random numbers and smooth random textures, the same on every machine.
#pragma once

#include <cstdint>
#include <vector>

#include "words.hpp"

namespace demo {

// The library's random numbers.
class dice {
 public:
  explicit dice(std::uint32_t seed);
  dice(const dice&) = delete;
  dice& operator=(const dice&) = delete;
  ~dice() { (void)korvo_rand_end(state_); }

  double uniform();  // from 0 to 1
  double normal();   // mean 0, standard deviation 1

 private:
  void* state_ = nullptr;
};

// Value noise: random numbers on a lattice of whole points, joined smoothly; it repeats every 256 points.
class noise {
 public:
  explicit noise(std::uint32_t seed);

  // From 0 to 1.
  double at(double x, double y) const;
  // Several layers, each twice as fine and half as strong as the one before; from 0 to 1.
  double layers(double x, double y, int count) const;

 private:
  static constexpr int period = 256;
  double lattice(long x, long y) const;

  std::vector<double> values_;
};

}  // namespace demo

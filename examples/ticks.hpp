// Where an axis has marks, and the numbers beside them.
#pragma once

#include <string>
#include <vector>

#include "chart.hpp"

namespace demo {

struct tick {
  double at;
  std::string label;
};

// Round numbers, at most so many.
std::vector<tick> ticks_of(const axis& values, double most);

}  // namespace demo

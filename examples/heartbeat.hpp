// A series like an electrocardiogram.
#pragma once

#include <cstddef>
#include <vector>

namespace demo {

// Millivolts, 360 samples a second, in the steps of a converter.
std::vector<double> heartbeats(std::size_t count);

}  // namespace demo

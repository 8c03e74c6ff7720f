// What the stages for signals work on: the user's series, or the built-in one.
#pragma once

#include <cstdint>
#include <string>

#include "gallery.hpp"
#include "words.hpp"

namespace demo {

struct series {
  matrix values;  // dbl, one column, from `fewest_samples` to `most_samples` of them
  std::string origin;

  std::int32_t count() const { return values.nrow; }
};

constexpr std::int32_t fewest_samples = 64, most_samples = 1 << 20;

// Reads a text file with one number a line; without a path makes something like an electrocardiogram.
series make_series(const std::string& path, gallery& out);

// What one picture can show: a power of two of samples out of the middle.
struct stretch {
  std::int32_t first, count;
};
stretch middle(const series& heard);

axis time_axis(const stretch& where);

// These samples, less their mean.
matrix samples(const series& heard, const stretch& where);

}  // namespace demo

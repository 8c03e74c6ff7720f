// Vertices of polygons, which are matrices of two columns: x, then y.
#pragma once

#include <cmath>
#include <cstdint>

#include "korvos/core/mat_univ.h"

namespace korvo {

struct point {
  double x, y;
};

inline point vertex(const _dbl_mat& polygon, std::int64_t i) {
  return {polygon.data[2 * i], polygon.data[2 * i + 1]};
}
inline void set_vertex(const _dbl_mat& polygon, std::int64_t i, point at) {
  polygon.data[2 * i] = at.x;
  polygon.data[2 * i + 1] = at.y;
}

// By plain operations: the library's hypot rounds otherwise elsewhere.
inline double length(double x, double y) { return std::sqrt(x * x + y * y); }
inline double distance(point a, point b) { return length(b.x - a.x, b.y - a.y); }

}  // namespace korvo

// A picture to draw on.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "colours.hpp"
#include "words.hpp"

namespace demo {

// Pixels from (top, left) up to, but without, (bottom, right).
struct box {
  std::int32_t top, left, bottom, right;

  std::int32_t rows() const { return bottom - top; }
  std::int32_t cols() const { return right - left; }
};

// In pixels from the upper left corner; the centre of the first pixel is (0.5, 0.5).
struct point {
  double x, y;
};

class canvas {
 public:
  canvas(std::int32_t rows, std::int32_t cols, const ink& ground);

  void fill(const box& where, const ink& colour);
  // A smooth line through the points, seen inside of `where` alone.
  void curve(const std::vector<point>& points, double width, const ink& colour, const box& where);
  void text(const std::string& words, std::int32_t row, std::int32_t col, std::int32_t size, const ink& colour);

  // Three planes in u8; the canvas is empty from then on.
  planes take() { return std::move(picture_); }

 private:
  void blend(std::int32_t row, std::int32_t col, const ink& colour, float share);

  planes picture_;
};

}  // namespace demo

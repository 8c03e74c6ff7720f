// Plots: a title, and panels with axes one below the other.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "canvas.hpp"
#include "sheet.hpp"

namespace demo {

// A chart is drawn once for itself and once as a tile, which has no room for words.
struct chart_size {
  std::int32_t rows, cols, letter;
  double pen;
  bool is_tile;
};
inline constexpr chart_size full_size{792, 1056, 2, 1.7, false};
inline constexpr chart_size tile_size{tile_rows, tile_cols, 1, 1.1, true};

enum class scale { even, octaves };  // octaves: values are logarithms to the base 2

struct axis {
  double low, high;
  std::string label;
  scale marks = scale::even;
};

// From the least to the greatest number, and some room.
axis axis_for(std::span<const double> values, const std::string& label);

class panel {
 public:
  panel(canvas& ground, const box& where, const chart_size& size, axis x, axis y);

  // values[i] at x = first + i * step. Where many fall on one pixel, from the lowest of them to the highest.
  void curve(double first, double step, std::span<const double> values, const ink& colour);
  // A line through points that are given in the units of the axes.
  void line(std::vector<point> points, const ink& colour);
  // Row 0 at the bottom; `low` is dark, `high` is light.
  void image(const _univ_mat& values, double low, double high);

  void draw_axes(bool with_x_marks, bool with_y_marks);

 private:
  double across(double x) const { return where_.left + (x - x_.low) / (x_.high - x_.low) * where_.cols(); }
  double up(double y) const { return where_.bottom - (y - y_.low) / (y_.high - y_.low) * where_.rows(); }

  canvas* ground_;
  box where_;
  chart_size size_;
  axis x_, y_;
};

struct margins {
  std::int32_t top, left, bottom, right, between;
};

class chart {
 public:
  // So many panels, from the top to the bottom; room for a bar beside them where that is wanted.
  chart(const chart_size& size, const std::string& title, int panels = 1, bool with_bar = false);

  panel add(const axis& x, const axis& y);
  // What the shades of the last panel's image stand for.
  void draw_bar(double low, double high, const std::string& label);

  planes take() { return ground_.take(); }

 private:
  box place(int index) const;

  chart_size size_;
  margins around_;
  canvas ground_;
  int panels_, added_ = 0;
};

}  // namespace demo

// Lays out panels and draws into them.
#include "chart.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "font.hpp"
#include "scaling.hpp"
#include "ticks.hpp"

namespace demo {
namespace {

constexpr ink well{15, 17, 21}, grid{40, 45, 54};

margins margins_for(const chart_size& size, int panels, bool with_bar) {
  if (size.is_tile) return {8, panels > 1 ? 8 : 34, 14, 8, 3};  // no numbers beside low panels
  return {68, 92, 62, with_bar ? 92 : panels > 1 ? 56 : 28, 14};
}

std::int32_t width_of(const std::string& words, std::int32_t letter) {
  return static_cast<std::int32_t>(words.size()) * letter_cols * letter - letter;
}

// Straight between the elements; (row, col) is a place in the matrix, elements lie at whole numbers.
double between_elements(const _univ_mat& in, double row, double col) {
  const auto at = [](double place, std::int32_t count) {
    const double inside = std::clamp(place, 0.0, count - 1.0);
    const auto index = std::min(static_cast<std::int32_t>(inside), std::max(0, count - 2));
    return std::pair{index, inside - index};
  };
  const auto [r, down] = at(row, in.nrow);
  const auto [c, right] = at(col, in.ncol);
  const auto value = [&](std::int32_t i, std::int32_t j) {
    return element(in, std::min(i, in.nrow - 1), std::min(j, in.ncol - 1));
  };
  return (1.0 - down) * ((1.0 - right) * value(r, c) + right * value(r, c + 1)) +
         down * ((1.0 - right) * value(r + 1, c) + right * value(r + 1, c + 1));
}

}  // namespace

axis axis_for(std::span<const double> values, const std::string& label) {
  const auto [lowest, highest] = std::minmax_element(values.begin(), values.end());
  const double size = std::max(std::fabs(*lowest), std::fabs(*highest));
  const double least = size > 1e-280 ? 1e-6 * size : 1.0;  // rounding is not drawn as if it were a wave
  const double room = std::max(0.07 * (*highest - *lowest), least);
  return {*lowest - room, *highest + room, label};
}

panel::panel(canvas& ground, const box& where, const chart_size& size, axis x, axis y)
    : ground_(&ground), where_(where), size_(size), x_(std::move(x)), y_(std::move(y)) {
  ground_->fill(where_, well);
}

void panel::curve(double first, double step, std::span<const double> values, const ink& colour) {
  const std::size_t on_a_pixel = values.size() / static_cast<std::size_t>(where_.cols());
  std::vector<point> points;
  if (on_a_pixel < 3) {
    for (std::size_t i = 0; i < values.size(); ++i)
      points.push_back({first + static_cast<double>(i) * step, values[i]});
  } else {
    for (std::size_t i = 0; i < values.size(); i += on_a_pixel) {
      const auto part = values.subspan(i, std::min(on_a_pixel, values.size() - i));
      const auto [lowest, highest] = std::minmax_element(part.begin(), part.end());
      const std::size_t middle = i + part.size() / 2;
      const double x = first + static_cast<double>(middle) * step;
      points.push_back({x, lowest < highest ? *lowest : *highest});
      points.push_back({x, lowest < highest ? *highest : *lowest});
    }
  }
  line(std::move(points), colour);
}

void panel::line(std::vector<point> points, const ink& colour) {
  for (point& p : points) p = {across(p.x), up(p.y)};
  ground_->curve(points, size_.pen, colour, where_);
}

void panel::image(const _univ_mat& values, double low, double high) {
  const matrix shown =
      scaled(values, std::min(values.nrow, where_.rows()), std::min(values.ncol, where_.cols()));
  for (std::int32_t r = 0; r < where_.rows(); ++r)
    for (std::int32_t c = 0; c < where_.cols(); ++c) {
      const double row = (where_.rows() - r - 0.5) / where_.rows() * shown.nrow - 0.5;
      const double col = (c + 0.5) / where_.cols() * shown.ncol - 0.5;
      const double share = (between_elements(shown, row, col) - low) / (high - low);
      const box pixel{where_.top + r, where_.left + c, where_.top + r + 1, where_.left + c + 1};
      ground_->fill(pixel, shade(share));
    }
}

void panel::draw_axes(bool with_x_marks, bool with_y_marks) {
  const std::int32_t letter = size_.letter;
  for (const tick& t : ticks_of(x_, where_.cols() / (54.0 * letter))) {
    const auto col = static_cast<std::int32_t>(std::lround(across(t.at)));
    if (col > where_.left && col < where_.right) ground_->fill({where_.top, col, where_.bottom, col + 1}, grid);
    const std::int32_t width = width_of(t.label, letter);
    const std::int32_t start = std::min(col - width / 2, where_.right - (size_.is_tile ? width : width / 2));
    if (with_x_marks) ground_->text(t.label, where_.bottom + 4 * letter, start, letter, dim);
  }
  for (const tick& t : ticks_of(y_, std::max(3.0, where_.rows() / (30.0 * letter)))) {
    const auto row = static_cast<std::int32_t>(std::lround(up(t.at)));
    if (row > where_.top && row < where_.bottom) ground_->fill({row, where_.left, row + 1, where_.right}, grid);
    const std::int32_t start = where_.left - 4 * letter - width_of(t.label, letter);
    if (with_y_marks) ground_->text(t.label, row - 7 * letter / 2, std::max(0, start), letter, dim);
  }
}

chart::chart(const chart_size& size, const std::string& title, int panels, bool with_bar)
    : size_(size),
      around_(margins_for(size, panels, with_bar)),
      ground_(size.rows, size.cols, size.is_tile ? frame : paper),
      panels_(panels) {
  if (!size_.is_tile) ground_.text(title, 16, around_.left, 2, bright);
}

box chart::place(int index) const {
  const margins& m = around_;
  const std::int32_t rows = size_.rows - m.top - m.bottom - (panels_ - 1) * m.between;
  const std::int32_t top = m.top + index * m.between;
  return {top + index * rows / panels_, m.left, top + (index + 1) * rows / panels_, size_.cols - m.right};
}

panel chart::add(const axis& x, const axis& y) {
  const box where = place(added_++);
  panel out(ground_, where, size_, x, y);
  out.draw_axes(added_ == panels_, !size_.is_tile || panels_ == 1);
  if (size_.is_tile) return out;
  if (panels_ > 1)
    ground_.text(y.label, (where.top + where.bottom) / 2 - 7, where.right + 12, 2, bright);
  else
    ground_.text(y.label, where.top - 22, where.left, 2, dim);
  if (added_ == panels_)
    ground_.text(x.label, where.bottom + 34, (where.left + where.right - width_of(x.label, 2)) / 2, 2, dim);
  return out;
}

void chart::draw_bar(double low, double high, const std::string& label) {
  if (size_.is_tile) return;
  const box beside = place(panels_ - 1);
  const box where{beside.top, beside.right + 14, beside.bottom, beside.right + 26};
  for (std::int32_t r = where.top; r < where.bottom; ++r)
    ground_.fill({r, where.left, r + 1, where.right}, shade((where.bottom - r - 0.5) / where.rows()));
  for (const tick& t : ticks_of({low, high, ""}, 10.0)) {
    const double row = where.bottom - (t.at - low) / (high - low) * where.rows();
    ground_.text(t.label, static_cast<std::int32_t>(std::lround(row)) - 7, where.right + 6, 2, dim);
  }
  ground_.text(label, where.top - 28, where.left, 2, dim);
}

}  // namespace demo

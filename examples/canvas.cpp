// Boxes, lines with soft edges, and letters.
#include "canvas.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>

#include "font.hpp"

namespace demo {
namespace {

double distance(const point& p, const point& from, const point& to) {
  const double x = to.x - from.x;
  const double y = to.y - from.y;
  const double length = x * x + y * y;
  const double along = length > 0.0 ? ((p.x - from.x) * x + (p.y - from.y) * y) / length : 0.0;
  const double nearest = std::clamp(along, 0.0, 1.0);
  return std::hypot(p.x - from.x - nearest * x, p.y - from.y - nearest * y);
}

// What of `where` a line through the points can touch.
box around(std::span<const point> points, double width, const box& where) {
  box out{where.bottom, where.right, where.top, where.left};
  const auto rows = [&](double y) {
    return static_cast<std::int32_t>(std::clamp<double>(y, where.top, where.bottom));
  };
  const auto cols = [&](double x) {
    return static_cast<std::int32_t>(std::clamp<double>(x, where.left, where.right));
  };
  const double reach = 0.5 * width + 0.5;
  for (const point& p : points) {
    out.top = std::min(out.top, rows(std::floor(p.y - reach)));
    out.left = std::min(out.left, cols(std::floor(p.x - reach)));
    out.bottom = std::max(out.bottom, rows(std::ceil(p.y + reach)));
    out.right = std::max(out.right, cols(std::ceil(p.x + reach)));
  }
  return {std::min(out.top, out.bottom), std::min(out.left, out.right), out.bottom, out.right};
}

// How much of each pixel of a box a line covers. A pixel that several pieces touch keeps the largest share, so
// that joints are no darker than the rest.
class coverage {
 public:
  explicit coverage(const box& where)
      : where_(where),
        shares_(static_cast<std::size_t>(where.rows()) * static_cast<std::size_t>(where.cols())) {}

  float& at(std::int32_t row, std::int32_t col) {
    return shares_[static_cast<std::size_t>(row - where_.top) * static_cast<std::size_t>(where_.cols()) +
                   static_cast<std::size_t>(col - where_.left)];
  }

  void add(const point& from, const point& to, double width) {
    const box near = around(std::array{from, to}, width, where_);
    for (std::int32_t r = near.top; r < near.bottom; ++r)
      for (std::int32_t c = near.left; c < near.right; ++c) {
        const double share = 0.5 * width + 0.5 - distance({c + 0.5, r + 0.5}, from, to);
        at(r, c) = std::max(at(r, c), static_cast<float>(std::clamp(share, 0.0, 1.0)));
      }
  }

 private:
  box where_;
  std::vector<float> shares_;
};

}  // namespace

canvas::canvas(std::int32_t rows, std::int32_t cols, const ink& ground) : picture_(rows, cols, KORVO_UINT8) {
  fill({0, 0, rows, cols}, ground);
}

void canvas::blend(std::int32_t row, std::int32_t col, const ink& colour, float share) {
  for (std::size_t k = 0; k < colour.size(); ++k) {
    std::uint8_t& old = element<std::uint8_t>(picture_.mats[k], row, col);
    const float mixed = static_cast<float>(old) + share * static_cast<float>(colour[k] - old);
    old = static_cast<std::uint8_t>(std::lround(mixed));
  }
}

void canvas::fill(const box& where, const ink& colour) {
  for (std::int32_t r = where.top; r < where.bottom; ++r)
    for (std::int32_t c = where.left; c < where.right; ++c) blend(r, c, colour, 1.0F);
}

void canvas::curve(const std::vector<point>& points, double width, const ink& colour, const box& where) {
  const box touched = around(points, width, where);
  coverage covered(touched);
  for (std::size_t i = 0; i < points.size(); ++i) covered.add(points[i == 0 ? 0 : i - 1], points[i], width);
  for (std::int32_t r = touched.top; r < touched.bottom; ++r)
    for (std::int32_t c = touched.left; c < touched.right; ++c)
      if (const float share = covered.at(r, c); share > 0.0F) blend(r, c, colour, share);
}

void canvas::text(const std::string& words, std::int32_t row, std::int32_t col, std::int32_t size,
                  const ink& colour) {
  write_text(words, row, col, size, colour, &picture_);
}

}  // namespace demo

// Contours: the boundary of a bright part and the area within it, a snake that closes on the busiest place, the
// path of least cost along edges.
#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "drawing.hpp"
#include "scaling.hpp"
#include "stages/stages.hpp"

namespace demo {
namespace {

constexpr std::int32_t least_side = 48;  // smaller pictures have no room for contours

// Bright parts, labelled from 1.
matrix bright_parts(const _univ_mat& grey) {
  matrix bright(grey.nrow, grey.ncol, KORVO_UINT8), labels(grey.nrow, grey.ncol, KORVO_UINT32);
  std::uint32_t count = 0;
  check(matuniv_threshold(&grey, -1e37, mean(grey), byte(1), byte(0), nullptr, &bright));
  check(imguniv_connected_components(&bright, 1, byte(1), 1, nullptr, &labels, &count));
  return labels;
}

// The polygon around the largest part. Its first pixel in the order of storage has no other on its left.
matrix outline_of_largest(const _univ_mat& labels) {
  const auto all = elements<std::uint32_t>(labels);
  std::vector<std::int64_t> sizes(static_cast<std::size_t>(*std::ranges::max_element(all)) + 1);
  for (const std::uint32_t label : all) ++sizes[label];
  sizes[0] = -1;
  const auto largest = static_cast<std::uint32_t>(std::ranges::max_element(sizes) - sizes.begin());
  const auto first = static_cast<std::int32_t>(std::ranges::find(all, largest) - all.begin());
  chain round;
  matrix polygon;
  polygon.type = KORVO_DOUBLE;
  check(pgnuniv_boundary_chain_from_region(&labels, first / labels.ncol, first % labels.ncol, nullptr, &round));
  check(pgnuniv_boundary_chain_to_polygon(&round, nullptr, &polygon));
  return polygon;
}

matrix area_of(const _univ_mat& polygon, std::int32_t rows, std::int32_t cols) {
  matrix out(rows, cols);
  check(pgnuniv_render_region(&polygon, nullptr, &out));
  return out;
}

struct field {
  matrix energy, rows, columns;
};

field snake_field(const _univ_mat& grey) {
  field out{matrix(grey.nrow, grey.ncol), matrix(grey.nrow, grey.ncol), matrix(grey.nrow, grey.ncol)};
  check(imguniv_snake_edge_energy(&grey, 2.0, nullptr, &out.energy));
  check(imguniv_gradient_sobel(&out.energy, nullptr, &out.rows, &out.columns));
  return out;
}

// A circle around the place with the most edges of some size.
matrix circle_round_busiest(const _univ_mat& grey) {
  const std::int32_t size = std::min(grey.nrow, grey.ncol) / 6 * 2 + 1;
  matrix energy(grey.nrow, grey.ncol), around(grey.nrow, grey.ncol), circle(80, 2);
  check(imguniv_snake_edge_energy(&grey, 5.0, nullptr, &energy));
  check(imguniv_local_mean(&energy, size, size, SIG_BOUNDARY_CONTINUE, nullptr, &around));
  const auto all = elements(around);
  const auto at = static_cast<std::int32_t>(std::ranges::min_element(all) - all.begin());
  const double radius = 0.65 * size;
  const std::int32_t busiest_row = at / grey.ncol;
  const double row = std::clamp<double>(busiest_row, radius, grey.nrow - 1 - radius);
  const double col = std::clamp<double>(at % grey.ncol, radius, grey.ncol - 1 - radius);
  for (std::int32_t i = 0; i < circle.nrow; ++i) {
    const double angle = 2.0 * std::numbers::pi * i / circle.nrow;
    element(circle, i, 0) = col + radius * std::cos(angle);
    element(circle, i, 1) = row + radius * std::sin(angle);
  }
  return circle;
}

// Some iterations on; success when it rests.
bool move(const field& in, matrix& contour) {
  const snake_params with = {IMG_CONTOUR_CLOSED, 0.4, 0.05, 1.2, 1.0, 25, 0.02, 0.0};
  snake_params results{};
  matrix next(contour.nrow, 2);
  const _korvo_errcode code =
      imguniv_snake_minimize(&in.energy, &in.rows, &in.columns, &contour, 0, &with, nullptr, &results, &next);
  if (code != KORVO_ERR_NOT_CONVERGING) check(code);
  contour = std::move(next);
  return code == KORVO_ERR_OK;
}

// A frame for each few iterations, and all of them in one.
void show_snake(const _univ_mat& grey, gallery& out) {
  constexpr int most_frames = 24;
  const field in = snake_field(grey);
  matrix contour = circle_round_busiest(grey);
  const planes all = dimmed(grey);
  for (int frame = 0; frame < most_frames; ++frame) {
    if (frame % 4 == 0) {
      draw(contour, true, shade(0.3 + 0.6 * frame / most_frames), all);
      const planes one = dimmed(grey);
      draw(contour, true, accent, one);
      out.save("snake_" + std::to_string(frame * 25), one);
    }
    if (move(in, contour)) break;
  }
  draw(contour, true, bright, all);
  out.hang("snake", all, "a snake closing in", "imguniv_snake_minimize");
}

// Low along edges, and nowhere 0.
matrix costs(const _univ_mat& grey) {
  matrix out(grey.nrow, grey.ncol);
  check(imguniv_potential_canny(&grey, 1.5, 3.0, 8.0, nullptr, &out));
  check(matuniv_add_scalar(&out, number(0.3), nullptr, &out));
  return out;
}

// From the left side to the right, in the middle; as x and y.
matrix path_across(const _univ_mat& cost) {
  matrix path;
  const std::int32_t row = cost.nrow / 2;
  check(imguniv_minpath_from_potential(&cost, row, 1, row, cost.ncol - 2, nullptr, nullptr, &path));
  for (std::int32_t i = 0; i < path.nrow; ++i) std::swap(element(path, i, 0), element(path, i, 1));
  return path;
}

}  // namespace

void show_contours(const subject& photo, gallery& out) {
  const _univ_mat& grey = photo.luminance;
  if (std::min(grey.nrow, grey.ncol) < least_side) return;
  const auto [least, greatest] = std::ranges::minmax(elements(grey));
  if (least == greatest) return;  // nothing to draw a line around
  const matrix labels = bright_parts(grey);
  const matrix outline =
      out.step("outline of the largest bright part", [&] { return outline_of_largest(labels); });
  matrix area = out.step("area within it", [&] { return area_of(outline, grey.nrow, grey.ncol); });
  const planes traced = dimmed(grey);
  draw(outline, true, accent, traced);
  check(matuniv_multiply_scalar(&area, number(255.0), nullptr, &area));
  out.hang("traced", traced, "a boundary traced", "pgnuniv_*_from_region");
  out.hang("redrawn", area, "the area within", "pgnuniv_render_region");
  named("snake", [&] { return show_snake(grey, out), 0; });
  const matrix cost = out.step("distance to the nearest edge", [&] { return costs(grey); });
  const matrix path = out.step("path of least cost", [&] { return path_across(cost); });
  const planes crossed = dimmed(grey);
  draw(path, false, cool, crossed);
  out.hang("path", crossed, "a path of least cost", "imguniv_minpath_*");
}

}  // namespace demo

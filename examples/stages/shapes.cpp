// The bright parts of the picture: opened, closed, told apart; and the height of each step in the picture.
#include <algorithm>

#include "colours.hpp"
#include "labels.hpp"
#include "stages/stages.hpp"

namespace demo {
namespace {

constexpr std::uint8_t lit = 255, unlit = 0;

// What is brighter than its surroundings.
matrix bright_parts(const _univ_mat& grey) {
  const auto window = [](std::int32_t side) { return std::min(41, side - (side % 2 == 0 ? 1 : 0)); };
  matrix around(grey.nrow, grey.ncol), out(grey.nrow, grey.ncol, KORVO_UINT8);
  check(
      imguniv_local_mean(&grey, window(grey.nrow), window(grey.ncol), SIG_BOUNDARY_CONTINUE, nullptr, &around));
  check(matuniv_subtract(&grey, &around, nullptr, &around));
  check(matuniv_threshold(&around, -1e37, 5.0, byte(lit), byte(unlit), nullptr, &out));
  return out;
}

matrix disk(std::int32_t radius) {
  matrix out(2 * radius + 1, 2 * radius + 1, KORVO_UINT8);
  for (std::int32_t r = -radius; r <= radius; ++r)
    for (std::int32_t c = -radius; c <= radius; ++c)
      element<std::uint8_t>(out, r + radius, c + radius) = r * r + c * c <= radius * radius ? 1 : 0;
  return out;
}

matrix morphed(const _univ_mat& in, decltype(imguniv_binary_open)* operation, const _univ_mat& shape) {
  matrix out(in.nrow, in.ncol, KORVO_UINT8);
  check(operation(&in, &shape, byte(lit), byte(unlit), nullptr, &out));
  return out;
}

matrix components(const _univ_mat& in) {
  matrix out(in.nrow, in.ncol, KORVO_UINT32);
  std::uint32_t count = 0;
  check(imguniv_connected_components(&in, 1, byte(lit), 20, nullptr, &out, &count));
  return out;
}

// Dilated less eroded, by a flat square of 3 by 3.
matrix gradient(const _univ_mat& grey) {
  matrix flat(3, 3), high(grey.nrow, grey.ncol), low(grey.nrow, grey.ncol);
  std::ranges::fill(elements(flat), 0.0);
  check(imguniv_grayscale_dilate(&grey, &flat, 1, 1, SIG_BOUNDARY_CONTINUE, nullptr, &high));
  check(imguniv_grayscale_erode(&grey, &flat, 1, 1, SIG_BOUNDARY_CONTINUE, nullptr, &low));
  check(matuniv_subtract(&high, &low, nullptr, &high));
  return high;
}

}  // namespace

void show_shapes(const subject& photo, gallery& out) {
  const matrix parts = bright_parts(photo.luminance);
  const matrix round = disk(3);
  const matrix opened =
      out.step("bright parts, opened", [&] { return morphed(parts, imguniv_binary_open, round); });
  const matrix closed =
      out.step("bright parts, closed", [&] { return morphed(parts, imguniv_binary_close, round); });
  const matrix labels = out.step("components of 20 pixels or more", [&] { return components(parts); });
  matrix steps = out.step("grey dilated less eroded", [&] { return gradient(photo.luminance); });
  check(matuniv_multiply_scalar(&steps, number(3.0), nullptr, &steps));
  out.hang("gradient", steps, "dilated less eroded", "imguniv_grayscale_*");
  out.hang("components", in_label_colours<std::uint32_t>(labels), "bright components", "imguniv_connected_*");
  out.hang("opened", opened, "opened by a disk", "imguniv_binary_open");
  out.hang("closed", closed, "closed by it", "imguniv_binary_close");
}

}  // namespace demo

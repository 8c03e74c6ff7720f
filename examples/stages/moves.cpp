// Moving pixels: flips, transposition, translation, cutting and pasting.
#include <algorithm>

#include "scaling.hpp"
#include "stages/stages.hpp"

namespace demo {
namespace {

matrix like(const _univ_mat& in) { return {in.nrow, in.ncol, in.type}; }

matrix flipped_left_right(const _univ_mat& in) {
  matrix out = like(in);
  check(matuniv_flip_left_right(&in, nullptr, &out));
  return out;
}

matrix flipped_up_down(const _univ_mat& in) {
  matrix out = like(in);
  check(matuniv_flip_up_down(&in, nullptr, &out));
  return out;
}

matrix transposed(const _univ_mat& in) {
  matrix out(in.ncol, in.nrow, in.type);
  check(matuniv_transpose(&in, nullptr, &out));
  return out;
}

matrix translated(const _univ_mat& in) {
  matrix out = like(in);
  check(matuniv_translate(&in, in.nrow / 5, -in.ncol / 4, byte(150), nullptr, &out));
  return out;
}

// The four flips of a plane at half its size, pasted together.
matrix mosaic(const _univ_mat& in) {
  const std::int32_t rows = std::max(1, in.nrow / 2);
  const std::int32_t cols = std::max(1, in.ncol / 2);
  const matrix small = scaled(in, rows, cols);
  const matrix across = flipped_left_right(small);
  const matrix down = flipped_up_down(small);
  const matrix both = flipped_up_down(across);
  matrix out(2 * rows, 2 * cols);
  check(matuniv_assign_submat(&small, 0, 0, nullptr, &out));
  check(matuniv_assign_submat(&across, 0, cols, nullptr, &out));
  check(matuniv_assign_submat(&down, rows, 0, nullptr, &out));
  check(matuniv_assign_submat(&both, rows, cols, nullptr, &out));
  return out;
}

}  // namespace

void show_moves(const subject& photo, gallery& out) {
  const _mat_set& in = photo.colour;
  const planes left_right =
      out.step("flipped left to right", [&] { return each_plane(in, flipped_left_right); });
  const planes up_down = out.step("flipped upside down", [&] { return each_plane(in, flipped_up_down); });
  const planes turned = out.step("transposed", [&] { return each_plane(in, transposed); });
  const planes shifted = out.step("translated", [&] { return each_plane(in, translated); });
  const planes four = out.step("four flips, pasted", [&] { return each_plane(in, mosaic); });
  out.save("flipped_left_right", left_right);
  out.save("flipped_up_down", up_down);
  out.hang("transposed", turned, "transposed", "matuniv_transpose");
  out.hang("translated", shifted, "moved, and filled", "matuniv_translate");
  out.hang("mosaic", four, "flipped and pasted", "matuniv_assign_submat");
}

}  // namespace demo

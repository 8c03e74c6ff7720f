// Element types: integers wrap in their width, and casts are where ranges are tested.
#include "stages/stages.hpp"

namespace demo {
namespace {

constexpr std::uint8_t brighter = 90;

matrix wrapped(const _univ_mat& plane) {
  matrix out(plane.nrow, plane.ncol, KORVO_UINT8);
  check(matuniv_add_scalar(&plane, byte(brighter), nullptr, &out));
  return out;
}

matrix clipped(const _univ_mat& plane) {
  matrix sum(plane.nrow, plane.ncol, KORVO_SINT16);  // the plane is cast on the way
  check(matuniv_add_scalar(&plane, byte(brighter), nullptr, &sum));
  return as_type(sum, KORVO_UINT8);
}

matrix rescaled(const _univ_mat& in) {
  matrix out(in.nrow, in.ncol);
  check(matuniv_rescale(&in, number(0.0), number(255.0), nullptr, &out));
  return out;
}

}  // namespace

void show_casts(const subject& photo, gallery& out) {
  const planes overflowing = out.step("u8 + 90: wraps", [&] { return each_plane(photo.colour, wrapped); });
  const planes limited =
      out.step("s16 + 90, cast to u8: clips", [&] { return each_plane(photo.colour, clipped); });
  const matrix grey = out.step("luminance cast to u8", [&] { return as_type(photo.luminance, KORVO_UINT8); });
  const matrix stretched =
      out.step("luminance rescaled to 0 to 255", [&] { return rescaled(photo.luminance); });
  out.hang("wrapped", overflowing, "u8 + 90 wraps", "matuniv_add_scalar");
  out.hang("clipped", limited, "s16 + 90, clipped", "matuniv_cast");
  out.save("luminance_rescaled", stretched);
}

}  // namespace demo

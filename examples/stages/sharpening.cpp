// Unsharp masking: what smoothing takes away is added once more.
#include "filters.hpp"
#include "stages/stages.hpp"

namespace demo {
namespace {

constexpr double amount = 1.6;

matrix difference(const _univ_mat& a, const _univ_mat& b) {
  matrix out(a.nrow, a.ncol);
  check(matuniv_subtract(&a, &b, nullptr, &out));
  return out;
}

// in + amount * detail
matrix with_more(const _univ_mat& in, const _univ_mat& detail) {
  matrix out(in.nrow, in.ncol);
  check(matuniv_multiply_scalar(&detail, number(amount), nullptr, &out));
  check(matuniv_add(&in, &out, nullptr, &out));
  return out;
}

// Around a middle grey, stronger.
matrix visible(const _univ_mat& detail) {
  matrix out(detail.nrow, detail.ncol);
  check(matuniv_multiply_scalar(&detail, number(3.0), nullptr, &out));
  check(matuniv_add_scalar(&out, number(128.0), nullptr, &out));
  return out;
}

}  // namespace

void show_sharpening(const subject& photo, gallery& out) {
  const _mat_set& in = photo.colour;
  const matrix kernel = bell(3);
  const planes soft =
      out.step("slightly smoothed", [&] { return smoothed(in, kernel, kernel, SIG_BOUNDARY_REFLECT); });
  const planes detail =
      out.step("detail: what that took away", [&] { return each_plane(in, soft, difference); });
  const planes sharp = out.step("sharpened", [&] { return each_plane(in, detail, with_more); });
  out.save("slightly_smoothed", soft);
  out.hang("detail", each_plane(detail, visible), "fine detail", "matuniv_subtract");
  out.hang("sharpened", sharp, "sharpened", "matuniv_add");
}

}  // namespace demo

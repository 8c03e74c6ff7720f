// Mean and variance of the neighbourhood of each pixel.
#include <algorithm>

#include "stages/stages.hpp"

namespace demo {
namespace {

// Odd, and no larger than the picture.
std::int32_t window(std::int32_t wanted, std::int32_t available) {
  return std::min(wanted, available - (available % 2 == 0 ? 1 : 0));
}

matrix mean_around(const _univ_mat& in, std::int32_t size) {
  matrix out(in.nrow, in.ncol);
  check(imguniv_local_mean(&in, window(size, in.nrow), window(size, in.ncol), SIG_BOUNDARY_CONTINUE, nullptr,
                           &out));
  return out;
}

matrix variance_around(const _univ_mat& in, std::int32_t size) {
  matrix out(in.nrow, in.ncol);
  check(imguniv_local_variance(&in, window(size, in.nrow), window(size, in.ncol), SIG_BOUNDARY_CONTINUE,
                               nullptr, &out));
  return out;
}

}  // namespace

void show_statistics(const subject& photo, gallery& out) {
  const matrix mean = out.step("local mean, 21 x 21", [&] { return mean_around(photo.luminance, 21); });
  const matrix variance =
      out.step("local variance, 7 x 7", [&] { return variance_around(photo.luminance, 7); });
  const matrix shown = out.step("0 to 2000 as 0 to 255", [&] {
    matrix result(variance.nrow, variance.ncol, KORVO_UINT8);
    check(imguniv_map_window_level(&variance, 0.0, 2000.0, nullptr, &result));
    return result;
  });
  out.hang("local_mean", mean, "local mean", "imguniv_local_mean");
  out.hang("local_variance", shown, "local variance", "imguniv_local_variance");
}

}  // namespace demo

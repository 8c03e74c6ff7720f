// Edges by two methods.
#include <algorithm>

#include "stages/stages.hpp"

namespace demo {
namespace {

matrix canny(const _univ_mat& grey, double sigma, double low, double high) {
  matrix out(grey.nrow, grey.ncol, KORVO_UINT8);
  check(imguniv_edge_canny(&grey, sigma, low, high, byte(255), byte(0), nullptr, &out));
  return out;
}

matrix sobel(const _univ_mat& grey, double low, double high) {
  matrix out(grey.nrow, grey.ncol, KORVO_UINT8);
  check(imguniv_edge_sobel(&grey, low, high, byte(255), byte(0), nullptr, &out));
  return out;
}

}  // namespace

void show_edges(const subject& photo, gallery& out) {
  const _univ_mat& grey = photo.luminance;
  out.hang("sobel_edges", out.step("Sobel, 60 to 120", [&] { return sobel(grey, 60.0, 120.0); }), "Sobel edges",
           "imguniv_edge_sobel");
  if (std::min(grey.nrow, grey.ncol) < 8) return;  // smaller than the kernels
  out.hang("canny_edges", out.step("Canny, sigma 1.5, 3 to 8", [&] { return canny(grey, 1.5, 3.0, 8.0); }),
           "Canny edges", "imguniv_edge_canny");
}

}  // namespace demo

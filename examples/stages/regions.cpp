// Regions grown from a grid of blocks, and the picture as one polynomial a region and band.
#include <algorithm>
#include <utility>

#include "labels.hpp"
#include "stages/stages.hpp"

namespace demo {
namespace {

constexpr std::int32_t grid = 2, wanted_regions = 400, order = 1;

struct segmentation {
  matrix labels, boundaries;
  planes approximation;
};

// The part that whole blocks cover.
planes whole_blocks(const _mat_set& picture) {
  return each_plane(picture, [](const _univ_mat& plane) {
    const matrix values = as_type(plane, KORVO_DOUBLE);
    matrix out(plane.nrow / grid * grid, plane.ncol / grid * grid);
    check(matuniv_extract(&values, 0, 0, nullptr, &out));
    return out;
  });
}

segmentation grow(const _mat_set& picture) {
  const std::int32_t rows = picture.mats[0].nrow, cols = picture.mats[0].ncol;
  segmentation out{matrix(rows, cols, KORVO_SINT32), matrix(rows, cols, KORVO_UINT8),
                   planes(rows, cols, KORVO_DOUBLE)};
  const matrix weights = filled(1, 3, 1.0 / 3.0);
  check(imgset_region_grow_klm(&picture, &weights, order, 0, grid, grid, wanted_regions, 1e37, nullptr,
                               &out.approximation, &out.boundaries, &out.labels, nullptr, nullptr, nullptr));
  return out;
}

}  // namespace

void show_regions(const subject& photo, gallery& out) {
  const _univ_mat& any = photo.colour.mats[0];
  if (std::min(any.nrow, any.ncol) < 8 * grid) return;  // too few blocks to merge
  const planes picture = whole_blocks(photo.colour);
  segmentation grown;
  const planes smooth = out.step("400 regions, a plane in each", [&] {
    grown = grow(picture);
    return std::move(grown.approximation);
  });
  out.hang("regions", in_label_colours<std::int32_t>(grown.labels), "400 regions", "imgset_region_grow_klm");
  out.hang("planes", smooth, "a plane in each", "imgset_region_grow_klm");
  out.save("boundaries", grown.boundaries);
}

}  // namespace demo

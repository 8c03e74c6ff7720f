// Classes of pixels: learnt from a few squares, told apart by distance, smoothed by a Markov field.
#include <algorithm>
#include <array>
#include <limits>
#include <vector>

#include "stages/stages.hpp"

namespace demo {
namespace {

constexpr std::int32_t classes = 8;
constexpr std::int32_t bands = 3;

struct square {
  std::int32_t row, col, size;
  std::array<double, 3> mean;
  double spread;  // the variances of the bands together
};

square look_at(const _mat_set& picture, std::int32_t row, std::int32_t col, std::int32_t size) {
  square out{row, col, size, {}, 0.0};
  const double pixels = size * size;
  for (std::size_t k = 0; k < 3; ++k) {
    double squares = 0.0;
    for (std::int32_t r = 0; r < size; ++r)
      for (std::int32_t c = 0; c < size; ++c) {
        const double x = element<std::uint8_t>(picture.mats[k], row + r, col + c);
        out.mean[k] += x;
        squares += x * x;
      }
    out.mean[k] /= pixels;
    out.spread += squares / pixels - out.mean[k] * out.mean[k];
  }
  return out;
}

double distance(const square& a, const square& b) {
  double sum = 0.0;
  for (std::size_t k = 0; k < 3; ++k) sum += (a.mean[k] - b.mean[k]) * (a.mean[k] - b.mean[k]);
  return sum;
}

// Squares of a grid, of its calmer half, whose colours lie far apart: each next one farthest from those before.
std::vector<square> choose_squares(const _mat_set& picture) {
  const std::int32_t rows = picture.mats[0].nrow, cols = picture.mats[0].ncol;
  const std::int32_t size = std::max(1, std::min(rows, cols) / 16);
  std::vector<square> grid;
  for (std::int32_t r = 0; r + size <= rows; r += size)
    for (std::int32_t c = 0; c + size <= cols; c += size) grid.push_back(look_at(picture, r, c, size));
  std::ranges::stable_sort(grid, {}, &square::spread);
  grid.resize(std::max<std::size_t>(classes, grid.size() / 2));
  std::vector<square> chosen{grid[grid.size() / 2]};
  while (chosen.size() < classes) {
    const auto apart = [&](const square& s) {
      double least = std::numeric_limits<double>::max();
      for (const square& c : chosen) least = std::min(least, distance(s, c));
      return least;
    };
    chosen.push_back(*std::ranges::max_element(grid, {}, apart));
  }
  return chosen;
}

// Labels: the number of its class in each square, and -1 elsewhere.
stack training_labels(const std::vector<square>& squares, std::int32_t rows, std::int32_t cols) {
  stack out({1}, rows, cols, KORVO_SINT32);
  std::ranges::fill(elements<std::int32_t>(out.mats[0]), -1);
  for (std::size_t k = 0; k < squares.size(); ++k)
    for (std::int32_t r = 0; r < squares[k].size; ++r)
      for (std::int32_t c = 0; c < squares[k].size; ++c)
        element<std::int32_t>(out.mats[0], squares[k].row + r, squares[k].col + c) =
            static_cast<std::int32_t>(k);
  return out;
}

// One frame of three bands.
stack as_frame(const _mat_set& picture) {
  stack out({1, bands}, picture.mats[0].nrow, picture.mats[0].ncol, KORVO_UINT8);
  for (std::int32_t k = 0; k < bands; ++k) check(matuniv_assign(&picture.mats[k], nullptr, &out.mats[k]));
  return out;
}

_s32_mat integers(const _univ_mat& in) {
  return {in.nrow, in.ncol, in.nelem, static_cast<std::int32_t*>(in.data)};
}

stack estimate(const stack& image, const stack& labels) {
  stack out({classes}, bands + 1, bands, KORVO_DOUBLE);
  matrix counts(classes, 1, KORVO_SINT32), flags(1, 1, KORVO_SINT32);
  element<std::int32_t>(flags, 0, 0) = 1;
  _s32_mat found = integers(counts);
  const _s32_mat taken = integers(flags);
  check(imgset_classify_gaussian_estimate(&image, &labels, &taken, nullptr, &found, &out));
  return out;
}

stack distances(const stack& image, const stack& statistics) {
  stack out({classes}, image.mats[0].nrow, image.mats[0].ncol, KORVO_DOUBLE);
  check(imgset_classify_gaussian_distance(&image, &statistics, 0, nullptr, &out));
  return out;
}

// With a pull of 0 each pixel takes the class that is nearest; else neighbours pull it to theirs.
matrix classify(const stack& labels, const stack& far, double pull) {
  const _univ_mat& any = far.mats[0];
  stack kernel({1}, 3, 3, KORVO_DOUBLE);
  std::ranges::fill(elements(kernel.mats[0]), pull);
  stack pulled({classes}, any.nrow, any.ncol, KORVO_DOUBLE);
  matrix out(any.nrow, any.ncol, KORVO_SINT32);
  _s32_mat result = integers(out);
  const _korvo_errcode code =
      imgset_classify_markov_random_field(&labels, &kernel, &far, 0, nullptr, &pulled, &result);
  if (code != KORVO_ERR_NOT_CONVERGING)
    check(code);  // pixels between two classes may swing: their labels are good
  return out;
}

planes coloured(const _univ_mat& labels, const std::vector<square>& squares) {
  planes out(labels.nrow, labels.ncol, KORVO_UINT8);
  for (std::size_t k = 0; k < 3; ++k)
    std::ranges::transform(
        elements<std::int32_t>(labels), elements<std::uint8_t>(out.mats[k]).begin(), [&](std::int32_t label) {
          return static_cast<std::uint8_t>(label < 0 ? 0.0 : squares[static_cast<std::size_t>(label)].mean[k]);
        });
  return out;
}

// The picture, dark but for the squares.
planes lit(const _mat_set& picture, const _univ_mat& labels) {
  planes out = as_type(picture, KORVO_UINT8);
  for (std::int32_t k = 0; k < 3; ++k)
    for (std::size_t i = 0; i < elements<std::uint8_t>(out.mats[k]).size(); ++i)
      if (elements<std::int32_t>(labels)[i] < 0) elements<std::uint8_t>(out.mats[k])[i] /= 3;
  return out;
}

}  // namespace

void show_classes(const subject& photo, gallery& out) {
  const _univ_mat& any = photo.colour.mats[0];
  if (std::min(any.nrow, any.ncol) < 32) return;  // too small to learn from
  const std::vector<square> squares = choose_squares(photo.colour);
  const stack image = as_frame(photo.colour);
  const stack labels = training_labels(squares, any.nrow, any.ncol);
  const stack statistics = estimate(image, labels);
  const stack far = distances(image, statistics);
  const stack unlabelled = training_labels({}, any.nrow, any.ncol);
  const matrix nearest = out.step("classes by least distance", [&] { return classify(unlabelled, far, 0.0); });
  const matrix smooth = out.step("classes in a Markov field", [&] { return classify(unlabelled, far, 2.0); });
  out.hang("training_squares", lit(photo.colour, labels.mats[0]), "training squares", "imgset_*_estimate");
  out.hang("nearest_class", coloured(nearest, squares), "nearest class", "imgset_*_distance");
  out.hang("markov_field", coloured(smooth, squares), "in a Markov field", "imgset_*_random_field");
}

}  // namespace demo

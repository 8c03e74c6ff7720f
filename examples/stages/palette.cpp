// A palette of 64 colours: a codebook grown from the picture's own pixels.
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

#include "stages/stages.hpp"

namespace demo {
namespace {

constexpr std::int32_t colours = 64;

// A random state of the library's.
class dice_state {
 public:
  dice_state() { check(korvo_rand_begin(&state_)); }
  dice_state(const dice_state&) = delete;
  dice_state& operator=(const dice_state&) = delete;
  ~dice_state() { (void)korvo_rand_end(state_); }
  void* get() const { return state_; }

 private:
  void* state_ = nullptr;
};

// Some thousand pixels, a row each.
matrix sample(const _mat_set& picture) {
  constexpr std::int32_t wanted = 12000;
  const std::int32_t pixels = picture.mats[0].nelem;
  const std::int32_t step = std::max(1, pixels / wanted);
  matrix out((pixels + step - 1) / step, 3);
  for (std::int32_t k = 0; k < 3; ++k) {
    const std::uint8_t* const band = elements<std::uint8_t>(picture.mats[k]).data();
    for (std::int32_t r = 0; r < out.nrow; ++r) element(out, r, k) = band[std::ptrdiff_t{r} * step];
  }
  return out;
}

matrix grow(const _univ_mat& pixels) {
  const dice_state dice;
  matrix codebook(std::min(colours, pixels.nrow), 3);
  double distortion = 0.0;
  check(clsuniv_vector_quantizer_design_lbg(&pixels, 1e-3, 2.0, 0.02, 0, nullptr, dice.get(), &codebook,
                                            &distortion, nullptr, nullptr));
  return codebook;
}

std::int32_t nearest(const _univ_mat& codebook, const std::array<double, 3>& pixel) {
  std::int32_t best = 0;
  double least = std::numeric_limits<double>::max();
  for (std::int32_t r = 0; r < codebook.nrow; ++r) {
    double distance = 0.0;
    for (std::int32_t k = 0; k < 3; ++k)
      distance += std::pow(pixel[static_cast<std::size_t>(k)] - element(codebook, r, k), 2.0);
    if (distance < least) least = distance, best = r;
  }
  return best;
}

planes painted(const _mat_set& picture, const _univ_mat& codebook) {
  planes out(picture.mats[0].nrow, picture.mats[0].ncol, KORVO_DOUBLE);
  for (std::size_t i = 0; i < static_cast<std::size_t>(picture.mats[0].nelem); ++i) {
    std::array<double, 3> pixel{};
    for (std::size_t k = 0; k < 3; ++k) pixel[k] = elements<std::uint8_t>(picture.mats[k])[i];
    const std::int32_t code = nearest(codebook, pixel);
    for (std::int32_t k = 0; k < 3; ++k) elements(out.mats[k])[i] = element(codebook, code, k);
  }
  return as_type(out, KORVO_UINT8);
}

// The colours as squares, from dark to light.
planes swatches(const _univ_mat& codebook) {
  constexpr std::int32_t side = 8, size = 40;
  std::vector<std::int32_t> order(static_cast<std::size_t>(codebook.nrow));
  std::iota(order.begin(), order.end(), 0);
  const auto light = [&](std::int32_t r) {
    return 0.299 * element(codebook, r, 0) + 0.587 * element(codebook, r, 1) + 0.114 * element(codebook, r, 2);
  };
  std::ranges::stable_sort(order, {}, light);
  planes out(side * size, side * size * 4 / 3, KORVO_UINT8);
  for (std::int32_t k = 0; k < 3; ++k)
    for (std::int32_t r = 0; r < out.mats[k].nrow; ++r)
      for (std::int32_t c = 0; c < out.mats[k].ncol; ++c) {
        const std::int32_t at = (r * side / out.mats[k].nrow) * side + c * side / out.mats[k].ncol;
        const std::int32_t code = order[static_cast<std::size_t>(std::min(at, codebook.nrow - 1))];
        element<std::uint8_t>(out.mats[k], r, c) =
            static_cast<std::uint8_t>(std::clamp(std::floor(element(codebook, code, k) + 0.5), 0.0, 255.0));
      }
  return out;
}

}  // namespace

void show_palette(const subject& photo, gallery& out) {
  const matrix pixels = sample(photo.colour);
  const matrix codebook = out.step("a palette of 64, by splitting", [&] { return grow(pixels); });
  const planes reduced = out.step("the picture in it", [&] { return painted(photo.colour, codebook); });
  out.save("palette", swatches(codebook));
  out.hang("in_64_colours", reduced, "in 64 colours", "clsuniv_*_design_lbg");
}

}  // namespace demo

// Reads or paints the picture, and forms its luminance.
#include "subject.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "picture.hpp"
#include "scaling.hpp"

namespace demo {
namespace {

constexpr std::int32_t longest_side = 1600;

// The digit of "P1" to "P6".
int magic(const std::string& path) {
  const file stream = open(path, "rb");
  const int letter = std::fgetc(stream.get());
  const int digit = std::fgetc(stream.get());
  if (letter != 'P' || digit < '1' || digit > '6')
    throw failure("not a PBM, PGM or PPM picture: those begin with P1 to P6");
  return digit - '0';
}

planes read(const std::string& path) {
  return magic(path) % 3 == 0 ? read_colour(path) : thrice(read_grey(path));
}

// Pictures of 16 and 32 bits come down to 8: the brightest sample becomes 255.
planes in_eight_bits(const _mat_set& in) {
  double brightest = 1.0;
  planes out = as_type(in, KORVO_DOUBLE);
  for (std::int32_t k = 0; k < out.nmat; ++k) {
    _univ_scalar lowest, highest;
    check(matuniv_range(&out.mats[k], nullptr, &lowest, &highest));
    brightest = std::max(brightest, highest.value.dbl);
  }
  for (std::int32_t k = 0; k < out.nmat; ++k)
    check(matuniv_multiply_scalar(&out.mats[k], number(255.0 / brightest), nullptr, &out.mats[k]));
  return as_type(out, KORVO_UINT8);
}

// 0.299 red + 0.587 green + 0.114 blue. The result is dbl, so the u8 planes are cast on the way.
matrix luminance_of(const _mat_set& colour) {
  constexpr std::array<double, 3> weights{0.299, 0.587, 0.114};
  const _univ_mat& shape = colour.mats[0];
  matrix sum = filled(shape.nrow, shape.ncol, 0.0);
  matrix part(shape.nrow, shape.ncol);
  for (std::size_t k = 0; k < weights.size(); ++k) {
    check(matuniv_multiply_scalar(&colour.mats[k], number(weights[k]), nullptr, &part));
    check(matuniv_add(&sum, &part, nullptr, &sum));
  }
  return sum;
}

planes make_colour(const std::string& path, gallery& out) {
  if (path.empty()) return out.step("paint the test picture", [] { return render_picture(); });
  planes colour = out.step("read " + path.substr(path.find_last_of('/') + 1), [&] { return read(path); });
  if (colour.first().type != KORVO_UINT8) colour = out.step("in 8 bits", [&] { return in_eight_bits(colour); });
  if (std::max(colour.first().nrow, colour.first().ncol) > longest_side)
    colour = out.step("reduced", [&] { return as_type(limited(colour, longest_side), KORVO_UINT8); });
  return colour;
}

}  // namespace

planes read_colour(const std::string& path) {
  const file stream = open(path, "rb");
  planes out;
  (void)matset_free(&out);  // the reader makes a frame of its own
  check(imgset_read_ppm(stream.get(), nullptr, &out));
  return out;
}

matrix read_grey(const std::string& path) {
  const file stream = open(path, "rb");
  matrix out;
  check(imguniv_read_pgm(stream.get(), nullptr, &out));
  return out;
}

subject make_subject(const std::string& path, gallery& out) {
  print_heading("picture");
  planes colour = make_colour(path, out);
  matrix luminance = out.step("luminance", [&] { return luminance_of(colour); });
  out.hang("picture", colour, "picture", path.empty() ? "painted by the demo" : "read from the file");
  out.hang("luminance", luminance, "luminance", "matuniv_add");
  return {std::move(colour), std::move(luminance)};
}

}  // namespace demo

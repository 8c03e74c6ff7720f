// Writes pictures by libpng.
#include "png.hpp"

#include <png.h>

namespace demo {
namespace {

void write(const std::string& path, const _univ_mat& shape, png_uint_32 format, const void* pixels) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(shape.ncol);
  image.height = static_cast<png_uint_32>(shape.nrow);
  image.format = format;
  if (png_image_write_to_file(&image, path.c_str(), 0, pixels, 0, nullptr) == 0)
    throw failure("cannot write " + path + ": " + image.message);
}

}  // namespace

void write_png(const std::string& path, const _univ_mat& grey) {
  write(path, grey, PNG_FORMAT_GRAY, grey.data);
}

void write_png(const std::string& path, const _mat_set& colour) {
  const _univ_mat& plane = colour.mats[0];
  matrix pixels(plane.nrow, 3 * plane.ncol, KORVO_UINT8);
  check(matset_tile(&colour, nullptr, &pixels));
  write(path, plane, PNG_FORMAT_RGB, pixels.data);
}

}  // namespace demo

// What the stages work on: the user's picture, or the built-in one.
#pragma once

#include <string>

#include "gallery.hpp"
#include "words.hpp"

namespace demo {

struct subject {
  planes colour;     // u8; a grey picture three times
  matrix luminance;  // dbl, 0 to 255
};

// Reads a PGM, PPM or PBM file, whichever of the six forms it has; without a path paints the built-in picture.
subject make_subject(const std::string& path, gallery& out);

// By the first two characters of the file: a colour picture, or a grey one. Sizes and types are the file's own.
planes read_colour(const std::string& path);
matrix read_grey(const std::string& path);

}  // namespace demo

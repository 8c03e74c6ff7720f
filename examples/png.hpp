// Writes pictures as PNG.
#pragma once

#include <string>

#include "words.hpp"

namespace demo {

// A u8 matrix as a grey picture, three u8 matrices as a colour picture.
void write_png(const std::string& path, const _univ_mat& grey);
void write_png(const std::string& path, const _mat_set& colour);

}  // namespace demo

// The built-in test picture: balloons over a lake, with smooth shading, edges, texture and a little noise.
#pragma once

#include <cstdint>

#include "words.hpp"

namespace demo {

// Three u8 planes, the same on every machine.
planes render_picture(std::int32_t rows = 384, std::int32_t cols = 512);

}  // namespace demo

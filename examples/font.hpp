// Letters for captions.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "words.hpp"

namespace demo {

constexpr std::int32_t letter_rows = 8;  // the last one is for tails
constexpr std::int32_t letter_cols = 6;  // with the gap to the next letter

// Writes into three u8 planes, with dots of size by size pixels; (row, col) is the upper left corner. What lies
// outside is left out.
void write_text(const std::string& text, std::int32_t row, std::int32_t col, std::int32_t size,
                const std::array<std::uint8_t, 3>& colour, _mat_set* picture);

}  // namespace demo

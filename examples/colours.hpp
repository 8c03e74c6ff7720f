// The colours of the contact sheet and of plots.
#pragma once

#include <array>
#include <cstdint>

namespace demo {

using ink = std::array<std::uint8_t, 3>;

inline constexpr ink paper{24, 27, 33}, frame{36, 40, 48}, bright{236, 238, 242}, dim{142, 152, 168},
    accent{255, 186, 92}, cool{104, 190, 226};

// From 0, almost black, over violet and red to 1, pale yellow; equal steps look equally large. What is below 0
// or above 1 has the colour of that end.
ink shade(double value);

// A colour for each label, near ones unlike each other; 0 is almost black.
ink label_colour(std::uint32_t label);

}  // namespace demo

// Labels as colours.
#pragma once

#include <cstddef>

#include "colours.hpp"
#include "words.hpp"

namespace demo {

template <class Label>
planes in_label_colours(const _univ_mat& labels) {
  planes out(labels.nrow, labels.ncol, KORVO_UINT8);
  for (std::size_t i = 0; i < static_cast<std::size_t>(labels.nelem); ++i) {
    const ink colour = label_colour(static_cast<std::uint32_t>(elements<Label>(labels)[i]));
    for (std::size_t k = 0; k < colour.size(); ++k) elements<std::uint8_t>(out.mats[k])[i] = colour[k];
  }
  return out;
}

}  // namespace demo

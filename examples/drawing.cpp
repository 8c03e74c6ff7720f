// A line is rendered as a mask, made wider by a dilation, and painted.
#include "drawing.hpp"

#include <algorithm>

namespace demo {

void draw(const _univ_mat& polygon, bool closed, ink colour, const _mat_set& picture) {
  const _univ_mat& any = picture.mats[0];
  matrix line(any.nrow, any.ncol, KORVO_UINT8), wide(any.nrow, any.ncol, KORVO_UINT8), pen(3, 3, KORVO_UINT8);
  std::ranges::fill(elements<std::uint8_t>(pen), std::uint8_t{1});
  const _dbl_mat corners = {polygon.nrow, polygon.ncol, polygon.nelem, static_cast<double*>(polygon.data)};
  check(pgndbl_render_line(&corners, closed ? 1 : 0, byte(1), byte(0), nullptr, &line));
  check(imguniv_binary_dilate(&line, &pen, 1, 1, byte(1), byte(0), nullptr, &wide));
  for (std::size_t k = 0; k < colour.size(); ++k)
    for (std::size_t i = 0; i < elements<std::uint8_t>(wide).size(); ++i)
      if (elements<std::uint8_t>(wide)[i] != 0) elements<std::uint8_t>(picture.mats[k])[i] = colour[k];
}

planes dimmed(const _univ_mat& grey) {
  matrix darker(grey.nrow, grey.ncol);
  check(matuniv_multiply_scalar(&grey, number(0.6), nullptr, &darker));
  return thrice(as_type(darker, KORVO_UINT8));
}

}  // namespace demo

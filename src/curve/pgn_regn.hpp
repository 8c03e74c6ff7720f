// What chains and the rendering of polygons share.
#pragma once

#include <cmath>
#include <cstdint>

#include "core/code.hpp"
#include "curve/polygon.hpp"
#include "korvos/curve/pgn_regn.h"

namespace korvo {

// One step in each direction.
constexpr std::int8_t row_step[] = {0, 1, 1, 1, 0, -1, -1, -1};
constexpr std::int8_t col_step[] = {1, 1, 0, -1, -1, -1, 0, 1};

// Chains and polygons made from chains grow by so many links or vertices.
constexpr std::int32_t growth = 1000;

[[nodiscard]] inline code has_vertices(const _dbl_mat& polygon) {
  return polygon.ncol == 2 && polygon.nrow >= 2 ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_SIZE;
}

// Whether positions may be made of all coordinates: NaN is none, and infinity is too far.
[[nodiscard]] inline code can_be_placed(const _dbl_mat& polygon) {
  constexpr double farthest = 1e9;
  for (std::int64_t i = 0; i < polygon.nelem; ++i)
    if (!(std::fabs(polygon.data[i]) <= farthest)) return KORVO_ERR_ILLEGAL_VALUE;
  return KORVO_ERR_OK;
}

}  // namespace korvo

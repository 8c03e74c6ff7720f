// What the routines for chains share: their checks, and one search in a row of marks.
#pragma once

#include <cstdint>
#include <initializer_list>

#include "core/code.hpp"
#include "korvos/core/mat_univ.h"

namespace korvo {

constexpr std::int32_t dead = -1;  // where a chain would have its instant

// Null pointers first, then types, then validation.
code validate_integers(std::initializer_list<const _univ_mat*> mats);

// Links chains to a row of `marks` and `map`, both of `cols` columns. `tips` and `origins` have two rows; tips
// lie within the row or are dead. `linked` may be null.
code seek_chains(std::int32_t* marks, std::int32_t* map, std::int64_t cols, const _s32_mat& tips,
                 const _s32_mat& origins, double maximum_distance, void* intrp_ptr, std::int32_t* linked);

}  // namespace korvo

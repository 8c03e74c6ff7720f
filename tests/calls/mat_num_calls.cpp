#include "korvos/numeric/mat_num.h"
#include "tests/calls/calls.hpp"

call_rows mat_num_calls() {
  constexpr std::int32_t n = 40;  // two panels of a decomposition
  // The universal forms take pivots of a type of their own.
  const auto factor = [](scene& s) -> ready_call {
    _univ_mat* const m[] = {s.in(KORVO_DOUBLE, n, n), s.out(KORVO_SINT32, n, 1), s.out(KORVO_DOUBLE, n, n)};
    return [=](void* intrp_ptr) { return matuniv_lu_decomposition(m[0], intrp_ptr, m[1], m[2]); };
  };
  const auto solve = [](scene& s) -> ready_call {
    const _univ_mat* const m[] = {s.in(KORVO_DOUBLE, n, n, 1, 9), s.in(KORVO_DOUBLE, n, 1, 1, 9)};
    _univ_mat *const pivots = s.in(KORVO_SINT32, n, 1, 1, 9), *const x = s.out(KORVO_DOUBLE, n, 1);
    return [=](void* intrp_ptr) { return matuniv_lu_solve(m[0], m[1], pivots, intrp_ptr, x); };
  };
  return {ROW(matdbl_lu_decomposition, args().shaped({{n, n}, {n, 1}, {n, n}})),
          ROW(matdbl_lu_solve, args().shaped({{n, n}, {n, 1}, {n, 1}, {n, 1}}).within(1, 9)),
          ROW(matdbl_inverse, args().sized(9, 9)),
          ROW(matuniv_inverse, args().sized(9, 9)),
          ROW(matdbl_non_negative_least_squares, args().shaped({{50, n}, {1, 50}, {n, 1}}).within(-9, 9)),
          {"matuniv_lu_decomposition", factor},
          {"matuniv_lu_solve", solve}};
}

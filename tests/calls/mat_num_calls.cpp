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
  const faults factored = checked(3, {shaped(0, n, 1), shaped(1, n - 1, 1), shaped(1, 1, n), shaped(2, 1, n),
                                      sharing(1, 0), sharing(2, 1)}),
               solved = checked(4, {shaped(0, n, 1), shaped(1, n, 2), shaped(2, n - 1, 1), shaped(3, n - 1, 1),
                                    sharing(3, 0), sharing(3, 2)}),
               fitted = checked(3, {shaped(1, 1, 49), shaped(2, n - 1, 1), sharing(2, 0), sharing(2, 1)});
  const given inverted = args().sized(9, 9).refusing(checked(2, {shaped(0, 9, 8), shaped(1, 8, 9)}));
  return {ROW(matdbl_lu_decomposition, args().shaped({{n, n}, {n, 1}, {n, n}}).refusing(factored)),
          ROW(matdbl_lu_solve, args().shaped({{n, n}, {n, 1}, {n, 1}, {n, 1}}).within(1, 9).refusing(solved)),
          ROW(matdbl_inverse, inverted),
          ROW(matuniv_inverse, inverted),
          ROW(matdbl_non_negative_least_squares,
              args().shaped({{50, n}, {1, 50}, {n, 1}}).within(-9, 9).refusing(fitted)),
          {"matuniv_lu_decomposition", factor},
          {"matuniv_lu_solve", solve}};
}

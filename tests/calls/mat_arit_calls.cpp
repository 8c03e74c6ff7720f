#include "korvos/matrix/mat_arit.h"
#include "tests/calls/calls.hpp"

// With operands of other types than the result too: a temporary for each. Universal operands are wrapped anew,
// whatever count of elements they state.
#define MIXED_ROWS(op, how)                       \
  TYPED_ROWS(op, how), ROW(matuniv_##op, args()), \
      VARIANT(matuniv_##op, "mixed", args(1.5).of(KORVO_UINT8, KORVO_DOUBLE))

call_rows mat_arit_calls() {
  const given pair = args().refusing(checked(3, {shaped(2, 7, 6)}, true)),
              one = args().refusing(checked(2, {shaped(1, 7, 6)}, true));
  return {
      MIXED_ROWS(add, pair),        MIXED_ROWS(subtract, pair),  MIXED_ROWS(multiply_elem, pair),
      MIXED_ROWS(multiply, args()), MIXED_ROWS(add_scalar, one), MIXED_ROWS(multiply_scalar, one),
      ROW(mats16_abs, one),         ROW(mats32_abs, one),        ROW(matflt_abs, one),
      ROW(matdbl_abs, one),         ROW(matuniv_abs, one),       REAL_ROWS(rescale, args(3, 90)),
  };
}

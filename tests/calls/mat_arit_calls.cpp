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
  const given product = args().refusing({null(2), miscounted(2), null(0), no_data(0), null(1), no_data(1),
                                         shaped(2, 6, 7), shaped(1, 6, 7), sharing(2, 0), sharing(2, 1)});
  const given range = args(3, 90).refusing({null(1), miscounted(1), no_data(0), shaped(1, 6, 7), valued(1, 2)});
  return {
      MIXED_ROWS(add, pair),
      MIXED_ROWS(subtract, pair),
      MIXED_ROWS(multiply_elem, pair),
      MIXED_ROWS(multiply, product),
      MIXED_ROWS(add_scalar, one),
      MIXED_ROWS(multiply_scalar, one),
      ROW(mats16_abs, one),
      ROW(mats32_abs, one),
      ROW(matflt_abs, one),
      ROW(matdbl_abs, one),
      ROW(matuniv_abs, one),
      TYPED_ROWS(rescale, range),
      ROW(matuniv_rescale, args(3, 90)),
  };
}

#include "korvos/matrix/mat_arit.h"
#include "tests/calls/calls.hpp"

// With operands of other types than the result too: a temporary for each.
#define MIXED_ROWS(op) \
  REAL_ROWS(op, args()), VARIANT(matuniv_##op, "mixed", args(1.5).of(KORVO_UINT8, KORVO_DOUBLE))

call_rows mat_arit_calls() {
  return {
      MIXED_ROWS(add),         MIXED_ROWS(subtract),     MIXED_ROWS(multiply_elem),
      MIXED_ROWS(multiply),    MIXED_ROWS(add_scalar),   MIXED_ROWS(multiply_scalar),
      ROW(mats16_abs, args()), ROW(mats32_abs, args()),  ROW(matflt_abs, args()),
      ROW(matdbl_abs, args()), ROW(matuniv_abs, args()), REAL_ROWS(rescale, args(3, 90)),
  };
}

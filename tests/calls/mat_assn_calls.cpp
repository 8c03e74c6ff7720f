#include "korvos/matrix/mat_assn.h"
#include "tests/calls/calls.hpp"

call_rows mat_assn_calls() {
  return {
      REAL_ROWS(assign, args()),      REAL_ROWS(assign_zeropad, args()), ALL_ROWS(assign_submat, args(0, 0)),
      ALL_ROWS(extract, args(0, 0)),  ALL_ROWS(transpose, args()),       ALL_ROWS(flip_left_right, args()),
      ALL_ROWS(flip_up_down, args()), ALL_ROWS(assign_scalar, args(3)),  REAL_ROWS(translate, args(2, -1, 3)),
  };
}

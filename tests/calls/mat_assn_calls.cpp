#include "korvos/matrix/mat_assn.h"
#include "tests/calls/calls.hpp"

call_rows mat_assn_calls() {
  const faults same_shape = checked(2, {shaped(1, 7, 6)});
  return {
      REAL_ROWS(assign, args().refusing(same_shape)),
      REAL_ROWS(assign_zeropad, args().refusing(checked(2, {shaped(1, 6, 9), sharing(1, 0)}))),
      ALL_ROWS(assign_submat,
               args(0, 0).refusing(checked(2, {valued(1, -1, KORVO_ERR_ILLEGAL_SIZE), sharing(1, 0)}))),
      ALL_ROWS(extract, args(0, 0).refusing(checked(2, {sharing(1, 0), valued(0, 1, KORVO_ERR_ILLEGAL_SIZE)}))),
      ALL_ROWS(transpose, args().refusing(same_shape)),
      ALL_ROWS(flip_left_right, args().refusing(same_shape)),
      ALL_ROWS(flip_up_down, args().refusing(same_shape)),
      ALL_ROWS(assign_scalar, args(3)),
      REAL_ROWS(translate, args(2, -1, 3)),
  };
}

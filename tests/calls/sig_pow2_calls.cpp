#include "korvos/signal/sig_pow2.h"
#include "tests/calls/calls.hpp"

// Long enough for every stage and for rotations, or of a closed form, or one element.
#define VECTOR_ROWS(op)                                                                                     \
  ROW(sigdbl_##op, args().sized(1, 64).refusing(refused)), VARIANT(sigdbl_##op, "one", args().sized(1, 1)), \
      ROW(siguniv_##op, args().sized(4, 1).refusing(refused))
#define MATRIX_ROW(name, inverse) ROW(name, args(inverse).sized(16, 8).refusing(refused))

call_rows sig_pow2_calls() {
  const faults refused = checked(2, {shaped(1, 1, 2)});
  return {VECTOR_ROWS(transform_hartley), VECTOR_ROWS(transform_discrete_cosine_II_pow2),
          VECTOR_ROWS(transform_discrete_cosine_II_inverse_pow2),
          MATRIX_ROW(sigdbl_transform_discrete_cosine_II_2d_pow2, 0),
          MATRIX_ROW(siguniv_transform_discrete_cosine_II_2d_pow2, 1)};
}

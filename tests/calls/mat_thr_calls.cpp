#include "korvos/matrix/mat_thr.h"
#include "tests/calls/calls.hpp"

call_rows mat_thr_calls() {
  const given inside = args(10, 30, 0, 1);
  return {
      ROW(matuniv_threshold, given(inside).refusing({null(0), null(1), other_type(1), miscounted(0), no_data(1),
                                                     shaped(1, 7, 6), valued(0, NAN), valued(1, NAN)})),
      VARIANT(matuniv_threshold, "strips", given(inside).sized(3, 2048)),
      VARIANT(matuniv_threshold, "bytes", given(inside).of(KORVO_UINT8, KORVO_DOUBLE))};
}

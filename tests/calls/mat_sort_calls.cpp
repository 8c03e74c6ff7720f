#include "korvos/matrix/mat_sort.h"
#include "tests/calls/calls.hpp"

call_rows mat_sort_calls() {
  return {ROW(matdbl_sort_index_partial, args()
                                             .within(0, 5)
                                             .shaped({{7, 9}, {3, 1}, {7, 9}})
                                             .refusing({null(0), no_data(0), null(2), miscounted(2), no_data(1),
                                                        shaped(2, 9, 7), sharing(2, 1)})),
          ROW(matuniv_sort, args().refusing({null(0), null(1), other_type(1), miscounted(0), no_data(1),
                                             shaped(1, 6, 7), sharing(1, 0)})),
          VARIANT(matuniv_sort, "runs", args().sized(200, 200))};
}

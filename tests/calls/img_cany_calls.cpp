#include "korvos/segment/img_cany.h"
#include "tests/calls/calls.hpp"

call_rows img_cany_calls() {
  const fault small = {fault::shape, 0, KORVO_ERR_ILLEGAL_VALUE, 7, 9};
  const faults canny = {null(1), null(0), valued(2, 0.5), valued(1, NAN), small, shaped(1, 9, 10)};
  const faults flood = {miscounted(0), null(1), other_type(1), shaped(1, 7, 6), valued(1, NAN), sharing(1, 0)};
  faults pair = {null(2), null(1), null(0), other_type(2), other_type(1)}, suppress = pair;
  pair.insert(pair.end(), {sharing(2, 1), sharing(2, 0), sharing(1, 0), valued(0, NAN), valued(0, 0), small});
  suppress.insert(suppress.end(), {no_data(1), miscounted(0), shaped(2, 7, 6), sharing(2, 1), sharing(2, 0)});
  return {ROW(imguniv_edge_canny, args(1.5, 1, 2, 7, 3).sized(9, 11).refusing(canny)),
          ROW(imguniv_filter_derivative_of_gaussian, args(1.5).sized(9, 8).refusing(pair)),
          ROW(imgdbl_edge_nonmaxima_suppress, args().refusing(suppress)),
          ROW(imguniv_edge_nonmaxima_suppress, args().refusing(suppress)),
          ROW(imguniv_threshold_hysteresis, args(20, 45, 7, 3).refusing(flood))};
}

#include "korvos/segment/img_edge.h"
#include "tests/calls/calls.hpp"

call_rows img_edge_calls() {
  const faults gradient = {null(2), null(1), null(0), no_data(0), other_type(2), sharing(2, 0)};
  const faults edges = {null(1), null(0), no_data(0), valued(1, 39), valued(0, 0), valued(0, NAN)};
  return {ROW(imguniv_gradient_sobel, args().refusing(gradient)),
          VARIANT(imguniv_gradient_sobel, "complex", args().of(KORVO_DOUBLE, KORVO_DCOMPLEX)),
          ROW(imguniv_edge_sobel, args(40, 90, 7, 3).refusing(edges))};
}

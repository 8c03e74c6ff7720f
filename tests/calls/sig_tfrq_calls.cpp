#include "korvos/signal/sig_tfrq.h"
#include "tests/calls/calls.hpp"

namespace {

// Instants that run on past the signal.
given plane() {
  return args(2)
      .shaped({{1, 40}, {6, 22}})
      .refusing({null(0), null(1), other_type(1), shaped(0, 2, 20), sharing(1, 0), valued(0, 0)});
}
given smoothed(std::int32_t rows, std::int32_t cols) {
  return args(2)
      .shaped({{rows, cols}, {3, 6}, {6, 22}})
      .refusing({null(0), null(1), null(2), other_type(2), other_type(1), shaped(0, 2, 20), sharing(2, 0),
                 valued(0, 0), shaped(1, 6, 3), sharing(2, 1)});
}
given williams() {
  return args(0.5, 2)
      .shaped({{1, 40}, {6, 22}})
      .refusing({null(0), null(1), other_type(1), shaped(0, 2, 20), sharing(1, 0), valued(1, 0), valued(0, 0),
                 shaped(1, 41, 2)});
}

}  // namespace

#define PLANE_ROWS(op) \
  ROW(sigdbl_timefreq_autocorrelate_##op, plane()), ROW(siguniv_timefreq_autocorrelate_##op, plane())

call_rows sig_tfrq_calls() {
  const faults kernel = {null(0), valued(2, 0), valued(2, -1), valued(1, 0), valued(0, 0)};
  return {PLANE_ROWS(wigner),
          PLANE_ROWS(cone),
          PLANE_ROWS(born_jordan),
          PLANE_ROWS(margeneau_hill),
          ROW(sigdbl_timefreq_autocorrelate_choi_williams, williams()),
          ROW(siguniv_timefreq_autocorrelate_choi_williams, williams()),
          ROW(sigdbl_timefreq_autocorrelate_custom, smoothed(1, 40)),
          VARIANT(sigdbl_timefreq_autocorrelate_custom, "column", smoothed(40, 1)),
          ROW(siguniv_timefreq_autocorrelate_custom, smoothed(1, 40)),
          ROW(sigdbl_kernel_choi_williams, args(5, 30, 0.5).making().refusing(kernel)),
          ROW(siguniv_kernel_choi_williams, args(5, 30, 0.5, KORVO_DOUBLE).making().refusing(kernel))};
}

#include "korvos/signal/sig_conv.h"
#include "tests/calls/calls.hpp"

namespace {

// All parameters 1.
given sets() { return args(SIG_BOUNDARY_CONTINUE).of(KORVO_UINT8, KORVO_DOUBLE).within(1.0, 1.9).sized(3, 1); }

// Steps, origins, boundary.
given filter() {
  return args(1, 2, 3, 4, SIG_BOUNDARY_REFLECT)
      .refusing({null(2), null(1), null(0), no_data(1), miscounted(2), shaped(2, 7, 8), sharing(2, 0),
                 sharing(2, 1), valued(0, 0), valued(1, -1), valued(2, 8), valued(3, 0), valued(4, 9)});
}
given mixed(_korvo_type in, _korvo_type out) { return args(1, 1, 1, 1, SIG_BOUNDARY_ZERO).of(in, out); }

}  // namespace

// With operands of other types than the result too: a temporary for each, and for a complex convolution one
// more.
#define FILTER_ROWS(op)                                                                              \
  ROW(sigu8_##op, filter()), ROW(sigu16_##op, filter()), ROW(sigu32_##op, filter()),                 \
      ROW(sigs32_##op, filter()), ROW(sigdbl_##op, filter()), ROW(sigcpx_##op, filter()),            \
      ROW(siguniv_##op, filter()), VARIANT(siguniv_##op, "mixed", mixed(KORVO_UINT8, KORVO_DOUBLE)), \
      VARIANT(siguniv_##op, "complex", mixed(KORVO_DOUBLE, KORVO_DCOMPLEX)), ROW(sigset_##op, sets())

call_rows sig_conv_calls() { return {FILTER_ROWS(correlate), FILTER_ROWS(convolve)}; }

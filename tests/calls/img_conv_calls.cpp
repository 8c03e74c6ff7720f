#include "korvos/segment/img_conv.h"
#include "korvos/signal/sig_conv.h"
#include "tests/calls/calls.hpp"

// With operands of other types than the result too: a temporary for each.
#define CENTRED(name)                     \
  ROW(name, args(SIG_BOUNDARY_PERIODIC)), \
      VARIANT(name, "mixed", args(SIG_BOUNDARY_PERIODIC).of(KORVO_UINT8, KORVO_DOUBLE))
#define LOCAL(name) ROW(name, args(5, 3, SIG_BOUNDARY_CONTINUE).refusing(local))

call_rows img_conv_calls() {
  const auto window = [](int k) { return valued(k, 2, KORVO_ERR_ILLEGAL_SIZE); };
  const faults local = checked(2, {shaped(1, 7, 6), sharing(1, 0), window(0), window(1), valued(2, 1)});
  return {
      CENTRED(imguniv_convolve), CENTRED(imguniv_correlate),   LOCAL(imgdbl_local_mean),
      LOCAL(imguniv_local_mean), LOCAL(imgdbl_local_variance), LOCAL(imguniv_local_variance),
  };
}

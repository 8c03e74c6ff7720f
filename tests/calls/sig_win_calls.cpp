#include "korvos/signal/sig_win.h"
#include "tests/calls/calls.hpp"

#define WINDOW_ROWS(name, ...)                                                                       \
  ROW(sigdbl_window_##name, args(__VA_ARGS__).sized(1, 33).refusing(checked(1, {shaped(0, 2, 2)}))), \
      ROW(siguniv_window_##name, args(__VA_ARGS__).sized(8, 1).refusing(checked(1, {shaped(0, 2, 2)})))

call_rows sig_win_calls() {
  return {WINDOW_ROWS(rectangle),   WINDOW_ROWS(triangle),       WINDOW_ROWS(raised_cosine, 0.5),
          WINDOW_ROWS(hanning),     WINDOW_ROWS(hamming),        WINDOW_ROWS(blackman),
          WINDOW_ROWS(nuttall),     WINDOW_ROWS(gaussian, 2.5),  WINDOW_ROWS(kaiser, 3.0),
          WINDOW_ROWS(born_jordan), WINDOW_ROWS(chebyshev, 60.0)};
}

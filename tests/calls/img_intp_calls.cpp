#include "korvos/image/img_intp.h"
#include "tests/calls/calls.hpp"

call_rows img_intp_calls() {
  return {ROW(imguniv_interpolate_linear, args(2.25, 6.5).refusing({null(0), no_data(0), miscounted(0)}))};
}

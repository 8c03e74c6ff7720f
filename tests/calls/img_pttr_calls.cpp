#include <cmath>

#include "korvos/image/img_pttr.h"
#include "tests/calls/calls.hpp"

call_rows img_pttr_calls() {
  return {
      ROW(imguniv_map_window_level,
          args(10, 40)
              .of(KORVO_DOUBLE, KORVO_UINT8)
              .refusing({null(0), null(1), other_type(1), other_type(0), miscounted(0), no_data(1),
                         shaped(1, 4, 4), sharing(1, 0), valued(1, NAN)})),
      VARIANT(imguniv_map_window_level, "u8", args(10, 40).of(KORVO_UINT8, KORVO_UINT8)),
      VARIANT(imguniv_map_window_level, "threshold", args(20, 20).of(KORVO_SINT32, KORVO_UINT8)),
  };
}

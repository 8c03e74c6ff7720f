#include "korvos/image/img_pttr.h"
#include "tests/calls/calls.hpp"

call_rows img_pttr_calls() {
  return {
      ROW(imguniv_map_window_level, args(10, 40).of(KORVO_DOUBLE, KORVO_UINT8)),
      VARIANT(imguniv_map_window_level, "u8", args(10, 40).of(KORVO_UINT8, KORVO_UINT8)),
      VARIANT(imguniv_map_window_level, "threshold", args(20, 20).of(KORVO_SINT32, KORVO_UINT8)),
  };
}

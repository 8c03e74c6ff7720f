#include "korvos/image/img_pttr.h"
#include "tests/calls/calls.hpp"

namespace {

call_row window_row(std::string name, _korvo_type type, double low, double high) {
  return {std::move(name), [=](scene& s) -> ready_call {
            const _univ_mat* const image = s.in(type, 5, 9);
            _univ_mat* const out = s.out(KORVO_UINT8, 5, 9);
            return [=](void* intrp_ptr) { return imguniv_map_window_level(image, low, high, intrp_ptr, out); };
          }};
}

}  // namespace

call_rows img_pttr_calls() {
  return {
      window_row("imguniv_map_window_level", KORVO_DOUBLE, 10.0, 40.0),
      window_row("imguniv_map_window_level/u8", KORVO_UINT8, 10.0, 40.0),
      window_row("imguniv_map_window_level/threshold", KORVO_SINT32, 20.0, 20.0),
  };
}

#include "korvos/image/img_morp.h"
#include "tests/calls/calls.hpp"

// Image and element of a universal form are of two types.
template <class Form, class... P>
static call_row universal(const char* name, Form form, P... origin) {
  return {name, [=](scene& s) -> ready_call {
            const auto *image = s.in(KORVO_DOUBLE, 37, 70, 0.0, 1.5), *by = s.in(KORVO_UINT8, 3, 5, 0.0, 1.5);
            const _univ_scalar one{{.dbl = 1.0}, KORVO_DOUBLE}, none{{.dbl = 0.0}, KORVO_DOUBLE};
            _univ_mat* const out = s.out(KORVO_DOUBLE, 37, 70);
            return [=](void* host) { return form(image, by, origin..., one, none, host, out); };
          }};
}

// Origin, foreground, background. Small numbers, so that both values occur.
call_rows img_morp_calls() {
  given once = args(1, 2, 1, 0).within(0.0, 1.5).shaped({{37, 70}, {3, 5}, {37, 70}});
  once.refusing(checked(3, {shaped(2, 37, 69), sharing(2, 0), sharing(2, 1), valued(3, 1)}));
#define ROWS(op)                                                                              \
  ROW(imgu8_binary_##op, once), ROW(imgu16_binary_##op, once), ROW(imgs32_binary_##op, once), \
      ROW(imgdbl_binary_##op, once), universal("imguniv_binary_" #op, imguniv_binary_##op, 1, 2)
  return {ROWS(erode), ROWS(dilate), universal("imguniv_binary_open", imguniv_binary_open),
          universal("imguniv_binary_close", imguniv_binary_close)};
}

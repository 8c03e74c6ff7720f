#include "korvos/wavelet/wav_modw.h"
#include "tests/calls/calls.hpp"

call_rows wav_modw_calls() {
  // series or crystals, filters, results
  const auto shapes = [](int n, int length, int in, int out) {
    return args(2).within(-5.0, 5.0).shaped({{n, in}, {length, 1}, {length, 1}, {n, out}, {n, out}});
  };
  const fault levels = valued(0, 0, KORVO_ERR_ILLEGAL_SIZE), filters = shaped(1, 1, 2);
  return {
      ROW(wavuniv_transform_maximum_overlap,
          shapes(40, 2, 1, 2)
              .refusing({null(0), null(3), null(4), no_data(1), miscounted(3), filters, other_type(4), levels,
                         shaped(2, 1, 1), shaped(3, 40, 1), no_data(4), shaped(4, 40, 1), sharing(4, 3)})),
      VARIANT(wavuniv_transform_maximum_overlap, "wrapping", shapes(5, 9, 1, 2)),
      ROW(wavuniv_transform_maximum_overlap_packet,
          shapes(5, 2, 1, 7)
              .refusing({null(0), null(3), no_data(1), miscounted(3), filters, levels, shaped(3, 5, 3),
                         other_type(3)})),
      ROW(wavuniv_transform_maximum_overlap_inverse,
          shapes(40, 6, 3, 3)
              .refusing({null(0), null(3), no_data(1), miscounted(3), filters, other_type(3), levels,
                         shaped(2, 5, 1), shaped(3, 40, 2), sharing(3, 0)}))};
}

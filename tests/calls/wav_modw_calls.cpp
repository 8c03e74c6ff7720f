#include "korvos/wavelet/wav_modw.h"
#include "tests/calls/calls.hpp"

call_rows wav_modw_calls() {
  // series or crystals, filters, results
  const auto shapes = [](int n, int length, int in, int out) {
    return args(2).within(-5.0, 5.0).shaped({{n, in}, {length, 1}, {length, 1}, {n, out}, {n, out}});
  };
  return {ROW(wavuniv_transform_maximum_overlap, shapes(40, 2, 1, 2)),
          VARIANT(wavuniv_transform_maximum_overlap, "wrapping", shapes(5, 9, 1, 2)),
          ROW(wavuniv_transform_maximum_overlap_packet, shapes(5, 2, 1, 7)),
          ROW(wavuniv_transform_maximum_overlap_inverse, shapes(40, 6, 3, 3))};
}

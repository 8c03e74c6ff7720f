#include "korvos/wavelet/wav_skel.h"
#include "tests/calls/calls.hpp"

call_rows wav_skel_calls() {
  const auto marks = [](double least) {
    return args(2)
        .sized(6, 12)
        .within(least, least + 3.0)
        .of(KORVO_SINT32, KORVO_SINT32)
        .changing()
        .refusing({null(1), other_type(2), miscounted(0), sharing(2, 1), valued(0, 0)});
  };
  return {ROW(wavuniv_transform_modulus_maxima_skeleton, marks(-1.0)),
          VARIANT(wavuniv_transform_modulus_maxima_skeleton, "empty", marks(-4.0))};
}

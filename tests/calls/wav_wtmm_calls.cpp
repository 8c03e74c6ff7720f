#include "korvos/wavelet/wav_wtmm.h"
#include "tests/calls/calls.hpp"

call_rows wav_wtmm_calls() {
  return {ROW(wavuniv_transform_modulus_maxima, args(0.5, 1)
                                                    .sized(3, 20)
                                                    .of(KORVO_DOUBLE, KORVO_SINT32)
                                                    .refusing(checked(2, {shaped(1, 3, 19), sharing(1, 0)})))};
}

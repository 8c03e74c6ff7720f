#include "korvos/signal/sig_tran.h"
#include "tests/calls/calls.hpp"

namespace {

// Lengths with each kind of butterfly and both stages of the permutation.
given columns(int inverse, std::int32_t rows) {
  return args(inverse).sized(rows, 3).within(-10.0, 10.0).silent().refusing(checked(2, {shaped(1, rows, 2)}));
}
given complex(int inverse, std::int32_t rows, _korvo_type in) {
  return columns(inverse, rows)
      .of(in, KORVO_DCOMPLEX)
      .refusing(
          {null(1), null(0), other_type(1), other_type(0), miscounted(0), no_data(1), shaped(1, rows, 2)});
}
given cosine(std::int32_t rows, std::int32_t cols) {
  return args(1).sized(rows, cols).within(-10.0, 10.0).silent().refusing(checked(2, {}));
}

}  // namespace

call_rows sig_tran_calls() {
  return {
      ROW(sigcpx_transform_discrete_fourier, columns(0, 60)),
      VARIANT(sigcpx_transform_discrete_fourier, "inverse_of_general", columns(1, 4 * 7 * 11)),
      VARIANT(sigcpx_transform_discrete_fourier, "powers", columns(0, 32 * 9)),
      ROW(sigdbl_transform_discrete_fourier, columns(1, 14)),
      ROW(siguniv_transform_discrete_fourier, complex(0, 15, KORVO_DCOMPLEX)),
      VARIANT(siguniv_transform_discrete_fourier, "of_dbl", complex(0, 8, KORVO_DOUBLE)),
      ROW(sigdbl_transform_discrete_cosine_II, cosine(12, 4)),
      VARIANT(sigdbl_transform_discrete_cosine_II, "row", cosine(1, 9)),
      ROW(siguniv_transform_discrete_cosine_II, cosine(5, 2)),
      ROW(sigdbl_transform_discrete_cosine_II_inverse, cosine(12, 4)),
      VARIANT(sigdbl_transform_discrete_cosine_II_inverse, "row", cosine(1, 9)),
      ROW(siguniv_transform_discrete_cosine_II_inverse, cosine(5, 2)),
      ROW(sigdbl_transform_discrete_cosine_II_2d, cosine(5, 6)),
      VARIANT(sigdbl_transform_discrete_cosine_II_2d, "forward",
              args(0).sized(6, 7).within(-10.0, 10.0).silent()),
      ROW(siguniv_transform_discrete_cosine_II_2d, cosine(3, 4)),
  };
}

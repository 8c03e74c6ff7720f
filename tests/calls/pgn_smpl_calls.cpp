#include "korvos/curve/pgn_smpl.h"
#include "tests/calls/calls.hpp"

call_rows pgn_smpl_calls() {
  return {ROW(pgnuniv_resample_linear,
              args(1)
                  .shaped({{5, 2}, {9, 2}})
                  .refusing({null(0), null(1), other_type(0), other_type(1), miscounted(0), no_data(1),
                             shaped(0, 2, 5), shaped(1, 6, 3), sharing(1, 0)})),
          VARIANT(pgnuniv_resample_linear, "open", args(0).shaped({{5, 2}, {4, 2}}))};
}

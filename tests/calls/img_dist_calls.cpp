#include "korvos/segment/img_dist.h"
#include "tests/calls/calls.hpp"

call_rows img_dist_calls() {
  return {ROW(imguniv_transform_distance,
              args(0, 5).within(3, 7).refusing({null(0), null(1), other_type(1), miscounted(0), no_data(1),
                                                shaped(1, 6, 7), sharing(1, 0), valued(0, 3), valued(0, -1)})),
          VARIANT(imguniv_transform_distance, "city_block", args(1, 5).within(3, 7)),
          VARIANT(imguniv_transform_distance, "chessboard", args(2, 5).within(3, 7)),
          VARIANT(imguniv_transform_distance, "nowhere", args(0, 50))};
}

#include "korvos/image/img_gmor.h"
#include "tests/calls/calls.hpp"

// Origin and boundary; the steps of an opening find what is wrong with its result after the first.
call_rows img_gmor_calls() {
  const given sized = args(3).shaped({{35, 37}, {3, 5}, {35, 37}});
  given once = sized, cast = sized, twice = sized;
  once.numbers = cast.numbers = {1, 2, 3};
  once.refusing({null(2), null(1), null(0), no_data(0), no_data(1), miscounted(2), shaped(2, 35, 36),
                 sharing(2, 0), sharing(2, 1), valued(2, 1), valued(2, 4)});
  cast.of(KORVO_UINT8, KORVO_DOUBLE);
  twice.refusing({null(0), sharing(2, 0), null(1), valued(0, 2), other_type(2), shaped(2, 35, 36)});
#define ROWS(op)                                                                                       \
  ROW(imgu8_grayscale_##op, once), ROW(imgu16_grayscale_##op, once), ROW(imgs32_grayscale_##op, once), \
      ROW(imgdbl_grayscale_##op, once), ROW(imguniv_grayscale_##op, once),                             \
      VARIANT(imguniv_grayscale_##op, "cast", cast)
  return {ROWS(erode), ROWS(dilate), ROW(imguniv_grayscale_open, twice), ROW(imguniv_grayscale_close, twice)};
}

#include "korvos/segment/img_ccmp.h"
#include "tests/calls/calls.hpp"

call_rows img_ccmp_calls() {
  // Half of the elements are foreground: more runs than the table has room for at first.
  const auto noise = [](int connectivity, int min_size, const faults& refused = {}) {
    given how = args(connectivity, 1, min_size).sized(18, 1400).within(0.75, 1.25);
    return how.of(KORVO_DOUBLE, KORVO_UINT32).refusing(refused);
  };
  const given typed = noise(0, 1, {null(0), miscounted(0), null(1), no_data(1), shaped(1, 7, 6)});
  return {ROW(imgu8_connected_components, typed),
          ROW(imgu16_connected_components, typed),
          ROW(imgu32_connected_components, typed),
          ROW(imgs16_connected_components, typed),
          ROW(imgs32_connected_components, typed),
          ROW(imgdbl_connected_components, typed),
          ROW(imguniv_connected_components, noise(0, 1, checked(2, {shaped(1, 18, 1399)}))),
          VARIANT(imguniv_connected_components, "diagonally", noise(1, 1)),
          VARIANT(imguniv_connected_components, "filtered", noise(1, 4)),
          ROW(imgset_connected_components_3d, noise(0, 1)),
          VARIANT(imgset_connected_components_3d, "filtered", noise(1, 4))};
}

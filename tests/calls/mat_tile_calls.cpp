#include "korvos/matrix/mat_tile.h"
#include "tests/calls/calls.hpp"

call_rows mat_tile_calls() {
  const given set = args().of(KORVO_UINT16, KORVO_UINT16);
  return {ROW(matset_tile, given(set).shaped({{4, 9}, {4, 9}, {4, 9}, {4, 27}})),
          ROW(matset_untile, given(set).shaped({{4, 27}, {4, 9}, {4, 9}, {4, 9}}))};
}

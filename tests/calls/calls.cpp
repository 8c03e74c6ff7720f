#include "tests/calls/calls.hpp"

const call_rows& all_calls() {
  static const call_rows all = [] {
    call_rows rows;
    for (const call_rows& module :
         {core_calls(), mat_assn_calls(), mat_cast_calls(), mat_arit_calls(), mat_summ_calls(), mat_io_calls(),
          mat_tile_calls(), img_pttr_calls(), img_io_calls(), sig_conv_calls(), img_conv_calls()})
      rows.insert(rows.end(), module.begin(), module.end());
    return rows;
  }();
  return all;
}

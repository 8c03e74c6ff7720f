#include "tests/calls/calls.hpp"

namespace {

call_rows join(std::initializer_list<call_rows> lists) {
  call_rows all;
  for (const call_rows& list : lists) all.insert(all.end(), list.begin(), list.end());
  return all;
}

}  // namespace

const call_rows& all_calls() {
  static const call_rows all = join({core_calls(), mat_assn_calls(), mat_cast_calls(), mat_arit_calls(),
                                     mat_summ_calls(), mat_io_calls(), mat_tile_calls(), img_pttr_calls(),
                                     img_io_calls(), sig_conv_calls(), img_conv_calls()});
  return all;
}

#include "tests/calls/calls.hpp"

const call_rows& all_calls() {
  static const call_rows all = [] {
    call_rows rows;
    for (const call_rows& module :
         {core_calls(),     mat_assn_calls(), mat_cast_calls(), mat_arit_calls(),       mat_summ_calls(),
          mat_io_calls(),   mat_tile_calls(), img_pttr_calls(), img_io_calls(),         sig_conv_calls(),
          img_conv_calls(), sig_tran_calls(), sig_pow2_calls(), sig_win_calls(),        sig_tfrq_calls(),
          wav_modw_calls(), wav_wtmm_calls(), wav_skel_calls(), wav_skel_local_calls(), mat_num_calls(),
          cls_gla_calls(),  img_mrf_calls(),  mat_thr_calls(),  mat_sort_calls(),       img_ccmp_calls(),
          img_cany_calls(), img_edge_calls(), img_erg_calls(),  img_morp_calls(),       img_gmor_calls(),
          pgn_regn_calls(), pgn_smpl_calls(), img_snk_calls(),  img_lset_calls(),       img_intp_calls(),
          img_dist_calls(), korvos_calls()})
      rows.insert(rows.end(), module.begin(), module.end());
    return rows;
  }();
  return all;
}

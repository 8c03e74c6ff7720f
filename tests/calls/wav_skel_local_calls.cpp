#include <algorithm>

#include "korvos/wavelet/wav_skel_local.h"
#include "tests/calls/calls.hpp"

namespace {

// A matrix of two rows of these elements.
_univ_mat* filled(_univ_mat* mat, const std::vector<std::int32_t>& elements) {
  mat->type = KORVO_SINT32;
  std::copy(elements.begin(), elements.end(), static_cast<std::int32_t*>(mat->data));
  return mat;
}

// Chains that are linked, that die, and that were dead before.
ready_call seek(scene& s) {
  const auto out = [&](const std::vector<std::int32_t>& elements) {
    return filled(s.out(KORVO_SINT32, 2, static_cast<int>(elements.size()) / 2), elements);
  };
  _univ_mat* const mask = out({1, 1, 1, 1, 1, 1, 0, 1, 0, 0, 1, 0});
  _univ_mat* const tips = out({2, -1, 5, 3, 0, 0, 0, 0});
  _univ_mat* const origins = out({1, 2, 3, 4, 0, 0, 0, 0});
  _univ_mat* const map = out(std::vector<std::int32_t>(12));
  auto* const linked = s.number<std::int32_t>();
  return [=](void* host) { return localfn_wav_seek_chain(mask, tips, origins, map, 1, 2.0, host, linked); };
}

// Three chains, of which one is dead, and four new ones.
ready_call grow(scene& s) {
  const _univ_mat *const at = s.in(KORVO_SINT32, 1, 4), *const from = s.in(KORVO_SINT32, 1, 4);
  _univ_mat* const tips = filled(s.allocated<_univ_mat>(true, true), {1, 2, 3, 4, -1, 6});
  _univ_mat* const origins = filled(s.allocated<_univ_mat>(true, true), {7, 8, 9, 0, -1, 0});
  return [=](void* host) { return localfn_wav_grow_chain_set(at, from, host, tips, origins); };
}

}  // namespace

call_rows wav_skel_local_calls() {
  return {{"localfn_wav_seek_chain", seek}, {"localfn_wav_grow_chain_set", grow}};
}

#include <algorithm>

#include "korvos/wavelet/wav_skel_local.h"
#include "tests/calls/calls.hpp"

namespace {

void fill(_univ_mat* mat, const std::vector<std::int32_t>& elements) {
  std::copy(elements.begin(), elements.end(), static_cast<std::int32_t*>(mat->data));
}

// Chains that are linked, that die, and that were dead before.
call_row seek_row() {
  return {"localfn_wav_seek_chain", [](scene& s) -> ready_call {
            const auto filled = [&](const std::vector<std::int32_t>& elements) {
              _univ_mat* const mat = s.out(KORVO_SINT32, 2, static_cast<int>(elements.size()) / 2);
              return fill(mat, elements), mat;
            };
            _univ_mat* const mask = filled({1, 1, 1, 1, 1, 1, 0, 1, 0, 0, 1, 0});
            _univ_mat* const tips = filled({2, -1, 5, 3, 0, 0, 0, 0});
            _univ_mat* const origins = filled({1, 2, 3, 4, 0, 0, 0, 0});
            _univ_mat* const map = filled(std::vector<std::int32_t>(12));
            auto* const linked = s.number<std::int32_t>();
            return [=](void* intrp_ptr) {
              return localfn_wav_seek_chain(mask, tips, origins, map, 1, 2.0, intrp_ptr, linked);
            };
          }};
}

// Three chains, of which one is dead, and four new ones.
call_row grow_row() {
  return {"localfn_wav_grow_chain_set", [](scene& s) -> ready_call {
            const auto owned = [&](const std::vector<std::int32_t>& elements) {
              auto* const mat = s.allocated<_univ_mat>(true, true);
              mat->type = KORVO_SINT32;
              return fill(mat, elements), mat;
            };
            const _univ_mat* const added[] = {s.in(KORVO_SINT32, 1, 4), s.in(KORVO_SINT32, 1, 4)};
            _univ_mat* const tips = owned({1, 2, 3, 4, -1, 6});
            _univ_mat* const origins = owned({7, 8, 9, 0, -1, 0});
            return [=](void* intrp_ptr) {
              return localfn_wav_grow_chain_set(added[0], added[1], intrp_ptr, tips, origins);
            };
          }};
}

}  // namespace

call_rows wav_skel_local_calls() { return {seek_row(), grow_row()}; }

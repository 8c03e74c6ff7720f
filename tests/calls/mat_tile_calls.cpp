#include "korvos/matrix/mat_tile.h"
#include "tests/calls/calls.hpp"

call_rows mat_tile_calls() {
  return {
      {"matset_tile",
       [](scene& s) -> ready_call {
         const auto plane = [&] { return s.in(KORVO_UINT16, 4, 9); };
         const _mat_set* const set = s.in_set({plane(), plane(), plane(), plane(), plane(), plane()}, {2, 3});
         _univ_mat* const out = s.out(KORVO_UINT16, 8, 27);
         return [=](void* intrp_ptr) { return matset_tile(set, intrp_ptr, out); };
       }},
      {"matset_untile",
       [](scene& s) -> ready_call {
         const auto plane = [&] { return s.out(KORVO_UINT16, 4, 9); };
         const _univ_mat* const in = s.in(KORVO_UINT16, 8, 27);
         _mat_set* const set = s.out_set({plane(), plane(), plane(), plane(), plane(), plane()}, {2, 3});
         return [=](void* intrp_ptr) { return matset_untile(in, intrp_ptr, set); };
       }},
  };
}

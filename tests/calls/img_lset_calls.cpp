#include "korvos/curve/img_lset.h"
#include "tests/calls/calls.hpp"
#include "tests/calls/chains.hpp"

namespace {

// Which results are wanted.
enum wanted { chain_only, polygon_only, both };

template <class Find>
call_row path_row(std::string name, Find find, wanted what) {
  return {std::move(name), [=](scene& s) -> ready_call {
            const _univ_mat* const in = s.in(KORVO_DOUBLE, 16, 18, 40.0, 50.0);
            pgn_chain* const chain = what == polygon_only ? nullptr : chain_in(s, true);
            _univ_mat* const polygon = what == chain_only ? nullptr : s.allocated<_univ_mat>(true, false);
            return [=](void* host) { return find(in, 8, 9, 15, 3, host, chain, polygon); };
          }};
}

#define PATH_ROWS(name)                                                    \
  path_row(#name, name, both), path_row(#name "/chain", name, chain_only), \
      path_row(#name "/polygon", name, polygon_only)

}  // namespace

call_rows img_lset_calls() {
  const faults refused = {null(0),       null(1),    other_type(0),     other_type(1),
                          miscounted(0), no_data(1), shaped(1, 18, 16), sharing(1, 0)};
  faults start = refused;
  start.insert(start.end(), {valued(0, -1), valued(0, 16), valued(1, -1), valued(1, 18)});
  return {ROW(imguniv_potential_canny,
              args(1.5, 0.5, 2)
                  .sized(9, 11)
                  .refusing({null(0), null(1), other_type(1), miscounted(0), no_data(1), shaped(1, 11, 9),
                             valued(2, 0.4), valued(0, 0), valued(0, 3)})),
          ROW(imguniv_minpath_levelset_from_potential, args(8, 9).sized(16, 18).within(40, 50).refusing(start)),
          PATH_ROWS(imguniv_minpath_from_levelset), PATH_ROWS(imguniv_minpath_from_potential)};
}

#include "korvos/curve/img_snk.h"
#include "tests/calls/calls.hpp"

namespace {

// Until one iteration in a row moves nothing far: it converges.
constexpr snake_params quick = {IMG_CONTOUR_CLOSED, 0.1, 0.1, 1.0, 0.5, 90, 0.5, 0.3};

call_row snake_row(std::string name, bool whole, std::uint8_t automatic, const snake_params* with) {
  return {std::move(name), [=](scene& s) -> ready_call {
            const _univ_mat *energy = s.in(KORVO_DOUBLE, 17, 19, 0.0, 1.0),
                            *rows = s.in(KORVO_DOUBLE, 17, 19, -1.0, 1.0),
                            *columns = s.in(KORVO_DOUBLE, 17, 19, -1.0, 1.0);
            const _univ_mat* const initial = s.in(KORVO_DOUBLE, 5, 2, 3.0, 12.0);
            auto* const results = s.number<snake_params>();
            _univ_mat* const out = s.out(KORVO_DOUBLE, 12, 2);
            return [=](void* host) {
              if (whole) return imguniv_snake(energy, initial, 1.0, automatic, with, host, results, out);
              return imguniv_snake_minimize(energy, rows, columns, initial, automatic, with, host, results,
                                            out);
            };
          }};
}

}  // namespace

call_rows img_snk_calls() {
  return {ROW(imguniv_snake_edge_energy,
              args(1).refusing({null(0), null(1), other_type(1), miscounted(0), no_data(1), shaped(1, 6, 7),
                                valued(0, 0), valued(0, NAN), valued(0, 1.5)})),
          snake_row("imguniv_snake", true, 0, &quick), snake_row("imguniv_snake_minimize", false, 0, &quick),
          snake_row("imguniv_snake_minimize/automatic", false, 1, &quick)};
}

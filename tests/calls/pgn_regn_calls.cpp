#include "korvos/curve/pgn_regn.h"
#include "tests/calls/calls.hpp"
#include "tests/calls/chains.hpp"

namespace {

// A call on a chain, and on what comes before it.
#define CALL(name, filled, before, call)                        \
  call_row {                                                    \
    name, [](scene& s) -> ready_call {                          \
      pgn_chain* const chain = chain_in(s, filled);             \
      before;                                                   \
      return [=]([[maybe_unused]] void* host) { return call; }; \
    }                                                           \
  }
#define CHAIN(name, links, call) CALL(name, false, (void)pgn_chain_malloc(chain, links), call)
// On noise, whose regions have more links than a chain grows by.
#define TRACE(tag, ...)                                                                         \
  CALL("pgn" #tag "_boundary_chain_from_region", true, const auto* const image = s.__VA_ARGS__, \
       pgn##tag##_boundary_chain_from_region(image, 30, 30, host, chain))
#define TRACE_TYPED(tag) TRACE(tag, in<_##tag##_mat>(60, 60, 0.0, 2.0))
#define TRACE_ALL TRACE_TYPED(u8), TRACE_TYPED(u16), TRACE_TYPED(u32), TRACE_TYPED(s32), TRACE_TYPED(dbl)
#define POLYGON(tag)                                                 \
  CALL("pgn" #tag "_boundary_chain_to_polygon", true,                \
       auto* const polygon = s.allocated<_##tag##_mat>(true, false); \
       prepare(s, chain, polygon), pgn##tag##_boundary_chain_to_polygon(chain, host, polygon))
void prepare(scene& s, pgn_chain* chain, auto* polygon) {
  (void)pgnu8_boundary_chain_from_region(s.in<_u8_mat>(60, 60, 0.0, 2.0), 30, 30, nullptr, chain);
  if constexpr (requires { polygon->type; }) polygon->type = KORVO_DOUBLE;
}

given onto(given how, faults in_order) {
  return how.shaped({{80, 2}, {8, 11}}).within(-6.0, 17.0).refusing(std::move(in_order));
}

}  // namespace

call_rows pgn_regn_calls() {
  const given region = onto(args(), {null(0), null(1), other_type(0), other_type(1), miscounted(0), no_data(1),
                                     shaped(0, 40, 4), shaped(0, 1, 2), sharing(1, 0)});
  const auto line = [](int closed, _korvo_errcode without_result) {
    const fault nothing = {fault::no_matrix, 1, without_result};
    return onto(args(closed, 7, 2), {null(0), nothing, other_type(1), miscounted(1), sharing(1, 0),
                                     miscounted(0), shaped(0, 40, 4), shaped(0, 1, 2)});
  };
  return {CHAIN("pgn_chain_malloc", 0, pgn_chain_malloc(chain, 5)),
          CHAIN("pgn_chain_realloc", 5, pgn_chain_realloc(chain, 9)),
          CHAIN("pgn_chain_free", 5, pgn_chain_free(chain)),
          TRACE_ALL,
          TRACE(univ, in(KORVO_UINT16, 60, 60, 0.0, 2.0)),
          POLYGON(dbl),
          POLYGON(univ),
          ROW(pgndbl_render_region, region),
          ROW(pgnuniv_render_region, region),
          ROW(pgndbl_render_line, line(1, KORVO_ERR_ILLEGAL_TYPE)),
          ROW(pgnuniv_render_line, line(1, KORVO_ERR_NULL_POINTER)),
          VARIANT(pgnuniv_render_line, "open", line(0, KORVO_ERR_NULL_POINTER))};
}

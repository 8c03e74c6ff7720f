#include "korvos/classify/cls_gla.h"
#include "korvos/core/ut_rand.h"
#include "tests/calls/calls.hpp"

namespace {

// Five vectors of bytes for eight codewords, so that some are dropped; modes below 0 grow.
call_row design_row(std::string name, std::int32_t mode) {
  return {std::move(name), [=](scene& s) -> ready_call {
            const auto owned = [&](_korvo_type type, std::int32_t cols) {
              auto* const mat = s.allocated<_univ_mat>(false, true);
              mat->type = type;
              return (void)matuniv_realloc(mat, 8, cols), mat;
            };
            const _univ_mat *in = s.in(KORVO_UINT8, 5, 3), *from = s.in(KORVO_DOUBLE, 8, 3);
            _univ_mat *out = owned(KORVO_DOUBLE, 3), *n = owned(KORVO_SINT32, 1),
                      *each = owned(KORVO_DOUBLE, 1);
            double* const mean = s.number<double>();
            void** const state = s.record<void*>({}, [](void** held) { (void)korvo_rand_end(*held); });
            (void)korvo_rand_begin(state);
            return [=](void* host) {
              if (mode < 0)
                return clsuniv_vector_quantizer_design_lbg(in, 1e-3, 0.5, 0.25, mode + 3, host, *state, out,
                                                           mean, n, each);
              return clsuniv_vector_quantizer_design_gla(in, from, 1e-3, 0.5, 0.25, mode, host, *state, out,
                                                         mean, n, each);
            };
          }};
}

}  // namespace

#define DESIGN_ROWS(name, mode) \
  design_row(name, mode), design_row(name "/by_norm", mode + 1), design_row(name "/table", mode + 2)

call_rows cls_gla_calls() {
  return {DESIGN_ROWS("clsuniv_vector_quantizer_design_gla", 0),
          DESIGN_ROWS("clsuniv_vector_quantizer_design_lbg", -3)};
}

#include "korvos/signal/sig_conv.h"
#include "tests/calls/calls.hpp"

namespace {

// Members of several types and sizes, and parameters for each.
call_row set_row(std::string name, decltype(&sigset_correlate) f) {
  return {std::move(name), [=](scene& s) -> ready_call {
            const auto each = [&] { return s.in<_s32_mat>(3, 1, 1.0, 3.0); };
            const _mat_set* const in =
                s.in_set({s.in(KORVO_UINT8, 4, 5), s.in(KORVO_DOUBLE, 3, 3), s.in(KORVO_FLOAT, 1, 9)});
            const _mat_set* const kernel =
                s.in_set({s.in(KORVO_UINT8, 3, 3), s.in(KORVO_UINT16, 3, 2), s.in(KORVO_DOUBLE, 4, 4)});
            const _s32_mat* const at[] = {each(), each(), each(), each()};  // steps, origins
            _mat_set* const out =
                s.out_set({s.out(KORVO_UINT32, 4, 4), s.out(KORVO_DOUBLE, 2, 3), s.out(KORVO_DCOMPLEX, 1, 9)});
            return [=](void* intrp_ptr) {
              return f(in, kernel, at[0], at[1], at[2], at[3], SIG_BOUNDARY_CONTINUE, intrp_ptr, out);
            };
          }};
}

// Steps, origins, boundary.
given filter() { return args(1, 2, 3, 4, SIG_BOUNDARY_REFLECT); }
given mixed(_korvo_type in, _korvo_type out) { return args(1, 1, 1, 1, SIG_BOUNDARY_ZERO).of(in, out); }

}  // namespace

// With operands of other types than the result too: a temporary for each, and for a complex convolution one
// more.
#define FILTER_ROWS(op)                                                                              \
  ROW(sigu8_##op, filter()), ROW(sigu16_##op, filter()), ROW(sigu32_##op, filter()),                 \
      ROW(sigs32_##op, filter()), ROW(sigdbl_##op, filter()), ROW(sigcpx_##op, filter()),            \
      ROW(siguniv_##op, filter()), VARIANT(siguniv_##op, "mixed", mixed(KORVO_UINT8, KORVO_DOUBLE)), \
      VARIANT(siguniv_##op, "complex", mixed(KORVO_DOUBLE, KORVO_DCOMPLEX)),                         \
      set_row("sigset_" #op, &sigset_##op)

call_rows sig_conv_calls() { return {FILTER_ROWS(correlate), FILTER_ROWS(convolve)}; }

#include "korvos/signal/sig_conv.h"
#include "tests/calls/calls.hpp"

namespace {

// (in, kernel, row step, column step, row origin, column origin, boundary, intrp_ptr, out)
template <class M>
using form = _korvo_errcode (*)(const M*, const M*, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                                std::int32_t, void*, M*);

template <class M>
call_row filter_row(std::string name, form<M> f) {
  return {std::move(name), [f](scene& s) -> ready_call {
            const M* const in = matrix_in<M>(s);
            const M* const kernel = matrix_in<M>(s);
            M* const out = matrix_out<M>(s);
            return [=](void* intrp_ptr) {
              return f(in, kernel, 1, 2, 3, 4, SIG_BOUNDARY_REFLECT, intrp_ptr, out);
            };
          }};
}

// Operands of other types than the result: a temporary for each, and for a complex convolution one more.
call_row mixed_row(std::string name, form<_univ_mat> f, _korvo_type operands, _korvo_type result) {
  return {std::move(name), [=](scene& s) -> ready_call {
            const _univ_mat* const in = s.in(operands, call_size, call_size);
            const _univ_mat* const kernel = s.in(operands, 2, 3);
            _univ_mat* const out = s.out(result, call_size, call_size);
            return
                [=](void* intrp_ptr) { return f(in, kernel, 1, 1, 1, 1, SIG_BOUNDARY_ZERO, intrp_ptr, out); };
          }};
}

call_row set_row(std::string name, decltype(&sigset_correlate) f) {
  return {std::move(name), [=](scene& s) -> ready_call {
            const auto parameters = [&] { return s.in<_s32_mat>(3, 1, 1.0, 3.0); };
            const _mat_set* const in =
                s.in_set({s.in(KORVO_UINT8, 4, 5), s.in(KORVO_DOUBLE, 3, 3), s.in(KORVO_FLOAT, 1, 9)});
            const _mat_set* const kernel =
                s.in_set({s.in(KORVO_UINT8, 3, 3), s.in(KORVO_UINT16, 3, 2), s.in(KORVO_DOUBLE, 4, 4)});
            const _s32_mat* const row_step = parameters();
            const _s32_mat* const col_step = parameters();
            const _s32_mat* const row_origin = parameters();
            const _s32_mat* const col_origin = parameters();
            _mat_set* const out =
                s.out_set({s.out(KORVO_UINT32, 4, 4), s.out(KORVO_DOUBLE, 2, 3), s.out(KORVO_DCOMPLEX, 1, 9)});
            return [=](void* intrp_ptr) {
              return f(in, kernel, row_step, col_step, row_origin, col_origin, SIG_BOUNDARY_CONTINUE, intrp_ptr,
                       out);
            };
          }};
}

#define FILTER(name) filter_row(#name, &name)
#define MIXED(name) mixed_row(#name "/mixed", &name, KORVO_UINT8, KORVO_DOUBLE)
#define COMPLEX(name) mixed_row(#name "/complex", &name, KORVO_DOUBLE, KORVO_DCOMPLEX)

}  // namespace

call_rows sig_conv_calls() {
  return {
      FILTER(sigu8_correlate),
      FILTER(sigu16_correlate),
      FILTER(sigu32_correlate),
      FILTER(sigs32_correlate),
      FILTER(sigdbl_correlate),
      FILTER(sigcpx_correlate),
      FILTER(siguniv_correlate),
      MIXED(siguniv_correlate),
      COMPLEX(siguniv_correlate),
      FILTER(sigu8_convolve),
      FILTER(sigu16_convolve),
      FILTER(sigu32_convolve),
      FILTER(sigs32_convolve),
      FILTER(sigdbl_convolve),
      FILTER(sigcpx_convolve),
      FILTER(siguniv_convolve),
      MIXED(siguniv_convolve),
      COMPLEX(siguniv_convolve),
      set_row("sigset_convolve", &sigset_convolve),
      set_row("sigset_correlate", &sigset_correlate),
  };
}

#include "korvos/segment/img_conv.h"
#include "korvos/signal/sig_conv.h"
#include "tests/calls/calls.hpp"

namespace {

// (image, kernel, boundary, intrp_ptr, out)
call_row centred_row(std::string name, decltype(&imguniv_convolve) f, _korvo_type operands) {
  return {std::move(name), [=](scene& s) -> ready_call {
            const _univ_mat* const image = s.in(operands, call_size, call_size);
            const _univ_mat* const kernel = s.in(operands, 3, 4);
            _univ_mat* const out = s.out(KORVO_DOUBLE, call_size, call_size);
            return [=](void* intrp_ptr) { return f(image, kernel, SIG_BOUNDARY_PERIODIC, intrp_ptr, out); };
          }};
}

// (image, window rows, window columns, boundary, intrp_ptr, out)
template <class M>
call_row local_row(std::string name,
                   _korvo_errcode (*f)(const M*, std::int32_t, std::int32_t, std::int32_t, void*, M*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            const M* const image = matrix_in<M>(s);
            M* const out = matrix_out<M>(s);
            return [=](void* intrp_ptr) { return f(image, 5, 3, SIG_BOUNDARY_CONTINUE, intrp_ptr, out); };
          }};
}

#define CENTRED(name) centred_row(#name, &name, KORVO_DOUBLE), centred_row(#name "/mixed", &name, KORVO_UINT8)
#define LOCAL(name) local_row(#name, &name)

}  // namespace

call_rows img_conv_calls() {
  return {
      CENTRED(imguniv_convolve), CENTRED(imguniv_correlate),   LOCAL(imgdbl_local_mean),
      LOCAL(imguniv_local_mean), LOCAL(imgdbl_local_variance), LOCAL(imguniv_local_variance),
  };
}

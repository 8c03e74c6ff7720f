#include "korvos/matrix/mat_assn.h"
#include "tests/calls/calls.hpp"

namespace {

// (scalar, intrp_ptr, out)
template <class S, class M>
call_row fill_row(std::string name, _korvo_errcode (*f)(S, void*, M*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            M* const out = matrix_out<M>(s);
            return [=](void* intrp_ptr) { return f(scalar_of<S>(3.0), intrp_ptr, out); };
          }};
}

// (in, row shift, column shift, fill, intrp_ptr, out)
template <class M, class S>
call_row translate_row(std::string name,
                       _korvo_errcode (*f)(const M*, std::int32_t, std::int32_t, S, void*, M*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            const M* const in = matrix_in<M>(s);
            M* const out = matrix_out<M>(s);
            return [=](void* intrp_ptr) { return f(in, 2, -1, scalar_of<S>(3.0), intrp_ptr, out); };
          }};
}

#define FILL(name) fill_row(#name, &name)
#define TRANSLATE(name) translate_row(#name, &name)

}  // namespace

call_rows mat_assn_calls() {
  return {
      ROW(matu8_assign),           ROW(matu16_assign),
      ROW(matu32_assign),          ROW(mats16_assign),
      ROW(mats32_assign),          ROW(matflt_assign),
      ROW(matdbl_assign),          ROW(matuniv_assign),
      ROW(matu8_assign_zeropad),   ROW(matu16_assign_zeropad),
      ROW(matu32_assign_zeropad),  ROW(mats16_assign_zeropad),
      ROW(mats32_assign_zeropad),  ROW(matflt_assign_zeropad),
      ROW(matdbl_assign_zeropad),  ROW(matuniv_assign_zeropad),
      ROW(matu8_assign_submat),    ROW(matu16_assign_submat),
      ROW(matu32_assign_submat),   ROW(mats16_assign_submat),
      ROW(mats32_assign_submat),   ROW(matflt_assign_submat),
      ROW(matdbl_assign_submat),   ROW(matcpx_assign_submat),
      ROW(matuniv_assign_submat),  ROW(matu8_extract),
      ROW(matu16_extract),         ROW(matu32_extract),
      ROW(mats16_extract),         ROW(mats32_extract),
      ROW(matflt_extract),         ROW(matdbl_extract),
      ROW(matcpx_extract),         ROW(matuniv_extract),
      ROW(matu8_transpose),        ROW(matu16_transpose),
      ROW(matu32_transpose),       ROW(mats16_transpose),
      ROW(mats32_transpose),       ROW(matflt_transpose),
      ROW(matdbl_transpose),       ROW(matcpx_transpose),
      ROW(matuniv_transpose),      ROW(matu8_flip_left_right),
      ROW(matu16_flip_left_right), ROW(matu32_flip_left_right),
      ROW(mats16_flip_left_right), ROW(mats32_flip_left_right),
      ROW(matflt_flip_left_right), ROW(matdbl_flip_left_right),
      ROW(matcpx_flip_left_right), ROW(matuniv_flip_left_right),
      ROW(matu8_flip_up_down),     ROW(matu16_flip_up_down),
      ROW(matu32_flip_up_down),    ROW(mats16_flip_up_down),
      ROW(mats32_flip_up_down),    ROW(matflt_flip_up_down),
      ROW(matdbl_flip_up_down),    ROW(matcpx_flip_up_down),
      ROW(matuniv_flip_up_down),   FILL(matu8_assign_scalar),
      FILL(matu16_assign_scalar),  FILL(matu32_assign_scalar),
      FILL(mats16_assign_scalar),  FILL(mats32_assign_scalar),
      FILL(matflt_assign_scalar),  FILL(matdbl_assign_scalar),
      FILL(matcpx_assign_scalar),  FILL(matuniv_assign_scalar),
      TRANSLATE(matu8_translate),  TRANSLATE(matu16_translate),
      TRANSLATE(matu32_translate), TRANSLATE(mats16_translate),
      TRANSLATE(mats32_translate), TRANSLATE(matflt_translate),
      TRANSLATE(matdbl_translate), TRANSLATE(matuniv_translate),
  };
}

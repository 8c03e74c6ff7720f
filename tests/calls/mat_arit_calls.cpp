#include "korvos/matrix/mat_arit.h"
#include "tests/calls/calls.hpp"

namespace {

// (in, new minimum, new maximum, intrp_ptr, out)
template <class M, class S>
call_row rescale_row(std::string name, _korvo_errcode (*f)(const M*, S, S, void*, M*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            const M* const in = matrix_in<M>(s);
            M* const out = matrix_out<M>(s);
            return
                [=](void* intrp_ptr) { return f(in, scalar_of<S>(3.0), scalar_of<S>(90.0), intrp_ptr, out); };
          }};
}

// Operands of other types than the result: a temporary for each.
call_row mixed_row(std::string name,
                   _korvo_errcode (*f)(const _univ_mat*, const _univ_mat*, void*, _univ_mat*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            const _univ_mat* const a = s.in(KORVO_UINT8, call_size, call_size);
            const _univ_mat* const b = s.in(KORVO_SINT16, call_size, call_size);
            _univ_mat* const out = s.out(KORVO_DOUBLE, call_size, call_size);
            return [=](void* intrp_ptr) { return f(a, b, intrp_ptr, out); };
          }};
}

call_row mixed_row(std::string name, _korvo_errcode (*f)(const _univ_mat*, _univ_scalar, void*, _univ_mat*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            const _univ_mat* const a = s.in(KORVO_UINT8, call_size, call_size);
            _univ_mat* const out = s.out(KORVO_DOUBLE, call_size, call_size);
            return [=](void* intrp_ptr) { return f(a, scalar_of<_univ_scalar>(1.5), intrp_ptr, out); };
          }};
}

#define MIXED(name) mixed_row(#name "/mixed", &name)
#define RESCALE(name) rescale_row(#name, &name)

}  // namespace

call_rows mat_arit_calls() {
  return {
      ROW(matu8_add),
      ROW(matu16_add),
      ROW(matu32_add),
      ROW(mats16_add),
      ROW(mats32_add),
      ROW(matflt_add),
      ROW(matdbl_add),
      ROW(matuniv_add),
      MIXED(matuniv_add),
      ROW(matu8_subtract),
      ROW(matu16_subtract),
      ROW(matu32_subtract),
      ROW(mats16_subtract),
      ROW(mats32_subtract),
      ROW(matflt_subtract),
      ROW(matdbl_subtract),
      ROW(matuniv_subtract),
      MIXED(matuniv_subtract),
      ROW(matu8_multiply_elem),
      ROW(matu16_multiply_elem),
      ROW(matu32_multiply_elem),
      ROW(mats16_multiply_elem),
      ROW(mats32_multiply_elem),
      ROW(matflt_multiply_elem),
      ROW(matdbl_multiply_elem),
      ROW(matuniv_multiply_elem),
      MIXED(matuniv_multiply_elem),
      ROW(matu8_multiply),
      ROW(matu16_multiply),
      ROW(matu32_multiply),
      ROW(mats16_multiply),
      ROW(mats32_multiply),
      ROW(matflt_multiply),
      ROW(matdbl_multiply),
      ROW(matuniv_multiply),
      MIXED(matuniv_multiply),
      ROW(matu8_add_scalar),
      ROW(matu16_add_scalar),
      ROW(matu32_add_scalar),
      ROW(mats16_add_scalar),
      ROW(mats32_add_scalar),
      ROW(matflt_add_scalar),
      ROW(matdbl_add_scalar),
      ROW(matuniv_add_scalar),
      MIXED(matuniv_add_scalar),
      ROW(matu8_multiply_scalar),
      ROW(matu16_multiply_scalar),
      ROW(matu32_multiply_scalar),
      ROW(mats16_multiply_scalar),
      ROW(mats32_multiply_scalar),
      ROW(matflt_multiply_scalar),
      ROW(matdbl_multiply_scalar),
      ROW(matuniv_multiply_scalar),
      MIXED(matuniv_multiply_scalar),
      ROW(mats16_abs),
      ROW(mats32_abs),
      ROW(matflt_abs),
      ROW(matdbl_abs),
      ROW(matuniv_abs),
      RESCALE(matu8_rescale),
      RESCALE(matu16_rescale),
      RESCALE(matu32_rescale),
      RESCALE(mats16_rescale),
      RESCALE(mats32_rescale),
      RESCALE(matflt_rescale),
      RESCALE(matdbl_rescale),
      RESCALE(matuniv_rescale),
  };
}

#include "korvos/matrix/mat_summ.h"
#include "tests/calls/calls.hpp"

namespace {

// (in, intrp_ptr, minimum, maximum)
template <class M, class S>
call_row range_row(std::string name, _korvo_errcode (*f)(const M*, void*, S*, S*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            const M* const in = matrix_in<M>(s);
            S* const minimum = s.number<S>();
            S* const maximum = s.number<S>();
            return [=](void* intrp_ptr) { return f(in, intrp_ptr, minimum, maximum); };
          }};
}

#define RANGE(name) range_row(#name, &name)

}  // namespace

call_rows mat_summ_calls() {
  return {
      RANGE(matu8_range),  RANGE(matu16_range), RANGE(matu32_range), RANGE(mats16_range),
      RANGE(mats32_range), RANGE(matflt_range), RANGE(matdbl_range), RANGE(matuniv_range),
  };
}

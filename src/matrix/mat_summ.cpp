// Summaries: range.
#include "korvos/matrix/mat_summ.h"

#include "core/dispatch.hpp"
#include "matrix/mat_summ.hpp"

using namespace korvo;

#define RANGE(name, M, T)                                           \
  code name(const M* in, void* intrp_ptr, T* minimum, T* maximum) { \
    return range(in, intrp_ptr, minimum, maximum);                  \
  }

extern "C" {

RANGE(matu8_range, _u8_mat, uint8_t)
RANGE(matu16_range, _u16_mat, uint16_t)
RANGE(matu32_range, _u32_mat, uint32_t)
RANGE(mats16_range, _s16_mat, int16_t)
RANGE(mats32_range, _s32_mat, int32_t)
RANGE(matflt_range, _flt_mat, float)
RANGE(matdbl_range, _dbl_mat, double)

code matuniv_range(const _univ_mat* in, void* intrp_ptr, _univ_scalar* minimum, _univ_scalar* maximum) {
  if (!in || !minimum || !maximum) return KORVO_ERR_NULL_POINTER;
  return dispatch(in->type, real_records{}, [&]<class M> {
    const M from = as<M>(*in);
    TRY(valid(&from));  // after that the range is found, even if the host then stops the call
    element<M> least{};
    element<M> greatest{};
    const code result = range(&from, intrp_ptr, &least, &greatest);
    minimum->type = maximum->type = in->type;
    minimum->value.*tag<M>::member = least;
    maximum->value.*tag<M>::member = greatest;
    return result;
  });
}

}  // extern "C"

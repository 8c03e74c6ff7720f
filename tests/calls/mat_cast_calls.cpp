#include "korvos/matrix/mat_cast.h"
#include "tests/calls/calls.hpp"

call_rows mat_cast_calls() {
  return {
      ROW(matuniv_cast),
      ROW(matu16_cast_to_u8),
      ROW(matu16_cast_to_s16),
      ROW(matu32_cast_to_u8),
      ROW(matu32_cast_to_u16),
      ROW(matu32_cast_to_s16),
      ROW(matu32_cast_to_s32),
      ROW(mats16_cast_to_u8),
      ROW(mats16_cast_to_u16),
      ROW(mats16_cast_to_u32),
      ROW(mats32_cast_to_u8),
      ROW(mats32_cast_to_u16),
      ROW(mats32_cast_to_u32),
      ROW(mats32_cast_to_s16),
      ROW(matflt_cast_to_u8),
      ROW(matflt_cast_to_u16),
      ROW(matflt_cast_to_u32),
      ROW(matflt_cast_to_s16),
      ROW(matflt_cast_to_s32),
      ROW(matdbl_cast_to_u8),
      ROW(matdbl_cast_to_u16),
      ROW(matdbl_cast_to_u32),
      ROW(matdbl_cast_to_s16),
      ROW(matdbl_cast_to_s32),
      ROW(matdbl_cast_to_flt),
      ROW(matcpx_cast_to_dbl),
      ROW(matu8_cast_to_u16),
      ROW(matu8_cast_to_u32),
      ROW(matu8_cast_to_s16),
      ROW(matu8_cast_to_s32),
      ROW(matu8_cast_to_flt),
      ROW(matu8_cast_to_dbl),
      ROW(matu16_cast_to_u32),
      ROW(matu16_cast_to_s32),
      ROW(matu16_cast_to_flt),
      ROW(matu16_cast_to_dbl),
      ROW(matu32_cast_to_flt),
      ROW(matu32_cast_to_dbl),
      ROW(mats16_cast_to_s32),
      ROW(mats16_cast_to_flt),
      ROW(mats16_cast_to_dbl),
      ROW(mats32_cast_to_flt),
      ROW(mats32_cast_to_dbl),
      ROW(matflt_cast_to_dbl),
      ROW(matflt_cast_to_cpx),
      ROW(matdbl_cast_to_cpx),
      {"matdbl_to_complex",
       [](scene& s) -> ready_call {
         const auto* const real = s.in<_dbl_mat>(3, 5);
         const auto* const imag = s.in<_dbl_mat>(3, 5);
         auto* const out = s.out<_cpx_mat>(3, 5);
         return [=](void* intrp_ptr) { return matdbl_to_complex(real, imag, intrp_ptr, out); };
       }},
      {"matcpx_to_double",
       [](scene& s) -> ready_call {
         const auto* const in = s.in<_cpx_mat>(3, 5);
         auto* const real = s.out<_dbl_mat>(3, 5);
         auto* const imag = s.out<_dbl_mat>(3, 5);
         return [=](void* intrp_ptr) { return matcpx_to_double(in, intrp_ptr, real, imag); };
       }},
  };
}

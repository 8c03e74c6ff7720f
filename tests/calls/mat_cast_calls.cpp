#include "korvos/matrix/mat_cast.h"
#include "tests/calls/calls.hpp"

#define CAST(from, to) ROW(mat##from##_cast_to_##to, args().refusing(refused))
#define CASTS(from, a, b, c, d, e, f) \
  CAST(from, a), CAST(from, b), CAST(from, c), CAST(from, d), CAST(from, e), CAST(from, f)

call_rows mat_cast_calls() {
  const faults refused = checked(2, {shaped(1, 7, 6)}, true);
  return {CASTS(u16, u8, s16, u32, s32, flt, dbl),
          CASTS(u32, u8, u16, s16, s32, flt, dbl),
          CASTS(s16, u8, u16, u32, s32, flt, dbl),
          CASTS(s32, u8, u16, u32, s16, flt, dbl),
          CASTS(flt, u8, u16, u32, s16, s32, dbl),
          CASTS(dbl, u8, u16, u32, s16, s32, flt),
          CASTS(u8, u16, u32, s16, s32, flt, dbl),
          CAST(flt, cpx),
          CAST(dbl, cpx),
          CAST(cpx, dbl),
          ROW(matuniv_cast, args()),
          ROW(matdbl_to_complex, args()),
          ROW(matcpx_to_double, args())};
}

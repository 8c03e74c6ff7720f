// Mapping of grey values: map_window_level.
#include "korvos/image/img_pttr.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/levels.hpp"
#include "core/loop.hpp"
#include "core/valid.hpp"

namespace korvo {
namespace {

// A power of 2 that keeps the terms of the mapping finite is 1 but for limits of the largest magnitudes.
struct window {
  window(double low_limit, double high_limit)
      : low(low_limit),
        high(high_limit),
        scale((high - low) * 255.0 <= std::numeric_limits<double>::max() ? 1.0 : 0x1p-10),
        scaled_low(low * scale),
        width(high * scale - scaled_low) {}

  double low;
  double high;
  double scale;
  double scaled_low;
  double width;
};

// The comparisons let a NaN fall to 0: a pixel's, and that of the quotient when a limit is infinite. What lies
// inside comes to 255 at most, since x - low is at most high - low as rounded too.
std::uint8_t grey_of(double x, const window& to) {
  const double inside = std::floor((x * to.scale - to.scaled_low) * 255.0 / to.width + 0.5);
  const double grey = x > to.high ? 255.0 : x > to.low ? inside : 0.0;
  return static_cast<std::uint8_t>(static_cast<std::int32_t>(grey >= 0.0 ? grey : 0.0));
}

}  // namespace
}  // namespace korvo

#define KORVO_KERNELS "image/img_pttr_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

using grey_records = records<_u8_mat, _u16_mat, _u32_mat, _s32_mat, _dbl_mat>;

template <class M>
code map_window_level(const M* image, double low, double high, void* intrp_ptr, _u8_mat* out) {
  TRY(valid(image));
  TRY(valid(out));
  if (!same_shape(image, out)) return KORVO_ERR_ILLEGAL_SIZE;
  if (!std::is_same_v<M, _u8_mat> && shares_data(image, out)) return KORVO_ERR_ILLEGAL_ADDRESS;
  if (!(high >= low)) return KORVO_ERR_ILLEGAL_VALUE;
  if (low == high)
    KORVO_AT_LEVEL(map_threshold<element<M>>)(image->data, low, out->data, out->nelem);
  else
    KORVO_AT_LEVEL(map_window<element<M>>)(image->data, window(low, high), out->data, out->nelem);
  return checkpoint(intrp_ptr).add(5.0 * out->nelem);
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code imguniv_map_window_level(const _univ_mat* image, double low, double high, void* intrp_ptr,
                              _univ_mat* out) {
  if (!image || !out) return KORVO_ERR_NULL_POINTER;
  if (out->type != KORVO_UINT8) return KORVO_ERR_ILLEGAL_TYPE;
  return dispatch(image->type, grey_records{}, [&]<class M> {
    const M from = as<M>(*image);
    _u8_mat to = as<_u8_mat>(*out);
    return map_window_level(&from, low, high, intrp_ptr, &to);
  });
}

}  // extern "C"

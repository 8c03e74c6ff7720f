// Casts between element types: cast, to_complex, to_double.
#include "korvos/matrix/mat_cast.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "core/arithmetic.hpp"
#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/levels.hpp"
#include "core/valid.hpp"
#include "korvos/matrix/mat_assn.h"

namespace korvo {
namespace {

template <class T>
constexpr bool is_complex = std::is_same_v<T, korvo_dcomplex>;

// The limit of flt lies far below the largest binary32 number; as one it has the bits 0x7CF0BDC2.
constexpr double flt_limit = 1e37;
static_assert(std::bit_cast<std::uint32_t>(static_cast<float>(flt_limit)) == 0x7CF0BDC2);

// Which casts exist, and which of them can fail.
template <class S, class D>
constexpr bool castable = is_complex<D>   ? std::is_floating_point_v<S>
                          : is_complex<S> ? std::is_same_v<D, double>
                                          : !std::is_same_v<S, D>;
template <class S, class D>
constexpr bool can_misfit() {
  if constexpr (is_complex<S>)
    return true;
  else if constexpr (is_complex<D> || std::is_same_v<D, double>)
    return false;
  else if constexpr (std::is_floating_point_v<D>)
    return std::is_same_v<S, double>;
  else
    return std::numeric_limits<S>::lowest() < accepted<D>::lowest ||
           static_cast<double>(std::numeric_limits<S>::max()) > accepted<D>::highest;
}

template <class S, class D>
constexpr double cast_cost = !can_misfit<S, D>() && !is_complex<D>                      ? 2.0
                             : is_complex<S> || is_complex<D> || !std::is_integral_v<D> ? 4.0
                                                                                        : 5.0;

// What of an element is held against the range of D. Floating values are rounded to floor(x + 0.5), of which
// this is x + 0.5: the limits are whole numbers, so the floor may come after the tests.
template <class D, class S>
constexpr auto measured(S x) {
  if constexpr (std::is_floating_point_v<S> && std::is_integral_v<D>)
    return double{x} + 0.5;
  else
    return x;
}

// The limits of an integer type D as values of the type V that is compared; a side that V cannot cross gets
// V's own limit.
template <class D, class V>
constexpr V lowest_of = static_cast<V>(std::max(accepted<D>::lowest,
                                                static_cast<double>(std::numeric_limits<V>::lowest())));
template <class D, class V>
constexpr V highest_of = static_cast<V>(std::min(accepted<D>::highest,
                                                 static_cast<double>(std::numeric_limits<V>::max())));

template <class D, class V>
constexpr bool fits(V v) {
  if constexpr (is_complex<V>)
    return v.im == 0.0;
  else if constexpr (std::is_integral_v<D> && std::is_floating_point_v<V>)
    return v >= lowest_of<D, V> && v < highest_of<D, V> + 1.0;  // of the floor; not so for NaN
  else if constexpr (std::is_integral_v<D>)
    return v >= lowest_of<D, V> && v <= highest_of<D, V>;
  else
    return !(v > flt_limit || v < -flt_limit);  // NaN stays NaN
}

// The floor of a number within the range of D, by the conversions that vector units have.
template <class D>
constexpr D floor_to(double v) {
  if constexpr (std::is_same_v<D, std::uint32_t>) {
    return static_cast<std::uint32_t>(v);
  } else {
    const auto cut = static_cast<std::int32_t>(v);
    return static_cast<D>(std::is_signed_v<D> && cut > v ? cut - 1 : cut);
  }
}

// What fits as it is, anything else as the limit on its side; a NaN among integers as the lowest. The two
// comparisons are those of the minimum and maximum instructions.
template <class D, class V>
constexpr D clipped(V v) {
  if constexpr (is_complex<V>) {
    return v.re;
  } else if constexpr (std::is_integral_v<D>) {
    const V raised = v > lowest_of<D, V> ? v : lowest_of<D, V>;
    const V limited = raised < highest_of<D, V> ? raised : highest_of<D, V>;
    if constexpr (std::is_floating_point_v<V>)
      return floor_to<D>(limited);
    else
      return static_cast<D>(limited);
  } else {
    return static_cast<D>(v > flt_limit ? flt_limit : v < -flt_limit ? -flt_limit : v);
  }
}

// Casts that always fit.
template <class D, class S>
constexpr D widened(S x) {
  if constexpr (is_complex<D>)
    return {x, 0.0};
  else
    return static_cast<D>(x);
}

}  // namespace
}  // namespace korvo

#define KORVO_KERNELS "matrix/mat_cast_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

// Stores up to the first element that does not fit: strips that fit whole, then one by one.
template <class S, class D>
code convert_checked(const S* in, D* out, std::int32_t n) {
  constexpr std::int32_t strip = 2048;
  const auto all_fit = KORVO_AT_LEVEL(all_fit<S, D>);
  const auto convert = KORVO_AT_LEVEL(convert_clipped<S, D>);
  std::int32_t done = 0;
  for (; done < n && all_fit(in + done, std::min(strip, n - done)); done += std::min(strip, n - done))
    convert(in + done, out + done, std::min(strip, n - done));
  for (; done < n; ++done) {
    const auto value = measured<D>(in[done]);
    if (!fits<D>(value)) return KORVO_ERR_OVERFLOW;
    out[done] = clipped<D>(value);
  }
  return KORVO_ERR_OK;
}

template <class M, class N>
code cast(const M* in, [[maybe_unused]] std::uint8_t clip_or_not, void* intrp_ptr, N* out) {
  using S = element<M>;
  using D = element<N>;
  TRY(valid(in));
  TRY(valid(out));
  if (!same_shape(in, out)) return KORVO_ERR_ILLEGAL_SIZE;
  if constexpr (!can_misfit<S, D>())
    KORVO_AT_LEVEL(convert<S, D>)(in->data, out->data, in->nelem);
  else if (clip_or_not != 0)
    KORVO_AT_LEVEL(convert_clipped<S, D>)(in->data, out->data, in->nelem);
  else
    TRY(convert_checked(in->data, out->data, in->nelem));
  return checkpoint(intrp_ptr).add(cast_cost<S, D> * in->nelem);
}

// One part of a complex matrix, taken from a real one or 0 throughout.
code set_part(double korvo_dcomplex::*part, const _dbl_mat* from, _cpx_mat* out) {
  if (from && !same_shape(from, out)) return KORVO_ERR_ILLEGAL_SIZE;
  for (std::int32_t i = 0; i < out->nelem; ++i) out->data[i].*part = from ? from->data[i] : 0.0;
  return KORVO_ERR_OK;
}

// One part of a complex matrix, if it is wanted.
code get_part(double korvo_dcomplex::*part, const _cpx_mat* in, _dbl_mat* to) {
  if (!to) return KORVO_ERR_OK;
  if (!same_shape(in, to)) return KORVO_ERR_ILLEGAL_SIZE;
  for (std::int32_t i = 0; i < in->nelem; ++i) to->data[i] = in->data[i].*part;
  return KORVO_ERR_OK;
}

// Parts are not validated, only compared for shape; but one that is given must have data.
code usable_parts(const _dbl_mat* real, const _dbl_mat* imag) {
  if (!real && !imag) return KORVO_ERR_NULL_POINTER;
  return (real && !real->data) || (imag && !imag->data) ? KORVO_ERR_NULL_POINTER : KORVO_ERR_OK;
}

}  // namespace
}  // namespace korvo

using namespace korvo;

#define CHECKED(name, M, N)                                              \
  code name(const M* in, uint8_t clip_or_not, void* intrp_ptr, N* out) { \
    return cast(in, clip_or_not, intrp_ptr, out);                        \
  }
#define FITTING(name, M, N) \
  code name(const M* in, void* intrp_ptr, N* out) { return cast(in, 0, intrp_ptr, out); }

extern "C" {

code matuniv_cast(const _univ_mat* in, uint8_t clip_or_not, void* intrp_ptr, _univ_mat* out) {
  if (!in || !out) return KORVO_ERR_NULL_POINTER;
  if (in->type == out->type) return matuniv_assign(in, intrp_ptr, out);
  return dispatch(in->type, all_records{}, [&]<class M> {
    return dispatch(out->type, all_records{}, [&]<class N> {
      if constexpr (castable<element<M>, element<N>>) {
        const M from = as<M>(*in);
        N to = as<N>(*out);
        return cast(&from, clip_or_not, intrp_ptr, &to);
      } else {
        return KORVO_ERR_ILLEGAL_TYPE;
      }
    });
  });
}

CHECKED(matu16_cast_to_u8, _u16_mat, _u8_mat)
CHECKED(matu16_cast_to_s16, _u16_mat, _s16_mat)
CHECKED(matu32_cast_to_u8, _u32_mat, _u8_mat)
CHECKED(matu32_cast_to_u16, _u32_mat, _u16_mat)
CHECKED(matu32_cast_to_s16, _u32_mat, _s16_mat)
CHECKED(matu32_cast_to_s32, _u32_mat, _s32_mat)
CHECKED(mats16_cast_to_u8, _s16_mat, _u8_mat)
CHECKED(mats16_cast_to_u16, _s16_mat, _u16_mat)
CHECKED(mats16_cast_to_u32, _s16_mat, _u32_mat)
CHECKED(mats32_cast_to_u8, _s32_mat, _u8_mat)
CHECKED(mats32_cast_to_u16, _s32_mat, _u16_mat)
CHECKED(mats32_cast_to_u32, _s32_mat, _u32_mat)
CHECKED(mats32_cast_to_s16, _s32_mat, _s16_mat)
CHECKED(matflt_cast_to_u8, _flt_mat, _u8_mat)
CHECKED(matflt_cast_to_u16, _flt_mat, _u16_mat)
CHECKED(matflt_cast_to_u32, _flt_mat, _u32_mat)
CHECKED(matflt_cast_to_s16, _flt_mat, _s16_mat)
CHECKED(matflt_cast_to_s32, _flt_mat, _s32_mat)
CHECKED(matdbl_cast_to_u8, _dbl_mat, _u8_mat)
CHECKED(matdbl_cast_to_u16, _dbl_mat, _u16_mat)
CHECKED(matdbl_cast_to_u32, _dbl_mat, _u32_mat)
CHECKED(matdbl_cast_to_s16, _dbl_mat, _s16_mat)
CHECKED(matdbl_cast_to_s32, _dbl_mat, _s32_mat)
CHECKED(matdbl_cast_to_flt, _dbl_mat, _flt_mat)
CHECKED(matcpx_cast_to_dbl, _cpx_mat, _dbl_mat)

FITTING(matu8_cast_to_u16, _u8_mat, _u16_mat)
FITTING(matu8_cast_to_u32, _u8_mat, _u32_mat)
FITTING(matu8_cast_to_s16, _u8_mat, _s16_mat)
FITTING(matu8_cast_to_s32, _u8_mat, _s32_mat)
FITTING(matu8_cast_to_flt, _u8_mat, _flt_mat)
FITTING(matu8_cast_to_dbl, _u8_mat, _dbl_mat)
FITTING(matu16_cast_to_u32, _u16_mat, _u32_mat)
FITTING(matu16_cast_to_s32, _u16_mat, _s32_mat)
FITTING(matu16_cast_to_flt, _u16_mat, _flt_mat)
FITTING(matu16_cast_to_dbl, _u16_mat, _dbl_mat)
FITTING(matu32_cast_to_flt, _u32_mat, _flt_mat)
FITTING(matu32_cast_to_dbl, _u32_mat, _dbl_mat)
FITTING(mats16_cast_to_s32, _s16_mat, _s32_mat)
FITTING(mats16_cast_to_flt, _s16_mat, _flt_mat)
FITTING(mats16_cast_to_dbl, _s16_mat, _dbl_mat)
FITTING(mats32_cast_to_flt, _s32_mat, _flt_mat)
FITTING(mats32_cast_to_dbl, _s32_mat, _dbl_mat)
FITTING(matflt_cast_to_dbl, _flt_mat, _dbl_mat)
FITTING(matflt_cast_to_cpx, _flt_mat, _cpx_mat)
FITTING(matdbl_cast_to_cpx, _dbl_mat, _cpx_mat)

code matdbl_to_complex(const _dbl_mat* real, const _dbl_mat* imag, void* intrp_ptr, _cpx_mat* out) {
  TRY(valid(out));
  TRY(usable_parts(real, imag));
  if (real && imag && !same_shape(real, imag)) return KORVO_ERR_ILLEGAL_SIZE;
  checkpoint cost(intrp_ptr);
  TRY(set_part(&korvo_dcomplex::re, real, out));
  TRY(cost.set(out->nelem));
  TRY(set_part(&korvo_dcomplex::im, imag, out));
  return cost.set(2.0 * out->nelem);
}

code matcpx_to_double(const _cpx_mat* in, void* intrp_ptr, _dbl_mat* real, _dbl_mat* imag) {
  TRY(valid(in));
  TRY(usable_parts(real, imag));
  checkpoint cost(intrp_ptr);
  TRY(get_part(&korvo_dcomplex::re, in, real));
  TRY(cost.set(2.0 * in->nelem));
  TRY(get_part(&korvo_dcomplex::im, in, imag));
  return cost.set(2.0 * in->nelem);  // the checkpoint has normally moved past it
}

}  // extern "C"

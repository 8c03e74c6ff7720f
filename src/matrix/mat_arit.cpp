// Arithmetic: add, subtract, multiply_elem, multiply, add_scalar, multiply_scalar, abs, rescale.
#include "korvos/matrix/mat_arit.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "core/arithmetic.hpp"
#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/levels.hpp"
#include "core/loop.hpp"
#include "core/valid.hpp"
#include "korvos/matrix/mat_assn.h"
#include "matrix/mat_summ.hpp"
#include "matrix/operand.hpp"

#define KORVO_KERNELS "matrix/mat_arit_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

struct plus {
  template <class T>
  T operator()(T x, T y) const {
    return sum(x, y);
  }
};
struct minus {
  template <class T>
  T operator()(T x, T y) const {
    return difference(x, y);
  }
};
struct product_of {
  template <class T>
  T operator()(T x, T y) const {
    return times(x, y);
  }
};

template <class Op, class M>
code each(const M* a, const M* b, void* intrp_ptr, M* out) {
  TRY(valid(a, b, out));
  if (!same_shape(a, b, out)) return KORVO_ERR_ILLEGAL_SIZE;
  KORVO_AT_LEVEL(combine<Op, element<M>>)(a->data, b->data, out->data, out->nelem);
  return checkpoint(intrp_ptr).add(3.0 * out->nelem);
}

template <class Op, class M>
code each_scalar(const M* a, element<M> scalar, void* intrp_ptr, M* out) {
  TRY(valid(a, out));
  if (!same_shape(a, out)) return KORVO_ERR_ILLEGAL_SIZE;
  KORVO_AT_LEVEL(combine_scalar<Op, element<M>>)(a->data, scalar, out->data, out->nelem);
  return checkpoint(intrp_ptr).add(3.0 * out->nelem);
}

// Negates what is below 0 in the element's width, so that -0.0 and the lowest integer stay.
template <class M>
code absolute(const M* a, void* intrp_ptr, M* out) {
  using T = element<M>;
  TRY(valid(a, out));
  if (!same_shape(a, out)) return KORVO_ERR_ILLEGAL_SIZE;
  std::transform(a->data, a->data + a->nelem, out->data, [](T x) {
    if constexpr (std::is_integral_v<T>)
      return x < T{0} ? difference(T{0}, x) : x;
    else
      return x < T{0} ? -x : x;
  });
  return checkpoint(intrp_ptr).add(3.0 * out->nelem);
}

// The matrix product, a row at a time: columns abreast, k ascending, each sum begun at 0 in its own element.
template <class M>
code multiply(const M* a, const M* b, void* intrp_ptr, M* out) {
  using T = element<M>;
  TRY(valid(out, a, b));
  if (out->nrow != a->nrow || out->ncol != b->ncol || a->ncol != b->nrow) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(out, a) || shares_data(out, b)) return KORVO_ERR_ILLEGAL_ADDRESS;
  const auto accumulate = KORVO_AT_LEVEL(accumulate<T>);
  checkpoint cost(intrp_ptr);
  for (std::int64_t i = 0; i < out->nrow; ++i) {
    T* const row = out->data + i * out->ncol;
    std::fill_n(row, out->ncol, T{});
    for (std::int64_t k = 0; k < a->ncol; ++k)
      accumulate(a->data[i * a->ncol + k], b->data + k * b->ncol, row, out->ncol);
    TRY(cost.add(8.0 * out->ncol * a->ncol));
  }
  return KORVO_ERR_OK;
}

template <class M, class T>
code rescale(const M* a, T new_minimum, T new_maximum, void* intrp_ptr, M* out) {
  TRY(valid(out));
  T minimum{};
  T maximum{};
  TRY(range(a, intrp_ptr, &minimum, &maximum));  // validates a, and polls
  if (!same_shape(a, out)) return KORVO_ERR_ILLEGAL_SIZE;
  if (!(new_maximum >= new_minimum)) return KORVO_ERR_ILLEGAL_VALUE;
  const double low = minimum;
  const double high = maximum;
  const double new_low = new_minimum;
  const double new_high = new_maximum;
  const double factor = low == high ? 0.0 : (new_high - new_low) / (high - low);
  std::transform(a->data, a->data + a->nelem, out->data,
                 [=](T x) { return static_cast<T>((x - low) * factor + new_low); });
  return KORVO_ERR_OK;
}

// The number of any real scalar, KORVO_SINT8 included, which no record has.
code to_double(const _univ_scalar& scalar, double* x) {
  *x = scalar.value.s8;
  if (scalar.type == KORVO_SINT8) return KORVO_ERR_OK;
  return dispatch(scalar.type, real_records{}, [&]<class S> {
    *x = number<S>(scalar);
    return KORVO_ERR_OK;
  });
}

// Whether a scalar of another type can become one of type: integers that fit, and any number if that is
// floating. What does not fit is a type error here, not an overflow.
code convertible(const _univ_scalar& scalar, _korvo_type type) {
  if (scalar.type == type || is_floating(type)) return KORVO_ERR_OK;
  if (is_floating(scalar.type)) return KORVO_ERR_ILLEGAL_TYPE;
  double x = 0.0;
  TRY(to_double(scalar, &x));
  return dispatch(type, real_records{}, [&]<class M> {
    using limits = accepted<element<M>>;
    return x >= limits::lowest && x <= limits::highest ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_TYPE;
  });
}

template <class M>
code convert(const _univ_scalar& scalar, element<M>* value) {
  if (scalar.type == tag<M>::type) {
    *value = number<M>(scalar);
    return KORVO_ERR_OK;
  }
  double x = 0.0;
  TRY(to_double(scalar, &x));
  *value = static_cast<element<M>>(x);
  return KORVO_ERR_OK;
}

template <class F>
code each_univ(const _univ_mat* a, const _univ_mat* b, void* intrp_ptr, _univ_mat* out, F form) {
  return dispatch_operands(a, b, intrp_ptr, out, real_records{}, form);
}

template <class Op>
code scalar_univ(const _univ_mat* a, const _univ_scalar& scalar, void* intrp_ptr, _univ_mat* out) {
  if (!a || !out) return KORVO_ERR_NULL_POINTER;
  if (scalar.type == KORVO_DCOMPLEX || out->type == KORVO_DCOMPLEX) return KORVO_ERR_ILLEGAL_TYPE;
  TRY(convertible(scalar, out->type));
  operand x;
  TRY(x.bring(*a, out->type, intrp_ptr));
  return dispatch(out->type, real_records{}, [&]<class M> {
    element<M> value{};
    TRY(convert<M>(scalar, &value));
    const M left = x.typed<M>();
    M result = as<M>(*out);
    return each_scalar<Op>(&left, value, intrp_ptr, &result);
  });
}

}  // namespace
}  // namespace korvo

using namespace korvo;

#define PAIR(name, M, method) \
  code name(const M* a, const M* b, void* intrp_ptr, M* out) { return method(a, b, intrp_ptr, out); }
#define SCALAR(name, M, T, Op)                               \
  code name(const M* a, T scalar, void* intrp_ptr, M* out) { \
    return each_scalar<Op>(a, scalar, intrp_ptr, out);       \
  }
#define ABS(name, M) \
  code name(const M* a, void* intrp_ptr, M* out) { return absolute(a, intrp_ptr, out); }
#define RESCALE(name, M, T)                                                      \
  code name(const M* a, T new_minimum, T new_maximum, void* intrp_ptr, M* out) { \
    return rescale(a, new_minimum, new_maximum, intrp_ptr, out);                 \
  }
#define UNIVERSAL_PAIR(name, method)                                                         \
  code name(const _univ_mat* a, const _univ_mat* b, void* intrp_ptr, _univ_mat* out) {       \
    return each_univ(a, b, intrp_ptr, out, [&](const auto* x, const auto* y, auto* result) { \
      return method(x, y, intrp_ptr, result);                                                \
    });                                                                                      \
  }
#define UNIVERSAL_SCALAR(name, Op)                                                      \
  code name(const _univ_mat* a, _univ_scalar scalar, void* intrp_ptr, _univ_mat* out) { \
    return scalar_univ<Op>(a, scalar, intrp_ptr, out);                                  \
  }

extern "C" {

PAIR(matu8_add, _u8_mat, each<plus>)
PAIR(matu16_add, _u16_mat, each<plus>)
PAIR(matu32_add, _u32_mat, each<plus>)
PAIR(mats16_add, _s16_mat, each<plus>)
PAIR(mats32_add, _s32_mat, each<plus>)
PAIR(matflt_add, _flt_mat, each<plus>)
PAIR(matdbl_add, _dbl_mat, each<plus>)
UNIVERSAL_PAIR(matuniv_add, each<plus>)

PAIR(matu8_subtract, _u8_mat, each<minus>)
PAIR(matu16_subtract, _u16_mat, each<minus>)
PAIR(matu32_subtract, _u32_mat, each<minus>)
PAIR(mats16_subtract, _s16_mat, each<minus>)
PAIR(mats32_subtract, _s32_mat, each<minus>)
PAIR(matflt_subtract, _flt_mat, each<minus>)
PAIR(matdbl_subtract, _dbl_mat, each<minus>)
UNIVERSAL_PAIR(matuniv_subtract, each<minus>)

PAIR(matu8_multiply_elem, _u8_mat, each<product_of>)
PAIR(matu16_multiply_elem, _u16_mat, each<product_of>)
PAIR(matu32_multiply_elem, _u32_mat, each<product_of>)
PAIR(mats16_multiply_elem, _s16_mat, each<product_of>)
PAIR(mats32_multiply_elem, _s32_mat, each<product_of>)
PAIR(matflt_multiply_elem, _flt_mat, each<product_of>)
PAIR(matdbl_multiply_elem, _dbl_mat, each<product_of>)
UNIVERSAL_PAIR(matuniv_multiply_elem, each<product_of>)

PAIR(matu8_multiply, _u8_mat, multiply)
PAIR(matu16_multiply, _u16_mat, multiply)
PAIR(matu32_multiply, _u32_mat, multiply)
PAIR(mats16_multiply, _s16_mat, multiply)
PAIR(mats32_multiply, _s32_mat, multiply)
PAIR(matflt_multiply, _flt_mat, multiply)
PAIR(matdbl_multiply, _dbl_mat, multiply)
UNIVERSAL_PAIR(matuniv_multiply, multiply)

SCALAR(matu8_add_scalar, _u8_mat, uint8_t, plus)
SCALAR(matu16_add_scalar, _u16_mat, uint16_t, plus)
SCALAR(matu32_add_scalar, _u32_mat, uint32_t, plus)
SCALAR(mats16_add_scalar, _s16_mat, int16_t, plus)
SCALAR(mats32_add_scalar, _s32_mat, int32_t, plus)
SCALAR(matflt_add_scalar, _flt_mat, float, plus)
SCALAR(matdbl_add_scalar, _dbl_mat, double, plus)
UNIVERSAL_SCALAR(matuniv_add_scalar, plus)

SCALAR(matu8_multiply_scalar, _u8_mat, uint8_t, product_of)
SCALAR(matu16_multiply_scalar, _u16_mat, uint16_t, product_of)
SCALAR(matu32_multiply_scalar, _u32_mat, uint32_t, product_of)
SCALAR(mats16_multiply_scalar, _s16_mat, int16_t, product_of)
SCALAR(mats32_multiply_scalar, _s32_mat, int32_t, product_of)
SCALAR(matflt_multiply_scalar, _flt_mat, float, product_of)
SCALAR(matdbl_multiply_scalar, _dbl_mat, double, product_of)
UNIVERSAL_SCALAR(matuniv_multiply_scalar, product_of)

ABS(mats16_abs, _s16_mat)
ABS(mats32_abs, _s32_mat)
ABS(matflt_abs, _flt_mat)
ABS(matdbl_abs, _dbl_mat)

code matuniv_abs(const _univ_mat* a, void* intrp_ptr, _univ_mat* out) {
  return dispatch_same(a, out, real_records{}, [&]<class M>(const M* from, M* to) {
    if constexpr (std::is_unsigned_v<element<M>>)
      return matuniv_assign(a, intrp_ptr, out);
    else
      return absolute(from, intrp_ptr, to);
  });
}

RESCALE(matu8_rescale, _u8_mat, uint8_t)
RESCALE(matu16_rescale, _u16_mat, uint16_t)
RESCALE(matu32_rescale, _u32_mat, uint32_t)
RESCALE(mats16_rescale, _s16_mat, int16_t)
RESCALE(mats32_rescale, _s32_mat, int32_t)
RESCALE(matflt_rescale, _flt_mat, float)
RESCALE(matdbl_rescale, _dbl_mat, double)

// Stricter than the other scalar routines: no operand is cast and no scalar widened.
code matuniv_rescale(const _univ_mat* a, _univ_scalar new_minimum, _univ_scalar new_maximum, void* intrp_ptr,
                     _univ_mat* out) {
  if (!a || !out) return KORVO_ERR_NULL_POINTER;
  if (new_minimum.type != out->type || new_maximum.type != out->type) return KORVO_ERR_ILLEGAL_TYPE;
  return dispatch_same(a, out, real_records{}, [&]<class M>(const M* from, M* to) {
    return rescale(from, number<M>(new_minimum), number<M>(new_maximum), intrp_ptr, to);
  });
}

}  // extern "C"

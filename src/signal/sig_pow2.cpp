// Power-of-two Hartley and cosine transforms: vectors, and the cosine transform of matrices.
#include "korvos/signal/sig_pow2.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/loop.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"
#include "korvos/matrix/mat_assn.h"
#include "signal/sig_pow2.hpp"

namespace korvo {
namespace {

constexpr double pi = 3.141592653589793;
constexpr double root_of_half = 0.707106781186547;

bool is_power_of_two(std::int32_t count) { return std::has_single_bit(static_cast<std::uint32_t>(count)); }

code copy_one(const double* from, double* to) {
  *to = *from;
  return KORVO_ERR_OK;
}

code check_vectors(const _dbl_mat* in, const _dbl_mat* out) {
  TRY(valid(in, out));
  if (!same_shape(in, out)) return KORVO_ERR_ILLEGAL_SIZE;
  if (in->nrow != 1 && in->ncol != 1) return KORVO_ERR_ILLEGAL_SIZE;
  return is_power_of_two(in->nelem) ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_SIZE;
}

code transform_hartley(const _dbl_mat* in, void* intrp_ptr, _dbl_mat* out) {
  TRY(check_vectors(in, out));
  if (out->data != in->data) std::copy_n(in->data, in->nelem, out->data);
  if (in->nelem == 1) return KORVO_ERR_OK;
  temporary<_dbl_mat> table;
  TRY(table.make(1, in->nelem / 2));
  table.data[0] = 0.0;
  return hartley(out->data, in->nelem, table.data, intrp_ptr);
}

// The cosine transform of vectors of one length: its table and the vector it works in.
class cosine_transform {
 public:
  [[nodiscard]] code make(std::int64_t n) {
    TRY(table_.make(1, 3 * n / 2));  // of 1 element for n = 1, which uses none
    TRY(work_.make(1, n));
    table_.data[0] = 0.0;
    double* const a = table_.data + n / 2;
    double* const b = table_.data + n;
    for (std::int64_t i = 0; i < n / 2; ++i) {
      const double t = static_cast<double>(i) * pi / static_cast<double>(2 * n);
      a[i] = (std::cos(t) - std::sin(t)) * root_of_half;
      b[i] = (std::sin(t) + std::cos(t)) * root_of_half;
    }
    return KORVO_ERR_OK;
  }

  [[nodiscard]] code forward(const double* x, void* intrp_ptr, double* y) const {
    const std::int64_t n = work_.nelem;
    double* const v = work_.data;
    const auto reorder = [=](std::int64_t h) {
      for (std::int64_t i = 0; i < h; ++i) {
        v[i] = x[2 * i];
        v[h + i] = x[n - 1 - 2 * i];
      }
    };
    const auto turn = [=, this](std::int64_t /*h*/) {
      rotate([v](std::int64_t /*i*/) { return v[1]; }, v, y);  // kept: v[1], not v[i], for every i
    };
    return n == 1 ? copy_one(x, y) : around_hartley(reorder, turn, intrp_ptr);
  }

  [[nodiscard]] code inverse(const double* y, void* intrp_ptr, double* x) const {
    const std::int64_t n = work_.nelem;
    double* const u = work_.data;
    const auto turn = [=, this](std::int64_t /*h*/) { rotate([y](std::int64_t i) { return y[i]; }, y, u); };
    const auto reorder = [=](std::int64_t h) {
      for (std::int64_t i = 0; i < h; ++i) {
        x[2 * i] = u[i];
        x[n - 1 - 2 * i] = u[h + i];
      }
    };
    return n == 1 ? copy_one(y, x) : around_hartley(turn, reorder, intrp_ptr);
  }

 private:
  template <class Before, class After>
  code around_hartley(Before before, After after, void* intrp_ptr) const {
    const std::int64_t h = work_.nelem / 2;
    const double side_cost = 20.0 * static_cast<double>(h);
    checkpoint cost(intrp_ptr);
    before(h);
    TRY(cost.add(side_cost));
    TRY(hartley(work_.data, work_.nelem, table_.data, intrp_ptr));
    after(h);
    return cost.add(side_cost);
  }

  // Turns the elements of each pair i, n - i, of which the first is low(i); 0 and n / 2 have no partner.
  template <class Low>
  void rotate(Low low, const double* from, double* to) const {
    const std::int64_t n = work_.nelem;
    const double* const a = table_.data + n / 2;
    const double* const b = table_.data + n;
    to[0] = from[0];
    to[n / 2] = from[n / 2];
    KORVO_INDEPENDENT
    for (std::int64_t i = 1; i < n / 2; ++i) {
      to[i] = low(i) * a[i] + from[n - i] * b[i];
      to[n - i] = low(i) * b[i] - from[n - i] * a[i];
    }
  }

  temporary<_dbl_mat> table_;
  temporary<_dbl_mat> work_;
};

using direction = code (cosine_transform::*)(const double*, void*, double*) const;

template <direction way>
code transform_cosine(const _dbl_mat* in, void* intrp_ptr, _dbl_mat* out) {
  TRY(check_vectors(in, out));
  if (in->nelem == 1) return copy_one(in->data, out->data);
  cosine_transform vector;
  TRY(vector.make(in->nelem));
  return (vector.*way)(in->data, intrp_ptr, out->data);
}

code transform_rows(const cosine_transform& rows, direction way, const _dbl_mat* in, void* intrp_ptr,
                    _dbl_mat* out) {
  const std::int64_t ncol = in->ncol;
  for (std::int64_t i = 0; i < in->nrow; ++i)
    TRY((rows.*way)(in->data + i * ncol, intrp_ptr, out->data + i * ncol));
  return KORVO_ERR_OK;
}

code transform_cosine_2d(const _dbl_mat* in, std::uint8_t inverse, void* intrp_ptr, _dbl_mat* out) {
  TRY(valid(in, out));
  if (!same_shape(in, out)) return KORVO_ERR_ILLEGAL_SIZE;
  if (!is_power_of_two(in->nrow) || !is_power_of_two(in->ncol)) return KORVO_ERR_ILLEGAL_SIZE;
  if (in->nelem == 1) return copy_one(in->data, out->data);
  cosine_transform rows;
  cosine_transform columns;
  temporary<_dbl_mat> turned;
  TRY(rows.make(in->ncol));
  TRY(columns.make(in->nrow));
  TRY(turned.make(in->ncol, in->nrow));
  const direction way = inverse != 0 ? &cosine_transform::inverse : &cosine_transform::forward;
  if (inverse == 0) TRY(transform_rows(rows, way, in, intrp_ptr, out));
  TRY(matdbl_transpose(inverse == 0 ? out : in, intrp_ptr, &turned));
  TRY(transform_rows(columns, way, &turned, intrp_ptr, &turned));
  TRY(matdbl_transpose(&turned, intrp_ptr, out));
  return inverse == 0 ? KORVO_ERR_OK : transform_rows(rows, way, out, intrp_ptr, out);
}

}  // namespace
}  // namespace korvo

using namespace korvo;

#define VECTOR(name, method) \
  code name(const _dbl_mat* in, void* intrp_ptr, _dbl_mat* out) { return method(in, intrp_ptr, out); }
#define UNIVERSAL(name, method)                                                                            \
  code name(const _univ_mat* in, void* intrp_ptr, _univ_mat* out) {                                        \
    return dispatch_same(in, out, records<_dbl_mat>{},                                                     \
                         [=](const _dbl_mat* from, _dbl_mat* to) { return method(from, intrp_ptr, to); }); \
  }

extern "C" {

VECTOR(sigdbl_transform_hartley, transform_hartley)
VECTOR(sigdbl_transform_discrete_cosine_II_pow2, transform_cosine<&cosine_transform::forward>)
VECTOR(sigdbl_transform_discrete_cosine_II_inverse_pow2, transform_cosine<&cosine_transform::inverse>)

code sigdbl_transform_discrete_cosine_II_2d_pow2(const _dbl_mat* in, uint8_t inverse, void* intrp_ptr,
                                                 _dbl_mat* out) {
  return transform_cosine_2d(in, inverse, intrp_ptr, out);
}

UNIVERSAL(siguniv_transform_hartley, transform_hartley)
UNIVERSAL(siguniv_transform_discrete_cosine_II_pow2, transform_cosine<&cosine_transform::forward>)
UNIVERSAL(siguniv_transform_discrete_cosine_II_inverse_pow2, transform_cosine<&cosine_transform::inverse>)

code siguniv_transform_discrete_cosine_II_2d_pow2(const _univ_mat* in, uint8_t inverse, void* intrp_ptr,
                                                  _univ_mat* out) {
  return dispatch_same(in, out, records<_dbl_mat>{}, [=](const _dbl_mat* from, _dbl_mat* to) {
    return transform_cosine_2d(from, inverse, intrp_ptr, to);
  });
}

}  // extern "C"

// Direct convolution and correlation: typed, universal, by sets.
#include "korvos/signal/sig_conv.h"

#include <algorithm>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/levels.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"
#include "korvos/matrix/mat_assn.h"
#include "matrix/operand.hpp"
#include "signal/sig_conv.hpp"

#define KORVO_KERNELS "signal/sig_conv_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

using signal_records = records<_u8_mat, _u16_mat, _u32_mat, _s32_mat, _dbl_mat, _cpx_mat>;

// Where the kernel comes to lie on the matrix, and what it finds past the edges.
struct placement {
  std::int32_t row_step;
  std::int32_t col_step;
  std::int32_t row_origin;
  std::int32_t col_origin;
  std::int32_t boundary;
};

template <class M>
code check(const M* in, const M* kernel, const placement& at, const M* out) {
  TRY(valid(in, kernel, out));
  if (out->nrow > in->nrow || out->ncol > in->ncol) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(out, in) || shares_data(out, kernel)) return KORVO_ERR_ILLEGAL_ADDRESS;
  if (at.row_step < 1 || at.col_step < 1 || at.row_origin < 1 || at.col_origin < 1 ||
      at.row_origin > kernel->nrow || at.col_origin > kernel->ncol)
    return KORVO_ERR_ILLEGAL_VALUE;
  if (rule_of(at.boundary)) return KORVO_ERR_OK;
  out->data[0] = {};  // kept: the mode is looked at when the first sum has been begun
  return KORVO_ERR_ILLEGAL_VALUE;
}

// The work with the taps in the order of the kernel, or for step -1 backward.
template <class M>
correlation<element<M>> plan(const M* in, const M* kernel, std::int64_t tap_step, const placement& at, M* out) {
  return {in->data,
          in->nrow,
          in->ncol,
          tap_step < 0 ? kernel->data + (kernel->nelem - 1) : kernel->data,
          tap_step,
          kernel->nrow,
          kernel->ncol,
          at.row_step,
          at.col_step,
          kernel->nrow - at.row_origin,
          kernel->ncol - at.col_origin,
          rule_of(at.boundary),
          out->data,
          out->nrow,
          out->ncol};
}

template <class T>
correlation<T> strip_of(correlation<T> work, std::int64_t first_row, std::int64_t rows) {
  work.row_offset -= first_row * work.row_step;
  work.out += first_row * work.out_cols;
  work.out_rows = rows;
  return work;
}

// A column under a column of taps has its samples side by side: the same sums as of a row under a row of taps,
// with outputs abreast.
template <class T>
correlation<T> lay_down(correlation<T> work) {
  if (work.ncol != 1 || work.kc != 1) return work;
  std::swap(work.nrow, work.ncol);
  std::swap(work.kr, work.kc);
  std::swap(work.row_step, work.col_step);
  std::swap(work.row_offset, work.col_offset);
  std::swap(work.out_rows, work.out_cols);
  return work;
}

template <class T>
code run(const correlation<T>& work, void* intrp_ptr) {
  constexpr double cost_of_tap = std::is_same_v<T, korvo_dcomplex> ? 8.0 : 4.0;
  const double row_cost = cost_of_tap * static_cast<double>(work.kr * work.kc) * static_cast<double>(work.ncol);
  const auto correlate = KORVO_AT_LEVEL(correlate<T>);
  const auto out_rows = static_cast<std::int32_t>(work.out_rows);
  checkpoint cost(intrp_ptr);
  for (std::int32_t i = 0; i < out_rows;) {
    // high strips are faster, and without a host no poll is missed
    const std::int32_t rows = intrp_ptr ? cost.strip(row_cost, out_rows - i) : out_rows;
    correlate(lay_down(strip_of(work, i, rows)));
    TRY(cost.add_strip(row_cost, rows));
    i += rows;
  }
  return KORVO_ERR_OK;
}

struct correlating {
  template <class M>
  code operator()(const M* in, const M* kernel, const placement& at, void* intrp_ptr, M* out) const {
    TRY(check(in, kernel, at, out));
    return run(plan(in, kernel, 1, at, out), intrp_ptr);
  }
};

struct convolving {
  template <class M>
  code operator()(const M* in, const M* kernel, const placement& at, void* intrp_ptr, M* out) const {
    TRY(check(in, kernel, at, out));
    return run(plan(in, kernel, -1, at, out), intrp_ptr);
  }

  // Hosts see the polls of the two flips. The checks come after them, on the kernel itself and not its copy.
  code operator()(const _cpx_mat* in, const _cpx_mat* kernel, const placement& at, void* intrp_ptr,
                  _cpx_mat* out) const {
    TRY(valid(kernel));
    temporary<_cpx_mat> flipped;
    TRY(flipped.make(kernel->nrow, kernel->ncol));
    TRY(matcpx_flip_up_down(kernel, intrp_ptr, &flipped));
    TRY(matcpx_flip_left_right(&flipped, intrp_ptr, &flipped));
    TRY(check(in, kernel, at, out));
    return run(plan<_cpx_mat>(in, &flipped, 1, at, out), intrp_ptr);
  }
};

template <class F>
code universal(const _univ_mat* in, const _univ_mat* kernel, const placement& at, void* intrp_ptr,
               _univ_mat* out, F form) {
  return dispatch_operands(in, kernel, intrp_ptr, out, signal_records{},
                           [&]<class M>(const M* samples, const M* taps, M* result) {
                             return form(samples, taps, at, intrp_ptr, result);
                           });
}

// The parameters of the members of three sets, one element a member.
struct placements {
  const _s32_mat* row_step;
  const _s32_mat* col_step;
  const _s32_mat* row_origin;
  const _s32_mat* col_origin;
  std::int32_t boundary;
};

code check_sets(const _mat_set* in, const _mat_set* kernel, const _mat_set* out, const placements& at) {
  for (const _mat_set* set : {in, kernel, out}) TRY(matset_validate(set));
  TRY(valid(at.row_step, at.col_step, at.row_origin, at.col_origin));
  for (const std::int32_t count : {kernel->nmat, out->nmat, at.row_step->nelem, at.col_step->nelem,
                                   at.row_origin->nelem, at.col_origin->nelem})
    if (count != in->nmat) return KORVO_ERR_ILLEGAL_SIZE;
  return KORVO_ERR_OK;
}

template <class F>
code each_member(const _mat_set* in, const _mat_set* kernel, const placements& at, void* intrp_ptr,
                 _mat_set* out, F form) {
  for (std::int32_t k = 0; k < in->nmat; ++k) {
    if (!at.col_origin || !at.col_origin->data) return KORVO_ERR_NULL_POINTER;
    if (k >= at.col_origin->nelem) return KORVO_ERR_OUT_OF_BOUNDS;
    const placement here = {at.row_step->data[k], at.col_step->data[k], at.row_origin->data[k],
                            at.col_origin->data[k], at.boundary};
    TRY(universal(in->mats + k, kernel->mats + k, here, intrp_ptr, out->mats + k, form));
  }
  return KORVO_ERR_OK;
}

}  // namespace
}  // namespace korvo

using namespace korvo;

#define PAIR(name, M, method)                                                                          \
  code name(const M* in, const M* kernel, int32_t row_step, int32_t col_step, int32_t row_origin,      \
            int32_t col_origin, int32_t boundary, void* intrp_ptr, M* out) {                           \
    return method(in, kernel, {row_step, col_step, row_origin, col_origin, boundary}, intrp_ptr, out); \
  }
#define UNIVERSAL(name, method)                                                                          \
  code name(const _univ_mat* in, const _univ_mat* kernel, int32_t row_step, int32_t col_step,            \
            int32_t row_origin, int32_t col_origin, int32_t boundary, void* intrp_ptr, _univ_mat* out) { \
    return universal(in, kernel, {row_step, col_step, row_origin, col_origin, boundary}, intrp_ptr, out, \
                     method);                                                                            \
  }

extern "C" {

PAIR(sigu8_correlate, _u8_mat, correlating{})
PAIR(sigu16_correlate, _u16_mat, correlating{})
PAIR(sigu32_correlate, _u32_mat, correlating{})
PAIR(sigs32_correlate, _s32_mat, correlating{})
PAIR(sigdbl_correlate, _dbl_mat, correlating{})
PAIR(sigcpx_correlate, _cpx_mat, correlating{})
UNIVERSAL(siguniv_correlate, correlating{})

PAIR(sigu8_convolve, _u8_mat, convolving{})
PAIR(sigu16_convolve, _u16_mat, convolving{})
PAIR(sigu32_convolve, _u32_mat, convolving{})
PAIR(sigs32_convolve, _s32_mat, convolving{})
PAIR(sigdbl_convolve, _dbl_mat, convolving{})
PAIR(sigcpx_convolve, _cpx_mat, convolving{})
UNIVERSAL(siguniv_convolve, convolving{})

code sigset_convolve(const _mat_set* in, const _mat_set* kernel, const _s32_mat* row_step,
                     const _s32_mat* col_step, const _s32_mat* row_origin, const _s32_mat* col_origin,
                     int32_t boundary, void* intrp_ptr, _mat_set* out) {
  const placements at = {row_step, col_step, row_origin, col_origin, boundary};
  TRY(check_sets(in, kernel, out, at));
  return each_member(in, kernel, at, intrp_ptr, out, convolving{});
}

// Kept: the row origins are checked in the place of the column origins too, which go unchecked.
code sigset_correlate(const _mat_set* in, const _mat_set* kernel, const _s32_mat* row_step,
                      const _s32_mat* col_step, const _s32_mat* row_origin, const _s32_mat* col_origin,
                      int32_t boundary, void* intrp_ptr, _mat_set* out) {
  TRY(check_sets(in, kernel, out, {row_step, col_step, row_origin, row_origin, boundary}));
  return each_member(in, kernel, {row_step, col_step, row_origin, col_origin, boundary}, intrp_ptr, out,
                     correlating{});
}

}  // extern "C"

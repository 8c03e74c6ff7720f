// Square systems: LU decomposition, solution, inverse; typed and universal.
#include "korvos/numeric/mat_num.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/levels.hpp"
#include "core/loop.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"
#include "korvos/matrix/mat_assn.h"

namespace korvo {
namespace {

// Columns whose steps are taken together to the columns right of them. The first panel is the narrow one, so
// that what lies right of a panel and below it is a multiple of this.
constexpr std::int64_t panel_width = 32;

}  // namespace
}  // namespace korvo

#define KORVO_KERNELS "numeric/mat_num_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

constexpr double tiny =
    1e-20;  // stands for a pivot of 0; and what counts as 0 at the head of a right-hand side

bool is_square(const _dbl_mat* mat, std::int32_t n) { return mat->nrow == n && mat->ncol == n; }

template <class M>
bool is_column(const M* mat, std::int32_t n) {
  return mat->nrow == n && mat->ncol == 1;
}

// For each row 1 over its largest absolute element.
code find_scales(const _dbl_mat* mat, double* scales) {
  const double* row = mat->data;
  for (std::int32_t i = 0; i < mat->nrow; ++i, row += mat->ncol) {
    double largest = 0.0;
    for (std::int32_t j = 0; j < mat->ncol; ++j) largest = std::max(largest, std::fabs(row[j]));
    if (largest == 0.0) return KORVO_ERR_SINGULAR_MATRIX;
    scales[i] = 1.0 / largest;
  }
  return KORVO_ERR_OK;
}

// The last of the rows from j on whose element of column j is largest in proportion to its row.
std::int64_t find_pivot(const double* a, std::int64_t n, std::int64_t j, const double* scales) {
  std::int64_t pivot = j;  // if all candidates are NaN
  double largest = 0.0;
  for (std::int64_t i = j; i < n; ++i) {
    const double candidate = std::fabs(a[i * n + j]) * scales[i];
    if (candidate >= largest) largest = candidate, pivot = i;
  }
  return pivot;
}

// Brings the pivot of column j to the diagonal.
std::int64_t exchange_rows(double* a, std::int64_t n, std::int64_t j, double* scales) {
  const std::int64_t pivot = find_pivot(a, n, j, scales);
  if (pivot != j) {
    std::swap_ranges(a + j * n, a + (j + 1) * n, a + pivot * n);
    scales[pivot] = scales[j];  // kept: that of row j is not needed again
  }
  double& diagonal = a[j * n + j];
  if (diagonal == 0.0) diagonal = tiny;
  return pivot;
}

// Step by step within a panel, and then all its steps on the columns right of it.
code factor(double* a, std::int64_t n, double* scales, std::int32_t* pivots, void* intrp_ptr) {
  const auto eliminate_panel = KORVO_AT_LEVEL(eliminate_panel);
  const auto eliminate_trailing = KORVO_AT_LEVEL(eliminate_trailing);
  const double column_cost = 20.0 * static_cast<double>(n) * static_cast<double>(n);
  checkpoint cost(intrp_ptr);
  for (std::int64_t first = 0; first < n;) {
    const std::int64_t last = n - (n - first - 1) / panel_width * panel_width;
    for (std::int64_t j = first; j < last; ++j) {
      pivots[j] = static_cast<std::int32_t>(exchange_rows(a, n, j, scales));
      eliminate_panel(a, n, j, last);
      TRY(cost.add(column_cost));
    }
    eliminate_trailing(a, n, first, last);
    first = last;
  }
  return KORVO_ERR_OK;
}

code lu_decomposition(const _dbl_mat* in, void* intrp_ptr, _s32_mat* pivots, _dbl_mat* out) {
  TRY(valid(in, pivots, out));
  const std::int32_t n = in->nrow;
  if (!is_square(in, n) || !is_column(pivots, n) || !is_square(out, n)) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(pivots, in) || shares_data(pivots, out)) return KORVO_ERR_ILLEGAL_ADDRESS;
  if (!shares_data(in, out)) std::copy_n(in->data, in->nelem, out->data);
  scratch<double> scales;
  TRY(scales.make(n));
  TRY(find_scales(out, scales.data()));
  return factor(out->data, n, scales.data(), pivots->data, intrp_ptr);
}

// The sums begin at the first element that counts, so a unit vector is done from its 1 on.
void substitute_forward(const double* a, const std::int32_t* pivots, std::int64_t n, double* x) {
  std::int64_t first = -1;
  for (std::int64_t i = 0; i < n; ++i) {
    double sum = x[pivots[i]];
    x[pivots[i]] = x[i];
    if (first >= 0)
      for (std::int64_t j = first; j < i; ++j) sum -= x[j] * a[i * n + j];
    else if (std::fabs(sum) > tiny)
      first = i;
    x[i] = sum;  // kept: a small one stays, and never enters a sum
  }
}

code substitute_backward(const double* a, std::int64_t n, double* x) {
  for (std::int64_t i = n - 1; i >= 0; --i) {
    const double* const row = a + i * n;
    double sum = x[i];
    for (std::int64_t j = i + 1; j < n; ++j) sum -= row[j] * x[j];
    if (row[i] == 0.0) return KORVO_ERR_ILLEGAL_VALUE;
    x[i] = sum / row[i];
  }
  return KORVO_ERR_OK;
}

code lu_solve(const _dbl_mat* factors, const _dbl_mat* rhs, const _s32_mat* pivots, void* intrp_ptr,
              _dbl_mat* solution) {
  TRY(valid(factors, rhs, pivots, solution));
  const std::int32_t n = factors->nrow;
  if (!is_square(factors, n) || !is_column(rhs, n) || !is_column(pivots, n) || !is_column(solution, n))
    return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(solution, factors) || shares_data(solution, pivots)) return KORVO_ERR_ILLEGAL_ADDRESS;
  const auto lies_outside = [=](std::int32_t pivot) { return pivot < 0 || pivot >= n; };
  if (std::any_of(pivots->data, pivots->data + n, lies_outside)) return KORVO_ERR_OUT_OF_BOUNDS;

  if (!shares_data(rhs, solution)) std::copy_n(rhs->data, n, solution->data);
  checkpoint cost(intrp_ptr);
  const double size = n;
  substitute_forward(factors->data, pivots->data, n, solution->data);
  TRY(cost.set((3.0 * size + 5.0) * size));
  TRY(substitute_backward(factors->data, n, solution->data));
  return cost.add(3.0 * size * size);
}

// By way of the routines, so that hosts see their polls. The factors are a copy, so out may be in.
code inverse(const _dbl_mat* in, void* intrp_ptr, _dbl_mat* out) {
  TRY(valid(in, out));
  const std::int32_t n = in->nrow;
  if (!is_square(in, n) || !is_square(out, n)) return KORVO_ERR_ILLEGAL_SIZE;
  temporary<_dbl_mat> factors;
  temporary<_s32_mat> pivots;
  TRY(factors.make(n, n));
  TRY(pivots.make(n, 1));
  TRY(lu_decomposition(in, intrp_ptr, &pivots, &factors));
  temporary<_dbl_mat> unit;
  TRY(unit.make(n, 1));
  for (std::int32_t i = 0; i < n; ++i) {
    TRY(matdbl_assign_scalar(0.0, intrp_ptr, &unit));
    unit.data[i] = 1.0;
    TRY(lu_solve(&factors, &unit, &pivots, intrp_ptr, &unit));
    TRY(matdbl_assign_submat(&unit, 0, i, intrp_ptr, out));
  }
  return KORVO_ERR_OK;
}

template <class M, class... U>
bool have_type(const U*... mat) {
  return ((mat->type == tag<M>::type) && ...);
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

_korvo_errcode matdbl_lu_decomposition(const _dbl_mat* in, void* intrp_ptr, _s32_mat* pivots, _dbl_mat* out) {
  return lu_decomposition(in, intrp_ptr, pivots, out);
}
_korvo_errcode matdbl_lu_solve(const _dbl_mat* factors, const _dbl_mat* rhs, const _s32_mat* pivots,
                               void* intrp_ptr, _dbl_mat* solution) {
  return lu_solve(factors, rhs, pivots, intrp_ptr, solution);
}
_korvo_errcode matdbl_inverse(const _dbl_mat* in, void* intrp_ptr, _dbl_mat* out) {
  return inverse(in, intrp_ptr, out);
}

_korvo_errcode matuniv_lu_decomposition(const _univ_mat* in, void* intrp_ptr, _univ_mat* pivots,
                                        _univ_mat* out) {
  if (!in || !pivots || !out) return KORVO_ERR_NULL_POINTER;
  if (!have_type<_dbl_mat>(in, out) || !have_type<_s32_mat>(pivots)) return KORVO_ERR_ILLEGAL_TYPE;
  const auto from = as<_dbl_mat>(*in);
  auto record = as<_s32_mat>(*pivots);
  auto to = as<_dbl_mat>(*out);
  return lu_decomposition(&from, intrp_ptr, &record, &to);
}
_korvo_errcode matuniv_lu_solve(const _univ_mat* factors, const _univ_mat* rhs, const _univ_mat* pivots,
                                void* intrp_ptr, _univ_mat* solution) {
  if (!factors || !rhs || !pivots || !solution) return KORVO_ERR_NULL_POINTER;
  if (!have_type<_dbl_mat>(factors, rhs, solution) || !have_type<_s32_mat>(pivots))
    return KORVO_ERR_ILLEGAL_TYPE;
  const auto packed = as<_dbl_mat>(*factors);
  const auto from = as<_dbl_mat>(*rhs);
  const auto record = as<_s32_mat>(*pivots);
  auto to = as<_dbl_mat>(*solution);
  return lu_solve(&packed, &from, &record, intrp_ptr, &to);
}
_korvo_errcode matuniv_inverse(const _univ_mat* in, void* intrp_ptr, _univ_mat* out) {
  return dispatch_same(in, out, records<_dbl_mat>{},
                       [=](const auto* from, auto* to) { return inverse(from, intrp_ptr, to); });
}

}  // extern "C"

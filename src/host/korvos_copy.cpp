// Copies between the library's matrices, row after row, and the host's, column after column.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>

#include "core/dispatch.hpp"
#include "core/valid.hpp"
#include "korvos/host/korvos.h"

namespace korvo {
namespace {

code same_size(std::int64_t rows, std::int64_t cols, const aMatrix* host) {
  return rows == host->rows && cols == host->cols && host->rows_allocated >= host->rows
             ? KORVO_ERR_OK
             : KORVO_ERR_ILLEGAL_SIZE;
}

// Where a plane of a matrix lies in an array of the host.
struct place {
  std::int64_t stride;
  std::int64_t rows;
  std::int64_t cols;
  std::int64_t first_col = 0;

  std::int64_t operator()(std::int64_t i, std::int64_t j) const { return stride * (first_col + j) + i; }
};

// Calls visit(i, j) for each element in rows [first, last), some rows at a time and down their columns: so both
// sides are walked in runs.
template <class Visit>
void each_element(const place& at, std::int64_t first, Visit visit) {
  constexpr std::int64_t band = 8;
  for (std::int64_t top = first; top < at.rows; top += band)
    for (std::int64_t j = 0; j < at.cols; ++j)
      for (std::int64_t i = top; i < std::min(top + band, at.rows); ++i) visit(i, j);
}

// Elements from a host's array, null for zeros, each put in its place by put(element, value).
template <class T, class Put>
void read(const double* part, const place& at, T* to, Put put) {
  each_element(at, 0,
               [&](std::int64_t i, std::int64_t j) { put(to[i * at.cols + j], part ? part[at(i, j)] : 0.0); });
}

void read_reals(const double* part, const place& at, double* to) {
  read(part, at, to, [](double& x, double value) { x = value; });
}

// Some planes of equal shape that go to one part of a host's matrix, one behind the other. value(element) is
// the number to store.
template <class T, std::size_t planes, class Value>
class storing {
 public:
  storing(std::array<const T*, planes> from, const place& at, aMatrix* host, double** part, Value value)
      : from_(from), at_(at), host_(host), part_(part), value_(value) {}

  // Before anything is written: looks for the first value that a null array must be made for, in the order of
  // rows, columns, planes.
  [[nodiscard]] code prepare() {
    if (*part_) return KORVO_ERR_OK;
    const std::int64_t all = at_.rows * at_.cols * std::int64_t{planes};
    while (first_ < all &&
           value_(from_[index(first_ % std::int64_t{planes})][first_ / std::int64_t{planes}]) == 0.0)
      ++first_;
    if (first_ == all) return KORVO_ERR_OK;
    needed_ = std::int64_t{host_->rows_allocated} * (host_->cols - 1) + host_->rows;
    return host_->bytes_per_part / sizeof(double) < static_cast<std::uint64_t>(needed_) ? KORVO_ERR_ILLEGAL_SIZE
                                                                                        : KORVO_ERR_OK;
  }

  // Without memory the array stays null, and that is not said.
  void store() const {
    if (needed_ > 0)
      *part_ = static_cast<double*>(std::calloc(host_->bytes_per_part / sizeof(double), sizeof(double)));
    if (!*part_) return;
    for (std::int64_t p = 0; p < std::int64_t{planes}; ++p) {
      place at = at_;
      at.first_col = p * at_.cols;
      // a new array holds zeros up to the first value, which a -0.0 before it does not change
      const std::int64_t first = (first_ + std::int64_t{planes} - 1 - p) / std::int64_t{planes};
      const T* const from = from_[index(p)];
      each_element(at, first / at.cols, [&, part = *part_](std::int64_t i, std::int64_t j) {
        if (i * at.cols + j >= first) part[at(i, j)] = value_(from[i * at.cols + j]);
      });
    }
  }

 private:
  static std::size_t index(std::int64_t p) { return static_cast<std::size_t>(p); }

  std::array<const T*, planes> from_;
  place at_;
  aMatrix* host_;
  double** part_;
  Value value_;
  std::int64_t first_ = 0;   // of the elements in their order, the first that is stored
  std::int64_t needed_ = 0;  // doubles in an array to be made
};

constexpr auto exactly = [](auto x) { return static_cast<double>(x); };

code to_host(const _univ_mat* in, aMatrix* host) {
  const place at = {host->rows_allocated, in->nrow, in->ncol};
  if (in->type == KORVO_DCOMPLEX) {
    const std::array<const korvo_dcomplex*, 1> from = {as<_cpx_mat>(*in).data};
    storing reals(from, at, host, &host->real, [](korvo_dcomplex z) { return z.re; });
    storing imags(from, at, host, &host->imag, [](korvo_dcomplex z) { return z.im; });
    TRY(reals.prepare());
    TRY(imags.prepare());
    reals.store();
    imags.store();
    return KORVO_ERR_OK;
  }
  return dispatch(in->type, real_records{}, [&]<class M> {
    storing reals(std::array<const element<M>*, 1>{as<M>(*in).data}, at, host, &host->real, exactly);
    TRY(reals.prepare());
    reals.store();
    return KORVO_ERR_OK;
  });
}

code planes_valid(const _mat_set* set) {
  for (std::int32_t p = 0; p < set->nmat; ++p) TRY(matuniv_validate(set->mats + p));
  return KORVO_ERR_OK;
}

template <class T>
double** column_pointers(const aMatrix* matrix, T aMatrix::*part) {
  if (!matrix || matrix->cols < 1 || matrix->rows_allocated < 0) return nullptr;
  const auto cols = static_cast<std::size_t>(matrix->cols);
  auto* const pointers = static_cast<double**>(std::malloc(cols * sizeof(double*)));
  if (!pointers) return nullptr;
  double* const first = matrix->*part;
  for (std::size_t j = 0; j < cols; ++j)
    pointers[j] = first ? first + static_cast<std::size_t>(matrix->rows_allocated) * j : nullptr;
  return pointers;
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code matuniv_assign_from_sheetrix(const aMatrix* in, _univ_mat* out) {
  if (!in || !out) return KORVO_ERR_NULL_POINTER;
  TRY(matuniv_validate(out));
  TRY(same_size(out->nrow, out->ncol, in));
  const place at = {in->rows_allocated, out->nrow, out->ncol};
  if (out->type == KORVO_DOUBLE) {
    if (in->imag) return KORVO_ERR_ILLEGAL_TYPE;  // kept: an imaginary part of zeros too
    read_reals(in->real, at, as<_dbl_mat>(*out).data);
    return KORVO_ERR_OK;
  }
  if (out->type != KORVO_DCOMPLEX) return KORVO_ERR_ILLEGAL_TYPE;
  korvo_dcomplex* const to = as<_cpx_mat>(*out).data;
  read(in->real, at, to, [](korvo_dcomplex& z, double value) { z.re = value; });
  read(in->imag, at, to, [](korvo_dcomplex& z, double value) { z.im = value; });
  return KORVO_ERR_OK;
}

code matuniv_assign_to_sheetrix(const _univ_mat* in, aMatrix* out) {
  if (!in || !out) return KORVO_ERR_NULL_POINTER;
  TRY(matuniv_validate(in));
  TRY(same_size(in->nrow, in->ncol, out));
  return to_host(in, out);
}

code matset_assign_from_sheetrix_color(const aMatrix* in, _mat_set* out) {
  if (!in || !out) return KORVO_ERR_NULL_POINTER;
  TRY(matset_verify_allsame(out));
  if (out->nmat != 3) return KORVO_ERR_ILLEGAL_SIZE;
  const _univ_mat& plane = out->mats[0];
  TRY(same_size(plane.nrow, std::int64_t{3} * plane.ncol, in));
  if (plane.type != KORVO_DOUBLE) return KORVO_ERR_ILLEGAL_TYPE;
  TRY(planes_valid(out));
  for (std::int32_t p = 0; p < 3; ++p)
    read_reals(in->real, {in->rows_allocated, plane.nrow, plane.ncol, std::int64_t{p} * plane.ncol},
               as<_dbl_mat>(out->mats[p]).data);
  return KORVO_ERR_OK;
}

code matset_assign_to_sheetrix_color(const _mat_set* in, aMatrix* out) {
  if (!in || !out) return KORVO_ERR_NULL_POINTER;
  TRY(matset_verify_allsame(in));
  if (in->nmat != 3 && in->nmat != 1) return KORVO_ERR_ILLEGAL_SIZE;
  const _univ_mat& plane = in->mats[0];
  TRY(same_size(plane.nrow, std::int64_t{3} * plane.ncol, out));  // kept: for a grey image too
  return dispatch(plane.type, real_records{}, [&]<class M> {
    TRY(planes_valid(in));
    const std::int32_t next = in->nmat == 3 ? 1 : 0;  // a grey image is its own next plane
    const std::array<const element<M>*, 3> from = {as<M>(plane).data, as<M>(in->mats[next]).data,
                                                   as<M>(in->mats[2 * next]).data};
    storing reals(from, {out->rows_allocated, plane.nrow, plane.ncol}, out, &out->real, exactly);
    TRY(reals.prepare());
    reals.store();
    return KORVO_ERR_OK;
  });
}

double** allocRealColArr(const aMatrix* matrix) { return column_pointers(matrix, &aMatrix::real); }
double** allocImagColArr(const aMatrix* matrix) { return column_pointers(matrix, &aMatrix::imag); }

}  // extern "C"

// Matrix sets: malloc, free, resize, validate, verify.
#include "korvos/core/mat_set.h"

#include <algorithm>
#include <cstdint>

#include "core/arithmetic.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"

namespace korvo {
namespace {

bool all_positive(const std::int32_t* dims, std::int32_t ndim) {
  return std::all_of(dims, dims + ndim, [](std::int32_t dim) { return dim >= 1; });
}

// The product of positive dimensions; anything above the largest size stands for "too many".
std::int64_t count_matrices(const std::int32_t* dims, std::int32_t ndim) {
  std::int64_t count = 1;
  for (std::int32_t d = 0; d < ndim && count <= largest_size; ++d) count *= dims[d];
  return count;
}

// Allocates matrix i by make(i, matrix); after a failure the earlier ones are freed in ascending order.
template <class F>
code make_matrices(_mat_set* set, F make) {
  for (std::int32_t i = 0; i < set->nmat; ++i) {
    const code result = make(i, set->mats + i);
    if (result == KORVO_ERR_OK) continue;
    for (std::int32_t made = 0; made < i; ++made) (void)matuniv_free(set->mats + made);
    return result;
  }
  return KORVO_ERR_OK;
}

code same_kind(const _univ_mat& a, const _univ_mat& b) {
  if (a.type != b.type) return KORVO_ERR_ILLEGAL_TYPE;
  return same_shape(&a, &b) ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_SIZE;
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code matset_malloc(_mat_set* set, int32_t ndim, const int32_t* dims) {
  if (!set || !dims) return KORVO_ERR_NULL_POINTER;
  if (ndim < 1) return KORVO_ERR_ILLEGAL_SIZE;
  scratch<int32_t> own_dims;
  TRY(own_dims.make(ndim));
  if (!all_positive(dims, ndim)) return KORVO_ERR_ILLEGAL_SIZE;
  const std::int64_t nmat = count_matrices(dims, ndim);
  if (nmat > largest_size) return KORVO_ERR_ILLEGAL_SIZE;
  std::copy_n(dims, ndim, own_dims.data());
  scratch<_univ_mat> mats;
  TRY(mats.make(nmat));
  *set = {ndim, own_dims.release(), static_cast<int32_t>(nmat), mats.release()};
  return KORVO_ERR_OK;
}

code matset_malloc_matrices(_mat_set* set, int32_t nrow, int32_t ncol, _korvo_type type) {
  TRY(matset_validate(set));
  return make_matrices(set, [&](int32_t, _univ_mat* mat) { return matuniv_malloc(mat, nrow, ncol, type); });
}

code matset_malloc_matrices_arbitrary_size(_mat_set* set, const _s32_mat* nrows, const _s32_mat* ncols,
                                           _korvo_type type) {
  TRY(matset_validate(set));
  TRY(valid(nrows, ncols));
  if (nrows->nelem != ncols->nelem || nrows->nelem != set->nmat) return KORVO_ERR_ILLEGAL_SIZE;
  return make_matrices(set, [&](int32_t i, _univ_mat* mat) {
    return matuniv_malloc(mat, nrows->data[i], ncols->data[i], type);
  });
}

code matset_free(_mat_set* set) {
  if (!set) return KORVO_ERR_NULL_POINTER;
  (void)korvo_free(set->mats);
  set->mats = nullptr;
  set->nmat = 0;
  (void)korvo_free(set->dims);
  set->dims = nullptr;
  set->ndim = 0;
  return KORVO_ERR_OK;
}

code matset_free_matrices(_mat_set* set) {
  TRY(matset_validate(set));
  for (int32_t i = 0; i < set->nmat; ++i) TRY(matuniv_free(set->mats + i));
  return KORVO_ERR_OK;
}

code matset_resize(int32_t ndim, const int32_t* dims, _mat_set* set) {
  TRY(matset_validate(set));
  if (!dims) return KORVO_ERR_NULL_POINTER;
  if (ndim < 1) return KORVO_ERR_ILLEGAL_VALUE;
  if (!all_positive(dims, ndim) || count_matrices(dims, ndim) != set->nmat) return KORVO_ERR_ILLEGAL_SIZE;
  scratch<int32_t> own_dims;
  TRY(own_dims.make(ndim));
  std::copy_n(dims, ndim, own_dims.data());  // before the old block goes: dims may be that block
  (void)korvo_free(set->dims);
  set->dims = own_dims.release();
  set->ndim = ndim;
  return KORVO_ERR_OK;
}

code matset_validate(const _mat_set* set) {
  if (!set || !set->dims || !set->mats) return KORVO_ERR_NULL_POINTER;
  if (set->ndim < 1 || set->nmat < 1) return KORVO_ERR_ILLEGAL_SIZE;
  if (!all_positive(set->dims, set->ndim)) return KORVO_ERR_ILLEGAL_SIZE;
  return count_matrices(set->dims, set->ndim) == set->nmat ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_VALUE;
}

code matset_verify_allsame(const _mat_set* set) {
  TRY(matset_validate(set));
  for (int32_t i = 1; i < set->nmat; ++i) TRY(same_kind(set->mats[0], set->mats[i]));
  return KORVO_ERR_OK;
}

code matset_verify_aresame(const _mat_set* a, const _mat_set* b) {
  TRY(matset_validate(a));
  TRY(matset_validate(b));
  if (a->ndim != b->ndim || !std::equal(a->dims, a->dims + a->ndim, b->dims)) return KORVO_ERR_ILLEGAL_SIZE;
  for (int32_t i = 0; i < a->nmat; ++i) TRY(same_kind(a->mats[i], b->mats[i]));
  return KORVO_ERR_OK;
}

}  // extern "C"

// A set and the one matrix of all its elements: matset_tile, matset_untile.
#include "korvos/matrix/mat_tile.h"

#include <cstdint>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/levels.hpp"
#include "core/loop.hpp"
#include "core/valid.hpp"

#define KORVO_KERNELS "matrix/mat_tile_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

// The grid that the matrices of a set form: each row of it fills a row of the tiled matrix.
struct grid {
  std::int64_t rows = 0;
  std::int64_t cols = 0;
};

code tiling(const _mat_set* set, const _univ_mat* tiled, grid* of_set) {
  if (!set || !tiled) return KORVO_ERR_NULL_POINTER;
  TRY(matset_verify_allsame(set));
  for (std::int32_t k = 0; k < set->nmat; ++k) TRY(matuniv_validate(set->mats + k));
  TRY(matuniv_validate(tiled));
  const _univ_mat& first = set->mats[0];
  if (tiled->type != first.type) return KORVO_ERR_ILLEGAL_TYPE;
  if (set->ndim > 2) return KORVO_ERR_ILLEGAL_SIZE;
  *of_set = {set->ndim == 1 ? 1 : set->dims[0], set->dims[set->ndim - 1]};
  if (tiled->nrow != of_set->rows * first.nrow || tiled->ncol != of_set->cols * first.ncol)
    return KORVO_ERR_ILLEGAL_SIZE;
  for (std::int32_t k = 0; k < set->nmat; ++k)
    if (shares_data(set->mats + k, tiled)) return KORVO_ERR_ILLEGAL_ADDRESS;
  return KORVO_ERR_OK;
}

// A row of the members in one row of the grid, and the row of the tiled matrix that holds them.
template <class T>
struct woven {
  const _univ_mat* members;
  std::int64_t count;
  std::int64_t row;
  T* tiled;

  [[nodiscard]] T* member(std::int64_t j) const {
    return static_cast<T*>(members[j].data) + row * members->ncol;
  }
};

template <class T>
void weave(const woven<T>& w) {
  const std::int64_t n = w.members->ncol;
  if constexpr (sizeof(T) <= sizeof(double))  // a complex element is a vector already
    if (w.count == 3) return KORVO_AT_LEVEL(weave_three<T>)(w.member(0), w.member(1), w.member(2), w.tiled, n);
  for (std::int64_t j = 0; j < w.count; ++j) {
    const T* const from = w.member(j);
    for (std::int64_t c = 0; c < n; ++c) w.tiled[c * w.count + j] = from[c];
  }
}

template <class T>
void unweave(const woven<T>& w) {
  const std::int64_t n = w.members->ncol;
  if constexpr (sizeof(T) <= sizeof(double))
    if (w.count == 3)
      return KORVO_AT_LEVEL(unweave_three<T>)(w.tiled, w.member(0), w.member(1), w.member(2), n);
  for (std::int64_t j = 0; j < w.count; ++j) {
    T* const to = w.member(j);
    for (std::int64_t c = 0; c < n; ++c) to[c] = w.tiled[c * w.count + j];
  }
}

// Moves every row, in the direction that move has.
template <class F>
code each_row(const _mat_set* set, const _univ_mat* tiled, void* intrp_ptr, F move) {
  grid of_set;
  TRY(tiling(set, tiled, &of_set));
  return dispatch(tiled->type, all_records{}, [&]<class M> {
    using T = element<M>;
    checkpoint cost(intrp_ptr);
    for (std::int64_t r = 0; r < tiled->nrow; ++r) {
      const _univ_mat* const members = set->mats + r % of_set.rows * of_set.cols;
      T* const row = static_cast<T*>(tiled->data) + r * tiled->ncol;
      move(woven<T>{members, of_set.cols, r / of_set.rows, row});
      TRY(cost.add(8.0 * tiled->ncol));
    }
    return KORVO_ERR_OK;
  });
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code matset_tile(const _mat_set* set, void* intrp_ptr, _univ_mat* out) {
  return each_row(set, out, intrp_ptr, [](const auto& row) { weave(row); });
}

code matset_untile(const _univ_mat* in, void* intrp_ptr, _mat_set* set) {
  return each_row(set, in, intrp_ptr, [](const auto& row) { unweave(row); });
}

}  // extern "C"

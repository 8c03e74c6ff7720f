// Chains of modulus maxima: linking them to a row, growing their set.
#include "korvos/wavelet/wav_skel_local.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>

#include "core/arithmetic.hpp"
#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/valid.hpp"
#include "korvos/matrix/mat_assn.h"
#include "wavelet/wav_skel_local.hpp"

namespace korvo {
namespace {

// The marks of a row, as the chains before have left them.
class row_of_marks {
 public:
  struct nearest {
    std::int64_t col;
    std::int64_t distance;
  };

  row_of_marks(std::int32_t* marks, std::int64_t cols) : marks_(marks), cols_(cols) {}

  bool any_seen() const { return any_seen_; }
  void take(std::int64_t col) { marks_[col] = -1; }

  // kept: distances are measured from the best mark so far and not from pos
  nearest seek(std::int64_t pos) {
    nearest best = {pos, 2 * cols_};
    while (first_ < cols_ && marks_[first_] <= 0) ++first_;  // marks are only ever taken
    for (std::int64_t c = first_; c < cols_; ++c) {
      const std::int64_t distance = around(c - best.col);
      if (distance >= best.distance)
        c = std::max(c, best.col + cols_ - best.distance);  // columns up to there are no nearer
      else if (marks_[c] > 0)
        best = {c, distance};
    }
    any_seen_ = any_seen_ || first_ < cols_;
    return best;
  }

 private:
  std::int64_t around(std::int64_t e) const {
    return std::min({std::abs(e), std::abs(cols_ + e), std::abs(e - cols_)});
  }

  std::int32_t* marks_;
  std::int64_t cols_;
  std::int64_t first_ = 0;  // before it no mark is left
  bool any_seen_ = false;
};

}  // namespace

code validate_integers(std::initializer_list<const _univ_mat*> mats) {
  for (const _univ_mat* mat : mats)
    if (!mat) return KORVO_ERR_NULL_POINTER;
  for (const _univ_mat* mat : mats)
    if (mat->type != KORVO_SINT32) return KORVO_ERR_ILLEGAL_TYPE;
  for (const _univ_mat* mat : mats) TRY(matuniv_validate(mat));
  return KORVO_ERR_OK;
}

code seek_chains(std::int32_t* marks, std::int32_t* map, std::int64_t cols, const _s32_mat& tips,
                 const _s32_mat& origins, double maximum_distance, void* intrp_ptr, std::int32_t* linked) {
  row_of_marks row(marks, cols);
  checkpoint cost(intrp_ptr);
  for (std::int64_t k = 0; k < tips.ncol; ++k) {
    const std::int32_t pos = tips.data[k];
    std::int32_t* const next = tips.data + tips.ncol + k;
    *next = dead;
    if (pos == dead) {
      origins.data[origins.ncol + k] = dead;
      continue;
    }
    const row_of_marks::nearest best = row.seek(pos);
    if (!row.any_seen() || static_cast<double>(best.distance) > maximum_distance) {
      origins.data[origins.ncol + k] = dead;
    } else {
      row.take(best.col);
      *next = static_cast<std::int32_t>(best.col);
      if (linked) *linked = sum(*linked, 1);
    }
    map[pos] = *next;
    TRY(cost.set(3.0 * static_cast<double>(best.col)));
  }
  return KORVO_ERR_OK;
}

namespace {

bool lie_within(const _s32_mat& tips, std::int32_t cols) {
  for (std::int64_t k = 0; k < tips.ncol; ++k)
    if (tips.data[k] < dead || tips.data[k] >= cols) return false;
  return true;
}

code seek_chain(const _univ_mat* mask, const _univ_mat* tips, const _univ_mat* origins,
                const _univ_mat* chain_map, std::int32_t row, double maximum_distance, void* intrp_ptr,
                std::int32_t* linked) {
  if (!linked) return KORVO_ERR_NULL_POINTER;
  TRY(validate_integers({mask, tips, origins, chain_map}));
  if (!same_shape(mask, chain_map) || tips->nrow != 2 || !same_shape(tips, origins))
    return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data_with_any(mask, {tips, origins, chain_map}) ||
      shares_data_with_any(tips, {origins, chain_map}) || shares_data(origins, chain_map))
    return KORVO_ERR_ILLEGAL_ADDRESS;
  const auto chains = as<_s32_mat>(*tips);
  if (row < 0 || row >= mask->nrow || !lie_within(chains, mask->ncol)) return KORVO_ERR_OUT_OF_BOUNDS;
  if (std::isnan(maximum_distance)) return KORVO_ERR_ILLEGAL_VALUE;
  const std::int64_t first = std::int64_t{row} * mask->ncol;
  return seek_chains(as<_s32_mat>(*mask).data + first, as<_s32_mat>(*chain_map).data + first, mask->ncol,
                     chains, as<_s32_mat>(*origins), maximum_distance, intrp_ptr, linked);
}

// Moves what is kept to the front, and returns how many chains that are.
std::int32_t drop_dead(const _s32_mat& tips, const _s32_mat& origins) {
  const std::int32_t* const latest = tips.data + (tips.nelem - tips.ncol);
  std::int32_t kept = 0;
  for (std::int64_t k = 0; k < tips.ncol; ++k) {
    if (latest[k] == dead) continue;
    tips.data[kept] = latest[k];
    origins.data[kept++] = origins.data[k];
  }
  return kept;
}

code grow_chain_set(const _univ_mat* new_tips, const _univ_mat* new_origins, void* intrp_ptr, _univ_mat* tips,
                    _univ_mat* origins) {
  TRY(validate_integers({new_tips, new_origins, tips, origins}));
  if (tips->ncol != origins->ncol || !same_shape(new_tips, new_origins) || new_tips->nrow != 1 ||
      tips->nrow > 2 || origins->nrow > 2)
    return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data_with_any(tips, {new_tips, new_origins, origins}) ||
      shares_data_with_any(origins, {new_tips, new_origins}))
    return KORVO_ERR_ILLEGAL_ADDRESS;
  if (std::int64_t{tips->ncol} + new_tips->ncol > largest_size / std::int64_t{sizeof(std::int32_t)})
    return KORVO_ERR_MALLOC;
  const std::int32_t kept = drop_dead(as<_s32_mat>(*tips), as<_s32_mat>(*origins));
  TRY(matuniv_realloc(tips, 1, kept + new_tips->ncol));
  TRY(matuniv_realloc(origins, 1, kept + new_tips->ncol));
  TRY(matuniv_assign_submat(new_tips, 0, kept, intrp_ptr, tips));
  return matuniv_assign_submat(new_origins, 0, kept, intrp_ptr, origins);
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code localfn_wav_seek_chain(_univ_mat* mask, _univ_mat* tips, _univ_mat* origins, _univ_mat* chain_map,
                            int32_t row, double maximum_distance, void* intrp_ptr, int32_t* linked) {
  return seek_chain(mask, tips, origins, chain_map, row, maximum_distance, intrp_ptr, linked);
}

code localfn_wav_grow_chain_set(const _univ_mat* new_tips, const _univ_mat* new_origins, void* intrp_ptr,
                                _univ_mat* tips, _univ_mat* origins) {
  return grow_chain_set(new_tips, new_origins, intrp_ptr, tips, origins);
}

}  // extern "C"

// Skeleton of a wavelet transform: modulus maxima linked across scales.
#include "korvos/wavelet/wav_skel.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"
#include "korvos/wavelet/wav_skel_local.h"
#include "wavelet/wav_skel_local.hpp"

namespace korvo {
namespace {

_univ_mat universal(const _s32_mat& mat) {
  _univ_mat view = {};
  give_back(mat, &view);
  view.type = KORVO_SINT32;
  return view;
}

// The chains that are followed, with room for the row that is sought next.
class chain_set {
 public:
  chain_set() = default;
  chain_set(const chain_set&) = delete;
  chain_set& operator=(const chain_set&) = delete;
  ~chain_set() {
    (void)matuniv_free(&tips_);
    (void)matuniv_free(&origins_);
  }

  [[nodiscard]] code seek(std::int32_t* marks, std::int32_t* map, std::int32_t cols, double maximum_distance,
                          void* intrp_ptr) {
    if (!tips_.data) return KORVO_ERR_OK;
    return seek_chains(marks, map, cols, as<_s32_mat>(tips_), as<_s32_mat>(origins_), maximum_distance,
                       intrp_ptr, nullptr);
  }

  // The set goes on from where the search led it.
  void advance() {
    if (!tips_.data) return;
    const auto tips = as<_s32_mat>(tips_);
    std::copy_n(tips.data + tips.ncol, tips.ncol, tips.data);
  }

  // The same with new chains, each of which begins at its tip.
  [[nodiscard]] code grow(const _s32_mat& new_tips, void* intrp_ptr) {
    const _univ_mat added = universal(new_tips);
    if (tips_.data) {
      TRY(localfn_wav_grow_chain_set(&added, &added, intrp_ptr, &tips_, &origins_));
      TRY(matuniv_realloc(&tips_, 2, tips_.ncol));
      return matuniv_realloc(&origins_, 2, origins_.ncol);
    }
    for (_univ_mat* mat : {&tips_, &origins_}) {
      TRY(matuniv_malloc(mat, 2, added.ncol, KORVO_SINT32));
      std::copy_n(new_tips.data, new_tips.ncol, as<_s32_mat>(*mat).data);
    }
    return KORVO_ERR_OK;
  }

 private:
  _univ_mat tips_ = {};
  _univ_mat origins_ = {};
};

bool is_mark(std::int32_t element) { return element > 0; }

class skeleton {
 public:
  [[nodiscard]] code make(const _s32_mat* mask) {
    TRY(marks_.make(mask->nrow, mask->ncol));
    TRY(map_.make(mask->nrow, mask->ncol));
    TRY(first_.make(mask->nrow, 1));
    std::copy_n(mask->data, mask->nelem, marks_.data);
    std::fill_n(map_.data, map_.nelem, dead);
    points_ = static_cast<std::int32_t>(std::count_if(mask->data, mask->data + mask->nelem, is_mark));
    return KORVO_ERR_OK;
  }

  [[nodiscard]] code follow(std::int32_t voices, void* intrp_ptr) {
    checkpoint cost(intrp_ptr);
    for (std::int32_t r = marks_.nrow - 1; r >= 0; --r) {
      const int octaves = (marks_.nrow - r) / voices;
      const double maximum_distance = std::floor(std::ldexp(0.5 * marks_.ncol, -octaves));
      TRY(chains_.seek(row(marks_, r), row(map_, r), marks_.ncol, maximum_distance, intrp_ptr));
      TRY(begin_chains(r, intrp_ptr));
      TRY(cost.set(3.0 * marks_.ncol));
    }
    return KORVO_ERR_OK;
  }

  [[nodiscard]] code write(_univ_mat* points, _univ_mat* lengths) const {
    TRY(matuniv_realloc(points, std::max(points_, 1), 2));
    TRY(matuniv_realloc(lengths, std::max(beginnings_, 1), 1));
    std::int32_t* length = as<_s32_mat>(*lengths).data;
    std::int32_t* point = as<_s32_mat>(*points).data;
    if (points_ == 0) {
      std::fill_n(point, 2, -1);
      *length = 0;
    }
    for (std::int32_t r = marks_.nrow - 1; r >= 0; --r)
      for (std::int32_t c = first_.data[r]; c < marks_.ncol; ++c)
        if (is_mark(row(marks_, r)[c])) point += 2 * (*length++ = write_chain(r, c, point));
    return KORVO_ERR_OK;
  }

 private:
  // Marks that are still there when the row has been sought begin chains of their own.
  [[nodiscard]] code begin_chains(std::int32_t r, void* intrp_ptr) {
    const std::int32_t* const marks = row(marks_, r);
    first_.data[r] = static_cast<std::int32_t>(std::find_if(marks, marks + marks_.ncol, is_mark) - marks);
    const auto added =
        static_cast<std::int32_t>(std::count_if(marks + first_.data[r], marks + marks_.ncol, is_mark));
    if (added == 0) {
      chains_.advance();
      return KORVO_ERR_OK;
    }
    temporary<_s32_mat> tips;
    TRY(tips.make(1, added));
    std::int32_t* tip = tips.data;
    for (std::int32_t c = first_.data[r]; c < marks_.ncol; ++c)
      if (is_mark(marks[c])) *tip++ = c;
    beginnings_ += added;
    return chains_.grow(tips, intrp_ptr);
  }

  // Writes the points of the chain that begins at (r, c), and returns how many they are.
  std::int32_t write_chain(std::int32_t r, std::int32_t c, std::int32_t* point) const {
    std::int32_t length = 0;
    for (; c != dead; c = --r < 0 ? dead : row(map_, r)[c]) {
      *point++ = r;
      *point++ = c;
      ++length;
    }
    return length;
  }

  static std::int32_t* row(const _s32_mat& mat, std::int32_t r) {
    return mat.data + std::int64_t{r} * mat.ncol;
  }

  temporary<_s32_mat> marks_;  // those still above 0 begin a chain
  temporary<_s32_mat> map_;    // where a chain that comes to a column goes on in this row
  temporary<_s32_mat> first_;  // the first column of each row where a chain begins; past the end if none does
  chain_set chains_;
  std::int32_t points_ = 0;
  std::int32_t beginnings_ = 0;
};

code find_skeleton(const _s32_mat* mask, std::int32_t voices, void* intrp_ptr, _univ_mat* points,
                   _univ_mat* lengths) {
  skeleton chains;
  TRY(chains.make(mask));
  TRY(chains.follow(voices, intrp_ptr));
  return chains.write(points, lengths);
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" code wavuniv_transform_modulus_maxima_skeleton(const _univ_mat* mask, int32_t voices,
                                                          void* intrp_ptr, _univ_mat* points,
                                                          _univ_mat* lengths) {
  TRY(validate_integers({mask, points, lengths}));
  if (shares_data_with_any(mask, {points, lengths}) || shares_data(points, lengths))
    return KORVO_ERR_ILLEGAL_ADDRESS;
  if (voices < 1) return KORVO_ERR_ILLEGAL_VALUE;
  const auto marks = as<_s32_mat>(*mask);
  return find_skeleton(&marks, voices, intrp_ptr, points, lengths);
}

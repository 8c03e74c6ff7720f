// What the Gaussian and the Markov-field half of classification check alike.
#pragma once

#include <cstdint>
#include <initializer_list>

#include "core/dispatch.hpp"
#include "core/valid.hpp"
#include "korvos/core/mat_set.h"

namespace korvo {

// Each set in turn: its matrices are alike.
inline code all_alike(sets list) {
  for (const _mat_set* set : list) TRY(matset_verify_allsame(set));
  return KORVO_ERR_OK;
}

inline bool one_dimensional(sets list) {
  for (const _mat_set* set : list)
    if (set->ndim != 1) return false;
  return true;
}

inline bool of_type(_korvo_type type, sets list) {
  for (const _mat_set* set : list)
    if (set->mats[0].type != type) return false;
  return true;
}

// Whether a matrix has the buffer of a member of a set, member `but` aside.
template <class M>
bool shares_data(const M& mat, const _mat_set* set, std::int32_t but = -1) {
  for (std::int32_t i = 0; i < set->nmat; ++i)
    if (i != but && shares_data(&mat, set->mats + i)) return true;
  return false;
}
inline bool shares_data(const _mat_set* a, const _mat_set* b) {
  for (std::int32_t i = 0; i < a->nmat; ++i)
    if (shares_data(a->mats[i], b)) return true;
  return false;
}

// The elements of member i, of whose type the caller is sure.
template <class T>
T* elements_of(const _mat_set* set, std::int32_t i) {
  return static_cast<T*>(set->mats[i].data);
}

}  // namespace korvo

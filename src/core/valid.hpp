// The checks that routines begin with.
#pragma once

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <type_traits>

#include "core/code.hpp"
#include "korvos/core/mat_set.h"

namespace korvo {

// Whether a typed record is a matrix. The product is formed in 64 bits: a shape whose 32-bit product wraps
// would let a walk by rows leave the buffer.
template <class M>
[[nodiscard]] code valid(const M* mat) {
  if (!mat) return KORVO_ERR_NULL_POINTER;
  if (mat->nrow < 1 || mat->ncol < 1) return KORVO_ERR_ILLEGAL_SIZE;
  if (!mat->data) return KORVO_ERR_NULL_POINTER;
  return mat->nelem == std::int64_t{mat->nrow} * mat->ncol ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_SIZE;
}

// Several of them, in order: the first fault wins.
template <class M, class... Rest>
[[nodiscard]] code valid(const M* mat, const Rest*... rest) {
  TRY(valid(mat));
  return valid(rest...);
}

using sets = std::initializer_list<const _mat_set*>;

// The elements of every matrix, which sets themselves do not vouch for.
inline code members_valid(sets list) {
  for (const _mat_set* set : list)
    for (std::int32_t i = 0; i < set->nmat; ++i) TRY(matuniv_validate(set->mats + i));
  return KORVO_ERR_OK;
}

template <class A, class B>
bool same_shape(const A* a, const B* b) {
  return a->nrow == b->nrow && a->ncol == b->ncol;
}
template <class A, class B, class... Rest>
bool same_shape(const A* a, const B* b, const Rest*... rest) {
  return same_shape(a, b) && same_shape(b, rest...);
}

// Sharing is one thing only: the same first element.
template <class A, class B>
bool shares_data(const A* a, const B* b) {
  return static_cast<const void*>(a->data) == static_cast<const void*>(b->data);
}

// Whether a matrix that may be missing shares with one of several that may be.
template <class M>
bool shares_data_with_any(const M* mat, std::initializer_list<std::type_identity_t<const M*>> others) {
  return mat && std::any_of(others.begin(), others.end(),
                            [=](const M* other) { return other && shares_data(mat, other); });
}

}  // namespace korvo

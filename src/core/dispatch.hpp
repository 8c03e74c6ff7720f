// From a run-time element type to a record: the one switch of the library.
#pragma once

#include "core/code.hpp"
#include "core/element.hpp"

namespace korvo {

// The typed record of a universal matrix, by value. Reading one record through a pointer to the other would
// break strict aliasing; four copied fields cost nothing.
template <class M>
M as(const _univ_mat& mat) {
  return {mat.nrow, mat.ncol, mat.nelem, static_cast<element<M>*>(mat.data)};
}

// The way back, for routines that change the record.
template <class M>
void give_back(const M& typed, _univ_mat* mat) {
  mat->nrow = typed.nrow;
  mat->ncol = typed.ncol;
  mat->nelem = typed.nelem;
  mat->data = typed.data;
}

// The number in a scalar, which must carry the tag of M.
template <class M>
element<M> number(const _univ_scalar& scalar) {
  return scalar.value.*tag<M>::member;
}

// Calls form.operator()<M>() with the record of the list whose tag is type; a type that the list lacks is
// KORVO_ERR_ILLEGAL_TYPE.
template <class... M, class F>
code dispatch(_korvo_type type, records<M...> /*list*/, F form) {
  code result = KORVO_ERR_ILLEGAL_TYPE;
  (void)((type == tag<M>::type && (result = form.template operator()<M>(), true)) || ...);
  return result;
}

// The same for an operand and a result that must be of one type; form is called with the two typed records.
template <class... M, class F>
code dispatch_same(const _univ_mat* in, _univ_mat* out, records<M...> list, F form) {
  if (!in || !out) return KORVO_ERR_NULL_POINTER;
  if (in->type != out->type) return KORVO_ERR_ILLEGAL_TYPE;
  return dispatch(out->type, list, [&]<class N> {
    const N from = as<N>(*in);
    N to = as<N>(*out);
    const code result = form(&from, &to);
    give_back(to, out);
    return result;
  });
}

}  // namespace korvo

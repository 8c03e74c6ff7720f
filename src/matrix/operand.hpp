// An operand of a universal routine in the type of the result: borrowed if it has it, else a cast copy.
#pragma once

#include "core/dispatch.hpp"
#include "core/temporary.hpp"
#include "korvos/matrix/mat_cast.h"

namespace korvo {

class operand {
 public:
  operand() = default;
  operand(const operand&) = delete;
  operand& operator=(const operand&) = delete;
  ~operand() { (void)korvo_free(owned_); }

  // A floating operand is never narrowed to an integer type here; integers are, when every value fits.
  [[nodiscard]] code bring(const _univ_mat& in, _korvo_type type, void* intrp_ptr) {
    if (in.type == type) return matuniv_wrap_data(&mat_, in.data, in.nrow, in.ncol, type);
    if (is_floating(in.type) && !is_floating(type)) return KORVO_ERR_ILLEGAL_TYPE;
    TRY(dispatch(type, all_records{}, [&]<class M> { return own<M>(in); }));
    return matuniv_cast(&in, 0, intrp_ptr, &mat_);
  }

  // Once brought.
  template <class M>
  [[nodiscard]] M typed() const {
    return as<M>(mat_);
  }

 private:
  template <class M>
  code own(const _univ_mat& in) {
    temporary<M> copy;
    TRY(copy.make(in.nrow, in.ncol));
    owned_ = copy.data;
    give_back<M>(copy, &mat_);
    mat_.type = tag<M>::type;
    copy.data = nullptr;
    return KORVO_ERR_OK;
  }

  _univ_mat mat_{};
  void* owned_ = nullptr;
};

// A two-operand routine: the type of out decides, and form gets the three typed records.
template <class... M, class F>
code dispatch_operands(const _univ_mat* a, const _univ_mat* b, void* intrp_ptr, _univ_mat* out,
                       records<M...> list, F form) {
  if (!a || !b || !out) return KORVO_ERR_NULL_POINTER;
  operand y;
  operand x;  // destroyed in reverse: a's copy goes first
  TRY(x.bring(*a, out->type, intrp_ptr));
  TRY(y.bring(*b, out->type, intrp_ptr));
  return dispatch(out->type, list, [&]<class N> {
    const N left = x.typed<N>();
    const N right = y.typed<N>();
    N result = as<N>(*out);
    return form(&left, &right, &result);
  });
}

}  // namespace korvo

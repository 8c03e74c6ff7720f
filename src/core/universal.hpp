// A temporary for routines that take universal matrices.
#pragma once

#include "core/dispatch.hpp"
#include "core/temporary.hpp"

namespace korvo {

// Frees itself; its address is a pointer to the record.
template <class M>
class universal_temporary : public _univ_mat {
 public:
  universal_temporary() { static_cast<_univ_mat&>(*this) = _univ_mat{}; }

  [[nodiscard]] code make(std::int64_t rows, std::int64_t cols) {
    TRY(owner_.make(rows, cols));
    give_back<M>(owner_, this);
    type = tag<M>::type;
    return KORVO_ERR_OK;
  }
  [[nodiscard]] code make_like(const _univ_mat* other) { return make(other->nrow, other->ncol); }

  // The typed record of the same elements.
  [[nodiscard]] const M& typed() const { return owner_; }

 private:
  temporary<M> owner_;
};

}  // namespace korvo

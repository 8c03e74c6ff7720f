// A matrix between fences, to see whether a routine writes beside it.
#pragma once

#include <algorithm>

#include "tests/support/matrix.hpp"

namespace korvo {

// Lies one element off the alignment of vectors, between elements that must stay.
template <class M>
class fenced : public M {
 public:
  using T = element<M>;
  fenced(std::int32_t rows, std::int32_t cols) : M{}, room_(1, rows * cols + 1 + behind, post()) {
    static_cast<M&>(*this) = {rows, cols, rows * cols, room_.data + 1};
  }
  fenced& operator=(fenced&&) = delete;

  bool fences_stand() const {
    return room_.data[0] == post() && std::all_of(this->data + this->nelem, this->data + this->nelem + behind,
                                                  [](T x) { return x == post(); });
  }
  std::vector<T> elements() const { return {this->data, this->data + this->nelem}; }

  // What every element is before it is written.
  static T post() { return as_element<T>(77); }

 private:
  static constexpr std::int32_t behind = 70;
  matrix<M> room_;
};

}  // namespace korvo

// Matrices for tests: a record over a vector of its own, made from numbers or at random.
#pragma once

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <ostream>
#include <random>
#include <type_traits>
#include <vector>

#include "core/element.hpp"

inline bool operator==(korvo_dcomplex a, korvo_dcomplex b) { return a.re == b.re && a.im == b.im; }

namespace korvo {

// A number as an element: for cpx the real part, with an imaginary part to tell it from others.
template <class T>
T as_element(double x) {
  if constexpr (std::is_same_v<T, korvo_dcomplex>)
    return {x, 0.5 * x + 1.0};
  else
    return static_cast<T>(x);
}

// Owns its elements, so that a test needs no free; its address is a pointer to the record.
template <class M>
class matrix : public M {
 public:
  using T = element<M>;

  matrix(std::int32_t rows, std::int32_t cols, T value = T{})
      : M{}, elements_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols), value) {
    point(rows, cols);
  }
  matrix(std::int32_t rows, std::int32_t cols, std::initializer_list<double> numbers) : matrix(rows, cols) {
    std::size_t i = 0;
    for (const double x : numbers) elements_.at(i++) = as_element<T>(x);
  }
  matrix(const matrix& other) : M{}, elements_(other.elements_) { point(other.nrow, other.ncol); }
  matrix& operator=(const matrix&) = delete;

  // Whole numbers and quarters from low to high, the same for a seed everywhere.
  static matrix random(std::int32_t rows, std::int32_t cols, unsigned seed, double low = 0.0,
                       double high = 50.0) {
    matrix result(rows, cols);
    std::mt19937 engine(seed);
    const double steps = 4.0 * (high - low);
    for (T& x : result.elements_) {
      const double quarter = static_cast<double>(engine()) / 4294967296.0 * steps;
      x = as_element<T>(low + static_cast<double>(static_cast<std::int64_t>(quarter)) / 4.0);
    }
    return result;
  }

  const std::vector<T>& elements() const { return elements_; }
  T& operator()(std::int32_t row, std::int32_t col) const {
    return this->data[std::int64_t{row} * this->ncol + col];
  }

  // The same elements as a universal matrix.
  _univ_mat universal() const { return {this->nrow, this->ncol, this->nelem, this->data, tag<M>::type}; }

 private:
  void point(std::int32_t rows, std::int32_t cols) {
    static_cast<M&>(*this) = {rows, cols, rows * cols, elements_.data()};
  }

  std::vector<T> elements_;
};

// A matrix as an argument of a universal routine, for as long as the call.
class univ {
 public:
  template <class M>
  explicit univ(const matrix<M>& mat) : mat_(mat.universal()) {}
  operator _univ_mat*() { return &mat_; }  // NOLINT(google-explicit-constructor): it is an argument

 private:
  _univ_mat mat_;
};

// Whether the elements of two records are the same bits.
template <class M>
bool same_bits(const M& a, const M& b) {
  return a.nelem == b.nelem &&
         std::memcmp(a.data, b.data, sizeof *a.data * static_cast<std::size_t>(a.nelem)) == 0;
}

// Calls test.operator()<M>() for each record of a list.
template <class... M, class Test>
void each_record(records<M...> /*list*/, Test test) {
  (test.template operator()<M>(), ...);
}

using u8_matrix = matrix<_u8_mat>;
using s16_matrix = matrix<_s16_mat>;
using s32_matrix = matrix<_s32_mat>;
using flt_matrix = matrix<_flt_mat>;
using dbl_matrix = matrix<_dbl_mat>;
using cpx_matrix = matrix<_cpx_mat>;

}  // namespace korvo

inline std::ostream& operator<<(std::ostream& out, const korvo_dcomplex& x) {
  return out << '(' << x.re << ", " << x.im << ')';
}
inline std::ostream& operator<<(std::ostream& out, _korvo_errcode error) {
  const char* text = nullptr;
  (void)korvo_err_string(error, &text);
  return out << text;
}

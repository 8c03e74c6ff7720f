// The words that the demonstration is written in: codes become exceptions, and what is owned frees itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>

#include "korvos.h"

namespace demo {

// Why the demonstration cannot go on, in words for its user.
class failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Every code of the library passes through here: any but success becomes a failure with the library's message.
void check(_korvo_errcode code);

// Does `work`, and puts the name of the step in front of whatever goes wrong in it.
template <class Work>
auto named(const std::string& step, Work work) {
  try {
    return work();
  } catch (const failure& reason) {
    throw failure(step + ": " + reason.what());
  }
}

// A matrix that owns its elements; &m is what the library takes.
struct matrix : _univ_mat {
  matrix() : _univ_mat{} {}
  matrix(std::int32_t rows, std::int32_t cols, _korvo_type element = KORVO_DOUBLE);
  matrix(matrix&& other) noexcept : _univ_mat(other.release()) {}
  matrix& operator=(matrix&& other) noexcept;
  ~matrix() { (void)matuniv_free(this); }

  // Hands the elements over to another owner.
  _univ_mat release();
};

// Matrices of one shape that own their elements, in a set of these dimensions.
struct stack : _mat_set {
  explicit stack(std::span<const std::int32_t> dimensions);  // matrices that hold nothing yet
  stack(std::initializer_list<std::int32_t> dimensions, std::int32_t rows, std::int32_t cols,
        _korvo_type element);
  stack(stack&& other) noexcept;
  stack& operator=(stack&& other) noexcept;
  ~stack();

  const _univ_mat& first() const { return mats[0]; }
};

// Three planes: red, green and blue.
struct planes : stack {
  planes();
  planes(std::int32_t rows, std::int32_t cols, _korvo_type element) : stack({3}, rows, cols, element) {}
};

// The same done to each plane: f(const _univ_mat& plane) makes the plane of the result.
template <class F>
planes each_plane(const _mat_set& in, F f) {
  planes out;
  for (std::int32_t k = 0; k < out.nmat; ++k) out.mats[k] = f(in.mats[k]).release();
  return out;
}

// The same from each pair of planes.
template <class F>
planes each_plane(const _mat_set& a, const _mat_set& b, F f) {
  planes out;
  for (std::int32_t k = 0; k < out.nmat; ++k) out.mats[k] = f(a.mats[k], b.mats[k]).release();
  return out;
}

// A grey picture as one of three planes.
planes thrice(const _univ_mat& grey);

// The elements row after row; Element is what the type of the matrix says.
template <class Element = double>
std::span<Element> elements(const _univ_mat& in) {
  return {static_cast<Element*>(in.data), static_cast<std::size_t>(in.nelem)};
}

template <class Element = double>
Element& element(const _univ_mat& in, std::int32_t row, std::int32_t col) {
  return static_cast<Element*>(in.data)[static_cast<std::int64_t>(row) * in.ncol + col];
}

// A dbl matrix with one number throughout.
matrix filled(std::int32_t rows, std::int32_t cols, double value);

// In another element type. What does not fit becomes the limit of that type.
matrix as_type(const _univ_mat& in, _korvo_type element);
planes as_type(const _mat_set& in, _korvo_type element);

matrix copy(const _univ_mat& in);

// Numbers for universal routines.
_univ_scalar number(double value);
_univ_scalar byte(std::uint8_t value);

struct closer {
  void operator()(FILE* stream) const { (void)std::fclose(stream); }
};
using file = std::unique_ptr<FILE, closer>;

file open(const std::string& path, const char* mode);
// Closes a file that was written; only now is it certain that everything has arrived.
void finish(file stream, const std::string& path);

}  // namespace demo

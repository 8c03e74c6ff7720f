// Codes, owners of matrices and files, casts.
#include "words.hpp"

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace demo {

void check(_korvo_errcode code) {
  if (code == KORVO_ERR_OK) return;
  const char* text = nullptr;
  (void)korvo_err_string(code, &text);
  throw failure(text);
}

// The constructors that can fail delegate first, so that the destructor runs even then.
matrix::matrix(std::int32_t rows, std::int32_t cols, _korvo_type element) : matrix() {
  check(matuniv_malloc(this, rows, cols, element));
}

matrix& matrix::operator=(matrix&& other) noexcept {
  std::swap(static_cast<_univ_mat&>(*this), static_cast<_univ_mat&>(other));
  return *this;
}

_univ_mat matrix::release() { return std::exchange(static_cast<_univ_mat&>(*this), _univ_mat{}); }

stack::stack(std::span<const std::int32_t> dimensions) : _mat_set{} {
  check(matset_malloc(this, static_cast<std::int32_t>(dimensions.size()), dimensions.data()));
  for (std::int32_t k = 0; k < nmat; ++k) mats[k] = _univ_mat{};  // good to be freed
}

stack::stack(std::initializer_list<std::int32_t> dimensions, std::int32_t rows, std::int32_t cols,
             _korvo_type element)
    : stack(std::span(dimensions.begin(), dimensions.size())) {
  check(matset_malloc_matrices(this, rows, cols, element));
}

stack::stack(stack&& other) noexcept : _mat_set(std::exchange(static_cast<_mat_set&>(other), _mat_set{})) {}

stack& stack::operator=(stack&& other) noexcept {
  std::swap(static_cast<_mat_set&>(*this), static_cast<_mat_set&>(other));
  return *this;
}

stack::~stack() {
  (void)matset_free_matrices(this);
  (void)matset_free(this);
}

planes::planes() : stack(std::array<std::int32_t, 1>{3}) {}

matrix as_type(const _univ_mat& in, _korvo_type element) {
  matrix out(in.nrow, in.ncol, element);
  check(matuniv_cast(&in, 1, nullptr, &out));
  return out;
}

planes as_type(const _mat_set& in, _korvo_type element) {
  return each_plane(in, [&](const _univ_mat& plane) { return as_type(plane, element); });
}

matrix filled(std::int32_t rows, std::int32_t cols, double value) {
  matrix out(rows, cols);
  check(matuniv_assign_scalar(number(value), nullptr, &out));
  return out;
}

planes thrice(const _univ_mat& grey) {
  planes out;
  for (std::int32_t k = 0; k < out.nmat; ++k) out.mats[k] = copy(grey).release();
  return out;
}

matrix copy(const _univ_mat& in) { return as_type(in, in.type); }

_univ_scalar number(double value) {
  _univ_scalar result{};
  result.value.dbl = value;
  result.type = KORVO_DOUBLE;
  return result;
}

_univ_scalar byte(std::uint8_t value) {
  _univ_scalar result{};
  result.value.u8 = value;
  result.type = KORVO_UINT8;
  return result;
}

file open(const std::string& path, const char* mode) {
  file stream(std::fopen(path.c_str(), mode));
  if (!stream) throw failure("cannot open " + path + ": " + std::strerror(errno));
  return stream;
}

void finish(file stream, const std::string& path) {
  if (std::fclose(stream.release()) != 0) throw failure("cannot write " + path + ": " + std::strerror(errno));
}

}  // namespace demo

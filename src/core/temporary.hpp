// Memory that a routine needs for itself: freed on every path, allocated through korvo_malloc so that every
// allocation can fail and be tested failing.
#pragma once

#include <cstdint>
#include <utility>

#include "core/arithmetic.hpp"
#include "core/code.hpp"
#include "core/element.hpp"
#include "korvos/core/ut_alloc.h"

namespace korvo {

// Bytes sized in 64 bits. What does not fit the allocator's 32 bits cannot be had: KORVO_ERR_MALLOC. A count
// below 1 is refused before it could wrap to a good one.
[[nodiscard]] inline code allocate(std::int64_t count, std::int64_t element_size, void** ptr) {
  if (count < 1) return KORVO_ERR_ILLEGAL_VALUE;
  if (count > largest_size / element_size) return KORVO_ERR_MALLOC;
  return korvo_malloc(static_cast<std::int32_t>(count * element_size), ptr);
}

// A matrix that frees itself; its address is a pointer to the record.
template <class M>
class temporary : public M {
 public:
  temporary() { static_cast<M&>(*this) = M{}; }
  temporary(const temporary&) = delete;
  temporary& operator=(const temporary&) = delete;
  ~temporary() { (void)korvo_free(this->data); }

  [[nodiscard]] code make(std::int64_t rows, std::int64_t cols) {
    if (rows < 1 || cols < 1) return KORVO_ERR_ILLEGAL_SIZE;
    if (rows > largest_size / cols) return KORVO_ERR_MALLOC;
    void* buffer = nullptr;
    TRY(allocate(rows * cols, sizeof(element<M>), &buffer));
    static_cast<M&>(*this) = {static_cast<std::int32_t>(rows), static_cast<std::int32_t>(cols),
                              static_cast<std::int32_t>(rows * cols), static_cast<element<M>*>(buffer)};
    return KORVO_ERR_OK;
  }
};

// An array that frees itself, for work space that is no matrix.
template <class T>
class scratch {
 public:
  scratch() = default;
  scratch(const scratch&) = delete;
  scratch& operator=(const scratch&) = delete;
  ~scratch() { (void)korvo_free(data_); }

  [[nodiscard]] code make(std::int64_t count) {
    void* buffer = nullptr;
    TRY(allocate(count, sizeof(T), &buffer));
    data_ = static_cast<T*>(buffer);
    return KORVO_ERR_OK;
  }
  [[nodiscard]] T* data() const { return data_; }
  [[nodiscard]] T* release() { return std::exchange(data_, nullptr); }  // for a record that is to own it
  [[nodiscard]] T& operator[](std::int64_t i) const { return data_[i]; }

 private:
  T* data_ = nullptr;
};

}  // namespace korvo

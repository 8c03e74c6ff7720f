// One call of a routine with everything it needs: inputs that must stay as they are, outputs that are hashed,
// and what it allocates. The table of calls (tests/calls) makes a fresh one for each run of a sweep.
#pragma once

#include <cstdio>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "korvos/core/mat_set.h"
#include "korvos/core/ut_alloc.h"
#include "tests/support/hash.hpp"
#include "tests/support/matrix.hpp"
#include "tests/support/stream.hpp"

// Something wrong with the k-th matrix of a call, or with its k-th scalar, and what that is refused with.
struct fault {
  enum { no_matrix, no_data, wrong_count, wrong_type, shape, shares, value, no_stream } what;
  int which;
  _korvo_errcode expected;
  double detail = 0.0, more = 0.0;  // rows and columns; the matrix whose data it shares; the value
};
using faults = std::vector<fault>;

class scene {
 public:
  scene() = default;
  scene& operator=(scene&&) = delete;

  // A matrix of numbers from 0 to 50, each of a scene unlike the others. Must stay as it is.
  template <class M>
  M* in(std::int32_t rows, std::int32_t cols, double low = 0.0, double high = 50.0) {
    M* const mat = hold<korvo::matrix<M>>(korvo::matrix<M>::random(rows, cols, ++seed_, low, high));
    keep(mat, sizeof *mat);
    keep(mat->data, static_cast<std::size_t>(mat->nelem) * sizeof *mat->data);
    return mat;
  }
  _univ_mat* in(_korvo_type type, std::int32_t rows, std::int32_t cols, double low = 0.0, double high = 50.0);
  _mat_set* in_set(const std::vector<_univ_mat*>& members, std::vector<std::int32_t> dims = {});

  // A matrix to be written, zeros to start with; what is in it after the call is hashed.
  template <class M>
  M* out(std::int32_t rows, std::int32_t cols) {
    M* const mat = hold<korvo::matrix<M>>(rows, cols);
    looks_.push_back([=](byte_hash& hash) { look_at(*mat, true, hash); });
    return mat;
  }
  _univ_mat* out(_korvo_type type, std::int32_t rows, std::int32_t cols);
  _mat_set* out_set(const std::vector<_univ_mat*>& members, std::vector<std::int32_t> dims = {});

  // A plain number to be written.
  template <class T>
  T* number() {
    return record<T>([](T* value, byte_hash& hash) { hash.add(value, sizeof(T)); });
  }

  // A record or value that the routine fills and that is looked at by `look`; `end` gives back what it owns.
  template <class R>
  R* record(std::function<void(R*, byte_hash&)> look, std::function<void(R*)> end = {}) {
    const auto give_back = [=](R* value) {
      if (end) end(value);
      delete value;
    };
    R* const value = new R{};
    held_.push_back(std::shared_ptr<R>(value, give_back));
    if (look) looks_.push_back([=](byte_hash& hash) { look(value, hash); });
    return value;
  }
  // The same for a matrix or set that the routine allocates, of which the elements are looked at if it fills
  // them; `begun` is one on the heap, with 2 by 3 elements or members, for routines that change it.
  template <class R>
  R* allocated(bool filled, bool begun) {
    R* const made = record<R>([=](R* value, byte_hash& hash) { look_at(*value, filled, hash); },
                              [=](R* value) { end(value, filled || begun); });
    if (begun) begin(*made);
    return made;
  }

  // A stream that holds `text`, to be read or written; what it holds after the call is hashed. A sweep may let
  // it fail at a call, or end early.
  FILE* stream(const std::string& text);
  int failing_call = INT_MAX;
  faults spoiled = {};
  std::size_t most_text = std::string::npos;
  fault_stream* streamed = nullptr;

  template <class T>
  T* copy_of(const T& value) {
    return hold<T>(value);
  }

  // Bytes that must stay as they are.
  void keep(const void* data, std::size_t size);

  bool inputs_are_unchanged() const;
  std::uint64_t results();

 private:
  template <class T, class... A>
  T* hold(A... from) {
    held_.push_back(std::make_shared<T>(std::move(from)...));
    return static_cast<T*>(held_.back().get());
  }

  static constexpr std::size_t sizes_of_matrix = 3 * sizeof(std::int32_t);
  template <class M>
  static void look_at(const M& mat, bool filled, byte_hash& hash) {
    hash.add(&mat, sizes_of_matrix);
    if (filled && mat.data) hash.add(mat.data, static_cast<std::size_t>(mat.nelem) * sizeof *mat.data);
  }
  static void look_at(const _univ_mat& mat, bool filled, byte_hash& hash);
  static void look_at(const _mat_set& set, bool filled, byte_hash& hash);
  template <class M>
  static void begin(M& mat) {
    void* data = nullptr;
    (void)korvo_malloc(6 * sizeof(korvo_dcomplex), &data);
    mat.nrow = 2, mat.ncol = 3, mat.nelem = 6;
    mat.data = static_cast<decltype(mat.data)>(data);
    if constexpr (std::is_same_v<M, _univ_mat>) mat.type = KORVO_DCOMPLEX;
  }
  static void begin(_mat_set& set);
  // The frame of a set alone has records that nobody has written.
  template <class R>
  static void end(R* made, [[maybe_unused]] bool has_matrices) {
    if constexpr (std::is_same_v<R, _mat_set>) {
      if (has_matrices) (void)matset_free_matrices(made);
      (void)matset_free(made);
    } else {
      (void)korvo_free(made->data);
    }
  }

  struct bytes {
    const void* data;
    std::vector<unsigned char> before;
  };
  unsigned seed_ = 0;
  std::list<std::shared_ptr<void>> held_;
  std::vector<bytes> kept_;
  std::vector<std::function<void(byte_hash&)>> looks_;
};

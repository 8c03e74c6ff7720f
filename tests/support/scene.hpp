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

class scene {
 public:
  scene() = default;
  scene(const scene&) = delete;
  scene& operator=(const scene&) = delete;
  ~scene();

  // A matrix of numbers from 0 to 50, each of a scene unlike the others. Must stay as it is.
  template <class M>
  M* in(std::int32_t rows, std::int32_t cols, double low = 0.0, double high = 50.0) {
    M* const mat = make<M>(rows, cols, low, high);
    keep(mat, sizeof *mat);
    keep(mat->data, static_cast<std::size_t>(mat->nelem) * sizeof *mat->data);
    return mat;
  }
  _univ_mat* in(_korvo_type type, std::int32_t rows, std::int32_t cols);
  _mat_set* in_set(std::vector<_univ_mat*> members, std::vector<std::int32_t> dims = {});

  // A matrix to be written, zeros to start with; what is in it after the call is hashed.
  template <class M>
  M* out(std::int32_t rows, std::int32_t cols) {
    M* const mat = make<M>(rows, cols, 0.0, 0.0);
    result(mat, sizeof(std::int32_t) * 3);
    result(mat->data, static_cast<std::size_t>(mat->nelem) * sizeof *mat->data);
    return mat;
  }
  _univ_mat* out(_korvo_type type, std::int32_t rows, std::int32_t cols);
  _mat_set* out_set(std::vector<_univ_mat*> members, std::vector<std::int32_t> dims = {});

  // A plain number to be written.
  template <class T>
  T* number() {
    T* const value = hold(T{});
    result(value, sizeof(T));
    return value;
  }

  // A record or value that the routine fills and that is looked at by `look`; `end` gives back what it owns.
  template <class R>
  R* record(std::function<void(R*, byte_hash&)> look, std::function<void(R*)> end = {}) {
    R* const value = hold(R{});
    if (look) looks_.push_back([=](byte_hash& hash) { look(value, hash); });
    if (end) ends_.push_back([=] { end(value); });
    return value;
  }
  // The same for a matrix that the routine allocates.
  template <class M>
  M* allocated() {
    return record<M>([](M* mat, byte_hash& hash) { look_at(*mat, hash); },
                     [](M* mat) { (void)korvo_free(mat->data); });
  }

  // A stream that holds `text`, and one to be written, whose text is hashed.
  FILE* reading(std::string text);
  FILE* writing();

  // Bytes that must stay as they are, and bytes that are a result.
  void keep(const void* data, std::size_t size);
  void result(const void* data, std::size_t size);

  bool inputs_are_unchanged() const;
  std::uint64_t results();

 private:
  template <class T>
  T* hold(T value) {
    auto held = std::make_shared<T>(std::move(value));
    held_.push_back(held);
    return held.get();
  }
  template <class M>
  M* make(std::int32_t rows, std::int32_t cols, double low, double high) {
    return hold(korvo::matrix<M>::random(rows, cols, ++seed_, low, high));
  }
  static void look_at(const _univ_mat& mat, byte_hash& hash);
  template <class M>
  static void look_at(const M& mat, byte_hash& hash) {
    hash.add(&mat, sizeof(std::int32_t) * 3);
    if (mat.data) hash.add(mat.data, static_cast<std::size_t>(mat.nelem) * sizeof *mat.data);
  }
  _mat_set* make_set(std::vector<_univ_mat*> members, std::vector<std::int32_t> dims);

  struct bytes {
    const void* data;
    std::vector<unsigned char> before;
  };
  unsigned seed_ = 0;
  std::list<std::shared_ptr<void>> held_;
  std::vector<bytes> kept_;
  std::vector<std::function<void(byte_hash&)>> looks_;
  std::vector<std::function<void()>> ends_;
};

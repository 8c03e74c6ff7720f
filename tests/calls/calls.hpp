// The table of calls: a row, or several, for each exported routine. The sweeps run over it, and a routine
// without a row fails the tests.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include "korvos/core/ut_err.h"
#include "tests/support/scene.hpp"

// The routine on what a scene holds: everything but intrp_ptr is settled.
using ready_call = std::function<_korvo_errcode(void* intrp_ptr)>;

struct call_row {
  std::string name;                           // the exported name; for a further row "name/variant"
  std::function<ready_call(scene&)> prepare;  // fills a scene; must succeed without a host
  bool may_be_silent = false;                 // a stop inside the Fourier engine goes unsaid: success
  bool reads = false;                         // no beginning of what is read from the stream will do
  faults refused = {};                        // in the order in which the routine looks for them
};
using call_rows = std::vector<call_row>;

// For test reports.
inline void PrintTo(const call_row& row, std::ostream* out) { *out << row.name; }

// The rows of each module, in files of their own.
call_rows core_calls(), mat_assn_calls(), mat_cast_calls(), mat_arit_calls(), mat_summ_calls(), mat_io_calls(),
    mat_tile_calls(), img_pttr_calls(), img_io_calls(), sig_conv_calls(), img_conv_calls(), sig_tran_calls(),
    sig_pow2_calls(), sig_win_calls(), sig_tfrq_calls(), wav_modw_calls(), wav_wtmm_calls(), wav_skel_calls(),
    wav_skel_local_calls(), mat_num_calls(), cls_gla_calls(), img_mrf_calls(), mat_thr_calls(),
    mat_sort_calls(), img_ccmp_calls(), img_cany_calls(), img_edge_calls(), img_erg_calls(), img_morp_calls(),
    img_gmor_calls(), pgn_regn_calls(), pgn_smpl_calls(), img_snk_calls(), img_lset_calls(), img_intp_calls(),
    img_dist_calls(), korvos_calls();

const call_rows& all_calls();

// What the arguments of a row are made from where their types leave it open.
struct given {
  std::vector<double> numbers = {};  // the scalars, in their order; 1 when there are no more
  std::int32_t rows = 7, cols = 7;   // of every matrix: one size suits most routines
  std::vector<std::array<std::int32_t, 2>> shapes = {};  // of each matrix in its order, where it does not
  double low = 0.0, high = 50.0;                         // the elements of inputs
  _korvo_type type = KORVO_DOUBLE, into = KORVO_DOUBLE;  // universal inputs and outputs
  std::string file = {};                                 // what a stream holds; one to be written without it
  const char* text = nullptr;
  enum { zeros, made, bare, on_heap } output = zeros;
  bool may_be_silent = false;
  faults refused = {};

  given& sized(std::int32_t r, std::int32_t c) { return rows = r, cols = c, *this; }
  given& shaped(std::vector<std::array<std::int32_t, 2>> each) { return shapes = std::move(each), *this; }
  given& within(double least, double most) { return low = least, high = most, *this; }
  given& of(_korvo_type in, _korvo_type out) { return type = in, into = out, *this; }
  given& reading(std::string content) { return file = std::move(content), *this; }
  given& with(const char* word) { return text = word, *this; }
  // The routine makes and fills its output; it makes it, and leaves it unfilled; it changes one on the heap.
  given& making() { return output = made, *this; }
  given& making_bare() { return output = bare, *this; }
  given& changing() { return output = on_heap, *this; }
  given& refusing(faults in_order) { return refused = std::move(in_order), *this; }
  given& silent() { return may_be_silent = true, *this; }
};
template <class... N>
given args(N... numbers) {
  return {.numbers = {static_cast<double>(numbers)...}};
}

// Faults of matrix or scalar k, for given::refusing().
inline fault null(int k) { return {fault::no_matrix, k, KORVO_ERR_NULL_POINTER}; }
inline fault no_data(int k) { return {fault::no_data, k, KORVO_ERR_NULL_POINTER}; }
inline fault miscounted(int k) { return {fault::wrong_count, k, KORVO_ERR_ILLEGAL_SIZE}; }
inline fault other_type(int k) { return {fault::wrong_type, k, KORVO_ERR_ILLEGAL_TYPE}; }
inline fault shaped(int k, int rows, int cols) {
  return {fault::shape, k, KORVO_ERR_ILLEGAL_SIZE, double(rows), double(cols)};
}
inline fault sharing(int k, int other) { return {fault::shares, k, KORVO_ERR_ILLEGAL_ADDRESS, double(other)}; }
inline fault valued(int k, double x, _korvo_errcode expected = KORVO_ERR_ILLEGAL_VALUE) {
  return {fault::value, k, expected, x};
}
inline fault no_stream() { return {fault::no_stream, -1, KORVO_ERR_NULL_POINTER}; }
// What most routines look for in n matrices, the last one the result, and then these.
inline faults checked(int n, std::initializer_list<fault> then, bool converts = false) {
  faults all;
  for (int k = n - 1; k >= 0; --k) all.push_back(null(k));
  if (!converts) all.push_back(other_type(n - 1));
  all.push_back(miscounted(0));
  for (int k = 1; k < n; ++k) all.push_back(no_data(k));
  all.insert(all.end(), then);
  return all;
}

// Makes the arguments of a routine in their order, each by its type.
class argument_maker {
 public:
  argument_maker(scene& s, const given& how) : s_(s), how_(how) {}

  template <class P>
  P make() {
    P argument = sound<P>();
    if constexpr (std::is_arithmetic_v<P>) {
      for (const fault& f : s_.spoiled)
        if (f.what == fault::value && f.which == scalars_) argument = static_cast<P>(f.detail);
      ++scalars_;
    } else if constexpr (std::is_same_v<P, FILE*>) {
      for (const fault& f : s_.spoiled)
        if (f.what == fault::no_stream) argument = nullptr;
    } else if constexpr (requires { argument->nelem; }) {
      data_.push_back(argument->data);
      for (auto f = s_.spoiled.rbegin(); argument && f != s_.spoiled.rend(); ++f)
        if (f->what != fault::value && f->which + 1 == std::ssize(data_)) argument = with(*f, *argument);
    }
    return argument;
  }

 private:
  // An argument without faults.
  template <class P>
  P sound() {
    using T = std::remove_pointer_t<P>;
    if constexpr (std::is_same_v<P, _univ_scalar>)
      return {_univ_value{.dbl = number()}, KORVO_DOUBLE};
    else if constexpr (!std::is_pointer_v<P>)
      return korvo::as_element<P>(number());
    else if constexpr (std::is_same_v<P, FILE*>)
      return s_.stream(how_.file);
    else if constexpr (std::is_same_v<P, const char*>)
      return how_.text;
    else if constexpr (std::is_same_v<P, const std::int32_t*>)
      return six_;
    else if constexpr (std::is_const_v<T>)
      return input<std::remove_const_t<T>>();
    else if constexpr (requires(T * mat) { mat->nelem; } || std::is_same_v<T, _mat_set>)
      return result<T>();
    else if constexpr (std::is_void_v<T>)
      return nullptr;  // intrp_ptr, which comes later
    else
      return s_.number<T>();
  }

  template <class M>
  M* with(const fault& f, M& sound) {
    if (f.what == fault::no_matrix) return nullptr;
    auto* const mat = s_.copy_of<std::remove_const_t<M>>(sound);
    if (f.what == fault::no_data) mat->data = nullptr;
    if (f.what == fault::wrong_count) --mat->nelem;
    if (f.what == fault::shape)
      mat->nrow = int(f.detail), mat->ncol = int(f.more), mat->nelem = mat->nrow * mat->ncol;
    if (f.what == fault::shares) mat->data = static_cast<decltype(mat->data)>(data_.at(std::size_t(f.detail)));
    if constexpr (std::is_same_v<std::remove_const_t<M>, _univ_mat>)
      if (f.what == fault::wrong_type) mat->type = KORVO_FLOAT;
    return mat;
  }

  static constexpr std::int32_t six_[] = {1, 6, 1};  // the dimensions of a set

  double number() { return next_ < how_.numbers.size() ? how_.numbers[next_++] : 1.0; }

  std::array<std::int32_t, 2> shape() {
    if (next_shape_ < how_.shapes.size()) return how_.shapes[next_shape_++];
    return {how_.rows, how_.cols};
  }

  template <class T>
  T* input() {
    const auto matrix = [&] {
      const auto [rows, cols] = shape();
      return s_.in(how_.type, rows, cols, how_.low, how_.high);
    };
    if constexpr (std::is_same_v<T, _mat_set>)
      return s_.in_set({matrix(), matrix(), matrix()});
    else if constexpr (std::is_same_v<T, _univ_mat> || std::is_void_v<T>)
      return matrix();
    else {
      const auto [rows, cols] = shape();
      return s_.in<T>(rows, cols, how_.low, how_.high);
    }
  }
  template <class T>
  T* result() {
    if (how_.output != given::zeros) {
      T* const result = s_.allocated<T>(how_.output == given::made, how_.output == given::on_heap);
      if constexpr (std::is_same_v<T, _univ_mat>)
        if (how_.output == given::on_heap) result->type = how_.into;
      return result;
    }
    const auto matrix = [&] {
      const auto [rows, cols] = shape();
      return s_.out(how_.into, rows, cols);
    };
    if constexpr (std::is_same_v<T, _mat_set>)
      return s_.out_set({matrix(), matrix(), matrix()});
    else if constexpr (std::is_same_v<T, _univ_mat>)
      return matrix();
    else {
      const auto [rows, cols] = shape();
      return s_.out<T>(rows, cols);
    }
  }
  scene& s_;
  const given& how_;
  std::size_t next_ = 0;
  std::size_t next_shape_ = 0;
  int scalars_ = 0;
  std::vector<void*> data_ = {};  // of the matrices so far
};

// An argument when it is known what intrp_ptr is.
inline void* hosted(void* /*unknown*/, void* intrp_ptr) { return intrp_ptr; }
template <class P>
P hosted(P argument, void* /*intrp_ptr*/) {
  return argument;
}

template <class... P>
call_row row(std::string name, _korvo_errcode (*f)(P...), const given& how) {
  faults refused = how.refused;
  if (!(std::is_same_v<P, _univ_mat*> || ...))  // a typed form has no other type
    std::erase_if(refused, [](const fault& each) { return each.what == fault::wrong_type; });
  return {std::move(name),
          [=](scene& s) -> ready_call {
            argument_maker arguments(s, how);
            const std::tuple<P...> made{arguments.make<P>()...};
            return [=](void* intrp_ptr) {
              return std::apply([&](auto... argument) { return f(hosted(argument, intrp_ptr)...); }, made);
            };
          },
          how.may_be_silent, !how.file.empty(), refused};
}

#define ROW(name, how) row(#name, &name, how)
#define VARIANT(name, variant, how) row(#name "/" variant, &name, how)
// The forms of a family for matrices: the real types; those and the universal one; and complex too.
#define TYPED_ROWS(op, how)                                                                  \
  ROW(matu8_##op, how), ROW(matu16_##op, how), ROW(matu32_##op, how), ROW(mats16_##op, how), \
      ROW(mats32_##op, how), ROW(matflt_##op, how), ROW(matdbl_##op, how)
#define REAL_ROWS(op, how) TYPED_ROWS(op, how), ROW(matuniv_##op, how)
#define ALL_ROWS(op, how) REAL_ROWS(op, how), ROW(matcpx_##op, how)

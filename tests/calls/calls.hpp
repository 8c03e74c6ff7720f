// The table of calls: a row, or several, for each exported routine. The sweeps run over it, and a routine
// without a row fails the tests.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "korvos/core/ut_err.h"
#include "tests/support/scene.hpp"

// The routine on what a scene holds: everything but intrp_ptr is settled.
using ready_call = std::function<_korvo_errcode(void* intrp_ptr)>;

struct call_row {
  std::string name;                                  // the exported name; for a further row "name/variant"
  std::function<ready_call(scene&)> prepare;         // fills a scene; must succeed without a host
  _korvo_errcode interrupted = KORVO_ERR_INTERRUPT;  // the code of a call that was stopped
};
using call_rows = std::vector<call_row>;

// For test reports.
inline void PrintTo(const call_row& row, std::ostream* out) { *out << row.name; }

// The rows of each module, in files of their own.
call_rows core_calls();
call_rows mat_assn_calls();
call_rows mat_cast_calls();
call_rows mat_arit_calls();
call_rows mat_summ_calls();
call_rows mat_io_calls();
call_rows mat_tile_calls();
call_rows img_pttr_calls();
call_rows img_io_calls();
call_rows sig_conv_calls();
call_rows img_conv_calls();

const call_rows& all_calls();

// Rows by the shape of the signature. Matrices are 7 by 7, so that one size suits every routine.
constexpr std::int32_t call_size = 7;

template <class M>
M* matrix_in(scene& s) {
  if constexpr (std::is_same_v<M, _univ_mat>)
    return s.in(KORVO_DOUBLE, call_size, call_size);
  else
    return s.in<M>(call_size, call_size);
}
template <class M>
M* matrix_out(scene& s) {
  if constexpr (std::is_same_v<M, _univ_mat>)
    return s.out(KORVO_DOUBLE, call_size, call_size);
  else
    return s.out<M>(call_size, call_size);
}
// The number x as an argument of the type S.
template <class S>
S scalar_of(double x) {
  if constexpr (std::is_same_v<S, _univ_scalar>)
    return {_univ_value{.dbl = x}, KORVO_DOUBLE};
  else
    return korvo::as_element<S>(x);
}

// (a, b, intrp_ptr, out)
template <class M>
call_row row(std::string name, _korvo_errcode (*f)(const M*, const M*, void*, M*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            const M* const a = matrix_in<M>(s);
            const M* const b = matrix_in<M>(s);
            M* const out = matrix_out<M>(s);
            return [=](void* intrp_ptr) { return f(a, b, intrp_ptr, out); };
          }};
}
// (in, intrp_ptr, out)
template <class M, class N>
call_row row(std::string name, _korvo_errcode (*f)(const M*, void*, N*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            const M* const in = matrix_in<M>(s);
            N* const out = matrix_out<N>(s);
            return [=](void* intrp_ptr) { return f(in, intrp_ptr, out); };
          }};
}
// (in, scalar or flag, intrp_ptr, out)
template <class M, class S, class N>
call_row row(std::string name, _korvo_errcode (*f)(const M*, S, void*, N*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            const M* const in = matrix_in<M>(s);
            N* const out = matrix_out<N>(s);
            return [=](void* intrp_ptr) { return f(in, scalar_of<S>(1.0), intrp_ptr, out); };
          }};
}
// (in, row, col, intrp_ptr, out)
template <class M>
call_row row(std::string name, _korvo_errcode (*f)(const M*, std::int32_t, std::int32_t, void*, M*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            const M* const in = matrix_in<M>(s);
            M* const out = matrix_out<M>(s);
            return [=](void* intrp_ptr) { return f(in, 0, 0, intrp_ptr, out); };
          }};
}

#define ROW(name) row(#name, &name)

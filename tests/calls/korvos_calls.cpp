#include "korvos/host/korvos.h"
#include "tests/calls/calls.hpp"

namespace {

// Both sides of the bridge: the host's matrices have 4 rows in columns of 5.
struct bridge {
  explicit bridge(scene& s)
      : in(s.record<aMatrix>({})),
        out(s.record<aMatrix>(
            {}, [](aMatrix* made) { (void)korvo_free(made->real), (void)korvo_free(made->imag); })),
        from(s.in(KORVO_DCOMPLEX, 4, 6)),
        to(s.out(KORVO_DCOMPLEX, 4, 6)),
        grey(s.in_set({s.in(KORVO_UINT8, 4, 2)})),
        planes(s.out_set({s.out(KORVO_DOUBLE, 4, 2), s.out(KORVO_DOUBLE, 4, 2), s.out(KORVO_DOUBLE, 4, 2)})) {
    *in = {0, 5, 240, 0, s.in<_dbl_mat>(6, 5)->data, s.in<_dbl_mat>(6, 5)->data, 4, 6};
    *out = {0, 5, 240, 0, nullptr, nullptr, 4, 6};
  }
  aMatrix *in, *out;
  _univ_mat *from, *to;
  _mat_set *grey, *planes;
};

// What the bridge does not say: that it found no memory for this.
template <class P>
_korvo_errcode told(_korvo_errcode result, P* const& made) {
  return result == KORVO_ERR_OK && !made ? KORVO_ERR_MALLOC : result;
}
_korvo_errcode told(double** pointers) {
  (void)korvo_free(pointers);
  return told(KORVO_ERR_OK, pointers);
}

call_row bridge_row(const char* name, _korvo_errcode (*call)(const bridge& b)) {
  return {name, [=](scene& s) -> ready_call { return [=, b = bridge(s)](void*) { return call(b); }; }};
}

#define BRIDGE(name, ...) \
  bridge_row(#name, []([[maybe_unused]] const bridge& b) -> _korvo_errcode { return __VA_ARGS__; })

}  // namespace

call_rows korvos_calls() {
  return {BRIDGE(matuniv_assign_from_sheetrix, matuniv_assign_from_sheetrix(b.in, b.to)),
          BRIDGE(matuniv_assign_to_sheetrix,
                 told(told(matuniv_assign_to_sheetrix(b.from, b.out), b.out->real), b.out->imag)),
          BRIDGE(matset_assign_from_sheetrix_color, matset_assign_from_sheetrix_color(b.in, b.planes)),
          BRIDGE(matset_assign_to_sheetrix_color,
                 told(matset_assign_to_sheetrix_color(b.grey, b.out), b.out->real)),
          BRIDGE(allocRealColArr, told(allocRealColArr(b.in))),
          BRIDGE(allocImagColArr, told(allocImagColArr(b.in))),
          BRIDGE(korvo_err_translate,
                 told(KORVO_ERR_OK, shx_std_error_messages[korvo_err_translate(KORVO_ERR_OK)])),
          BRIDGE(shx_std_error_messages, told(KORVO_ERR_OK, shx_std_error_messages[57]))};
}

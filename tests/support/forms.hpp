// One test for every exported form of a family: a template over the list of their names.
#pragma once

#include "korvos/core/ut_err.h"

// The names of a form for the real types, and for complex too.
#define REAL_FORMS(name) \
  matu8_##name, matu16_##name, matu32_##name, mats16_##name, mats32_##name, matflt_##name, matdbl_##name
#define ALL_FORMS(name) REAL_FORMS(name), matcpx_##name

namespace korvo {

// Calls test.operator()<form>() for each routine of a list.
template <auto... form, class Test>
void each_form(Test test) {
  (test.template operator()<form>(), ...);
}

// The record of a typed form, which is that of its first argument.
template <class M, class... Rest>
M record_of_form(_korvo_errcode (*)(const M*, Rest...));
template <class M, class... Rest>
M record_of_form(_korvo_errcode (*)(M*, Rest...));
template <auto form>
using record_of = decltype(record_of_form(form));

}  // namespace korvo

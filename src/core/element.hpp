// What a record says of its elements: their type, its tag, its member of a scalar. The record itself is the
// template parameter of every method.
#pragma once

#include <type_traits>

#include "korvos/core/mat_univ.h"

namespace korvo {

template <class M>
using element = std::remove_pointer_t<decltype(M::data)>;

template <_korvo_type type_, auto member_>
struct tag_of {
  static constexpr _korvo_type type = type_;  // the run-time name of the element type
  static constexpr auto member = member_;     // where a scalar keeps a number of it
};

template <class M>
struct tag;
template <>
struct tag<_u8_mat> : tag_of<KORVO_UINT8, &_univ_value::u8> {};
template <>
struct tag<_u16_mat> : tag_of<KORVO_UINT16, &_univ_value::u16> {};
template <>
struct tag<_s16_mat> : tag_of<KORVO_SINT16, &_univ_value::s16> {};
template <>
struct tag<_u32_mat> : tag_of<KORVO_UINT32, &_univ_value::u32> {};
template <>
struct tag<_s32_mat> : tag_of<KORVO_SINT32, &_univ_value::s32> {};
template <>
struct tag<_flt_mat> : tag_of<KORVO_FLOAT, &_univ_value::flt> {};
template <>
struct tag<_dbl_mat> : tag_of<KORVO_DOUBLE, &_univ_value::dbl> {};
template <>
struct tag<_cpx_mat> : tag_of<KORVO_DCOMPLEX, &_univ_value::cpx> {};

// A list of records: the element types that an operation has.
template <class... M>
struct records {};

using real_records = records<_u8_mat, _u16_mat, _u32_mat, _s16_mat, _s32_mat, _flt_mat, _dbl_mat>;
using all_records = records<_u8_mat, _u16_mat, _u32_mat, _s16_mat, _s32_mat, _flt_mat, _dbl_mat, _cpx_mat>;

constexpr bool is_floating(_korvo_type type) {
  return type == KORVO_FLOAT || type == KORVO_DOUBLE || type == KORVO_DCOMPLEX;
}

}  // namespace korvo

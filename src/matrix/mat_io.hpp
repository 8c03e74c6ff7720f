// How the elements of a matrix are written and read as text.
#pragma once

#include <cstdint>
#include <type_traits>

#include "core/arithmetic.hpp"
#include "core/element.hpp"
#include "matrix/text.hpp"

namespace korvo {

// A number is scanned in full width and then cut to what the formatted scanner would store: 16 bits for the
// types up to 16 bits, u8 included, so that their ranges are tested after the cut. The rest is not cut.
template <class Scanned, class Kept>
struct number_form {
  using scanned = Scanned;
  using kept = Kept;
};

template <class M>
struct text_form;
template <>
struct text_form<_u8_mat> : number_form<std::uint64_t, std::uint16_t> {
  static constexpr const char* word = "uint8";    // what a printed matrix begins with
  static constexpr const char* format = "%hu ";   // how an element of it is printed
  static constexpr std::int32_t list_length = 3;  // what is reckoned for an element of a list
};
template <>
struct text_form<_u16_mat> : number_form<std::uint64_t, std::uint16_t> {
  static constexpr const char* word = "uint16";
  static constexpr const char* format = "%hu ";
  static constexpr std::int32_t list_length = 6;
};
template <>
struct text_form<_u32_mat> : number_form<std::int64_t, std::int64_t> {
  static constexpr const char* word = "uint32";
  static constexpr const char* format = "%lu ";
  static constexpr std::int32_t list_length = 11;
};
template <>
struct text_form<_s16_mat> : number_form<std::int64_t, std::int16_t> {
  static constexpr const char* word = "sint16";
  static constexpr const char* format = "%hd ";
  static constexpr std::int32_t list_length = 6;
};
template <>
struct text_form<_s32_mat> : number_form<std::int64_t, std::int64_t> {
  static constexpr const char* word = "sint32";
  static constexpr const char* format = "%ld ";
  static constexpr std::int32_t list_length = 11;
};
template <>
struct text_form<_flt_mat> : number_form<float, float> {
  static constexpr const char* word = "float";
  static constexpr const char* format = "%g ";
  static constexpr std::int32_t list_length = 18;
};
template <>
struct text_form<_dbl_mat> : number_form<double, double> {
  static constexpr const char* word = "double";
  static constexpr const char* format = "%g ";
  static constexpr std::int32_t list_length = 18;
};

// One number for an element of M, its range not yet looked at.
template <class M>
[[nodiscard]] code scan_element(FILE* stream, after_number after, typename text_form<M>::kept* number) {
  typename text_form<M>::scanned wide;
  TRY(scan(stream, &wide, after));
  *number = static_cast<typename text_form<M>::kept>(wide);
  return KORVO_ERR_OK;
}

// Whether a number may become an element: the ranges of casts, and for floating elements what stands for
// infinity. NaN may not.
template <class M>
constexpr bool in_range(typename text_form<M>::kept number) {
  using T = element<M>;
  if constexpr (std::is_floating_point_v<T>)
    return number >= -1e37 && number <= 1e37;
  else
    return number >= static_cast<std::int64_t>(accepted<T>::lowest) &&
           number <= static_cast<std::int64_t>(accepted<T>::highest);
}

}  // namespace korvo

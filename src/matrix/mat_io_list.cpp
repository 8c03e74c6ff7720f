// Matrices as plain lists of numbers: write_ascii, read_ascii.
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <type_traits>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/valid.hpp"
#include "korvos/matrix/mat_io.h"
#include "matrix/mat_io.hpp"

namespace korvo {
namespace {

// Whole numbers are set by hand: images are lists of them, and the formatted writer takes ten times as long.
int put_number(char* to, std::int64_t x) {
  const auto magnitude = static_cast<std::uint32_t>(x < 0 ? -x : x);
  int length = x < 0 ? 2 : 1;
  for (std::uint32_t rest = magnitude; rest >= 10; rest /= 10) ++length;
  char* digit = to + length;
  std::uint32_t rest = magnitude;
  do {
    *--digit = static_cast<char>('0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  if (x < 0) *to = '-';
  return length;
}

int put_number(char* to, double x) { return std::snprintf(to, longest_item, "%10g", x); }

struct short_text {
  char digits[3];
  std::uint8_t length;
};

constexpr std::array<short_text, 256> make_byte_texts() {
  std::array<short_text, 256> texts{};
  for (int x = 0; x < 256; ++x) {
    short_text& text = texts[static_cast<std::size_t>(x)];
    for (const int unit : {100, 10, 1})
      if (x >= unit || unit == 1) text.digits[text.length++] = static_cast<char>('0' + x / unit % 10);
  }
  return texts;
}

constexpr std::array<short_text, 256> byte_texts = make_byte_texts();

int put_number(char* to, std::uint8_t x) {
  const short_text& text = byte_texts[x];
  std::memcpy(to, &text, sizeof text);  // more than is set, in one store
  return text.length;
}

template <class M>
code write_ascii(FILE* stream, const M* mat, const char* delimiter, std::uint16_t line_length,
                 void* intrp_ptr) {
  using T = element<M>;
  using wide = std::conditional_t<std::is_floating_point_v<T>, double,
                                  std::conditional_t<sizeof(T) == 1, T, std::int64_t>>;
  TRY(valid(mat));
  text_guard guard;
  TRY(guard.enter(stream));
  return write_list(stream, mat->nelem, {delimiter, line_length, text_form<M>::list_length}, intrp_ptr,
                    [data = mat->data](char* to, std::int32_t i) { return put_number(to, wide{data[i]}); });
}

template <class M>
code read_ascii(FILE* stream, char delimiter, char comment, void* intrp_ptr, M* mat) {
  TRY(valid(mat));
  text_guard guard;
  TRY(guard.enter(stream));
  checkpoint cost(intrp_ptr);
  for (std::int32_t i = 0; i < mat->nelem; ++i) {
    const after_number after = i + 1 < mat->nelem ? after_number::one_separator : after_number::nothing;
    typename text_form<M>::kept number{};
    if (scan_element<M>(stream, after, &number) != KORVO_ERR_OK) {
      TRY(skip_separators(stream, delimiter, comment));
      TRY(scan_element<M>(stream, after, &number));
      cost.count(character_cost);
    }
    if (std::is_integral_v<element<M>> && !in_range<M>(number)) return KORVO_ERR_IO;
    mat->data[i] = static_cast<element<M>>(number);
    cost.count(character_cost);
  }
  return cost.test();
}

}  // namespace
}  // namespace korvo

using namespace korvo;

#define WRITE_ASCII(name, M)                                                                            \
  code name(FILE* stream, const M* mat, const char* delimiter, uint16_t line_length, void* intrp_ptr) { \
    return write_ascii(stream, mat, delimiter, line_length, intrp_ptr);                                 \
  }
#define READ_ASCII(name, M)                                                        \
  code name(FILE* stream, char delimiter, char comment, void* intrp_ptr, M* mat) { \
    return read_ascii(stream, delimiter, comment, intrp_ptr, mat);                 \
  }

extern "C" {

WRITE_ASCII(matu8_write_ascii, _u8_mat)
WRITE_ASCII(matu16_write_ascii, _u16_mat)
WRITE_ASCII(matu32_write_ascii, _u32_mat)
WRITE_ASCII(mats16_write_ascii, _s16_mat)
WRITE_ASCII(mats32_write_ascii, _s32_mat)
WRITE_ASCII(matflt_write_ascii, _flt_mat)
WRITE_ASCII(matdbl_write_ascii, _dbl_mat)

code matuniv_write_ascii(FILE* stream, const _univ_mat* mat, const char* delimiter, uint16_t line_length,
                         void* intrp_ptr) {
  if (!mat) return KORVO_ERR_NULL_POINTER;
  return dispatch(mat->type, real_records{}, [&]<class M> {
    const M typed = as<M>(*mat);
    return write_ascii(stream, &typed, delimiter, line_length, intrp_ptr);
  });
}

READ_ASCII(matu8_read_ascii, _u8_mat)
READ_ASCII(matu16_read_ascii, _u16_mat)
READ_ASCII(matu32_read_ascii, _u32_mat)
READ_ASCII(mats16_read_ascii, _s16_mat)
READ_ASCII(mats32_read_ascii, _s32_mat)
READ_ASCII(matflt_read_ascii, _flt_mat)
READ_ASCII(matdbl_read_ascii, _dbl_mat)

code matuniv_read_ascii(FILE* stream, char delimiter, char comment, void* intrp_ptr, _univ_mat* mat) {
  if (!mat) return KORVO_ERR_NULL_POINTER;
  return dispatch(mat->type, real_records{}, [&]<class M> {
    M typed = as<M>(*mat);
    return read_ascii(stream, delimiter, comment, intrp_ptr, &typed);
  });
}

}  // extern "C"

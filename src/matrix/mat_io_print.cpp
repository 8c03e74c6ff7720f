// Matrices as text for people and for parse: print.
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

// The conversion of an element format.
struct conversion {
  char letter;
  char length;  // the length modifier; H and q for hh and ll, 0 for none, ? for what is none
  bool is_signed() const { return letter == 'd' || letter == 'i'; }
};

bool is_one_of(char c, const char* set) { return c != '\0' && std::strchr(set, c); }

char length_modifier(const char* text, std::size_t size) {
  if (size == 0) return '\0';
  if (size == 1) return *text;
  if (size == 2 && text[0] == 'h' && text[1] == 'h') return 'H';
  if (size == 2 && text[0] == 'l' && text[1] == 'l') return 'q';
  return '?';
}

// From the character after "%" to the conversion's letter.
const char* read_conversion(const char* text, conversion* found) {
  constexpr const char* digits = "0123456789";
  text += std::strspn(text, "-+ #0'");
  text += std::strspn(text, digits);
  if (*text == '.') text += 1 + std::strspn(text + 1, digits);
  const std::size_t size = std::strspn(text, "hljztL");
  found->length = length_modifier(text, size);
  found->letter = text[size];
  return text + size;
}

template <class T>
bool suits(const conversion& c) {
  const bool is_plain = c.length == '\0';
  if constexpr (std::is_floating_point_v<T>)
    return is_one_of(c.letter, "aAeEfFgG") && (is_plain || is_one_of(c.length, "lL"));
  else
    return is_one_of(c.letter, "diouxX") && (is_plain || is_one_of(c.length, "Hhlqjzt"));
}

// Formats come from outside: none may read an argument that is not there, or write through one.
template <class T>
bool find_conversion(const char* format, conversion* found) {
  bool is_found = false;
  for (const char* text = format; *text; ++text) {
    if (*text != '%' || *++text == '%') continue;
    if (is_found) return false;
    text = read_conversion(text, found);
    if (!suits<T>(*found)) return false;
    is_found = true;
  }
  return is_found;
}

// What one print is about, and where it has got to.
struct printing {
  FILE* stream;
  const char* format;
  conversion element;
  std::int64_t line_length;
  int number_width;             // of the row numbers
  std::int64_t on_line = 0;     // characters
  std::int64_t last_width = 1;  // of the element written last
  std::int64_t in_row = 0;      // characters, over all its lines
};

template <class S>
code write_as(const printing& p, std::int64_t x, std::int64_t* written) {
  return p.element.is_signed()
             ? write_text(p.stream, written, p.format, static_cast<S>(x))
             : write_text(p.stream, written, p.format, static_cast<std::make_unsigned_t<S>>(x));
}

code write_element(const printing& p, double x, std::int64_t* written) {
  return p.element.length == 'L' ? write_text(p.stream, written, p.format, static_cast<long double>(x))
                                 : write_text(p.stream, written, p.format, x);
}

// The element in the type that the conversion names, where `long` has 32 bits.
code write_element(const printing& p, std::int64_t x, std::int64_t* written) {
  const std::int64_t narrow = p.element.is_signed() ? std::int64_t{static_cast<std::int32_t>(x)}
                                                    : std::int64_t{static_cast<std::uint32_t>(x)};
  switch (p.element.length) {
    case 'l':
      return write_as<long>(p, narrow, written);
    case 'q':
      return write_as<long long>(p, x, written);
    case 'j':
      return write_as<std::intmax_t>(p, x, written);
    case 'z':
      return write_as<std::make_signed_t<std::size_t>>(p, x, written);
    case 't':
      return write_as<std::ptrdiff_t>(p, x, written);
    default:  // hh and h convert by themselves
      return write_as<int>(p, narrow, written);
  }
}

// floor(log10(rows)), and 1 if that is less.
int width_of_row_numbers(std::int32_t rows) {
  int width = 0;
  for (; rows >= 10; rows /= 10) ++width;
  return width > 1 ? width : 1;
}

template <class T>
code print_row(printing* p, std::int32_t row, const T* elements, std::int32_t count) {
  using wide = std::conditional_t<std::is_floating_point_v<T>, double, std::int64_t>;
  constexpr int label_width = 12;  // "    Row[" and "]:  "
  TRY(write_text(p->stream, &p->on_line, "    Row[%*ld]:  ", p->number_width, long{row}));
  p->in_row = p->on_line;
  for (std::int32_t j = 0; j < count; ++j) {
    if (p->line_length - p->last_width < p->on_line) {
      TRY(write_text(p->stream, &p->on_line, "\n%-*s", p->number_width + label_width, " "));
      p->in_row += p->on_line;
    }
    TRY(write_element(*p, static_cast<wide>(elements[j]), &p->last_width));
    p->on_line += p->last_width;
    p->in_row += p->last_width;
  }
  TRY(write_text(p->stream, &p->on_line, "\n"));
  ++p->in_row;
  return KORVO_ERR_OK;
}

template <class M>
code print(FILE* stream, const M* mat, const char* format, std::int32_t line_length, void* intrp_ptr) {
  constexpr double heading_cost = 30010.0;
  constexpr std::int32_t usual_line_length = 75;
  TRY(valid(mat));
  text_guard guard;
  TRY(guard.enter(stream));
  printing p{stream,
             format ? format : text_form<M>::format,
             {},
             line_length < 1 ? usual_line_length : line_length,
             width_of_row_numbers(mat->nrow)};
  if (!find_conversion<element<M>>(p.format, &p.element)) return KORVO_ERR_ILLEGAL_VALUE;

  checkpoint cost(intrp_ptr, heading_cost);
  std::int64_t written = 0;
  TRY(write_text(stream, &written, "%s Matrix: nrow=%ld, ncol=%ld  {\n", text_form<M>::word, long{mat->nrow},
                 long{mat->ncol}));
  for (std::int32_t i = 0; i < mat->nrow; ++i) {
    TRY(print_row(&p, i, mat->data + std::int64_t{i} * mat->ncol, mat->ncol));
    TRY(cost.add(character_cost * static_cast<double>(p.in_row)));
  }
  return write_text(stream, &written, "}\n");
}

}  // namespace
}  // namespace korvo

using namespace korvo;

#define PRINT(name, M)                                                                              \
  code name(FILE* stream, const M* mat, const char* format, int32_t line_length, void* intrp_ptr) { \
    return print(stream, mat, format, line_length, intrp_ptr);                                      \
  }

extern "C" {

PRINT(matu8_print, _u8_mat)
PRINT(matu16_print, _u16_mat)
PRINT(matu32_print, _u32_mat)
PRINT(mats16_print, _s16_mat)
PRINT(mats32_print, _s32_mat)
PRINT(matflt_print, _flt_mat)
PRINT(matdbl_print, _dbl_mat)

code matuniv_print(FILE* stream, const _univ_mat* mat, const char* format, int32_t line_length,
                   void* intrp_ptr) {
  if (!mat) return KORVO_ERR_NULL_POINTER;
  return dispatch(mat->type, real_records{}, [&]<class M> {
    const M typed = as<M>(*mat);
    return print(stream, &typed, format, line_length, intrp_ptr);
  });
}

}  // extern "C"

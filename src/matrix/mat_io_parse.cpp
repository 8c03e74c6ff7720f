// Matrices from printed text: parse.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/temporary.hpp"
#include "korvos/matrix/mat_io.h"
#include "matrix/mat_io.hpp"

namespace korvo {
namespace {

bool fits_32_bits(std::int64_t x) {
  return x >= std::numeric_limits<std::int32_t>::min() && x <= std::numeric_limits<std::int32_t>::max();
}

template <class M>
code parse_heading(FILE* stream, std::int64_t* rows, std::int64_t* cols) {
  TRY(match(stream, " "));  // the end of the line that another matrix has closed
  TRY(match(stream, text_form<M>::word));
  TRY(match(stream, " Matrix: nrow="));
  TRY(scan(stream, rows));
  TRY(match(stream, ", ncol="));
  return scan(stream, cols);
}

// Shapes come from files: all is formed in 64 bits, before anything is allocated.
template <class M>
code check_shape(std::int64_t rows, std::int64_t cols) {
  if (!fits_32_bits(rows) || !fits_32_bits(cols)) return KORVO_ERR_ILLEGAL_VALUE;
  if (rows < 1 || cols < 1) return KORVO_ERR_ILLEGAL_SIZE;
  constexpr auto element_size = static_cast<std::int64_t>(sizeof(element<M>));
  return rows * cols > largest_size / element_size ? KORVO_ERR_ILLEGAL_VALUE : KORVO_ERR_OK;
}

code parse_label(FILE* stream) {
  std::int64_t row = 0;
  TRY(match(stream, " Row[ "));
  TRY(scan(stream, &row));
  return match(stream, " ]: ");
}

template <class M>
code parse_row(FILE* stream, element<M>* elements, std::int32_t count) {
  (void)parse_label(stream);  // without a label the elements follow at once, or are found missing
  for (std::int32_t j = 0; j < count; ++j) {
    typename text_form<M>::kept number{};
    TRY(scan_element<M>(stream, after_number::one_separator, &number));
    if (!in_range<M>(number)) return KORVO_ERR_ILLEGAL_VALUE;
    elements[j] = static_cast<element<M>>(number);
  }
  return KORVO_ERR_OK;
}

template <class M>
code parse(FILE* stream, void* intrp_ptr, M* mat) {
  constexpr double row_cost = 10000.0;
  if (!stream || !mat) return KORVO_ERR_NULL_POINTER;
  mat->data = nullptr;
  text_guard guard;
  TRY(guard.enter(stream));
  std::int64_t rows = 0;
  std::int64_t cols = 0;
  TRY(parse_heading<M>(stream, &rows, &cols));
  TRY(check_shape<M>(rows, cols));
  (void)match(stream, " {");  // the sizes are what counts

  temporary<M> made;
  TRY(made.make(rows, cols));
  checkpoint cost(intrp_ptr);
  for (std::int32_t i = 0; i < made.nrow; ++i) {
    TRY(parse_row<M>(stream, made.data + std::int64_t{i} * made.ncol, made.ncol));
    TRY(cost.add(row_cost));
  }
  TRY(match(stream, " }"));
  *mat = made;
  made.data = nullptr;
  return KORVO_ERR_OK;
}

constexpr int longest_word = 100;

// The next word, which the stream still holds afterwards.
code peek_word(FILE* stream, char (&word)[longest_word + 1]) {
  text_guard guard;
  TRY(guard.enter(stream));
  std::fpos_t start;
  if (std::fgetpos(stream, &start) != 0) return KORVO_ERR_IO;
  const bool found = std::fscanf(stream, "%100s", word) == 1 && std::ferror(stream) == 0;
  static_assert(longest_word == 100);
  return std::fsetpos(stream, &start) == 0 && found ? KORVO_ERR_OK : KORVO_ERR_IO;
}

template <class... M>
code type_of(const char* word, records<M...> /*list*/, _korvo_type* type) {
  const bool found = ((std::strcmp(word, text_form<M>::word) == 0 && (*type = tag<M>::type, true)) || ...);
  return found ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_TYPE;
}

}  // namespace
}  // namespace korvo

using namespace korvo;

#define PARSE(name, M) \
  code name(FILE* stream, void* intrp_ptr, M* mat) { return parse(stream, intrp_ptr, mat); }

extern "C" {

PARSE(matu8_parse, _u8_mat)
PARSE(matu16_parse, _u16_mat)
PARSE(matu32_parse, _u32_mat)
PARSE(mats16_parse, _s16_mat)
PARSE(mats32_parse, _s32_mat)
PARSE(matflt_parse, _flt_mat)
PARSE(matdbl_parse, _dbl_mat)

code matuniv_parse(FILE* stream, void* intrp_ptr, _univ_mat* mat) {
  if (!stream || !mat) return KORVO_ERR_NULL_POINTER;
  mat->data = nullptr;
  char word[longest_word + 1];
  TRY(peek_word(stream, word));
  TRY(type_of(word, real_records{}, &mat->type));
  return dispatch(mat->type, real_records{}, [&]<class M> {
    M typed{};
    TRY(parse(stream, intrp_ptr, &typed));
    give_back(typed, mat);
    return KORVO_ERR_OK;
  });
}

}  // extern "C"

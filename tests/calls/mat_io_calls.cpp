#include "korvos/matrix/mat_io.h"
#include "tests/calls/calls.hpp"

namespace {

std::string printed(const std::string& type_word) {
  return type_word + " Matrix: nrow=3, ncol=2  {\n    Row[0]:  1 2\n    Row[1]:  3 4\n    Row[2]:  5 6\n}\n";
}

// As many numbers as a matrix has elements.
std::string list(const std::string& separator) {
  std::string numbers;
  for (int i = 0; i < given{}.rows * given{}.cols; ++i) numbers += std::to_string(i % 10) + separator;
  return numbers;
}

// More bytes than are skipped and read.
std::string raw_bytes() { return list(" and ") + std::string(400, '?'); }

}  // namespace

#define PARSE(type, word) \
  ROW(mat##type##_parse, args().reading(printed(word)).making().refusing({null(0), no_stream()}))
#define PARSE_ROWS                                                                                            \
  PARSE(u8, "uint8"), PARSE(u16, "uint16"), PARSE(u32, "uint32"), PARSE(s16, "sint16"), PARSE(s32, "sint32"), \
      PARSE(flt, "float"), PARSE(dbl, "double"), PARSE(univ, "double")

call_rows mat_io_calls() {
  const faults refused = checked(1, {no_stream()}, true);
  return {
      REAL_ROWS(print, args(30).refusing(refused)),
      PARSE_ROWS,
      REAL_ROWS(write_ascii, args(40).with(", ").refusing(refused)),
      REAL_ROWS(read_ascii, args(';', '#').reading(list(" ; # remark\n")).refusing(refused)),
      REAL_ROWS(write_raw, args(1).refusing({null(0), no_stream(), miscounted(0)})),
      REAL_ROWS(read_raw,
                args(7, 1).reading(raw_bytes()).refusing(checked(1, {no_stream(), valued(0, -1)}, true))),
  };
}

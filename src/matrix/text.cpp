// Text on a caller's stream: locale and lock, separators, literals, numbers, formatted output, blocks.
#include "matrix/text.hpp"

#include <cstdarg>
#include <limits>

namespace korvo {
namespace {

bool failed(FILE* stream) { return ::ferror_unlocked(stream) != 0; }

bool is_white(int c) { return c == ' ' || (c >= '\t' && c <= '\r'); }  // isspace() of the "C" locale
bool is_digit(int c) { return c >= '0' && c <= '9'; }

int after_white_space(FILE* stream) {
  int c = getc_unlocked(stream);
  while (is_white(c)) c = getc_unlocked(stream);
  return c;
}

code push_back(FILE* stream, int c) {
  return c == EOF || std::ungetc(c, stream) == c ? KORVO_ERR_OK : KORVO_ERR_IO;
}

struct whole_number {
  bool negative;
  bool saturated;  // the magnitude does not fit and is the largest
  std::uint64_t magnitude;
};

// By hand: the formatted scanner leaves a number that does not fit undefined, and takes three times as long.
code scan_whole(FILE* stream, after_number after, whole_number* number) {
  int c = after_white_space(stream);
  const bool negative = c == '-';
  if (negative || c == '+') c = getc_unlocked(stream);
  const bool found = is_digit(c);
  bool saturated = false;
  std::uint64_t magnitude = 0;
  for (; is_digit(c); c = getc_unlocked(stream)) {
    saturated |= __builtin_mul_overflow(magnitude, std::uint64_t{10}, &magnitude);
    saturated |= __builtin_add_overflow(magnitude, static_cast<std::uint64_t>(c - '0'), &magnitude);
  }
  *number = {negative, saturated, saturated ? std::numeric_limits<std::uint64_t>::max() : magnitude};
  if (after == after_number::nothing || !is_white(c)) TRY(push_back(stream, c));
  return found && !failed(stream) ? KORVO_ERR_OK : KORVO_ERR_IO;
}

}  // namespace

text_guard::~text_guard() {
  if (!locale_) return;
  ::funlockfile(stream_);
  ::uselocale(before_);
  ::freelocale(locale_);
}

code text_guard::enter(FILE* stream) {
  if (!stream) return KORVO_ERR_NULL_POINTER;
  locale_ = ::newlocale(LC_ALL_MASK, "C", nullptr);
  if (!locale_) return KORVO_ERR_MALLOC;
  before_ = ::uselocale(locale_);
  stream_ = stream;
  ::flockfile(stream);
  return KORVO_ERR_OK;
}

code skip_separators(FILE* stream, char delimiter, char comment) {
  text_guard guard;
  TRY(guard.enter(stream));
  const int separator = static_cast<unsigned char>(delimiter);
  const int remark = static_cast<unsigned char>(comment);
  for (;;) {
    int c = getc_unlocked(stream);
    if (c == EOF) return KORVO_ERR_IO;
    if (is_white(c) || (separator != 0 && c == separator)) continue;
    if (remark == 0 || c != remark) return push_back(stream, c);
    while (c != '\n')
      if ((c = getc_unlocked(stream)) == EOF) return KORVO_ERR_IO;
  }
}

code match(FILE* stream, const char* text) {
  for (; *text; ++text) {
    const bool any_white_space = is_white(static_cast<unsigned char>(*text));
    const int c = any_white_space ? after_white_space(stream) : getc_unlocked(stream);
    if (!any_white_space && c == static_cast<unsigned char>(*text)) continue;
    TRY(push_back(stream, c));
    if (!any_white_space) return KORVO_ERR_IO;
  }
  return failed(stream) ? KORVO_ERR_IO : KORVO_ERR_OK;
}

code scan(FILE* stream, std::int64_t* number, after_number after) {
  constexpr std::uint64_t highest = std::numeric_limits<std::int64_t>::max();
  whole_number whole;
  TRY(scan_whole(stream, after, &whole));
  if (whole.magnitude <= highest)
    *number = static_cast<std::int64_t>(whole.negative ? 0 - whole.magnitude : whole.magnitude);
  else
    *number =
        whole.negative ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
  return KORVO_ERR_OK;
}

code scan(FILE* stream, std::uint64_t* number, after_number after) {
  whole_number whole;
  TRY(scan_whole(stream, after, &whole));
  *number = whole.negative && !whole.saturated ? 0 - whole.magnitude : whole.magnitude;
  return KORVO_ERR_OK;
}

code scan(FILE* stream, float* number, after_number /*after*/) {
  return std::fscanf(stream, "%g", number) == 1 && !failed(stream) ? KORVO_ERR_OK : KORVO_ERR_IO;
}

code scan(FILE* stream, double* number, after_number /*after*/) {
  return std::fscanf(stream, "%lg", number) == 1 && !failed(stream) ? KORVO_ERR_OK : KORVO_ERR_IO;
}

code write_text(FILE* stream, std::int64_t* written, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const int count = std::vfprintf(stream, format, arguments);
  va_end(arguments);
  *written = count;
  return count < 0 || failed(stream) ? KORVO_ERR_IO : KORVO_ERR_OK;
}

// The count alone does not tell: data that reached a buffer which could not be written out counts as written.
code write_block(FILE* stream, const void* block, std::size_t size) {
  return std::fwrite(block, 1, size, stream) == size && std::ferror(stream) == 0 ? KORVO_ERR_OK : KORVO_ERR_IO;
}

code read_block(FILE* stream, void* block, std::size_t size) {
  return std::fread(block, 1, size, stream) == size && std::ferror(stream) == 0 ? KORVO_ERR_OK : KORVO_ERR_IO;
}

}  // namespace korvo

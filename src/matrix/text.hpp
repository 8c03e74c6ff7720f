// Text on a caller's stream: the words that matrix files and image files are read and written with.
//
// Unless it says otherwise a word is used within a text_guard of its stream.
#pragma once

#include <locale.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <utility>

#include "core/checkpoint.hpp"
#include "core/code.hpp"

namespace korvo {

// Holds the lock of a stream, and the calling thread in the "C" locale: numbers in files look the same whatever
// the host has set. Both end with the guard.
class text_guard {
 public:
  text_guard() = default;
  text_guard(const text_guard&) = delete;
  text_guard& operator=(const text_guard&) = delete;
  ~text_guard();

  // Once, before anything else is done with it: KORVO_ERR_MALLOC if there is no memory for the locale.
  [[nodiscard]] code enter(FILE* stream);

 private:
  FILE* stream_ = nullptr;
  locale_t locale_ = nullptr;
  locale_t before_ = nullptr;
};

// Passes white space, delimiters and comments, which run to the end of their line, and stops at anything else.
// A zero character is none. KORVO_ERR_IO at the end of the stream. Needs no guard.
[[nodiscard]] code skip_separators(FILE* stream, char delimiter, char comment);

// Passes a text as a scan format does: a blank in it stands for any run of white space, none included, and
// every other character for itself. KORVO_ERR_IO where the stream holds something else, from there on unread.
[[nodiscard]] code match(FILE* stream, const char* text);

// What may be read past a number.
enum class after_number {
  nothing,       // the character that ends it is pushed back
  one_separator  // one character of white space may go with it, where that is passed next anyway: much faster
};

// One number, as "%ld", "%lu", "%g" and "%lg" read it: white space, then the longest run that can be one; the
// character after it stays. Whole numbers out of the range of 64 bits saturate as strtol() has it. KORVO_ERR_IO
// if there is none, or if the stream's error indicator is set.
[[nodiscard]] code scan(FILE* stream, std::int64_t* number, after_number after = after_number::nothing);
[[nodiscard]] code scan(FILE* stream, std::uint64_t* number, after_number after = after_number::nothing);
[[nodiscard]] code scan(FILE* stream, float* number, after_number after = after_number::nothing);
[[nodiscard]] code scan(FILE* stream, double* number, after_number after = after_number::nothing);

// Formatted output; *written becomes the count of its characters. KORVO_ERR_IO if the stream fails.
[[nodiscard, gnu::format(printf, 3, 4)]] code write_text(FILE* stream, std::int64_t* written,
                                                         const char* format, ...);

// All of a block, or KORVO_ERR_IO. No guard is needed for these two.
[[nodiscard]] code write_block(FILE* stream, const void* block, std::size_t size);
[[nodiscard]] code read_block(FILE* stream, void* block, std::size_t size);

// The cost of a character that is written or read.
constexpr double character_cost = 1000.0;

// How a list is set in lines.
struct list_lines {
  const char* delimiter;     // after each item but the last; null is a single blank
  std::uint16_t length;      // a line is ended when the next item might not fit
  std::int32_t item_length;  // the longest that is reckoned with
};

constexpr int longest_item = 32;  // in fact

// A delimiter that is copied in one store, unless it is long.
struct delimiter_text {
  explicit delimiter_text(const char* given) : text(given ? given : " "), size(std::strlen(text)) {
    std::memcpy(start, text, std::min(size, sizeof start));
  }
  bool is_short() const { return size <= sizeof start; }

  const char* text;
  std::size_t size;
  char start[8] = {};
};

// Writes the items of a list, lines ended by "\n": `put(to, i)` sets item i, at most longest_item characters,
// and returns how many they are, or a negative number if it cannot. The tally counts every character; it is
// tested after each line, when the stream has all of it.
template <class F>
[[nodiscard]] code write_list(FILE* stream, std::int32_t count, const list_lines& lines, void* intrp_ptr,
                              F put) {
  const delimiter_text delimiter(lines.delimiter);
  const auto gap = static_cast<std::int64_t>(delimiter.size);
  checkpoint cost(intrp_ptr);
  char buffer[4096];
  char* const full = buffer + sizeof buffer - (longest_item + sizeof delimiter.start + 1);
  char* end = buffer;
  std::int64_t on_line = 0;
  const auto flush = [&] {
    return write_block(stream, buffer, static_cast<std::size_t>(std::exchange(end, buffer) - buffer));
  };
  const auto end_line = [&] {
    *end++ = '\n';
    TRY(flush());
    return cost.add(character_cost * static_cast<double>(std::exchange(on_line, 0) + 1));
  };
  for (std::int32_t i = 0; i < count; ++i) {
    if (lines.length < on_line + gap + lines.item_length) TRY(end_line());
    const int length = put(end, i);
    if (length < 0) return KORVO_ERR_IO;
    end += length;
    on_line += length;
    if (i + 1 == count) break;
    if (delimiter.is_short()) {
      std::memcpy(end, delimiter.start, sizeof delimiter.start);
      end += gap;
    } else {
      TRY(flush());
      TRY(write_block(stream, delimiter.text, delimiter.size));
    }
    on_line += gap;
    if (end > full) TRY(flush());
  }
  return end_line();
}

}  // namespace korvo

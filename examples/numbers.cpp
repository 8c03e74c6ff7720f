// Reads numbers line by line.
#include "numbers.hpp"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <optional>
#include <string_view>

#include "words.hpp"

namespace demo {
namespace {

constexpr std::size_t longest_line = 4096;
constexpr double largest = 1e100;  // squares and their sums stay finite

// The next line without its end; nothing after the last one.
std::optional<std::string> next_line(FILE* stream) {
  std::string line;
  for (int letter = std::fgetc(stream); letter != EOF; letter = std::fgetc(stream)) {
    if (letter == '\n') return line;
    if (line.size() == longest_line)
      throw failure("longer than " + std::to_string(longest_line) + " characters");
    line.push_back(static_cast<char>(letter));
  }
  if (std::ferror(stream) != 0) throw failure(std::strerror(errno));
  if (line.empty()) return std::nullopt;
  return line;
}

std::string_view trimmed(std::string_view text) {
  constexpr const char* blanks = " \t\r\f\v";
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
  return text.substr(0, text.find_last_not_of(blanks) + 1);
}

// As it can be shown in a message.
std::string shown(std::string_view text) {
  constexpr std::size_t longest = 24;
  std::string out(text.substr(0, longest));
  for (char& letter : out)
    if (letter < ' ' || letter > '~') letter = '?';
  return out + (text.size() > longest ? "..." : "");
}

double number_in(std::string_view text) {
  const std::string_view digits = text.substr(text.starts_with('+') ? 1 : 0);
  double value = 0.0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  const bool is_number = error != std::errc::invalid_argument && end == digits.data() + digits.size();
  if (!is_number || std::isnan(value)) throw failure("not a number: " + shown(text));
  if (error == std::errc::result_out_of_range || std::fabs(value) > largest)
    throw failure("out of range, which ends at 1e100: " + shown(text));
  return value;
}

}  // namespace

std::vector<double> read_numbers(const std::string& path, std::size_t fewest, std::size_t most) {
  const file stream = open(path, "rb");
  std::vector<double> out;
  for (std::size_t number = 1;; ++number) {
    const auto line = named("line " + std::to_string(number), [&] { return next_line(stream.get()); });
    if (!line) break;
    const std::string_view text = trimmed(*line);
    if (text.empty() || text.starts_with('#')) continue;
    if (out.size() == most)
      throw failure("line " + std::to_string(number) + ": more than " + std::to_string(most) + " numbers");
    out.push_back(named("line " + std::to_string(number), [&] { return number_in(text); }));
  }
  if (out.size() < fewest)
    throw failure(std::to_string(out.size()) + " numbers; at least " + std::to_string(fewest) + " are needed");
  return out;
}

}  // namespace demo

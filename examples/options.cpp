// Reads the command line.
#include "options.hpp"

#include <charconv>
#include <cstddef>
#include <string_view>
#include <vector>

namespace demo {
namespace {

std::optional<double> milliseconds(std::string_view text) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size() || value < 0) return std::nullopt;
  return value;
}

}  // namespace

std::optional<options> parse(int argc, char** argv) {
  const std::vector<std::string_view> words(argv + 1, argv + argc);
  options result;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const bool has_value = i + 1 < words.size();
    if (words[i] == "--help" || words[i] == "-h") {
      result.help = true;
    } else if (words[i] == "--out" && has_value) {
      result.directory = words[++i];
    } else if (words[i] == "--signal" && has_value) {
      result.signal = words[++i];
    } else if (words[i] == "--stop-after" && has_value) {
      result.stop_after = milliseconds(words[++i]);
      if (!result.stop_after) return std::nullopt;
    } else if (!words[i].starts_with('-') && result.picture.empty()) {
      result.picture = words[i];
    } else {
      return std::nullopt;
    }
  }
  return result;
}

}  // namespace demo

// The command line.
#pragma once

#include <optional>
#include <string>

namespace demo {

struct options {
  std::string picture;  // empty: the built-in one
  std::string signal;   // empty: the built-in one
  std::string directory = "build/demo";
  std::optional<double> stop_after;  // milliseconds
  bool help = false;
};

constexpr const char* usage =
    "usage: ./dev demo [FILE.pgm|FILE.ppm] [--signal FILE.txt] [--stop-after MS] [--out DIRECTORY]";

// Nothing if the command line is not as `usage` says.
std::optional<options> parse(int argc, char** argv);

}  // namespace demo

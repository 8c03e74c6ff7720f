// Text files with one number a line.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace demo {

// Blank lines and lines that start with # do not count. Fewer than `fewest` numbers, more than `most` of them,
// and lines that are no number are refused, with the line in the message.
std::vector<double> read_numbers(const std::string& path, std::size_t fewest, std::size_t most);

}  // namespace demo

// The table that the demonstration prints.
#pragma once

#include <cstdint>
#include <string>

#include "words.hpp"

namespace demo {

void print_columns();
void print_heading(const std::string& text);
void print_row(const std::string& step, const _univ_mat& result, double milliseconds);
void print_row(const std::string& step, const _mat_set& result, double milliseconds);

// FNV-1a of the bytes of all elements, so that runs can be compared.
std::uint64_t checksum(const _univ_mat& mat);
std::uint64_t checksum(const _mat_set& set);

}  // namespace demo

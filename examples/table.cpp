// Prints the table row by row, so that a long run can be watched.
#include "table.hpp"

#include <array>
#include <cinttypes>
#include <cstddef>
#include <cstdio>

namespace demo {
namespace {

struct element_type {
  const char* name;
  std::size_t size;
};
constexpr std::array<element_type, 9> element_types{{{"u8", 1},
                                                     {"s8", 1},
                                                     {"u16", 2},
                                                     {"s16", 2},
                                                     {"u32", 4},
                                                     {"s32", 4},
                                                     {"flt", 4},
                                                     {"dbl", 8},
                                                     {"cpx", 16}}};

const element_type& type_of(const _univ_mat& mat) {
  return element_types.at(static_cast<std::size_t>(mat.type));
}

std::string shape_of(const _univ_mat& mat) {
  return std::to_string(mat.nrow) + " x " + std::to_string(mat.ncol);
}

constexpr std::uint64_t fnv_start = 14695981039346656037U, fnv_factor = 1099511628211U;

std::uint64_t follow(std::uint64_t sum, const _univ_mat& mat) {
  const auto* const bytes = static_cast<const unsigned char*>(mat.data);
  const std::size_t count = static_cast<std::size_t>(mat.nelem) * type_of(mat).size;
  for (std::size_t i = 0; i < count; ++i) sum = (sum ^ bytes[i]) * fnv_factor;
  return sum;
}

void print(const std::string& step, const std::string& shape, const _univ_mat& first, double milliseconds,
           std::uint64_t sum) {
  std::printf("  %-34s %16s  %-4s %9.2f  %016" PRIx64 "\n", step.c_str(), shape.c_str(), type_of(first).name,
              milliseconds, sum);
}

}  // namespace

void print_columns() { std::printf("  %-34s %16s  %-4s %9s  %s\n", "step", "shape", "type", "ms", "checksum"); }

void print_heading(const std::string& text) { std::printf("%s\n", text.c_str()); }

void print_row(const std::string& step, const _univ_mat& result, double milliseconds) {
  print(step, shape_of(result), result, milliseconds, checksum(result));
}

void print_row(const std::string& step, const _mat_set& result, double milliseconds) {
  print(step, std::to_string(result.nmat) + " x " + shape_of(result.mats[0]), result.mats[0], milliseconds,
        checksum(result));
}

std::uint64_t checksum(const _univ_mat& mat) { return follow(fnv_start, mat); }

std::uint64_t checksum(const _mat_set& set) {
  std::uint64_t sum = fnv_start;
  for (std::int32_t k = 0; k < set.nmat; ++k) sum = follow(sum, set.mats[k]);
  return sum;
}

}  // namespace demo

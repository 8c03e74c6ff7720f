// The Hartley transform in place, which the transforms of sig_pow2.cpp are laid around.
#pragma once

#include <cstdint>

#include "core/code.hpp"

namespace korvo {

// Transforms the n numbers at x, n a power of two, scaled by 1 / sqrt(n). The table has room for n / 2 numbers;
// its first one says which n it was made for, and a table for another n is made anew. Lengths below 8 leave it
// alone.
[[nodiscard]] code hartley(double* x, std::int64_t n, double* table, void* intrp_ptr);

}  // namespace korvo

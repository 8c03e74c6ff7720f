// Pictures in another size, down to a single mean.
#pragma once

#include <cstdint>

#include "words.hpp"

namespace demo {

// Every pixel becomes the mean of what it covers of the old picture, in dbl; whole multiples repeat pixels.
matrix scaled(const _univ_mat& in, std::int32_t rows, std::int32_t cols);
planes scaled(const _mat_set& in, std::int32_t rows, std::int32_t cols);

double mean(const _univ_mat& in);

// Reduced by a whole number, if a side is longer than `longest`; in dbl.
planes limited(const _mat_set& in, std::int32_t longest);

// As large as fits into rows by cols, with its proportions kept.
planes fitted(const _mat_set& in, std::int32_t rows, std::int32_t cols);

}  // namespace demo

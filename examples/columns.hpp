// Series as columns of matrices, and their Fourier transforms.
#pragma once

#include <cstdint>

#include "words.hpp"

namespace demo {

// A symmetric Hanning window as a column.
matrix hanning(std::int32_t count);

// Zeros below, up to so many rows.
matrix padded_below(const _univ_mat& in, std::int32_t rows);

// Down each column; dbl or cpx becomes cpx.
matrix fourier(const _univ_mat& in);
matrix inverse_fourier(const _univ_mat& in);

// |z|^2 of each element of a cpx matrix.
matrix power(const _univ_mat& in);

// 10 log10 of each element over the reference; at least -300.
matrix decibels(const _univ_mat& power, double reference);

double greatest(const _univ_mat& in);

}  // namespace demo

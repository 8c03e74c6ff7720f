// Householder transformations and Givens rotations, on arrays whose elements are counted from 1.
#pragma once

#include <cstdint>

namespace korvo {

enum class householder_mode { construct_and_apply = 1, apply = 2 };

// The reflection that turns elements `first` to `last` of a vector to 0 and leaves all others but `pivot` as
// they are; `u` is that vector and becomes the one that defines the reflection, with *up in the place of its
// pivot. Applied to `count` vectors in c, whose elements lie element_stride and which lie vector_stride apart;
// c points at element 1 of the first.
void localfn_mat_householder(householder_mode mode, std::int64_t pivot, std::int64_t first, std::int64_t last,
                             double* u, double* up, double* c, std::int64_t element_stride,
                             std::int64_t vector_stride, std::int64_t count);

// The rotation that turns (a, b) to (length, 0); of zeros the quarter turn.
void localfn_mat_givens_construct(double a, double b, double* c, double* s, double* length);

// Turns a pair of values in place.
void localfn_mat_givens_apply(double c, double s, double* z1, double* z2);

}  // namespace korvo

/* SPDX-License-Identifier: MIT */
/** @file sig_pow2.h  Hartley and cosine transforms of vectors whose length is a power of two.
 *
 *  Real arithmetic only, O(N log N), after the split-radix algorithm of H. V. Sorensen, D. L. Jones, C. S.
 *  Burrus and M. T. Heideman, "On computing the discrete Hartley transform" (1985), decimated in frequency.
 *  Each stage divides by sqrt(2), so the transform is scaled by 1 / sqrt(N) as it goes. Rows and columns are
 *  treated alike. `out` may be `in`: each vector is read to its end before anything is written in its place.
 *
 *  Checks, in order:
 *
 *  - KORVO_ERR_NULL_POINTER: (universal) a matrix is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) a matrix is not KORVO_DOUBLE.
 *  - the codes of `validate` for `in`, `out`.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ; more than one element, and not a vector (but for 2d), or a
 *    length that is no power of two.
 *  - KORVO_ERR_MALLOC: no memory for the table of cosines (N / 2 numbers for Hartley, 3 N / 2 for the cosine
 *    transforms) or for a temporary.
 *  - KORVO_ERR_INTERRUPT: the host stopped the call; `out` is then of no use.
 *
 *  One element is copied, without a poll. Lengths 2 and 4 have closed forms, which cost nothing. For longer
 *  ones the Hartley transform runs stages of n = N, N / 2, .. 4 elements a group and a last one of pairs. A
 *  group costs 40 and 120 for each whole 16 of its n elements, a pair 20, each followed by a poll; each stage
 *  then counts 5 N more, which the next poll sees. */
#ifndef KORVOS_SIGNAL_SIG_POW2_H
#define KORVOS_SIGNAL_SIG_POW2_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** @name transform_hartley
 *  The discrete Hartley transform, which is its own inverse:
 *
 *      out[k] = 1 / sqrt(N) * sum over j of in[j] * (cos(2 pi j k / N) + sin(2 pi j k / N)) */
/** @{ */
KORVO_API _korvo_errcode sigdbl_transform_hartley(const _dbl_mat* in, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_transform_hartley(const _univ_mat* in, void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name transform_discrete_cosine_II_pow2
 *  A cosine transform by way of a Hartley transform. With h = N / 2, for i below h, t = i pi / (2 N),
 *
 *      A[i] = (cos t - sin t) / sqrt(2),  B[i] = (sin t + cos t) / sqrt(2)
 *      u[i] = in[2 i],  u[h + i] = in[N - 1 - 2 i],  v = hartley(u)
 *      out[0] = v[0],  out[h] = v[h],  and for i from 1 to h - 1
 *      out[i] = v[1] A[i] + v[N - i] B[i],  out[N - i] = v[1] B[i] - v[N - i] A[i]
 *
 *  It is v[1] in each of the last lines, whatever i. So up to length 4 this is the orthogonal DCT-II but for
 *  the scale of out[0] and out[h], and the inverse gives back the input; for longer vectors neither holds.
 *
 *  Cost 20 h and a poll, before the Hartley transform, which has a tally of its own, and again after it. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_transform_discrete_cosine_II_pow2(const _dbl_mat* in, void* intrp_ptr,
                                                                  _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_transform_discrete_cosine_II_pow2(const _univ_mat* in, void* intrp_ptr,
                                                                   _univ_mat* out);
/** @} */

/** @name transform_discrete_cosine_II_inverse_pow2
 *  The inverse of the cosine transform that the rotations above give with v[i] in the place of v[1]:
 *
 *      u[0] = in[0],  u[h] = in[h],  and for i from 1 to h - 1
 *      u[i] = in[i] A[i] + in[N - i] B[i],  u[N - i] = in[i] B[i] - in[N - i] A[i]
 *      v = hartley(u),  out[2 i] = v[i],  out[N - 1 - 2 i] = v[h + i]
 *
 *  Cost and polls as above. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_transform_discrete_cosine_II_inverse_pow2(const _dbl_mat* in, void* intrp_ptr,
                                                                          _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_transform_discrete_cosine_II_inverse_pow2(const _univ_mat* in, void* intrp_ptr,
                                                                           _univ_mat* out);
/** @} */

/** @name transform_discrete_cosine_II_2d_pow2
 *  The cosine transform of each row and then of each column, or for `inverse` other than 0 the inverse of each
 *  column and then of each row. Both sizes are powers of two, and 1 is one: a vector is allowed.
 *
 *  Costs and polls are those of each vector of more than one element, each with a tally of its own, and of
 *  matdbl_transpose() before and after the columns. Memory: a transposed copy and, for each direction, a table
 *  and a vector. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_transform_discrete_cosine_II_2d_pow2(const _dbl_mat* in, uint8_t inverse,
                                                                     void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_transform_discrete_cosine_II_2d_pow2(const _univ_mat* in, uint8_t inverse,
                                                                      void* intrp_ptr, _univ_mat* out);
/** @} */

KORVO_END_DECLARATIONS

#endif

/* SPDX-License-Identifier: MIT */
/** @file sig_tran.h  Discrete Fourier transform of any length; discrete cosine transform of type II.
 *
 *  One engine serves all: the in-place mixed-radix fast Fourier transform (R. C. Singleton, 1969), for every
 *  length and not only powers of two, with butterflies of its own for the factors 2, 3, 4 and 5. Time grows
 *  with n * (sum of the prime factors of n): a prime length costs n * n. Nothing is planned or kept between
 *  calls.
 *
 *  **Transforms run down the columns**, each column by itself, with the same bits as it would have alone. Note
 *  what follows for a single row: to the Fourier routines it is `ncol` columns of length 1 and comes back
 *  unchanged; the cosine routines transform it along itself.
 *
 *  Memory: temporaries as large as the data (the cosine forms: two and four times, in complex numbers) and work
 *  arrays that grow with the largest factor and with the product of the square-free ones.
 *
 *  The engine polls before each butterfly, rotation, swap and step of a cycle, at the costs of the
 *  table below. **If the host stops it, the routine goes on as if nothing had happened and returns
 *  KORVO_ERR_OK, with a result that is transformed in part and not scaled.** Whoever stops a call knows it.
 *
 *  | step | cost |   | step | cost |
 *  |---|---|---|---|---|
 *  | set-up | 50 | | butterfly of 3 | 50 |
 *  | factors of sixteen, each | 50 | | butterfly of 4 | 100 |
 *  | trial of a square factor | 100 | | its twiddle | 50 |
 *  | trial of a factor | 50 | | butterfly of 5 | 100 |
 *  | table of factors, mirrored | 100 | | table for another factor p | 20 + p |
 *  | pass | 10 | | its pairs of outputs, each | 4 * (p - 1) |
 *  | butterfly of 2 without rotation | 15 | | rotation of an element (factors other than 2, 4) | 20 |
 *  | the same with rotation | 20 | | swap, or step of a cycle, in the permutation | 10 |
 *  | its mirrored index | 10 | | scaling, an element | 3 |
 *  | its twiddle | 25 | | | |
 *
 *  Twiddles are made anew for each group of columns that fits the cache together. */
#ifndef KORVOS_SIGNAL_SIG_TRAN_H
#define KORVOS_SIGNAL_SIG_TRAN_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** @name transform_discrete_fourier
 *  With n the rows of `in`, for each column:
 *
 *      forward   out(k) = sum over j of in(j) * exp(-2 pi i j k / n)
 *      inverse   out(j) = 1 / n * sum over k of in(k) * exp(+2 pi i j k / n)
 *
 *  `inverse` asks for the inverse if it is exactly 1; **any other byte, 2 or 255 too, is forward**. `in` may be
 *  `out`. The relative error (root mean square) is below 1e-14 up to n = 4096 and below 1e-13 up to 2^20. The
 *  dbl form first casts its input to cpx, and polls as matdbl_cast_to_cpx() does. Checks, in order:
 *
 *  - KORVO_ERR_NULL_POINTER: (universal) a matrix is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) `out` is not cpx, or `in` neither dbl nor cpx.
 *  - the codes of `validate` for `in`, `out`.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ.
 *  - KORVO_ERR_MALLOC: no memory for the temporaries. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_transform_discrete_fourier(const _dbl_mat* in, uint8_t inverse, void* intrp_ptr,
                                                           _cpx_mat* out);
KORVO_API _korvo_errcode sigcpx_transform_discrete_fourier(const _cpx_mat* in, uint8_t inverse, void* intrp_ptr,
                                                           _cpx_mat* out);
KORVO_API _korvo_errcode siguniv_transform_discrete_fourier(const _univ_mat* in, uint8_t inverse,
                                                            void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name transform_discrete_cosine_II, transform_discrete_cosine_II_inverse
 *  The orthonormal transform (N. Ahmed, T. Natarajan, K. R. Rao, 1974) of each column of n elements, **or of a
 *  single row along itself**:
 *
 *      forward   out(0) = 1 / sqrt(n) * sum of in(j)
 *                out(k) = sqrt(2 / n) * sum over j of in(j) * cos(pi (2 j + 1) k / (2 n))
 *      inverse   out(j) = in(0) / sqrt(n) + sqrt(2 / n) * sum over k >= 1 of in(k) * cos(pi (2 j + 1) k / (2
 *  n))
 *
 *  By way of Fourier transforms of 2 n and 4 n elements. `in` may be `out`; a single element is copied. Polls:
 *  those of matdbl_assign() and of the engine; in the forward form also, with r rows and c columns, a tally of
 *  3 * c for each of r rows, 2 * r, 3 * c and 3 * c again for each column, and 5 * r for each column of the
 *  result. Checks, in order:
 *
 *  - KORVO_ERR_NULL_POINTER: (universal) a matrix is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) a matrix is not dbl.
 *  - the codes of `validate` for `in`, `out`.
 *  - **KORVO_ERR_OK, with nothing done: the shapes differ.**
 *  - KORVO_ERR_MALLOC: no memory for the temporaries.
 *  - KORVO_ERR_INTERRUPT: stopped in the copy or in the polls of the forward form. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_transform_discrete_cosine_II(const _dbl_mat* in, void* intrp_ptr,
                                                             _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_transform_discrete_cosine_II(const _univ_mat* in, void* intrp_ptr,
                                                              _univ_mat* out);
KORVO_API _korvo_errcode sigdbl_transform_discrete_cosine_II_inverse(const _dbl_mat* in, void* intrp_ptr,
                                                                     _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_transform_discrete_cosine_II_inverse(const _univ_mat* in, void* intrp_ptr,
                                                                      _univ_mat* out);
/** @} */

/** @name transform_discrete_cosine_II_2d
 *  The same along rows and columns: forward the rows first, inverse the columns first. **Any `inverse` but 0 is
 *  the inverse**, unlike in the Fourier routines. `in` may be `out`; a single element is copied. Polls also as
 *  matdbl_transpose() does, twice. Checks, in order:
 *
 *  - KORVO_ERR_NULL_POINTER: (universal) a matrix is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) a matrix is not dbl.
 *  - the codes of `validate` for `in`, `out`.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ, or there are several elements in one row or in one column.
 *  - KORVO_ERR_MALLOC: no memory for the temporaries.
 *  - KORVO_ERR_INTERRUPT: stopped outside the engine. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_transform_discrete_cosine_II_2d(const _dbl_mat* in, uint8_t inverse,
                                                                void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_transform_discrete_cosine_II_2d(const _univ_mat* in, uint8_t inverse,
                                                                 void* intrp_ptr, _univ_mat* out);
/** @} */

KORVO_END_DECLARATIONS

#endif

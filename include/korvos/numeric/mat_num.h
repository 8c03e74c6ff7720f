/* SPDX-License-Identifier: MIT */
/** @file mat_num.h  Numerical linear algebra: LU decomposition, solution, inverse, non-negative least squares.
 *
 *  All numbers are binary64. Where a sum of products is taken away from an element, one product is taken away
 *  after the other. The universal forms do not cast: every matrix must be KORVO_DOUBLE, pivots KORVO_SINT32.
 *  Checks, in order:
 *
 *  - KORVO_ERR_NULL_POINTER: (universal) a matrix is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) a matrix has another type.
 *  - the codes of `validate` for each matrix, in the order of the arguments.
 *  - KORVO_ERR_ILLEGAL_SIZE: shapes do not agree.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: a result is the buffer of another argument, where it is not said that it may
 * be.
 *
 *  and then
 *
 *  - KORVO_ERR_MALLOC: no memory for a temporary.
 *  - KORVO_ERR_INTERRUPT: the host asked to stop; the result is written as far as the routine had come. */
#ifndef KORVOS_NUMERIC_MAT_NUM_H
#define KORVOS_NUMERIC_MAT_NUM_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** @name lu_decomposition
 *  Factors a square matrix, with its rows interchanged, into L U. `out` holds both, packed: U on and above the
 *  diagonal, L below it, without its diagonal of ones. Entry j of `pivots`, n by 1, is the row (from 0) that
 *  changed places with row j at step j; the factors are of use only together with it. `out` may be `in`.
 *
 *  The pivot of a column is the element that is largest in proportion to the largest element of its row, of
 *  equals the one in the lowest row (a NaN is never one). A pivot that is exactly 0 is replaced by 1e-20, so
 * that matrices without full rank are factored too; whether the factors are of use must be seen from the
 * residual.
 *
 *  Time grows with n^3. Cost 20 * n^2 a column, polled after each.
 *
 *  - KORVO_ERR_SINGULAR_MATRIX: a row holds zeros only. `out` is a copy of `in`.
 *
 *  Method: P. D. Crout (1941), with implicit scaling of rows. */
/** @{ */
KORVO_API _korvo_errcode matdbl_lu_decomposition(const _dbl_mat* in, void* intrp_ptr, _s32_mat* pivots,
                                                 _dbl_mat* out);
KORVO_API _korvo_errcode matuniv_lu_decomposition(const _univ_mat* in, void* intrp_ptr, _univ_mat* pivots,
                                                  _univ_mat* out);
/** @} */

/** @name lu_solve
 *  Solves A x = b from the factors of A and their pivots. `rhs` and `solution` are n by 1, and may be one.
 *  Elements of `rhs` (as the pivots order it) that are at most 1e-20 in size count as 0 until a larger one has
 *  been met.
 *
 *  Time grows with n^2. Cost (3 * n + 5) * n after the forward pass and 3 * n^2 after the backward one, polled
 *  after each.
 *
 *  - KORVO_ERR_OUT_OF_BOUNDS: a pivot is below 0 or not below n. Nothing has been written.
 *  - KORVO_ERR_ILLEGAL_VALUE: the diagonal of the factors has a 0. `solution` is written in part. */
/** @{ */
KORVO_API _korvo_errcode matdbl_lu_solve(const _dbl_mat* factors, const _dbl_mat* rhs, const _s32_mat* pivots,
                                         void* intrp_ptr, _dbl_mat* solution);
KORVO_API _korvo_errcode matuniv_lu_solve(const _univ_mat* factors, const _univ_mat* rhs,
                                          const _univ_mat* pivots, void* intrp_ptr, _univ_mat* solution);
/** @} */

/** @name inverse
 *  Factors a copy of a square matrix and solves for each column of the identity. `out` may be `in`. A matrix
 *  without full rank but without a row of zeros gives huge numbers, and success.
 *
 *  Time grows with n^3. Polls are those of the decomposition and then, for each column, those of
 *  matdbl_assign_scalar(), matdbl_lu_solve() and matdbl_assign_submat() on a column.
 *
 *  - KORVO_ERR_SINGULAR_MATRIX: a row holds zeros only. `out` is as it was. */
/** @{ */
KORVO_API _korvo_errcode matdbl_inverse(const _dbl_mat* in, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode matuniv_inverse(const _univ_mat* in, void* intrp_ptr, _univ_mat* out);
/** @} */

/** Non-negative least squares: the x >= 0 for which the Euclidean norm of A x - b is least. A is m by n; `b`
 * has m elements and `x` n, as a row or a column or in any other shape. A and b stay as they are.
 *
 *  An active set method: variables enter the positive set one by one, and leave it when they would become
 *  negative, while the triangular form of their columns is kept up to date by reflections and rotations.
 *
 *  Time of an iteration grows with m * n. Cost 10 * m * n an iteration, polled after each. A search for a
 *  variable that enters does not poll; it ends, and with it the routine, when one column has been found twice
 *  to depend on those of the positive set.
 *
 *  - KORVO_ERR_NOT_CONVERGING: more than 3 * n iterations. `x` is the last feasible point.
 *  - KORVO_ERR_INTERRUPT: the same of `x`.
 *  - KORVO_ERR_OUT_OF_BOUNDS: a set of variables is damaged, which no input can bring about.
 *
 *  Method: C. L. Lawson and R. J. Hanson, Solving Least Squares Problems, 1974. */
KORVO_API _korvo_errcode matdbl_non_negative_least_squares(const _dbl_mat* a, const _dbl_mat* b,
                                                           void* intrp_ptr, _dbl_mat* x);

KORVO_END_DECLARATIONS

#endif

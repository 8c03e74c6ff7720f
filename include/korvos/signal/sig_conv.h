/* SPDX-License-Identifier: MIT */
/** @file sig_conv.h  Direct convolution and correlation with steps, origins and boundary modes.
 *
 *  Every routine works on a whole matrix: one row, one column or a full array, with a kernel of any size,
 *  which may be larger than the matrix. The shape of `out` says how many positions are computed. Row i of
 *  `out` lies at row i * row_step of `in`, column j at column j * col_step; positions past the end are read
 *  under the boundary mode. Steps are at least 1 and origins from 1 to the kernel's size. No transform is
 *  involved: each element of `out` is one plain sum in the type of the element, rounded step by step;
 *  integers wrap in their width, and nothing saturates or scales. `in` and `kernel` may be one matrix;
 *  `out` may not overlap either.
 *
 *  Time grows with (elements of `out`) * (elements of `kernel`). No memory is allocated by the typed forms,
 *  but for the copy of a kernel in sigcpx_convolve(). Cost kr * kc * (columns of `in`) * 4 a row of `out`,
 *  for cpx * 8, with a kernel of kr by kc; polled after each row, and rows already done stay in `out`.
 *  Checks of the typed forms, in order:
 *
 *  - the codes of `validate` for `in`, `kernel`, `out`.
 *  - KORVO_ERR_ILLEGAL_SIZE: `out` has more rows or more columns than `in`.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `out` is the buffer of `in` or of `kernel`.
 *  - KORVO_ERR_ILLEGAL_VALUE: a step or an origin is below 1, or an origin is above the kernel's size.
 *  - KORVO_ERR_ILLEGAL_VALUE: `boundary` is none of the four; the first element of `out` has become 0.
 *
 *  In universal forms the type of `out` decides, and `in` and `kernel` are cast to it in temporaries, without
 *  clipping:
 *
 *  - KORVO_ERR_NULL_POINTER: a matrix is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: a floating operand and an integer `out`, a cast that does not exist, or no form
 *    for the type: s16 and flt have none.
 *  - KORVO_ERR_OVERFLOW: an element does not fit the type of `out`.
 *  - KORVO_ERR_MALLOC: no memory for a temporary. */
#ifndef KORVOS_SIGNAL_SIG_CONV_H
#define KORVOS_SIGNAL_SIG_CONV_H

#include "korvos/core/mat_set.h"

KORVO_BEGIN_DECLARATIONS

/** How positions outside a matrix are read, in each direction for itself. */
enum {
  SIG_BOUNDARY_ZERO = 0,     /**< the sample is 0; it is multiplied like any other, so 0 * infinity is NaN */
  SIG_BOUNDARY_PERIODIC = 1, /**< the matrix repeats: index modulo size */
  SIG_BOUNDARY_REFLECT = 2,  /**< the matrix is mirrored again and again, the edge sample repeating */
  SIG_BOUNDARY_CONTINUE = 3  /**< the edge sample goes on */
};

/** @name correlate
 *  With kr by kc the shape of `kernel`, and S reading `in` under the boundary mode,
 *
 *      out(i, j) = sum over r, c of S(i * row_step - (kr - row_origin) + r,
 *                                     j * col_step - (kc - col_origin) + c) * kernel(r, c)
 *
 *  begun at 0 and added in the order of r, then c. Kernel element (kr - row_origin, kc - col_origin) lies
 *  on the output position: with an origin equal to the kernel's size the kernel looks forward, with 1
 *  backward. The complex product is the plain one; the kernel is not conjugated. */
/** @{ */
KORVO_API _korvo_errcode sigu8_correlate(const _u8_mat* in, const _u8_mat* kernel, int32_t row_step,
                                         int32_t col_step, int32_t row_origin, int32_t col_origin,
                                         int32_t boundary, void* intrp_ptr, _u8_mat* out);
KORVO_API _korvo_errcode sigu16_correlate(const _u16_mat* in, const _u16_mat* kernel, int32_t row_step,
                                          int32_t col_step, int32_t row_origin, int32_t col_origin,
                                          int32_t boundary, void* intrp_ptr, _u16_mat* out);
KORVO_API _korvo_errcode sigu32_correlate(const _u32_mat* in, const _u32_mat* kernel, int32_t row_step,
                                          int32_t col_step, int32_t row_origin, int32_t col_origin,
                                          int32_t boundary, void* intrp_ptr, _u32_mat* out);
KORVO_API _korvo_errcode sigs32_correlate(const _s32_mat* in, const _s32_mat* kernel, int32_t row_step,
                                          int32_t col_step, int32_t row_origin, int32_t col_origin,
                                          int32_t boundary, void* intrp_ptr, _s32_mat* out);
KORVO_API _korvo_errcode sigdbl_correlate(const _dbl_mat* in, const _dbl_mat* kernel, int32_t row_step,
                                          int32_t col_step, int32_t row_origin, int32_t col_origin,
                                          int32_t boundary, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode sigcpx_correlate(const _cpx_mat* in, const _cpx_mat* kernel, int32_t row_step,
                                          int32_t col_step, int32_t row_origin, int32_t col_origin,
                                          int32_t boundary, void* intrp_ptr, _cpx_mat* out);
KORVO_API _korvo_errcode siguniv_correlate(const _univ_mat* in, const _univ_mat* kernel, int32_t row_step,
                                           int32_t col_step, int32_t row_origin, int32_t col_origin,
                                           int32_t boundary, void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name convolve
 *  The same samples, each multiplied by kernel(kr - 1 - r, kc - 1 - c): the origin counts on the positions of
 *  the input, not on the flipped kernel.
 *
 *  The complex form validates `kernel` before all else, flips a copy of it, polls for that as flip_up_down
 *  and flip_left_right do, and then checks and correlates as sigcpx_correlate(); the buffer that `out` must
 *  not be is that of `kernel` itself.
 *  - KORVO_ERR_MALLOC: (complex) no memory for the copy. */
/** @{ */
KORVO_API _korvo_errcode sigu8_convolve(const _u8_mat* in, const _u8_mat* kernel, int32_t row_step,
                                        int32_t col_step, int32_t row_origin, int32_t col_origin,
                                        int32_t boundary, void* intrp_ptr, _u8_mat* out);
KORVO_API _korvo_errcode sigu16_convolve(const _u16_mat* in, const _u16_mat* kernel, int32_t row_step,
                                         int32_t col_step, int32_t row_origin, int32_t col_origin,
                                         int32_t boundary, void* intrp_ptr, _u16_mat* out);
KORVO_API _korvo_errcode sigu32_convolve(const _u32_mat* in, const _u32_mat* kernel, int32_t row_step,
                                         int32_t col_step, int32_t row_origin, int32_t col_origin,
                                         int32_t boundary, void* intrp_ptr, _u32_mat* out);
KORVO_API _korvo_errcode sigs32_convolve(const _s32_mat* in, const _s32_mat* kernel, int32_t row_step,
                                         int32_t col_step, int32_t row_origin, int32_t col_origin,
                                         int32_t boundary, void* intrp_ptr, _s32_mat* out);
KORVO_API _korvo_errcode sigdbl_convolve(const _dbl_mat* in, const _dbl_mat* kernel, int32_t row_step,
                                         int32_t col_step, int32_t row_origin, int32_t col_origin,
                                         int32_t boundary, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode sigcpx_convolve(const _cpx_mat* in, const _cpx_mat* kernel, int32_t row_step,
                                         int32_t col_step, int32_t row_origin, int32_t col_origin,
                                         int32_t boundary, void* intrp_ptr, _cpx_mat* out);
KORVO_API _korvo_errcode siguniv_convolve(const _univ_mat* in, const _univ_mat* kernel, int32_t row_step,
                                          int32_t col_step, int32_t row_origin, int32_t col_origin,
                                          int32_t boundary, void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name sets
 *  The universal routine for each member of three sets in turn, with the element of the same index from each of
 *  the four parameter matrices. The first failure ends the loop; members already done keep their results.
 *
 *  The sets and then the parameter matrices are validated, and all seven must have the same number of elements.
 *  sigset_correlate() does not look at `col_origin` in that check. It finds out at the member that needs it.
 *
 *  - KORVO_ERR_NULL_POINTER, KORVO_ERR_ILLEGAL_SIZE, KORVO_ERR_ILLEGAL_VALUE: a set or parameter is not valid.
 *  - KORVO_ERR_ILLEGAL_SIZE: the numbers of elements differ.
 *  - KORVO_ERR_NULL_POINTER, KORVO_ERR_OUT_OF_BOUNDS: (sigset_correlate) `col_origin` or its data is null, or
 *    it has no element for a member.
 *  - otherwise the codes of the universal routine. */
/** @{ */
KORVO_API _korvo_errcode sigset_convolve(const _mat_set* in, const _mat_set* kernel, const _s32_mat* row_step,
                                         const _s32_mat* col_step, const _s32_mat* row_origin,
                                         const _s32_mat* col_origin, int32_t boundary, void* intrp_ptr,
                                         _mat_set* out);
KORVO_API _korvo_errcode sigset_correlate(const _mat_set* in, const _mat_set* kernel, const _s32_mat* row_step,
                                          const _s32_mat* col_step, const _s32_mat* row_origin,
                                          const _s32_mat* col_origin, int32_t boundary, void* intrp_ptr,
                                          _mat_set* out);
/** @} */

KORVO_END_DECLARATIONS

#endif

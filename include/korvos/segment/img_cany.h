/* SPDX-License-Identifier: MIT */
/** @file img_cany.h  Canny edges and their stages: derivative of Gaussian, non-maxima suppression, hysteresis.
 *
 *  The row derivative is the one along the row index and answers to horizontal edges; the column derivative is
 *  the one along the column index. Both are positive where the image grows with the index. Each edge routine
 *  takes two scalars of the type of its result: `edge` marks edge pixels, `background` all others. */
#ifndef KORVOS_SEGMENT_IMG_CANY_H
#define KORVOS_SEGMENT_IMG_CANY_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** Edges after J. Canny (1986): derivative of Gaussian, suppression of what is no maximum across the edge, and
 *  hysteresis, which are the three routines below one after another.
 *
 *  `low` and `high` are in units of the gradient magnitude, grey values a pixel; they may be zero or negative.
 *  A pixel is an edge if its magnitude is a maximum above `low` and it hangs together with one of at least
 *  `high`. The frame of width one has magnitude 0, so it is background unless `low` is negative. `image` is of
 *  any real type, `result` of any integer type or dbl, and may be `image`.
 *
 *  Three temporaries of 8 bytes a pixel, and those of the stages. No cost but that of the stages. Checks, in
 *  order:
 *
 *  - KORVO_ERR_NULL_POINTER: `image` or `result` is null.
 *  - KORVO_ERR_ILLEGAL_VALUE: `high` is less than `low`, or one is NaN; then: `sigma` is not positive; then:
 *    the smaller side of the image is less than 4 times `sigma` rounded up.
 *  - the codes of `validate` for `image`, and then those of the stages, so that `result` and the two scalars
 *    are looked at last, when only hysteresis is left to do. */
KORVO_API _korvo_errcode imguniv_edge_canny(const _univ_mat* image, double sigma, double low, double high,
                                            _univ_scalar edge, _univ_scalar background, void* intrp_ptr,
                                            _univ_mat* result);

/** The derivatives of an image smoothed by a Gaussian of standard deviation `sigma`, in pixels.
 *
 *  With N, 4 times `sigma` rounded up, and x = k - (N - 1) / 2 for k from 0 to N - 1, the kernels are
 *
 *      g(k) = exp(-x ^ 2 / (2 sigma ^ 2))    d(k) = -g(k) x / (2 pi sigma ^ 4)
 *
 *  and their product is the derivative of a plane Gaussian of volume 1. The row derivative is the convolution
 *  with d down the columns and then with g along the rows, the column derivative that with d along the rows and
 *  then with g down the columns; each by imguniv_convolve() with SIG_BOUNDARY_CONTINUE.
 *
 *  N is even: no tap lies at the centre, and the centre lies half a pixel before the pixel that gets the
 *  result. Both outputs are shifted so, in both directions, and it is not corrected. For sigma up to 1:
 *
 *      pixel                   r-2    r-1     r     r+1
 *      from the centre        -1.5   -0.5    0.5    1.5
 *                                         ^   \
 *                                    centre    the result is put here
 *
 *  All sigmas up to the same whole number have one length, so 0.5 and 1 differ in their weights only. A sigma
 *  whose fourth power vanishes, below 1e-81, gives NaN.
 *
 *  `image` is of any real type, the outputs are dbl. They may be smaller than the image and then hold the upper
 *  left of the result. One temporary of the size of the image in dbl, the kernels, and what the convolutions
 *  need to cast the image. No cost but that of the convolutions. Checks, in order:
 *
 *  - KORVO_ERR_NULL_POINTER: a matrix is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: an output is not dbl.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: any two of the three share their data.
 *  - KORVO_ERR_ILLEGAL_VALUE: `sigma` is not positive, or the smaller side of the image is less than N.
 *  - the codes of `validate` in the order of the arguments, and of imguniv_convolve(): KORVO_ERR_ILLEGAL_SIZE
 *    for an output that is larger than the image, KORVO_ERR_OVERFLOW or KORVO_ERR_ILLEGAL_TYPE for an image
 *    that cannot be cast to dbl. */
KORVO_API _korvo_errcode imguniv_filter_derivative_of_gaussian(const _univ_mat* image, double sigma,
                                                               void* intrp_ptr, _univ_mat* row_derivative,
                                                               _univ_mat* column_derivative);

/** @name edge_nonmaxima_suppress
 *  The magnitude of a gradient where it is a maximum along the gradient's direction, else 0.
 *
 *  The magnitude m is the root of gy ^ 2 + gx ^ 2, with gy the row derivative and gx the column derivative. A
 *  pixel is 0 where neither of the two exceeds 1e-08 in size. Elsewhere m is compared with two values on the
 *  line through the pixel along the gradient, each between a near and a far neighbour:
 *
 *      if |gx| <= |gy|    t = gx / gy    near (r + 1, c), far (r + 1, c + s)
 *                                        near (r - 1, c), far (r - 1, c - s)
 *      else               t = gy / gx    near (r, c + 1), far (r + s, c + 1)
 *                                        near (r, c - 1), far (r - s, c - 1)
 *
 *      value = (1 - |t|) m(near) + |t| m(far)         s = the sign of t, 0 for 0
 *
 *  The pixel is 0 if m is less than either. Equality keeps it: a plateau and a ridge two pixels wide survive
 *  whole. The first and the last row and column are 0. Nothing is less than a NaN.
 *
 *  A temporary of three rows. Cost (nelem + nrow + ncol) * 5 first, polled once, then 20 * ncol for each inner
 *  row, polled after each. The derivatives may share their data.
 *
 *  - KORVO_ERR_NULL_POINTER, KORVO_ERR_ILLEGAL_TYPE: (universal) null, or not all three dbl.
 *  - the codes of `validate` for the column derivative, the row derivative, `result`.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `result` shares its data with a derivative. */
/** @{ */
KORVO_API _korvo_errcode imgdbl_edge_nonmaxima_suppress(const _dbl_mat* row_derivative,
                                                        const _dbl_mat* column_derivative, void* intrp_ptr,
                                                        _dbl_mat* result);
KORVO_API _korvo_errcode imguniv_edge_nonmaxima_suppress(const _univ_mat* row_derivative,
                                                         const _univ_mat* column_derivative, void* intrp_ptr,
                                                         _univ_mat* result);
/** @} */

/** The 8-connected components of pixels above `low` of which a pixel is at or above `high`: a component stays
 *  whole or goes whole.
 *
 *  A pixel is a candidate if its value lies outside -1e37 to `low`, both included, as matuniv_threshold() has
 *  it: above `low`; or below -1e37, or NaN. It is strong if it is not less than `high`, compared as a double;
 *  for a flt image `high` is rounded to float first. With equal thresholds a pixel of just that value is strong
 *  and no candidate, and no edge.
 *
 *  `image` is of any real type, `result` of any integer type or dbl. Temporary labels of 4 bytes a pixel and 4
 *  bytes a component. Cost, after that of the threshold and of the components: 4 * nelem when the strong pixels
 *  are known and 3 * nelem when the result is written, each polled once. When it is stopped, the result holds
 *  the candidates or part of the edges. Checks, in order:
 *
 *  - the codes of `validate` for `image`, `result`.
 *  - KORVO_ERR_ILLEGAL_TYPE: a scalar is not of the type of `result`.
 *  - KORVO_ERR_ILLEGAL_VALUE: `edge` equals `background`.
 *  - KORVO_ERR_ILLEGAL_SIZE: the shapes differ.
 *  - KORVO_ERR_ILLEGAL_VALUE: `high` is less than `low`, or one is NaN.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `image` and `result` share their data.
 *  - KORVO_ERR_ILLEGAL_TYPE: `image` is cpx, or `result` is flt or cpx. */
KORVO_API _korvo_errcode imguniv_threshold_hysteresis(const _univ_mat* image, double low, double high,
                                                      _univ_scalar edge, _univ_scalar background,
                                                      void* intrp_ptr, _univ_mat* result);

KORVO_END_DECLARATIONS

#endif

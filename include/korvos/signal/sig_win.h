/* SPDX-License-Identifier: MIT */
/** @file sig_win.h  Eleven data windows.
 *
 *  Each routine fills a vector of the caller's: N elements in one row or one column, i counted from 0. Only N
 *  matters. Windows are symmetric (Kaiser's is not), but denominators differ: N + 1, N - 1 or N, as stated with
 *  each. A single element becomes 1.0 unless stated otherwise.
 *
 *  Checks, in order:
 *
 *  - KORVO_ERR_NULL_POINTER: (universal) `out` is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) `out` is not KORVO_DOUBLE.
 *  - the codes of `validate` for `out`.
 *  - KORVO_ERR_ILLEGAL_SIZE: `out` is not a vector.
 *  - KORVO_ERR_ILLEGAL_VALUE: the parameter is out of its range, or NaN. The raised cosine alone looks at its
 *    parameter before it looks at `out`, but after the two checks of the universal form.
 *  - KORVO_ERR_INTERRUPT: the host stopped the call.
 *
 *  Where one cost is stated, it is polled once, after filling: a call that is stopped has done its work. No
 *  memory is allocated but by Chebyshev's window. After F. J. Harris, "On the use of windows for harmonic
 *  analysis with the discrete Fourier transform" (1978), where no other source is named. */
#ifndef KORVOS_SIGNAL_SIG_WIN_H
#define KORVOS_SIGNAL_SIG_WIN_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** @name window_rectangle
 *  1. Cost 5 N. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_window_rectangle(void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_window_rectangle(void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name window_triangle
 *  2 (i + 1) / (N + 1) up to the middle, and down again; the middle element of an odd N is 1. Cost 5 N. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_window_triangle(void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_window_triangle(void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name window_raised_cosine
 *  1, with the two halves of a Hanning window of M = floor(N taper) elements at the ends: the outermost floor(M
 *  / 2) elements i of either end become (1 - cos(2 pi (i + 1) / (M + 1))) / 2. A taper of 0 gives the
 *  rectangle; with 1 and an odd N the middle element stays 1. After J. W. Tukey (1967).
 *
 *  Cost 5 N, polled, and for a taper other than 0 then 10 N more, polled.
 *  - KORVO_ERR_ILLEGAL_VALUE: `taper` is not from 0 to 1. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_window_raised_cosine(double taper, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_window_raised_cosine(double taper, void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name window_hanning
 *  (1 - cos(2 pi (i + 1) / (N + 1))) / 2, which never reaches 0. Cost 50 N. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_window_hanning(void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_window_hanning(void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name window_hamming
 *  0.54 - 0.46 cos(2 pi i / (N - 1)), with 0.08 at the ends. A single element is NaN. Cost 50 N. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_window_hamming(void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_window_hamming(void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name window_blackman
 *  0.42 - 0.5 cos t + 0.08 cos 2t, t = 2 pi (i + 1) / (N + 1), which never reaches 0. Cost 100 N. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_window_blackman(void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_window_blackman(void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name window_nuttall
 *  0.3635819 - 0.4891775 cos t + 0.1365995 cos 2t - 0.0106411 cos 3t, t = 2 pi i / (N - 1); the ends are 0, and
 *  so is a single element. Cost 200 N. After A. H. Nuttall, "Some windows with very good sidelobe behavior"
 *  (1981). */
/** @{ */
KORVO_API _korvo_errcode sigdbl_window_nuttall(void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_window_nuttall(void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name window_gaussian
 *  exp(-t^2 / 2), t = 2 alpha (0.5 - i / (N - 1)), up to the middle, and down again; the middle element of an
 *  odd N is 1. Cost 100 N.
 *  - KORVO_ERR_ILLEGAL_VALUE: `alpha` is not above 0. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_window_gaussian(double alpha, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_window_gaussian(double alpha, void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name window_kaiser
 *  I0(B sqrt(1 - q^2)) / I0(B), with B = pi beta (N - 1) / N and q = (2 i - N - 1) / N as a quotient of
 *  integers, cut towards 0. So q is -1 for the first element and 0 for all others: the window is 1 / I0(B),
 *  then 1, 1, .. A single element is NaN, and so are all where I0(B) overflows (B of about 713).
 *
 *  I0 is the polynomial approximation of the modified Bessel function of order 0 in M. Abramowitz and I. A.
 *  Stegun, "Handbook of Mathematical Functions" (1964), 9.8.1 and 9.8.2. After J. F. Kaiser (1966).
 *
 *  Cost 200 N, polled; I0 of the N elements, then of B, each 500 an element with a tally of its own, polled
 *  once; 10 N, polled.
 *  - KORVO_ERR_ILLEGAL_VALUE: `beta` is negative. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_window_kaiser(double beta, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_window_kaiser(double beta, void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name window_chebyshev
 *  The window whose side lobes all lie `attenuation` decibels below the main lobe, after C. L. Dolph (1946):
 *  its spectrum P(f) is a Chebyshev polynomial of (x0 + 1) / 2 * cos 2 pi f + (x0 - 1) / 2, and the window the
 *  plain inverse sum over N frequencies, scaled to a peak of 1.0, on one element for an odd N and on two for an
 *  even one. The angles of the sum are not reduced.
 *
 *  No attenuation makes the window NaN. Where the side lobes vanish in rounding, so that x0 is infinite, P is
 *  its limit ((1 + cos 2 pi f) / 2)^((N - 1) / 2), that of a binomial window. An argument that rounding has put
 *  below -1 counts as -1.
 *
 *  Time grows with N^2; memory, 16 N bytes. Cost 100 N to begin with and 50 N for each of (N + 1) / 2 sums,
 *  each followed by a poll. A call that is stopped leaves a part of the sums.
 *  - KORVO_ERR_ILLEGAL_VALUE: `attenuation` is negative.
 *  - KORVO_ERR_MALLOC: no memory for the two work arrays. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_window_chebyshev(double attenuation, void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_window_chebyshev(double attenuation, void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name window_born_jordan
 *  1 / (h - i + 1) for i up to h = (N - 1) / 2 (an integer), and down again: an even N has two central elements
 *  of 1. Cost 5 N. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_window_born_jordan(void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_window_born_jordan(void* intrp_ptr, _univ_mat* out);
/** @} */

KORVO_END_DECLARATIONS

#endif

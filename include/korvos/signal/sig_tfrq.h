/* SPDX-License-Identifier: MIT */
/** @file sig_tfrq.h  Time-frequency distributions: local autocorrelations of a real signal.
 *
 *  Each routine turns a signal of N samples s[0], s[1], ... into a plane of R rows and C columns, the shape of
 *  `out`: row tau holds lag tau, column c an instant, in samples. The Fourier transform along the lags, the
 *  columns of `out`, makes a time-frequency distribution of it and is left to the caller. Instants are
 *  `time_step` samples apart: column c lies at t = c * time_step. Halves of lags are cut towards zero, and
 *
 *      r(t, tau) = (s[t - tau/2] s[t + (tau+1)/2] + s[t - (tau+1)/2] s[t + tau/2]) * 0.5
 *
 *  is the symmetric product of two samples tau apart round t. `signal` is a row or a column. All matrices are
 *  dbl. `out` is set to zero first, with the cost and the poll of matdbl_assign_scalar(); it must not be the
 *  buffer of an input. Where an instant is so near the end that samples run out, the higher lags of its column
 *  stay zero. Sums are formed in the order of the instants.
 *
 *  A call that a host stops leaves its finished columns in `out`. Checks, in order:
 *
 *  - the codes of `validate` for `signal` and `out`, in `custom` then `kernel`.
 *  - KORVO_ERR_ILLEGAL_SIZE: `signal` is not a vector.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `out` is the buffer of `signal`.
 *  - KORVO_ERR_ILLEGAL_VALUE: `time_step` is below 1; then `sigma` is not above 0.
 *  - KORVO_ERR_ILLEGAL_SIZE: at this shape the formula would read outside the signal or write outside `out`.
 *    Each routine says when. Nothing has been written.
 *  - KORVO_ERR_MALLOC: no memory for sums, columns, the kernel or the padded signal. `out` is zero.
 *
 *  Universal forms return KORVO_ERR_NULL_POINTER for a null matrix and then KORVO_ERR_ILLEGAL_TYPE unless every
 *  matrix is KORVO_DOUBLE. */
#ifndef KORVOS_SIGNAL_SIG_TFRQ_H
#define KORVOS_SIGNAL_SIG_TFRQ_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** @name wigner
 *  Column c is the sum of r(t, tau) over the instants after that of column c - 1 up to its own. With L = R / 2,
 *  instants below L give the lags tau < t, and columns of L rows; later ones the lags below M = min(R, N - t).
 *  Column 0 is zero but for R = 1, where it is s[0]^2. With N below L `out` stays zero; with N = L only out(0,
 *  0) is set, to s[N-1]^2. (E. Wigner, 1932; J. Ville, 1948.)
 *
 *  Cost 200 L an instant below L, not polled; then after each instant 200 times the M of the next one, polled.
 *  Past the signal M is negative and the tally falls, so that polls end there.
 *  - KORVO_ERR_ILLEGAL_SIZE: N is above L, and C is below L / time_step, rounded up, or N is not above (L - 1)
 *    + (L - 1) / 2. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_timefreq_autocorrelate_wigner(const _dbl_mat* signal, int32_t time_step,
                                                              void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_timefreq_autocorrelate_wigner(const _univ_mat* signal, int32_t time_step,
                                                               void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name cone
 *  A sum that runs on through all instants, cone shaped: from s[tau] s[0] in column 0, each instant t adds s[t
 *  + tau] s[t] to the lags below M = min(R, N - t), and from those not above t - 1 then takes s[t - 1 - tau]
 *  s[t - 1]. With N below R `out` stays zero; with N = R only out(0, 0) is set, to s[N-1]^2 - s[N-2]^2. (Y.
 *  Zhao, L. Atlas, R. Marks, 1990.)
 *
 *  Cost 100 R to begin with; then after each instant 200 times the M of the next one, polled, as in wigner.
 *  - KORVO_ERR_ILLEGAL_SIZE: N and R are 1. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_timefreq_autocorrelate_cone(const _dbl_mat* signal, int32_t time_step,
                                                            void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_timefreq_autocorrelate_cone(const _univ_mat* signal, int32_t time_step,
                                                             void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name born_jordan
 *  The cone, with its checks and polls, and then row tau times 1 / (tau + 1). (L. Cohen, 1966.)
 *
 *  Cost of the second step 10 R a column, polled after each. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_timefreq_autocorrelate_born_jordan(const _dbl_mat* signal, int32_t time_step,
                                                                   void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_timefreq_autocorrelate_born_jordan(const _univ_mat* signal, int32_t time_step,
                                                                    void* intrp_ptr, _univ_mat* out);
/** @} */

/** @name margeneau_hill
 *  (s[t - tau] + s[t + tau]) s[t] * 0.5 at the instant of each column, for the lags below min(R, t) while t is
 *  below R - 1, so that column 0 is zero but for R = 1, and then for those below M = min(R, N - t). With R not
 *  below N `out` stays zero. (H. Margenau, R. Hill, 1961.)
 *
 *  Cost after each column 20 times the lags of the next one by the rule of its own phase, polled; past the
 *  signal it is negative.
 *  - KORVO_ERR_ILLEGAL_SIZE: R is below N, and the n instants below R - 1 are more than C, or for the last of
 *    them N is not above 2 (n - 1) time_step - 1. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_timefreq_autocorrelate_margeneau_hill(const _dbl_mat* signal, int32_t time_step,
                                                                      void* intrp_ptr, _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_timefreq_autocorrelate_margeneau_hill(const _univ_mat* signal,
                                                                       int32_t time_step, void* intrp_ptr,
                                                                       _univ_mat* out);
/** @} */

/** @name custom
 *  Each instant smoothed over its neighbours by `kernel` K of kr by R, offsets in time by lags:
 *
 *      out(tau, c) = K(0, tau) (s[t + (tau+1)/2] s[t - tau/2] + s[t - (tau+1)/2] s[t + tau/2]) * 0.5
 *                    + sum over mu of K(mu, tau) (s[t + (tau+mu)/2] s[t - (tau-mu+1)/2]
 *                                                 + s[t + (tau-mu+1)/2] s[t - (tau+mu)/2])
 *
 *  with mu from its limit down to 1, and zeros past the signal. While t is below (R + kr) / 2 lags run to below
 *  min(2t, R - 1) and mu to below min(2t - tau, kr); then lags to below min(R - 1, N - t) and mu to below min(N
 *  - t, kr), in the first N columns. The last row stays zero.
 *
 *  Cost of the copy that of matdbl_assign_zeropad(). Then, while t is below (R + kr) / 2, 50 kr a lag, polled;
 *  after each instant the tally is not raised but set to 200 kr, and polled.
 *  - KORVO_ERR_ILLEGAL_SIZE: `kernel` has not as many columns as `out` has rows, or more than N.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `out` is the buffer of `kernel`.
 *  - KORVO_ERR_ILLEGAL_SIZE: R is above 1, and the instants below (R + kr) / 2 are more than C. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_timefreq_autocorrelate_custom(const _dbl_mat* signal, int32_t time_step,
                                                              const _dbl_mat* kernel, void* intrp_ptr,
                                                              _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_timefreq_autocorrelate_custom(const _univ_mat* signal, int32_t time_step,
                                                               const _univ_mat* kernel, void* intrp_ptr,
                                                               _univ_mat* out);
/** @} */

/** @name choi_williams
 *  The `custom` distribution with a kernel_choi_williams of R lags, N samples and `sigma`: the smaller `sigma`,
 *  the more the products of different components of a signal are smoothed away. (H. Choi, W. Williams, 1989.)
 *
 *  Costs of the zeros, of the kernel, and of `custom` with its own zeros.
 *  - KORVO_ERR_ILLEGAL_SIZE: R is above N, or as in `custom`. */
/** @{ */
KORVO_API _korvo_errcode sigdbl_timefreq_autocorrelate_choi_williams(const _dbl_mat* signal, double sigma,
                                                                     int32_t time_step, void* intrp_ptr,
                                                                     _dbl_mat* out);
KORVO_API _korvo_errcode siguniv_timefreq_autocorrelate_choi_williams(const _univ_mat* signal, double sigma,
                                                                      int32_t time_step, void* intrp_ptr,
                                                                      _univ_mat* out);
/** @} */

/** @name kernel_choi_williams
 *  Makes a kernel of `num_lags` columns and min(`num_samples`, 3 k) rows, k the whole part of sqrt(2 / sigma) *
 *  num_lags + 1. Column 0 is 1 in row 0 and 0 below. In column j from 1 on, with d = sqrt(sigma *
 *  0.07957747154594767), which is sqrt(sigma / (4 pi)), row i is (d / j) exp(-(sigma / 4) i^2 / j^2). The
 *  matrix is the caller's to free with matdbl_free() or matuniv_free().
 *
 *  Cost 5 a row to begin with; then 100 times the number of rows after each row, polled.
 *  - KORVO_ERR_NULL_POINTER: `kernel` is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: (universal) `type`, which has become that of `kernel`, is not KORVO_DOUBLE.
 *  - KORVO_ERR_ILLEGAL_VALUE: `num_lags` or `num_samples` is below 1, or `sigma` is not above 0.
 *  - KORVO_ERR_MALLOC: no memory, or more than 2147483647 bytes. `data` is null here and when a host stops it.
 */
/** @{ */
KORVO_API _korvo_errcode sigdbl_kernel_choi_williams(int32_t num_lags, int32_t num_samples, double sigma,
                                                     void* intrp_ptr, _dbl_mat* kernel);
KORVO_API _korvo_errcode siguniv_kernel_choi_williams(int32_t num_lags, int32_t num_samples, double sigma,
                                                      void* intrp_ptr, _univ_mat* kernel, _korvo_type type);
/** @} */

KORVO_END_DECLARATIONS

#endif

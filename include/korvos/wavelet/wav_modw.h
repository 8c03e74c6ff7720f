/* SPDX-License-Identifier: MIT */
/** @file wav_modw.h  Maximum overlap discrete wavelet transform: forward, packet, inverse.
 *
 *  The undecimated transform of a series of any length N: each level keeps all N instants. It is circular, all
 *  instants are taken modulo N, and there is no other boundary mode. Filters are the caller's: the orthonormal
 *  wavelet filter g and scaling filter h of a discrete wavelet transform, two columns of the same length L,
 *  which may be longer than the series. For the usual pair g(l) = (-1)^l h(L - 1 - l). They are rescaled here
 *  for the maximum overlap form, by 0.7071067811865476, and so written below as g' and h'.
 *
 *  Series and filters are single columns; filters, crystals and results are KORVO_DOUBLE with one crystal to a
 *  column. Level j has the scale 2^j. Each element is one plain sum over l ascending, begun at 0. Series and
 *  filters are copied before a result is written, so a result may have their buffer.
 *
 *  The filters are scaled with matuniv_multiply_scalar(), which polls once for each. Checks, in order:
 *
 *  - the codes of matuniv_validate() for the series or crystals, the two filters, the (first) result.
 *  - KORVO_ERR_ILLEGAL_SIZE: the series or a filter is not a single column.
 *  - KORVO_ERR_ILLEGAL_TYPE: a filter, the crystals or a result is not KORVO_DOUBLE, or the series is complex.
 *  - KORVO_ERR_ILLEGAL_SIZE: `levels` is below 1 or above floor(log2(N)).
 *  - KORVO_ERR_ILLEGAL_SIZE: the filters differ in length.
 *  - KORVO_ERR_ILLEGAL_SIZE: the result, or the crystals, have not the stated shape.
 *
 *  and then
 *
 *  - KORVO_ERR_MALLOC: no memory for a temporary.
 *  - KORVO_ERR_INTERRUPT: the host asked to stop; levels already done stay in the result.
 *
 *  Method: D. B. Percival and A. T. Walden, Wavelet Methods for Time Series Analysis, 2000. */
#ifndef KORVOS_WAVELET_WAV_MODW_H
#define KORVOS_WAVELET_WAV_MODW_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** Forward. With V_0 the series in binary64 (any real type, through matuniv_cast() and its poll) and s = 2^j,
 *
 *      wavelet(t, j) = sum over l of g'(l) * V_j(t - l * s)
 *      scaling(t, j) = sum over l of h'(l) * V_j(t - l * s)         V_(j+1) = column j of `scaling`
 *
 *  for j from 0 to `levels` - 1: column j holds level j + 1. Both results are N by `levels`. After each level
 *  the tally is set to N * 3, not added to, and polled. Time grows with N * L * `levels`.
 *
 *  `scaling` is looked at for its type only, with the types; its shape is not compared. It may be larger; its
 *  element (t, j) is addressed with its own `ncol`. What could not be written is refused after all else:
 *
 *  - KORVO_ERR_NULL_POINTER: `scaling` is null (with the types), or has no data.
 *  - KORVO_ERR_ILLEGAL_SIZE: `scaling` has fewer columns than `levels`, or its `nelem` ends before the element
 *    in row N - 1, column `levels` - 1.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: the two results are one buffer. */
KORVO_API _korvo_errcode wavuniv_transform_maximum_overlap(const _univ_mat* series,
                                                           const _univ_mat* wavelet_filter,
                                                           const _univ_mat* scaling_filter, int32_t levels,
                                                           void* intrp_ptr, _univ_mat* wavelet,
                                                           _univ_mat* scaling);

/** Packet: the whole binary tree of crystals. `out` is N by 2^(levels + 1) - 1; node n of level j is its column
 *  2^j - 1 + n, and column 0 is the series, which must be KORVO_DOUBLE. With s = 2^(j - 1)
 *
 *      node n of level j at t = sum over l of f(l) * (node floor(n / 2) of level j - 1 at t - l * s)
 *
 *  where f is h' for n mod 4 of 0 and 3, and g' for 1 and 2: this keeps the nodes of a level in the order of
 *  their frequencies, from low to high.
 *
 *      level 0              0 series
 *      level 1       1 h'             2 g'
 *      level 2    3 h'    4 g'     5 g'    6 h'         (columns of `out`, and the filter that made each)
 *
 *  Works in a temporary of the size of `out`, which is transposed into it at the end by matuniv_transpose(),
 *  with its polls. For every tap of every sum the tally is set to N * 3, not added to, and polled.
 *
 *  All comparisons of sizes come before those of types:
 *  - KORVO_ERR_ILLEGAL_TYPE: the series, a filter or the result is not KORVO_DOUBLE. */
KORVO_API _korvo_errcode wavuniv_transform_maximum_overlap_packet(const _univ_mat* series,
                                                                  const _univ_mat* wavelet_filter,
                                                                  const _univ_mat* scaling_filter,
                                                                  int32_t levels, void* intrp_ptr,
                                                                  _univ_mat* out);

/** Inverse. `crystals` and `out` are N by `levels` + 1, with J = `levels`:
 *
 *      crystals:  0 scaling crystal of level J | 1 wavelet crystal of level J | ... | J that of level 1
 *      out:       0 the same                   | 1 approximation of level J-1 | ... | J the series
 *
 *  Column k of `out` is, with s = 2^(J - k),
 *
 *      out(t, k) = sum over l of (h'(l) * out(t + l * s, k - 1) + g'(l) * crystals(t + l * s, k))
 *
 *  so that for orthonormal filters column J is the series that was transformed, within rounding. After each
 *  level the tally is set to N * 3, not added to, and polled.
 *
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `out` is the buffer of `crystals`; the last of the checks. */
KORVO_API _korvo_errcode wavuniv_transform_maximum_overlap_inverse(const _univ_mat* crystals,
                                                                   const _univ_mat* wavelet_filter,
                                                                   const _univ_mat* scaling_filter,
                                                                   int32_t levels, void* intrp_ptr,
                                                                   _univ_mat* out);

KORVO_END_DECLARATIONS

#endif

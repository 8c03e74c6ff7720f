/* SPDX-License-Identifier: MIT */
/** @file img_mrf.h  Supervised classification of image sequences: Gaussian classes, Markov field, rejection.
 *
 *  The way through: statistics of each class from labelled pixels, the squared Mahalanobis distance of every
 *  pixel to every class, labels by least distance and by what the neighbours in space and time are labelled,
 *  and at the end rejection of pixels that lie far from their class. Nothing is random.
 *
 *  What is handed about:
 *
 *  - image sequence: a set of two dimensions, T frames by B bands, all of one shape and real element type;
 *    band b of frame t is member t * B + b.
 *  - label sequence: a set of T KORVO_SINT32 matrices of that shape. A label is a class from 0; a negative
 *    one means that the pixel belongs to none, and it is skipped.
 *  - statistics: a set of C dbl matrices of B + 1 rows and B columns, the mean over the covariance matrix.
 *  - distances: a set of C dbl matrices of the shape of the images.
 *  - counts, flags: vectors of C and of T elements, in a row or a column.
 *
 *  All sets but the image sequence have one dimension. The matrices of a set are validated after what a
 *  routine lists, buffers are compared after that. Negative old counts are found last of all checks. */
#ifndef KORVOS_CLASSIFY_IMG_MRF_H
#define KORVOS_CLASSIFY_IMG_MRF_H

#include "korvos/core/mat_set.h"

KORVO_BEGIN_DECLARATIONS

/** @name gaussian_estimate, gaussian_update
 *  Mean and sample covariance of each class over the labelled pixels of the frames whose flag is not 0, with
 *  divisor N - 1 for the N pixels of a class, or none for a single one. The covariance is the sum of
 *  products less N * mean * mean, formed in one pass. An update takes in `old_counts` pixels per class that
 *  gave `old_statistics`: two batches one after the other are as good as both together. Null for both makes
 *  it an estimate. A class without any pixel gets count 0 and statistics of zeros.
 *
 *  Cost B * B * elements * 4 for each frame taken in, B * B * 10 for each class with pixels, polled after
 *  each. Checks, in order:
 *
 *  - the codes of matset_verify_allsame() for `images`, `labels`, `old_statistics` if given, `statistics`.
 *  - KORVO_ERR_NULL_POINTER: of `old_statistics` and `old_counts` one is null and the other is not.
 *  - the codes of `validate` for `flags`, `old_counts`, `counts`.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: old and new counts, or old and new statistics, are one record.
 *  - KORVO_ERR_ILLEGAL_SIZE: a number of dimensions, a shape, or a number of members or elements is wrong.
 *  - KORVO_ERR_ILLEGAL_TYPE: labels are not KORVO_SINT32, statistics not dbl, images not real.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: a result is the buffer of an input or of the other result.
 *  - KORVO_ERR_ILLEGAL_VALUE: an old count is negative, or, on the way, a label is C or more.
 *  - KORVO_ERR_OVERFLOW: a class has more than 2147483647 pixels.
 *  - KORVO_ERR_MALLOC: no memory for the bands of some pixels or the counts of the classes. */
/** @{ */
KORVO_API _korvo_errcode imgset_classify_gaussian_estimate(const _mat_set* images, const _mat_set* labels,
                                                           const _s32_mat* flags, void* intrp_ptr,
                                                           _s32_mat* counts, _mat_set* statistics);
KORVO_API _korvo_errcode imgset_classify_gaussian_update(const _mat_set* images, const _mat_set* labels,
                                                         const _mat_set* old_statistics, const _s32_mat* flags,
                                                         const _s32_mat* old_counts, void* intrp_ptr,
                                                         _s32_mat* counts, _mat_set* statistics);
/** @} */

/** The squared Mahalanobis distance (1936) of each pixel x of one frame to each class,
 *
 *      distances[c] = (x - mean) * inverse covariance * (x - mean)
 *
 *  without a term for the determinant or for how frequent a class is. A covariance whose elements have
 *  absolute values with a sum below 1e-9 is taken for none: 1e37 takes the place of its diagonal, and the
 *  result that of the inverse, so that such a class is farther than all else, except exactly at its mean.
 *
 *  Cost B * B + (B + 3) * elements * B for each class, polled after each; matdbl_inverse() polls for itself.
 *  Checks, in order:
 *
 *  - the codes of matset_verify_allsame() for `images`, `statistics`, `distances`.
 *  - KORVO_ERR_ILLEGAL_SIZE: a number of dimensions, a shape or a number of members is wrong.
 *  - KORVO_ERR_ILLEGAL_VALUE: `frame` is not one of 0 to T - 1.
 *  - KORVO_ERR_ILLEGAL_TYPE: statistics or distances are not dbl, images not real.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: one of `distances` is the buffer of an input.
 *  - KORVO_ERR_MALLOC: no memory for two matrices of B by B or the bands of some pixels.
 *  - otherwise the codes of matdbl_inverse() for a covariance: KORVO_ERR_SINGULAR_MATRIX. */
KORVO_API _korvo_errcode imgset_classify_gaussian_distance(const _mat_set* images, const _mat_set* statistics,
                                                           int32_t frame, void* intrp_ptr, _mat_set* distances);

/** Labels of one frame by least distance, drawn towards the classes of the neighbours: iterated conditional
 *  modes (Besag 1986) on a field over space and frames.
 *
 *  `kernels` is a set of K dbl matrices, K and their rows and columns odd. The middle one acts on the frame
 *  in hand, those before and after it on the frames before and after. In a sweep, each neighbour q of a
 *  pixel p within the kernel and the image, p's own position excepted on all frames, lowers the distance of
 *  p to the class of q by the kernel's element there. The label then is the class of least distance, the
 *  first of equals. Labels of other frames come from `labels`, those of the frame in hand from `out`, which
 *  the first sweep finds empty; the frame's own member of `labels` is not read and may be `out`. Neighbours
 *  without a valid class count for nothing.
 *
 *  The first sweep begins with `in` and visits every pixel; those that follow visit what lies within a
 *  kernel of a change, and go on from the distances of the sweep before: the terms of the neighbours
 *  accumulate. It ends when nothing changes, or after 100 sweeps. `distances` and `out` are then as last
 *  computed. `distances` may be `in`.
 *
 *  With kernels of kr by kc a sweep costs (2 * C + kr * kc * K * 7) * columns for each row, and then
 *  (3 * C + 2 * kr * kc) * columns for each row, polled after each row. Checks, in order:
 *
 *  - the codes of matset_verify_allsame() for `labels`, `kernels`, `in`, `distances`, of `validate` for
 *    `out`.
 *  - KORVO_ERR_ILLEGAL_SIZE: a set is not of one dimension; K, kernel rows or columns are even; sizes
 *    differ.
 *  - KORVO_ERR_ILLEGAL_VALUE: `frame` is not one of 0 to T - 1.
 *  - KORVO_ERR_ILLEGAL_TYPE: labels are not KORVO_SINT32, kernels or distances not dbl.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: a result is the buffer of an input that is read, or of the other result.
 *  - KORVO_ERR_MALLOC: no memory for two masks of the size of the image or C numbers.
 *  - KORVO_ERR_NOT_CONVERGING: labels still changed in the last sweep. */
KORVO_API _korvo_errcode imgset_classify_markov_random_field(const _mat_set* labels, const _mat_set* kernels,
                                                             const _mat_set* in, int32_t frame, void* intrp_ptr,
                                                             _mat_set* distances, _s32_mat* out);

/** Copies the labels of one frame, with -1 for pixels whose distance d to their class has
 *
 *      fraction < (d - min) / (max - min)
 *
 *  min and max being the least and greatest of these distances in the frame. With 1 nothing is rejected,
 *  with 0 all but the least; nothing where all distances are equal. Only member `frame` of `out` is written,
 *  and `out` may be `labels`.
 *
 *  Cost elements * 2, polled when the labels are copied, and elements * 4, polled at the end. Checks, in
 *  order:
 *
 *  - the codes of matset_verify_allsame() for `distances`, `labels`, `out`.
 *  - KORVO_ERR_ILLEGAL_SIZE: a set is not of one dimension, or sizes differ.
 *  - KORVO_ERR_ILLEGAL_TYPE: labels are not KORVO_SINT32, distances not dbl.
 *  - KORVO_ERR_ILLEGAL_VALUE: `frame` is not one of 0 to T - 1, or `fraction` not within 0 to 1.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: the result is the buffer of a distance or of another frame's labels.
 *  - KORVO_ERR_ILLEGAL_VALUE: on the way, a label is C or more. */
KORVO_API _korvo_errcode imgset_classify_threshold_distance(const _mat_set* distances, const _mat_set* labels,
                                                            int32_t frame, double fraction, void* intrp_ptr,
                                                            _mat_set* out);

KORVO_END_DECLARATIONS

#endif

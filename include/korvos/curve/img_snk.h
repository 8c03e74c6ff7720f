/* SPDX-License-Identifier: MIT */
/** @file img_snk.h  Snakes: active contours on images. */
#ifndef KORVOS_CURVE_IMG_SNK_H
#define KORVOS_CURVE_IMG_SNK_H

#include "korvos/core/mat_univ.h"

KORVO_BEGIN_DECLARATIONS

/** Whether the ends of a contour meet. */
enum { IMG_CONTOUR_CLOSED = 1, IMG_CONTOUR_OPEN = 3 };

/** Parameters of a snake; what a null record stands for is given with each. */
typedef struct snake_params {
  int32_t contour_type;   /**< IMG_CONTOUR_CLOSED or IMG_CONTOUR_OPEN; closed */
  double alpha;           /**< weight of the elastic term, at least 0; 1 */
  double beta;            /**< weight of the bending term, at least 0; 1 */
  double gamma;           /**< weight of the image's force, at least 0; 1 */
  double step;            /**< time step tau, above 0; 0.5 */
  int32_t max_iterations; /**< at least 1; 50 */
  double move_threshold;  /**< a vertex has moved if it went further than so many pixels, at least 0; 0.05 */
  double stop_fraction;   /**< the end is when no more than this fraction of the vertices moved; 0.05 */
} snake_params;

static_assert(offsetof(snake_params, alpha) == 8 && offsetof(snake_params, step) == 32 &&
                  offsetof(snake_params, max_iterations) == 40 &&
                  offsetof(snake_params, move_threshold) == 48 && sizeof(snake_params) == 64,
              "layout of snake_params");

/** The energy that a snake descends: 1 / (sqrt(gx * gx + gy * gy) + 1) with the derivatives that
 *  imguniv_filter_derivative_of_gaussian() gives, from 1 on flat ground down towards 0 on strong edges. `out`
 *  is dbl and has the size of `image`.
 *
 *  Cost 8 an element, polled once, after the filter's own polls.
 *  - KORVO_ERR_NULL_POINTER: `image` or `out` is null.
 *  - KORVO_ERR_ILLEGAL_TYPE: `out` is not dbl, or `image` is cpx. The codes of `validate` come next.
 *  - KORVO_ERR_ILLEGAL_SIZE: the sizes differ.
 *  - KORVO_ERR_ILLEGAL_VALUE: `sigma` is not above 0, or the smaller side is below 4 * ceil(`sigma`).
 *  - KORVO_ERR_MALLOC: no memory for the derivatives and what they need. */
KORVO_API _korvo_errcode imguniv_snake_edge_energy(const _univ_mat* image, double sigma, void* intrp_ptr,
                                                   _univ_mat* out);

/** @name snake
 *  Active contour (M. Kass, A. Witkin, D. Terzopoulos, "Snakes: active contour models", 1988): `initial` is
 *  resampled to the n vertices that `out` has rows, and then moved towards low values of an energy, while
 *  elastic and bending terms keep it short and smooth. A contour is dbl, a vertex a row, x (column) and y
 *  (row).
 *
 *  With v the contour, prev and next the neighbours of a vertex (at the ends of an open contour, itself), an
 *  iteration solves (A + 1 / step) v' = v / step - force for each coordinate. The force is gamma times the
 *  gradient of the energy at the vertex, bilinear, 0 outside. A has 6 beta + 2 alpha on its diagonal, -alpha -
 *  4 beta and beta beside it; an open contour has 2 beta + alpha in the first and last row and -alpha - 3 beta
 *  beside them. The corners of the cyclic matrix of a closed contour act on v instead of v'. If the vertices go
 *  1 pixel or less on average the iteration counts and v' becomes v; else v stays, the step is halved, and
 *  nothing is counted. Iterations go on while the fraction of vertices that went further than `move_threshold`
 *  is above `stop_fraction`; with a fraction of 1 or more there is none.
 *
 *  With `automatic` not 0 the weights of `params` are passed over. Before the first and after each fifth
 *  iteration, alpha = n / (2 sum of |v - prev| / 2), beta = n / (2 sum of |prev - 2 v + next| / 2) and gamma =
 *  n / (2 sum of the energy).
 *
 *  `results` receives the alpha, beta, gamma and step in force at the end and, in `max_iterations`, the number
 *  of iterations; its other fields stay. `out` always holds the last accepted contour.
 *
 *  imguniv_snake() makes the energy of `image` and its Sobel gradient; imguniv_snake_minimize() is given them.
 *  Per vertex: cost 48 for the sums, 6 and 64 for the matrix and its factors, 45 for the force, 90 for the
 *  solution, 16 for the distances; polled after each of these steps.
 *  - The codes of `validate` for the energy and its gradients, `initial` and `out`.
 *  - KORVO_ERR_NULL_POINTER: `results` is null; with imguniv_snake() that, like a null matrix, comes first.
 *  - KORVO_ERR_ILLEGAL_VALUE: a parameter is outside its limits.
 *  - KORVO_ERR_ILLEGAL_TYPE: a contour, the energy or a gradient is not dbl.
 *  - KORVO_ERR_ILLEGAL_SIZE: a contour has not 2 columns and at least 3 rows; or the sizes of energy and
 *    gradients differ.
 *  - KORVO_ERR_ILLEGAL_ADDRESS: `out` shares its data with another matrix.
 *  - KORVO_ERR_ILLEGAL_VALUE: the length of `initial` is not finite.
 *  - KORVO_ERR_NOT_CONVERGING: the fraction is still above its limit after `max_iterations`, or the contour has
 *    become NaN, as with weights that are too large. `results` and `out` are filled.
 *  - (imguniv_snake) the codes of imguniv_snake_edge_energy().
 *  - KORVO_ERR_MALLOC: no memory for the images or for eight numbers a vertex. */
/** @{ */
KORVO_API _korvo_errcode imguniv_snake(const _univ_mat* image, const _univ_mat* initial, double sigma,
                                       uint8_t automatic, const snake_params* params, void* intrp_ptr,
                                       snake_params* results, _univ_mat* out);
KORVO_API _korvo_errcode imguniv_snake_minimize(const _univ_mat* energy, const _univ_mat* row_gradient,
                                                const _univ_mat* column_gradient, const _univ_mat* initial,
                                                uint8_t automatic, const snake_params* params, void* intrp_ptr,
                                                snake_params* results, _univ_mat* out);
/** @} */

KORVO_END_DECLARATIONS

#endif

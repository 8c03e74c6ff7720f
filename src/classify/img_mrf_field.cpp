// Classification after the distances: the Markov field over space and frames, rejection by distance.
#include <algorithm>
#include <cstdint>
#include <utility>

#include "classify/img_mrf.hpp"
#include "core/checkpoint.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"
#include "korvos/classify/img_mrf.h"

namespace korvo {
namespace {

constexpr std::int32_t most_sweeps = 100;

// One call of the field. Sizes are in 64 bits: kernels may be larger than the image.
struct field {
  const _mat_set* labels;
  const _mat_set* kernels;
  const _mat_set* in;  // distances
  std::int32_t frame;
  const _mat_set* distances;
  _s32_mat* out;
  std::int64_t rows = out->nrow;
  std::int64_t cols = out->ncol;
  std::int32_t classes = in->nmat;
  std::int64_t half_rows = (kernels->mats[0].nrow - 1) / 2;
  std::int64_t half_cols = (kernels->mats[0].ncol - 1) / 2;
  double kernel_elements = static_cast<double>(kernels->mats[0].nrow) * kernels->mats[0].ncol;
};

// Positions of one direction within a half size of p and inside the image.
struct reach {
  std::int64_t first, last;
  reach(std::int64_t p, std::int64_t half, std::int64_t size)
      : first(std::max<std::int64_t>(p - half, 0)), last(std::min(p + half, size - 1)) {}
};

// Whether the result is a buffer that is read: all but the labels of the frame in hand, which never are.
bool shares_with_inputs(const _mat_set* labels, const _mat_set* kernels, const _mat_set* in, std::int32_t frame,
                        const _mat_set* distances, const _s32_mat* out) {
  for (std::int32_t c = 0; c < distances->nmat; ++c)
    if (shares_data(distances->mats[c], in, c)) return true;
  return shares_data(distances, labels) || shares_data(distances, kernels) ||
         shares_data(*out, labels, frame) || shares_data(*out, kernels) || shares_data(*out, in) ||
         shares_data(*out, distances);
}

code check_field(const _mat_set* labels, const _mat_set* kernels, const _mat_set* in, std::int32_t frame,
                 const _mat_set* distances, const _s32_mat* out) {
  TRY(all_alike({labels, kernels, in, distances}));
  TRY(valid(out));
  if (!one_dimensional({labels, kernels, in, distances})) return KORVO_ERR_ILLEGAL_SIZE;
  if (kernels->nmat % 2 == 0 || kernels->mats[0].nrow % 2 == 0 || kernels->mats[0].ncol % 2 == 0)
    return KORVO_ERR_ILLEGAL_SIZE;
  if (!same_shape(labels->mats, in->mats, distances->mats) || !same_shape(out, in->mats) ||
      in->nmat != distances->nmat)
    return KORVO_ERR_ILLEGAL_SIZE;
  if (frame < 0 || frame >= labels->nmat) return KORVO_ERR_ILLEGAL_VALUE;
  if (!of_type(KORVO_SINT32, {labels}) || !of_type(KORVO_DOUBLE, {kernels, in, distances}))
    return KORVO_ERR_ILLEGAL_TYPE;
  TRY(members_valid({labels, kernels, in, distances}));
  return shares_with_inputs(labels, kernels, in, frame, distances, out) ? KORVO_ERR_ILLEGAL_ADDRESS
                                                                        : KORVO_ERR_OK;
}

// Takes from the distances of the pixel (row, col) what its neighbours in one frame say. The kernel's centre is
// skipped, on other frames too. A neighbour without a class, or with one that does not exist, says nothing.
void attract(const field& f, const std::int32_t* labels, const double* kernel, std::int64_t row,
             std::int64_t col, double* sums) {
  const reach down(row, f.half_rows, f.rows);
  const reach across(col, f.half_cols, f.cols);
  for (std::int64_t r = down.first; r <= down.last; ++r) {
    const std::int32_t* const line = labels + r * f.cols;
    const double* const weights = kernel + (r - row + f.half_rows) * (2 * f.half_cols + 1) + f.half_cols - col;
    for (std::int64_t c = across.first; c <= across.last; ++c)
      if (line[c] >= 0 && line[c] < f.classes && (r != row || c != col)) sums[line[c]] -= weights[c];
  }
}

// The distances of one pixel after a sweep. Kept: from the second sweep on the terms of its neighbours are
// taken from what the sweep before left, so that they accumulate where a pixel is visited again.
void visit(const field& f, const _mat_set* from, std::int64_t row, std::int64_t col, double* sums) {
  const std::int64_t p = row * f.cols + col;
  const std::int32_t half = f.kernels->nmat / 2;
  for (std::int32_t c = 0; c < f.classes; ++c) sums[c] = elements_of<const double>(from, c)[p];
  const reach frames(f.frame, half, f.labels->nmat);
  for (std::int64_t t = frames.first; t <= frames.last; ++t) {
    if (t == f.frame && f.out->data[p] == -1) continue;
    const auto i = static_cast<std::int32_t>(t);
    attract(f, t == f.frame ? f.out->data : elements_of<const std::int32_t>(f.labels, i),
            elements_of<const double>(f.kernels, i - f.frame + half), row, col, sums);
  }
  for (std::int32_t c = 0; c < f.classes; ++c) elements_of<double>(f.distances, c)[p] = sums[c];
}

code sweep(const field& f, const _mat_set* from, const std::uint32_t* mask, double* sums, checkpoint& cost) {
  const double row_cost = (2.0 * f.classes + f.kernel_elements * f.kernels->nmat * 7.0) * f.out->ncol;
  for (std::int64_t row = 0; row < f.rows; ++row) {
    for (std::int64_t col = 0; col < f.cols; ++col)
      if (mask[row * f.cols + col] != 0) visit(f, from, row, col, sums);
    TRY(cost.add(row_cost));
  }
  return KORVO_ERR_OK;
}

std::int32_t nearest_class(const field& f, std::int64_t p) {
  std::int32_t nearest = 0;
  for (std::int32_t c = 1; c < f.classes; ++c)
    if (elements_of<const double>(f.distances, c)[p] < elements_of<const double>(f.distances, nearest)[p])
      nearest = c;
  return nearest;
}

// The labels after a sweep, and around those that change the pixels that are to be visited again.
code relabel(const field& f, const std::uint32_t* mask, std::uint32_t* next, bool* changed, checkpoint& cost) {
  const double row_cost = (3.0 * f.classes + 2.0 * f.kernel_elements) * f.out->ncol;
  *changed = false;
  std::fill_n(next, f.out->nelem, 0U);
  for (std::int64_t row = 0; row < f.rows; ++row) {
    for (std::int64_t col = 0; col < f.cols; ++col) {
      const std::int64_t p = row * f.cols + col;
      if (mask[p] == 0) continue;
      const std::int32_t nearest = nearest_class(f, p);
      if (nearest == f.out->data[p]) continue;
      const reach down(row, f.half_rows, f.rows);
      const reach across(col, f.half_cols, f.cols);
      for (std::int64_t r = down.first; r <= down.last; ++r)
        std::fill(next + r * f.cols + across.first, next + r * f.cols + across.last + 1, 1U);
      f.out->data[p] = nearest;
      *changed = true;
    }
    TRY(cost.add(row_cost));
  }
  return KORVO_ERR_OK;
}

code settle(const field& f, void* intrp_ptr) {
  std::fill_n(f.out->data, f.out->nelem, -1);
  temporary<_u32_mat> mask;
  temporary<_u32_mat> next;
  scratch<double> sums;
  TRY(mask.make(f.rows, f.cols));
  TRY(next.make(f.rows, f.cols));
  TRY(sums.make(f.classes));
  std::fill_n(mask.data, mask.nelem, 1U);
  checkpoint cost(intrp_ptr);
  bool changed = true;
  for (std::int32_t s = 0; s < most_sweeps && changed; ++s) {
    TRY(sweep(f, s == 0 ? f.in : f.distances, mask.data, sums.data(), cost));
    TRY(relabel(f, mask.data, next.data, &changed, cost));
    std::swap(mask.data, next.data);
  }
  return changed ? KORVO_ERR_NOT_CONVERGING : KORVO_ERR_OK;
}

code check_threshold(const _mat_set* distances, const _mat_set* labels, std::int32_t frame, double fraction,
                     const _mat_set* out) {
  TRY(all_alike({distances, labels, out}));
  if (!one_dimensional({distances, labels, out}) || labels->nmat != out->nmat ||
      !same_shape(distances->mats, labels->mats, out->mats))
    return KORVO_ERR_ILLEGAL_SIZE;
  if (!of_type(KORVO_SINT32, {labels, out}) || !of_type(KORVO_DOUBLE, {distances}))
    return KORVO_ERR_ILLEGAL_TYPE;
  if (frame < 0 || frame >= labels->nmat || !(fraction >= 0.0 && fraction <= 1.0))
    return KORVO_ERR_ILLEGAL_VALUE;
  TRY(members_valid({distances, labels, out}));
  return shares_data(out->mats[frame], distances) || shares_data(out->mats[frame], labels, frame)
             ? KORVO_ERR_ILLEGAL_ADDRESS
             : KORVO_ERR_OK;
}

// Nothing is rejected where all assigned distances are equal: the quotient is then NaN and compares false.
code threshold(const _mat_set* distances, const _mat_set* labels, std::int32_t frame, double fraction,
               void* intrp_ptr, _mat_set* result) {
  TRY(check_threshold(distances, labels, frame, fraction, result));
  const std::int32_t elements = labels->mats[frame].nelem;
  const auto* const in = elements_of<const std::int32_t>(labels, frame);
  auto* const out = elements_of<std::int32_t>(result, frame);
  double least = 0.0;
  double most = 0.0;
  bool begun = false;
  for (std::int32_t p = 0; p < elements; ++p) {
    out[p] = in[p];
    if (out[p] >= distances->nmat) return KORVO_ERR_ILLEGAL_VALUE;
    if (out[p] < 0) continue;
    const double d = elements_of<const double>(distances, out[p])[p];
    if (!begun || d < least) least = d;
    if (!begun || d > most) most = d;
    begun = true;
  }
  checkpoint cost(intrp_ptr);
  TRY(cost.add(elements * 2.0));
  for (std::int32_t p = 0; p < elements; ++p)
    if (out[p] >= 0 && fraction < (elements_of<const double>(distances, out[p])[p] - least) / (most - least))
      out[p] = -1;
  return cost.add(elements * 4.0);
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code imgset_classify_markov_random_field(const _mat_set* labels, const _mat_set* kernels, const _mat_set* in,
                                         int32_t frame, void* intrp_ptr, _mat_set* distances, _s32_mat* out) {
  TRY(check_field(labels, kernels, in, frame, distances, out));
  return settle({labels, kernels, in, frame, distances, out}, intrp_ptr);
}

code imgset_classify_threshold_distance(const _mat_set* distances, const _mat_set* labels, int32_t frame,
                                        double fraction, void* intrp_ptr, _mat_set* out) {
  return threshold(distances, labels, frame, fraction, intrp_ptr, out);
}

}  // extern "C"

// Gaussian classification: statistics of classes, squared Mahalanobis distances to them.
#include "korvos/classify/img_mrf.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "classify/img_mrf.hpp"
#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/levels.hpp"
#include "core/loop.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"
#include "korvos/numeric/mat_num.h"

#define KORVO_KERNELS "classify/img_mrf_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

constexpr std::int32_t strip = 384;  // pixels whose bands are gathered at a time; whole blocks of the kernel

bool is_vector_of(const _s32_mat* mat, std::int32_t count) {
  return mat->nelem == count && (mat->nrow == 1 || mat->ncol == 1);
}
bool are_statistics(const _mat_set* set, std::int64_t bands) {
  return set->mats[0].nrow == bands + 1 && set->mats[0].ncol == bands;
}
code real_type(_korvo_type type) {
  return dispatch(type, real_records{}, []<class M> { return KORVO_ERR_OK; });
}

// What an update starts from.
struct batch {
  const _mat_set* images;
  const _mat_set* labels;
  const _mat_set* old_statistics;  // null together with old_counts
  const _s32_mat* flags;
  const _s32_mat* old_counts;
};

code check_sizes(const batch& in, const _s32_mat* counts, const _mat_set* statistics) {
  const _mat_set* const old = in.old_statistics;
  if (in.images->ndim != 2 || !one_dimensional({in.labels, statistics}) || (old && !one_dimensional({old})))
    return KORVO_ERR_ILLEGAL_SIZE;
  const std::int32_t frames = in.images->dims[0];
  const std::int32_t bands = in.images->dims[1];
  const std::int32_t classes = statistics->nmat;
  if (in.labels->nmat != frames || !same_shape(in.images->mats, in.labels->mats) ||
      !is_vector_of(in.flags, frames) || !are_statistics(statistics, bands) || !is_vector_of(counts, classes))
    return KORVO_ERR_ILLEGAL_SIZE;
  if (old && (old->nmat != classes || !are_statistics(old, bands) || !is_vector_of(in.old_counts, classes)))
    return KORVO_ERR_ILLEGAL_SIZE;
  return KORVO_ERR_OK;
}

bool shares_with_inputs(const batch& in, const _s32_mat* counts, const _mat_set* statistics) {
  const _mat_set* const old = in.old_statistics;
  return shares_data(statistics, in.images) || shares_data(statistics, in.labels) ||
         shares_data(*in.flags, statistics) || shares_data(counts, in.flags) ||
         shares_data(*counts, in.images) || shares_data(*counts, in.labels) ||
         shares_data(*counts, statistics) ||
         (old && (shares_data(statistics, old) || shares_data(*in.old_counts, statistics) ||
                  shares_data(counts, in.old_counts) || shares_data(*counts, old)));
}

code check(const batch& in, const _s32_mat* counts, const _mat_set* statistics) {
  const _mat_set* const old = in.old_statistics;
  TRY(all_alike({in.images, in.labels}));
  if (old) TRY(all_alike({old}));
  TRY(all_alike({statistics}));
  TRY(valid(in.flags));
  if (!old && in.old_counts) return KORVO_ERR_NULL_POINTER;
  if (old) TRY(valid(in.old_counts));
  TRY(valid(counts));
  if (counts == in.old_counts || statistics == old) return KORVO_ERR_ILLEGAL_ADDRESS;
  TRY(check_sizes(in, counts, statistics));
  if (!of_type(KORVO_SINT32, {in.labels}) || !of_type(KORVO_DOUBLE, {statistics, old ? old : statistics}))
    return KORVO_ERR_ILLEGAL_TYPE;
  TRY(real_type(in.images->mats[0].type));
  TRY(members_valid({in.images, in.labels, old ? old : statistics, statistics}));
  if (shares_with_inputs(in, counts, statistics)) return KORVO_ERR_ILLEGAL_ADDRESS;
  if (old && std::any_of(in.old_counts->data, in.old_counts->data + in.old_counts->nelem,
                         [](std::int32_t n) { return n < 0; }))
    return KORVO_ERR_ILLEGAL_VALUE;
  return KORVO_ERR_OK;
}

// Adds the values of one pixel to the row of sums, and their products to the lower triangle under it.
void add_pixel(const double* values, std::int64_t bands, double* sums) {
  for (std::int64_t i = 0; i < bands; ++i) {
    sums[i] += values[i];
    double* const products = sums + (i + 1) * bands;
    for (std::int64_t j = 0; j <= i; ++j) products[j] += values[i] * values[j];
  }
}

// A frame's pixels, each to the sums of its class. The bands of a strip are gathered pixel by pixel first.
template <class M>
code add_frame(const _univ_mat* frame, std::int64_t bands, const std::int32_t* labels, double* values,
               std::int64_t* counts, const _mat_set* statistics) {
  const std::int32_t elements = frame->nelem;
  for (std::int32_t first = 0, n; first < elements; first += n) {
    n = std::min(strip, elements - first);
    for (std::int64_t i = 0; i < bands; ++i) {
      const auto* const band = static_cast<const element<M>*>(frame[i].data) + first;
      for (std::int32_t p = 0; p < n; ++p) values[p * bands + i] = static_cast<double>(band[p]);
    }
    for (std::int32_t p = 0; p < n; ++p) {
      const std::int32_t label = labels[first + p];
      if (label >= statistics->nmat) return KORVO_ERR_ILLEGAL_VALUE;
      if (label < 0) continue;
      ++counts[label];
      add_pixel(values + p * bands, bands, elements_of<double>(statistics, label));
    }
  }
  return KORVO_ERR_OK;
}

// From sums to mean and covariance, with what n old pixels had; old is null where there are none.
void finish_class(const double* old, double n, double total, std::int64_t bands, double* now) {
  for (std::int64_t i = 0; i < bands; ++i) {
    now[i] = old ? (n * old[i] + now[i]) / total : now[i] / total;
    for (std::int64_t j = 0; j <= i; ++j) {
      const std::int64_t at = (i + 1) * bands + j;
      double product = now[at];
      if (old) {
        product += n * old[j] * old[i];
        product += (n - 1.0) * old[at];
      }
      product -= now[i] * now[j] * total;
      if (total > 1.0) product /= total - 1.0;
      now[at] = product;
      now[(j + 1) * bands + i] = product;  // not read again: only lower elements are
    }
  }
}

code update(const batch& in, void* intrp_ptr, _s32_mat* counts, _mat_set* statistics) {
  TRY(check(in, counts, statistics));
  const std::int32_t classes = statistics->nmat;
  const std::int32_t bands = in.images->dims[1];
  const double squared = static_cast<double>(bands) * bands;
  std::fill_n(counts->data, counts->nelem, 0);
  for (std::int32_t c = 0; c < classes; ++c)
    std::fill_n(elements_of<double>(statistics, c), statistics->mats[c].nelem, 0.0);
  scratch<double> values;
  scratch<std::int64_t> pixels;
  TRY(values.make(std::int64_t{strip} * bands));
  TRY(pixels.make(classes));
  std::fill_n(pixels.data(), classes, 0);

  checkpoint cost(intrp_ptr);
  for (std::int32_t t = 0; t < in.images->dims[0]; ++t) {
    if (in.flags->data[t] == 0) continue;
    const _univ_mat* const frame = in.images->mats + std::int64_t{t} * bands;
    TRY(dispatch(frame->type, real_records{}, [&]<class M> {
      return add_frame<M>(frame, bands, elements_of<const std::int32_t>(in.labels, t), values.data(),
                          pixels.data(), statistics);
    }));
    TRY(cost.add(squared * frame->nelem * 4.0));
  }
  for (std::int32_t c = 0; c < classes; ++c) {
    const std::int32_t n = in.old_counts ? in.old_counts->data[c] : 0;
    const std::int64_t total = pixels[c] + n;
    if (total > largest_size) return KORVO_ERR_OVERFLOW;
    if (total == 0) continue;
    finish_class(n != 0 ? elements_of<const double>(in.old_statistics, c) : nullptr, n,
                 static_cast<double>(total), bands, elements_of<double>(statistics, c));
    counts->data[c] = static_cast<std::int32_t>(total);
    TRY(cost.add(squared * 10.0));
  }
  return KORVO_ERR_OK;
}

code check_distance(const _mat_set* images, const _mat_set* statistics, std::int32_t frame,
                    const _mat_set* distances) {
  TRY(all_alike({images, statistics, distances}));
  if (images->ndim != 2 || !one_dimensional({statistics, distances}) ||
      !are_statistics(statistics, images->dims[1]) || distances->nmat != statistics->nmat ||
      !same_shape(images->mats, distances->mats))
    return KORVO_ERR_ILLEGAL_SIZE;
  if (frame < 0 || frame >= images->dims[0]) return KORVO_ERR_ILLEGAL_VALUE;
  if (!of_type(KORVO_DOUBLE, {statistics, distances})) return KORVO_ERR_ILLEGAL_TYPE;
  TRY(real_type(images->mats[0].type));
  TRY(members_valid({images, statistics, distances}));
  return shares_data(distances, images) || shares_data(distances, statistics) ? KORVO_ERR_ILLEGAL_ADDRESS
                                                                              : KORVO_ERR_OK;
}

// The inverse of a covariance matrix, by way of `work`. A class without a spread is farther than all else,
// except at its mean: what stands beside the diagonal is far below the 1e37 on it.
code invert(const double* covariance, void* intrp_ptr, _dbl_mat* work, _dbl_mat* inverse) {
  std::copy_n(covariance, work->nelem, work->data);
  double magnitude = 0.0;
  for (std::int32_t i = 0; i < work->nelem; ++i) magnitude += std::fabs(work->data[i]);
  if (magnitude < 1e-09) {
    for (std::int64_t i = 0; i < work->nrow; ++i) work->data[i * work->ncol + i] = 1e+37;
    std::copy_n(work->data, work->nelem, inverse->data);
    return KORVO_ERR_OK;
  }
  if (work->nelem > 1) return matdbl_inverse(work, intrp_ptr, inverse);
  inverse->data[0] = 1.0 / work->data[0];
  return KORVO_ERR_OK;
}

template <class M>
void class_distances(const _univ_mat* frame, std::int64_t bands, const double* mean, const double* inverse,
                     double* differences, double* out) {
  const auto subtract_mean = KORVO_AT_LEVEL(subtract_mean<element<M>>);
  const auto squared_distances = KORVO_AT_LEVEL(squared_distances);
  for (std::int32_t first = 0, n; first < frame->nelem; first += n) {
    n = std::min(strip, frame->nelem - first);
    for (std::int64_t i = 0; i < bands; ++i)
      subtract_mean(static_cast<const element<M>*>(frame[i].data) + first, mean[i], differences + i * strip, n);
    squared_distances(differences, strip, inverse, bands, out + first, n);
  }
}

code distance(const _mat_set* images, const _mat_set* statistics, std::int32_t t, void* intrp_ptr,
              _mat_set* distances) {
  TRY(check_distance(images, statistics, t, distances));
  const std::int32_t bands = images->dims[1];
  const _univ_mat* const frame = images->mats + std::int64_t{t} * bands;
  scratch<double> differences;
  temporary<_dbl_mat> work;
  temporary<_dbl_mat> inverse;
  TRY(differences.make(std::int64_t{strip} * bands));
  TRY(work.make(bands, bands));
  TRY(inverse.make(bands, bands));
  std::fill_n(differences.data(), std::int64_t{strip} * bands, 0.0);  // blocks read past the last pixel

  const double step = static_cast<double>(bands) * bands + (bands + 3.0) * frame->nelem * bands;
  checkpoint cost(intrp_ptr);
  for (std::int32_t c = 0; c < statistics->nmat; ++c) {
    const double* const mean = elements_of<const double>(statistics, c);
    TRY(invert(mean + bands, intrp_ptr, &work, &inverse));
    TRY(dispatch(frame->type, real_records{}, [&]<class M> {
      class_distances<M>(frame, bands, mean, inverse.data, differences.data(),
                         elements_of<double>(distances, c));
      return KORVO_ERR_OK;
    }));
    TRY(cost.add(step));
  }
  return KORVO_ERR_OK;
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code imgset_classify_gaussian_estimate(const _mat_set* images, const _mat_set* labels, const _s32_mat* flags,
                                       void* intrp_ptr, _s32_mat* counts, _mat_set* statistics) {
  return update({images, labels, nullptr, flags, nullptr}, intrp_ptr, counts, statistics);
}

code imgset_classify_gaussian_update(const _mat_set* images, const _mat_set* labels,
                                     const _mat_set* old_statistics, const _s32_mat* flags,
                                     const _s32_mat* old_counts, void* intrp_ptr, _s32_mat* counts,
                                     _mat_set* statistics) {
  return update({images, labels, old_statistics, flags, old_counts}, intrp_ptr, counts, statistics);
}

code imgset_classify_gaussian_distance(const _mat_set* images, const _mat_set* statistics, int32_t frame,
                                       void* intrp_ptr, _mat_set* distances) {
  return distance(images, statistics, frame, intrp_ptr, distances);
}

}  // extern "C"

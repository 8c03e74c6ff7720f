// Distance transform: columns first, then the lower envelope of each row.
#include "korvos/segment/img_dist.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"

namespace korvo {
namespace {

constexpr double no_feature = 1e37;  // and adding 1 leaves it so

// For each metric, of two columns with the distance to a feature in each: the distance at column x by way of
// column i, and the last column at which i is no worse than a later column u. Whole numbers, so exact.
struct euclidean {
  static std::int64_t by_way_of(std::int64_t x, std::int64_t i, std::int64_t g) {
    return (x - i) * (x - i) + g * g;
  }
  static std::int64_t last_of(std::int64_t i, std::int64_t gi, std::int64_t u, std::int64_t gu) {
    return (u * u - i * i + gu * gu - gi * gi) / (2 * (u - i));
  }
  static double length(std::int64_t measure) { return std::sqrt(static_cast<double>(measure)); }
};

struct city_block {
  static std::int64_t by_way_of(std::int64_t x, std::int64_t i, std::int64_t g) { return std::abs(x - i) + g; }
  static std::int64_t last_of(std::int64_t i, std::int64_t gi, std::int64_t u, std::int64_t gu) {
    if (gu >= gi + u - i) return INT32_MAX;  // u is never the nearer
    return (gu - gi + u + i) / 2;
  }
  static double length(std::int64_t measure) { return static_cast<double>(measure); }
};

struct chessboard {
  static std::int64_t by_way_of(std::int64_t x, std::int64_t i, std::int64_t g) {
    return std::max(std::abs(x - i), g);
  }
  static std::int64_t last_of(std::int64_t i, std::int64_t gi, std::int64_t u, std::int64_t gu) {
    return gi <= gu ? std::max(i + gu, (i + u) / 2) : std::min(u - gi, (i + u) / 2);
  }
  static double length(std::int64_t measure) { return static_cast<double>(measure); }
};

// The columns that are nearest somewhere in a row, and from where on each of them is.
struct envelope {
  scratch<std::int64_t> distance;  // down or up each column to its nearest feature
  scratch<std::int32_t> column;
  scratch<std::int64_t> from;

  [[nodiscard]] code make(std::int32_t ncol) {
    TRY(distance.make(ncol));
    TRY(column.make(ncol));
    return from.make(ncol);
  }
};

// A row of distances along columns becomes one of distances. Columns without a feature take no part.
template <class Metric>
void along_row(double* row, std::int32_t ncol, const envelope& nearest) {
  std::int32_t top = -1;
  for (std::int32_t u = 0; u < ncol; ++u) {
    if (row[u] == no_feature) continue;
    const std::int64_t gu = nearest.distance[u] = static_cast<std::int64_t>(row[u]);
    const auto beaten = [&] {
      const std::int32_t i = nearest.column[top];
      const std::int64_t x = nearest.from[top];
      return Metric::by_way_of(x, i, nearest.distance[i]) > Metric::by_way_of(x, u, gu);
    };
    while (top >= 0 && beaten()) --top;
    std::int64_t first = 0;
    if (top >= 0) {
      const std::int32_t i = nearest.column[top];
      first = 1 + Metric::last_of(i, nearest.distance[i], u, gu);
    }
    if (first >= ncol) continue;
    nearest.column[++top] = u;
    nearest.from[top] = first;
  }
  if (top < 0) return;
  for (std::int32_t x = ncol - 1; x >= 0; --x) {
    const std::int32_t i = nearest.column[top];
    row[x] = Metric::length(Metric::by_way_of(x, i, nearest.distance[i]));
    if (x == nearest.from[top]) --top;
  }
}

// Distances along the columns: down, then up.
template <class M>
code along_columns(const M* image, element<M> feature, checkpoint& poll, _dbl_mat* out) {
  const std::int64_t ncol = image->ncol;
  for (std::int64_t r = 0; r < image->nrow; ++r) {
    const element<M>* const in = image->data + r * ncol;
    double* const here = out->data + r * ncol;
    for (std::int64_t c = 0; c < ncol; ++c)
      here[c] = in[c] == feature ? 0.0 : r > 0 ? here[c - ncol] + 1.0 : no_feature;
    TRY(poll.add(4.0 * image->ncol));
  }
  for (std::int64_t r = image->nrow - 2; r >= 0; --r) {
    double* const here = out->data + r * ncol;
    for (std::int64_t c = 0; c < ncol; ++c) here[c] = std::min(here[c], here[c + ncol] + 1.0);
  }
  return KORVO_ERR_OK;
}

template <class Metric, class M>
code transform(const M* image, element<M> feature, void* intrp_ptr, _dbl_mat* out) {
  envelope nearest;
  TRY(nearest.make(image->ncol));
  checkpoint poll(intrp_ptr);
  TRY(along_columns(image, feature, poll, out));
  for (std::int64_t r = 0; r < image->nrow; ++r) {
    along_row<Metric>(out->data + r * image->ncol, image->ncol, nearest);
    TRY(poll.add(20.0 * image->ncol));
  }
  return KORVO_ERR_OK;
}

template <class M>
code transform_distance(const M* image, std::int32_t metric, element<M> feature, void* intrp_ptr,
                        _dbl_mat* out) {
  TRY(valid(image));
  TRY(valid(out));
  if (!same_shape(image, out)) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(image, out)) return KORVO_ERR_ILLEGAL_ADDRESS;
  switch (metric) {
    case IMG_METRIC_EUCLIDEAN:
      return transform<euclidean>(image, feature, intrp_ptr, out);
    case IMG_METRIC_CITY_BLOCK:
      return transform<city_block>(image, feature, intrp_ptr, out);
    case IMG_METRIC_CHESSBOARD:
      return transform<chessboard>(image, feature, intrp_ptr, out);
    default:
      return KORVO_ERR_ILLEGAL_VALUE;
  }
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code imguniv_transform_distance(const _univ_mat* image, int32_t metric, _univ_scalar feature, void* intrp_ptr,
                                _univ_mat* out) {
  if (!image || !out) return KORVO_ERR_NULL_POINTER;
  if (out->type != KORVO_DOUBLE || feature.type != image->type) return KORVO_ERR_ILLEGAL_TYPE;
  return dispatch(image->type, real_records{}, [&]<class M> {
    const M from = as<M>(*image);
    _dbl_mat to = as<_dbl_mat>(*out);
    return transform_distance(&from, metric, number<M>(feature), intrp_ptr, &to);
  });
}

}  // extern "C"

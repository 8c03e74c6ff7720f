// The nearest codeword of each training vector: full search, search by norms, search by norms with a table.
#include "classify/cls_utnn.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "core/checkpoint.hpp"
#include "core/levels.hpp"

#define KORVO_KERNELS "classify/cls_utnn_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

// The squared distance, or a part of it that exceeds the limit; looked at now and then, since a wrong guess of
// the processor costs more than a few elements.
double distance(const double* x, const double* y, std::int64_t dimension, double limit) {
  constexpr std::int64_t strip = 16;
  double sum = 0.0;
  for (std::int64_t e = 0; e < dimension && !(sum > limit);)
    for (const std::int64_t end = std::min(dimension, e + strip); e < end; ++e)
      sum += (x[e] - y[e]) * (x[e] - y[e]);
  return sum;
}

double norm(const double* x, std::int64_t dimension) {
  double sum = 0.0;
  for (std::int64_t e = 0; e < dimension; ++e) sum += x[e] * x[e];
  return std::sqrt(sum);
}

const double* row_of(const _dbl_mat& mat, std::int64_t row) { return mat.data + row * mat.ncol; }

void clear(const cell_statistics& found, const _dbl_mat& codebook) {
  std::fill_n(found.populations, codebook.nrow, 0);
  std::fill_n(found.distortions, codebook.nrow, 0.0);
  if (found.centroids) std::fill_n(found.centroids, codebook.nelem, 0.0);
}

// A training vector joins the cell of its codeword.
void enter(const double* x, std::int64_t dimension, std::int64_t row, double distance,
           const cell_statistics& found) {
  ++found.populations[row];
  found.distortions[row] += distance;
  if (!found.centroids) return;
  double* const centroid = found.centroids + row * dimension;
  for (std::int64_t e = 0; e < dimension; ++e) centroid[e] += x[e];
}

// Sums become means; cells without members keep 0.
void divide(const cell_statistics& found, const _dbl_mat& codebook) {
  for (std::int64_t row = 0; row < codebook.nrow; ++row) {
    const double population = found.populations[row];
    if (population == 0.0) continue;
    found.distortions[row] /= population;
    if (!found.centroids) continue;
    double* const centroid = found.centroids + row * codebook.ncol;
    for (std::int64_t e = 0; e < codebook.ncol; ++e) centroid[e] /= population;
  }
}

}  // namespace

code nearest_search::make(std::int32_t mode, std::int64_t codewords, std::int64_t dimension) {
  constexpr std::int64_t group = codeword_groups::group;
  mode_ = mode;
  if (mode == full_search) return groups_.make((codewords + group - 1) / group * group * dimension);
  TRY(norms_.make(codewords));
  TRY(rows_.make(codewords));
  return mode == table_search ? table_.make(codewords * codewords) : KORVO_ERR_OK;
}

// The last group is filled up with codewords that are never near.
void nearest_search::gather(const _dbl_mat& codebook) const {
  constexpr std::int64_t group = codeword_groups::group;
  for (std::int64_t first = 0; first < codebook.nrow; first += group)
    for (std::int64_t i = 0; i < group; ++i) {
      double* const to = groups_.data() + first * codebook.ncol + i;
      const std::int64_t row = first + i;
      for (std::int64_t e = 0; e < codebook.ncol; ++e)
        to[e * group] = row < codebook.nrow ? row_of(codebook, row)[e] : infinity;
    }
}

// Selection sort, which settles the order of equal norms. A codeword with a NaN is near nothing: as if it lay
// at infinity, it leaves the others in order.
void nearest_search::sort(const _dbl_mat& codebook) const {
  const std::int64_t n = codebook.nrow;
  for (std::int64_t i = 0; i < n; ++i) {
    const double length = norm(row_of(codebook, i), codebook.ncol);
    norms_[i] = std::isnan(length) ? infinity : length;
    rows_[i] = static_cast<std::int32_t>(i);
  }
  for (std::int64_t i = 0; i < n; ++i) {
    const std::int64_t least = std::min_element(norms_.data() + i, norms_.data() + n) - norms_.data();
    std::swap(norms_[i], norms_[least]);
    std::swap(rows_[i], rows_[least]);
  }
}

void nearest_search::tabulate(const _dbl_mat& codebook) const {
  const std::int64_t n = codebook.nrow;
  for (std::int64_t i = 0; i < n; ++i)
    for (std::int64_t j = 0; j <= i; ++j) {
      const double squared =
          distance(row_of(codebook, rows_[i]), row_of(codebook, rows_[j]), codebook.ncol, infinity);
      table_[i * n + j] = table_[j * n + i] = std::sqrt(squared);
    }
}

void nearest_search::prepare(const _dbl_mat& codebook) const {
  if (mode_ == full_search) return gather(codebook);
  sort(codebook);
  if (mode_ == table_search) tabulate(codebook);
}

// The first position from low to high whose norm is not below the bound; high if all are.
std::int64_t nearest_search::first_not_below(double bound, std::int64_t low, std::int64_t high) const {
  while (low < high) {
    const std::int64_t middle = low + (high - low) / 2;
    if (norms_[middle] < bound)
      low = middle + 1;
    else
      high = middle;
  }
  return low;
}

// The last position from low to high whose norm is below the bound; low if none is.
std::int64_t nearest_search::last_below(double bound, std::int64_t low, std::int64_t high) const {
  while (low < high) {
    const std::int64_t middle = high - (high - low) / 2;
    if (norms_[middle] < bound)
      low = middle;
    else
      high = middle - 1;
  }
  return low;
}

// No codeword is nearer than its norm is to that of x. The codeword of the next norm, where the walk's range
// comes from, may lie on the end of that range and outside it: it is the answer unless the walk finds one as
// near. Until a candidate has been found, none is left out for its distance to the answer.
nearest_search::nearest nearest_search::walk(const double* x, const _dbl_mat& codebook) const {
  const std::int64_t last = codebook.nrow - 1;
  const double length = norm(x, codebook.ncol);
  const std::int64_t start = first_not_below(length, 0, last);
  const double bound = distance(x, row_of(codebook, rows_[start]), codebook.ncol, infinity);
  std::int64_t low = first_not_below(length - std::sqrt(bound), 0, last);
  std::int64_t high = last_below(length + std::sqrt(bound), low, last);
  nearest best = {start, beyond_reach};
  double farthest = infinity;
  for (std::int64_t j = low; j <= high; j = std::max(j + 1, low)) {
    if (mode_ == table_search && !(table_[best.position * codebook.nrow + j] <= farthest)) continue;
    const double squared = distance(x, row_of(codebook, rows_[j]), codebook.ncol, best.distance);
    if (!(squared < best.distance)) continue;
    best = {j, squared};
    const double radius = std::sqrt(squared);
    farthest = 2.0 * radius;
    low = first_not_below(length - radius, low, high);
    high = last_below(length + radius, low, high);
  }
  return bound < best.distance ? nearest{start, bound} : best;
}

void nearest_search::find(const double* x, std::int64_t count, const _dbl_mat& codebook, std::int32_t* rows,
                          double* distances) const {
  if (mode_ == full_search) {
    const codeword_groups book = {groups_.data(), codebook.nrow, codebook.ncol};
    return KORVO_AT_LEVEL(search_fully)(x, count, book, rows, distances);
  }
  for (std::int64_t i = 0; i < count; ++i) {
    const nearest best = walk(x + i * codebook.ncol, codebook);
    rows[i] = rows_[best.position];
    distances[i] = best.distance;
  }
}

code nearest_search::pass(const _dbl_mat& training, const _dbl_mat& codebook, void* intrp_ptr,
                          const cell_statistics& found, double* distortion) const {
  constexpr std::int64_t strip = 64;
  std::int32_t rows[strip];
  double distances[strip];
  clear(found, codebook);
  prepare(codebook);
  double total = 0.0;
  for (std::int64_t first = 0; first < training.nrow; first += strip) {
    const std::int64_t count = std::min(strip, training.nrow - first);
    find(row_of(training, first), count, codebook, rows, distances);
    for (std::int64_t i = 0; i < count; ++i) {
      if (!(distances[i] < beyond_reach)) return KORVO_ERR_OVERFLOW;
      total += distances[i];
      enter(row_of(training, first + i), codebook.ncol, rows[i], distances[i], found);
    }
    if (found.index) std::copy_n(rows, count, found.index + first);
  }
  divide(found, codebook);
  *distortion = total / training.nrow;
  return checkpoint(intrp_ptr).add(codebook.nelem * (mode_ == norm_search ? 10.0 : 1.0));
}

}  // namespace korvo

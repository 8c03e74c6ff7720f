// Neighbourhoods of images: convolve, correlate, local_mean, local_variance.
#include "korvos/segment/img_conv.h"

#include <algorithm>
#include <cstdint>

#include "core/arithmetic.hpp"
#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/levels.hpp"
#include "core/loop.hpp"
#include "core/valid.hpp"
#include "signal/sig_conv.hpp"

#define KORVO_KERNELS "segment/img_conv_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

// As siguniv_convolve() and siguniv_correlate(), with the middle of the kernel on the output position.
template <class F>
code centred(const _univ_mat* image, const _univ_mat* kernel, std::int32_t boundary, void* intrp_ptr,
             _univ_mat* out, F form) {
  TRY(matuniv_validate(kernel));
  return form(image, kernel, 1, 1, kernel->nrow - kernel->nrow / 2, kernel->ncol - kernel->ncol / 2, boundary,
              intrp_ptr, out);
}

// A window of odd sizes on its way along the rows of an image that it fits in.
struct sliding_window {
  const double* image;
  std::int64_t nrow;
  std::int64_t ncol;
  std::int64_t half_rows;
  std::int64_t half_cols;
  double area;
  index_rule rule;

  // A row of the image; null for one of zeros.
  const double* row(std::int64_t i) const {
    const std::int64_t inside = rule(i, nrow);
    return inside < 0 ? nullptr : image + inside * ncol;
  }
  double sample(const double* from, std::int64_t j) const {
    const std::int64_t inside = rule(j, ncol);
    return inside < 0 ? 0.0 : from[inside];
  }
};

// Sums over a window, or what changes in them from one window to the next.
struct moments {
  double sum = 0.0;
  double sum_of_squares = 0.0;
};

// The whole window over the first column of a row. Rows of zeros change no sum and are left out.
moments first_window(const sliding_window& window, std::int64_t r) {
  moments total;
  for (std::int64_t i = r - window.half_rows; i <= r + window.half_rows; ++i) {
    const double* const row = window.row(i);
    for (std::int64_t j = -window.half_cols; row && j <= window.half_cols; ++j) {
      const double x = window.sample(row, j);
      total.sum += x;
      total.sum_of_squares += x * x;
    }
  }
  return total;
}

// The changes for some columns of `windows` windows one above another. Each sum takes the rows of its window in
// their order, and a row of the image is read once for all windows that it lies in.
template <bool squares, int windows>
class changes {
 public:
  static constexpr std::int64_t most = 128;

  explicit changes(const sliding_window& window) : window_(window) {}

  // From column `col` on, for windows around row r and those below; divided by the area of a window.
  void find(std::int64_t r, std::int64_t col, std::int64_t cols) {
    const std::int64_t shared = r - window_.half_rows + windows - 1;  // the rows that all windows contain
    const std::int64_t shared_end = r + window_.half_rows + 1;
    const auto divide = KORVO_AT_LEVEL(divide);
    std::fill_n(sums_, windows * most, 0.0);
    std::fill_n(sums_of_squares_, squares ? windows * most : 0, 0.0);
    for (int w = 0; w < windows - 1; ++w) add<1>(shared - (windows - 1 - w), shared, col, cols, w);
    add<windows>(shared, shared_end, col, cols, 0);
    for (int w = 1; w < windows; ++w) add<1>(shared_end, shared_end + w, col, cols, w);
    divide(window_.area, windows * most, sums_);
    divide(window_.area, squares ? windows * most : 0, sums_of_squares_);
  }

  moments of(int w, std::int64_t k) const {
    return {sums_[w * most + k], squares ? sums_of_squares_[w * most + k] : 0.0};
  }

 private:
  // Adds the rows from `first` to before `last` to `n` windows from w on. Rows of zeros change no sum.
  template <int n>
  void add(std::int64_t first, std::int64_t last, std::int64_t col, std::int64_t cols, int w) {
    constexpr std::int64_t rows_at_once = 64;
    const std::int64_t half = window_.half_cols;
    const std::int64_t inner = std::clamp<std::int64_t>(half + 1 - col, 0, cols);
    const std::int64_t outer = std::clamp<std::int64_t>(window_.ncol - half - col, inner, cols);
    double* const sums = sums_ + w * most;
    double* const sums_of_squares = sums_of_squares_ + w * most;
    const auto add_inside = KORVO_AT_LEVEL(add_changes<squares, n>);
    while (first < last) {
      const double* rows[rows_at_once];
      std::int64_t count = 0;
      for (; first < last && count < rows_at_once; ++first)
        if (const double* const row = window_.row(first)) rows[count++] = row;
      add_at_edge<n>(rows, count, col, 0, inner, sums, sums_of_squares);
      add_inside(rows, count, col + inner + half, col + inner - half - 1, outer - inner, most, sums + inner,
                 sums_of_squares + inner);
      add_at_edge<n>(rows, count, col, outer, cols, sums, sums_of_squares);
    }
  }

  // Columns for which a sample lies outside.
  template <int n>
  void add_at_edge(const double* const* rows, std::int64_t count, std::int64_t col, std::int64_t first,
                   std::int64_t last, double* sums, double* sums_of_squares) const {
    for (std::int64_t k = first; k < last; ++k)
      for (std::int64_t i = 0; i < count; ++i) {
        const double x = window_.sample(rows[i], col + k + window_.half_cols);
        const double y = window_.sample(rows[i], col + k - window_.half_cols - 1);
        for (int w = 0; w < n; ++w) {
          sums[w * most + k] += x - y;
          if constexpr (squares) sums_of_squares[w * most + k] += x * x - y * y;
        }
      }
  }

  const sliding_window& window_;
  double sums_[windows * most];
  double sums_of_squares_[windows * most];
};

// The statistic along a row of windows: of the first from its sums, then by what changes. The cost of a row
// comes with it.
struct running_mean {
  static constexpr bool needs_squares = false;
  double mean = 0.0;

  double first(const moments& total, double area) { return mean = total.sum / area; }
  double next(const moments& change) { return mean = change.sum + mean; }
  static double cost(double window_rows, double area, double cols) {
    return (window_rows * 13.0 + 3.0) * cols + area * 8.0 + 3.0;
  }
};

// Never clamped: rounding may leave it a little below 0.
struct running_variance {
  static constexpr bool needs_squares = true;
  double mean = 0.0;
  double variance = 0.0;

  double first(const moments& total, double area) {
    mean = total.sum / area;
    return variance = total.sum_of_squares / area - mean * mean;
  }
  double next(const moments& change) {
    const double before = mean;
    mean = change.sum + before;
    return variance = change.sum_of_squares + variance + before * before - mean * mean;
  }
  static double cost(double window_rows, double area, double cols) {
    return (window_rows * 15.0 + 8.0) * cols + area * 8.0 + 6.0;
  }
};

// `rows` rows of the result abreast, since each step along a row waits for the one before it.
template <class Statistic, int rows>
void slide(const sliding_window& window, std::int64_t r, double* out) {
  Statistic statistic[rows];
  for (int w = 0; w < rows; ++w)
    out[w * window.ncol] = statistic[w].first(first_window(window, r + w), window.area);
  changes<Statistic::needs_squares, rows> change(window);
  for (std::int64_t c = 1; c < window.ncol; c += change.most) {
    const std::int64_t cols = std::min(change.most, window.ncol - c);
    change.find(r, c, cols);
    for (std::int64_t k = 0; k < cols; ++k)
      for (int w = 0; w < rows; ++w) out[w * window.ncol + c + k] = statistic[w].next(change.of(w, k));
  }
}

bool fits(std::int32_t window_size, std::int32_t size) {
  return window_size >= 1 && window_size <= size && window_size % 2 == 1;
}

template <class Statistic>
code slide_over(const sliding_window& window, void* intrp_ptr, _dbl_mat* out) {
  constexpr std::int32_t abreast = 4;
  const std::int64_t window_rows = 2 * window.half_rows + 1;
  const double row_cost = Statistic::cost(static_cast<double>(window_rows), window.area, out->ncol);
  checkpoint cost(intrp_ptr);
  for (std::int32_t r = 0; r < out->nrow;) {
    const std::int32_t rows = cost.strip(row_cost, std::min(abreast, out->nrow - r));
    double* const to = out->data + std::int64_t{r} * out->ncol;
    if (rows == abreast && window_rows >= abreast)
      slide<Statistic, abreast>(window, r, to);
    else
      for (std::int64_t w = 0; w < rows; ++w) slide<Statistic, 1>(window, r + w, to + w * out->ncol);
    TRY(cost.add_strip(row_cost, rows));
    r += rows;
  }
  return KORVO_ERR_OK;
}

template <class Statistic>
code local(const _dbl_mat* image, std::int32_t window_rows, std::int32_t window_cols, std::int32_t boundary,
           void* intrp_ptr, _dbl_mat* out) {
  TRY(valid(image, out));
  if (!same_shape(image, out)) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(image, out)) return KORVO_ERR_ILLEGAL_ADDRESS;
  if (!fits(window_rows, image->nrow) || !fits(window_cols, image->ncol)) return KORVO_ERR_ILLEGAL_SIZE;
  if (boundary != SIG_BOUNDARY_ZERO && boundary != SIG_BOUNDARY_CONTINUE) {
    out->data[0] = 0.0;  // kept: the mode is looked at when the first sum has been begun
    return KORVO_ERR_ILLEGAL_VALUE;
  }
  const double area = product(window_rows, window_cols);
  const index_rule rule = rule_of(boundary);
  const sliding_window window = {image->data,     image->nrow, image->ncol, window_rows / 2,
                                 window_cols / 2, area,        rule};
  return slide_over<Statistic>(window, intrp_ptr, out);
}

template <class Statistic>
code local(const _univ_mat* image, std::int32_t window_rows, std::int32_t window_cols, std::int32_t boundary,
           void* intrp_ptr, _univ_mat* out) {
  return dispatch_same(image, out, records<_dbl_mat>{}, [&](const _dbl_mat* from, _dbl_mat* to) {
    return local<Statistic>(from, window_rows, window_cols, boundary, intrp_ptr, to);
  });
}

}  // namespace
}  // namespace korvo

using namespace korvo;

#define CENTRED(name, method)                                                                   \
  code name(const _univ_mat* image, const _univ_mat* kernel, int32_t boundary, void* intrp_ptr, \
            _univ_mat* out) {                                                                   \
    return centred(image, kernel, boundary, intrp_ptr, out, method);                            \
  }
#define LOCAL(name, M, Statistic)                                                                        \
  code name(const M* image, int32_t window_rows, int32_t window_cols, int32_t boundary, void* intrp_ptr, \
            M* out) {                                                                                    \
    return local<Statistic>(image, window_rows, window_cols, boundary, intrp_ptr, out);                  \
  }

extern "C" {

CENTRED(imguniv_convolve, siguniv_convolve)
CENTRED(imguniv_correlate, siguniv_correlate)

LOCAL(imgdbl_local_mean, _dbl_mat, running_mean)
LOCAL(imguniv_local_mean, _univ_mat, running_mean)
LOCAL(imgdbl_local_variance, _dbl_mat, running_variance)
LOCAL(imguniv_local_variance, _univ_mat, running_variance)

}  // extern "C"

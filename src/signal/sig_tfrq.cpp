// Time-frequency distributions before their Fourier transform: local autocorrelations of a signal, by lags.
#include "korvos/signal/sig_tfrq.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/levels.hpp"
#include "core/loop.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"
#include "korvos/matrix/mat_assn.h"
#include "signal/sig_tfrq.hpp"

#define KORVO_KERNELS "signal/sig_tfrq_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

code check(const _dbl_mat* signal, std::int32_t time_step, const _dbl_mat* out) {
  TRY(valid(signal, out));
  if (signal->nrow != 1 && signal->ncol != 1) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(out, signal)) return KORVO_ERR_ILLEGAL_ADDRESS;
  return time_step < 1 ? KORVO_ERR_ILLEGAL_VALUE : KORVO_ERR_OK;
}

// Sets the result to zero if the formulas stay inside the signal and the result.
code begin(bool stays_inside, void* intrp_ptr, _dbl_mat* out) {
  return stays_inside ? matdbl_assign_scalar(0.0, intrp_ptr, out) : KORVO_ERR_ILLEGAL_SIZE;
}

// Columns of a result: held until there are some side by side, then written row by row. Those that were closed
// are written on every path.
class column_writer {
 public:
  explicit column_writer(const _dbl_mat* out) : out_(out), lags_(out->nrow) {}
  column_writer(const column_writer&) = delete;
  column_writer& operator=(const column_writer&) = delete;
  ~column_writer() { write(); }

  [[nodiscard]] code make() {
    constexpr std::int64_t fit = largest_size / static_cast<std::int64_t>(sizeof(double));
    abreast_ = std::clamp<std::int64_t>(fit / lags_, 1, std::min(most, out_->ncol));
    return held_.make(abreast_ * lags_);
  }

  // Room for the lags of a column, with anything in it.
  double* open(std::int64_t column) {
    if (count_ == abreast_ || column != first_ + count_) write();
    if (count_ == 0) first_ = column;
    return held_.data() + count_ * lags_;
  }
  // The column has this many lags, and zeros after them.
  void close(std::int64_t lags) {
    double* const column = held_.data() + count_ * lags_;
    std::fill(column + lags, column + lags_, 0.0);
    ++count_;
  }

 private:
  static constexpr std::int32_t most = 8;  // a line of the cache

  void write() {
    double* const to = out_->data + first_;
    if (count_ == most)
      KORVO_AT_LEVEL(turn_columns<most>)(held_.data(), lags_, lags_, to, out_->ncol);
    else
      for (std::int64_t k = 0; k < count_; ++k)
        KORVO_AT_LEVEL(turn_columns<1>)(held_.data() + k * lags_, lags_, lags_, to + k, out_->ncol);
    count_ = 0;
  }

  const _dbl_mat* out_;
  std::int64_t lags_;
  std::int64_t abreast_ = 1;
  std::int64_t first_ = 0;
  std::int64_t count_ = 0;
  scratch<double> held_;
};

// Goes on from instant t and column c, one instant at a time; step(t, lags) does its work, and close(c, lags)
// ends a column at each multiple of the time step. Kept: past the signal fewer than no lags are left, which
// lowers the tally, and columns are counted off. There the tally falls below 0 before 2 * samples more
// instants have gone by, so that no poll can follow, and nothing is left to do.
template <class Step, class Close>
code each_instant(const plane& size, std::int64_t t, std::int64_t c, checkpoint& cost, Step step, Close close) {
  for (; c < size.columns && t < 3 * size.samples; ++t) {
    const std::int64_t lags = size.left(t);
    if (lags > 0) step(t, lags);
    if (t % size.step == 0) {
      if (lags > 0) close(c, lags);
      ++c;
    }
    TRY(cost.add(200.0 * static_cast<double>(size.left(t + 1))));
  }
  return KORVO_ERR_OK;
}

code wigner(const _dbl_mat* signal, std::int32_t time_step, void* intrp_ptr, _dbl_mat* out) {
  TRY(check(signal, time_step, out));
  const plane size(signal, time_step, out);
  TRY(begin(size.wigner_stays_inside(), intrp_ptr, out));
  const double* const s = signal->data;
  const std::int64_t start = size.lags / 2;
  if (size.samples == start) out->data[0] = s[size.samples - 1] * s[size.samples - 1];
  if (size.samples <= start) return KORVO_ERR_OK;

  const auto add_products = KORVO_AT_LEVEL(add_symmetric_products);
  column_writer columns(out);
  TRY(columns.make());
  const auto open = [&](std::int64_t c) {
    double* const sums = columns.open(c);
    std::fill_n(sums, size.lags, 0.0);
    return sums;
  };
  double* acc = open(0);
  std::int64_t c = 0;
  checkpoint cost(intrp_ptr);
  for (std::int64_t t = 0; t < start; ++t) {  // kept: no poll until the lags fit on both sides
    add_products(s + t, t, acc);
    if (t % size.step == 0) {
      columns.close(start);
      acc = open(++c);
    }
    cost.count(200.0 * static_cast<double>(start));
  }
  return each_instant(
      size, start, c, cost, [&](std::int64_t t, std::int64_t lags) { add_products(s + t, lags, acc); },
      [&](std::int64_t column, std::int64_t lags) {
        columns.close(lags);
        acc = open(column + 1);
      });
}

code cone(const _dbl_mat* signal, std::int32_t time_step, void* intrp_ptr, _dbl_mat* out) {
  TRY(check(signal, time_step, out));
  const plane size(signal, time_step, out);
  TRY(begin(size.cone_stays_inside(), intrp_ptr, out));
  const double* const s = signal->data;
  const std::int64_t n = size.samples;
  if (n == size.lags) out->data[0] = s[n - 1] * s[n - 1] - s[n - 2] * s[n - 2];
  if (n <= size.lags) return KORVO_ERR_OK;

  column_writer columns(out);
  scratch<double> acc;
  TRY(columns.make());
  TRY(acc.make(size.lags));
  const auto keep = [&](std::int64_t column, std::int64_t lags) {
    std::copy_n(acc.data(), lags, columns.open(column));
    columns.close(lags);
  };
  for (std::int64_t tau = 0; tau < size.lags; ++tau) acc[tau] = s[tau] * s[0];
  keep(0, size.lags);
  checkpoint cost(intrp_ptr, 100.0 * static_cast<double>(size.lags));
  const auto move = KORVO_AT_LEVEL(move_cone);
  return each_instant(
      size, 1, 1, cost,
      [&](std::int64_t t, std::int64_t lags) { move(s + t, lags, std::min(lags, t), acc.data()); }, keep);
}

code born_jordan(const _dbl_mat* signal, std::int32_t time_step, void* intrp_ptr, _dbl_mat* out) {
  TRY(cone(signal, time_step, intrp_ptr, out));
  checkpoint cost(intrp_ptr);
  const double column_cost = 10.0 * out->nrow;
  for (std::int32_t j = 0; j < out->ncol;) {
    const std::int32_t cols = intrp_ptr ? cost.strip(column_cost, out->ncol - j) : out->ncol;
    for (std::int32_t i = 0; i < out->nrow; ++i) {
      const double weight = 1.0 / (i + 1.0);
      double* const row = out->data + std::int64_t{i} * out->ncol + j;
      for (std::int32_t k = 0; k < cols; ++k) row[k] *= weight;
    }
    TRY(cost.add_strip(column_cost, cols));
    j += cols;
  }
  return KORVO_ERR_OK;
}

code margeneau_hill(const _dbl_mat* signal, std::int32_t time_step, void* intrp_ptr, _dbl_mat* out) {
  TRY(check(signal, time_step, out));
  const plane size(signal, time_step, out);
  TRY(begin(size.margeneau_hill_stays_inside(), intrp_ptr, out));
  if (size.lags >= size.samples) return KORVO_ERR_OK;
  const auto products = KORVO_AT_LEVEL(centred_products);
  column_writer columns(out);
  TRY(columns.make());
  checkpoint cost(intrp_ptr);
  std::int64_t t = 0;
  std::int64_t c = 0;
  const auto next = [&](std::int64_t lags) {
    if (lags > 0) {
      products(signal->data + t, lags, columns.open(c));
      columns.close(lags);
    }
    t += size.step;
    ++c;
  };
  for (std::int64_t lags = 0; t < size.lags - 1;) {
    next(lags);
    lags = std::min(size.lags, t);
    TRY(cost.add(20.0 * static_cast<double>(lags)));
  }
  for (std::int64_t lags = size.left(t); c < size.columns;) {
    next(lags);
    lags = size.left(t);
    TRY(cost.add(20.0 * static_cast<double>(lags)));  // kept: past the signal it falls
  }
  return KORVO_ERR_OK;
}

// Columns under a kernel. Instants that pass without a poll wait until there are some, and then share the
// kernel while it lies in the cache; those that wait are done on every path.
class smoother {
 public:
  smoother(const _dbl_mat* kernel, void* intrp_ptr, const _dbl_mat* out)
      : kernel_(kernel), intrp_ptr_(intrp_ptr), cost_(intrp_ptr), columns_(out) {}
  smoother(const smoother&) = delete;
  smoother& operator=(const smoother&) = delete;
  ~smoother() { finish(); }

  [[nodiscard]] code make(const _dbl_mat* signal) {
    constexpr std::int64_t enough = 1 << 19;  // of doubles for all that wait
    const std::int64_t around = std::int64_t{kernel_->ncol} + kernel_->nrow;
    const std::int64_t size = around + signal->nelem;
    TRY(signal->nrow > signal->ncol ? padded_.make(size, 1) : padded_.make(1, size));
    TRY(matdbl_assign_zeropad(signal, intrp_ptr_, &padded_));
    origin_ = around + 2;
    room_ = 4 * origin_ + 2 * std::int64_t{kernel_->ncol};
    together_ = std::clamp<std::int64_t>(enough / room_, 1, most);
    TRY(room_of_all_.make(together_ * room_));
    return columns_.make();
  }

  // Column c from instant t: the lags from the last one down, each with its offsets.
  [[nodiscard]] code add(std::int64_t t, std::int64_t c, std::int64_t lags, std::int64_t reach,
                         std::int64_t offsets, bool polls_each_lag) {
    if (lags > 0) {
      place(t, c, lags, reach, offsets);
      if (polls_each_lag) TRY(poll_each_lag(c, static_cast<std::int32_t>(lags)));
      if (count_ == together_) finish();
    }
    return cost_.set(200.0 * kernel_->nrow);  // kept: the tally begins anew
  }

 private:
  static constexpr int most = 8;

  void place(std::int64_t t, std::int64_t c, std::int64_t lags, std::int64_t reach, std::int64_t offsets) {
    double* const ahead = room_of_all_.data() + count_ * room_ + origin_;
    double* const behind = ahead + 2 * origin_;
    double* const sums = behind + origin_;
    smoothing& at = waiting_[count_];
    at = {0, lags, reach, offsets, kernel_->data, kernel_->ncol, ahead, behind, sums, sums + kernel_->ncol};
    look_around(padded_, t, lags + at.last_offset(0), ahead, behind);
    if (count_++ == 0) first_ = c;
  }

  // If a poll may fall between the lags, those that wait come first and then these lags at once.
  code poll_each_lag(std::int64_t c, std::int32_t lags) {
    const double lag_cost = 50.0 * kernel_->nrow;
    if (!intrp_ptr_ || cost_.strip(lag_cost, lags + 1) > lags) return cost_.add_strip(lag_cost, lags);
    smoothing at = waiting_[--count_];
    finish();
    double* const column = columns_.open(c);
    for (std::int32_t last = lags; last > 0;) {
      const std::int32_t count = cost_.strip(lag_cost, last);
      at.last = last;
      at.first = last - count;
      KORVO_AT_LEVEL(smooth)(&at, 1);
      std::copy(at.sums + at.first, at.sums + last, column + at.first);
      TRY(cost_.add_strip(lag_cost, count));
      last -= count;
    }
    columns_.close(lags);
    return KORVO_ERR_OK;
  }

  void finish() {
    KORVO_AT_LEVEL(smooth)(waiting_, count_);
    for (std::int64_t k = 0; k < count_; ++k) {
      std::copy_n(waiting_[k].sums, waiting_[k].last, columns_.open(first_ + k));
      columns_.close(waiting_[k].last);
    }
    count_ = 0;
  }

  const _dbl_mat* kernel_;
  void* intrp_ptr_;
  checkpoint cost_;
  column_writer columns_;
  temporary<_dbl_mat> padded_;
  scratch<double> room_of_all_;
  std::int64_t origin_ = 0;  // of the samples around an instant
  std::int64_t room_ = 0;    // of an instant: samples ahead, samples behind, two arrays of sums
  std::int64_t together_ = 1;
  std::int64_t first_ = 0;  // the column of the first that waits
  std::int64_t count_ = 0;
  smoothing waiting_[most] = {};
};

code custom(const _dbl_mat* signal, std::int32_t time_step, const _dbl_mat* kernel, void* intrp_ptr,
            _dbl_mat* out) {
  TRY(valid(signal, out, kernel));
  TRY(check(signal, time_step, out));
  if (kernel->ncol != out->nrow || kernel->ncol > signal->nelem) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(out, kernel)) return KORVO_ERR_ILLEGAL_ADDRESS;
  const plane size(signal, time_step, out);
  const std::int64_t rows = kernel->nrow;
  TRY(begin(size.smoothing_stays_inside(rows), intrp_ptr, out));
  smoother smooth(kernel, intrp_ptr, out);
  TRY(smooth.make(signal));
  std::int64_t t = 0;
  std::int64_t c = 0;
  for (; t < (size.lags + rows) / 2; t += size.step, ++c)
    TRY(smooth.add(t, c, std::min(2 * t, size.lags - 1), 2 * t, rows, true));
  for (; c < std::min(size.samples, size.columns); t += size.step, ++c) {
    const std::int64_t left = size.samples - t;
    const std::int64_t lags = std::min(size.lags - 1, left);  // kept: the last lag is left out
    TRY(smooth.add(t, c, lags, unbounded, std::min(left, rows), false));
  }
  return KORVO_ERR_OK;
}

code choi_williams(const _dbl_mat* signal, double sigma, std::int32_t time_step, void* intrp_ptr,
                   _dbl_mat* out) {
  TRY(check(signal, time_step, out));
  if (!(sigma > 0.0)) return KORVO_ERR_ILLEGAL_VALUE;
  const plane size(signal, time_step, out);
  const std::int64_t rows = choi_williams_rows(out->nrow, signal->nelem, sigma);
  TRY(begin(size.lags <= size.samples && size.smoothing_stays_inside(rows), intrp_ptr, out));
  temporary<_dbl_mat> kernel;
  TRY(sigdbl_kernel_choi_williams(out->nrow, signal->nelem, sigma, intrp_ptr, &kernel));
  return custom(signal, time_step, &kernel, intrp_ptr, out);
}

}  // namespace
}  // namespace korvo

using namespace korvo;

#define TYPED(name, method)                                                              \
  code name(const _dbl_mat* signal, int32_t time_step, void* intrp_ptr, _dbl_mat* out) { \
    return method(signal, time_step, intrp_ptr, out);                                    \
  }
#define UNIVERSAL(name, method)                                                                      \
  code name(const _univ_mat* signal, int32_t time_step, void* intrp_ptr, _univ_mat* out) {           \
    return dispatch_same(signal, out, records<_dbl_mat>{}, [&](const _dbl_mat* from, _dbl_mat* to) { \
      return method(from, time_step, intrp_ptr, to);                                                 \
    });                                                                                              \
  }

extern "C" {

TYPED(sigdbl_timefreq_autocorrelate_wigner, wigner)
TYPED(sigdbl_timefreq_autocorrelate_cone, cone)
TYPED(sigdbl_timefreq_autocorrelate_born_jordan, born_jordan)
TYPED(sigdbl_timefreq_autocorrelate_margeneau_hill, margeneau_hill)

UNIVERSAL(siguniv_timefreq_autocorrelate_wigner, wigner)
UNIVERSAL(siguniv_timefreq_autocorrelate_cone, cone)
UNIVERSAL(siguniv_timefreq_autocorrelate_born_jordan, born_jordan)
UNIVERSAL(siguniv_timefreq_autocorrelate_margeneau_hill, margeneau_hill)

code sigdbl_timefreq_autocorrelate_choi_williams(const _dbl_mat* signal, double sigma, int32_t time_step,
                                                 void* intrp_ptr, _dbl_mat* out) {
  return choi_williams(signal, sigma, time_step, intrp_ptr, out);
}

code siguniv_timefreq_autocorrelate_choi_williams(const _univ_mat* signal, double sigma, int32_t time_step,
                                                  void* intrp_ptr, _univ_mat* out) {
  return dispatch_same(signal, out, records<_dbl_mat>{}, [&](const _dbl_mat* from, _dbl_mat* to) {
    return choi_williams(from, sigma, time_step, intrp_ptr, to);
  });
}

code sigdbl_timefreq_autocorrelate_custom(const _dbl_mat* signal, int32_t time_step, const _dbl_mat* kernel,
                                          void* intrp_ptr, _dbl_mat* out) {
  return custom(signal, time_step, kernel, intrp_ptr, out);
}

code siguniv_timefreq_autocorrelate_custom(const _univ_mat* signal, int32_t time_step, const _univ_mat* kernel,
                                           void* intrp_ptr, _univ_mat* out) {
  if (!signal || !kernel || !out) return KORVO_ERR_NULL_POINTER;
  if (kernel->type != KORVO_DOUBLE) return KORVO_ERR_ILLEGAL_TYPE;
  const _dbl_mat weights = as<_dbl_mat>(*kernel);
  return dispatch_same(signal, out, records<_dbl_mat>{}, [&](const _dbl_mat* from, _dbl_mat* to) {
    return custom(from, time_step, &weights, intrp_ptr, to);
  });
}

}  // extern "C"

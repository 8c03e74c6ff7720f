// The maximum overlap transform as passes over instants.
#include "wavelet/wav_modw_passes.hpp"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "core/levels.hpp"

#define KORVO_KERNELS "wavelet/wav_modw_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

void gather(const double* column, std::int64_t stride, std::int64_t count, double* to) {
  for (std::int64_t i = 0; i < count; ++i) to[i] = column[i * stride];
}

}  // namespace

void put(const double* from, std::int64_t count, double* column, std::int64_t stride) {
  for (std::int64_t i = 0; i < count; ++i) column[i * stride] = from[i];
}

void line::take(const double* column, std::int64_t stride) const {
  gather(column, stride, period_, data());
  go_on();
}

void line::go_on() const {
  for (std::int64_t k = 0; k < margin; ++k) data()[period_ + k] = data()[k];
}

void analyse_run(const stage& at, const double* series, std::int64_t first, std::int64_t count, double* wavelet,
                 double* scaling) {
  KORVO_AT_LEVEL(analyse)(at, series, first, count, wavelet, scaling);
}

stage pass::level(std::int32_t k) const {
  stage at = finest_;
  at.step <<= first_level_ + direction_ * k;
  return at;
}

std::int64_t pass::reach(std::int32_t k) const { return (level(k).length - 1) * level(k).step; }

std::int32_t pass::take(std::int32_t levels) {
  constexpr std::int64_t far = 16384;
  while (++levels_ < levels && warm_up_ + reach(levels_) <= std::min(far, finest_.period / 8))
    warm_up_ += reach(levels_);
  return levels_;
}

// What a level reaches lies before the strip or behind it.
code pass::place_lines(bool before) {
  strip_ = 512 + warm_up_;
  const std::int64_t size = 2 * (levels_ * strip_ + warm_up_);
  TRY(lines_.make(size));
  std::fill_n(lines_.data(), size, 0.0);
  double* next = lines_.data();
  const auto place = [&](std::int64_t room) {
    double* const placed = next + (before ? room : 0);
    next += strip_ + room;
    return placed;
  };
  for (std::int32_t k = 0; k < levels_; ++k) {
    details_[k] = place(k > 0 ? reach(k) : 0);
    approximations_[k] = place(k + 1 < levels_ ? reach(k + 1) : 0);
  }
  return KORVO_ERR_OK;
}

// Blocks of rows that stay in the cache until all lines are in.
void pass::write(double* const* lines, std::int64_t from, std::int64_t count, const _univ_mat* to,
                 std::int64_t t) const {
  constexpr std::int64_t block = 128;
  const auto write_pair = KORVO_AT_LEVEL(write_pair);
  for (std::int64_t first = 0; first < count; first += block) {
    const std::int64_t rows = std::min(block, count - first);
    const std::int64_t at = from + first;
    double* const row = data_of(to) + (t + first) * to->ncol + column_;
    for (std::int32_t k = 0; k + 1 < levels_; k += 2)
      write_pair(lines[k] + at, lines[k + 1] + at, rows, row + k, to->ncol);
    if (levels_ % 2 == 1) put(lines[levels_ - 1] + at, rows, row + levels_ - 1, to->ncol);
  }
}

code pass::analyse(const double* series, const _univ_mat* wavelet, const _univ_mat* scaling) {
  TRY(place_lines(true));
  const auto run = KORVO_AT_LEVEL(analyse);
  const std::int64_t period = finest_.period;
  for (std::int64_t t = -warm_up_; t < period;) {
    const std::int64_t count = std::min(strip_, (t < 0 ? 0 : period) - t);
    run(level(0), series, t < 0 ? t + period : t, count, details_[0], approximations_[0]);
    for (std::int32_t k = 1; k < levels_; ++k) {
      double* const coarser = approximations_[k - 1] - reach(k);
      run(level(k), coarser, reach(k), count, details_[k], approximations_[k]);
      std::copy_n(coarser + count, reach(k), coarser);
    }
    if (t >= 0) {
      write(details_, 0, count, wavelet, t);
      write(approximations_, 0, count, scaling, t);
    }
    t += count;
  }
  return KORVO_ERR_OK;
}

// Instants go down, since a level reaches forward; a strip ends where what it reaches begins.
code pass::synthesise(const double* approximation, const double* detail, const _univ_mat* crystals,
                      const _univ_mat* out) {
  TRY(place_lines(false));
  const auto run = KORVO_AT_LEVEL(synthesise);
  const std::int64_t period = finest_.period;
  for (std::int64_t end = period + warm_up_; end > 0;) {
    const std::int64_t count = std::min(strip_, end > period ? end - period : end);
    const std::int64_t from = strip_ - count;
    end -= count;
    const std::int64_t t = end < period ? end : end - period;
    run(level(0), approximation, detail, t, count, approximations_[0] + from);
    for (std::int32_t k = 1; k < levels_; ++k) {
      stage inner = level(k);
      inner.period = std::numeric_limits<std::int64_t>::max();  // a line has all that is reached
      gather(data_of(crystals) + t * crystals->ncol + column_ + k, crystals->ncol, count, details_[k] + from);
      run(inner, approximations_[k - 1] + from, details_[k] + from, 0, count, approximations_[k] + from);
    }
    if (end < period) write(approximations_, from, count, out, t);
    for (std::int32_t k = 1; k < levels_; ++k)
      for (double* const strip : {approximations_[k - 1], details_[k]})
        std::copy_backward(strip + from, strip + from + reach(k), strip + strip_ + reach(k));
  }
  return KORVO_ERR_OK;
}

}  // namespace korvo

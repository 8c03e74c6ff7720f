// The sizes of a time-frequency distribution, and what its kernels are told.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "korvos/core/mat_univ.h"

namespace korvo {

// The sizes of a call, in 64 bits: instants run far past the signal where the time step is large.
struct plane {
  plane(const _dbl_mat* signal, std::int32_t time_step, const _dbl_mat* out)
      : samples(signal->nelem), lags(out->nrow), columns(out->ncol), step(time_step) {}

  std::int64_t samples;
  std::int64_t lags;
  std::int64_t columns;
  std::int64_t step;

  // How many instants lie below `end`: each fills a column.
  std::int64_t instants_below(std::int64_t end) const { return (end + step - 1) / step; }
  std::int64_t left(std::int64_t instant) const { return std::min(lags, samples - instant); }

  // Whether the formulas stay inside the signal and the result, or give zeros without reading any of it. For
  // both of these it is the first phase that may leave: by its farthest sample, or for want of columns.
  bool wigner_stays_inside() const {
    const std::int64_t start = lags / 2;
    if (samples <= start) return true;
    return instants_below(start) <= columns && start - 1 + (start - 1) / 2 < samples;
  }
  bool margeneau_hill_stays_inside() const {
    if (samples <= lags) return true;
    const std::int64_t instants = instants_below(lags - 1);
    return instants <= columns && 2 * (instants - 1) * step - 1 < samples;
  }
  // The cone of one lag reads the sample before the last one when there is just one.
  bool cone_stays_inside() const { return lags > 1 || samples > 1; }
  // The padding is wide enough for every sample; with one lag nothing is written.
  bool smoothing_stays_inside(std::int64_t kernel_rows) const {
    return lags == 1 || instants_below((lags + kernel_rows) / 2) <= columns;
  }
};

// The rows of a Choi-Williams kernel: where its weights have died away, or as many as there are samples.
inline std::int32_t choi_williams_rows(std::int32_t num_lags, std::int32_t num_samples, double sigma) {
  const double rows = 3.0 * std::trunc(std::sqrt(2.0 / sigma) * num_lags + 1.0);
  return rows < num_samples ? static_cast<std::int32_t>(rows) : num_samples;
}

// Above every sum of an offset and a lag.
constexpr std::int64_t unbounded = std::int64_t{1} << 40;

// Some lags of an instant under a smoothing kernel. With half steps cut towards zero, ahead[y] is the sample
// y/2 after the instant and behind[y] that y/2 before it, for y of either sign: lags lie side by side in both.
struct smoothing {
  std::int64_t first;  // the lags from this one to before `last`
  std::int64_t last;
  std::int64_t reach;    // an offset and a lag together stay below it,
  std::int64_t offsets;  // and offsets below this
  const double* kernel;
  std::int64_t pitch;  // between the rows of the kernel, which are offsets
  const double* ahead;
  const double* behind;
  double* sums;
  double* next_sums;

  std::int64_t last_offset(std::int64_t lag) const { return std::min(reach - lag, offsets) - 1; }
  std::int64_t common_offset() const { return last_offset(last - 1); }  // the farthest that all lags have
};

// Lays out the samples around an instant, each twice, up to `half_steps` from `ahead` and `behind` to either
// side and one more; zeros where no product reaches.
inline void look_around(const _dbl_mat& padded, std::int64_t instant, std::int64_t half_steps, double* ahead,
                        double* behind) {
  for (std::int64_t h = 0; h <= half_steps / 2; ++h) {
    const double later = instant + h < padded.nelem ? padded.data[instant + h] : 0.0;
    const double earlier = h <= instant ? padded.data[instant - h] : 0.0;
    ahead[2 * h] = ahead[2 * h + 1] = behind[-2 * h] = behind[-2 * h - 1] = later;
    behind[2 * h] = behind[2 * h + 1] = ahead[-2 * h] = ahead[-2 * h - 1] = earlier;
  }
}

}  // namespace korvo

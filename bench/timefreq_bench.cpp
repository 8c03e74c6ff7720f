// Time-frequency distributions, beside the loops that their formulas suggest.
#include <algorithm>
#include <cstdint>
#include <memory>

#include "bench/bench.hpp"
#include "korvos/signal/sig_tfrq.h"

namespace {

using korvo::dbl_matrix;

constexpr std::int32_t samples = 4096;
constexpr double sigma = 1.0;

struct plane {
  explicit plane(std::int32_t lags) : out(lags, samples) {
    bench::check(sigdbl_kernel_choi_williams(lags, samples, sigma, nullptr, &kernel));
  }
  plane(const plane&) = delete;
  plane& operator=(const plane&) = delete;
  ~plane() { bench::check(matdbl_free(&kernel)); }

  dbl_matrix signal = dbl_matrix::random(1, samples, 1, -20.0, 20.0);
  dbl_matrix out;
  _dbl_mat kernel = {};
};

// One lag after another at each instant.
void plain_wigner(const double* s, int n, double* out, int lags) {
  std::fill_n(out, std::int64_t{lags} * n, 0.0);
  for (int t = 0; t < n; ++t)
    for (int tau = 0; tau < (t < lags / 2 ? t : std::min(lags, n - t)); ++tau)
      out[std::int64_t{tau} * n + t] =
          (s[t - tau / 2] * s[t + (tau + 1) / 2] + s[t - (tau + 1) / 2] * s[t + tau / 2]) * 0.5;
}

// Where nothing runs out: the instants that are far enough from both ends.
void plain_smooth(const double* s, int n, const double* kernel, int rows, double* out, int lags) {
  std::fill_n(out, std::int64_t{lags} * n, 0.0);
  for (int t = (lags + rows) / 2; t < n - rows; ++t)
    for (int tau = 0; tau < lags - 1; ++tau) {
      double sum =
          kernel[tau] * (s[t + (tau + 1) / 2] * s[t - tau / 2] + s[t - (tau + 1) / 2] * s[t + tau / 2]) * 0.5;
      for (int mu = rows - 1; mu > 0; --mu)
        sum += kernel[mu * lags + tau] * (s[t + (tau + mu) / 2] * s[t - (tau - mu + 1) / 2] +
                                          s[t + (tau - mu + 1) / 2] * s[t - (tau + mu) / 2]);
      out[std::int64_t{tau} * n + t] = sum;
    }
}

const bench::registration all([] {
  const auto wide = std::make_shared<plane>(512);
  bench::add("wigner_512_lags", samples, "korvos", [=] {
    return [=] { bench::check(sigdbl_timefreq_autocorrelate_wigner(&wide->signal, 1, nullptr, &wide->out)); };
  });
  bench::add("wigner_512_lags", samples, "plain",
             [=] { return [=] { plain_wigner(wide->signal.data, samples, wide->out.data, wide->out.nrow); }; });
  const auto low = std::make_shared<plane>(128);
  bench::add("choi_williams_128_lags", samples, "korvos", [=] {
    return [=] {
      bench::check(sigdbl_timefreq_autocorrelate_choi_williams(&low->signal, sigma, 1, nullptr, &low->out));
    };
  });
  bench::add("choi_williams_128_lags", samples, "plain", [=] {
    return [=] {
      plain_smooth(low->signal.data, samples, low->kernel.data, low->kernel.nrow, low->out.data, low->out.nrow);
    };
  });
});

}  // namespace

// How the spectrum changes in time: local autocorrelations, transformed along their lags.
#include <algorithm>
#include <numeric>

#include "columns.hpp"
#include "stages/stages.hpp"

namespace demo {
namespace {

constexpr double sigma = 4.0;      // the smaller, the less do waves at different times and frequencies mix
constexpr double deepest = -42.0;  // dB

// One row a lag, one column an instant.
matrix autocorrelations(const _univ_mat& values) {
  const std::int32_t step = std::max(1, values.nrow / 512);
  matrix out(values.nrow / 16, values.nrow / step);
  check(siguniv_timefreq_autocorrelate_choi_williams(&values, sigma, step, nullptr, &out));
  return out;
}

// The columns in a window, with zeros in the middle and then their mirror images: an even function of the lag,
// whose transform is real.
matrix made_even(const _univ_mat& lags) {
  const matrix window = hanning(2 * lags.nrow - 1);
  matrix out = filled(8 * lags.nrow, lags.ncol, 0.0);
  for (std::int32_t i = 0; i < lags.nrow; ++i)
    for (std::int32_t c = 0; c < lags.ncol; ++c) {
      const double value = element(window, lags.nrow - 1 + i, 0) * element(lags, i, c);
      element(out, i, c) = value;
      element(out, (out.nrow - i) % out.nrow, c) = value;
    }
  return out;
}

// What is above 0 of the real parts, for the frequencies from 0 to one half.
matrix density(const _univ_mat& spectra) {
  matrix out(spectra.nrow / 2, spectra.ncol);
  const auto lower = elements<korvo_dcomplex>(spectra).first(elements(out).size());
  std::ranges::transform(lower, elements(out).begin(),
                         [](const korvo_dcomplex& z) { return std::max(z.re, 0.0); });
  return out;
}

// The lowest rows, halved as long as they hold all but little.
matrix where_it_is(const _univ_mat& all) {
  const auto sum = [&](std::int32_t rows) {
    const double* const first = &element(all, 0, 0);
    return std::accumulate(first, first + rows * all.ncol, 0.0);
  };
  std::int32_t rows = all.nrow;
  while (rows > all.nrow / 8 && sum(rows / 2) > 0.98 * sum(all.nrow)) rows /= 2;
  matrix out(rows, all.ncol);
  check(matuniv_extract(&all, 0, 0, nullptr, &out));
  return out;
}

}  // namespace

void show_time_frequency(const series& heard, gallery& out) {
  const stretch part = middle(heard);
  const matrix values = samples(heard, part);
  const matrix lags = out.step("local autocorrelations", [&] { return autocorrelations(values); });
  const matrix spectra = out.step("Fourier transform of each", [&] { return fourier(made_even(lags)); });
  const matrix all = density(spectra);
  const matrix shown = where_it_is(all);
  const matrix levels = decibels(shown, greatest(shown));
  out.plot("time_frequency", "time and frequency", "siguniv_*_choi_williams", [&](const chart_size& size) {
    chart page(size, "Choi-Williams distribution: what there is when", 1, true);
    panel here = page.add(time_axis(part), {0.0, 0.5 * shown.nrow / all.nrow, "cycles per sample"});
    here.image(levels, deepest, 0.0);
    page.draw_bar(deepest, 0.0, "dB");
    return page.take();
  });
}

}  // namespace demo

// The spectrum of the whole series, and the smoother mean over segments.
#include <algorithm>
#include <bit>

#include "columns.hpp"
#include "stages/stages.hpp"

namespace demo {
namespace {

double energy(const _univ_mat& window) {
  double sum = 0.0;
  for (const double each : elements(window)) sum += each * each;
  return sum;
}

// Each segment in a window, one to a column; neighbours share half of their samples.
matrix segments(const _univ_mat& in, const _univ_mat& window) {
  const std::int32_t length = window.nrow;
  matrix out(length, 2 * (in.nrow / length) - 1);
  matrix segment(length, 1);
  for (std::int32_t k = 0; k < out.ncol; ++k) {
    check(matuniv_extract(&in, k * (length / 2), 0, nullptr, &segment));
    check(matuniv_multiply_elem(&segment, &window, nullptr, &segment));
    check(matuniv_assign_submat(&segment, 0, k, nullptr, &out));
  }
  return out;
}

// The mean over each row, of the frequencies from 0 to one half.
matrix mean_power(const _univ_mat& spectra, const _univ_mat& window) {
  const matrix powers = power(spectra);
  const matrix weights = filled(powers.ncol, 1, 1.0 / (powers.ncol * energy(window)));
  matrix means(powers.nrow, 1);
  check(matuniv_multiply(&powers, &weights, nullptr, &means));
  matrix out(powers.nrow / 2 + 1, 1);
  check(matuniv_extract(&means, 0, 0, nullptr, &out));
  return out;
}

}  // namespace

void show_spectrum(const series& heard, gallery& out) {
  const matrix values = samples(heard, {0, heard.count()});
  const matrix window = out.step("Hanning window", [&] { return hanning(heard.count()); });
  const matrix whole = out.step("windowed, Fourier transform", [&] {
    matrix soft(values.nrow, 1);
    check(matuniv_multiply_elem(&values, &window, nullptr, &soft));
    const auto length = std::bit_ceil(static_cast<std::uint32_t>(heard.count()));
    return fourier(padded_below(soft, static_cast<std::int32_t>(length)));
  });
  const auto length = std::bit_floor(static_cast<std::uint32_t>(std::min(1024, heard.count() / 4)));
  const matrix short_window = hanning(static_cast<std::int32_t>(length));
  const matrix parts =
      out.step("segments, Fourier transforms", [&] { return fourier(segments(values, short_window)); });

  const matrix fine = mean_power(whole, window);
  const matrix smooth = mean_power(parts, short_window);
  const matrix fine_levels = decibels(fine, greatest(fine));
  const matrix smooth_levels = decibels(smooth, greatest(fine));
  const double lowest = std::ranges::min(elements(smooth_levels));
  out.plot("spectrum", "spectrum", "siguniv_*_fourier", [&](const chart_size& size) {
    chart page(size, "spectrum: the whole series, and the mean over segments of " + std::to_string(length));
    panel here = page.add({0.0, 0.5, "cycles per sample"}, {std::max(lowest - 15.0, -200.0), 5.0, "dB"});
    here.curve(0.0, 0.5 / (fine.nrow - 1), elements(fine_levels), cool);
    here.curve(0.0, 0.5 / (smooth.nrow - 1), elements(smooth_levels), accent);
    return page.take();
  });
}

}  // namespace demo

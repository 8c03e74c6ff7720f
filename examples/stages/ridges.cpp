// A wavelet transform of many scales, where its modulus peaks, and the ridges that the peaks form.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

#include "columns.hpp"
#include "stages/stages.hpp"

namespace demo {
namespace {

constexpr std::int32_t voices = 8, octaves = 5;
constexpr std::int32_t scales = voices * octaves;
constexpr std::int32_t block_cols = 64;  // chains may jump by a share of the width that is looked at
constexpr double weakest = 0.08;         // maximum that counts, beside the strongest of its scale
constexpr double deepest = -48.0;        // dB

// The finest is 2 samples.
double scale_of(std::int32_t index) { return std::exp2(1.0 + static_cast<double>(index) / voices); }

// The spectrum times that of the second derivative of a bell of each width: one column a scale.
matrix filtered(const _univ_mat& spectrum) {
  matrix out(spectrum.nrow, scales, KORVO_DCOMPLEX);
  for (std::int32_t i = 0; i < out.nrow; ++i)
    for (std::int32_t k = 0; k < scales; ++k) {
      const double angle = 2.0 * std::numbers::pi * std::min(i, out.nrow - i) / out.nrow * scale_of(k);
      const double gain = angle * angle * std::exp(-0.5 * angle * angle);
      const auto& z = element<korvo_dcomplex>(spectrum, i, 0);
      element<korvo_dcomplex>(out, i, k) = {gain * z.re, gain * z.im};
    }
  return out;
}

// Followed by its mirror image, so that it goes on smoothly where the transform takes it to be periodic.
matrix mirrored(const _univ_mat& in) {
  matrix image(in.nrow, 1);
  check(matuniv_flip_up_down(&in, nullptr, &image));
  matrix out = padded_below(in, 2 * in.nrow);
  check(matuniv_assign_submat(&image, in.nrow, 0, nullptr, &out));
  return out;
}

// One row a scale, the finest first, and one column a sample.
matrix wavelet_transform(const _univ_mat& values) {
  const matrix columns = inverse_fourier(filtered(fourier(mirrored(values))));
  matrix real(values.nrow, scales);
  std::ranges::transform(elements<korvo_dcomplex>(columns).first(elements(real).size()), elements(real).begin(),
                         &korvo_dcomplex::re);
  matrix out(scales, values.nrow);
  check(matuniv_transpose(&real, nullptr, &out));
  return out;
}

matrix modulus(const _univ_mat& in) {
  matrix out(in.nrow, in.ncol);
  check(matuniv_abs(&in, nullptr, &out));
  return out;
}

matrix squares(const _univ_mat& in) {
  matrix out(in.nrow, in.ncol);
  check(matuniv_multiply_elem(&in, &in, nullptr, &out));
  return out;
}

matrix maxima_of(const _univ_mat& transform) {
  matrix out(transform.nrow, transform.ncol, KORVO_SINT32);
  check(wavuniv_transform_modulus_maxima(&transform, 0.0, 0, nullptr, &out));
  return out;
}

// Maxima that are weak beside the strongest of their scale are dropped.
matrix strong(const _univ_mat& maxima, const _univ_mat& sizes) {
  matrix out = copy(maxima);
  for (std::int32_t r = 0; r < sizes.nrow; ++r) {
    const double* const row = &element(sizes, r, 0);
    const double least = weakest * *std::max_element(row, row + sizes.ncol);
    for (std::int32_t c = 0; c < sizes.ncol; ++c)
      if (row[c] < least) element<std::int32_t>(out, r, c) = 0;
  }
  return out;
}

struct link {
  std::int32_t row, col;
};
using chain = std::vector<link>;

// The chains of a block of columns. Time is circular in it: one that leaves on the left and comes back on the
// right is drawn as two.
void follow(const _univ_mat& maxima, std::int32_t first, std::vector<chain>* out) {
  matrix block(maxima.nrow, std::min(block_cols, maxima.ncol), KORVO_SINT32);
  check(matuniv_extract(&maxima, 0, first, nullptr, &block));
  matrix points(1, 2, KORVO_SINT32);
  matrix lengths(1, 1, KORVO_SINT32);
  check(wavuniv_transform_modulus_maxima_skeleton(&block, voices, nullptr, &points, &lengths));
  const std::int32_t* at = elements<std::int32_t>(points).data();
  for (const std::int32_t length : elements<std::int32_t>(lengths)) {
    out->emplace_back();
    for (std::int32_t i = 0; i < length; ++i, at += 2) {
      const link next{at[0], first + at[1]};
      const chain& so_far = out->back();
      if (!so_far.empty() && std::abs(next.col - so_far.back().col) > block_cols / 2) out->emplace_back();
      out->back().push_back(next);
    }
  }
}

std::vector<chain> chains_of(const _univ_mat& maxima) {
  std::vector<chain> out;
  for (std::int32_t first = 0; first < maxima.ncol; first += block_cols) follow(maxima, first, &out);
  return out;
}

// Each maximum with the number of its chain, from 1.
matrix numbered(const std::vector<chain>& chains, std::int32_t rows, std::int32_t cols) {
  matrix out = filled(rows, cols, 0.0);
  double count = 0.0;
  for (const chain& each : chains) {
    ++count;
    for (const link& l : each) element(out, l.row, l.col) = count;
  }
  return out;
}

void draw(const std::vector<chain>& chains, const stretch& where, panel* on) {
  constexpr std::size_t shortest = 4;
  for (const chain& each : chains) {
    if (each.size() < shortest) continue;
    std::vector<point> points;
    for (const link& l : each) points.push_back({where.first + l.col + 0.5, std::log2(scale_of(l.row))});
    on->line(std::move(points), bright);
  }
}

}  // namespace

void show_ridges(const series& heard, gallery& out) {
  const stretch part = middle(heard);
  const matrix transform =
      out.step("wavelet transform, 40 scales", [&] { return wavelet_transform(samples(heard, part)); });
  const matrix sizes = modulus(transform);
  const matrix maxima = out.step("modulus maxima", [&] { return strong(maxima_of(transform), sizes); });
  std::vector<chain> chains;
  (void)out.step("chains of maxima", [&] {
    chains = chains_of(maxima);
    return numbered(chains, maxima.nrow, maxima.ncol);
  });

  const matrix powers = squares(transform);
  const matrix levels = decibels(powers, greatest(powers));
  constexpr double half = 0.5 / voices;
  const axis widths{1.0 - half, 1.0 + octaves - half, "scale in samples", scale::octaves};
  out.plot("scales", "wavelet transform", "siguniv_*_fourier", [&](const chart_size& size) {
    chart page(size, "modulus of the wavelet transform", 1, true);
    page.add(time_axis(part), widths).image(levels, deepest, 0.0);
    page.draw_bar(deepest, 0.0, "dB");
    return page.take();
  });
  out.plot("ridges", "ridges", "wavuniv_*_skeleton", [&](const chart_size& size) {
    chart page(size, "chains of modulus maxima");
    panel here = page.add(time_axis(part), widths);
    here.image(levels, deepest, -0.6 * deepest);  // darker, beneath the chains
    draw(chains, part, &here);
    return page.take();
  });
}

}  // namespace demo

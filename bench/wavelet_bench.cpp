// The maximum overlap transform and modulus maxima, beside plain loops.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <vector>

#include "bench/bench.hpp"
#include "korvos/wavelet/wav_modw.h"
#include "korvos/wavelet/wav_wtmm.h"

namespace {

using korvo::dbl_matrix;
using korvo::s32_matrix;

constexpr std::int32_t instants = 1000000;
constexpr std::int32_t levels = 6;
constexpr std::int32_t taps = 8;
constexpr std::int32_t scales = 64;
constexpr std::int32_t times = 65536;

// One level after another in blocks of instants, tap by tap.
void transform_by_blocks(const dbl_matrix& series, const dbl_matrix& g, const dbl_matrix& h,
                         dbl_matrix& wavelet, dbl_matrix& scaling) {
  constexpr std::int32_t block = 1024;
  std::vector<double> v(series.data, series.data + instants);
  double w_sums[block];
  double v_sums[block];
  for (std::int32_t j = 0; j < levels; ++j) {
    for (std::int32_t t = 0; t < instants; t += block) {
      const std::int32_t count = std::min(block, instants - t);
      std::fill_n(w_sums, count, 0.0);
      std::fill_n(v_sums, count, 0.0);
      for (std::int32_t l = 0; l < taps; ++l) {
        const double* const x = v.data();
        const std::int32_t first = t - (l << j);
        const std::int32_t wrapped = std::clamp(-first, 0, count);
        for (std::int32_t i = 0; i < wrapped; ++i) {
          w_sums[i] += g.data[l] * x[first + i + instants];
          v_sums[i] += h.data[l] * x[first + i + instants];
        }
        for (std::int32_t i = wrapped; i < count; ++i) {
          w_sums[i] += g.data[l] * x[first + i];
          v_sums[i] += h.data[l] * x[first + i];
        }
      }
      for (std::int32_t i = 0; i < count; ++i) {
        wavelet.data[(t + i) * levels + j] = w_sums[i];
        scaling.data[(t + i) * levels + j] = v_sums[i];
      }
    }
    for (std::int32_t t = 0; t < instants; ++t) v[static_cast<std::size_t>(t)] = scaling.data[t * levels + j];
  }
}

void mark_maxima(const double* w, double tolerance, std::int32_t* mask) {
  for (std::int32_t r = 0; r < scales; ++r, w += times, mask += times) {
    mask[0] = mask[times - 1] = 0;
    for (std::int32_t j = 1; j < times - 1; ++j)
      mask[j] = std::fabs(w[j - 1]) + tolerance < std::fabs(w[j]) &&
                std::fabs(w[j]) > std::fabs(w[j + 1]) + tolerance;
  }
}

struct transform {
  dbl_matrix x = dbl_matrix::random(instants, 1, 1, -20.0, 20.0);
  dbl_matrix g = dbl_matrix::random(taps, 1, 2, -1.0, 1.0);
  dbl_matrix h = dbl_matrix::random(taps, 1, 3, -1.0, 1.0);
  dbl_matrix wavelet = {instants, levels};
  dbl_matrix scaling = {instants, levels};
  dbl_matrix crystals = {instants, levels + 1};
  dbl_matrix back = {instants, levels + 1};
};

void add_transform() {
  const auto work = std::make_shared<transform>();
  bench::add("modwt_J6_L8", instants, "korvos", [=] {
    const _univ_mat x = work->x.universal(), g = work->g.universal(), h = work->h.universal();
    return [=, w = work->wavelet.universal(), v = work->scaling.universal()]() mutable {
      bench::check(wavuniv_transform_maximum_overlap(&x, &g, &h, levels, nullptr, &w, &v));
    };
  });
  bench::add("modwt_J6_L8", instants, "plain", [=] {
    return [=] { transform_by_blocks(work->x, work->g, work->h, work->wavelet, work->scaling); };
  });
  bench::add("modwt_inverse_J6_L8", instants, "korvos", [=] {
    const _univ_mat x = work->crystals.universal(), g = work->g.universal(), h = work->h.universal();
    return [=, out = work->back.universal()]() mutable {
      bench::check(wavuniv_transform_maximum_overlap_inverse(&x, &g, &h, levels, nullptr, &out));
    };
  });
}

void add_maxima() {
  const auto w = std::make_shared<dbl_matrix>(dbl_matrix::random(scales, times, 1, -20.0, 20.0));
  const auto mask = std::make_shared<s32_matrix>(scales, times);
  bench::add("modulus_maxima_64x65536", times, "korvos", [=] {
    return [=, in = w->universal(), out = mask->universal()]() mutable {
      bench::check(wavuniv_transform_modulus_maxima(&in, 0.5, 0, nullptr, &out));
    };
  });
  bench::add("modulus_maxima_64x65536", times, "plain",
             [=] { return [=] { mark_maxima(w->data, 0.5, mask->data); }; });
}

const bench::registration all([] {
  add_transform();
  add_maxima();
});

}  // namespace

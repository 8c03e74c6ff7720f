// A maximum overlap wavelet transform, taken apart and put together again.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "stages/stages.hpp"

namespace demo {
namespace {

constexpr std::int32_t levels = 6;

// The least asymmetric scaling filter of eight coefficients (Daubechies 1992, Ten Lectures on Wavelets, 8.1.1;
// Percival and Walden 2000, table 109), to the last digit from its defining equations.
constexpr std::array<double, 8> least_asymmetric{
    -0.075765714789502213, -0.029635527646002492, 0.49761866763277499,   0.80373875180513208,
    0.29785779560530605,   -0.099219543576633533, -0.012603967262031304, 0.032223100604051468};
constexpr auto width = static_cast<std::int32_t>(least_asymmetric.size());

struct filter_pair {
  matrix wavelet{width, 1}, scaling{width, 1};

  // The wavelet filter is the scaling filter backwards, every second sign changed.
  filter_pair() {
    for (std::size_t i = 0; i < least_asymmetric.size(); ++i) {
      const double backwards = least_asymmetric[least_asymmetric.size() - 1 - i];
      elements(wavelet)[i] = i % 2 == 0 ? backwards : -backwards;
      elements(scaling)[i] = least_asymmetric[i];
    }
  }
};

void paste_column(const _univ_mat& from, std::int32_t from_col, std::int32_t col, _univ_mat* out) {
  matrix column(from.nrow, 1);
  check(matuniv_extract(&from, 0, from_col, nullptr, &column));
  check(matuniv_assign_submat(&column, 0, col, nullptr, out));
}

// As the inverse takes them: the scaling crystal of the last level, then the wavelet crystals from there down.
matrix taken_apart(const _univ_mat& values, const filter_pair& filters) {
  matrix wavelet(values.nrow, levels);
  matrix scaling(values.nrow, levels);
  check(wavuniv_transform_maximum_overlap(&values, &filters.wavelet, &filters.scaling, levels, nullptr,
                                          &wavelet, &scaling));
  matrix out(values.nrow, levels + 1);
  paste_column(scaling, levels - 1, 0, &out);
  for (std::int32_t k = 1; k <= levels; ++k) paste_column(wavelet, levels - k, k, &out);
  return out;
}

matrix put_together(const _univ_mat& crystals, const filter_pair& filters) {
  matrix out(crystals.nrow, levels + 1);
  check(wavuniv_transform_maximum_overlap_inverse(&crystals, &filters.wavelet, &filters.scaling, levels,
                                                  nullptr, &out));
  return out;
}

double largest_difference(const _univ_mat& values, const _univ_mat& rebuilt) {
  double largest = 0.0;
  for (std::int32_t i = 0; i < values.nrow; ++i) {
    largest = std::max(largest, std::fabs(element(values, i, 0) - element(rebuilt, i, levels)));
  }
  return largest;
}

// By how many samples a crystal lags behind the series (Percival and Walden 2000, section 5.8).
std::int32_t delay(std::int32_t level, bool is_wavelet) {
  const std::int32_t reach = ((1 << level) - 1) * (width - 1) + 1;
  return is_wavelet ? reach / 2 : (reach - 2) * (width - 2) / (2 * (width - 1));
}

// A stretch of a column, moved back by its delay.
std::vector<double> seen(const _univ_mat& in, std::int32_t col, std::int32_t late, const stretch& where) {
  std::vector<double> out;
  out.reserve(static_cast<std::size_t>(where.count));
  for (std::int32_t i = 0; i < where.count; ++i)
    out.push_back(element(in, (where.first + i + late) % in.nrow, col));
  return out;
}

std::string crystal(const char* kind, std::int32_t level) {
  return std::string(kind).append(std::to_string(level));
}

struct trace {
  std::string name;
  std::vector<double> values;
  ink colour = cool;
};

planes stacked(const chart_size& size, const std::string& title, const std::vector<trace>& traces,
               const stretch& where) {
  chart page(size, title, static_cast<int>(traces.size()));
  const axis time = time_axis(where);
  for (const trace& each : traces)
    page.add(time, axis_for(each.values, each.name)).curve(where.first, 1.0, each.values, each.colour);
  return page.take();
}

}  // namespace

void show_crystals(const series& heard, gallery& out) {
  const filter_pair filters;
  const matrix crystals =
      out.step("maximum overlap, six levels", [&] { return taken_apart(heard.values, filters); });
  const matrix rebuilt = out.step("the inverse", [&] { return put_together(crystals, filters); });
  const double error = largest_difference(heard.values, rebuilt);
  std::printf("  largest error of the series put together again: %.1e\n", error);

  const stretch part = middle(heard);
  std::vector<trace> apart{{"x", seen(heard.values, 0, 0, part), accent}};
  for (std::int32_t level = 1; level <= levels; ++level)
    apart.push_back({crystal("W", level), seen(crystals, levels - level + 1, delay(level, true), part)});
  apart.push_back({crystal("V", levels), seen(crystals, 0, delay(levels, false), part)});
  std::vector<trace> together;
  for (std::int32_t level = levels; level >= 1; --level)
    together.push_back({crystal("V", level), seen(rebuilt, levels - level, delay(level, false), part)});
  together.push_back({"x", seen(rebuilt, levels, 0, part), accent});

  out.plot("crystals", "in crystals", "wavuniv_*_overlap", [&](const chart_size& size) {
    return stacked(size, "the series and its crystals, moved back by their delays", apart, part);
  });
  std::array<char, 80> title{};
  (void)std::snprintf(title.data(), title.size(), "put together again; largest error %.1e", error);
  out.plot("rebuilt", "put together again", "wavuniv_*_inverse",
           [&](const chart_size& size) { return stacked(size, title.data(), together, part); });
}

}  // namespace demo

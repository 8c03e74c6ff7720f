// The maximum overlap transform as passes over instants, several levels in one, without checks.
//
// Each strip of instants goes through all levels of a pass while it lies in the cache, and each row of a result
// is written once. What a level but the first looks back on, or forward to, is kept from strip to strip. At the
// beginning it comes from the other end of the series, so a pass begins as far before it as its levels look
// together.
#pragma once

#include <cstdint>

#include "core/code.hpp"
#include "core/temporary.hpp"
#include "korvos/core/mat_univ.h"

namespace korvo {

// The filters and the place of one level.
struct stage {
  const double* wavelet;
  const double* scaling;
  std::int64_t length;
  std::int64_t step;    // between the instants of neighbouring taps
  std::int64_t period;  // of the series
};

constexpr std::int64_t margin = 31;           // what a block of instants may read past the end of a series
constexpr std::int32_t most_transforms = 30;  // the levels of the longest series

inline double* data_of(const _univ_mat* mat) { return static_cast<double*>(mat->data); }

// A series or crystal in a run of its own, continued past its end.
class line {
 public:
  [[nodiscard]] code make(std::int64_t period) {
    period_ = period;
    return buffer_.make(period + margin);
  }
  [[nodiscard]] double* data() const { return buffer_.data(); }
  void take(const double* column, std::int64_t stride) const;
  void go_on() const;

 private:
  scratch<double> buffer_;
  std::int64_t period_ = 0;
};

// A run as a column.
void put(const double* from, std::int64_t count, double* column, std::int64_t stride);

// Both crystals of a level at `count` instants from `first` on.
void analyse_run(const stage& at, const double* series, std::int64_t first, std::int64_t count, double* wavelet,
                 double* scaling);

// Levels that follow one another, their results in columns side by side.
class pass {
 public:
  // The first level, from 0; 1 if levels go up and -1 if they go down; the first column.
  pass(const stage& finest, std::int32_t first_level, std::int32_t direction, std::int32_t column)
      : finest_(finest), first_level_(first_level), direction_(direction), column_(column) {}

  // How many levels, of `levels` at most, are worth one pass. Before any of the next.
  std::int32_t take(std::int32_t levels);

  [[nodiscard]] code analyse(const double* series, const _univ_mat* wavelet, const _univ_mat* scaling);
  [[nodiscard]] code synthesise(const double* approximation, const double* detail, const _univ_mat* crystals,
                                const _univ_mat* out);

 private:
  stage level(std::int32_t k) const;
  std::int64_t reach(std::int32_t k) const;
  [[nodiscard]] code place_lines(bool before);
  void write(double* const* lines, std::int64_t from, std::int64_t count, const _univ_mat* to,
             std::int64_t t) const;

  stage finest_;
  std::int32_t first_level_;
  std::int32_t direction_;
  std::int32_t column_;
  std::int32_t levels_ = 0;
  std::int64_t warm_up_ = 0;
  std::int64_t strip_ = 0;
  scratch<double> lines_;
  // Of each level, a strip long. Beside a line that a further level reads lies what that level reaches.
  double* details_[most_transforms] = {};
  double* approximations_[most_transforms] = {};
};

}  // namespace korvo

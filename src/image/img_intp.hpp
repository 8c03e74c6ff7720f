// The four pixels around a position and their weights: one look for several images of one size.
#pragma once

#include <cmath>
#include <cstdint>

namespace korvo {

class corners {
 public:
  // A position more than a pixel outside, or NaN, has no corner.
  corners(double row, double col, std::int32_t nrow, std::int32_t ncol) {
    if (!(row > -1.0 && row < nrow && col > -1.0 && col < ncol)) return;
    const double top = std::floor(row);
    const double left = std::floor(col);
    const double rows[] = {top, std::ceil(row)};
    const double cols[] = {left, std::ceil(col)};
    const double down[] = {1.0 - (row - top), row - top};
    const double across[] = {1.0 - (col - left), col - left};
    for (const int i : {0, 1})
      for (const int j : {0, 1}) {
        const bool inside = rows[i] >= 0.0 && rows[i] < nrow && cols[j] >= 0.0 && cols[j] < ncol;
        if (!inside) continue;
        place_[count_] = static_cast<std::int64_t>(rows[i]) * ncol + static_cast<std::int64_t>(cols[j]);
        weight_[count_++] = down[i] * across[j];
      }
  }

  template <class T>
  double of(const T* image) const {
    double value = 0.0;
    for (int k = 0; k < count_; ++k) value += weight_[k] * static_cast<double>(image[place_[k]]);
    return value;
  }

 private:
  std::int64_t place_[4] = {};
  double weight_[4] = {};
  int count_ = 0;
};

}  // namespace korvo

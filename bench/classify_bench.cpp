// Gaussian distances, beside the loop that their formula suggests.
#include <cstdint>
#include <memory>
#include <vector>

#include "bench/bench.hpp"
#include "korvos/classify/img_mrf.h"
#include "korvos/numeric/mat_num.h"

namespace {

using korvo::dbl_matrix;

constexpr std::int32_t size = 1024, bands = 6, classes = 8;

// A set of n random matrices.
struct stack {
  stack(std::int32_t n, std::int32_t rows, std::int32_t cols, double high) {
    for (std::int32_t i = 0; i < n; ++i)
      members.push_back(std::make_unique<dbl_matrix>(
          dbl_matrix::random(rows, cols, static_cast<unsigned>(i + 1), -high, high)));
    for (const auto& member : members) records.push_back(member->universal());
  }
  _mat_set set(std::vector<std::int32_t>& dims) {
    return {static_cast<std::int32_t>(dims.size()), dims.data(), static_cast<std::int32_t>(records.size()),
            records.data()};
  }
  std::vector<std::unique_ptr<dbl_matrix>> members;
  std::vector<_univ_mat> records;
};

struct scene {
  stack images{bands, size, size, 50.0};
  stack statistics{classes, bands + 1, bands, 9.0};
  stack distances{classes, size, size, 1.0};
  std::vector<std::int32_t> image_dims{1, bands}, class_dims{classes};
};

void plain_distance(const scene& s) {
  dbl_matrix inverse(bands, bands);
  for (std::size_t c = 0; c < classes; ++c) {
    const double* const mean = s.statistics.members[c]->data;
    _dbl_mat covariance = {bands, bands, bands * bands, s.statistics.members[c]->data + bands};
    bench::check(matdbl_inverse(&covariance, nullptr, &inverse));
    double* const out = s.distances.members[c]->data;
    const double* band[bands];
    for (std::size_t i = 0; i < bands; ++i) band[i] = s.images.members[i]->data;
    for (std::int64_t p = 0; p < std::int64_t{size} * size; ++p) {
      double d[bands], distance = 0.0;
      for (int i = 0; i < bands; ++i) d[i] = band[i][p] - mean[i];
      for (int j = 0; j < bands; ++j) {
        double y = 0.0;
        for (int k = 0; k < bands; ++k) y += d[k] * inverse.data[k * bands + j];
        distance += d[j] * y;
      }
      out[p] = distance;
    }
  }
}

const bench::registration all([] {
  const auto s = std::make_shared<scene>();
  bench::add("gaussian_distance_6_bands_8_classes", size, "korvos", [=] {
    return [=] {
      const _mat_set images = s->images.set(s->image_dims), statistics = s->statistics.set(s->class_dims);
      _mat_set distances = s->distances.set(s->class_dims);
      bench::check(imgset_classify_gaussian_distance(&images, &statistics, 0, nullptr, &distances));
    };
  });
  bench::add("gaussian_distance_6_bands_8_classes", size, "plain", [=] { return [=] { plain_distance(*s); }; });
});

}  // namespace

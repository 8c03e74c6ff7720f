// Paths and snakes: fast marching beside one with a heap that knows the places of its pixels, a snake, the
// distance transform.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <numbers>
#include <random>
#include <vector>

#include "bench/bench.hpp"
#include "korvos/curve/img_lset.h"
#include "korvos/curve/img_snk.h"
#include "korvos/segment/img_dist.h"

#ifdef KORVOS_BENCH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace {

using korvo::dbl_matrix;
using korvo::u8_matrix;

std::shared_ptr<dbl_matrix> costs(std::int32_t size) {
  auto potential = std::make_shared<dbl_matrix>(size, size);
  std::mt19937 engine(3);
  std::uniform_real_distribution<double> cost(0.5, 1.5);
  for (std::int32_t i = 0; i < potential->nelem; ++i) potential->data[i] = cost(engine);
  return potential;
}

// The textbook's fast marching: each pixel once in the heap, moved up when its level falls.
class reference_marching {
 public:
  reference_marching(const double* cost, std::int32_t size, double* level)
      : cost_(cost), size_(size), level_(level), place_(pixels(), unseen) {
    heap_.reserve(pixels());
  }

  void run(std::int32_t start) {
    std::fill_n(level_, pixels(), 1e37);
    std::fill(place_.begin(), place_.end(), unseen);
    level_[start] = 0.0;
    insert(start);
    while (!heap_.empty()) {
      const std::int32_t at = take_lowest();
      const std::int32_t row = at / size_;
      const std::int32_t col = at % size_;
      if (row > 0) solve(row - 1, col);
      if (col > 0) solve(row, col - 1);
      if (col + 1 < size_) solve(row, col + 1);
      if (row + 1 < size_) solve(row + 1, col);
    }
  }

 private:
  static constexpr std::int32_t unseen = -1, frozen = -2;

  std::size_t pixels() const { return static_cast<std::size_t>(size_) * static_cast<std::size_t>(size_); }
  std::int32_t& place(std::int32_t pixel) { return place_[static_cast<std::size_t>(pixel)]; }
  std::int32_t& entry(std::int32_t at) { return heap_[static_cast<std::size_t>(at)]; }

  void put(std::int32_t at, std::int32_t pixel) {
    entry(at) = pixel;
    place(pixel) = at;
  }
  void rise(std::int32_t at) {
    const std::int32_t pixel = entry(at);
    for (; at > 0 && level_[entry((at - 1) / 2)] > level_[pixel]; at = (at - 1) / 2)
      put(at, entry((at - 1) / 2));
    put(at, pixel);
  }
  void insert(std::int32_t pixel) {
    heap_.push_back(pixel);
    rise(static_cast<std::int32_t>(heap_.size()) - 1);
  }
  std::int32_t take_lowest() {
    const std::int32_t lowest = heap_.front();
    place(lowest) = frozen;
    const std::int32_t moved = heap_.back();
    heap_.pop_back();
    const auto count = static_cast<std::int32_t>(heap_.size());
    if (count == 0) return lowest;
    std::int32_t at = 0;
    for (std::int32_t child = 1; child < count; child = 2 * at + 1) {
      if (child + 1 < count && level_[entry(child + 1)] < level_[entry(child)]) ++child;
      if (!(level_[moved] > level_[entry(child)])) break;
      put(at, entry(child));
      at = child;
    }
    put(at, moved);
    return lowest;
  }

  void solve(std::int32_t row, std::int32_t col) {
    const std::int32_t pixel = row * size_ + col;
    if (place(pixel) == frozen) return;
    const double a =
        std::min(row > 0 ? level_[pixel - size_] : 1e37, row + 1 < size_ ? level_[pixel + size_] : 1e37);
    const double b = std::min(col > 0 ? level_[pixel - 1] : 1e37, col + 1 < size_ ? level_[pixel + 1] : 1e37);
    const double p = cost_[pixel];
    const double apart = std::fabs(a - b);
    const double level =
        apart >= p ? std::min(a, b) + p : (a + b) * 0.5 + std::sqrt(p * p * 0.5 - apart * apart * 0.25);
    if (!(level < level_[pixel])) return;
    level_[pixel] = level;
    if (place(pixel) == unseen)
      insert(pixel);
    else
      rise(place(pixel));
  }

  const double* cost_;
  std::int32_t size_;
  double* level_;
  std::vector<std::int32_t> place_, heap_;
};

void add_marching(std::int32_t size) {
  bench::add("fast_marching", size, "korvos", [=] {
    return [potential = costs(size), level = std::make_shared<dbl_matrix>(size, size), size] {
      const _univ_mat from = potential->universal();
      _univ_mat to = level->universal();
      bench::check(imguniv_minpath_levelset_from_potential(&from, size / 2, size / 2, nullptr, &to));
    };
  });
  bench::add("fast_marching", size, "heap_with_positions", [=] {
    const auto potential = costs(size);
    const auto level = std::make_shared<dbl_matrix>(size, size);
    const auto reference = std::make_shared<reference_marching>(potential->data, size, level->data);
    return [=] { (void)potential, (void)level, reference->run(size / 2 * size + size / 2); };
  });
}

void add_snake(std::int32_t vertices) {
  bench::add("snake_50_iterations", vertices, "korvos", [=] {
    constexpr std::int32_t size = 256;
    const auto image = [](unsigned seed) {
      return std::make_shared<dbl_matrix>(dbl_matrix::random(size, size, seed, -0.5, 0.5));
    };
    const auto initial = std::make_shared<dbl_matrix>(vertices, 2),
               out = std::make_shared<dbl_matrix>(vertices, 2);
    for (std::int32_t i = 0; i < vertices; ++i) {
      const double angle = 2.0 * std::numbers::pi * i / vertices;
      (*initial)(i, 0) = 128.0 + 90.0 * std::cos(angle), (*initial)(i, 1) = 128.0 + 90.0 * std::sin(angle);
    }
    return [=, energy = image(1), rows = image(2), columns = image(3)] {
      const snake_params with = {IMG_CONTOUR_CLOSED, 0.1, 0.1, 0.1, 0.5, 50, 0.0, 0.0};
      snake_params results{};
      const _univ_mat e = energy->universal(), r = rows->universal(), c = columns->universal(),
                      from = initial->universal();
      _univ_mat to = out->universal();
      if (imguniv_snake_minimize(&e, &r, &c, &from, 0, &with, nullptr, &results, &to) !=
          KORVO_ERR_NOT_CONVERGING)
        bench::check(KORVO_ERR_ILLEGAL_VALUE);
    };
  });
}

std::shared_ptr<u8_matrix> dots(std::int32_t size) {
  auto image = std::make_shared<u8_matrix>(size, size);
  std::mt19937 engine(5);
  for (std::int32_t i = 0; i < image->nelem; ++i) image->data[i] = engine() % 500 == 0 ? 0 : 1;
  return image;
}

void add_distance(std::int32_t size) {
  bench::add("distance_transform", size, "korvos", [=] {
    return [image = dots(size), out = std::make_shared<dbl_matrix>(size, size)] {
      const _univ_mat from = image->universal();
      _univ_mat to = out->universal();
      const _univ_scalar feature = {{.u8 = 0}, KORVO_UINT8};
      bench::check(imguniv_transform_distance(&from, IMG_METRIC_EUCLIDEAN, feature, nullptr, &to));
    };
  });
#ifdef KORVOS_BENCH_OPENCV
  bench::add("distance_transform", size, "opencv", [=] {  // to floats
    return [image = dots(size), out = cv::Mat(size, size, CV_32F)]() mutable {
      const cv::Mat in(image->nrow, image->ncol, CV_8U, image->data);
      cv::distanceTransform(in, out, cv::DIST_L2, cv::DIST_MASK_PRECISE);
    };
  });
#endif
}

const bench::registration paths([] {
#ifdef KORVOS_BENCH_OPENCV
  cv::setNumThreads(1);
#endif
  add_marching(1024);
  add_snake(200);
  add_distance(2048);
});

}  // namespace

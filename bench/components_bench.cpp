// Connected components: noise, blobs, and shapes that are hard on tables of equivalences, at sizes that show
// time growing with the pixels.
#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <vector>

#include "bench/bench.hpp"
#include "korvos/segment/img_ccmp.h"

#ifdef KORVOS_BENCH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace {

using korvo::matrix;

using image = matrix<_u8_mat>;

image made(std::int32_t size, const std::function<bool(std::int32_t, std::int32_t)>& is_foreground) {
  image result(size, size);
  for (std::int32_t i = 0; i < size; ++i)
    for (std::int32_t j = 0; j < size; ++j) result(i, j) = is_foreground(i, j) ? 1 : 0;
  return result;
}

image noise(std::int32_t size) {
  std::mt19937 engine(1);
  return made(size, [&](auto, auto) { return (engine() & 1U) != 0; });
}

// White noise, smoothed three times by boxes, which is nearly a Gaussian, against its mean.
image blobs(std::int32_t size) {
  constexpr std::int32_t radius = 8;
  std::mt19937 engine(2);
  std::vector<double> field(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
  for (double& x : field) x = static_cast<double>(engine()) / 4294967296.0 - 0.5;
  const auto smooth = [&](std::int64_t step, std::int64_t line) {
    std::vector<double> sums(static_cast<std::size_t>(size) + 1);
    for (std::int64_t l = 0; l < size; ++l) {
      double* const first = field.data() + l * line;
      for (std::int64_t i = 0; i < size; ++i)
        sums[static_cast<std::size_t>(i + 1)] = sums[static_cast<std::size_t>(i)] + first[i * step];
      for (std::int64_t i = 0; i < size; ++i)
        first[i * step] = sums[static_cast<std::size_t>(std::min<std::int64_t>(size, i + radius + 1))] -
                          sums[static_cast<std::size_t>(std::max<std::int64_t>(0, i - radius))];
    }
  };
  for (int times = 0; times < 3; ++times) smooth(1, size), smooth(size, 1);
  return made(size, [&](std::int64_t i, std::int64_t j) {
    return field[static_cast<std::size_t>(i * size + j)] > 0.0;
  });
}

// A path one pixel wide that winds inwards, with a gap of one pixel.
image spiral(std::int32_t size) {
  return made(size, [=](std::int32_t i, std::int32_t j) {
    const std::int32_t ring = std::min({i, j, size - 1 - i, size - 1 - j});
    const bool is_gate = j == ring && i == ring + 1;
    return (ring % 2 == 0) != is_gate;
  });
}

void add_image(const std::string& family, const std::shared_ptr<image>& in) {
  const std::int32_t size = in->nrow;
  const auto labels = std::make_shared<matrix<_u32_mat>>(size, size);
  for (const int connectivity : {4, 8}) {
    const std::string name = "components_" + family + "_" + std::to_string(connectivity);
    bench::add(name, size, "korvos", [=] {
      return [=] {
        std::uint32_t count = 0;
        bench::check(
            imgu8_connected_components(in.get(), connectivity - 4, 1, 1, nullptr, labels.get(), &count));
      };
    });
#ifdef KORVOS_BENCH_OPENCV
    bench::add(name, size, "opencv", [=] {
      return [=] {
        const cv::Mat from(size, size, CV_8U, in->data);
        const cv::Mat to(size, size, CV_32S, labels->data);
        cv::connectedComponents(from, to, connectivity, CV_32S);
      };
    });
#endif
  }
}

void add_stack() {
  constexpr std::int32_t planes = 64;
  constexpr std::int32_t size = 256;
  struct stack {
    std::vector<image> in;
    std::vector<matrix<_u32_mat>> out;
    std::vector<_univ_mat> in_planes, out_planes;
    std::int32_t dims[1] = {planes};
  };
  const auto work = std::make_shared<stack>();
  work->in.reserve(planes), work->out.reserve(planes);
  work->in_planes.reserve(planes), work->out_planes.reserve(planes);
  std::mt19937 engine(3);
  for (std::int32_t p = 0; p < planes; ++p) {
    work->in.push_back(made(size, [&](auto, auto) { return (engine() & 1U) != 0; }));
    work->out.emplace_back(size, size);
    work->in_planes.push_back(work->in.back().universal());
    work->out_planes.push_back(work->out.back().universal());
  }
  bench::add("components_3d_64x256x256", size, "korvos", [=] {
    return [=] {
      const _mat_set in = {1, work->dims, planes, work->in_planes.data()};
      _mat_set out = {1, work->dims, planes, work->out_planes.data()};
      std::uint32_t count = 0;
      bench::check(imgset_connected_components_3d(&in, 0, {_univ_value{.u8 = 1}, KORVO_UINT8}, 1, nullptr, &out,
                                                  &count));
    };
  });
}

const bench::registration all([] {
  for (const std::int32_t size : {512, 1024, 2048}) {
    const auto add = [=](const char* family, const image& in) {
      add_image(family, std::make_shared<image>(in));
    };
    add("noise", noise(size));
    add("blobs", blobs(size));
    add("checkers", made(size, [](std::int32_t i, std::int32_t j) { return (i + j) % 2 == 0; }));
    add("comb_up", made(size, [=](std::int32_t i, std::int32_t j) { return j % 2 == 0 || i == size - 1; }));
    add("comb_down", made(size, [](std::int32_t i, std::int32_t j) { return j % 2 == 0 || i == 0; }));
    add("comb_right", made(size, [=](std::int32_t i, std::int32_t j) { return i % 2 == 0 || j == size - 1; }));
    add("spiral", spiral(size));
  }
  add_stack();
});

}  // namespace

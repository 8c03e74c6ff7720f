// Boundary tracing, chain to polygon, area rendering, lines.
#include <cmath>
#include <cstdint>
#include <memory>
#include <vector>

#include "bench/bench.hpp"
#include "korvos/curve/pgn_regn.h"
#ifdef KORVOS_BENCH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace {

using korvo::dbl_matrix;

constexpr std::int32_t size = 1024, vertices = 1000;

// A star with bumps of three sizes.
double radius(double angle) {
  return 350.0 + 60.0 * std::sin(9.0 * angle) + 30.0 * std::sin(41.0 * angle) + 20.0 * std::sin(120.0 * angle);
}

struct scene {
  korvo::u8_matrix region{size, size};
  dbl_matrix star{vertices, 2}, area{size, size};
  korvo::u8_matrix drawing{size, size};
  pgn_chain chain = {};
  _dbl_mat outline = {};

  scene() {
    constexpr double turn = 6.283185307179586, middle = 0.5 * size;
    for (std::int32_t r = 0; r < size; ++r)
      for (std::int32_t c = 0; c < size; ++c)
        region(r, c) = std::hypot(c - middle, r - middle) < radius(std::atan2(r - middle, c - middle));
    for (std::int32_t i = 0; i < vertices; ++i) {
      const double angle = turn * i / vertices;
      star(i, 0) = middle + radius(angle) * std::cos(angle);
      star(i, 1) = middle + radius(angle) * std::sin(angle);
    }
    trace();
  }
  scene(const scene&) = delete;
  scene& operator=(const scene&) = delete;
  ~scene() {
    (void)pgn_chain_free(&chain);
    (void)matdbl_free(&outline);
  }
  void trace() {
    bench::check(pgn_chain_free(&chain));
    bench::check(pgnu8_boundary_chain_from_region(&region, size / 2, size / 2, nullptr, &chain));
  }
  void convert() {
    bench::check(matdbl_free(&outline));
    bench::check(pgndbl_boundary_chain_to_polygon(&chain, nullptr, &outline));
  }
  void draw() {
    _univ_mat to = drawing.universal();
    const _univ_scalar line{{.u8 = 255}, to.type}, background{{.u8 = 0}, to.type};
    bench::check(pgndbl_render_line(&star, 1, line, background, nullptr, &to));
  }
};

#ifdef KORVOS_BENCH_OPENCV
void add_peers(const std::shared_ptr<scene>& s) {
  // With its scan of the whole image.
  bench::add("boundary_trace", size, "opencv", [=] {
    const cv::Mat region(size, size, CV_8U, s->region.data);
    return [=] {
      std::vector<std::vector<cv::Point>> contours;
      cv::findContours(region, contours, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
    };
  });
  // Bytes, and whole pixels.
  std::vector<cv::Point> corners;
  corners.reserve(vertices);
  for (std::int32_t i = 0; i < vertices; ++i)
    corners.emplace_back(static_cast<int>(std::lround(s->star(i, 0))),
                         static_cast<int>(std::lround(s->star(i, 1))));
  const std::vector<std::vector<cv::Point>> polygons = {corners};
  bench::add("polygon_area_1000_vertices", size, "opencv", [=] {
    cv::Mat drawing(size, size, CV_8U, s->drawing.data);
    return [=]() mutable {
      drawing.setTo(0);
      cv::fillPoly(drawing, polygons, 255);
    };
  });
  bench::add("polygon_lines_1000_vertices", size, "opencv", [=] {
    cv::Mat drawing(size, size, CV_8U, s->drawing.data);
    return [=]() mutable {
      drawing.setTo(0);
      cv::polylines(drawing, polygons, true, 255);
    };
  });
}
#endif

const bench::registration all([] {
  const auto s = std::make_shared<scene>();
  bench::add("boundary_trace", size, "korvos", [=] { return [=] { s->trace(); }; });
  bench::add("chain_to_polygon", size, "korvos", [=] { return [=] { s->convert(); }; });
  bench::add("polygon_area_1000_vertices", size, "korvos",
             [=] { return [=] { bench::check(pgndbl_render_region(&s->star, nullptr, &s->area)); }; });
  bench::add("polygon_lines_1000_vertices", size, "korvos", [=] { return [=] { s->draw(); }; });
#ifdef KORVOS_BENCH_OPENCV
  add_peers(s);
#endif
});

}  // namespace

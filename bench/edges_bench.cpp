// Edges: derivative of Gaussian, Canny, Sobel gradient.
#include <cmath>
#include <cstdint>
#include <memory>

#include "bench/bench.hpp"
#include "korvos/segment/img_cany.h"
#include "korvos/segment/img_edge.h"

#ifdef KORVOS_BENCH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace {

using korvo::dbl_matrix;
using korvo::u8_matrix;

constexpr int size = 2048;
constexpr double sigma = 2.0;

// Bytes that change slowly, with a step now and then, so that there are edges to be found.
struct picture {
  picture() : bytes(size, size), numbers(size, size), row(size, size), column(size, size), edges(size, size) {
    for (int r = 0; r < size; ++r)
      for (int c = 0; c < size; ++c) {
        const int value = (r / 61 * 37 + c / 47 * 53) % 120 + (r + 2 * c) % 97 / 4 + (r * 31 + c * 17) % 13;
        bytes(r, c) = static_cast<std::uint8_t>(value);
        numbers(r, c) = value;
      }
  }
  u8_matrix bytes;
  dbl_matrix numbers, row, column;
  u8_matrix edges;
};

void add_derivative(const std::shared_ptr<picture>& p) {
  bench::add("derivative_of_gaussian", size, "korvos", [=] {
    return [p, in = p->numbers.universal(), y = p->row.universal(), x = p->column.universal()]() mutable {
      bench::check(imguniv_filter_derivative_of_gaussian(&in, sigma, nullptr, &y, &x));
    };
  });
#ifdef KORVOS_BENCH_OPENCV
  bench::add("derivative_of_gaussian", size, "opencv", [=] {
    const cv::Mat in(size, size, CV_64F, p->numbers.data);
    const cv::Mat y(size, size, CV_64F, p->row.data), x(size, size, CV_64F, p->column.data);
    cv::Mat g(8, 1, CV_64F), d(8, 1, CV_64F);
    for (int k = 0; k < 8; ++k) {
      const double at = k - 3.5;
      g.at<double>(k) = std::exp(-at * at / (2.0 * sigma * sigma));
      d.at<double>(k) = g.at<double>(k) * at / (2.0 * CV_PI * sigma * sigma * sigma * sigma);
    }
    return [=] {
      cv::sepFilter2D(in, y, CV_64F, g, d, {-1, -1}, 0.0, cv::BORDER_REPLICATE);
      cv::sepFilter2D(in, x, CV_64F, d, g, {-1, -1}, 0.0, cv::BORDER_REPLICATE);
    };
  });
#endif
}

// In double here. OpenCV smooths bytes to bytes and takes 16-bit Sobel gradients, and its threshold is of their
// sum: like to like in purpose only.
void add_canny(const std::shared_ptr<picture>& p) {
  bench::add("canny", size, "korvos", [=] {
    const _univ_scalar edge = {{.u8 = 255}, KORVO_UINT8}, none = {{.u8 = 0}, KORVO_UINT8};
    return [=, in = p->bytes.universal(), out = p->edges.universal()]() mutable {
      bench::check(imguniv_edge_canny(&in, sigma, 3.0, 6.0, edge, none, nullptr, &out));
      benchmark::DoNotOptimize(p);
    };
  });
#ifdef KORVOS_BENCH_OPENCV
  bench::add("canny", size, "opencv", [=] {
    const cv::Mat in(size, size, CV_8U, p->bytes.data), out(size, size, CV_8U, p->edges.data);
    return [=] {
      cv::Mat smooth;
      cv::GaussianBlur(in, smooth, {9, 9}, sigma, sigma, cv::BORDER_REPLICATE);
      cv::Canny(smooth, out, 24.0, 48.0, 3, true);
    };
  });
#endif
}

void add_sobel(const std::shared_ptr<picture>& p) {
  bench::add("sobel_gradient", size, "korvos", [=] {
    return [p, in = p->numbers.universal(), y = p->row.universal(), x = p->column.universal()]() mutable {
      bench::check(imguniv_gradient_sobel(&in, nullptr, &y, &x));
    };
  });
#ifdef KORVOS_BENCH_OPENCV
  bench::add("sobel_gradient", size, "opencv", [=] {
    const cv::Mat in(size, size, CV_64F, p->numbers.data);
    const cv::Mat y(size, size, CV_64F, p->row.data), x(size, size, CV_64F, p->column.data);
    return [=] {
      cv::Sobel(in, x, CV_64F, 1, 0, 3, 1.0, 0.0, cv::BORDER_CONSTANT);
      cv::Sobel(in, y, CV_64F, 0, 1, 3, 1.0, 0.0, cv::BORDER_CONSTANT);
    };
  });
#endif
}

const bench::registration all([] {
  const auto p = std::make_shared<picture>();
  add_derivative(p);
  add_canny(p);
  add_sobel(p);
  bench::add("nonmaxima_suppress", size, "korvos", [=] {
    return [p, out = std::make_shared<dbl_matrix>(size, size)] {
      bench::check(imgdbl_edge_nonmaxima_suppress(&p->row, &p->column, nullptr, out.get()));
    };
  });
});

}  // namespace

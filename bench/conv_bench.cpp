// Correlation, and mean and variance over windows.
#include <cstdint>
#include <memory>

#include "bench/bench.hpp"
#include "korvos/segment/img_conv.h"
#include "korvos/signal/sig_conv.h"

#ifdef KORVOS_BENCH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace {

using korvo::matrix;

template <class M>
struct filter {
  filter(int size, int kernel_size)
      : in(matrix<M>::random(size, size, 1, 0.0, 200.0)),
        kernel(matrix<M>::random(kernel_size, kernel_size, 2, 0.0, 20.0)),
        out(size, size) {}
  matrix<M> in, kernel, out;
};

// OpenCV saturates where bytes wrap here; the work is the same.
template <class M, auto correlate>
void add_correlation(const std::string& type) {
  constexpr int size = 1024;
  for (const int side : {3, 7, 15}) {
    const std::string family = "correlate_" + type + "_" + std::to_string(side) + "x" + std::to_string(side);
    const auto work = std::make_shared<filter<M>>(size, side);
    const int centre = side - side / 2;
    bench::add(family, size, "korvos", [=] {
      return [=] {
        bench::check(correlate(&work->in, &work->kernel, 1, 1, centre, centre, SIG_BOUNDARY_REFLECT, nullptr,
                               &work->out));
      };
    });
#ifdef KORVOS_BENCH_OPENCV
    bench::add(family, size, "opencv", [=] {
      const int element = cv::DataType<korvo::element<M>>::type;
      const cv::Mat in(size, size, element, work->in.data);
      const cv::Mat kernel(side, side, element, work->kernel.data);
      const cv::Mat out(size, size, element, work->out.data);
      return [=] { cv::filter2D(in, out, -1, kernel, {-1, -1}, 0.0, cv::BORDER_REFLECT); };
    });
#endif
  }
}

template <auto local, class Peer>
void add_local(const char* family, Peer peer) {
  constexpr int size = 2048;
  constexpr int side = 15;
  const auto work = std::make_shared<filter<_dbl_mat>>(size, 1);
  bench::add(family, size, "korvos", [=] {
    return [=] { bench::check(local(&work->in, side, side, SIG_BOUNDARY_CONTINUE, nullptr, &work->out)); };
  });
#ifdef KORVOS_BENCH_OPENCV
  bench::add(family, size, "opencv", [=] {
    const cv::Mat in(size, size, CV_64F, work->in.data);
    const cv::Mat out(size, size, CV_64F, work->out.data);
    return [=] { peer(in, out, cv::Size(side, side)); };
  });
#else
  (void)peer;
#endif
}

#ifdef KORVOS_BENCH_OPENCV
constexpr auto box_mean = [](const cv::Mat& in, const cv::Mat& out, cv::Size window) {
  cv::boxFilter(in, out, -1, window, {-1, -1}, true, cv::BORDER_REPLICATE);
};
// The textbook way: the mean of squares less the square of the mean.
constexpr auto box_variance = [](const cv::Mat& in, cv::Mat out, cv::Size window) {
  cv::Mat mean;
  cv::boxFilter(in, mean, -1, window, {-1, -1}, true, cv::BORDER_REPLICATE);
  cv::sqrBoxFilter(in, out, -1, window, {-1, -1}, true, cv::BORDER_REPLICATE);
  out -= mean.mul(mean);
};
#else
constexpr int box_mean = 0;
constexpr int box_variance = 0;
#endif

const bench::registration all([] {
  add_correlation<_dbl_mat, sigdbl_correlate>("dbl");
  add_correlation<_u8_mat, sigu8_correlate>("u8");
  add_local<imgdbl_local_mean>("local_mean_15x15", box_mean);
  add_local<imgdbl_local_variance>("local_variance_15x15", box_variance);
});

}  // namespace

// Correlation and local statistics, with OpenCV beside them where it is installed.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

#include "korvos/segment/img_conv.h"
#include "korvos/signal/sig_conv.h"
#include "tests/support/matrix.hpp"

#ifdef KORVOS_BENCH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace {

using korvo::matrix;

template <class Work>
void add(const std::string& name, Work work) {
  benchmark::RegisterBenchmark(name.c_str(), work)->UseRealTime()->Unit(benchmark::kMillisecond);
}

template <class M>
void add_correlate(const std::string& type, std::int32_t size, std::int32_t kernel_size, auto correlate) {
  const std::string family = "correlate_" + type + "_" + std::to_string(kernel_size) + "x" +
                             std::to_string(kernel_size) + "/" + std::to_string(size);
  const auto in = matrix<M>::random(size, size, 1, 0.0, 200.0);
  const auto kernel = matrix<M>::random(kernel_size, kernel_size, 2, 0.0, 20.0);
  add(family + "/korvos", [=](benchmark::State& state) {
    matrix<M> out(size, size);
    const std::int32_t centre = kernel_size - kernel_size / 2;
    for (auto _ : state)
      if (correlate(&in, &kernel, 1, 1, centre, centre, SIG_BOUNDARY_REFLECT, nullptr, &out) != KORVO_ERR_OK)
        state.SkipWithError("refused");
  });
#ifdef KORVOS_BENCH_OPENCV
  add(family + "/opencv", [=](benchmark::State& state) {
    const int element = cv::DataType<korvo::element<M>>::type;
    const cv::Mat image(size, size, element, in.data);
    const cv::Mat taps(kernel_size, kernel_size, element, kernel.data);
    cv::Mat out(size, size, element);
    for (auto _ : state) cv::filter2D(image, out, -1, taps, {-1, -1}, 0.0, cv::BORDER_REFLECT);
  });
#endif
}

void add_local(const std::string& name, std::int32_t size, std::int32_t window, auto local, auto opencv) {
  const std::string family =
      name + "_" + std::to_string(window) + "x" + std::to_string(window) + "/" + std::to_string(size);
  const auto in = korvo::dbl_matrix::random(size, size, 1);
  add(family + "/korvos", [=](benchmark::State& state) {
    korvo::dbl_matrix out(size, size);
    for (auto _ : state)
      if (local(&in, window, window, SIG_BOUNDARY_CONTINUE, nullptr, &out) != KORVO_ERR_OK)
        state.SkipWithError("refused");
  });
#ifdef KORVOS_BENCH_OPENCV
  add(family + "/opencv", [=](benchmark::State& state) {
    const cv::Mat image(size, size, CV_64F, in.data);
    cv::Mat out(size, size, CV_64F);
    for (auto _ : state) opencv(image, out, cv::Size(window, window));
  });
#else
  (void)opencv;
#endif
}

#ifdef KORVOS_BENCH_OPENCV
void box_mean(const cv::Mat& image, cv::Mat& out, cv::Size window) {
  cv::boxFilter(image, out, -1, window, {-1, -1}, true, cv::BORDER_REPLICATE);
}
void box_variance(const cv::Mat& image, cv::Mat& out, cv::Size window) {
  cv::Mat mean;
  cv::boxFilter(image, mean, -1, window, {-1, -1}, true, cv::BORDER_REPLICATE);
  cv::sqrBoxFilter(image, out, -1, window, {-1, -1}, true, cv::BORDER_REPLICATE);
  out -= mean.mul(mean);
}
#else
constexpr int box_mean = 0;
constexpr int box_variance = 0;
#endif

}  // namespace

int main(int argc, char** argv) {
#ifdef KORVOS_BENCH_OPENCV
  cv::setNumThreads(1);
#endif
  for (const std::int32_t kernel_size : {3, 7, 15}) {
    add_correlate<_dbl_mat>("dbl", 1024, kernel_size, sigdbl_correlate);
    add_correlate<_u8_mat>("u8", 1024, kernel_size, sigu8_correlate);
  }
  add_local("local_mean", 2048, 15, imgdbl_local_mean, box_mean);
  add_local("local_variance", 2048, 15, imgdbl_local_variance, box_variance);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

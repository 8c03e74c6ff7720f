// Binary and grey-scale morphology.
#include <cstdint>
#include <memory>

#include "bench/bench.hpp"
#include "korvos/image/img_gmor.h"
#include "korvos/image/img_morp.h"

#ifdef KORVOS_BENCH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace {

using korvo::matrix;
using korvo::u8_matrix;

template <class M>
struct workload {
  workload(int size, double low, double high, matrix<M> with)
      : image(matrix<M>::random(size, size, 1, low, high)), element(std::move(with)), out(size, size) {}
  matrix<M> image, element, out;
};

u8_matrix disk(int side) {
  u8_matrix element(side, side);
  const int half = side / 2;
  for (int i = -half; i <= half; ++i)
    for (int j = -half; j <= half; ++j) element(i + half, j + half) = i * i + j * j <= half * half;
  return element;
}

#ifdef KORVOS_BENCH_OPENCV
template <class Work>
auto peer(const Work& work, void (*method)(cv::InputArray, cv::OutputArray, cv::InputArray, cv::Point, int, int,
                                           const cv::Scalar&)) {
  const int element = cv::DataType<std::remove_pointer_t<decltype(work->image.data)>>::type;
  const cv::Mat in(work->image.nrow, work->image.ncol, element, work->image.data);
  const cv::Mat out(work->image.nrow, work->image.ncol, element, work->out.data);
  cv::Mat shape(work->element.nrow, work->element.ncol, CV_8U, cv::Scalar(1));
  if constexpr (std::is_same_v<Work, std::shared_ptr<workload<_u8_mat>>>)
    if (cv::countNonZero(cv::Mat(shape.size(), CV_8U, work->element.data)) > 0)
      shape = cv::Mat(shape.size(), CV_8U, work->element.data).clone();
  return [=] { method(in, out, shape, {-1, -1}, 1, cv::BORDER_REPLICATE, {}); };
}
#define PEER(method) bench::add(family, size, "opencv", [=] { return peer(work, method); })
#else
#define PEER(method) static_cast<void>(0)
#endif

// Images of 0 and 255, as the peer has them.
void add_binary(const std::string& shape, const u8_matrix& element) {
  constexpr int size = 2048;
  const int half = element.nrow / 2;
  const auto work = std::make_shared<workload<_u8_mat>>(size, 0.0, 255.0, element);
  for (std::int32_t k = 0; k < work->image.nelem; ++k) work->image.data[k] = work->image.data[k] > 9 ? 255 : 0;
  std::string family = "binary_erode_" + shape;
  const auto run = [=](auto method) {
    return [=] {
      return
          [=] { bench::check(method(&work->image, &work->element, half, half, 255, 0, nullptr, &work->out)); };
    };
  };
  bench::add(family, size, "korvos", run(imgu8_binary_erode));
  PEER(cv::erode);
  family = "binary_dilate_" + shape;
  bench::add(family, size, "korvos", run(imgu8_binary_dilate));
  PEER(cv::dilate);
}

template <class M, auto erode>
auto add_grey(const std::string& family, int size, matrix<M> function) {
  const auto work = std::make_shared<workload<M>>(size, 0.0, 200.0, std::move(function));
  bench::add(family, size, "korvos", [=] {
    return [=] { bench::check(erode(&work->image, &work->element, 7, 7, 3, nullptr, &work->out)); };
  });
  return work;
}

template <class M, auto erode>
void add_flat(const std::string& type) {
  constexpr int size = 2048;
  const std::string family = "grey_erode_flat_15x15_" + type;
  const auto work = add_grey<M, erode>(family, size, matrix<M>(15, 15));
  PEER(cv::erode);
}

const bench::registration all([] {
#ifdef KORVOS_BENCH_OPENCV
  cv::setNumThreads(1);
#endif
  add_binary("3x3", u8_matrix(3, 3, 1));
  add_binary("15x15", u8_matrix(15, 15, 1));
  add_binary("disk15", disk(15));
  add_flat<_u8_mat, imgu8_grayscale_erode>("u8");
  add_flat<_dbl_mat, imgdbl_grayscale_erode>("dbl");
  add_grey<_u8_mat, imgu8_grayscale_erode>("grey_erode_15x15_u8", 1024, u8_matrix::random(15, 15, 2));
  add_grey<_dbl_mat, imgdbl_grayscale_erode>("grey_erode_15x15_dbl", 1024, matrix<_dbl_mat>::random(15, 15, 2));
});

}  // namespace

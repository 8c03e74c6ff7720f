// Matrices and images on streams, in memory: text, lists, raw binary, PNM, bits; tiling of colour planes.
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "bench/bench.hpp"
#include "korvos/image/img_io.h"
#include "korvos/image/img_pttr.h"
#include "korvos/matrix/mat_io.h"
#include "korvos/matrix/mat_tile.h"

#ifdef KORVOS_BENCH_OPENCV
#include <opencv2/imgcodecs.hpp>
#endif

namespace {

using korvo::matrix;

constexpr int side = 1024;

// A grey picture, a colour one, numbers, and a stream over memory large enough for any form of them.
struct workplace {
  matrix<_u8_mat> grey = matrix<_u8_mat>::random(side, side, 1, 0.0, 255.0);
  matrix<_u8_mat> planes[3] = {matrix<_u8_mat>::random(side, side, 2, 0.0, 255.0),
                               matrix<_u8_mat>::random(side, side, 3, 0.0, 255.0),
                               matrix<_u8_mat>::random(side, side, 4, 0.0, 255.0)};
  matrix<_dbl_mat> numbers = matrix<_dbl_mat>::random(256, 256, 5, -100.0, 100.0);
  matrix<_u8_mat> interleaved{side, 3 * side};
  matrix<_u8_mat> out{side, side};
  matrix<_dbl_mat> numbers_out{256, 256};
  _univ_mat members[3] = {planes[0].universal(), planes[1].universal(), planes[2].universal()};
  std::int32_t dims = 3;
  _mat_set colour = {1, &dims, 3, members};
  std::vector<char> memory = std::vector<char>(16U << 20U);
  FILE* stream = fmemopen(memory.data(), memory.size(), "r+b");

  workplace() = default;
  workplace(const workplace&) = delete;
  workplace& operator=(const workplace&) = delete;
  ~workplace() { (void)std::fclose(stream); }
};

// Writes by `write`; and reads by `read` what `write` has written.
template <class Write>
void writing(const char* family, Write write) {
  bench::add(family, side, "korvos", [=] {
    return [w = std::make_shared<workplace>(), write] {
      std::rewind(w->stream);
      bench::check(write(*w));
      (void)std::fflush(w->stream);
    };
  });
}
template <class Write, class Read>
void reading(const char* family, Write write, Read read) {
  bench::add(family, side, "korvos", [=] {
    auto w = std::make_shared<workplace>();
    bench::check(write(*w));
    (void)std::fflush(w->stream);
    return [w, read] {
      std::rewind(w->stream);
      bench::check(read(*w));
    };
  });
}

_korvo_errcode write_grey(workplace& w, std::uint8_t plain) {
  const _univ_mat image = w.grey.universal();
  return imguniv_write_pgm(w.stream, &image, plain, nullptr);
}
_korvo_errcode read_grey(workplace& w) {
  _univ_mat image{};
  const _korvo_errcode result = imguniv_read_pgm(w.stream, nullptr, &image);
  (void)matuniv_free(&image);
  return result;
}
_korvo_errcode read_colour(workplace& w) {
  _mat_set image{};
  const _korvo_errcode result = imgset_read_ppm(w.stream, nullptr, &image);
  (void)matset_free_matrices(&image);
  (void)matset_free(&image);
  return result;
}
_korvo_errcode parse_numbers(workplace& w) {
  _dbl_mat mat{};
  const _korvo_errcode result = matdbl_parse(w.stream, nullptr, &mat);
  (void)matdbl_free(&mat);
  return result;
}

void add_images() {
  const auto p2 = [](workplace& w) { return write_grey(w, 1); };
  const auto p5 = [](workplace& w) { return write_grey(w, 0); };
  const auto p6 = [](workplace& w) { return imgset_write_ppm(w.stream, &w.colour, 0, nullptr); };
  const auto p4 = [](workplace& w) {
    const _univ_mat image = w.grey.universal();
    return imguniv_write_pbm(w.stream, &image, 127.0, 0, nullptr);
  };
  writing("write_p2", p2);
  writing("write_p4", p4);
  writing("write_p5", p5);
  writing("write_p6", p6);
  reading("read_p2", p2, read_grey);
  reading("read_p4", p4, read_grey);
  reading("read_p5", p5, read_grey);
  reading("read_p6", p6, read_colour);
  writing("tile_u8", [](workplace& w) {
    _univ_mat out = w.interleaved.universal();
    return matset_tile(&w.colour, nullptr, &out);
  });
  writing("map_window_level_u8", [](workplace& w) {
    const _univ_mat image = w.grey.universal();
    _univ_mat out = w.out.universal();
    return imguniv_map_window_level(&image, 30.0, 200.0, nullptr, &out);
  });
}

#ifdef KORVOS_BENCH_OPENCV
// The same picture through OpenCV's encoder, in memory too.
void add_opencv_images() {
  const auto add = [](const char* family, const char* form, bool colour, bool binary, bool encode) {
    bench::add(family, side, "opencv", [=] {
      auto w = std::make_shared<workplace>();
      auto image = std::make_shared<cv::Mat>(side, side, CV_8U, w->grey.data);
      if (colour) {
        const std::vector<cv::Mat> planes = {{side, side, CV_8U, w->planes[2].data},
                                             {side, side, CV_8U, w->planes[1].data},
                                             {side, side, CV_8U, w->planes[0].data}};
        cv::merge(planes, *image);
      }
      const std::vector<int> options = {cv::IMWRITE_PXM_BINARY, binary ? 1 : 0};
      auto encoded = std::make_shared<std::vector<unsigned char>>();
      cv::imencode(form, *image, *encoded, options);
      return [=] {
        if (encode)
          cv::imencode(form, *image, *encoded, options);
        else
          benchmark::DoNotOptimize(cv::imdecode(*encoded, cv::IMREAD_UNCHANGED));
      };
    });
  };
  add("write_p2", ".pgm", false, false, true);
  add("write_p5", ".pgm", false, true, true);
  add("write_p6", ".ppm", true, true, true);
  add("read_p2", ".pgm", false, false, false);
  add("read_p5", ".pgm", false, true, false);
  add("read_p6", ".ppm", true, true, false);
}
#endif

void add_numbers() {
  const auto print = [](workplace& w) { return matdbl_print(w.stream, &w.numbers, nullptr, 0, nullptr); };
  const auto list = [](workplace& w) { return matdbl_write_ascii(w.stream, &w.numbers, nullptr, 80, nullptr); };
  const auto raw = [](workplace& w) { return matdbl_write_raw(w.stream, &w.numbers, 1, nullptr); };
  writing("print_dbl_256", print);
  writing("write_ascii_dbl_256", list);
  writing("write_raw_dbl_256", raw);
  reading("parse_dbl_256", print, parse_numbers);
  reading("read_ascii_dbl_256", list,
          [](workplace& w) { return matdbl_read_ascii(w.stream, ',', '#', nullptr, &w.numbers_out); });
  reading("read_raw_dbl_256", raw,
          [](workplace& w) { return matdbl_read_raw(w.stream, 0, 1, nullptr, &w.numbers_out); });
}

const bench::registration all([] {
  add_images();
#ifdef KORVOS_BENCH_OPENCV
  add_opencv_images();
#endif
  add_numbers();
});

}  // namespace

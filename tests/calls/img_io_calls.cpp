#include "korvos/image/img_io.h"
#include "tests/calls/calls.hpp"

namespace {

given image(_korvo_type type, std::initializer_list<double> numbers, std::int32_t cols = 50) {
  return given{.numbers = numbers}.sized(3, cols).of(type, KORVO_DOUBLE);
}
given file(std::string content) { return args().reading(std::move(content)).making().refusing({no_stream()}); }
given bits(std::string content, int raw) {
  return args(0.5, raw, 2, ' ', '#')
      .sized(3, 5)
      .reading(std::move(content))
      .refusing({null(0), miscounted(0), no_stream()});
}

}  // namespace

call_rows img_io_calls() {
  return {
      ROW(imguniv_write_pgm, image(KORVO_UINT8, {0}).refusing({null(0), no_stream(), miscounted(0)})),
      VARIANT(imguniv_write_pgm, "plain", image(KORVO_UINT8, {1})),
      VARIANT(imguniv_write_pgm, "u32", image(KORVO_UINT32, {0})),
      ROW(imguniv_write_pbm, (image(KORVO_DOUBLE, {25, 0}).refusing({null(0), no_stream()}))),
      VARIANT(imguniv_write_pbm, "plain", (image(KORVO_DOUBLE, {25, 1}))),
      ROW(imgset_write_ppm, image(KORVO_UINT8, {0}, 20).refusing({no_stream()})),
      VARIANT(imgset_write_ppm, "plain", image(KORVO_UINT16, {1}, 20)),
      ROW(imguniv_read_pgm, file("P5 3 2 255\nabcdef")),
      VARIANT(imguniv_read_pgm, "u32", file("P5 1 2 65536\nabcdefgh")),
      VARIANT(imguniv_read_pgm, "plain", file("P2 3 2 300\n1 2 3 4 5 6")),
      VARIANT(imguniv_read_pgm, "bits", file("P4 5 3\nab")),
      VARIANT(imguniv_read_pgm, "plain_bits", file("P1 3 1\n1 0 1")),
      ROW(imgset_read_ppm, file("P6 1 2 255\nabcdef")),
      VARIANT(imgset_read_ppm, "u16", file("P6 1 1 300\nabcdef")),
      VARIANT(imgset_read_ppm, "plain", file("P3 1 2 255\n1 2 3 4 5 6")),
      ROW(imguniv_write_to_bits, image(KORVO_UINT8, {25, 1, 20}).with(", ").refusing({null(0), no_stream()})),
      VARIANT(imguniv_write_to_bits, "text", image(KORVO_UINT8, {25, 0, 20}).with(", ")),
      ROW(imguniv_read_from_bits,
          bits("..ab", 1).refusing({null(0), miscounted(0), no_stream(), valued(1, -1), other_type(0)})),
      VARIANT(imguniv_read_from_bits, "text", bits("1 0 1 0 1 # bits\n0 0 0 0 0 1 1 1 1 1", 0)),
  };
}

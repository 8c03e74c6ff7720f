// The six forms of picture files: written, read back and compared.
#include <utility>

#include "scaling.hpp"
#include "stages/stages.hpp"

namespace demo {
namespace {

// Writes a file by `write`, which is given the stream, and reads it again; `written` is what must come back.
template <class Picture, class Write, class Read>
Picture round_trip(const std::string& name, const Picture& written, Write write, Read read, gallery& out) {
  const std::string path = out.path(name);
  return out.step(name + ", written and read", [&] {
    file stream = open(path, "wb");
    check(write(stream.get()));
    finish(std::move(stream), path);
    Picture back = read(path);
    if (checksum(back) != checksum(written)) throw failure("what was read is not what was written");
    return back;
  });
}

}  // namespace

void show_files(const subject& photo, gallery& out) {
  const planes& colour = photo.colour;
  const matrix grey = as_type(photo.luminance, KORVO_UINT8);
  const double threshold = mean(grey);
  if (threshold == 0.0) return;  // a file states its brightest sample, and one that states 0 is not read
  matrix bits(grey.nrow, grey.ncol, KORVO_UINT8);
  check(imguniv_map_window_level(&grey, threshold, threshold, nullptr, &bits));

  for (const bool is_plain : {true, false}) {
    const std::uint8_t plain = is_plain ? 1 : 0;
    const auto pbm = [&](FILE* stream) { return imguniv_write_pbm(stream, &grey, threshold, plain, nullptr); };
    const auto pgm = [&](FILE* stream) { return imguniv_write_pgm(stream, &grey, plain, nullptr); };
    const auto ppm = [&](FILE* stream) { return imgset_write_ppm(stream, &colour, plain, nullptr); };
    const matrix back = round_trip(is_plain ? "P1.pbm" : "P4.pbm", bits, pbm, read_grey, out);
    (void)round_trip(is_plain ? "P2.pgm" : "P5.pgm", grey, pgm, read_grey, out);
    (void)round_trip(is_plain ? "P3.ppm" : "P6.ppm", colour, ppm, read_colour, out);
    if (!is_plain) out.hang("bits", back, "one bit a pixel", "imguniv_write_pbm");
  }
}

}  // namespace demo

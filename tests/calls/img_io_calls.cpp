#include "korvos/image/img_io.h"
#include "tests/calls/calls.hpp"

namespace {

call_row write_row(std::string name, _korvo_type type,
                   std::function<_korvo_errcode(FILE*, const _univ_mat*, void*)> write) {
  return {std::move(name), [=](scene& s) -> ready_call {
            const _univ_mat* const image = s.in(type, 3, 50);
            FILE* const stream = s.writing();
            return [=](void* intrp_ptr) { return write(stream, image, intrp_ptr); };
          }};
}

call_row write_colour_row(std::string name, _korvo_type type, std::uint8_t plain) {
  return {std::move(name), [=](scene& s) -> ready_call {
            const _mat_set* const image = s.in_set({s.in(type, 3, 20), s.in(type, 3, 20), s.in(type, 3, 20)});
            FILE* const stream = s.writing();
            return [=](void* intrp_ptr) { return imgset_write_ppm(stream, image, plain, intrp_ptr); };
          }};
}

call_row read_row(std::string name, std::string text) {
  return {std::move(name), [=](scene& s) -> ready_call {
            FILE* const stream = s.reading(text);
            _univ_mat* const image = s.allocated<_univ_mat>();
            return [=](void* intrp_ptr) { return imguniv_read_pgm(stream, intrp_ptr, image); };
          }};
}

call_row read_colour_row(std::string name, std::string text) {
  return {std::move(name), [=](scene& s) -> ready_call {
            FILE* const stream = s.reading(text);
            _mat_set* const image = s.record<_mat_set>(
                [](_mat_set* made, byte_hash& hash) {
                  for (std::int32_t k = 0; k < made->nmat; ++k)
                    hash.add(made->mats[k].data, static_cast<std::size_t>(made->mats[k].nelem));
                },
                [](_mat_set* made) {
                  (void)matset_free_matrices(made);
                  (void)matset_free(made);
                });
            return [=](void* intrp_ptr) { return imgset_read_ppm(stream, intrp_ptr, image); };
          }};
}

call_row read_bits_row(std::string name, std::string text, std::uint8_t raw) {
  return {std::move(name), [=](scene& s) -> ready_call {
            FILE* const stream = s.reading(text);
            _univ_mat* const image = s.out(KORVO_DOUBLE, 3, 5);
            return [=](void* intrp_ptr) {
              return imguniv_read_from_bits(stream, {{.dbl = 0.5}, KORVO_DOUBLE}, raw, 2, ' ', '#', intrp_ptr,
                                            image);
            };
          }};
}

call_row write_grey_row(std::string name, _korvo_type type, std::uint8_t plain) {
  return write_row(std::move(name), type, [=](FILE* stream, const _univ_mat* image, void* intrp_ptr) {
    return imguniv_write_pgm(stream, image, plain, intrp_ptr);
  });
}
call_row write_binary_row(std::string name, std::uint8_t plain) {
  return write_row(std::move(name), KORVO_DOUBLE, [=](FILE* stream, const _univ_mat* image, void* intrp_ptr) {
    return imguniv_write_pbm(stream, image, 25.0, plain, intrp_ptr);
  });
}
call_row write_bits_row(std::string name, std::uint8_t raw) {
  return write_row(std::move(name), KORVO_UINT8, [=](FILE* stream, const _univ_mat* image, void* intrp_ptr) {
    return imguniv_write_to_bits(stream, image, 25.0, raw, ", ", 20, intrp_ptr);
  });
}

}  // namespace

call_rows img_io_calls() {
  return {
      write_grey_row("imguniv_write_pgm", KORVO_UINT8, 0),
      write_grey_row("imguniv_write_pgm/plain", KORVO_UINT8, 1),
      write_grey_row("imguniv_write_pgm/u32", KORVO_UINT32, 0),
      write_binary_row("imguniv_write_pbm", 0),
      write_binary_row("imguniv_write_pbm/plain", 1),
      write_colour_row("imgset_write_ppm", KORVO_UINT8, 0),
      write_colour_row("imgset_write_ppm/plain", KORVO_UINT16, 1),
      read_row("imguniv_read_pgm", "P5 3 2 255\nabcdef"),
      read_row("imguniv_read_pgm/u32", "P5 1 2 65536\nabcdefgh"),
      read_row("imguniv_read_pgm/plain", "P2 3 2 300\n1 2 3 4 5 6"),
      read_row("imguniv_read_pgm/bits", "P4 5 3\nab"),
      read_row("imguniv_read_pgm/plain_bits", "P1 3 1\n1 0 1"),
      read_colour_row("imgset_read_ppm", "P6 1 2 255\nabcdef"),
      read_colour_row("imgset_read_ppm/u16", "P6 1 1 300\nabcdef"),
      read_colour_row("imgset_read_ppm/plain", "P3 1 2 255\n1 2 3 4 5 6"),
      write_bits_row("imguniv_write_to_bits", 1),
      write_bits_row("imguniv_write_to_bits/text", 0),
      read_bits_row("imguniv_read_from_bits", "..ab", 1),
      read_bits_row("imguniv_read_from_bits/text", "1 0 1 0 1 # bits\n0 0 0 0 0 1 1 1 1 1", 0),
  };
}

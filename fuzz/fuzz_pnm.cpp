// Images: what can be read is written, and read again as the same.
#include <vector>

#include "fuzz/target.hpp"
#include "korvos/image/img_io.h"

namespace {

// The readers and writers of grey images and of colours, alike.
struct grey {
  using image = _univ_mat;
  static constexpr auto* read = imguniv_read_pgm;
  static constexpr auto* write = imguniv_write_pgm;
  static bool is_empty(const image& made) { return !made.data; }
  static void free(image* made) { (void)matuniv_free(made); }
};
struct colour {
  using image = _mat_set;
  static constexpr auto* read = imgset_read_ppm;
  static constexpr auto* write = imgset_write_ppm;
  static bool is_empty(const image& made) { return !made.mats && !made.dims; }
  static void free(image* made) {
    (void)matset_free_matrices(made);
    (void)matset_free(made);
  }
};

template <class Form>
std::string text_of(const typename Form::image& image, std::uint8_t plain) {
  return written([&](FILE* to) { require(Form::write(to, &image, plain, nullptr) == KORVO_ERR_OK); });
}

// Without line ends, which depend on the type: that of what is read again can be smaller.
template <class Form>
std::string samples_of(const typename Form::image& image) {
  std::string text = text_of<Form>(image, 1);
  std::erase(text, '\n');
  return text;
}

template <class Form>
void read_and_write(const std::string& file) {
  typename Form::image first;
  if (Form::read(reading(file).get(), nullptr, &first) != KORVO_ERR_OK) return require(Form::is_empty(first));
  for (const std::uint8_t plain : {std::uint8_t{0}, std::uint8_t{1}}) {
    typename Form::image second;
    const _korvo_errcode result = Form::read(reading(text_of<Form>(first, plain)).get(), nullptr, &second);
    // A maximum of 0 is not read again, and neither is one that is written with a sign.
    require(result == KORVO_ERR_OK || result == KORVO_ERR_ILLEGAL_VALUE);
    if (result != KORVO_ERR_OK) continue;
    require(samples_of<Form>(second) == samples_of<Form>(first));
    Form::free(&second);
  }
  Form::free(&first);
}

void read_bits(fuzz_input in) {
  const auto type = static_cast<_korvo_type>(in.byte() % 9);  // those that have no bits too
  const std::uint8_t raw = in.byte();
  const std::int32_t skip = static_cast<std::int8_t>(in.byte());
  const std::int32_t rows = 1 + in.byte() % 8;
  const std::int32_t cols = 1 + in.byte() % 8;
  const std::string file = in.rest();
  std::vector<korvo_dcomplex> elements(static_cast<std::size_t>(rows * cols));
  _univ_mat image{};
  require(matuniv_wrap_data(&image, elements.data(), rows, cols, type) == KORVO_ERR_OK);
  _univ_scalar zero_bit = {{.cpx = {}}, type};
  if (type == KORVO_UINT8) zero_bit.value = {.u8 = 7};
  if (type == KORVO_UINT16) zero_bit.value = {.u16 = 7};
  if (type == KORVO_UINT32) zero_bit.value = {.u32 = 7};
  if (type == KORVO_DOUBLE) zero_bit.value = {.dbl = 7.0};
  const auto read = [&](const std::string& bits, std::int32_t skipped) {
    return imguniv_read_from_bits(reading(bits).get(), zero_bit, raw, skipped, ' ', '#', nullptr, &image);
  };
  const auto write = [&](FILE* to) {
    require(imguniv_write_to_bits(to, &image, 0.0, raw, nullptr, 70, nullptr) == KORVO_ERR_OK);
  };
  if (read(file, skip) != KORVO_ERR_OK) return;
  const std::string bits = written(write);
  require(read(bits, 0) == KORVO_ERR_OK);
  require(written(write) == bits);
}

}  // namespace

FUZZ_TARGET(fuzz_pnm) {
  switch (in.byte() % 3) {
    case 0:
      return read_and_write<grey>(in.rest());
    case 1:
      return read_and_write<colour>(in.rest());
    default:
      return read_bits(in);
  }
}

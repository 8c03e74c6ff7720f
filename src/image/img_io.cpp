// PNM files: write_pgm, write_ppm, write_pbm, read_pgm, read_ppm.
#include "korvos/image/img_io.h"

#include <algorithm>
#include <cstdint>

#include "core/arithmetic.hpp"
#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/temporary.hpp"
#include "korvos/matrix/mat_io.h"
#include "korvos/matrix/mat_summ.h"
#include "korvos/matrix/mat_tile.h"
#include "matrix/text.hpp"

namespace korvo {
namespace {

using sample_records = records<_u8_mat, _u16_mat, _u32_mat>;

// Magic numbers of the plain forms; the raw ones lie three above them.
enum magic_number : std::int32_t { plain_bits = 1, plain_grey = 2, plain_colour = 3 };
constexpr std::int32_t raw_forms = 3;

constexpr std::int32_t planes = 3;
constexpr std::uint8_t most_significant_first = 1;
constexpr const char* text_separator = " ";
constexpr std::uint16_t text_line = 70;

template <class M>
_univ_mat universal(const M& mat) {
  return {mat.nrow, mat.ncol, mat.nelem, mat.data, tag<M>::type};
}

// Reading

// What a file says before its samples.
struct header {
  std::int32_t magic = 0;
  std::int32_t cols = 0;
  std::int32_t rows = 0;
  _korvo_type type = KORVO_UINT8;

  [[nodiscard]] bool is_raw() const { return magic > raw_forms; }
  [[nodiscard]] std::int32_t plain_form() const { return is_raw() ? magic - raw_forms : magic; }
};

code in_32_bits(std::int64_t number, std::int32_t* narrow) {
  *narrow = static_cast<std::int32_t>(number);
  return *narrow == number ? KORVO_ERR_OK : KORVO_ERR_IO;
}

// A size, which comments may precede.
code scan_size(FILE* stream, std::int32_t* size) {
  std::int64_t number = 0;
  if (scan(stream, &number) != KORVO_ERR_OK) {
    TRY(skip_separators(stream, ' ', '#'));
    TRY(scan(stream, &number));
  }
  return in_32_bits(number, size);
}

code pnm_read_header(FILE* stream, std::int32_t* magic, std::int32_t* cols, std::int32_t* rows) {
  std::int64_t number = 0;
  TRY(match(stream, "P"));
  TRY(scan(stream, &number));
  TRY(in_32_bits(number, magic));
  TRY(scan_size(stream, cols));
  return scan_size(stream, rows);
}

// The smallest type for samples up to a maximum.
code sample_type(double maximum, _korvo_type* type) {
  constexpr double largest_u8 = 255.0;
  constexpr double largest_u16 = 65535.0;
  constexpr double largest_u32 = 4294967295.0;
  if (!(maximum > 0.0 && maximum <= largest_u32)) return KORVO_ERR_ILLEGAL_VALUE;  // so is NaN
  *type = maximum <= largest_u8 ? KORVO_UINT8 : maximum <= largest_u16 ? KORVO_UINT16 : KORVO_UINT32;
  return KORVO_ERR_OK;
}

// All that stands before the samples of a form that is_read() accepts. Comments may not precede the maximum:
// kept so, unlike the sizes.
template <class F>
code read_header(FILE* stream, F is_read, header* h) {
  text_guard guard;
  TRY(guard.enter(stream));  // no stream is KORVO_ERR_NULL_POINTER
  TRY(pnm_read_header(stream, &h->magic, &h->cols, &h->rows));
  if (!is_read(h->plain_form())) return KORVO_ERR_ILLEGAL_VALUE;
  double maximum = 1.0;
  if (h->plain_form() != plain_bits) TRY(scan(stream, &maximum));
  if (std::fgetc(stream) == EOF) return KORVO_ERR_IO;
  return sample_type(maximum, &h->type);
}

// Sizes are a stranger's: what they ask for is reckoned in 64 bits before any of it is allocated.
code affordable(const header& h, std::int32_t samples, std::int64_t sample_size) {
  if (h.rows < 1 || h.cols < 1) return KORVO_ERR_ILLEGAL_SIZE;
  const std::int64_t row_size = std::int64_t{h.cols} * samples * sample_size;
  return h.rows <= largest_size / row_size ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_VALUE;
}

code read_samples(FILE* stream, const header& h, void* intrp_ptr, _univ_mat* samples) {
  constexpr _univ_scalar white = {{.u8 = 255}, KORVO_UINT8};
  if (h.plain_form() == plain_bits)
    return imguniv_read_from_bits(stream, white, h.is_raw() ? 1 : 0, 0, ' ', '#', intrp_ptr, samples);
  return h.is_raw() ? matuniv_read_raw(stream, 0, most_significant_first, intrp_ptr, samples)
                    : matuniv_read_ascii(stream, ' ', '#', intrp_ptr, samples);
}

template <class M>
code read_grey(FILE* stream, const header& h, void* intrp_ptr, _univ_mat* image) {
  TRY(affordable(h, 1, sizeof(element<M>)));
  temporary<M> pixels;
  TRY(pixels.make(h.rows, h.cols));
  _univ_mat samples = universal<M>(pixels);
  TRY(read_samples(stream, h, intrp_ptr, &samples));
  *image = samples;
  pixels.data = nullptr;  // the caller's from here on
  return KORVO_ERR_OK;
}

// Makes the set of a colour image and fills it; after a failure nothing of it stays.
code split(const _univ_mat& samples, std::int32_t cols, void* intrp_ptr, _mat_set* image) {
  TRY(matset_malloc(image, 1, &planes));
  code result = matset_malloc_matrices(image, samples.nrow, cols, samples.type);
  if (result == KORVO_ERR_OK) {
    result = matset_untile(&samples, intrp_ptr, image);
    if (result != KORVO_ERR_OK) (void)matset_free_matrices(image);
  }
  if (result != KORVO_ERR_OK) (void)matset_free(image);
  return result;
}

template <class M>
code read_colour(FILE* stream, const header& h, void* intrp_ptr, _mat_set* image) {
  TRY(affordable(h, planes, sizeof(element<M>)));
  temporary<M> interleaved;
  TRY(interleaved.make(h.rows, std::int64_t{h.cols} * planes));
  _univ_mat samples = universal<M>(interleaved);
  TRY(read_samples(stream, h, intrp_ptr, &samples));
  return split(samples, h.cols, intrp_ptr, image);
}

// Writing

// The header, whose columns are those of pixels, and all samples.
template <class M>
code write_samples(FILE* stream, const _univ_mat& samples, magic_number plain_form, std::int32_t cols,
                   std::uint8_t plain, void* intrp_ptr) {
  const bool raw = tag<M>::type == KORVO_UINT8 && plain == 0;
  _univ_scalar least{};
  _univ_scalar greatest{};
  TRY(matuniv_range(&samples, intrp_ptr, &least, &greatest));
  const auto maximum = static_cast<std::int32_t>(number<M>(greatest));  // u32 is written as signed: kept so
  std::int64_t written = 0;
  {
    text_guard guard;
    TRY(guard.enter(stream));
    TRY(write_text(stream, &written, "P%d %d %d %d\n", plain_form + (raw ? raw_forms : 0), cols, samples.nrow,
                   maximum));
  }
  TRY(checkpoint(intrp_ptr).add(character_cost * static_cast<double>(written)));
  return raw ? matuniv_write_raw(stream, &samples, most_significant_first, intrp_ptr)
             : matuniv_write_ascii(stream, &samples, text_separator, text_line, intrp_ptr);
}

// The planes side by side, whatever dimensions the caller's set has.
template <class M>
code write_colour(FILE* stream, const _mat_set& image, std::uint8_t plain, void* intrp_ptr) {
  const _univ_mat& first = image.mats[0];
  for (std::int32_t k = 0; k < planes; ++k) TRY(matuniv_validate(image.mats + k));
  temporary<M> interleaved;
  TRY(interleaved.make(first.nrow, std::int64_t{first.ncol} * planes));
  _univ_mat samples = universal<M>(interleaved);
  std::int32_t side_by_side = planes;
  const _mat_set row_of_planes = {1, &side_by_side, planes, image.mats};
  TRY(matset_tile(&row_of_planes, intrp_ptr, &samples));
  return write_samples<M>(stream, samples, plain_colour, first.ncol, plain, intrp_ptr);
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code imguniv_write_pgm(FILE* stream, const _univ_mat* image, uint8_t plain, void* intrp_ptr) {
  if (!stream || !image) return KORVO_ERR_NULL_POINTER;
  return dispatch(image->type, sample_records{}, [&]<class M> {
    return write_samples<M>(stream, *image, plain_grey, image->ncol, plain, intrp_ptr);
  });
}

code imgset_write_ppm(FILE* stream, const _mat_set* image, uint8_t plain, void* intrp_ptr) {
  if (!stream) return KORVO_ERR_NULL_POINTER;
  TRY(matset_verify_allsame(image));
  if (image->nmat != planes) return KORVO_ERR_ILLEGAL_SIZE;
  return dispatch(image->mats[0].type, sample_records{},
                  [&]<class M> { return write_colour<M>(stream, *image, plain, intrp_ptr); });
}

// A type that has no bits is refused only once the header is out: the order is fixed, but for cpx.
code imguniv_write_pbm(FILE* stream, const _univ_mat* image, double threshold, uint8_t plain, void* intrp_ptr) {
  if (!stream || !image) return KORVO_ERR_NULL_POINTER;
  if (image->type == KORVO_DCOMPLEX) return KORVO_ERR_ILLEGAL_TYPE;
  std::int64_t written = 0;
  {
    text_guard guard;
    TRY(guard.enter(stream));
    TRY(write_text(stream, &written, "P%d %d %d\n", plain_bits + (plain != 0 ? 0 : raw_forms), image->ncol,
                   image->nrow));
  }
  return imguniv_write_to_bits(stream, image, threshold, plain != 0 ? 0 : 1, text_separator, text_line,
                               intrp_ptr);
}

code imguniv_read_pgm(FILE* stream, void* intrp_ptr, _univ_mat* image) {
  if (!image) return KORVO_ERR_NULL_POINTER;
  *image = {};
  header h;
  TRY(read_header(
      stream, [](std::int32_t form) { return form == plain_bits || form == plain_grey; }, &h));
  return dispatch(h.type, sample_records{}, [&]<class M> { return read_grey<M>(stream, h, intrp_ptr, image); });
}

code imgset_read_ppm(FILE* stream, void* intrp_ptr, _mat_set* image) {
  if (!image) return KORVO_ERR_NULL_POINTER;
  *image = {};
  header h;
  TRY(read_header(
      stream, [](std::int32_t form) { return form == plain_colour; }, &h));
  return dispatch(h.type, sample_records{},
                  [&]<class M> { return read_colour<M>(stream, h, intrp_ptr, image); });
}

}  // extern "C"

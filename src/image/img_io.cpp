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

// Colour

// The samples of a colour image, interleaved, a strip of rows at a time: a strip stays in the cache, where a
// matrix of all of them would cost more than moving them does. Planes are taken side by side whatever
// dimensions their set has.
template <class M>
class strips {
 public:
  // Of so many samples, or of a row if that is more; or a single strip of them all.
  [[nodiscard]] code make(const _univ_mat& plane, bool single = false) {
    constexpr std::int64_t strip_samples = 1 << 16;
    const std::int64_t row = std::int64_t{plane.ncol} * planes;
    const std::int64_t rows = std::clamp<std::int64_t>(strip_samples / row, 1, plane.nrow);
    return buffer_.make(single ? plane.nrow : rows, row);
  }

  // Calls move(piece, samples) for each strip: a set of rows of the planes, and the matrix they interleave to.
  template <class F>
  [[nodiscard]] code each(const _mat_set& image, F move) {
    const std::int64_t rows = image.mats[0].nrow;
    for (std::int64_t first = 0; first < rows; first += buffer_.nrow) {
      const auto count = static_cast<std::int32_t>(std::min<std::int64_t>(buffer_.nrow, rows - first));
      _univ_mat members[planes];
      for (std::int32_t k = 0; k < planes; ++k) members[k] = rows_of(as<M>(image.mats[k]), first, count);
      std::int32_t side_by_side = planes;
      _mat_set piece = {1, &side_by_side, planes, members};
      _univ_mat samples = rows_of(buffer_, 0, count);
      TRY(move(&piece, &samples));
    }
    return KORVO_ERR_OK;
  }

 private:
  static _univ_mat rows_of(const M& mat, std::int64_t first, std::int32_t count) {
    return {count, mat.ncol, count * mat.ncol, mat.data + first * mat.ncol, tag<M>::type};
  }

  temporary<M> buffer_;
};

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
  if (h->magic < plain_bits || !is_read(h->plain_form())) return KORVO_ERR_ILLEGAL_VALUE;
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

template <class M>
code read_planes(FILE* stream, const header& h, void* intrp_ptr, const _mat_set& image) {
  strips<M> interleaved;
  TRY(interleaved.make(image.mats[0]));
  return interleaved.each(image, [&](_mat_set* piece, _univ_mat* samples) {
    TRY(read_samples(stream, h, intrp_ptr, samples));
    return matset_untile(samples, intrp_ptr, piece);
  });
}

// After a failure nothing of the set stays.
template <class M>
code read_colour(FILE* stream, const header& h, void* intrp_ptr, _mat_set* image) {
  TRY(affordable(h, planes, sizeof(element<M>)));
  TRY(matset_malloc(image, 1, &planes));
  code result = matset_malloc_matrices(image, h.rows, h.cols, tag<M>::type);
  if (result == KORVO_ERR_OK) {
    result = read_planes<M>(stream, h, intrp_ptr, *image);
    if (result != KORVO_ERR_OK) (void)matset_free_matrices(image);
  }
  if (result != KORVO_ERR_OK) (void)matset_free(image);
  return result;
}

// Writing

// How the samples of an image are to be written.
template <class M>
struct sample_form {
  sample_form(magic_number plain_form, std::uint8_t plain)
      : raw(tag<M>::type == KORVO_UINT8 && plain == 0), magic(plain_form + (raw ? raw_forms : 0)) {}

  bool raw;
  std::int32_t magic;
  element<M> maximum{};  // of the planes that have been looked at

  code look_at(const _univ_mat& plane, void* intrp_ptr) {
    _univ_scalar least{};
    _univ_scalar greatest{};
    TRY(matuniv_range(&plane, intrp_ptr, &least, &greatest));
    maximum = std::max(maximum, number<M>(greatest));
    return KORVO_ERR_OK;
  }

  code write_header(FILE* stream, const _univ_mat& plane, void* intrp_ptr) const {
    const auto signed_maximum = static_cast<std::int32_t>(maximum);  // u32 too: kept so
    std::int64_t written = 0;
    {
      text_guard guard;
      TRY(guard.enter(stream));
      TRY(write_text(stream, &written, "P%d %d %d %d\n", magic, plane.ncol, plane.nrow, signed_maximum));
    }
    return checkpoint(intrp_ptr).add(character_cost * static_cast<double>(written));
  }

  code write_samples(FILE* stream, const _univ_mat* samples, void* intrp_ptr) const {
    return raw ? matuniv_write_raw(stream, samples, most_significant_first, intrp_ptr)
               : matuniv_write_ascii(stream, samples, text_separator, text_line, intrp_ptr);
  }
};

template <class M>
code write_grey(FILE* stream, const _univ_mat& image, std::uint8_t plain, void* intrp_ptr) {
  sample_form<M> form(plain_grey, plain);
  TRY(form.look_at(image, intrp_ptr));
  TRY(form.write_header(stream, image, intrp_ptr));
  return form.write_samples(stream, &image, intrp_ptr);
}

template <class M>
code write_colour(FILE* stream, const _mat_set& image, std::uint8_t plain, void* intrp_ptr) {
  for (std::int32_t k = 0; k < planes; ++k) TRY(matuniv_validate(image.mats + k));
  sample_form<M> form(plain_colour, plain);
  strips<M> interleaved;
  TRY(interleaved.make(image.mats[0], !form.raw));  // text is one list
  for (std::int32_t k = 0; k < planes; ++k) TRY(form.look_at(image.mats[k], intrp_ptr));
  TRY(form.write_header(stream, image.mats[0], intrp_ptr));
  return interleaved.each(image, [&](_mat_set* piece, _univ_mat* samples) {
    TRY(matset_tile(piece, intrp_ptr, samples));
    return form.write_samples(stream, samples, intrp_ptr);
  });
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code imguniv_write_pgm(FILE* stream, const _univ_mat* image, uint8_t plain, void* intrp_ptr) {
  if (!stream || !image) return KORVO_ERR_NULL_POINTER;
  return dispatch(image->type, sample_records{},
                  [&]<class M> { return write_grey<M>(stream, *image, plain, intrp_ptr); });
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

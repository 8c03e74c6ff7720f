// One-bit images without a header: write_to_bits, read_from_bits.
#include <algorithm>
#include <cstdint>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/temporary.hpp"
#include "korvos/image/img_io.h"
#include "korvos/image/img_pttr.h"
#include "korvos/matrix/mat_io.h"
#include "matrix/text.hpp"

namespace korvo {
namespace {

// The bits of a byte are complemented, and with them those that no pixel uses.
void pack(const _u8_mat& pixels, std::uint8_t* packed) {
  for (std::int64_t first = 0; first < pixels.nelem; first += 8) {
    const auto count = std::min<std::int64_t>(8, pixels.nelem - first);
    unsigned byte = 0;
    for (std::int64_t j = 0; j < count; ++j) byte |= (pixels.data[first + j] != 0 ? 0x80U : 0U) >> j;
    packed[first / 8] = static_cast<std::uint8_t>(~byte);
  }
}

void unpack(const std::uint8_t* packed, const _u8_mat& bits) {
  for (std::int64_t first = 0; first < bits.nelem; first += 8) {
    const auto count = std::min<std::int64_t>(8, bits.nelem - first);
    for (std::int64_t j = 0; j < count; ++j)
      bits.data[first + j] = static_cast<std::uint8_t>(packed[first / 8] >> (7 - j) & 1);
  }
}

code make_packed(std::int64_t nelem, temporary<_u8_mat>* packed) { return packed->make((nelem + 7) / 8, 1); }

// Frees the pixels, which are as many bytes as there are bits, before the bits go out.
code write_packed(FILE* stream, _u8_mat* pixels, void* intrp_ptr) {
  checkpoint cost(intrp_ptr);
  temporary<_u8_mat> packed;
  TRY(make_packed(pixels->nelem, &packed));
  pack(*pixels, packed.data);
  TRY(cost.add(5.0 * pixels->nelem));
  TRY(matu8_free(pixels));
  TRY(matu8_write_raw(stream, &packed, intrp_ptr));
  return cost.test();
}

code read_packed(FILE* stream, std::int32_t skip, void* intrp_ptr, const _u8_mat& bits) {
  temporary<_u8_mat> packed;
  TRY(make_packed(bits.nelem, &packed));
  TRY(matu8_read_raw(stream, skip, intrp_ptr, &packed));
  unpack(packed.data, bits);
  return KORVO_ERR_OK;
}

template <class M>
void place(const _u8_mat& bits, element<M> zero_bit, const M& image) {
  std::transform(bits.data, bits.data + bits.nelem, image.data,
                 [=](std::uint8_t bit) { return bit == 0 ? zero_bit : element<M>{}; });
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code imguniv_write_to_bits(FILE* stream, const _univ_mat* image, double threshold, uint8_t raw,
                           const char* separator, uint16_t line_length, void* intrp_ptr) {
  if (!stream || !image) return KORVO_ERR_NULL_POINTER;
  temporary<_u8_mat> pixels;
  TRY(pixels.make(image->nrow, image->ncol));
  _univ_mat two_values = {pixels.nrow, pixels.ncol, pixels.nelem, pixels.data, KORVO_UINT8};
  TRY(imguniv_map_window_level(image, threshold, threshold, intrp_ptr, &two_values));
  if (raw != 0) return write_packed(stream, &pixels, intrp_ptr);
  text_guard guard;
  TRY(guard.enter(stream));
  const list_lines lines = {separator, line_length, 1};
  return write_list(stream, pixels.nelem, lines, intrp_ptr, [&](char* to, std::int32_t i) {
    *to = pixels.data[i] == 0 ? '1' : '0';
    return 1;
  });
}

code imguniv_read_from_bits(FILE* stream, _univ_scalar zero_bit, uint8_t raw, int32_t skip, char delimiter,
                            char comment, void* intrp_ptr, _univ_mat* image) {
  TRY(matuniv_validate(image));
  if (!stream) return KORVO_ERR_NULL_POINTER;
  if (raw != 0 && skip < 0) return KORVO_ERR_ILLEGAL_VALUE;
  if (zero_bit.type != image->type) return KORVO_ERR_ILLEGAL_TYPE;
  temporary<_u8_mat> bits;
  TRY(bits.make(image->nrow, image->ncol));
  if (raw != 0)
    TRY(read_packed(stream, skip, intrp_ptr, bits));
  else
    TRY(matu8_read_ascii(stream, delimiter, comment, intrp_ptr, &bits));
  checkpoint cost(intrp_ptr);
  TRY(cost.add((raw != 0 ? 5.0 : character_cost) * image->nelem));
  TRY(dispatch(image->type, records<_u8_mat, _u16_mat, _u32_mat, _dbl_mat>{}, [&]<class M> {
    place<M>(bits, number<M>(zero_bit), as<M>(*image));
    return KORVO_ERR_OK;
  }));
  return cost.add(image->nelem);
}

}  // extern "C"

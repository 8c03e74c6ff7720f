// Matrices as raw binary: write_raw, read_raw.
#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <type_traits>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"
#include "korvos/matrix/mat_io.h"
#include "matrix/text.hpp"

namespace korvo {
namespace {

constexpr double byte_cost = 1000.0;
constexpr double element_cost = 2.0;

// The elements as bits: a floating value whose bytes are out of order must not pass through a register as one.
template <class T>
using bits = std::conditional_t<sizeof(T) == 2, std::uint16_t,
                                std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>>;

inline std::uint16_t reversed(std::uint16_t x) { return __builtin_bswap16(x); }
inline std::uint32_t reversed(std::uint32_t x) { return __builtin_bswap32(x); }
inline std::uint64_t reversed(std::uint64_t x) { return __builtin_bswap64(x); }

// Between the order of this machine and that of the file, either way.
template <class B>
void put_in_order(B* block, std::int32_t count, std::uint8_t big_endian) {
  const bool is_in_order = (big_endian != 0) == (std::endian::native == std::endian::big);
  if (!is_in_order) std::transform(block, block + count, block, [](B x) { return reversed(x); });
}

template <class M>
constexpr bool has_single_bytes = sizeof(element<M>) == 1;

template <class M>
std::size_t size_of_data(const M* mat) {
  return static_cast<std::size_t>(mat->nelem) * sizeof(element<M>);
}

template <class M>
code write_raw(FILE* stream, const M* mat, [[maybe_unused]] std::uint8_t big_endian, void* intrp_ptr) {
  if (!stream) return KORVO_ERR_NULL_POINTER;
  TRY(valid(mat));
  if constexpr (has_single_bytes<M>) {
    TRY(write_block(stream, mat->data, size_of_data(mat)));
    return checkpoint(intrp_ptr).add(byte_cost * mat->nelem);
  } else {
    scratch<bits<element<M>>> block;
    TRY(block.make(mat->nelem));
    std::memcpy(block.data(), mat->data, size_of_data(mat));
    put_in_order(block.data(), mat->nelem, big_endian);
    TRY(write_block(stream, block.data(), size_of_data(mat)));
    return checkpoint(intrp_ptr).add(byte_cost * static_cast<double>(size_of_data(mat)) +
                                     element_cost * mat->nelem);
  }
}

template <class M>
code read_raw(FILE* stream, std::int32_t skip, [[maybe_unused]] std::uint8_t big_endian, void* intrp_ptr,
              M* mat) {
  TRY(valid(mat));
  if (!stream) return KORVO_ERR_NULL_POINTER;
  if (skip < 0) return KORVO_ERR_ILLEGAL_VALUE;
  if (skip != 0 && std::fseek(stream, skip, SEEK_CUR) != 0) return KORVO_ERR_IO;
  const double reading_cost = byte_cost * (static_cast<double>(size_of_data(mat)) + skip);
  if constexpr (has_single_bytes<M>) {
    TRY(read_block(stream, mat->data, size_of_data(mat)));
    return checkpoint(intrp_ptr).add(reading_cost);
  } else {
    scratch<bits<element<M>>> block;
    TRY(block.make(mat->nelem));
    TRY(read_block(stream, block.data(), size_of_data(mat)));
    checkpoint cost(intrp_ptr);
    TRY(cost.add(reading_cost));
    put_in_order(block.data(), mat->nelem, big_endian);
    std::memcpy(mat->data, block.data(), size_of_data(mat));
    return cost.add(element_cost * mat->nelem);
  }
}

}  // namespace
}  // namespace korvo

using namespace korvo;

#define WRITE_RAW(name, M)                                                     \
  code name(FILE* stream, const M* mat, uint8_t big_endian, void* intrp_ptr) { \
    return write_raw(stream, mat, big_endian, intrp_ptr);                      \
  }
#define READ_RAW(name, M)                                                              \
  code name(FILE* stream, int32_t skip, uint8_t big_endian, void* intrp_ptr, M* mat) { \
    return read_raw(stream, skip, big_endian, intrp_ptr, mat);                         \
  }

extern "C" {

code matu8_write_raw(FILE* stream, const _u8_mat* mat, void* intrp_ptr) {
  return write_raw(stream, mat, 0, intrp_ptr);
}
WRITE_RAW(matu16_write_raw, _u16_mat)
WRITE_RAW(matu32_write_raw, _u32_mat)
WRITE_RAW(mats16_write_raw, _s16_mat)
WRITE_RAW(mats32_write_raw, _s32_mat)
WRITE_RAW(matflt_write_raw, _flt_mat)
WRITE_RAW(matdbl_write_raw, _dbl_mat)

code matuniv_write_raw(FILE* stream, const _univ_mat* mat, uint8_t big_endian, void* intrp_ptr) {
  if (!mat) return KORVO_ERR_NULL_POINTER;
  return dispatch(mat->type, real_records{}, [&]<class M> {
    const M typed = as<M>(*mat);
    return write_raw(stream, &typed, big_endian, intrp_ptr);
  });
}

code matu8_read_raw(FILE* stream, int32_t skip, void* intrp_ptr, _u8_mat* mat) {
  return read_raw(stream, skip, 0, intrp_ptr, mat);
}
READ_RAW(matu16_read_raw, _u16_mat)
READ_RAW(matu32_read_raw, _u32_mat)
READ_RAW(mats16_read_raw, _s16_mat)
READ_RAW(mats32_read_raw, _s32_mat)
READ_RAW(matflt_read_raw, _flt_mat)
READ_RAW(matdbl_read_raw, _dbl_mat)

code matuniv_read_raw(FILE* stream, int32_t skip, uint8_t big_endian, void* intrp_ptr, _univ_mat* mat) {
  if (!mat) return KORVO_ERR_NULL_POINTER;
  return dispatch(mat->type, real_records{}, [&]<class M> {
    M typed = as<M>(*mat);
    return read_raw(stream, skip, big_endian, intrp_ptr, &typed);
  });
}

}  // extern "C"

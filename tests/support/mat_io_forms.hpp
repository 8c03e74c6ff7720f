// The exported routines of matrix files, by record, and what they write and give.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <type_traits>

#include "core/code.hpp"
#include "korvos/core/ut_alloc.h"
#include "korvos/matrix/mat_io.h"
#include "tests/support/stream.hpp"

namespace korvo {

// The exported forms of a type; the raw forms of u8 are given the flag that they lack.
template <class M>
struct mat_io_forms;
#define MAT_IO_FORMS(M, mat, write_raw_, read_raw_)         \
  template <>                                               \
  struct mat_io_forms<M> {                                  \
    static constexpr auto* print = mat##_print;             \
    static constexpr auto* parse = mat##_parse;             \
    static constexpr auto* write_ascii = mat##_write_ascii; \
    static constexpr auto* read_ascii = mat##_read_ascii;   \
    static constexpr auto* write_raw = write_raw_;          \
    static constexpr auto* read_raw = read_raw_;            \
  };
inline code write_u8(FILE* stream, const _u8_mat* mat, std::uint8_t, void* host) {
  return matu8_write_raw(stream, mat, host);
}
inline code read_u8(FILE* stream, std::int32_t skip, std::uint8_t, void* host, _u8_mat* mat) {
  return matu8_read_raw(stream, skip, host, mat);
}
MAT_IO_FORMS(_u8_mat, matu8, write_u8, read_u8)
MAT_IO_FORMS(_u16_mat, matu16, matu16_write_raw, matu16_read_raw)
MAT_IO_FORMS(_u32_mat, matu32, matu32_write_raw, matu32_read_raw)
MAT_IO_FORMS(_s16_mat, mats16, mats16_write_raw, mats16_read_raw)
MAT_IO_FORMS(_s32_mat, mats32, mats32_write_raw, mats32_read_raw)
MAT_IO_FORMS(_flt_mat, matflt, matflt_write_raw, matflt_read_raw)
MAT_IO_FORMS(_dbl_mat, matdbl, matdbl_write_raw, matdbl_read_raw)
#undef MAT_IO_FORMS

// A matrix that a reader makes.
template <class M>
struct made : M {
  made() : M{} {}
  made(const made&) = delete;
  made& operator=(const made&) = delete;
  ~made() { (void)korvo_free(this->data); }
};

// What a routine writes with these arguments, and the code that it gives on a file.
template <class... P>
std::string text_of(code (*form)(FILE*, P...), std::type_identity_t<P>... arguments) {
  fault_stream stream;
  EXPECT_EQ(form(stream.get(), arguments...), KORVO_ERR_OK);
  return stream.text();
}
template <class... P>
code result_on(const std::string& file, code (*form)(FILE*, P...), std::type_identity_t<P>... arguments) {
  fault_stream stream(file);
  return form(stream.get(), arguments...);
}

template <class M>
bool same_elements(const M& a, const M& b) {
  return a.nrow == b.nrow && a.ncol == b.ncol && a.data && b.data &&
         std::memcmp(a.data, b.data, static_cast<std::size_t>(a.nelem) * sizeof *a.data) == 0;
}

}  // namespace korvo

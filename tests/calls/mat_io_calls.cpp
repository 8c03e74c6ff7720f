#include "korvos/matrix/mat_io.h"
#include "tests/calls/calls.hpp"

namespace {

// What a matrix of each type looks like printed; the universal form gets a double one.
template <class M>
constexpr const char* word = "double";
template <>
constexpr const char* word<_u8_mat> = "uint8";
template <>
constexpr const char* word<_u16_mat> = "uint16";
template <>
constexpr const char* word<_u32_mat> = "uint32";
template <>
constexpr const char* word<_s16_mat> = "sint16";
template <>
constexpr const char* word<_s32_mat> = "sint32";
template <>
constexpr const char* word<_flt_mat> = "float";

std::string printed(const std::string& type_word) {
  return type_word + " Matrix: nrow=3, ncol=2  {\n    Row[0]:  1 2\n    Row[1]:  3 4\n    Row[2]:  5 6\n}\n";
}

std::string list_of(int count, const std::string& separator) {
  std::string list;
  for (int i = 0; i < count; ++i) list += std::to_string(i) + separator;
  return list;
}

template <class M>
call_row print_row(std::string name, _korvo_errcode (*f)(FILE*, const M*, const char*, std::int32_t, void*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            FILE* const stream = s.writing();
            const M* const mat = matrix_in<M>(s);
            return [=](void* intrp_ptr) { return f(stream, mat, nullptr, 30, intrp_ptr); };
          }};
}

template <class M>
call_row parse_row(std::string name, _korvo_errcode (*f)(FILE*, void*, M*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            FILE* const stream = s.reading(printed(word<M>));
            M* const mat = s.allocated<M>();
            return [=](void* intrp_ptr) { return f(stream, intrp_ptr, mat); };
          }};
}

template <class M>
call_row write_ascii_row(std::string name,
                         _korvo_errcode (*f)(FILE*, const M*, const char*, std::uint16_t, void*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            FILE* const stream = s.writing();
            const M* const mat = matrix_in<M>(s);
            return [=](void* intrp_ptr) { return f(stream, mat, ", ", 40, intrp_ptr); };
          }};
}

template <class M>
call_row read_ascii_row(std::string name, _korvo_errcode (*f)(FILE*, char, char, void*, M*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            FILE* const stream = s.reading(list_of(call_size * call_size, " ; # remark\n"));
            M* const mat = matrix_out<M>(s);
            return [=](void* intrp_ptr) { return f(stream, ';', '#', intrp_ptr, mat); };
          }};
}

template <class M>
call_row write_raw_row(std::string name, _korvo_errcode (*f)(FILE*, const M*, std::uint8_t, void*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            FILE* const stream = s.writing();
            const M* const mat = matrix_in<M>(s);
            return [=](void* intrp_ptr) { return f(stream, mat, 1, intrp_ptr); };
          }};
}
call_row write_raw_row(std::string name, _korvo_errcode (*f)(FILE*, const _u8_mat*, void*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            FILE* const stream = s.writing();
            const _u8_mat* const mat = matrix_in<_u8_mat>(s);
            return [=](void* intrp_ptr) { return f(stream, mat, intrp_ptr); };
          }};
}

// Seven bytes that are skipped, and elements of up to eight bytes.
const std::string raw_bytes =
    list_of(call_size * call_size, " and ") + std::string(call_size * call_size * 8, '?');

template <class M>
call_row read_raw_row(std::string name, _korvo_errcode (*f)(FILE*, std::int32_t, std::uint8_t, void*, M*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            FILE* const stream = s.reading(raw_bytes);
            M* const mat = matrix_out<M>(s);
            return [=](void* intrp_ptr) { return f(stream, 7, 1, intrp_ptr, mat); };
          }};
}
call_row read_raw_row(std::string name, _korvo_errcode (*f)(FILE*, std::int32_t, void*, _u8_mat*)) {
  return {std::move(name), [f](scene& s) -> ready_call {
            FILE* const stream = s.reading(raw_bytes);
            _u8_mat* const mat = matrix_out<_u8_mat>(s);
            return [=](void* intrp_ptr) { return f(stream, 7, intrp_ptr, mat); };
          }};
}

#define PRINT(name) print_row(#name, &name)
#define PARSE(name) parse_row(#name, &name)
#define WRITE_ASCII(name) write_ascii_row(#name, &name)
#define READ_ASCII(name) read_ascii_row(#name, &name)
#define WRITE_RAW(name) write_raw_row(#name, &name)
#define READ_RAW(name) read_raw_row(#name, &name)

}  // namespace

call_rows mat_io_calls() {
  return {
      PRINT(matu8_print),
      PRINT(matu16_print),
      PRINT(matu32_print),
      PRINT(mats16_print),
      PRINT(mats32_print),
      PRINT(matflt_print),
      PRINT(matdbl_print),
      PRINT(matuniv_print),
      PARSE(matu8_parse),
      PARSE(matu16_parse),
      PARSE(matu32_parse),
      PARSE(mats16_parse),
      PARSE(mats32_parse),
      PARSE(matflt_parse),
      PARSE(matdbl_parse),
      PARSE(matuniv_parse),
      WRITE_ASCII(matu8_write_ascii),
      WRITE_ASCII(matu16_write_ascii),
      WRITE_ASCII(matu32_write_ascii),
      WRITE_ASCII(mats16_write_ascii),
      WRITE_ASCII(mats32_write_ascii),
      WRITE_ASCII(matflt_write_ascii),
      WRITE_ASCII(matdbl_write_ascii),
      WRITE_ASCII(matuniv_write_ascii),
      READ_ASCII(matu8_read_ascii),
      READ_ASCII(matu16_read_ascii),
      READ_ASCII(matu32_read_ascii),
      READ_ASCII(mats16_read_ascii),
      READ_ASCII(mats32_read_ascii),
      READ_ASCII(matflt_read_ascii),
      READ_ASCII(matdbl_read_ascii),
      READ_ASCII(matuniv_read_ascii),
      WRITE_RAW(matu8_write_raw),
      WRITE_RAW(matu16_write_raw),
      WRITE_RAW(matu32_write_raw),
      WRITE_RAW(mats16_write_raw),
      WRITE_RAW(mats32_write_raw),
      WRITE_RAW(matflt_write_raw),
      WRITE_RAW(matdbl_write_raw),
      WRITE_RAW(matuniv_write_raw),
      READ_RAW(matu8_read_raw),
      READ_RAW(matu16_read_raw),
      READ_RAW(matu32_read_raw),
      READ_RAW(mats16_read_raw),
      READ_RAW(mats32_read_raw),
      READ_RAW(matflt_read_raw),
      READ_RAW(matdbl_read_raw),
      READ_RAW(matuniv_read_raw),
  };
}

// Matrices: malloc, realloc, free, validate, wrap_data, wrap_matrix.
#include "korvos/core/mat_univ.h"

#include <cstdint>
#include <cstring>

#include "core/arithmetic.hpp"
#include "core/dispatch.hpp"
#include "core/valid.hpp"
#include "korvos/core/ut_alloc.h"

namespace korvo {
namespace {

template <class M>
void set_shape(M* mat, std::int32_t nrow, std::int32_t ncol) {
  mat->nrow = nrow;
  mat->ncol = ncol;
  mat->nelem = product(nrow, ncol);
}

// Plain 32 bits, as hosts know it: a count that wraps to 0 or below is the allocator's to refuse.
template <class T>
std::int32_t byte_count(std::int32_t nelem) {
  return product(nelem, static_cast<std::int32_t>(sizeof(T)));
}

// Makes a typed record, or a universal one, a matrix of T. A byte count that is refused leaves `data` as it
// was.
template <class T, class M>
code malloc_matrix(M* mat, std::int32_t nrow, std::int32_t ncol) {
  if (!mat) return KORVO_ERR_NULL_POINTER;
  if (nrow < 1 || ncol < 1) return KORVO_ERR_ILLEGAL_SIZE;
  set_shape(mat, nrow, ncol);
  void* buffer = nullptr;
  const code result = korvo_malloc(byte_count<T>(mat->nelem), &buffer);
  if (result != KORVO_ERR_ILLEGAL_VALUE) mat->data = static_cast<decltype(mat->data)>(buffer);
  return result;
}

// The record states the new size before the allocator is asked, and keeps it if that fails: hosts rely on it.
template <class M>
code realloc_matrix(M* mat, std::int32_t nrow, std::int32_t ncol) {
  TRY(valid(mat));
  if (nrow < 1 || ncol < 1) return KORVO_ERR_ILLEGAL_SIZE;
  set_shape(mat, nrow, ncol);
  void* buffer = mat->data;
  const code result = korvo_realloc(&buffer, byte_count<element<M>>(mat->nelem));
  mat->data = static_cast<element<M>*>(buffer);
  return result;
}

template <class M>
code free_matrix(M* mat) {
  if (!mat || !mat->data) return KORVO_ERR_OK;
  (void)korvo_free(mat->data);
  mat->data = nullptr;
  return KORVO_ERR_OK;
}

template <class M>
code wrap_matrix(M* mat, element<M>* data, std::int32_t nrow, std::int32_t ncol) {
  if (!mat) return KORVO_ERR_NULL_POINTER;
  set_shape(mat, nrow, ncol);
  mat->data = data;
  return valid(mat);
}

// Wrapping takes every value of the enumeration, KORVO_SINT8 too: the one place where it and malloc disagree
// on what a type is, and on the code for what is none.
bool can_be_wrapped(_korvo_type type) { return type >= KORVO_UINT8 && type <= KORVO_DCOMPLEX; }

// Runs change on the typed record and hands the changed fields back.
template <class F>
code change(_univ_mat* mat, F form) {
  return dispatch(mat->type, all_records{}, [&]<class M> {
    M typed = as<M>(*mat);
    const code result = form(&typed);
    give_back(typed, mat);
    return result;
  });
}

}  // namespace
}  // namespace korvo

using namespace korvo;

#define MALLOC(name, M) \
  code name(M* mat, int32_t nrow, int32_t ncol) { return malloc_matrix<element<M>>(mat, nrow, ncol); }
#define REALLOC(name, M) \
  code name(M* mat, int32_t nrow, int32_t ncol) { return realloc_matrix(mat, nrow, ncol); }
#define FREE(name, M) \
  code name(M* mat) { return free_matrix(mat); }
#define VALIDATE(name, M) \
  code name(const M* mat) { return valid(mat); }
#define WRAP(name, M, T) \
  code name(M* mat, T* data, int32_t nrow, int32_t ncol) { return wrap_matrix(mat, data, nrow, ncol); }

extern "C" {

MALLOC(matu8_malloc, _u8_mat)
MALLOC(matu16_malloc, _u16_mat)
MALLOC(matu32_malloc, _u32_mat)
MALLOC(mats16_malloc, _s16_mat)
MALLOC(mats32_malloc, _s32_mat)
MALLOC(matflt_malloc, _flt_mat)
MALLOC(matdbl_malloc, _dbl_mat)
MALLOC(matcpx_malloc, _cpx_mat)

REALLOC(matu8_realloc, _u8_mat)
REALLOC(matu16_realloc, _u16_mat)
REALLOC(matu32_realloc, _u32_mat)
REALLOC(mats16_realloc, _s16_mat)
REALLOC(mats32_realloc, _s32_mat)
REALLOC(matflt_realloc, _flt_mat)
REALLOC(matdbl_realloc, _dbl_mat)
REALLOC(matcpx_realloc, _cpx_mat)

FREE(matu8_free, _u8_mat)
FREE(matu16_free, _u16_mat)
FREE(matu32_free, _u32_mat)
FREE(mats16_free, _s16_mat)
FREE(mats32_free, _s32_mat)
FREE(matflt_free, _flt_mat)
FREE(matdbl_free, _dbl_mat)
FREE(matcpx_free, _cpx_mat)

VALIDATE(matu8_validate, _u8_mat)
VALIDATE(matu16_validate, _u16_mat)
VALIDATE(matu32_validate, _u32_mat)
VALIDATE(mats16_validate, _s16_mat)
VALIDATE(mats32_validate, _s32_mat)
VALIDATE(matflt_validate, _flt_mat)
VALIDATE(matdbl_validate, _dbl_mat)
VALIDATE(matcpx_validate, _cpx_mat)

WRAP(matu8_wrap_data, _u8_mat, uint8_t)
WRAP(matu16_wrap_data, _u16_mat, uint16_t)
WRAP(matu32_wrap_data, _u32_mat, uint32_t)
WRAP(mats16_wrap_data, _s16_mat, int16_t)
WRAP(mats32_wrap_data, _s32_mat, int32_t)
WRAP(matflt_wrap_data, _flt_mat, float)
WRAP(matdbl_wrap_data, _dbl_mat, double)

code matuniv_malloc(_univ_mat* mat, int32_t nrow, int32_t ncol, _korvo_type type) {
  if (!mat) return KORVO_ERR_NULL_POINTER;
  mat->type = type;
  return dispatch(type, all_records{}, [&]<class M> { return malloc_matrix<element<M>>(mat, nrow, ncol); });
}

code matuniv_realloc(_univ_mat* mat, int32_t nrow, int32_t ncol) {
  if (!mat) return KORVO_ERR_NULL_POINTER;
  return change(mat, [&](auto* typed) { return realloc_matrix(typed, nrow, ncol); });
}

code matuniv_free(_univ_mat* mat) {
  if (!mat) return KORVO_ERR_OK;
  return change(mat, [](auto* typed) { return free_matrix(typed); });
}

code matuniv_validate(const _univ_mat* mat) {
  if (!mat) return KORVO_ERR_NULL_POINTER;
  return dispatch(mat->type, all_records{}, [&]<class M> {
    const M typed = as<M>(*mat);
    return valid(&typed);
  });
}

code matuniv_wrap_data(_univ_mat* mat, void* data, int32_t nrow, int32_t ncol, _korvo_type type) {
  if (!mat || !data) return KORVO_ERR_NULL_POINTER;
  mat->type = type;
  if (!can_be_wrapped(type)) return KORVO_ERR_ILLEGAL_VALUE;
  mat->data = data;
  set_shape(mat, nrow, ncol);  // the sizes are not looked at: validation does that
  return KORVO_ERR_OK;
}

code matuniv_wrap_matrix(_univ_mat* mat, const void* typed, _korvo_type type) {
  if (!mat || !typed) return KORVO_ERR_NULL_POINTER;
  mat->type = type;
  if (!can_be_wrapped(type)) return KORVO_ERR_ILLEGAL_VALUE;
  _u8_mat fields;  // all records have these four at the same places
  std::memcpy(&fields, typed, sizeof fields);
  give_back(fields, mat);
  return KORVO_ERR_OK;
}

}  // extern "C"

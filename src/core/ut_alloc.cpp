// The allocator: the process heap behind return codes.
#include "korvos/core/ut_alloc.h"

#include <cstdlib>

extern "C" {

_korvo_errcode korvo_malloc(int32_t nbytes, void** ptr) {
  if (!ptr) return KORVO_ERR_NULL_POINTER;
  if (nbytes <= 0) return KORVO_ERR_ILLEGAL_VALUE;
  *ptr = std::malloc(static_cast<std::size_t>(nbytes));
  return *ptr ? KORVO_ERR_OK : KORVO_ERR_MALLOC;
}

_korvo_errcode korvo_calloc(int32_t count, size_t element_size, void** ptr) {
  if (!ptr) return KORVO_ERR_NULL_POINTER;
  if (count <= 0 || element_size == 0) return KORVO_ERR_ILLEGAL_VALUE;
  *ptr = std::calloc(static_cast<std::size_t>(count), element_size);
  return *ptr ? KORVO_ERR_OK : KORVO_ERR_MALLOC;
}

_korvo_errcode korvo_realloc(void** ptr, int32_t nbytes) {
  if (nbytes <= 0) return KORVO_ERR_ILLEGAL_VALUE;
  if (!ptr) return KORVO_ERR_NULL_POINTER;
  void* const moved = std::realloc(*ptr, static_cast<std::size_t>(nbytes));
  if (!moved) return KORVO_ERR_MALLOC;
  *ptr = moved;
  return KORVO_ERR_OK;
}

_korvo_errcode korvo_free(void* ptr) {
  std::free(ptr);
  return KORVO_ERR_OK;
}

}  // extern "C"

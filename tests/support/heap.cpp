#include "tests/support/heap.hpp"

#include <climits>
#include <cstddef>

namespace {

thread_local int live = 0;
thread_local int made = 0;
thread_local int first_failing = INT_MAX;
thread_local bool fail_after = false;

bool refused() { return ++made == first_failing || (fail_after && made > first_failing); }

// What an allocator gave, or would not give.
void* counted(void* block) {
  live += block ? 1 : 0;
  return block;
}

}  // namespace

namespace heap {

int live_blocks() { return live; }
int allocations() { return made; }
void fail_at(int k, bool and_after) {
  made = 0;
  first_failing = k;
  fail_after = and_after;
}
void fail_never() { fail_at(INT_MAX); }

}  // namespace heap

// The linker sends calls of malloc to __wrap_malloc, and calls of __real_malloc to malloc.
extern "C" {

void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* block, std::size_t size);
void __real_free(void* block);

void* __wrap_malloc(std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_realloc(void* block, std::size_t size);
void __wrap_free(void* block);

void* __wrap_malloc(std::size_t size) { return refused() ? nullptr : counted(__real_malloc(size)); }
void* __wrap_calloc(std::size_t count, std::size_t size) {
  return refused() ? nullptr : counted(__real_calloc(count, size));
}
void* __wrap_realloc(void* block, std::size_t size) {
  if (refused()) return nullptr;
  void* const moved = __real_realloc(block, size);
  return block ? moved : counted(moved);
}
void __wrap_free(void* block) {
  live -= block ? 1 : 0;
  __real_free(block);
}

}  // extern "C"

#include "korvos/core/ut_alloc.h"

#include "tests/support/all.hpp"

namespace {

TEST(Alloc, RefusesInTheOrderOfEachRoutine) {
  int thing = 0;
  void *p = &thing, *block = nullptr;
  for (const auto refused : {korvo_malloc(0, nullptr), korvo_calloc(0, 0, nullptr), korvo_realloc(nullptr, 8)})
    EXPECT_EQ(refused, KORVO_ERR_NULL_POINTER);
  for (const int32_t n : {0, -1, INT32_MIN})  // realloc tests the other way round
    for (const auto refused : {korvo_malloc(n, &p), korvo_calloc(n, 8, &p), korvo_calloc(1, 0, &p),
                               korvo_realloc(&p, n), korvo_realloc(nullptr, n)})
      EXPECT_EQ(refused, KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(p, &thing) << "a refused call leaves it as it was";
  ASSERT_EQ(korvo_calloc(50, 3, &block), KORVO_ERR_OK);
  EXPECT_EQ(std::count(static_cast<char*>(block), static_cast<char*>(block) + 150, '\0'), 150);
  void *const old = block, *q = block;
  heap::fail_at(1, true);
  for (const auto failed : {korvo_realloc(&block, 100000), korvo_malloc(8, &p), korvo_calloc(1, 8, &q)})
    EXPECT_EQ(failed, KORVO_ERR_MALLOC);
  heap::fail_never();
  EXPECT_TRUE(block == old && !p && !q);
  EXPECT_EQ(korvo_free(block), KORVO_ERR_OK);
}

}  // namespace

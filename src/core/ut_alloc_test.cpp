#include "korvos/core/ut_alloc.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/heap.hpp"

namespace {

TEST(Alloc, RefusesInTheOrderOfEachRoutine) {
  int thing = 0;
  void* p = &thing;
  EXPECT_EQ(korvo_malloc(0, nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(korvo_calloc(0, 0, nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(korvo_realloc(nullptr, 0), KORVO_ERR_ILLEGAL_VALUE);  // the other way round
  EXPECT_EQ(korvo_realloc(nullptr, 8), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(korvo_calloc(1, 0, &p), KORVO_ERR_ILLEGAL_VALUE);
  for (const int32_t count : {0, -1, INT32_MIN}) {
    EXPECT_EQ(korvo_malloc(count, &p), KORVO_ERR_ILLEGAL_VALUE);
    EXPECT_EQ(korvo_calloc(count, 8, &p), KORVO_ERR_ILLEGAL_VALUE);
    EXPECT_EQ(korvo_realloc(&p, count), KORVO_ERR_ILLEGAL_VALUE);
  }
  EXPECT_EQ(p, &thing) << "a refused call leaves it as it was";
}

TEST(Alloc, ReportsAnExhaustedHeapAndLosesNothing) {
  void* p = nullptr;
  ASSERT_EQ(korvo_calloc(50, 3, &p), KORVO_ERR_OK);
  EXPECT_EQ(std::string(static_cast<char*>(p), 150), std::string(150, '\0'));
  void* const old = p;
  void* q = p;
  void* r = p;
  heap::fail_at(1, true);
  EXPECT_EQ(korvo_realloc(&p, 100000), KORVO_ERR_MALLOC);
  EXPECT_EQ(korvo_malloc(8, &q), KORVO_ERR_MALLOC);
  EXPECT_EQ(korvo_calloc(1, 8, &r), KORVO_ERR_MALLOC);
  heap::fail_never();
  EXPECT_TRUE(p == old && !q && !r);
  ASSERT_EQ(korvo_realloc(&p, 100000), KORVO_ERR_OK);
  EXPECT_EQ(korvo_free(p), KORVO_ERR_OK);
}

}  // namespace

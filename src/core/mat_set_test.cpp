#include "korvos/core/mat_set.h"

#include <gtest/gtest.h>

#include "tests/support/heap.hpp"
#include "tests/support/matrix.hpp"

namespace {

using korvo::s32_matrix;

TEST(Set, IsMadeWholeOrNotAtAll) {
  const int before = heap::live_blocks();
  _mat_set set{};
  const int32_t dims[] = {2, 0};
  const int32_t many[] = {65536, 65536, 65536, 65536};  // a product that wraps 64 bits too
  EXPECT_EQ(matset_malloc(nullptr, 2, dims), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matset_malloc(&set, 0, nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matset_malloc(&set, 0, dims), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(matset_malloc(&set, 2, dims), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(matset_malloc(&set, 4, many), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(matset_malloc(&set, 1, many), KORVO_ERR_OK);
  EXPECT_TRUE(set.ndim == 1 && set.nmat == 65536 && set.dims[0] == 65536 && set.dims != many);
  EXPECT_EQ(matset_free(&set), KORVO_ERR_OK);
  EXPECT_TRUE(set.ndim == 0 && set.nmat == 0 && !set.dims && !set.mats);
  EXPECT_EQ(heap::live_blocks(), before);
  EXPECT_EQ(matset_free(nullptr), KORVO_ERR_NULL_POINTER) << "unlike the free of a matrix";
}

TEST(Set, IsValidatedByPointersThenSizesThenTheProduct) {
  int32_t dims[] = {2, 3};
  int32_t negative[] = {-2, -3};
  int32_t wrapping[] = {65536, 65537};
  _univ_mat mats[6];
  const auto verdict = [](_mat_set set) { return matset_validate(&set); };
  EXPECT_EQ(matset_validate(nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(verdict({2, dims, 6, mats}), KORVO_ERR_OK) << "the matrices are not looked at";
  EXPECT_EQ(verdict({0, nullptr, 6, mats}), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(verdict({0, dims, 6, nullptr}), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(verdict({0, dims, 6, mats}), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(verdict({2, dims, 0, mats}), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(verdict({2, negative, 6, mats}), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(verdict({2, dims, 5, mats}), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(verdict({2, wrapping, 65536, mats}), KORVO_ERR_ILLEGAL_VALUE);
}

TEST(Set, HasItsMatricesMadeAllOrNone) {
  _mat_set set{};
  const int32_t dims[] = {2, 3};
  ASSERT_EQ(matset_malloc(&set, 2, dims), KORVO_ERR_OK);
  const s32_matrix rows(3, 2, {1, 2, 3, 4, 5, 6});
  const s32_matrix cols(1, 6, {6, 5, 4, 3, 2, 1});
  const s32_matrix bad(1, 6, {6, 5, 4, 0, 2, 1});
  const s32_matrix five(1, 5, 1);
  const auto make = [&](const _s32_mat* r, const _s32_mat* c) {
    return matset_malloc_matrices_arbitrary_size(&set, r, c, KORVO_DOUBLE);
  };
  const int before = heap::live_blocks();
  for (int k = 1; k <= 6; ++k) {
    heap::fail_at(k);
    EXPECT_EQ(k % 2 ? make(&rows, &cols) : matset_malloc_matrices(&set, 4, 5, KORVO_FLOAT), KORVO_ERR_MALLOC);
    heap::fail_never();
  }
  EXPECT_EQ(matset_malloc_matrices(nullptr, 4, 5, KORVO_FLOAT), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matset_malloc_matrices_arbitrary_size(nullptr, &rows, &cols, KORVO_FLOAT), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(make(nullptr, &five), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(make(&five, nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(make(&five, &five), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(make(&rows, &five), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(make(&rows, &bad), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(heap::live_blocks(), before);
  ASSERT_EQ(matset_malloc_matrices(&set, 4, 5, KORVO_FLOAT), KORVO_ERR_OK);
  EXPECT_TRUE(set.mats[5].nrow == 4 && set.mats[5].ncol == 5 && set.mats[5].type == KORVO_FLOAT);
  EXPECT_EQ(matset_free_matrices(&set), KORVO_ERR_OK);
  ASSERT_EQ(make(&rows, &cols), KORVO_ERR_OK);
  for (int32_t i = 0; i < 6; ++i) {
    EXPECT_EQ(matuniv_validate(&set.mats[i]), KORVO_ERR_OK);
    EXPECT_TRUE(set.mats[i].nrow == i + 1 && set.mats[i].ncol == 6 - i && set.mats[i].type == KORVO_DOUBLE);
  }
  set.mats[2].type = KORVO_SINT8;
  EXPECT_EQ(matset_free_matrices(&set), KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(heap::live_blocks(), before + 4) << "in order, up to the first failure";
  set.mats[2].type = KORVO_DOUBLE;
  EXPECT_EQ(matset_free_matrices(&set), KORVO_ERR_OK);
  EXPECT_EQ(matset_free_matrices(nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matset_free(&set), KORVO_ERR_OK);
}

TEST(Set, IsResizedOverTheSameMatrices) {
  _mat_set set{};
  const int32_t dims[] = {2, 3};
  const int32_t six[] = {6};
  const int32_t negative[] = {-2, -3};
  const int32_t wrapping[] = {65536, 65537, 6};
  ASSERT_EQ(matset_malloc(&set, 2, dims), KORVO_ERR_OK);
  EXPECT_EQ(matset_resize(1, six, nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matset_resize(0, nullptr, &set), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matset_resize(0, six, &set), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(matset_resize(1, dims, &set), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(matset_resize(2, negative, &set), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(matset_resize(3, wrapping, &set), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_TRUE(set.ndim == 2 && set.dims[0] == 2 && set.dims[1] == 3);
  EXPECT_EQ(matset_resize(1, six, &set), KORVO_ERR_OK);
  EXPECT_EQ(matset_resize(1, set.dims, &set), KORVO_ERR_OK) << "from its own dimensions";
  EXPECT_TRUE(set.ndim == 1 && set.dims[0] == 6 && set.nmat == 6);
  EXPECT_EQ(matset_free(&set), KORVO_ERR_OK);
}

TEST(Set, IsComparedByTypesThenShapes) {
  double x = 0.0;
  int32_t two[] = {2};
  int32_t pair[] = {1, 2};
  const _univ_mat row = {1, 2, 2, &x, KORVO_DOUBLE};
  _univ_mat mats[3][2] = {{row, row}, {row, {1, 3, 3, &x, KORVO_DOUBLE}}, {row, {2, 2, 4, &x, KORVO_FLOAT}}};
  const _mat_set same = {1, two, 2, mats[0]};
  const _mat_set shape = {1, two, 2, mats[1]};
  const _mat_set type = {1, two, 2, mats[2]};  // the shape differs as well
  const _mat_set alone = {1, pair, 1, mats[2]};
  const _mat_set dims = {2, pair, 2, mats[0]};
  const _mat_set broken = {1, two, 3, mats[0]};
  EXPECT_EQ(matset_verify_allsame(&alone), KORVO_ERR_OK);
  EXPECT_EQ(matset_verify_allsame(&same), KORVO_ERR_OK);
  EXPECT_EQ(matset_verify_allsame(&shape), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(matset_verify_allsame(&type), KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(matset_verify_allsame(&broken), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(matset_verify_aresame(&type, &type), KORVO_ERR_OK);
  EXPECT_EQ(matset_verify_aresame(&same, &shape), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(matset_verify_aresame(&same, &type), KORVO_ERR_ILLEGAL_TYPE);
  for (const auto* other : {&dims, &alone})
    EXPECT_EQ(matset_verify_aresame(&type, other), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(matset_verify_aresame(&broken, nullptr), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(matset_verify_aresame(&dims, &broken), KORVO_ERR_ILLEGAL_VALUE) << "before the two are compared";
  EXPECT_EQ(matset_verify_aresame(nullptr, &broken), KORVO_ERR_NULL_POINTER);
}

}  // namespace

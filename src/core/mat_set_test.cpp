#include "korvos/core/mat_set.h"

#include "tests/support/all.hpp"

namespace {

using korvo::s32_matrix;

void all_give(_korvo_errcode expected, const std::vector<_korvo_errcode>& results) {
  EXPECT_EQ(results, std::vector(results.size(), expected));
}

TEST(Set, IsMadeAndResizedWholeOrNotAtAll) {
  const int before = heap::live_blocks();
  _mat_set set{};
  const int32_t dims[] = {2, 3, 0}, six[] = {6}, negative[] = {-2, -3}, wrapping[] = {65536, 65537, 6};
  const int32_t many[] = {65536, 65536, 65536, 65536};  // a product that wraps 64 bits too
  all_give(KORVO_ERR_ILLEGAL_SIZE,
           {matset_malloc(&set, 0, dims), matset_malloc(&set, 3, dims), matset_malloc(&set, 4, many)});
  EXPECT_EQ(heap::live_blocks(), before);
  ASSERT_EQ(matset_malloc(&set, 2, dims), KORVO_ERR_OK);
  all_give(KORVO_ERR_NULL_POINTER,
           {matset_malloc(nullptr, 2, dims), matset_malloc(&set, 0, nullptr), matset_resize(1, six, nullptr),
            matset_resize(0, nullptr, &set), matset_free(nullptr)});
  EXPECT_EQ(matset_resize(0, six, &set), KORVO_ERR_ILLEGAL_VALUE);
  all_give(KORVO_ERR_ILLEGAL_SIZE,
           {matset_resize(1, dims, &set), matset_resize(2, negative, &set), matset_resize(3, wrapping, &set)});
  EXPECT_TRUE(set.ndim == 2 && set.dims[0] == 2 && set.dims[1] == 3 && set.nmat == 6);
  all_give(KORVO_ERR_OK, {matset_resize(1, six, &set), matset_resize(1, set.dims, &set)});  // its own, too
  EXPECT_TRUE(set.ndim == 1 && set.dims[0] == 6 && set.nmat == 6 && set.dims != six);
  all_give(KORVO_ERR_OK, {matset_free(&set), matset_free(&set)});
  EXPECT_TRUE(set.ndim == 0 && set.nmat == 0 && !set.dims && !set.mats && heap::live_blocks() == before);
}

TEST(Set, IsValidatedByPointersThenSizesThenTheProduct) {
  int32_t dims[] = {2, 3}, negative[] = {-2, -3}, wrapping[] = {65536, 65537};
  _univ_mat mats[6];
  const auto verdict = [](_mat_set set) { return matset_validate(&set); };
  EXPECT_EQ(verdict({2, dims, 6, mats}), KORVO_ERR_OK) << "the matrices are not looked at";
  all_give(KORVO_ERR_NULL_POINTER,
           {matset_validate(nullptr), verdict({0, nullptr, 6, mats}), verdict({0, dims, 6, nullptr})});
  all_give(KORVO_ERR_ILLEGAL_SIZE,
           {verdict({0, dims, 6, mats}), verdict({2, dims, 0, mats}), verdict({2, negative, 6, mats})});
  all_give(KORVO_ERR_ILLEGAL_VALUE, {verdict({2, dims, 5, mats}), verdict({2, wrapping, 65536, mats})});
}

TEST(Set, HasItsMatricesMadeAllOrNone) {
  _mat_set set{};
  const int32_t dims[] = {2, 3};
  ASSERT_EQ(matset_malloc(&set, 2, dims), KORVO_ERR_OK);
  const s32_matrix rows(3, 2, {1, 2, 3, 4, 5, 6}), cols(1, 6, {6, 5, 4, 3, 2, 1}),
      bad(1, 6, {6, 5, 4, 0, 2, 1}), five(1, 5, 1);
  const auto make = [](const _s32_mat* nrows, const _s32_mat* ncols, _mat_set* to) {
    return matset_malloc_matrices_arbitrary_size(to, nrows, ncols, KORVO_DOUBLE);
  };
  const int before = heap::live_blocks();
  all_give(KORVO_ERR_NULL_POINTER,
           {matset_malloc_matrices(nullptr, 0, 5, KORVO_FLOAT), matset_free_matrices(nullptr),
            make(&five, &rows, nullptr), make(nullptr, &five, &set), make(&five, nullptr, &set)});
  all_give(KORVO_ERR_ILLEGAL_SIZE,
           {make(&five, &five, &set), make(&rows, &five, &set), make(&rows, &bad, &set)});
  EXPECT_EQ(heap::live_blocks(), before);
  all_give(KORVO_ERR_OK, {matset_malloc_matrices(&set, 4, 5, KORVO_FLOAT), matset_free_matrices(&set)});
  EXPECT_TRUE(set.mats[5].nrow == 4 && set.mats[5].ncol == 5 && set.mats[5].type == KORVO_FLOAT);
  ASSERT_EQ(make(&rows, &cols, &set), KORVO_ERR_OK);
  for (int32_t i = 0; i < 6; ++i)
    EXPECT_TRUE(set.mats[i].nrow == i + 1 && set.mats[i].ncol == 6 - i && set.mats[i].type == KORVO_DOUBLE);
  set.mats[2].type = KORVO_SINT8;
  EXPECT_EQ(matset_free_matrices(&set), KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(heap::live_blocks(), before + 4) << "in order, up to the first failure";
  set.mats[2].type = KORVO_DOUBLE;
  all_give(KORVO_ERR_OK, {matset_free_matrices(&set), matset_free(&set)});
}

TEST(Set, IsComparedByTypesThenShapes) {
  double x = 0.0;
  int32_t two[] = {2}, pair[] = {1, 2};
  const _univ_mat row = {1, 2, 2, &x, KORVO_DOUBLE};
  _univ_mat mats[3][2] = {{row, row}, {row, {1, 3, 3, &x, KORVO_DOUBLE}}, {row, {2, 2, 4, &x, KORVO_FLOAT}}};
  const _mat_set same = {1, two, 2, mats[0]}, shape = {1, two, 2, mats[1]}, alone = {1, pair, 1, mats[2]};
  const _mat_set type = {1, two, 2, mats[2]};  // the shape differs as well
  const _mat_set dims = {2, pair, 2, mats[0]}, broken = {1, two, 3, mats[0]};
  const auto compare = matset_verify_aresame;
  all_give(KORVO_ERR_OK, {matset_verify_allsame(&alone), matset_verify_allsame(&same), compare(&type, &type)});
  all_give(KORVO_ERR_ILLEGAL_SIZE, {matset_verify_allsame(&shape), compare(&same, &shape),
                                    compare(&type, &dims), compare(&type, &alone)});
  all_give(KORVO_ERR_ILLEGAL_TYPE, {matset_verify_allsame(&type), compare(&same, &type)});
  all_give(KORVO_ERR_ILLEGAL_VALUE,
           {matset_verify_allsame(&broken), compare(&broken, nullptr), compare(&dims, &broken)});
  EXPECT_EQ(compare(nullptr, &broken), KORVO_ERR_NULL_POINTER);
}

}  // namespace

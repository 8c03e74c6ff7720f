#include "korvos/core/mat_univ.h"

#include <gtest/gtest.h>

#include "core/arithmetic.hpp"
#include "korvos/core/ut_alloc.h"
#include "tests/support/forms.hpp"
#include "tests/support/heap.hpp"
#include "tests/support/matrix.hpp"

namespace {

using namespace korvo;

// What a test puts into the data field of a record to see whether it is written.
template <class M>
element<M> marker{};

template <class M>
bool states(const M& mat, std::int32_t nrow, std::int32_t ncol, const void* data) {
  return mat.nrow == nrow && mat.ncol == ncol && mat.nelem == product(nrow, ncol) && mat.data == data;
}

template <auto make, auto check>
void expect_refusals() {
  using M = record_of<make>;
  M mat = {7, 7, 49, &marker<M>};
  EXPECT_EQ(make(nullptr, 0, 0), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(make(&mat, 0, 3), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(make(&mat, INT32_MIN, -1), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(make(&mat, 3, 0), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_TRUE(states(mat, 7, 7, &marker<M>)) << "a bad size is not written";
  EXPECT_EQ(make(&mat, 65536, 65536), KORVO_ERR_ILLEGAL_VALUE) << "0 bytes, once wrapped";
  EXPECT_TRUE(states(mat, 65536, 65536, &marker<M>)) << "the allocator leaves data as it was";
  heap::fail_at(1);
  EXPECT_EQ(make(&mat, 2, 3), KORVO_ERR_MALLOC);
  heap::fail_never();
  EXPECT_TRUE(states(mat, 2, 3, nullptr));
  EXPECT_EQ(make(&mat, 65536, 65537), KORVO_ERR_OK) << "a short buffer, once wrapped";
  EXPECT_EQ(check(&mat), KORVO_ERR_ILLEGAL_SIZE) << "which no routine takes for a matrix";
  (void)korvo_free(mat.data);
  const auto verdict = [](M record) { return check(&record); };
  EXPECT_EQ(check(nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(verdict({0, 3, 0, nullptr}), KORVO_ERR_ILLEGAL_SIZE) << "sizes before data";
  EXPECT_EQ(verdict({3, 0, 0, nullptr}), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(verdict({2, 3, 7, nullptr}), KORVO_ERR_NULL_POINTER) << "data before the count";
  EXPECT_EQ(verdict({2, 3, 7, &marker<M>}), KORVO_ERR_ILLEGAL_SIZE);
}

// A matrix of one kind from malloc to the second free.
template <auto make, auto change, auto release, auto check>
void live() {
  expect_refusals<make, check>();
  using M = record_of<make>;
  const int before = heap::live_blocks();
  M mat{};
  ASSERT_EQ(make(&mat, 3, 5), KORVO_ERR_OK);
  EXPECT_EQ(check(&mat), KORVO_ERR_OK);
  for (int i = 0; i < 15; ++i) mat.data[i] = as_element<element<M>>(i);
  EXPECT_EQ(change(nullptr, 0, 0), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(change(&mat, 4, 0), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_TRUE(states(mat, 3, 5, mat.data));
  ASSERT_EQ(change(&mat, 1, 1400), KORVO_ERR_OK);
  ASSERT_EQ(change(&mat, 1400, 1), KORVO_ERR_OK);
  EXPECT_TRUE(states(mat, 1400, 1, mat.data));
  for (int i = 0; i < 15; ++i) EXPECT_EQ(mat.data[i], as_element<element<M>>(i)) << "storage is flat";
  void* const old = mat.data;
  heap::fail_at(1);
  EXPECT_EQ(change(&mat, 80, 30), KORVO_ERR_MALLOC);
  heap::fail_never();
  EXPECT_TRUE(states(mat, 80, 30, old)) << "the new size over the old buffer";
  EXPECT_EQ(change(&mat, 65536, 65536), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_TRUE(states(mat, 65536, 65536, old));
  for (int i = 0; i < 2; ++i) EXPECT_EQ(release(&mat), KORVO_ERR_OK);
  EXPECT_TRUE(states(mat, 65536, 65536, nullptr));
  EXPECT_EQ(release(nullptr), KORVO_ERR_OK);
  mat = {3, 5, 15, nullptr};
  EXPECT_EQ(change(&mat, 0, 3), KORVO_ERR_NULL_POINTER) << "no first allocation, and the matrix comes first";
  EXPECT_EQ(heap::live_blocks(), before);
}

TEST(TypedMatrix, IsMadeResizedCheckedAndFreed) {
  live<matu8_malloc, matu8_realloc, matu8_free, matu8_validate>();
  live<matu16_malloc, matu16_realloc, matu16_free, matu16_validate>();
  live<matu32_malloc, matu32_realloc, matu32_free, matu32_validate>();
  live<mats16_malloc, mats16_realloc, mats16_free, mats16_validate>();
  live<mats32_malloc, mats32_realloc, mats32_free, mats32_validate>();
  live<matflt_malloc, matflt_realloc, matflt_free, matflt_validate>();
  live<matdbl_malloc, matdbl_realloc, matdbl_free, matdbl_validate>();
  live<matcpx_malloc, matcpx_realloc, matcpx_free, matcpx_validate>();
}

TEST(TypedMatrix, IsFilledByWrapBeforeItIsValidated) {
  each_form<matu8_wrap_data, matu16_wrap_data, matu32_wrap_data, mats16_wrap_data, mats32_wrap_data,
            matflt_wrap_data, matdbl_wrap_data>([]<auto wrap> {
    using M = record_of<wrap>;
    M mat = {7, 7, 7, nullptr};
    EXPECT_EQ(wrap(nullptr, nullptr, 0, 0), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(wrap(&mat, &marker<M>, 0, 3), KORVO_ERR_ILLEGAL_SIZE);
    EXPECT_TRUE(states(mat, 0, 3, &marker<M>));
    EXPECT_EQ(wrap(&mat, nullptr, 2, 3), KORVO_ERR_NULL_POINTER);
    EXPECT_TRUE(states(mat, 2, 3, nullptr));
    EXPECT_EQ(wrap(&mat, &marker<M>, 2, 3), KORVO_ERR_OK);
  });
}

TEST(UniversalMatrix, HasTypesThatWrapAndMallocJudgeDifferently) {
  double data[6] = {};
  const _dbl_mat typed = {2, 3, 7, data};  // not validated by wrap_matrix
  for (int number = -1; number <= 9; ++number) {
    const auto type = static_cast<_korvo_type>(number);
    const bool is_type = number == 0 || (number >= 2 && number <= 8);
    const bool wraps = is_type || type == KORVO_SINT8;
    const _korvo_errcode if_type = is_type ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_TYPE;
    const _korvo_errcode if_wraps = wraps ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_VALUE;
    _univ_mat mat = {7, 7, 49, data, KORVO_DOUBLE};
    EXPECT_EQ(matuniv_malloc(&mat, 0, 0, type), is_type ? KORVO_ERR_ILLEGAL_SIZE : KORVO_ERR_ILLEGAL_TYPE);
    EXPECT_TRUE(states(mat, 7, 7, data) && mat.type == type) << "only the type has been written";
    EXPECT_EQ(matuniv_malloc(&mat, 2, 3, type), if_type);
    EXPECT_EQ(matuniv_validate(&mat), if_type);
    EXPECT_EQ(matuniv_realloc(&mat, 4, 5), if_type);
    EXPECT_EQ(mat.nelem, is_type ? 20 : 49);
    EXPECT_EQ(matuniv_free(&mat), if_type);
    EXPECT_EQ(mat.data, is_type ? nullptr : data) << "nothing is freed without a type";
    mat = {7, 7, 49, nullptr, KORVO_DOUBLE};
    EXPECT_EQ(matuniv_wrap_data(&mat, nullptr, 0, 3, type), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(matuniv_wrap_matrix(&mat, nullptr, type), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(mat.type, KORVO_DOUBLE) << "null pointers come first";
    EXPECT_EQ(matuniv_wrap_data(&mat, data, 0, 3, type), if_wraps) << "sizes are not looked at";
    EXPECT_TRUE((wraps ? states(mat, 0, 3, data) : states(mat, 7, 7, nullptr)) && mat.type == type);
    EXPECT_EQ(matuniv_wrap_matrix(&mat, &typed, type), if_wraps);
    EXPECT_EQ(mat.nelem, wraps ? 7 : 49);
    EXPECT_EQ(matuniv_malloc(nullptr, 0, 0, type), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(matuniv_wrap_data(nullptr, data, 1, 1, type), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(matuniv_wrap_matrix(nullptr, &typed, type), KORVO_ERR_NULL_POINTER);
  }
  EXPECT_EQ(matuniv_validate(nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matuniv_realloc(nullptr, 0, 0), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matuniv_free(nullptr), KORVO_ERR_OK);
  _univ_mat mat = {7, 7, 49, data, KORVO_DOUBLE};
  EXPECT_EQ(matuniv_malloc(&mat, 65536, 65536, KORVO_FLOAT), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_TRUE(states(mat, 65536, 65536, data));
}

}  // namespace

#include "korvos/core/mat_univ.h"

#include "core/arithmetic.hpp"
#include "tests/support/all.hpp"

namespace {

using namespace korvo;

// All calls give the code, and the record is left like this by the last that writes it.
template <class M>
void expect(_korvo_errcode code, const M& mat, int nrow, int ncol, const void* data,
            const std::vector<_korvo_errcode>& results) {
  EXPECT_EQ(results, std::vector(results.size(), code));
  EXPECT_TRUE(mat.nrow == nrow && mat.ncol == ncol && mat.nelem == product(nrow, ncol) && mat.data == data)
      << code << ", " << nrow << " by " << ncol;
}

// A matrix of one kind from the first refusal to the second free.
template <auto make, auto change, auto release, auto check, auto wrap = nullptr>
void live() {
  using M = record_of<make>;
  element<M> data[6] = {};
  M mat = {7, 7, 49, data}, empty = {3, 5, 15, nullptr};
  const auto verdict = [](M record) { return check(&record); };
  expect(KORVO_ERR_NULL_POINTER, empty, 3, 5, nullptr,
         {make(nullptr, 0, 0), change(nullptr, 0, 0), change(&empty, 0, 3), check(nullptr),
          verdict({2, 3, 7, nullptr})});
  expect(KORVO_ERR_ILLEGAL_SIZE, mat, 7, 7, data,
         {make(&mat, 0, 3), make(&mat, INT32_MIN, -1), make(&mat, 3, 0), change(&mat, 4, 0),
          verdict({0, 3, 0, nullptr}), verdict({3, 0, 0, nullptr}), verdict({2, 3, 7, data})});
  // Counts of bytes that wrap: to none, and to a short buffer, which no routine takes for a matrix.
  expect(KORVO_ERR_ILLEGAL_VALUE, mat, 65536, 65536, data, {make(&mat, 65536, 65536)});
  EXPECT_EQ(make(&mat, 65536, 65537), KORVO_ERR_OK);
  EXPECT_EQ(check(&mat), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(release(&mat), KORVO_ERR_OK);
  heap::fail_at(1);
  expect(KORVO_ERR_MALLOC, mat, 2, 3, nullptr, {make(&mat, 2, 3)});
  heap::fail_never();
  ASSERT_EQ(make(&mat, 1, 15), KORVO_ERR_OK);
  for (int i = 0; i < 15; ++i) mat.data[i] = as_element<element<M>>(i);
  EXPECT_FALSE(change(&mat, 1, 1400) || change(&mat, 1400, 1) || check(&mat));
  for (int i = 0; i < 15; ++i) EXPECT_EQ(mat.data[i], as_element<element<M>>(i)) << "storage is flat";
  void* const old = mat.data;
  heap::fail_at(1);
  expect(KORVO_ERR_MALLOC, mat, 80, 30, old, {change(&mat, 80, 30)});  // the new size over the old buffer
  heap::fail_never();
  expect(KORVO_ERR_OK, mat, 80, 30, nullptr, {release(&mat), release(&mat), release(nullptr)});
  if constexpr (!std::is_same_v<decltype(wrap), std::nullptr_t>) {  // filled before it is validated
    expect(KORVO_ERR_ILLEGAL_SIZE, mat, 0, 3, data, {wrap(&mat, data, 0, 3)});
    expect(KORVO_ERR_NULL_POINTER, mat, 2, 3, nullptr,
           {wrap(nullptr, nullptr, 0, 0), wrap(&mat, nullptr, 2, 3)});
    expect(KORVO_ERR_OK, mat, 2, 3, data, {wrap(&mat, data, 2, 3)});
  }
}

TEST(TypedMatrix, IsMadeResizedCheckedAndFreed) {
  live<matu8_malloc, matu8_realloc, matu8_free, matu8_validate, matu8_wrap_data>();
  live<matu16_malloc, matu16_realloc, matu16_free, matu16_validate, matu16_wrap_data>();
  live<matu32_malloc, matu32_realloc, matu32_free, matu32_validate, matu32_wrap_data>();
  live<mats16_malloc, mats16_realloc, mats16_free, mats16_validate, mats16_wrap_data>();
  live<mats32_malloc, mats32_realloc, mats32_free, mats32_validate, mats32_wrap_data>();
  live<matflt_malloc, matflt_realloc, matflt_free, matflt_validate, matflt_wrap_data>();
  live<matdbl_malloc, matdbl_realloc, matdbl_free, matdbl_validate, matdbl_wrap_data>();
  live<matcpx_malloc, matcpx_realloc, matcpx_free, matcpx_validate>();
}

TEST(UniversalMatrix, HasTypesThatWrapAndMallocJudgeDifferently) {
  double data[6] = {};
  const _dbl_mat bad = {0, 3, 0, data};
  for (int number = -1; number <= 9; ++number) {
    const auto type = static_cast<_korvo_type>(number);
    const bool is_type = number == 0 || (number >= 2 && number <= 8), wraps = is_type || type == KORVO_SINT8;
    const _korvo_errcode if_wraps = wraps ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_VALUE;
    _univ_mat mat = {7, 7, 49, data, KORVO_DOUBLE};
    expect(
        KORVO_ERR_NULL_POINTER, mat, 7, 7, data,
        {matuniv_malloc(nullptr, 0, 0, type), matuniv_wrap_data(nullptr, data, 1, 1, type),
         matuniv_wrap_data(&mat, nullptr, 0, 3, type), matuniv_wrap_matrix(nullptr, &bad, type),
         matuniv_wrap_matrix(&mat, nullptr, type), matuniv_validate(nullptr), matuniv_realloc(nullptr, 0, 0)});
    EXPECT_EQ(mat.type, KORVO_DOUBLE) << "null pointers come first";
    expect(is_type ? KORVO_ERR_ILLEGAL_SIZE : KORVO_ERR_ILLEGAL_TYPE, mat, 7, 7, data,
           {matuniv_malloc(&mat, 0, 0, type)});
    EXPECT_EQ(mat.type, type) << "only the type has been written";
    expect(is_type ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_TYPE, mat, 7, 7, is_type ? nullptr : data,
           {matuniv_malloc(&mat, 2, 3, type), matuniv_validate(&mat), matuniv_realloc(&mat, 7, 7),
            matuniv_free(&mat)});
    const int nrow = wraps ? 0 : 7, ncol = wraps ? 3 : 7;  // sizes are not looked at
    mat = {7, 7, 49, nullptr, KORVO_DOUBLE};
    expect(if_wraps, mat, nrow, ncol, wraps ? data : nullptr, {matuniv_wrap_data(&mat, data, 0, 3, type)});
    EXPECT_EQ(mat.type, type);
    mat = {7, 7, 49, nullptr, KORVO_DOUBLE};
    expect(if_wraps, mat, nrow, ncol, wraps ? data : nullptr, {matuniv_wrap_matrix(&mat, &bad, type)});
    EXPECT_EQ(mat.type, type);
  }
  EXPECT_EQ(matuniv_free(nullptr), KORVO_ERR_OK);
}

}  // namespace

#include "korvos/matrix/mat_assn.h"

#include <gtest/gtest.h>

#include "tests/support/costs.hpp"
#include "tests/support/fenced.hpp"
#include "tests/support/forms.hpp"
#include "tests/support/levels.hpp"

namespace {

using namespace korvo;

struct shape {
  int rows, cols;
};
constexpr shape shapes[] = {{1, 1}, {1, 7}, {9, 1}, {3, 5}, {4, 6}, {33, 65}, {100, 17}, {16, 31}};

template <class M>
matrix<M> numbers(int rows, int cols) {
  return matrix<M>::random(rows, cols, 5, 0.0, 250.0);
}

// A move to a result of this shape gives this code, and the elements that expected(row, column) says.
template <class M, class Move, class F>
void expect_moved(shape size, _korvo_errcode code, Move move, F expected) {
  fenced<M> out(size.rows, size.cols);
  EXPECT_EQ(move(&out), code);
  std::vector<element<M>> elements;
  for (int r = 0; r < size.rows; ++r)
    for (int c = 0; c < size.cols; ++c) elements.push_back(expected(r, c));
  EXPECT_EQ(out.elements(), elements) << size.rows << " by " << size.cols;
  EXPECT_TRUE(out.fences_stand());
}

TEST(Transpose, GivesTheNaiveLoopsElementsAtEachLevelAndInAllStrips) {
  each_level([] {
    each_form<matu8_transpose, matu16_transpose, matu32_transpose, mats16_transpose, mats32_transpose,
              matflt_transpose, matdbl_transpose, matcpx_transpose>([]<auto transpose> {
      using M = record_of<transpose>;
      for (const shape& size : shapes)
        for (const double rows_a_poll : {0.5, 3.0, 18.0, 1e9}) {
          const threshold distance(8.0 * size.rows * rows_a_poll);
          const auto in = numbers<M>(size.rows, size.cols);
          expect_moved<M>(
              {size.cols, size.rows}, KORVO_ERR_OK, [&](M* out) { return transpose(&in, nullptr, out); },
              [&](int r, int c) { return in(c, r); });
        }
    });
  });
}

TEST(Transpose, SwapsTheSidesOfAVectorInPlaceAndRefusesAMatrix) {
  fake_host host;
  u8_matrix row(1, 6, {1, 2, 3, 4, 5, 6});
  EXPECT_EQ(matu8_transpose(&row, host.intrp_ptr(), &row), KORVO_ERR_OK);
  EXPECT_TRUE(row.nrow == 6 && row.ncol == 1 && row.data[5] == 6);
  _univ_mat column = row.universal();
  EXPECT_EQ(matuniv_transpose(&column, host.intrp_ptr(), &column), KORVO_ERR_OK);
  EXPECT_TRUE(column.nrow == 1 && column.ncol == 6);
  EXPECT_EQ(host.polls(), 0);
  u8_matrix square(3, 3);
  EXPECT_EQ(matu8_transpose(&square, nullptr, &square), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_EQ(matu8_transpose(&square, nullptr, &row), KORVO_ERR_ILLEGAL_SIZE);
}

template <auto flip, bool sideways>
void expect_flipped() {
  using M = record_of<flip>;
  for (const shape& size : shapes) {
    const auto in = numbers<M>(size.rows, size.cols);
    const auto flipped = [&](int r, int c) {
      return sideways ? in(r, size.cols - 1 - c) : in(size.rows - 1 - r, c);
    };
    expect_moved<M>(
        size, KORVO_ERR_OK, [&](M* out) { return flip(&in, nullptr, out); }, flipped);
    const auto in_place = [&](M* out) {
      std::copy_n(in.data, in.nelem, out->data);
      return flip(out, nullptr, out);
    };
    expect_moved<M>(size, KORVO_ERR_OK, in_place, flipped);
  }
}

TEST(Flip, ReversesRowsOrColumnsInPlaceToo) {
  each_form<matu8_flip_left_right, matu16_flip_left_right, matu32_flip_left_right, mats16_flip_left_right,
            mats32_flip_left_right, matflt_flip_left_right, matdbl_flip_left_right, matcpx_flip_left_right>(
      []<auto flip> { expect_flipped<flip, true>(); });
  each_form<matu8_flip_up_down, matu16_flip_up_down, matu32_flip_up_down, mats16_flip_up_down,
            mats32_flip_up_down, matflt_flip_up_down, matdbl_flip_up_down, matcpx_flip_up_down>(
      []<auto flip> { expect_flipped<flip, false>(); });
}

TEST(Translate, MovesWhatStaysInsideAndFillsTheRest) {
  each_form<matu8_translate, matu16_translate, matu32_translate, mats16_translate, mats32_translate,
            matflt_translate, matdbl_translate>([]<auto translate> {
    using M = record_of<translate>;
    auto in = numbers<M>(5, 7);
    const auto fill = as_element<element<M>>(99);
    for (const int dr : {0, 1, -2, 4, -4, 5, -5, INT32_MAX, INT32_MIN})
      for (const int dc : {0, 3, -1, 6, -6, 7, -7, INT32_MAX, INT32_MIN})
        expect_moved<M>(
            {5, 7}, KORVO_ERR_OK, [&](M* out) { return translate(&in, dr, dc, fill, nullptr, out); },
            [&](int r, int c) {
              const std::int64_t i = r - std::int64_t{dr};
              const std::int64_t j = c - std::int64_t{dc};
              return i >= 0 && i < 5 && j >= 0 && j < 7 ? in(static_cast<int>(i), static_cast<int>(j)) : fill;
            });
    EXPECT_EQ(translate(&in, 0, 0, fill, nullptr, &in), KORVO_ERR_ILLEGAL_SIZE) << "before the shortcut";
  });
}

// A piece of 3 by 4 in a matrix of 5 by 7: rows and columns that it may begin at, and some that it may not.
constexpr int rows_to_try[] = {0, 2, 3, -1, INT32_MAX, INT32_MIN};
constexpr int cols_to_try[] = {0, 3, 4, -1, INT32_MAX, INT32_MIN};
bool fits(int row, int col) { return row >= 0 && row <= 2 && col >= 0 && col <= 3; }
_korvo_errcode verdict(int row, int col) { return fits(row, col) ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_SIZE; }

TEST(Submat, IsPastedWhereItLiesInside) {
  each_form<matu8_assign_submat, matu16_assign_submat, matu32_assign_submat, mats16_assign_submat,
            mats32_assign_submat, matflt_assign_submat, matdbl_assign_submat, matcpx_assign_submat>(
      []<auto paste> {
        using M = record_of<paste>;
        auto in = numbers<M>(3, 4);
        for (const int row : rows_to_try)
          for (const int col : cols_to_try)
            expect_moved<M>(
                {5, 7}, verdict(row, col), [&](M* out) { return paste(&in, row, col, nullptr, out); },
                [&](int r, int c) {
                  const bool hit = fits(row, col) && r >= row && r < row + 3 && c >= col && c < col + 4;
                  return hit ? in(r - row, c - col) : fenced<M>::post();
                });
        EXPECT_EQ(paste(&in, 1, 0, nullptr, &in), KORVO_ERR_ILLEGAL_SIZE) << "the bounds first";
        EXPECT_EQ(paste(&in, 0, 0, nullptr, &in), KORVO_ERR_ILLEGAL_ADDRESS);
      });
}

TEST(Extract, IsCutWhereItLiesInside) {
  each_form<matu8_extract, matu16_extract, matu32_extract, mats16_extract, mats32_extract, matflt_extract,
            matdbl_extract, matcpx_extract>([]<auto cut> {
    using M = record_of<cut>;
    auto in = numbers<M>(5, 7);
    for (const int row : rows_to_try)
      for (const int col : cols_to_try) {
        const threshold distance(col == 3 ? 40.0 : 1e7);  // two columns at a time, or all at once
        expect_moved<M>(
            {3, 4}, verdict(row, col), [&](M* out) { return cut(&in, row, col, nullptr, out); },
            [&](int r, int c) { return fits(row, col) ? in(row + r, col + c) : fenced<M>::post(); });
      }
    EXPECT_EQ(cut(&in, 1, 0, nullptr, &in), KORVO_ERR_ILLEGAL_ADDRESS) << "the shared buffer first";
  });
}

TEST(Zeropad, KeepsTheUpperLeft) {
  each_form<matu8_assign_zeropad, matu16_assign_zeropad, matu32_assign_zeropad, mats16_assign_zeropad,
            mats32_assign_zeropad, matflt_assign_zeropad, matdbl_assign_zeropad>([]<auto pad> {
    using M = record_of<pad>;
    auto in = numbers<M>(3, 4);
    const auto move = [&](M* out) { return pad(&in, nullptr, out); };
    for (const shape& size : {shape{3, 4}, {5, 4}, {3, 9}, {6, 7}})
      expect_moved<M>(size, KORVO_ERR_OK, move,
                      [&](int r, int c) { return r < 3 && c < 4 ? in(r, c) : element<M>{}; });
    expect_moved<M>({2, 9}, KORVO_ERR_ILLEGAL_SIZE, move, [](int, int) { return fenced<M>::post(); });
    EXPECT_EQ(pad(&in, nullptr, &in), KORVO_ERR_ILLEGAL_ADDRESS) << "of one shape, and still";
  });
}

template <class T, class M>
void expect_filled(_korvo_errcode (*fill)(T, void*, M*)) {
  expect_moved<M>(
      {5, 7}, KORVO_ERR_OK, [&](M* out) { return fill(as_element<T>(3), nullptr, out); },
      [](int, int) { return as_element<T>(3); });
}

TEST(Assign, CopiesOrFillsOrFindsNothingToDo) {
  each_form<matu8_assign, matu16_assign, matu32_assign, mats16_assign, mats32_assign, matflt_assign,
            matdbl_assign>([]<auto assign> {
    using M = record_of<assign>;
    const auto in = numbers<M>(5, 7);
    expect_moved<M>(
        {5, 7}, KORVO_ERR_OK, [&](M* out) { return assign(&in, nullptr, out); }, in);
    fake_host host(1);
    M wrapped = in;
    EXPECT_EQ(assign(&in, host.intrp_ptr(), &wrapped), KORVO_ERR_OK) << "no poll";
    wrapped = {7, 5, 35, in.data};
    EXPECT_EQ(assign(&in, nullptr, &wrapped), KORVO_ERR_ILLEGAL_SIZE) << "shapes before the shortcut";
  });
  each_form<matu8_assign_scalar, matu16_assign_scalar, matu32_assign_scalar, mats16_assign_scalar,
            mats32_assign_scalar, matflt_assign_scalar, matdbl_assign_scalar, matcpx_assign_scalar>(
      []<auto fill> { expect_filled(fill); });
}

TEST(Moves, PollAtTheirStatedCosts) {
  const auto in = numbers<_s16_mat>(5, 7);
  s16_matrix out(5, 7);
  s16_matrix large(8, 9);
  s16_matrix turned(7, 5);
  s16_matrix piece(3, 4);
  s16_matrix strip(1, 4);
  expect_tallies([&](void* host) { return mats16_assign(&in, host, &out); }, {35.0});
  expect_tallies([&](void* host) { return mats16_assign_scalar(1, host, &out); }, {70.0});
  expect_tallies([&](void* host) { return mats16_assign_submat(&in, 1, 2, host, &large); }, steps_of(5, 56.0));
  expect_tallies([&](void* host) { return mats16_assign_zeropad(&in, host, &large); },
                 {8, 16, 24, 32, 40, 76, 112, 148}, steps_of(5, 56.0));
  expect_tallies([&](void* host) { return mats16_extract(&in, 1, 2, host, &piece); }, steps_of(4, 16.0));
  expect_tallies([&](void* host) { return mats16_extract(&in, 1, 2, host, &strip); }, {});
  expect_tallies([&](void* host) { return mats16_transpose(&in, host, &turned); }, steps_of(7, 40.0));
  expect_tallies([&](void* host) { return mats16_translate(&in, -2, 3, 0, host, &out); }, steps_of(3, 40.0),
                 {70.0});
  expect_tallies([&](void* host) { return mats16_translate(&in, 0, 7, 0, host, &out); }, {70.0});
  expect_tallies([&](void* host) { return mats16_translate(&in, 0, 0, 0, host, &out); }, {35.0});
  expect_tallies([&](void* host) { return mats16_flip_left_right(&in, host, &out); }, steps_of(5, 56.0));
  expect_tallies([&](void* host) { return mats16_flip_up_down(&in, host, &out); }, steps_of(3, 56.0));
}

TEST(Moves, StopAfterTheRowOrColumnThatPolled) {
  const auto in = numbers<_flt_mat>(40, 100);
  const threshold rows(8.0 * 40 * 21);
  fake_host third(3);  // after rows 1, 22 and 43
  expect_moved<_flt_mat>(
      {100, 40}, KORVO_ERR_INTERRUPT,
      [&](_flt_mat* out) { return matflt_transpose(&in, third.intrp_ptr(), out); },
      [&](int r, int c) { return r < 43 ? in(c, r) : 77.0F; });
  const threshold columns(8.0 * 4 * 6);
  fake_host second(2);  // after columns 1 and 7
  expect_moved<_flt_mat>(
      {5, 25}, KORVO_ERR_INTERRUPT,
      [&](_flt_mat* out) { return matflt_extract(&in, 2, 3, second.intrp_ptr(), out); },
      [&](int r, int c) { return c < 7 ? in(r + 2, c + 3) : 77.0F; });
}

TEST(Moves, ValidateInTheOrderOfTheArgumentsAndCompareShapes) {
  const u8_matrix wide(2, 3);
  u8_matrix square(2, 2);
  const _u8_mat no_data = {2, 2, 4, nullptr};
  _u8_mat no_rows = {0, 2, 0, nullptr};
  for (auto* const move :
       {&matu8_assign, &matu8_assign_zeropad, &matu8_transpose, &matu8_flip_left_right, &matu8_flip_up_down}) {
    EXPECT_EQ(move(&no_data, nullptr, &no_rows), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(move(&wide, nullptr, &square), KORVO_ERR_ILLEGAL_SIZE);
  }
  for (auto* const move : {&matu8_assign_submat, &matu8_extract})
    EXPECT_EQ(move(&no_data, 9, 9, nullptr, &no_rows), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matu8_translate(&no_data, 9, 9, 0, nullptr, &no_rows), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matu8_assign_scalar(1, nullptr, &no_rows), KORVO_ERR_ILLEGAL_SIZE);
}

_korvo_errcode translate_by_one(const _univ_mat* in, void* intrp_ptr, _univ_mat* out) {
  return matuniv_translate(in, 1, 1, {_univ_value{.u8 = 1}, in ? in->type : KORVO_UINT8}, intrp_ptr, out);
}
template <auto form>
_korvo_errcode at_origin(const _univ_mat* in, void* intrp_ptr, _univ_mat* out) {
  return form(in, 0, 0, intrp_ptr, out);
}

void expect_types(_korvo_errcode (*form)(const _univ_mat*, void*, _univ_mat*), bool complex_too) {
  double data[] = {0.0, 0.0};
  double more[] = {0.0, 0.0};
  for (int type = -1; type <= 9; ++type) {
    const _univ_mat in = {1, 1, 1, data, static_cast<_korvo_type>(type)};
    _univ_mat out = {1, 1, 1, more, in.type};
    const bool exists = type == 0 || (type >= 2 && type <= 7) || (type == KORVO_DCOMPLEX && complex_too);
    EXPECT_EQ(form(&in, nullptr, &out), exists ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_TYPE) << type;
    EXPECT_EQ(form(&in, nullptr, nullptr), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(form(nullptr, nullptr, &out), KORVO_ERR_NULL_POINTER);
    out.type = in.type == KORVO_FLOAT ? KORVO_DOUBLE : KORVO_FLOAT;
    EXPECT_EQ(form(&in, nullptr, &out), KORVO_ERR_ILLEGAL_TYPE);
  }
}

TEST(UniversalMoves, RefuseOtherTypesAndThoseWithoutAForm) {
  for (auto* const form : {&matuniv_assign, &matuniv_assign_zeropad, &translate_by_one})
    expect_types(form, false);
  for (auto* const form : {&matuniv_transpose, &matuniv_flip_left_right, &matuniv_flip_up_down,
                           &at_origin<matuniv_assign_submat>, &at_origin<matuniv_extract>})
    expect_types(form, true);
  flt_matrix in(1, 1);
  flt_matrix out(1, 1);
  const _univ_mat from = in.universal();
  _univ_mat to = out.universal();
  const _univ_scalar scalar = {_univ_value{.dbl = 1.0}, KORVO_DOUBLE};
  EXPECT_EQ(matuniv_assign_scalar(scalar, nullptr, nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matuniv_assign_scalar(scalar, nullptr, &to), KORVO_ERR_ILLEGAL_TYPE) << "never converted";
  EXPECT_EQ(matuniv_assign_scalar({_univ_value{.flt = 3.0F}, KORVO_FLOAT}, nullptr, &to), KORVO_ERR_OK);
  EXPECT_EQ(out(0, 0), 3.0F);
  EXPECT_EQ(matuniv_translate(&from, 0, 0, scalar, nullptr, &to), KORVO_ERR_ILLEGAL_TYPE);
}

}  // namespace

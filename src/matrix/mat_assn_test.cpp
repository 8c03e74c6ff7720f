#include "korvos/matrix/mat_assn.h"

#include "tests/support/all.hpp"

namespace {

using namespace korvo;

constexpr struct {
  int rows, cols;
} shapes[] = {{1, 1}, {1, 7}, {9, 1}, {3, 5}, {4, 6}, {33, 65}, {100, 17}, {16, 31}};

template <auto form>
matrix<record_of<form>> numbers(int rows, int cols) {
  return matrix<record_of<form>>::random(rows, cols, 5, 0.0, 250.0);
}

// A move of `in` to a result of this shape gives this code, and the elements that expected(row, column) says.
template <class M, class Move, class F>
void expect_moved(const matrix<M>& /*in*/, int rows, int cols, _korvo_errcode code, Move move, F expected) {
  fenced<M> out(rows, cols);
  EXPECT_EQ(move(static_cast<M*>(&out)), code);
  for (int i = 0; i < out.nelem; ++i) ASSERT_EQ(out.data[i], expected(i / cols, i % cols)) << i;
  EXPECT_TRUE(out.fences_stand());
}

TEST(Transpose, GivesTheNaiveLoopsElementsAtEachLevelAndInAllStrips) {
  each_level([] {
    each_form<ALL_FORMS(transpose)>([]<auto transpose> {
      for (const auto& [rows, cols] : shapes)
        for (const double rows_a_poll : {0.5, 3.0, 18.0, 1e9}) {
          const threshold distance(8.0 * rows * rows_a_poll);
          const auto in = numbers<transpose>(rows, cols);
          const auto move = [&](auto* out) { return transpose(&in, nullptr, out); };
          expect_moved(in, cols, rows, KORVO_ERR_OK, move, [&](int r, int c) { return in(c, r); });
        }
    });
  });
}

TEST(Transpose, SwapsTheSidesOfAVectorInPlaceAndRefusesAMatrix) {
  fake_host host;
  u8_matrix row(1, 2, {1, 2}), square(3, 3);
  _univ_mat column = row.universal();
  EXPECT_EQ(matuniv_transpose(&column, host.intrp_ptr(), &column), KORVO_ERR_OK);
  EXPECT_TRUE(column.nrow == 2 && column.ncol == 1 && row(0, 1) == 2 && host.polls() == 0);
  EXPECT_EQ(matu8_transpose(&square, nullptr, &square), KORVO_ERR_ILLEGAL_SIZE);
}

template <auto... forms, class Source>
void expect_flipped(Source source) {
  each_form<forms...>([&]<auto flip> {
    for (const auto& [rows, cols] : shapes)
      for (const bool in_place : {false, true}) {
        const auto in = numbers<flip>(rows, cols);
        const auto move = [&](auto* out) {
          if (in_place) std::copy_n(in.data, in.nelem, out->data);
          return flip(in_place ? out : static_cast<const record_of<flip>*>(&in), nullptr, out);
        };
        expect_moved(in, rows, cols, KORVO_ERR_OK, move, [&](int r, int c) { return source(in, r, c); });
      }
  });
}

TEST(Flip, ReversesRowsOrColumnsInPlaceToo) {
  expect_flipped<ALL_FORMS(flip_left_right)>(
      [](const auto& in, int r, int c) { return in(r, in.ncol - 1 - c); });
  expect_flipped<ALL_FORMS(flip_up_down)>([](const auto& in, int r, int c) { return in(in.nrow - 1 - r, c); });
}

TEST(Translate, MovesWhatStaysInsideAndFillsTheRest) {
  each_form<REAL_FORMS(translate)>([]<auto translate> {
    auto in = numbers<translate>(5, 7);
    for (const int dr : {0, 1, -2, 4, -4, 5, -5, INT32_MAX, INT32_MIN})
      for (const int dc : {0, 3, -1, 6, -6, 7, -7, INT32_MAX, INT32_MIN}) {
        const auto move = [&](auto* out) { return translate(&in, dr, dc, 99, nullptr, out); };
        expect_moved(in, 5, 7, KORVO_ERR_OK, move, [&](std::int64_t r, std::int64_t c) {
          const bool inside = r >= dr && r < 5LL + dr && c >= dc && c < 7LL + dc;
          return inside ? in(static_cast<int>(r - dr), static_cast<int>(c - dc)) : 99;
        });
      }
    EXPECT_EQ(translate(&in, 0, 0, 99, nullptr, &in), KORVO_ERR_ILLEGAL_SIZE) << "before the shortcut";
  });
}

// Where a piece of 3 by 4 may begin in a matrix of 5 by 7, and where not.
template <class Test>
void each_place(Test test) {
  for (const int row : {0, 2, 3, -1, INT32_MAX})
    for (const int col : {0, 3, 4, -1, INT32_MAX}) test(row, col, row >= 0 && row <= 2 && col >= 0 && col <= 3);
}
_korvo_errcode if_it(bool fits) { return fits ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_SIZE; }

TEST(Submat, IsPastedWhereItLiesInside) {
  each_form<ALL_FORMS(assign_submat)>([]<auto paste> {
    const auto in = numbers<paste>(3, 4);
    each_place([&](int row, int col, bool fits) {
      const auto move = [&](auto* out) { return paste(&in, row, col, nullptr, out); };
      expect_moved(in, 5, 7, if_it(fits), move, [&](int r, int c) {
        const bool hit = fits && r >= row && r < row + 3 && c >= col && c < col + 4;
        return hit ? in(r - row, c - col) : fenced<record_of<paste>>::post();
      });
    });
  });
}

TEST(Extract, IsCutWhereItLiesInside) {
  each_form<ALL_FORMS(extract)>([]<auto cut> {
    const auto in = numbers<cut>(5, 7);
    each_place([&](int row, int col, bool fits) {
      const threshold distance(col == 3 ? 40.0 : 1e7);  // two columns at a time, or all at once
      const auto move = [&](auto* out) { return cut(&in, row, col, nullptr, out); };
      expect_moved(in, 3, 4, if_it(fits), move,
                   [&](int r, int c) { return fits ? in(row + r, col + c) : fenced<record_of<cut>>::post(); });
    });
  });
}

TEST(Zeropad, KeepsTheUpperLeft) {
  each_form<REAL_FORMS(assign_zeropad)>([]<auto pad> {
    const auto in = numbers<pad>(3, 4);
    const auto move = [&](auto* out) { return pad(&in, nullptr, out); };
    for (const auto& [rows, cols] : {std::pair{3, 4}, {5, 4}, {3, 9}, {6, 7}})
      expect_moved(in, rows, cols, KORVO_ERR_OK, move,
                   [&](int r, int c) { return r < 3 && c < 4 ? in(r, c) : 0; });
  });
}

TEST(Assign, CopiesOrFillsOrFindsNothingToDo) {
  each_form<REAL_FORMS(assign)>([]<auto assign> {
    auto in = numbers<assign>(5, 7);
    const auto move = [&](auto* out) { return assign(&in, nullptr, out); };
    expect_moved(in, 5, 7, KORVO_ERR_OK, move, in);
    fake_host host(1);
    EXPECT_EQ(assign(&in, host.intrp_ptr(), &in), KORVO_ERR_OK) << "no poll";
    record_of<assign> turned = {7, 5, 35, in.data};
    EXPECT_EQ(assign(&in, nullptr, &turned), KORVO_ERR_ILLEGAL_SIZE) << "shapes before the shortcut";
  });
  each_form<ALL_FORMS(assign_scalar)>([&]<auto fill> {
    const auto check = []<class T, class M>(_korvo_errcode (*form)(T, void*, M*)) {
      const auto move = [&](M* out) { return form(as_element<T>(3), nullptr, out); };
      expect_moved(matrix<M>(1, 1), 5, 7, KORVO_ERR_OK, move, [](int, int) { return as_element<T>(3); });
    };
    check(fill);
  });
}

TEST(Moves, PollAtTheirStatedCosts) {
  const auto in = numbers<mats16_assign>(5, 7);
  s16_matrix out(5, 7), large(8, 9), turned(7, 5), piece(3, 4), strip(1, 4);
  expect_tallies([&](void* host) { return mats16_assign(&in, host, &out); }, {35.0});
  expect_tallies([&](void* host) { return mats16_assign_scalar(1, host, &out); }, {70.0});
  expect_tallies([&](void* host) { return mats16_assign_zeropad(&in, host, &large); },
                 {8, 16, 24, 32, 40, 76, 112, 148}, steps_of(5, 56.0));
  expect_tallies([&](void* host) { return mats16_extract(&in, 1, 2, host, &piece); }, steps_of(4, 16.0));
  expect_tallies([&](void* host) { return mats16_extract(&in, 1, 2, host, &strip); }, {});
  expect_tallies([&](void* host) { return mats16_transpose(&in, host, &turned); }, steps_of(7, 40.0));
  expect_tallies([&](void* host) { return mats16_translate(&in, -2, 3, 0, host, &out); }, steps_of(3, 40.0),
                 {70.0});
  expect_tallies([&](void* host) { return mats16_flip_left_right(&in, host, &out); }, steps_of(5, 56.0));
  expect_tallies([&](void* host) { return mats16_flip_up_down(&in, host, &out); }, steps_of(3, 56.0));
}

TEST(UniversalMoves, RefuseTypesWithoutAForm) {
  double data[2] = {}, more[2] = {};
  for (int type = -1; type <= 9; ++type) {
    const _univ_mat in = {1, 1, 1, data, static_cast<_korvo_type>(type)};
    _univ_mat out = {1, 1, 1, more, in.type};
    const auto expect = [](bool exists, _korvo_errcode code) {
      EXPECT_EQ(code, exists ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_TYPE);
    };
    const bool is_real = type == 0 || (type >= 2 && type <= 7);
    for (auto* const form : {matuniv_assign, matuniv_assign_zeropad}) expect(is_real, form(&in, nullptr, &out));
    expect(is_real, matuniv_translate(&in, 1, 1, {_univ_value{.u8 = 1}, in.type}, nullptr, &out));
    for (auto* const form : {matuniv_transpose, matuniv_flip_left_right, matuniv_flip_up_down})
      expect(is_real || type == KORVO_DCOMPLEX, form(&in, nullptr, &out));
    for (auto* const form : {matuniv_assign_submat, matuniv_extract})
      expect(is_real || type == KORVO_DCOMPLEX, form(&in, 0, 0, nullptr, &out));
    const _univ_scalar other = {_univ_value{.dbl = 1.0}, type == KORVO_DOUBLE ? KORVO_FLOAT : KORVO_DOUBLE};
    expect(false, matuniv_assign_scalar(other, nullptr, &out));  // never converted
    expect(false, matuniv_translate(&in, 0, 0, other, nullptr, &out));
  }
}

}  // namespace

#include "korvos/segment/img_edge.h"

#include "tests/support/all.hpp"

namespace {

using namespace korvo;

TEST(SobelGradient, ShowsItsMasksTurnedAboutAnImpulseOnAPlainWithZeroAround) {
  const dbl_matrix image(3, 3, {1, 1, 1, 1, 2, 1, 1, 1, 1}), row(3, 3), column(3, 3);
  _univ_mat in = image.universal(), to_row = row.universal(), to_column = column.universal();
  EXPECT_EQ(imguniv_gradient_sobel(&in, nullptr, &to_row, &to_column), KORVO_ERR_OK);
  EXPECT_EQ(row.elements(), dbl_matrix(3, 3, {4, 6, 4, 0, 0, 0, -4, -6, -4}).elements());
  EXPECT_EQ(column.elements(), dbl_matrix(3, 3, {4, 0, -4, 6, 0, -6, 4, 0, -4}).elements());
  EXPECT_EQ(imguniv_gradient_sobel(&in, nullptr, &to_row, &to_row), KORVO_ERR_ILLEGAL_ADDRESS);
}

// Around an impulse of 1 the squared magnitude is 4 beside it and 2 at its corners.
TEST(SobelEdges, TakeJustTheThresholdOnlyIfThereIsOne) {
  constexpr double cases[][5] = {{1, 2, 2, 0, 4},    {1, 1, 2, 0, 8},           {1, 2, 2.5, 0, 0},
                                 {1, 1.9, 2, 0, 4},  {1, 1e-170, 1e-165, 0, 9}, {2e18, 1, 1, 0, 4},
                                 {2e18, 1, 2, 0, 8}, {1, 2, 2, 1, 9},           {1, 1, 2, 1, -1}};
  for (const auto& [impulse, low, high, background, edges] : cases) {
    const dbl_matrix image(3, 3, {0, 0, 0, 0, impulse}), out(3, 3);
    _univ_mat in = image.universal(), to = out.universal();
    const _univ_scalar edge = {{.dbl = 1.0}, KORVO_DOUBLE}, other = {{.dbl = background}, KORVO_DOUBLE};
    const bool done = imguniv_edge_sobel(&in, low, high, edge, other, nullptr, &to) == KORVO_ERR_OK;
    EXPECT_EQ(done ? std::count(out.data, out.data + 9, 1.0) : -1, edges) << impulse << ", " << low;
  }
}

}  // namespace

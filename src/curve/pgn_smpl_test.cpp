#include "korvos/curve/pgn_smpl.h"

#include "tests/support/all.hpp"

using namespace korvo;

namespace {

std::vector<double> resampled(const dbl_matrix& polygon, bool closed, int count) {
  dbl_matrix out(count, 2);
  const _univ_mat from = polygon.universal();
  _univ_mat to = out.universal();
  EXPECT_EQ(pgnuniv_resample_linear(&from, closed, nullptr, &to), KORVO_ERR_OK);
  return out.elements();
}
using numbers = std::vector<double>;

}  // namespace

TEST(Resampling, SpacesVerticesEquallyAlongTheContour) {
  const dbl_matrix square(4, 2, {0, 0, 4, 0, 4, 4, 0, 4});
  EXPECT_EQ(resampled(square, true, 4), square.elements());
  EXPECT_EQ(resampled(square, true, 8), (numbers{0, 0, 2, 0, 4, 0, 4, 2, 4, 4, 2, 4, 0, 4, 0, 2}));
  EXPECT_EQ(resampled(square, false, 5), (numbers{0, 0, 3, 0, 4, 2, 3, 4, 0, 4}));
  EXPECT_EQ(resampled(square, false, 1), (numbers{0, 0}));
  for (const bool closed : {false, true}) {
    const dbl_matrix still(3, 2, 7.0);
    EXPECT_EQ(resampled(still, closed, 3), still.elements());
    EXPECT_EQ(resampled(dbl_matrix(1, 2, 7.0), closed, 3), still.elements());
  }
}

TEST(Resampling, PassesSidesWithoutLengthAndEndsOnTheLastVertex) {
  const dbl_matrix doubled(5, 2, {0, 0, 0, 0, 3, 4, 3, 4, 6, 8});
  EXPECT_EQ(resampled(doubled, false, 5), (numbers{0, 0, 1.5, 2, 3, 4, 4.5, 6, 6, 8}));
  const dbl_matrix random = dbl_matrix::random(37, 2, 1);
  const numbers ends = resampled(random, false, 1000);
  EXPECT_NEAR(ends[1998], random(36, 0), 1e-9);
  EXPECT_NEAR(ends[1999], random(36, 1), 1e-9);
}

TEST(Resampling, RefusesALengthThatIsNotFinite) {
  dbl_matrix out(3, 2);
  _univ_mat to = out.universal();
  for (const double x : {double{NAN}, double{INFINITY}, 1e300}) {
    const dbl_matrix polygon(2, 2, {0, 0, x, 1});
    const _univ_mat from = polygon.universal();
    EXPECT_EQ(pgnuniv_resample_linear(&from, 1, nullptr, &to), KORVO_ERR_ILLEGAL_VALUE);
  }
}

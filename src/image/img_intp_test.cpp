#include "korvos/image/img_intp.h"

#include "tests/support/all.hpp"

using namespace korvo;

namespace {

double at(const _univ_mat& image, double row, double col) {
  double value = -1;
  EXPECT_EQ(imguniv_interpolate_linear(&image, row, col, nullptr, &value), KORVO_ERR_OK);
  return value;
}

}  // namespace

TEST(Interpolation, IsBilinearInsideAndFallsToZeroOutside) {
  each_record(real_records{}, []<class M> {
    const matrix<M> pixels(2, 3, {1, 2, 4, 8, 16, 32});
    const _univ_mat image = pixels.universal();
    EXPECT_EQ(at(image, 1, 2), 32);
    EXPECT_EQ(at(image, 0.25, 0), 0.75 * 1 + 0.25 * 8);
    EXPECT_EQ(at(image, 0.5, 1.75), 0.5 * (0.25 * 2 + 0.75 * 4) + 0.5 * (0.25 * 16 + 0.75 * 32));
    EXPECT_EQ(at(image, -0.25, 1), 0.75 * 2);
    EXPECT_EQ(at(image, 1.5, 2.5), 0.25 * 32);
    for (const double far : {-1.0, 3.0, 1e300, -double{INFINITY}, double{INFINITY}, double{NAN}})
      EXPECT_TRUE(at(image, far, 1) == 0 && at(image, 1, far) == 0) << far;
  });
}

TEST(Interpolation, ReadsNoCornerBesideAWholeNumber) {
  const dbl_matrix pixels(1, 2, {3, INFINITY});
  EXPECT_EQ(at(pixels.universal(), 0, 0), 3);
}

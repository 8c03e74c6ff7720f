#include "korvos/wavelet/wav_wtmm.h"

#include "tests/support/all.hpp"

namespace {

using namespace korvo;

TEST(ModulusMaxima, AreStrictAndFlatInTheMask) {
  const auto expect = [](const dbl_matrix& w, double tolerance, std::uint8_t ends,
                         std::vector<std::int32_t> marks) {
    const s32_matrix mask(1, w.nelem, 7);  // of another shape
    const _univ_mat in = w.universal();
    _univ_mat out = mask.universal();
    each_level([&] {
      EXPECT_EQ(wavuniv_transform_modulus_maxima(&in, tolerance, ends, nullptr, &out), KORVO_ERR_OK);
      EXPECT_EQ(mask.elements(), marks);
    });
  };
  expect({2, 5, {1, -3, 2, 2, 1, 5, 4, 3, 2, 3}}, 0.0, 0, {0, 1, 0, 0, 0, 0, 0, 0, 0, 0});
  expect({2, 5, {1, -3, 2, 2, 1, 5, 4, 3, 2, 3}}, 0.0, 255, {0, 1, 0, 0, 0, 1, 0, 0, 0, 1});
  expect({1, 5, {1, 3, 1, 4, 2}}, 2.0, 0, {0, 0, 0, 0, 0});
  expect({1, 5, {1, 3, 3, 3, 2}}, -0.5, 1, {0, 1, 1, 1, 0});
  expect({4, 1, {3, 2, 1, 4}}, 0.0, 1, {1, 1, 0, 0});  // the next row stands for the right neighbour
  expect({1, 5, {1, 3, NAN, 4, 2}}, 0.0, 1, {0, 0, 0, 0, 0});
  s32_matrix twin(1, 301);
  const auto w = dbl_matrix::random(1, 301, 1, -9.0, 9.0);
  for (int j = 1; j < 300; ++j)
    twin(0, j) = std::fabs(w(0, j)) > std::max(std::fabs(w(0, j - 1)), std::fabs(w(0, j + 1))) + 1.0;
  expect(w, 1.0, 0, twin.elements());
}

TEST(ModulusMaxima, PollARow) {
  const dbl_matrix w(4, 6);
  const s32_matrix marks(6, 4);
  const _univ_mat in = w.universal();
  _univ_mat mask = marks.universal();
  expect_tallies([&](void* host) { return wavuniv_transform_modulus_maxima(&in, 0.0, 0, host, &mask); },
                 {18.0, 18.0, 18.0, 18.0});
}

}  // namespace

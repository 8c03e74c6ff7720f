#include "korvos/matrix/mat_summ.h"

#include "tests/support/all.hpp"

namespace {

using namespace korvo;

TEST(Range, FindsTheExtremesWhereverTheyAre) {
  each_form<REAL_FORMS(range)>([]<auto range> {
    using M = record_of<range>;
    using limits = std::numeric_limits<element<M>>;
    for (const std::int32_t at : {0, 65, 130}) {
      matrix<M> mat(1, 131, element<M>(9));
      mat(0, at) = limits::lowest();
      mat(0, (at + 1) % 131) = limits::max();
      element<M> least{}, greatest{};
      EXPECT_EQ(range(&mat, nullptr, &least, &greatest), KORVO_ERR_OK);
      EXPECT_TRUE(least == limits::lowest() && greatest == limits::max()) << at;
    }
  });
}

TEST(Range, StartsFromTheFirstElement) {
  double least = 0.0, greatest = 0.0;
  const dbl_matrix later(1, 3, {3, std::nan(""), 2}), zeros(1, 2, {-0.0, 0.0}), first(1, 2, {std::nan(""), 1});
  EXPECT_EQ(matdbl_range(&later, nullptr, &least, &greatest), KORVO_ERR_OK);
  EXPECT_TRUE(least == 2.0 && greatest == 3.0);
  EXPECT_EQ(matdbl_range(&zeros, nullptr, &least, &greatest), KORVO_ERR_OK);
  EXPECT_TRUE(std::signbit(least) && std::signbit(greatest)) << "the first zero stays";
  EXPECT_EQ(matdbl_range(&first, nullptr, &least, &greatest), KORVO_ERR_OK);
  EXPECT_TRUE(std::isnan(least) && std::isnan(greatest));
}

TEST(Range, RefusesInOrderAndSetsTheRangeBeforeThePoll) {
  const s16_matrix mat(2, 3, {5, -4, 3, 2, 1, 0});
  _univ_mat in = {2, 3, 5, mat.data, KORVO_SINT16};
  _univ_scalar low = {_univ_value{.s16 = 7}, KORVO_DOUBLE}, high = low;
  EXPECT_EQ(matuniv_range(&in, nullptr, nullptr, &high), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matuniv_range(&in, nullptr, &low, &high), KORVO_ERR_ILLEGAL_SIZE);
  EXPECT_TRUE(low.value.s16 == 7 && low.type == KORVO_DOUBLE) << "not written without a range";
  in.nelem = 6;
  fake_host host(1);
  EXPECT_EQ(matuniv_range(&in, host.intrp_ptr(), &low, &high), KORVO_ERR_INTERRUPT);
  EXPECT_TRUE(low.type == KORVO_SINT16 && low.value.s16 == -4 && high.value.s16 == 5);
}

}  // namespace

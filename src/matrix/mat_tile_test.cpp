#include "korvos/matrix/mat_tile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "tests/support/costs.hpp"
#include "tests/support/levels.hpp"
#include "tests/support/matrix.hpp"

using namespace korvo;

namespace {

// A set over matrices of the test's own.
template <class M>
class set_of {
 public:
  set_of(std::vector<std::int32_t> dims, std::int32_t rows, std::int32_t cols) : dims_(std::move(dims)) {
    std::int32_t count = 1;
    for (const std::int32_t dim : dims_) count *= dim;
    for (std::int32_t k = 0; k < count; ++k)
      members.push_back(matrix<M>::random(rows, cols, static_cast<unsigned>(100 + k)));
    for (const matrix<M>& member : members) mats_.push_back(member.universal());
    record = {static_cast<std::int32_t>(dims_.size()), dims_.data(), count, mats_.data()};
  }
  set_of(const set_of&) = delete;
  set_of& operator=(const set_of&) = delete;

  _mat_set record{};
  std::vector<matrix<M>> members;

 private:
  std::vector<std::int32_t> dims_;
  std::vector<_univ_mat> mats_;
};

// The rule, element by element, at widths on both sides of a vector and both ways, for all element types.
TEST(Tile, InterleavesTheGridOfASet) {
  struct {
    std::vector<std::int32_t> dims;
    std::int32_t d0, d1;
  } const grids[] = {{{3}, 1, 3}, {{4}, 1, 4}, {{1, 3}, 1, 3}, {{2, 3}, 2, 3}, {{3, 2}, 3, 2}, {{1}, 1, 1}};
  const auto check = [&]<class M> {
    for (const auto& grid : grids)
      for (const std::int32_t cols : {1, 7, 131}) {
        set_of<M> set(grid.dims, 3, cols);
        matrix<M> tiled(3 * grid.d0, cols * grid.d1);
        _univ_mat out = tiled.universal();
        ASSERT_EQ(matset_tile(&set.record, nullptr, &out), KORVO_ERR_OK);
        for (std::int32_t r = 0; r < tiled.nrow; ++r)
          for (std::int32_t c = 0; c < tiled.ncol; ++c) {
            const auto member = static_cast<std::size_t>(r % grid.d0 * grid.d1 + c % grid.d1);
            ASSERT_TRUE(tiled(r, c) == set.members[member](r / grid.d0, c / grid.d1)) << r << ", " << c;
          }

        const std::vector<matrix<M>> before = set.members;
        for (matrix<M>& member : set.members) std::fill_n(member.data, member.nelem, element<M>{});
        ASSERT_EQ(matset_untile(&out, nullptr, &set.record), KORVO_ERR_OK);
        for (std::size_t k = 0; k < before.size(); ++k)
          for (std::int32_t i = 0; i < before[k].nelem; ++i)
            ASSERT_TRUE(set.members[k].data[i] == before[k].data[i]) << "member " << k << ", element " << i;
      }
  };
  each_level([&] { each_record(all_records{}, check); });
}

TEST(Tile, RefusesInItsOrder) {
  set_of<_u8_mat> set({3}, 2, 4);
  u8_matrix tiled(2, 12);
  _univ_mat out = tiled.universal();
  const auto both = [&](_korvo_errcode expected) {
    EXPECT_EQ(matset_tile(&set.record, nullptr, &out), expected);
    EXPECT_EQ(matset_untile(&out, nullptr, &set.record), expected);
  };
  EXPECT_EQ(matset_tile(nullptr, nullptr, &out), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matset_tile(&set.record, nullptr, nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matset_untile(nullptr, nullptr, &set.record), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matset_untile(&out, nullptr, nullptr), KORVO_ERR_NULL_POINTER);

  // Each fault is met before all that were brought in earlier.
  out.data = set.record.mats[2].data;
  both(KORVO_ERR_ILLEGAL_ADDRESS);
  out.ncol = 6;
  out.nelem = 12;
  both(KORVO_ERR_ILLEGAL_SIZE);
  out.type = KORVO_UINT16;
  both(KORVO_ERR_ILLEGAL_TYPE);
  out.data = nullptr;
  both(KORVO_ERR_NULL_POINTER);
  set.record.mats[1].nelem = 5;
  both(KORVO_ERR_ILLEGAL_SIZE);
  set.record.mats[1].type = KORVO_SINT16;
  both(KORVO_ERR_ILLEGAL_TYPE);
  set.record.nmat = 2;
  both(KORVO_ERR_ILLEGAL_VALUE);

  set_of<_u8_mat> three_dimensions({1, 1, 3}, 2, 4);
  out = tiled.universal();
  EXPECT_EQ(matset_tile(&three_dimensions.record, nullptr, &out), KORVO_ERR_ILLEGAL_SIZE);
  // 3 times 1431655766 is 2 in 32 bits.
  set_of<_u8_mat> wide({3}, 1, 1);
  for (std::int32_t k = 0; k < 3; ++k) {
    wide.record.mats[k].ncol = 1431655766;
    wide.record.mats[k].nelem = 1431655766;
  }
  u8_matrix two(1, 2);
  out = two.universal();
  EXPECT_EQ(matset_tile(&wide.record, nullptr, &out), KORVO_ERR_ILLEGAL_SIZE);
}

TEST(Tile, PollsAfterEachRowOfTheTiledMatrix) {
  set_of<_u8_mat> set({2, 3}, 2, 4);
  u8_matrix tiled(4, 12);
  _univ_mat out = tiled.universal();
  const std::vector<double> tallies = steps_of(4, 8.0 * 12);
  expect_tallies([&](void* intrp_ptr) { return matset_tile(&set.record, intrp_ptr, &out); }, tallies);
  expect_tallies([&](void* intrp_ptr) { return matset_untile(&out, intrp_ptr, &set.record); }, tallies);
}

}  // namespace

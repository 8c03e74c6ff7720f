#include "korvos/matrix/mat_tile.h"

#include "tests/support/all.hpp"

using namespace korvo;

namespace {

// A set over matrices of the test's own.
template <class M>
struct set_of {
  set_of(std::vector<std::int32_t> of, std::int32_t rows, std::int32_t cols, unsigned seed = 0) : dims(of) {
    std::int32_t count = 1;
    for (const std::int32_t dim : dims) count *= dim;
    for (std::int32_t k = 0; k < count; ++k) members.push_back(matrix<M>::random(rows, cols, seed++));
    for (const matrix<M>& member : members) mats.push_back(member.universal());
    record = {static_cast<std::int32_t>(dims.size()), dims.data(), count, mats.data()};
  }
  std::vector<std::int32_t> dims;
  std::vector<matrix<M>> members;
  std::vector<_univ_mat> mats;
  _mat_set record{};
};

// The rule, element by element, at widths on both sides of a vector and both ways, for all element types.
TEST(Tile, InterleavesTheGridOfASet) {
  const auto check = []<class M> {
    for (const std::vector<std::int32_t>& dims : {std::vector{3}, {4}, {1}, {1, 3}, {2, 3}, {3, 2}})
      for (const std::int32_t cols : {1, 7, 131}) {
        const std::int32_t d0 = dims.size() == 1 ? 1 : dims[0], d1 = dims.back();
        set_of<M> set(dims, 3, cols), back(dims, 3, cols, 100);
        matrix<M> tiled(3 * d0, cols * d1);
        _univ_mat out = tiled.universal();
        ASSERT_EQ(matset_tile(&set.record, nullptr, &out), KORVO_ERR_OK);
        ASSERT_EQ(matset_untile(&out, nullptr, &back.record), KORVO_ERR_OK);
        for (std::int32_t r = 0; r < tiled.nrow; ++r)
          for (std::int32_t c = 0; c < tiled.ncol; ++c) {
            const auto member = static_cast<std::size_t>(r % d0 * d1 + c % d1);
            ASSERT_EQ(tiled(r, c), set.members[member](r / d0, c / d1)) << r << ", " << c;
            ASSERT_EQ(tiled(r, c), back.members[member](r / d0, c / d1)) << r << ", " << c;
          }
      }
  };
  each_level([&] { each_record(all_records{}, check); });
}

// Each fault is met before all that were brought in earlier.
TEST(Tile, RefusesInItsOrderAndPollsAfterEachTiledRow) {
  set_of<_u8_mat> set({3}, 2, 4), solid({1, 1, 3}, 2, 4), wide({3}, 1, 1);
  const u8_matrix tiled(2, 12);
  _univ_mat out = tiled.universal();
  const auto untile = [&](void* intrp_ptr) { return matset_untile(&out, intrp_ptr, &set.record); };
  expect_tallies(untile, steps_of(2, 8.0 * 12));

  const auto refuse = [&](_korvo_errcode expected, _mat_set* of) {
    EXPECT_EQ(matset_tile(of, nullptr, &out), expected);
    EXPECT_EQ(matset_untile(&out, nullptr, of), expected);
  };
  EXPECT_EQ(matset_tile(&set.record, nullptr, nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matset_untile(nullptr, nullptr, &set.record), KORVO_ERR_NULL_POINTER);
  refuse(KORVO_ERR_NULL_POINTER, nullptr), refuse(KORVO_ERR_ILLEGAL_SIZE, &solid.record);
  out.data = set.mats[2].data, refuse(KORVO_ERR_ILLEGAL_ADDRESS, &set.record);
  out.ncol = 6, out.nelem = 12, refuse(KORVO_ERR_ILLEGAL_SIZE, &set.record);
  out.type = KORVO_UINT16, refuse(KORVO_ERR_ILLEGAL_TYPE, &set.record);
  out.data = nullptr, refuse(KORVO_ERR_NULL_POINTER, &set.record);
  set.mats[1].nelem = 5, refuse(KORVO_ERR_ILLEGAL_SIZE, &set.record);
  set.mats[1].type = KORVO_SINT16, refuse(KORVO_ERR_ILLEGAL_TYPE, &set.record);
  set.record.nmat = 2, refuse(KORVO_ERR_ILLEGAL_VALUE, &set.record);
  // 3 times 1431655766 is 2 in 32 bits.
  for (_univ_mat& mat : wide.mats) mat.ncol = mat.nelem = 1431655766;
  out = {1, 2, 2, tiled.data, KORVO_UINT8}, refuse(KORVO_ERR_ILLEGAL_SIZE, &wide.record);
}

}  // namespace

#include "korvos/segment/img_ccmp.h"

#include "tests/support/all.hpp"

namespace {

using namespace korvo;
using std::int32_t, std::uint32_t;
using u32_matrix = matrix<_u32_mat>;

// Labels the ones of planes that lie one under the other by flood fill, with 4, 8 or 6 neighbours.
uint32_t flood(u32_matrix& image, int32_t planes, int32_t neighbours, uint32_t min_size) {
  const int32_t cols = image.ncol, rows = image.nrow / planes, width = cols + 2, plane = (rows + 2) * width;
  const int32_t up = neighbours == 6 ? plane : width + 1,
                near[] = {1, -1, width, -width, up, -up, width - 1, 1 - width};
  u32_matrix padded(planes + 2, plane), found(planes + 2, plane);
  uint32_t count = 1, *const at = padded.data, *const first = found.data;
  const auto place = [&](int32_t i) {
    return (i / cols + i / cols / rows * 2 + rows + 3) * width + i % cols + 1;
  };
  for (int32_t i = 0; i < image.nelem; ++i) at[place(i)] = image.data[i] ? UINT32_MAX : 0;
  for (int32_t i = 0; i < image.nelem; ++i) {
    uint32_t n = 0, start = uint32_t(place(i));
    if (at[start] == UINT32_MAX) at[first[n++] = start] = 0;
    for (uint32_t k = 0; k < n; ++k)
      for (int32_t j = 0; j < neighbours; ++j)
        if (const uint32_t q = first[k] + uint32_t(near[j]); at[q] == UINT32_MAX) at[first[n++] = q] = 0;
    const uint32_t label = n == 0 || n < min_size ? 0 : count++;
    for (uint32_t k = 0; k < n; ++k) at[first[k]] = label;
    image.data[i] = at[start];
  }
  return count;
}

TEST(Components, AreThoseOfFloodFillOnEverySmallImageAndInItsPlace) {
  for (int32_t shape = 0; shape < 20; ++shape) {
    const int32_t rows = shape / 5 + 1, cols = shape % 5 + 1, n = rows * cols;
    u32_matrix image(rows, cols), expected(rows, cols);
    for (uint32_t bits = 0, count = 0; bits >> n == 0; ++bits)
      for (const int32_t neighbours : {4, 8}) {
        const uint32_t min_size = bits * 0x9E3779B9U >> 30;
        for (int32_t i = 0; i < n; ++i) expected.data[i] = image.data[i] = bits >> i & 1;
        (void)imgu32_connected_components(&image, neighbours - 4, 1, min_size, nullptr, &image, &count);
        ASSERT_EQ(count, flood(expected, 1, neighbours, min_size)) << rows << " rows, bits " << bits;
        ASSERT_TRUE(same_bits<_u32_mat>(image, expected)) << rows << " rows, bits " << bits;
      }
  }
}

// Planes one under the other as a set.
struct stack : _mat_set {
  template <class M>
  stack(const matrix<M>& all, int32_t planes) : _mat_set{1, &nmat, planes, members} {
    for (int32_t p = 0, rows = all.nrow / planes, n = all.nelem / planes; p < planes; ++p)
      members[p] = {rows, all.ncol, n, all.data + p * n, tag<M>::type};
  }
  _univ_mat members[9];
};

TEST(Components, AreThoseOfFloodFillForEachTypeShapeAndStack) {
  each_form<imgu8_connected_components, imgu16_connected_components, imgu32_connected_components,
            imgs16_connected_components, imgs32_connected_components, imgdbl_connected_components>(
      []<auto form> {
        using M = record_of<form>;
        _univ_scalar seven = {{}, tag<M>::type};
        seven.value.*tag<M>::member = 7;
        const int32_t shapes[][3] = {{1, 1, 1},  {1, 1, 5000}, {9, 30, 1},  {3, 30, 2},
                                     {5, 7, 64}, {1, 41, 65},  {4, 40, 301}};
        for (const auto& [planes, rows, cols] : shapes)
          for (const int32_t neighbours : {4, 8, 6}) {
            u32_matrix expected(planes * rows, cols), out(planes * rows, cols, 99);
            const uint32_t min_size = uint32_t(rows + neighbours) % 5;
            const auto in = matrix<M>::random(planes * rows, cols, unsigned(rows), 6 - neighbours % 3, 8);
            for (int32_t i = 0; i < in.nelem; ++i) expected.data[i] = in.data[i] == 7;
            const stack images(in, planes);
            stack labels(out, planes);
            uint32_t count = 0;
            code result = form(&in, neighbours == 8 ? -256 : 0, 7, min_size, nullptr, &out, &count);
            if (neighbours == 6)
              result = imgset_connected_components_3d(&images, rows, seven, min_size, nullptr, &labels, &count);
            const bool has_form = neighbours != 6 || seven.type != KORVO_SINT16;
            EXPECT_EQ(result, has_form ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_TYPE);
            if (!has_form) continue;
            EXPECT_EQ(count, flood(expected, neighbours == 6 ? planes : 1, neighbours, min_size));
            EXPECT_EQ(out.elements(), expected.elements());
          }
      });
}

TEST(Components, AreNoneOfNanAndOfBothZeros) {
  const dbl_matrix in(1, 3, {std::nan(""), -0.0, 0.0});
  u32_matrix out(1, 3);
  uint32_t count = 0;
  EXPECT_EQ(imgdbl_connected_components(&in, 0, 0.0, 2, nullptr, &out, &count), KORVO_ERR_OK);
  EXPECT_TRUE(count == 2 && out.elements() == (std::vector<uint32_t>{0, 1, 1}));
  EXPECT_EQ(imgdbl_connected_components(&in, 0, in(0, 0), 0, nullptr, &out, &count), KORVO_ERR_OK);
  EXPECT_TRUE(count == 1 && out.elements() == std::vector<uint32_t>(3));
}

TEST(Components, CostByRowsAndPasses) {
  const u8_matrix in(4, 30, 1);
  u32_matrix out(4, 30);
  const stack images(in, 2);
  stack labels(out, 2);
  uint32_t count = 0;
  int32_t flag = 0;
  const auto of_image = [&](void* host) {
    return imgu8_connected_components(&in, flag, 1, 2, host, &out, &count);
  };
  expect_tallies(of_image, {150, 900, 1650, 2400, 2520, 2640});
  flag = 1;
  expect_tallies(of_image, {150, 3150, 6150, 9150, 9270, 9390});
  const auto of_stack = [&](void* host) {
    return imgset_connected_components_3d(&images, 0, {{.u8 = 1}, KORVO_UINT8}, 2, host, &labels, &count);
  };
  expect_tallies_of(of_stack, {{150, 900, 960, 1020}, {600, 1200, 1320, 1440}});
}

TEST(Components, RefuseInOrder) {
  const u32_matrix integers(4, 6), thin(4, 5);
  const flt_matrix floats(4, 6);
  _univ_mat out = integers.universal(), wide = floats.universal();
  uint32_t n = 0;
  const auto universal = [&](_univ_mat& in) {
    return imguniv_connected_components(&in, 0, {{}, in.type}, 0, nullptr, &out, nullptr);
  };
  EXPECT_TRUE(universal(wide) == KORVO_ERR_ILLEGAL_TYPE && universal(out) == KORVO_ERR_NULL_POINTER);
  stack good(integers, 2), one(integers, 1), wrong(floats, 2), uneven(thin, 2), empty(integers, 2);
  uneven.members[1].type = KORVO_UINT8;
  empty.members[1].data = nullptr;
  const auto refuses = [&](const stack& in, stack& to, _korvo_type type, uint32_t* count, code expected) {
    EXPECT_EQ(imgset_connected_components_3d(&in, 0, {{}, type}, 0, nullptr, &to, count), expected);
  };
  refuses(good, uneven, KORVO_FLOAT, nullptr, KORVO_ERR_ILLEGAL_TYPE);
  refuses(one, wrong, KORVO_FLOAT, nullptr, KORVO_ERR_NULL_POINTER);
  refuses(one, wrong, KORVO_FLOAT, &n, KORVO_ERR_ILLEGAL_TYPE);
  refuses(one, good, KORVO_FLOAT, &n, KORVO_ERR_ILLEGAL_SIZE);
  refuses(empty, good, KORVO_FLOAT, &n, KORVO_ERR_ILLEGAL_TYPE);
  refuses(good, empty, KORVO_UINT32, &n, KORVO_ERR_NULL_POINTER);
}

}  // namespace

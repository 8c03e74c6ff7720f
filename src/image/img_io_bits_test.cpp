#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "korvos/image/img_io.h"
#include "tests/support/matrix.hpp"
#include "tests/support/stream.hpp"

using namespace korvo;

namespace {

TEST(Bits, AreWrittenWithAnySeparatorAndLineLength) {
  const u8_matrix image(1, 5, {0, 9, 9, 0, 9});
  const _univ_mat mat = image.universal();
  const auto bits = [&](std::uint8_t raw, const char* separator, std::uint16_t length) {
    fault_stream out;
    EXPECT_EQ(imguniv_write_to_bits(out.get(), &mat, 8.0, raw, separator, length, nullptr), KORVO_ERR_OK);
    return out.text();
  };
  EXPECT_EQ(bits(0, nullptr, 70), "1 0 0 1 0\n");
  EXPECT_EQ(bits(0, "", 3), "100\n10\n");
  EXPECT_EQ(bits(0, ", ", 5), "1, \n0, \n0, \n1, \n0\n");
  EXPECT_EQ(bits(0, ", ", 6), "1, 0, \n0, 1, \n0\n");
  EXPECT_EQ(bits(0, " ", 0), "\n1 \n0 \n0 \n1 \n0\n");
  EXPECT_EQ(bits(0, " a long one ", 65535), "1 a long one 0 a long one 0 a long one 1 a long one 0\n");
  for (const int raw : {1, 2, 255}) EXPECT_EQ(bits(static_cast<std::uint8_t>(raw), nullptr, 0), "\x97");
}

TEST(Bits, AreReadIntoEachTypeThatHasThem) {
  each_record(records<_u8_mat, _u16_mat, _u32_mat, _dbl_mat>{}, [&]<class M> {
    _univ_scalar zero_bit = {{}, tag<M>::type};
    zero_bit.value.*tag<M>::member = 77;
    const auto reads = [&](const std::string& text, std::uint8_t raw, std::int32_t skip) {
      const matrix<M> image(2, 5, 1);
      _univ_mat mat = image.universal();
      EXPECT_EQ(imguniv_read_from_bits(fault_stream(text).get(), zero_bit, raw, skip, ';', '%', nullptr, &mat),
                KORVO_ERR_OK);
      return std::vector<double>(image.elements().begin(), image.elements().end());
    };
    const std::vector<double> expected = {0, 77, 0, 77, 77, 77, 77, 77, 77, 0};
    EXPECT_EQ(reads("\xa0\x40", 1, 0), expected);
    EXPECT_EQ(reads("skip\xa0\x40", 3, 4), expected);
    EXPECT_EQ(reads("1;0;255 0 0 % 1\n0;; 0 0\n0 2", 0, -1), expected);
  });
}

TEST(Bits, AreRefusedInTheOrderOfTheChecks) {
  const s16_matrix image(1, 8);
  _univ_mat mat = image.universal();
  _univ_scalar zero_bit = {{.s16 = 1}, KORVO_SINT16};
  fault_stream stream("ab");
  const auto reads = [&](FILE* from, std::int32_t skip) {
    return imguniv_read_from_bits(from, zero_bit, 1, skip, ' ', '#', nullptr, &mat);
  };
  EXPECT_EQ(reads(stream.get(), 0), KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(std::fgetc(stream.get()), 'b') << "the bits have been read";
  EXPECT_EQ(reads(stream.get(), 0), KORVO_ERR_IO);
  // Each fault is met before all that were brought in earlier.
  zero_bit.type = KORVO_UINT16;
  EXPECT_EQ(reads(stream.get(), 0), KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(reads(stream.get(), -1), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(reads(nullptr, -1), KORVO_ERR_NULL_POINTER);
  mat.nelem = 7;
  EXPECT_EQ(reads(nullptr, -1), KORVO_ERR_ILLEGAL_SIZE);
  const auto writes = [](FILE* to, const _univ_mat* from) {
    return imguniv_write_to_bits(to, from, 0.0, 1, nullptr, 70, nullptr);
  };
  EXPECT_EQ(writes(nullptr, &mat), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(writes(stream.get(), nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(writes(stream.get(), &mat), KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(stream.text(), "ab");
}

}  // namespace

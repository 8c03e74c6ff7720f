#include "korvos/image/img_io.h"

#include "tests/support/all.hpp"
#include "tests/support/locale.hpp"
#include "tests/support/stream.hpp"

using namespace korvo;
using namespace std::string_literals;

namespace {

// What a reader gave: its code alone, or the type, rows, columns and samples, plane after plane.
using picture = std::vector<double>;

picture shown(const std::vector<_univ_mat>& planes) {
  picture seen = {double(planes[0].type), double(planes[0].nrow), double(planes[0].ncol)};
  for (const _univ_mat& plane : planes)
    (void)dispatch(plane.type, records<_u8_mat, _u16_mat, _u32_mat>{}, [&]<class M> {
      seen.insert(seen.end(), as<M>(plane).data, as<M>(plane).data + plane.nelem);
      return KORVO_ERR_OK;
    });
  return seen;
}

// Reads and frees. A reader that fails must leave an empty record and nothing allocated.
picture read(bool colour, FILE* stream, void* host = nullptr) {
  const int live = heap::live_blocks();
  _univ_mat mat = {9, 9, 81, &mat, KORVO_DOUBLE};
  _mat_set set = {1, &mat.nrow, 3, &mat};
  const auto result = colour ? imgset_read_ppm(stream, host, &set) : imguniv_read_pgm(stream, host, &mat);
  picture seen = {double(result)};
  EXPECT_EQ(colour ? set.ndim == 1 && set.nmat == 3 && set.mats : mat.data != nullptr, result == KORVO_ERR_OK);
  if (result == KORVO_ERR_OK) seen = shown(colour ? std::vector(set.mats, set.mats + 3) : std::vector{mat});
  (void)(colour ? matset_free_matrices(&set) : matuniv_free(&mat));
  if (colour) (void)matset_free(&set);
  EXPECT_EQ(heap::live_blocks(), live);
  return seen;
}
bool has_colours(const std::string& text) { return text.size() > 1 && (text[1] == '3' || text[1] == '6'); }
picture read(const std::string& text) { return read(has_colours(text), fault_stream(text).get()); }

enum form { bits, grey, colour };

struct image_writer {
  _korvo_errcode write(form f, FILE* out, void* host = nullptr) {
    const _mat_set set = {std::int32_t(dims.size()), dims.data(), std::int32_t(planes.size()), planes.data()};
    return f == bits   ? imguniv_write_pbm(out, planes.data(), threshold, plain, host)
           : f == grey ? imguniv_write_pgm(out, planes.data(), plain, host)
                       : imgset_write_ppm(out, &set, plain, host);
  }
  std::string text(form f) {
    fault_stream out;
    EXPECT_EQ(write(f, out.get()), KORVO_ERR_OK);
    return out.text();
  }

  std::vector<_univ_mat> planes{};
  std::uint8_t plain = 1;
  double threshold = 0.0;
  std::vector<std::int32_t> dims = {3};
};

// In the middle of a stream, of which no more than the image is taken.
void expect_back(const std::string& text, const picture& image) {
  fault_stream stream(text + "rest");
  EXPECT_EQ(read(has_colours(text), stream.get()), image);
  EXPECT_EQ(stream.rest(), text[1] < '4' ? "\nrest" : "rest");
}

TEST(Pnm, RestoresWhatItHasWrittenInEveryForm) {
  each_record(records<_u8_mat, _u16_mat, _u32_mat, _s32_mat, _dbl_mat>{}, []<class M> {
    const double highest = sizeof(element<M>) == 1 ? 255.0 : sizeof(element<M>) == 2 ? 65535.0 : 2147483647.0;
    for (const auto& [rows, cols] : {std::pair{1, 1}, {4, 8}, {3, 23}})
      for (const std::uint8_t plain : {std::uint8_t{0}, std::uint8_t{1}, std::uint8_t{255}}) {
        std::vector<matrix<M>> planes;
        for (const unsigned k : {0U, 1U, 2U}) planes.push_back(matrix<M>::random(rows, cols, k, 0.0, highest));
        planes[0].data[0] = static_cast<element<M>>(highest);  // decides the type of what is read
        image_writer w = {
            {planes[0].universal(), planes[1].universal(), planes[2].universal()}, plain, highest / 3};
        u8_matrix two(rows, cols);
        for (std::int32_t i = 0; i < two.nelem; ++i) two.data[i] = planes[0].data[i] > highest / 3 ? 255 : 0;
        expect_back(w.text(bits), shown({two.universal()}));
        if (!std::is_unsigned_v<element<M>>) continue;
        expect_back(w.text(grey), shown({w.planes[0]}));
        expect_back(w.text(colour), shown(w.planes));
      }
  });
}

TEST(Pnm, WritesTheseBytes) {
  const auto expect = [](form f, std::uint8_t plain, const auto& mat, const std::string& text) {
    EXPECT_EQ((image_writer{{mat.universal()}, plain}.text(f)), text);
  };
  expect(grey, 1, u8_matrix(2, 2, {7, 200, 0, 35}), "P2 2 2 200\n7 200 0 35\n");
  expect(grey, 0, u8_matrix(2, 2, {7, 200, 0, 35}), "P5 2 2 200\n\x07\xc8\x00\x23"s);
  expect(grey, 0, matrix<_u16_mat>(1, 3, {1, 65535, 2}), "P2 3 1 65535\n1 65535 2\n");
  // Maxima that the reader refuses: above what is printed without a sign, and 0.
  expect(grey, 1, matrix<_u32_mat>(1, 2, {4294967295.0, 0}), "P2 2 1 -1\n4294967295 0\n");
  expect(grey, 0, u8_matrix(1, 2), "P5 2 1 0\n\0\0"s);
  // 010110001, and seven bits that no pixel uses
  expect(bits, 0, u8_matrix(3, 3, {9, 0, 9, 0, 0, 9, 9, 9, 0}), "P4 3 3\n\x58\xff");
  std::string line;
  for (int i = 0; i < 34; ++i) line += "0 ";
  expect(bits, 1, u8_matrix(2, 35, 1), "P1 35 2\n" + line + "0 \n" + line + "0\n");

  const u8_matrix red(1, 2, {5, 6}), green(1, 2, {3, 4}), blue(1, 2, {1, 2});
  const std::vector planes = {red.universal(), green.universal(), blue.universal()};
  for (const std::vector<std::int32_t>& dims : {std::vector{3}, {3, 1}, {1, 1, 3}}) {
    EXPECT_EQ((image_writer{planes, 1, 0.0, dims}.text(colour)), "P3 2 1 6\n5 3 1 6 4 2\n");
    EXPECT_EQ((image_writer{planes, 0, 0.0, dims}.text(colour)), "P6 2 1 6\n\5\3\1\6\4\2");
  }
}

TEST(Pnm, ReadsWhatAHeaderSays) {
  const comma_locale host;
  const std::pair<picture, std::vector<std::string>> files[] = {
      {{KORVO_UINT8, 1, 1, 0}, {"P1 1 1 0110"}},
      {{KORVO_UINT16, 1, 1, 1, 256, 3}, {"P6 1 1 256\n\0\1\1\0\0\3"s, "P3 1 1 256 1 256 3"}},
      // The maximum is any floating number.
      {{KORVO_UINT16, 1, 2, 1, 256}, {"P5 2 1 65535\n\0\1\1\0"s, "P2 2 1 255.5 1 256", "P2 2 1 1e3 1 256"}},
      {{KORVO_UINT32, 1, 2, 1, 4e9},
       {"P5 2 1 65535.5\n\0\0\0\1\xee\x6b\x28\0"s, "P2 2 1 4294967295 1 4000000000"}},
      // One character is passed, whatever it is, and comments stand before the sizes and among plain samples.
      {{KORVO_UINT8, 1, 1, '\n'}, {"P5 1 1 255x\n", "P5 1 1 255\r\n", "P 5\n1\n1\n255\n\n", "P2 1 1 255.0 10"}},
      {{KORVO_UINT8, 1, 2, 1, 4}, {"P5#\n#one\n\n #two\n2#three\n1 9\n\1\4", "P2 2 1 9 #\n1#2 3\n#\n4"}},
      {{KORVO_UINT8, 1, 2, 0, 255},
       {"P1 2 1\n#\n1 # 1\n0", "P1 2 1\n255\t0", "P4 # 1\n2 1\n\xbf", "P4 2 1\n\x80"}},
      // No 32 bits; the end comes before the maximum is judged; and a maximum may not be commented.
      {{KORVO_ERR_IO},
       {"Q5 1 1 9\na", " P5 1 1 9\na", "P5 1 x 1", "P5 1 1 x", "P5 1 1 #\n9\na", "P2 1 1 255 256",
        "P1 4 1\n0110", "P4294967301 1 1 9\na", "P5 4294967297 1 9\na", "P5 1 -2147483649 9\na", "P5 1 1 0"}},
      // Some of the sizes would be small ones in 32 bits.
      {{KORVO_ERR_ILLEGAL_VALUE},
       {"P7 1 1", "P-5 1 1 9\na", "P5 1 1 0\na", "P5 1 1 nan\na", "P5 1 1 inf\na", "P5 1 1 4294967295.5\na",
        "P5 0 0 0\na", "P5 1431655766 3 255\nab", "P6 715827883 1 255\nabc", "P5 1 1073741824 256\na",
        "P3 2147483647 2147483647 65536\na"}},
      {{KORVO_ERR_ILLEGAL_SIZE}, {"P5 0 1 9\na", "P6 -2147483648 -2147483648 9\na", "P1 1 0 1"}}};
  for (const auto& [expected, texts] : files)
    for (const std::string& text : texts) EXPECT_EQ(read(text), expected) << text;
  for (const char* text : {"P3 1 1 9 1 2 3", "P6 1 1 9\nabc", "P1 1 1 1", "P2 1 1 9 1", "P4 1 1 a"})
    EXPECT_EQ(read(!has_colours(text), fault_stream(text).get()), picture{KORVO_ERR_ILLEGAL_VALUE}) << text;
}

// Each fault is met before all that were brought in earlier; types without bits only behind the header.
TEST(Pnm, RefusesToWriteInItsOrder) {
  const u8_matrix image(2, 40, 1);
  image_writer w = {std::vector(3, image.universal()), 1, std::nan("")};
  const auto refuse = [&](form f, _korvo_errcode expected, const char* text = "") {
    fault_stream out;
    EXPECT_EQ(w.write(f, out.get()), expected);
    EXPECT_EQ(out.text(), text);
  };
  refuse(bits, KORVO_ERR_ILLEGAL_VALUE, "P1 40 2\n");
  w.planes[0].nelem = 3, refuse(bits, KORVO_ERR_ILLEGAL_SIZE, "P1 40 2\n");
  for (const _korvo_type type : {KORVO_SINT8, KORVO_SINT16, KORVO_FLOAT, KORVO_DCOMPLEX}) {
    w.planes[0].type = type, refuse(grey, KORVO_ERR_ILLEGAL_TYPE);
    refuse(bits, KORVO_ERR_ILLEGAL_TYPE, type == KORVO_DCOMPLEX ? "" : "P1 40 2\n");
  }
  // Three times these columns are 2 in 32 bits.
  w.planes.assign(3, {1, 1431655766, 1431655766, image.data, KORVO_UINT8}), refuse(colour, KORVO_ERR_MALLOC);
  w.planes[1].nelem = 3, refuse(colour, KORVO_ERR_ILLEGAL_SIZE);
  for (_univ_mat& plane : w.planes) plane.type = KORVO_DOUBLE;
  refuse(colour, KORVO_ERR_ILLEGAL_TYPE);
  w.planes.resize(2), w.dims = {2}, refuse(colour, KORVO_ERR_ILLEGAL_SIZE);
  w.planes[1].type = KORVO_UINT8, refuse(colour, KORVO_ERR_ILLEGAL_TYPE);
}

// The tallies that writing and reading keep, each from 0.
TEST(Pnm, PollsAsItsCostsSay) {
  const u8_matrix image(2, 40, 1);
  const auto expect = [&](form f, std::uint8_t plain, const std::vector<std::vector<double>>& tallies) {
    image_writer w = {std::vector(3, image.universal()), plain};
    fault_stream out;
    EXPECT_EQ(w.write(f, out.get()), KORVO_ERR_OK);
    const auto there_and_back = [&](void* host) {
      (void)read(f == colour, fault_stream(out.text()).get(), host);
      return w.write(f, fault_stream().get(), host);
    };
    expect_tallies_of(there_and_back, tallies);
  };
  const std::vector<double> header = {1000.0 * 10}, rows = steps_of(2, 8.0 * 120);  // "P5 40 2 1\n"
  expect(grey, 0, {{3.0 * 80}, header, {1000.0 * 80}, {1000.0 * 80}});
  expect(colour, 0, {{3.0 * 240}, header, rows, {1000.0 * 240}, {1000.0 * 240}, rows});
  expect(bits, 0, {{5.0 * 80}, {5.0 * 80, 5.0 * 80}, {1000.0 * 10}, {1000.0 * 10}, {5.0 * 80, 6.0 * 80}});
  expect(bits, 1, {{5.0 * 80}, {71e3, 142e3, 162e3}, {1000.0 * 80}, {1000.0 * 80, 1001.0 * 80}});
}

TEST(Bits, AreTextOrBytesOfEachTypeThatHasThem) {
  const u8_matrix two(1, 5, {0, 9, 9, 0, 9});
  _univ_mat mat = two.universal();
  for (const auto& [raw, text] :
       {std::pair<std::uint8_t, const char*>{0, "1, 0, \n0, 1, \n0\n"}, {255, "\x97"}}) {
    fault_stream out;
    EXPECT_EQ(imguniv_write_to_bits(out.get(), &mat, 8.0, raw, ", ", 6, nullptr), KORVO_ERR_OK);
    EXPECT_EQ(out.text(), text);
  }

  _univ_scalar zero_bit{};
  const auto reads = [&](FILE* in, std::uint8_t raw, std::int32_t skip) {
    return imguniv_read_from_bits(in, zero_bit, raw, skip, ';', '%', nullptr, &mat);
  };
  each_record(records<_u8_mat, _u16_mat, _u32_mat, _dbl_mat>{}, [&]<class M> {
    zero_bit.type = tag<M>::type, zero_bit.value.*tag<M>::member = 77;
    const matrix<M> text(2, 5, 1), raw(2, 5, 1), expected(2, 5, {0, 77, 0, 77, 77, 77, 77, 77, 77, 0});
    mat = text.universal();
    EXPECT_EQ(reads(fault_stream("1;0;255 0 0 % 1\n0;; 0 0\n0 2").get(), 0, -1), KORVO_ERR_OK);
    mat = raw.universal();
    EXPECT_EQ(reads(fault_stream("skip\xa0\x40").get(), 3, 4), KORVO_ERR_OK);
    EXPECT_EQ(text.elements(), expected.elements());
    EXPECT_EQ(raw.elements(), expected.elements());
  });
  const s16_matrix image(1, 8);
  mat = image.universal(), zero_bit.type = KORVO_SINT16;
  fault_stream stream("ab");
  EXPECT_EQ(reads(stream.get(), 1, 0), KORVO_ERR_ILLEGAL_TYPE);
  EXPECT_EQ(stream.rest(), "b") << "the bits have been read";
  EXPECT_EQ(reads(stream.get(), 1, 0), KORVO_ERR_IO);
  zero_bit.type = KORVO_UINT16;
  EXPECT_EQ(reads(stream.get(), 1, 0), KORVO_ERR_ILLEGAL_TYPE);
}

}  // namespace

#include "korvos/image/img_io.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "core/dispatch.hpp"
#include "tests/support/costs.hpp"
#include "tests/support/heap.hpp"
#include "tests/support/locale.hpp"
#include "tests/support/matrix.hpp"
#include "tests/support/stream.hpp"

using namespace korvo;
using namespace std::string_literals;

namespace {

using flags = std::initializer_list<std::uint8_t>;

// What a reader gave: its code, and the type, rows, columns and samples of its result, plane after plane.
struct picture {
  _korvo_errcode result = KORVO_ERR_OK;
  std::vector<double> numbers{};

  explicit picture(_korvo_errcode code) : result(code) {}
  picture(_korvo_type type, double rows, double cols, const std::vector<double>& samples)
      : numbers{double(type), rows, cols} {
    numbers.insert(numbers.end(), samples.begin(), samples.end());
  }
  explicit picture(const std::vector<_univ_mat>& planes)
      : picture(planes[0].type, planes[0].nrow, planes[0].ncol, {}) {
    for (const _univ_mat& plane : planes)
      (void)dispatch(plane.type, records<_u8_mat, _u16_mat, _u32_mat>{}, [&]<class M> {
        numbers.insert(numbers.end(), as<M>(plane).data, as<M>(plane).data + plane.nelem);
        return KORVO_ERR_OK;
      });
  }
  bool operator==(const picture&) const = default;
};

std::ostream& operator<<(std::ostream& out, const picture& p) {
  out << p.result << ':';
  for (const double x : p.numbers) out << ' ' << x;
  return out;
}

// Readers that free what they get. One that fails must leave an empty record and nothing allocated.
picture read_grey(FILE* stream, void* intrp_ptr = nullptr) {
  const int live = heap::live_blocks();
  _univ_mat mat = {9, 9, 81, &mat, KORVO_DOUBLE};
  const auto result = imguniv_read_pgm(stream, intrp_ptr, &mat);
  EXPECT_EQ(mat.data != nullptr, result == KORVO_ERR_OK);
  const picture seen = result == KORVO_ERR_OK ? picture({mat}) : picture(result);
  (void)matuniv_free(&mat);
  EXPECT_EQ(heap::live_blocks(), live);
  return seen;
}

picture read_colour(FILE* stream, void* intrp_ptr = nullptr) {
  const int live = heap::live_blocks();
  std::int32_t unset = 7;
  _mat_set set = {1, &unset, 7, nullptr};
  const auto result = imgset_read_ppm(stream, intrp_ptr, &set);
  EXPECT_TRUE(result == KORVO_ERR_OK ? set.ndim == 1 && set.nmat == 3 : !set.dims && !set.mats);
  const picture seen = result == KORVO_ERR_OK ? picture({set.mats, set.mats + 3}) : picture(result);
  (void)matset_free_matrices(&set);
  (void)matset_free(&set);
  EXPECT_EQ(heap::live_blocks(), live);
  return seen;
}

picture read(FILE* stream, const std::string& text, void* intrp_ptr = nullptr) {
  const bool colour = text.size() > 1 && (text[1] == '3' || text[1] == '6');
  return colour ? read_colour(stream, intrp_ptr) : read_grey(stream, intrp_ptr);
}
picture read(const std::string& text) { return read(fault_stream(text).get(), text); }

template <class Write>
std::string written(Write write) {
  fault_stream out;
  EXPECT_EQ(write(out.get()), KORVO_ERR_OK);
  return out.text();
}
std::string pgm(const _univ_mat& image, std::uint8_t plain) {
  return written([&](FILE* out) { return imguniv_write_pgm(out, &image, plain, nullptr); });
}
std::string pbm(const _univ_mat& image, double threshold, std::uint8_t plain) {
  return written([&](FILE* out) { return imguniv_write_pbm(out, &image, threshold, plain, nullptr); });
}
std::string ppm(std::vector<_univ_mat> planes, std::uint8_t plain, std::vector<std::int32_t> dims = {3}) {
  const _mat_set set = {std::int32_t(dims.size()), dims.data(), 3, planes.data()};
  return written([&](FILE* out) { return imgset_write_ppm(out, &set, plain, nullptr); });
}

std::string behind_header(const std::string& text) { return text.substr(text.find('\n')); }

TEST(Pnm, RestoresWhatItHasWrittenInEveryForm) {
  const auto check = []<class M>(double highest, std::int32_t rows, std::int32_t cols) {
    for (const std::uint8_t plain : flags{0, 1, 255}) {
      std::vector<matrix<M>> planes;
      for (const unsigned k : {0U, 1U, 2U}) planes.push_back(matrix<M>::random(rows, cols, k, 0.0, highest));
      planes[2].data[0] = static_cast<element<M>>(highest);  // decides the type of what is read
      const std::vector<_univ_mat> mats = {planes[0].universal(), planes[1].universal(), planes[2].universal()};
      const bool raw = std::is_same_v<M, _u8_mat> && plain == 0;
      EXPECT_EQ(pgm(mats[2], plain).substr(0, 2), raw ? "P5" : "P2");
      EXPECT_EQ(read(pgm(mats[2], plain)), picture({mats[2]}));
      EXPECT_EQ(ppm(mats, plain).substr(0, 2), raw ? "P6" : "P3");
      EXPECT_TRUE(read(ppm(mats, plain)) == picture(mats));
      // The samples are those of a grey image with all of them, in one list.
      matrix<M> tiled(rows, 3 * cols);
      for (std::int32_t i = 0; i < tiled.nelem; ++i) tiled.data[i] = planes[std::size_t(i % 3)].data[i / 3];
      EXPECT_TRUE(behind_header(ppm(mats, plain)) == behind_header(pgm(tiled.universal(), plain)));
    }
  };
  for (const auto& [rows, cols] : {std::pair{1, 1}, {3, 3}, {5, 23}, {2, 71}}) {
    check.operator()<_u8_mat>(200.0, rows, cols);
    check.operator()<_u16_mat>(65535.0, rows, cols);
    check.operator()<_u32_mat>(2147483647.0, rows, cols);
  }
  check.operator()<_u8_mat>(255.0, 30, 800);
}

TEST(Pnm, RestoresBitsOfEveryTypeThatHasAThreshold) {
  each_record(records<_u8_mat, _u16_mat, _u32_mat, _s32_mat, _dbl_mat>{}, [&]<class M> {
    for (const auto& [rows, cols] : {std::pair{1, 1}, {3, 3}, {4, 8}, {5, 23}})
      for (const std::uint8_t plain : flags{0, 1, 2}) {
        const auto image = matrix<M>::random(rows, cols, 7);
        u8_matrix two_values(rows, cols);
        for (std::int32_t i = 0; i < image.nelem; ++i) two_values.data[i] = image.data[i] > 20 ? 255 : 0;
        const std::string text = pbm(image.universal(), 20.0, plain);
        EXPECT_EQ(text.substr(0, 2), plain != 0 ? "P1" : "P4");
        EXPECT_EQ(read(text), picture({two_values.universal()}));
        for (const double threshold : {0.0, 254.5})
          EXPECT_EQ(pbm(two_values.universal(), threshold, plain), text);
      }
  });
}

TEST(Pnm, WritesTheseBytes) {
  const u8_matrix grey(2, 2, {7, 200, 0, 35});
  EXPECT_EQ(pgm(grey.universal(), 1), "P2 2 2 200\n7 200 0 35\n");
  EXPECT_EQ(pgm(grey.universal(), 0), "P5 2 2 200\n\x07\xc8\x00\x23"s);
  const matrix<_u16_mat> words(1, 3, {1, 65535, 2});
  EXPECT_EQ(pgm(words.universal(), 0), "P2 3 1 65535\n1 65535 2\n");
  // Maxima that the reader refuses: above what is printed without a sign, and 0.
  const matrix<_u32_mat> longs(1, 2, {4294967295.0, 0});
  EXPECT_EQ(pgm(longs.universal(), 1), "P2 2 1 -1\n4294967295 0\n");
  EXPECT_EQ(pgm(u8_matrix(1, 2).universal(), 0), "P5 2 1 0\n\0\0"s);

  const u8_matrix planes[] = {{1, 2, {5, 6}}, {1, 2, {3, 4}}, {1, 2, {1, 2}}};
  for (const std::vector<std::int32_t>& dims : {std::vector{3}, {3, 1}, {1, 1, 3}}) {
    const std::vector mats = {planes[0].universal(), planes[1].universal(), planes[2].universal()};
    EXPECT_EQ(ppm(mats, 1, dims), "P3 2 1 6\n5 3 1 6 4 2\n");
    EXPECT_EQ(ppm(mats, 0, dims), "P6 2 1 6\n\5\3\1\6\4\2");
  }

  const u8_matrix bits(3, 3, {9, 0, 9, 0, 0, 9, 9, 9, 0});  // 010110001, and seven bits that no pixel uses
  EXPECT_EQ(pbm(bits.universal(), 0.0, 0), "P4 3 3\n\x58\xff");
  EXPECT_EQ(pbm(bits.universal(), 0.0, 1), "P1 3 3\n0 1 0 1 1 0 0 0 1\n");
  std::string line;
  for (int i = 0; i < 35; ++i) line += "1 ";
  EXPECT_EQ(pbm(u8_matrix(2, 35).universal(), 0.0, 1), "P1 35 2\n" + line + "\n" + line.substr(0, 69) + "\n");
}

TEST(Pnm, ReadsWhatAHeaderSays) {
  const comma_locale host;
  const struct {
    std::string text;
    picture expected;
  } files[] = {
      {"P2 3 2 70000\n1 2 3 4 5 4000000000", {KORVO_UINT32, 2, 3, {1, 2, 3, 4, 5, 4e9}}},
      {"P5 2 2 65535\n\0\1\1\0\xff\xff\0\0"s, {KORVO_UINT16, 2, 2, {1, 256, 65535, 0}}},
      {"P5 2 1 100000\n\0\0\0\1\1\2\3\4"s, {KORVO_UINT32, 1, 2, {1, 16909060}}},
      {"P6 1 1 256\n\0\1\1\0\0\3"s, {KORVO_UINT16, 1, 1, {1, 256, 3}}},
      {"P3 1 2 9 1 2 3 4 5 99", {KORVO_UINT8, 2, 1, {1, 4, 2, 5, 3, 99}}},
      {"P1 3 1\n1\t0 255", {KORVO_UINT8, 1, 3, {0, 255, 0}}},
      {"P1 1 1 0110", {KORVO_UINT8, 1, 1, {0}}},
      {"P4 3 3\n\x58\x80", {KORVO_UINT8, 3, 3, {255, 0, 255, 0, 0, 255, 255, 255, 0}}},
      // The maximum is any floating number.
      {"P2 1 1 255.0 7", {KORVO_UINT8, 1, 1, {7}}},
      {"P2 1 1 255.5 7", {KORVO_UINT16, 1, 1, {7}}},
      {"P2 1 1 1e3 7", {KORVO_UINT16, 1, 1, {7}}},
      {"P2 1 1 4294967295 7", {KORVO_UINT32, 1, 1, {7}}},
      // One character is passed, whatever it is.
      {"P5 1 1 255x7", {KORVO_UINT8, 1, 1, {'7'}}},
      {"P5 1 1 255\r\n", {KORVO_UINT8, 1, 1, {'\n'}}},
      {"P 5\n1\n1\n255\n7", {KORVO_UINT8, 1, 1, {'7'}}},
      // Comments before the sizes and among plain samples.
      {"P5#\n#one\n\n #two\n2#three\n1 9\nab", {KORVO_UINT8, 1, 2, {'a', 'b'}}},
      {"P2 2 1 9 #\n1#2 3\n#\n4", {KORVO_UINT8, 1, 2, {1, 4}}},
      {"P1 2 1\n#\n1 # 1\n0", {KORVO_UINT8, 1, 2, {0, 255}}},
  };
  for (const auto& file : files) EXPECT_EQ(read(file.text), file.expected) << file.text;
  for (const std::size_t length : {97U, 98U, 99U, 100U, 197U, 198U, 199U, 1000U}) {
    std::string comment(length + 1, '5');
    comment.front() = '#';
    comment.back() = '\n';
    const std::string text = "P2\n" + comment + "1 " + comment + "1 9 " + comment + "7";
    EXPECT_EQ(read(text), picture(KORVO_UINT8, 1, 1, {7}));
  }
}

TEST(Pnm, RefusesWhatItCannotRead) {
  const struct {
    _korvo_errcode expected;
    std::vector<std::string> texts;
  } refusals[] = {
      {KORVO_ERR_IO,
       {"Q5 1 1 9\na", " P5 1 1 9\na", "p5 1 1 9\na", "Px", "P5 x", "P5 1 x 1", "P5 1 1 x", "P5 1 #",
        "P5 1 1 # a maximum may not be commented\n9\na", "P2 1 1 9 x", "P2 1 1 255 256", "P1 4 1\n0110",
        "P1 1 1 256",
        // no 32 bits
        "P4294967301 1 1 9\na", "P5 4294967297 1 9\na", "P5 1 4294967297 9\na", "P5 1 -2147483649 9\na",
        "P5 99999999999999999999 99999999999999999999 9\na", "P99999999999999999999 1 1 9\na",
        // the end comes before the maximum is judged
        "P5 1 1 0"}},
      {KORVO_ERR_ILLEGAL_VALUE,
       {"P7 1 1 9\na", "P0 1 1 9\na", "P-5 1 1 9\na", "P-2147483648 1 1 9\na", "P7 1 1", "P5 1 1 0\na",
        "P5 1 1 -1\na", "P5 1 1 1e-999\na", "P5 1 1 nan\na", "P5 1 1 inf\na", "P5 1 1 4294967296\na",
        "P5 1 1 4294967295.5\na", "P6 1 1 0\nabc", "P5 0 0 0\na",
        // sizes that 32 bits would wrap to something small
        "P5 1431655766 3 255\nab", "P6 715827883 1 255\nabc", "P6 1431655766 1 255\nabc",
        "P5 65536 65536 255\na", "P4 65536 65536\na", "P5 1 1073741824 256\na", "P5 1 536870912 65536\na",
        "P3 2147483647 2147483647 65536\na"}},
      {KORVO_ERR_ILLEGAL_SIZE,
       {"P5 0 1 9\na", "P5 1 0 9\na", "P5 -1 -1 9\na", "P6 -2147483648 -2147483648 9\na", "P1 1 0 1"}},
  };
  for (const auto& group : refusals)
    for (const std::string& text : group.texts) EXPECT_EQ(read(text), picture(group.expected)) << text;
  // Forms of the other reader.
  for (const char* text : {"P3 1 1 9 1 2 3", "P6 1 1 9\nabc"})
    EXPECT_EQ(read_grey(fault_stream(text).get()), picture(KORVO_ERR_ILLEGAL_VALUE));
  for (const char* text : {"P1 1 1 1", "P2 1 1 9 1", "P4 1 1 a", "P5 1 1 9\na"})
    EXPECT_EQ(read_colour(fault_stream(text).get()), picture(KORVO_ERR_ILLEGAL_VALUE));
  EXPECT_EQ(read_grey(nullptr), picture(KORVO_ERR_NULL_POINTER));
  EXPECT_EQ(read_colour(nullptr), picture(KORVO_ERR_NULL_POINTER));
  EXPECT_EQ(imguniv_read_pgm(stdin, nullptr, nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(imgset_read_ppm(stdin, nullptr, nullptr), KORVO_ERR_NULL_POINTER);
}

// Streams: an image stands in the middle of one, which ends at each byte of it, or fails at each read of it.
// The last plain sample has one digit, so that no shorter text is an image too.
TEST(Pnm, TakesFromAStreamTheImageAndNoMore) {
  for (const std::string& file :
       {"P1\n# bits\n3 2\n1 0 0 1 0 1"s, "P2\n2 2 300\n17 2 #\n 255 3"s, "P3\n1 2 255\n10 20 30 40 50 6"s,
        "P4 5 4\n\1\2\3"s, "P5\n#\n2 2 255\n\1\2\3\4"s, "P5 1 2 70000\n\0\1\2\3\4\5\6\7"s,
        "P6 #\n#\n1 2\n9.5\n\1\2\3\4\5\6"s, "P6 1 1 256\n\0\1\2\3\4\5"s}) {
    fault_stream stream(file + "\n" + file + "\nrest");
    const picture first = read(stream.get(), file);
    EXPECT_EQ(first.result, KORVO_ERR_OK) << file;
    EXPECT_EQ(std::fgetc(stream.get()), '\n');
    EXPECT_EQ(read(stream.get(), file), first);
    EXPECT_EQ(stream.rest(), "\nrest");

    for (std::size_t size = 0; size < file.size(); ++size)
      EXPECT_EQ(read(file.substr(0, size)), picture(KORVO_ERR_IO)) << file << " cut to " << size;
    fault_stream whole(file);
    EXPECT_EQ(read(whole.get(), file), first);
    for (int k = 1; k <= whole.calls(); ++k)
      EXPECT_EQ(read(fault_stream(file, k).get(), file), picture(KORVO_ERR_IO)) << file << ", read " << k;
  }
}

// An image and its writers, the colours three times the grey.
struct writers {
  void refuse(_korvo_errcode expected, _korvo_errcode (writers::*write)(FILE*), const std::string& text = {}) {
    fault_stream out;
    EXPECT_EQ((this->*write)(out.get()), expected);
    EXPECT_EQ(out.text(), text);
    EXPECT_EQ((this->*write)(nullptr), KORVO_ERR_NULL_POINTER);
  }
  _korvo_errcode grey(FILE* out) { return imguniv_write_pgm(out, &mat, plain, host); }
  _korvo_errcode bits(FILE* out) { return imguniv_write_pbm(out, &mat, threshold, plain, host); }
  _korvo_errcode colour(FILE* out) { return imgset_write_ppm(out, &set, plain, host); }

  u8_matrix image = u8_matrix(2, 40, 1);
  _univ_mat mat = image.universal();
  _univ_mat planes[3] = {mat, mat, mat};
  std::int32_t dims[1] = {3};
  _mat_set set = {1, dims, 3, planes};
  double threshold = 0.0;
  std::uint8_t plain = 1;
  void* host = nullptr;
};

TEST(Pnm, ReportsEachWriteThatFails) {
  writers w;
  for (const auto write : {&writers::grey, &writers::bits, &writers::colour})
    for (const std::uint8_t flag : flags{0, 1}) {
      w.plain = flag;
      fault_stream whole;
      ASSERT_EQ((w.*write)(whole.get()), KORVO_ERR_OK);
      for (int k = 1; k <= whole.calls(); ++k) {
        const int live = heap::live_blocks();
        EXPECT_EQ((w.*write)(fault_stream({}, k).get()), KORVO_ERR_IO) << "write " << k;
        EXPECT_EQ(heap::live_blocks(), live);
      }
    }
}

// Each fault is met before all that were brought in earlier; types without bits only behind the header.
TEST(Pnm, RefusesToWriteInItsOrder) {
  writers w;
  EXPECT_EQ(imguniv_write_pgm(stdout, nullptr, 1, nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(imguniv_write_pbm(stdout, nullptr, 1.0, 1, nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(imgset_write_ppm(stdout, nullptr, 1, nullptr), KORVO_ERR_NULL_POINTER);
  const std::string header = "P1 40 2\n";
  w.threshold = std::numeric_limits<double>::quiet_NaN();
  w.refuse(KORVO_ERR_ILLEGAL_VALUE, &writers::bits, header);
  w.mat.nelem = 3;
  w.refuse(KORVO_ERR_ILLEGAL_SIZE, &writers::grey);
  w.refuse(KORVO_ERR_ILLEGAL_SIZE, &writers::bits, header);
  for (const _korvo_type type : {KORVO_SINT8, KORVO_SINT16, KORVO_FLOAT, KORVO_DCOMPLEX}) {
    w.mat.type = type;
    w.refuse(KORVO_ERR_ILLEGAL_TYPE, &writers::grey);
    w.refuse(KORVO_ERR_ILLEGAL_TYPE, &writers::bits, type == KORVO_DCOMPLEX ? "" : header);
  }

  // Three times these columns are 2 in 32 bits.
  for (_univ_mat& plane : w.planes) plane = {1, 1431655766, 1431655766, w.image.data, KORVO_UINT8};
  w.refuse(KORVO_ERR_MALLOC, &writers::colour);
  w.planes[1].nelem = 3;
  w.refuse(KORVO_ERR_ILLEGAL_SIZE, &writers::colour);
  for (_univ_mat& plane : w.planes) plane.type = KORVO_DOUBLE;
  w.refuse(KORVO_ERR_ILLEGAL_TYPE, &writers::colour);
  w.set.nmat = w.dims[0] = 2;
  w.refuse(KORVO_ERR_ILLEGAL_SIZE, &writers::colour);
  w.planes[1].type = KORVO_UINT8;
  w.refuse(KORVO_ERR_ILLEGAL_TYPE, &writers::colour);
}

TEST(Pnm, PollsAsItsCostsSay) {
  writers w;
  fault_stream out;
  const auto writes = [&](_korvo_errcode (writers::*write)(FILE*), std::uint8_t flag) {
    return [=, &w, &out](void* intrp_ptr) {
      w.host = intrp_ptr;
      w.plain = flag;
      return (w.*write)(out.get());
    };
  };
  const auto reads = [](const std::string& text) {
    return [=](void* intrp_ptr) { return read(fault_stream(text).get(), text, intrp_ptr).result; };
  };
  // The tallies that one call keeps, each from 0, show in its polls at every distance between them.
  const auto expect = [](const auto& call, const std::vector<std::vector<double>>& tallies) {
    for (const double distance : {1e-9, 20.0, 50.0, 130.0, 239.0, 401.0, 950.0, 4e3, 2e4, 5e4, 1e5, 1e7}) {
      const threshold set(distance);
      fake_host host;
      EXPECT_EQ(call(host.intrp_ptr()), KORVO_ERR_OK);
      int polls = 0;
      for (const std::vector<double>& tally : tallies) polls += polls_of(tally, distance);
      EXPECT_EQ(host.polls(), polls) << "with " << distance << " between polls";
    }
  };
  const std::vector<double> range = {3.0 * 80};
  const std::vector<double> header = {1000.0 * 10};  // "P5 40 2 1\n"
  expect(writes(&writers::grey, 0), {range, header, {1000.0 * 80}});
  expect(writes(&writers::colour, 0), {{3.0 * 240}, header, steps_of(2, 8.0 * 120), {1000.0 * 240}});
  expect(writes(&writers::bits, 0), {{5.0 * 80}, {5.0 * 80, 5.0 * 80}, {1000.0 * 10}});
  expect(writes(&writers::bits, 1), {{5.0 * 80}, {71e3, 142e3, 162e3}});
  expect(reads("P4 3 3\nab"), {{1000.0 * 2}, {5.0 * 9, 6.0 * 9}});
  expect(reads("P1 3 1 1 1 0"), {{1000.0 * 3}, {1000.0 * 3, 1001.0 * 3}});
  expect(reads("P6 1 2 9\nabcdef"), {{1000.0 * 6}, steps_of(2, 8.0 * 3)});
}

}  // namespace

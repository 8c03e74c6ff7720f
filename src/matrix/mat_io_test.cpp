#include "korvos/matrix/mat_io.h"

#include <random>
#include <sstream>

#include "korvos/core/ut_alloc.h"
#include "matrix/mat_io.hpp"
#include "tests/support/all.hpp"
#include "tests/support/stream.hpp"

using namespace korvo;
using namespace std::string_literals;

namespace {

constexpr code good = KORVO_ERR_OK, io = KORVO_ERR_IO, bad_value = KORVO_ERR_ILLEGAL_VALUE,
               bad_size = KORVO_ERR_ILLEGAL_SIZE, bad_type = KORVO_ERR_ILLEGAL_TYPE;

// What a routine writes with these arguments, and the code that it gives on a file.
template <class... P, class... A>
std::string text_of(code (*form)(FILE*, P...), const A&... arguments) {
  fault_stream stream;
  EXPECT_EQ(form(stream.get(), static_cast<P>(arguments)...), good);
  return stream.text();
}
template <class... P, class... A>
code result_on(const std::string& file, code (*form)(FILE*, P...), const A&... arguments) {
  return form(fault_stream(file).get(), static_cast<P>(arguments)...);
}

// Parses into an unset record, which a parse that fails must leave without data; *again is what it prints.
code parsed(FILE* stream, void* host = nullptr, std::string* again = nullptr, const char* format = nullptr) {
  _univ_mat mat;
  std::memset(&mat, 1, sizeof mat);
  const code result = matuniv_parse(stream, host, &mat);
  EXPECT_EQ(mat.data != nullptr, result == good);
  if (again && result == good) *again = text_of(matuniv_print, &mat, format, 20, nullptr);
  if (result == good) (void)matuniv_free(&mat);
  return result;
}

TEST(MatIo, WritesExactlyThis) {
  const auto writes = [](const std::string& text, auto form, const auto& mat, auto... arguments) {
    EXPECT_EQ(text_of(form, &mat, arguments..., nullptr), text);
  };
  // The width of the element before decides where a line ends, from one row to the next too.
  writes(
      "sint16 Matrix: nrow=2, ncol=5  {\n    Row[0]:  1 2 3 \n             4 -10000 \n"
      "    Row[1]:  \n             6 7 \n             8 9 \n             10 \n}\n",
      mats16_print, s16_matrix(2, 5, {1, 2, 3, 4, -10000, 6, 7, 8, 9, 10}), nullptr, 19);
  // The first element counts as one wide before it is known.
  const std::string heading = "float Matrix: nrow=1, ncol=1  {\n    Row[0]:  ";
  writes(heading + "0.5 \n}\n", matflt_print, flt_matrix(1, 1, {0.5}), nullptr, 14);
  writes(heading + "\n             0.5 \n}\n", matflt_print, flt_matrix(1, 1, {0.5}), nullptr, 13);
  writes("      -0.5 1.23457e+06\n", matdbl_write_ascii, dbl_matrix(1, 2, {-0.5, 1234567}), nullptr, 99);
  writes("\1\0\xfe\xff"s, mats16_write_raw, s16_matrix(1, 2, {1, -2}), 0);
}

TEST(Print, TakesFormatsOfOneElementAndConvertsItToTheTypeTheyName) {
  const auto prints = [](auto print, const auto& mat, const char* element, std::string formats) {
    for (std::size_t end; !formats.empty(); formats.erase(0, end + 1)) {
      end = formats.find('|');
      fault_stream out;
      EXPECT_EQ(print(out.get(), &mat, formats.substr(0, end).c_str(), 0, nullptr), element ? good : bad_value);
      EXPECT_TRUE(element ? out.text().ends_with(":  "s + element + "\n}\n") : out.text().empty()) << formats;
    }
  };
  const s32_matrix whole(1, 1, {-2});
  prints(mats32_print, whole, "-2", "%d|%i|%ld|%hd|%hhd|%lld|%jd|%zd|%td|");
  prints(mats32_print, whole, "fffffffe", "%x|%lx|");  // long has 32 bits
  prints(mats32_print, whole, "a% -002  !", "a%% %+-6.3ld!|");
  prints(mats32_print, whole, nullptr,
         "|plain|%%|%|%5.|%-l|%n|%ld%n|%s|%c|%p|%*d|%.*d|%1$d|%d%d|%d %*d|%d%|%hhhd|%lhd|%llld|% %d|%g|%Lx|");
  prints(matu32_print, matrix<_u32_mat>(1, 1, {4000000000.0}), "4000000000", "%u|%lu|%llu|%ju|%zu|%lld|");
  const flt_matrix real(1, 1, {3.25});
  prints(matflt_print, real, "3.25", "%g|%lg|%Lg|%.2lF|");
  prints(matflt_print, real, nullptr, "%d|%lu|%hg|%llg|%jg|%LLg|%g %g|%*g|%n|");
  const u8_matrix tall(100, 1);
  EXPECT_TRUE(text_of(matu8_print, &tall, "<%3u%%>", 1, nullptr)
                  .starts_with("uint8 Matrix: nrow=100, ncol=1  {\n    Row[ 0]:  \n              <  0%>\n"));
}

// The first allocation fails, and nothing is allocated before a heading has been found good.
TEST(Parse, RefusesHeadingsThatLie) {
  const std::pair<code, const char*> headings[] = {
      {KORVO_ERR_MALLOC, "1, ncol=268435455"},
      {bad_size, "0, ncol=1"},
      {bad_size, "-2147483648, ncol=-2147483648"},
      {bad_value, "1, ncol=268435456"},
      {bad_value, "0, ncol=2147483648"},
      {bad_value, "1, ncol=-2147483649"},
      {bad_value, "18446744073709551617, ncol=1"},
      {bad_value, "1431655766, ncol=3"},  // products that wrap to 2, and to 0
      {bad_value, "65536, ncol=65536"},
      {io, "1 , ncol=1"},
      {io, "1, ncol=x"}};
  for (const auto& [expected, sizes] : headings) {
    const std::string text = "double Matrix: nrow="s + sizes + "  {\n    Row[0]:  7 7 \n}\n";
    heap::fail_at(1);
    EXPECT_EQ(parsed(fault_stream(text).get()), expected) << text;
  }
  heap::fail_never();
}

TEST(Parse, TakesAnyWhiteSpaceAndAsksForNoLabels) {
  const std::string plain = "float Matrix: nrow=2, ncol=1  {\n    Row[0]:  1 \n    Row[1]:  2 \n}\n";
  std::string again;
  const char* const loose = "\n\t float\nMatrix:nrow= 2,ncol= 1\n{Row[ 7]:1 Row[\n-9 ]:2}";
  EXPECT_EQ(parsed(fault_stream(loose).get(), nullptr, &again), good);
  EXPECT_EQ(again, plain);
  for (const char* text : {"float Matrix: nrow=2, ncol=1 {1 2 3}", "float Matrix: nrow=2, ncol=1 {1 x}"})
    EXPECT_EQ(parsed(fault_stream(text).get()), io) << text;
  dbl_matrix other(1, 1);
  EXPECT_EQ(result_on(plain, matdbl_parse, nullptr, static_cast<_dbl_mat*>(&other)), io);
  // The universal form leaves the stream where a word is not known.
  for (const std::string& word : {"complex"s, "doubleMatrix:"s, std::string(3000, 'x'), ""s}) {
    fault_stream stream(" " + word);
    EXPECT_EQ(parsed(stream.get()), word.empty() ? io : bad_type);
    EXPECT_EQ(stream.rest(), stream.text());
  }
}

TEST(MatIoNumbers, HaveTheRangesOfTheirTypeAfterTheirCut) {
  const struct {
    _korvo_type type;
    const char* numbers;  // with what each becomes; the others are refused
  } rows[] = {
      {KORVO_UINT8, "255=255 +65537=1 256 -1"},
      {KORVO_UINT16, "70000=4464 -1=65535 99999999999999999999=65535 -18446744073709551614=2"},
      {KORVO_UINT32, "4294967295=4294967295 -0=0 4294967296 -1 -18446744073709551615"},
      {KORVO_SINT16, "-32767=-32767 40000=-25536 -32768 32768"},
      {KORVO_SINT32, "2147483647=2147483647 -2147483647=-2147483647 -2147483648 2147483648 -4294967297"},
      {KORVO_FLOAT, "-1e37=-1e+37 -2e37 1.00001e37 inf -inf nan"},
      {KORVO_DOUBLE, "1e37=1e+37 0x1p-3=0.125 -2e37 1.00001e37 inf -inf nan"}};
  for (const auto& row : rows) {
    std::istringstream words(row.numbers);
    for (std::string word; words >> word;) {
      const std::size_t end = word.find('=');
      const bool taken = end != std::string::npos;
      const std::string number = word.substr(0, end);
      double element = 0;
      _univ_mat mat{1, 1, 1, &element, row.type};
      std::string again, text = text_of(matuniv_print, &mat, nullptr, 0, nullptr);
      text.replace(text.size() - 5, 1, number);
      EXPECT_EQ(parsed(fault_stream(text).get(), nullptr, &again), taken ? good : bad_value);
      const code listed = taken || is_floating(row.type) ? good : io;
      EXPECT_EQ(result_on(number, matuniv_read_ascii, 0, 0, nullptr, &mat), listed) << word;
      if (!taken) continue;
      EXPECT_EQ(again.substr(again.find(":  ") + 3), word.substr(end + 1) + " \n}\n") << word;
      EXPECT_EQ(text_of(matuniv_print, &mat, nullptr, 0, nullptr), again) << word;
    }
  }
}

// Whole numbers are scanned by hand: the formatted scanner of the runtime is the twin, for what is read, what
// is left of it, and where the stream stands.
TEST(MatIoNumbers, AreScannedAsTheRuntimeDoes) {
  std::mt19937 engine(7);
  const std::string alphabet = " \n\t+--0123456789,#x";
  for (int trial = 0; trial < 3000; ++trial) {
    std::string text(engine() % 24, ' ');
    for (char& c : text) c = alphabet[engine() % (trial % 2 ? alphabet.size() : 16)];
    fault_stream ours(text), theirs(text);
    std::int64_t number = 0;
    long expected = 0;
    const bool found = std::fscanf(theirs.get(), "%ld", &expected) == 1;
    ASSERT_EQ(scan(ours.get(), &number), found ? good : io) << text;
    ASSERT_EQ(number, expected) << text;
    ASSERT_EQ(ours.rest(), theirs.rest()) << text;
  }
}

// The rule of lists, plainly.
template <class M>
std::string listed(const matrix<M>& mat, const std::string& delimiter, int line_length) {
  constexpr _korvo_type type = tag<M>::type;
  const std::size_t margin = is_floating(type) ? 18 : type == KORVO_UINT8 ? 3 : sizeof *mat.data == 2 ? 6 : 11;
  std::string text, line;
  for (const double x : mat.elements()) {
    if (static_cast<std::size_t>(line_length) < line.size() + delimiter.size() + margin)
      text += std::exchange(line, "") + "\n";
    char number[64];
    (void)std::snprintf(number, sizeof number, is_floating(type) ? "%10g" : "%.0f", x);
    line += number + delimiter;
  }
  return text + line.substr(0, line.size() - delimiter.size()) + "\n";
}

TEST(MatIo, BringsEveryTypeBack) {
  each_record(real_records{}, []<class M> {
    using limits = std::numeric_limits<element<M>>;
    const double low = limits::is_signed ? -128 : 0, high = sizeof *M::data == 1 ? 255 : 32767;
    matrix<M> mat = matrix<M>::random(10, 31, 5, low, high), back(10, 31);
    const double lowest = std::max(accepted<element<M>>::lowest, -1e37),
                 highest = accepted<element<M>>::highest;
    const double ends[] = {lowest, std::min(highest, 1e37), limits::denorm_min(), -0.0,
                           1 + double{limits::epsilon()}};
    std::transform(ends, ends + 5, mat.data, as_element<element<M>>);
    const _univ_mat in = mat.universal();
    _univ_mat out = back.universal();
    const char* const lossless = is_floating(tag<M>::type) ? "%.17g " : nullptr;
    const std::string text = text_of(matuniv_print, &in, lossless, 20, nullptr);
    fault_stream printed(text + text + "rest");
    for (int i = 0; i < 2; ++i) {
      std::string again;
      EXPECT_EQ(parsed(printed.get(), nullptr, &again, lossless), good);
      EXPECT_EQ(again, text);
    }
    EXPECT_EQ(printed.rest(), "\nrest");
    for (const int length : {0, 40, 65535})
      for (const std::size_t gap : {1U, 8U, 9U, 5000U}) {
        const std::string delimiter(gap, ';'), expected = listed<M>(mat, delimiter, length);
        ASSERT_EQ(text_of(matuniv_write_ascii, &in, delimiter.c_str(), length, nullptr), expected) << length;
        if (gap == 5000) continue;
        ASSERT_EQ(result_on(expected, matuniv_read_ascii, ';', 0, nullptr, &out), good);
        ASSERT_EQ(listed<M>(back, delimiter, length), expected);
      }
    mat.data[0] = limits::signaling_NaN();
    for (const bool big_endian : {false, true}) {
      fault_stream raw("12345" + text_of(matuniv_write_raw, &in, big_endian, nullptr) + "rest");
      EXPECT_EQ(matuniv_read_raw(raw.get(), 5, big_endian, nullptr, &out), good);
      EXPECT_TRUE(same_bits<M>(mat, back));
      EXPECT_EQ(raw.rest(), "rest");
    }
  });
}

TEST(ReadAscii, PassesDelimitersAndComments) {
  const auto reads = [](const std::string& text, char delimiter, char comment, const char* rest = "") {
    const auto each = [&]<class M>(const matrix<M>& mat, auto form) {
      fault_stream stream(text);
      M record = mat;
      EXPECT_EQ(form(stream.get(), delimiter, comment, nullptr, &record), rest ? good : io) << text;
      if (!rest) return;
      EXPECT_EQ(mat.elements(), (matrix<M>(1, 3, {1, 2, 3}).elements())) << text;
      EXPECT_EQ(stream.rest(), rest) << text;
    };
    each(dbl_matrix(1, 3), matdbl_read_ascii);
    each(s32_matrix(1, 3), mats32_read_ascii);
  };
  reads("##\n#1\n ,,\n1,, ,2\t#\n#,\n,3,", ',', '#', ",");
  reads("1\377 2\377\376 9\n3", '\377', '\376');  // not taken for the end of the stream
  reads("1\0002 3"s, 0, 0, nullptr);              // 0 is no character to pass
  reads("1,2;3", ',', '#', nullptr);
  reads("1 -,2,3", ',', '#');           // a sign alone goes with the attempt to read a number
  reads("1 2 # 3", ',', '#', nullptr);  // a comment that the stream ends in
  for (const std::size_t length : {98U, 99U, 5000U}) reads("1 2\n#" + std::string(length, '4') + "\n3", 0, '#');
}

// The runtime counts what reached the buffer of a stream as written, even if it could not be written out.
TEST(MatIo, SeesThatABufferedStreamFails) {
  const u8_matrix mat(1, 3);
  fault_stream list({}, 2, _IOLBF), lines({}, 2, _IOLBF);
  EXPECT_EQ(matu8_write_ascii(list.get(), &mat, nullptr, 5, nullptr), io);
  EXPECT_EQ(matu8_print(lines.get(), &mat, nullptr, 0, nullptr), io);
  EXPECT_EQ(matu8_print(lines.get(), &mat, nullptr, 0, nullptr), io);  // its indicator is still set
}

TEST(MatIoRefusals, BeginWithTheType) {
  double element = 0;
  _univ_mat mat = {0, 1, 0, &element, KORVO_SINT8};
  EXPECT_EQ(matuniv_print(nullptr, &mat, "%s", 0, nullptr), bad_type);
  EXPECT_EQ(matuniv_write_ascii(nullptr, &mat, nullptr, 70, nullptr), bad_type);
  EXPECT_EQ(matuniv_read_ascii(nullptr, 0, 0, nullptr, &mat), bad_type);
  EXPECT_EQ(matuniv_read_raw(nullptr, -1, 0, nullptr, &mat), bad_type);
  EXPECT_EQ(matuniv_write_raw(nullptr, &mat, 0, nullptr), bad_type);
}

TEST(MatIoCosts, AreThoseOfCharactersRowsAndBytes) {
  const s16_matrix four(2, 2, {1, 2, 30, 4});
  const u8_matrix three(1, 3, {1, 2, 30});
  s16_matrix wide(1, 3);
  u8_matrix narrow(1, 3);
  const auto costs = [](const std::vector<double>& tallies, auto call) { expect_tallies(call, tallies); };
  costs({62010, 95010}, [&](void* h) { return result_on("", mats16_print, &four, nullptr, 15, h); });
  costs({10000, 20000},
        [&](void* h) { return parsed(fault_stream("uint8 Matrix: nrow=2, ncol=1 {1 2}").get(), h); });
  costs({1000, 4000, 7000, 10000},
        [&](void* h) { return result_on("", matu8_write_ascii, &three, ",", 3, h); });
  costs({5000}, [&](void* h) { return result_on("1,2 #\n3", matu8_read_ascii, ',', '#', h, &narrow); });
  costs({6006}, [&](void* h) { return result_on("", mats16_write_raw, &wide, 1, h); });
  costs({3000}, [&](void* h) { return result_on("", matu8_write_raw, &three, h); });
  costs({10000, 10006}, [&](void* h) { return result_on("1234567890", mats16_read_raw, 4, 1, h, &wide); });
  costs({7000}, [&](void* h) { return result_on("1234567", matu8_read_raw, 4, h, &narrow); });
}

}  // namespace

#include "korvos/matrix/mat_io.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "core/dispatch.hpp"
#include "matrix/mat_io.hpp"
#include "tests/support/heap.hpp"
#include "tests/support/mat_io_forms.hpp"
#include "tests/support/matrix.hpp"
#include "tests/support/stream.hpp"

using namespace korvo;

namespace {

template <class M>
using forms = mat_io_forms<M>;

// The ends of what a type takes, and other numbers that are easily lost.
template <class M>
matrix<M> extremes() {
  using T = element<M>;
  using limits = std::numeric_limits<T>;
  if constexpr (std::is_floating_point_v<T>)
    return {3, 2, {-1e37, 1e37, limits::denorm_min(), -0.0, 100, 1 + limits::epsilon()}};
  else
    return {3, 2, {accepted<T>::lowest, accepted<T>::highest, 0, 1, 100, 10}};
}

TEST(Print, WritesExactlyThis) {
  const dbl_matrix four(2, 2, {1, 2, 3, 4});
  EXPECT_EQ(text_of(matdbl_print, &four, nullptr, 0, nullptr),
            "double Matrix: nrow=2, ncol=2  {\n    Row[0]:  1 2 \n    Row[1]:  3 4 \n}\n");

  // The width of the element before decides where a line ends, from one row to the next too.
  const s16_matrix lines(2, 5, {1, 2, 3, 4, -10000, 6, 7, 8, 9, 10});
  const _univ_mat mat = lines.universal();
  EXPECT_EQ(text_of(matuniv_print, &mat, nullptr, 19, nullptr),
            "sint16 Matrix: nrow=2, ncol=5  {\n"
            "    Row[0]:  1 2 3 \n             4 -10000 \n"
            "    Row[1]:  \n             6 7 \n             8 9 \n             10 \n}\n");
  // The first element counts as one wide before it is known.
  const flt_matrix one(1, 1, {0.5});
  EXPECT_EQ(text_of(matflt_print, &one, nullptr, 14, nullptr),
            "float Matrix: nrow=1, ncol=1  {\n    Row[0]:  0.5 \n}\n");
  EXPECT_EQ(text_of(matflt_print, &one, nullptr, 13, nullptr),
            "float Matrix: nrow=1, ncol=1  {\n    Row[0]:  \n             0.5 \n}\n");
  const u8_matrix tall(100, 2);
  EXPECT_TRUE(text_of(matu8_print, &tall, "<%3u%%>", 1, nullptr)
                  .starts_with("uint8 Matrix: nrow=100, ncol=2  {\n"
                               "    Row[ 0]:  \n              <  0%>\n              <  0%>\n    Row[ 1]:  \n"));
}

TEST(Print, ConvertsElementsToTheTypeThatTheFormatNames) {
  const auto expect = [](auto print, const auto& mat, std::initializer_list<const char*> formats,
                         const std::string& element) {
    for (const char* format : formats) {
      const std::string text = text_of(print, &mat, format, 0, nullptr);
      const std::size_t start = text.find(":  ") + 3;
      EXPECT_EQ(text.substr(start, text.size() - 3 - start), element) << format;
    }
  };
  const s32_matrix whole(1, 1, {-2});
  expect(mats32_print, whole, {"%d", "%i", "%ld", "%hd", "%hhd", "%lld", "%jd", "%zd", "%td"}, "-2");
  expect(mats32_print, whole, {"%x", "%lx"}, "fffffffe");  // long has 32 bits
  expect(mats32_print, whole, {"%hhX"}, "FE");
  expect(mats32_print, whole, {"a%% %+-6.3ld|"}, "a% -002  |");
  const matrix<_u32_mat> large(1, 1, {4000000000.0});
  expect(matu32_print, large, {"%u", "%lu", "%llu", "%ju", "%zu", "%tu", "%lld"}, "4000000000");
  expect(matu32_print, large, {"%d", "%ld"}, "-294967296");
  const dbl_matrix real(1, 1, {3.25});
  expect(matdbl_print, real, {"%g", "%lg", "%Lg", "%.2f", "%.2lF", "%.2Lf"}, "3.25");
  expect(matdbl_print, real, {"%.1a"}, "0x1.ap+1");
}

TEST(Print, RefusesFormatsThatDoNotTakeOneElement) {
  const auto refuses = [](auto print, const auto& mat, const std::string& formats) {
    for (std::size_t start = 0, end; start <= formats.size(); start = end + 1) {
      end = std::min(formats.find('|', start), formats.size());
      const std::string format = formats.substr(start, end - start);
      fault_stream stream;
      EXPECT_EQ(print(stream.get(), &mat, format.c_str(), 0, nullptr), KORVO_ERR_ILLEGAL_VALUE) << format;
      EXPECT_EQ(stream.text(), "");
    }
  };
  refuses(mats32_print, s32_matrix(1, 1),
          "|plain|%%|%|%5|%5.|%-l|%n|%ld%n|%n%ld|%hhn|%s|%ls|%c|%p|%m|%*d|%.*d|%1$d|%d%d|%d %*d|%% %|%d%|%hhhd"
          "|%lhd|%llld|% %d|%?d|%g|%lf|%Ld|%Lx");
  refuses(matflt_print, flt_matrix(1, 1), "%d|%lu|%hg|%hhg|%llg|%jg|%zg|%tg|%LLg|%g %g|%*g|%n");
}

TEST(Parse, ReadsBackWhatWasPrintedMatrixAfterMatrix) {
  fault_stream stream;
  each_record(real_records{}, [&]<class M> {
    const matrix<M> mat = extremes<M>();
    const char* const lossless = is_floating(tag<M>::type) ? "%.17g " : nullptr;
    EXPECT_EQ(forms<M>::print(stream.get(), &mat, lossless, 20, nullptr), KORVO_ERR_OK);
  });
  fault_stream typed(stream.text() + "rest");
  fault_stream universal(stream.text() + "rest");
  each_record(real_records{}, [&]<class M> {
    const matrix<M> mat = extremes<M>();
    made<M> back;
    made<_univ_mat> as_well;
    ASSERT_EQ(forms<M>::parse(typed.get(), nullptr, &back), KORVO_ERR_OK);
    EXPECT_TRUE(same_elements<M>(mat, back));
    ASSERT_EQ(matuniv_parse(universal.get(), nullptr, &as_well), KORVO_ERR_OK);
    EXPECT_EQ(as_well.type, tag<M>::type);
    EXPECT_TRUE(same_elements<M>(mat, as<M>(as_well)));
  });
  EXPECT_EQ(typed.rest(), "\nrest");
}

// The code of parse, which must leave nothing behind.
template <class M>
code parsed(const std::string& text, element<M>* first = nullptr) {
  const int live_before = heap::live_blocks();
  code result;
  {
    element<M> none{};
    made<M> mat;
    mat.data = &none;
    result = result_on(text, forms<M>::parse, nullptr, &mat);
    if (result == KORVO_ERR_OK && first) *first = mat.data[0];
    EXPECT_TRUE(result == KORVO_ERR_OK || mat.data == nullptr);
  }
  EXPECT_EQ(heap::live_blocks(), live_before) << text;
  return result;
}

template <class M>
std::string printed(const std::string& rows, const std::string& cols, const std::string& first) {
  return text_form<M>::word + (" Matrix: nrow=" + rows) + ", ncol=" + cols + "  {\n    Row[0]:  " + first +
         " \n}\n";
}

TEST(Parse, RefusesHeadingsThatLie) {
  EXPECT_EQ(parsed<_u8_mat>(printed<_u8_mat>("1", "1", "7")), KORVO_ERR_OK);
  EXPECT_EQ(parsed<_u8_mat>(printed<_u16_mat>("1", "1", "7")), KORVO_ERR_IO);
  for (const char* none : {"0", "-3", "-2147483648"}) {
    EXPECT_EQ(parsed<_u8_mat>(printed<_u8_mat>(none, "1", "7")), KORVO_ERR_ILLEGAL_SIZE);
    EXPECT_EQ(parsed<_u8_mat>(printed<_u8_mat>("1", none, "7")), KORVO_ERR_ILLEGAL_SIZE);
  }
  for (const char* wide :
       {"2147483648", "4294967297", "-2147483649", "18446744073709551617", "99999999999999999999"})
    EXPECT_EQ(parsed<_u8_mat>(printed<_u8_mat>("0", wide, "7")), KORVO_ERR_ILLEGAL_VALUE) << wide;
  // Products that wrap to 2, to 1, to 0; the first that is too large, and the largest, which is asked for.
  EXPECT_EQ(parsed<_u8_mat>(printed<_u8_mat>("1431655766", "3", "7 7")), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(parsed<_dbl_mat>(printed<_dbl_mat>("2147483647", "2147483647", "7")), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(parsed<_s16_mat>(printed<_s16_mat>("65536", "65536", "7")), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(parsed<_dbl_mat>(printed<_dbl_mat>("1", "268435456", "7")), KORVO_ERR_ILLEGAL_VALUE);
  heap::fail_at(1);
  EXPECT_EQ(parsed<_dbl_mat>(printed<_dbl_mat>("1", "268435455", "7")), KORVO_ERR_MALLOC);
  heap::fail_never();
}

TEST(Parse, TakesAnyWhiteSpaceAndAsksForNoLabels) {
  EXPECT_EQ(parsed<_flt_mat>("\n\t float\nMatrix:nrow= 2,ncol= 1\n{Row[ 7]:1 Row[\n-9 ]:2}"), KORVO_ERR_OK);
  EXPECT_EQ(parsed<_flt_mat>("float Matrix: nrow=2, ncol=1 1 2 }"), KORVO_ERR_OK);
  for (const char* bad :
       {"nrow=2 , ncol=1 {1 2}", "nrow=2, ncol=1 {1 2 3}", "nrow=2, ncol=1 {1 2", "nrow=2, ncol=1 {1 x}"})
    EXPECT_EQ(parsed<_flt_mat>(std::string("float Matrix: ") + bad), KORVO_ERR_IO);
}

TEST(Parse, UniversalFormLeavesTheStreamWhereAWordIsNotKnown) {
  for (const std::string& word :
       {std::string("complex"), std::string("doubleMatrix:"), std::string(3000, 'x'), std::string()}) {
    fault_stream stream(" " + word);
    made<_univ_mat> mat;
    EXPECT_EQ(matuniv_parse(stream.get(), nullptr, &mat), word.empty() ? KORVO_ERR_IO : KORVO_ERR_ILLEGAL_TYPE);
    EXPECT_EQ(stream.rest(), stream.text());
  }
}

// What becomes of a number as an element of a printed matrix and of a list.
template <class M>
void accepts(const std::string& number, double value) {
  element<M> element{};
  matrix<M> listed(1, 1);
  EXPECT_EQ(parsed<M>(printed<M>("1", "1", number), &element), KORVO_ERR_OK) << number;
  EXPECT_EQ(element, value) << number;
  EXPECT_EQ(result_on(number, forms<M>::read_ascii, 0, 0, nullptr, &listed), KORVO_ERR_OK) << number;
  EXPECT_EQ(listed.data[0], value) << number;
}
template <class M>
void refuses(const std::string& number) {
  matrix<M> listed(1, 1);
  EXPECT_EQ(parsed<M>(printed<M>("1", "1", number)), KORVO_ERR_ILLEGAL_VALUE) << number;
  EXPECT_EQ(result_on(number, forms<M>::read_ascii, 0, 0, nullptr, &listed),
            is_floating(tag<M>::type) ? KORVO_ERR_OK : KORVO_ERR_IO)
      << number;
}

TEST(MatIoNumbers, HaveTheRangesOfTheirTypeAfterTheirCut) {
  accepts<_u8_mat>("255", 255), accepts<_u8_mat>("+65537", 1);
  refuses<_u8_mat>("256"), refuses<_u8_mat>("-1");
  accepts<_u16_mat>("70000", 4464), accepts<_u16_mat>("-1", 65535);
  accepts<_u16_mat>("99999999999999999999999", 65535), accepts<_u16_mat>("-18446744073709551614", 2);
  accepts<_u16_mat>("-99999999999999999999999", 65535);
  accepts<_s16_mat>("-32767", -32767), accepts<_s16_mat>("40000", -25536);
  refuses<_s16_mat>("-32768"), refuses<_s16_mat>("32768");
  accepts<_u32_mat>("4294967295", 4294967295.0), accepts<_u32_mat>("-0", 0);
  refuses<_u32_mat>("4294967296"), refuses<_u32_mat>("-1"), refuses<_u32_mat>("-18446744073709551615");
  accepts<_s32_mat>("2147483647", 2147483647), accepts<_s32_mat>("-2147483647", -2147483647);
  refuses<_s32_mat>("-2147483648"), refuses<_s32_mat>("2147483648"), refuses<_s32_mat>("-4294967297");
  accepts<_dbl_mat>("1e37", 1e37), accepts<_flt_mat>("-1e37", -1e37F), accepts<_dbl_mat>("0x1p-3", 0.125);
  for (const char* number : {"1.00001e37", "-2e37", "inf", "-inf", "nan"})
    refuses<_dbl_mat>(number), refuses<_flt_mat>(number);
}

// Whole numbers are scanned by hand: the formatted scanner of the runtime is the twin, for what is read, what
// is left of it, and where the stream stands.
TEST(MatIoNumbers, AreScannedAsTheRuntimeDoes) {
  std::mt19937 engine(7);
  const std::string alphabet = " \n\t+--0123456789,#x";
  for (int trial = 0; trial < 3000; ++trial) {
    std::string text(engine() % 24, ' ');
    for (char& c : text) c = alphabet[engine() % (trial % 2 ? alphabet.size() : 16)];
    fault_stream ours(text);
    fault_stream theirs(text);
    std::int64_t number = 0;
    long expected = 0;
    const bool found = std::fscanf(theirs.get(), "%ld", &expected) == 1;
    ASSERT_EQ(scan(ours.get(), &number), found ? KORVO_ERR_OK : KORVO_ERR_IO) << text;
    ASSERT_EQ(number, expected) << text;
    ASSERT_EQ(ours.rest(), theirs.rest()) << text;
  }
}

TEST(WriteAscii, WritesExactlyThis) {
  const u8_matrix three(3, 1, {1, 2, 30});
  const dbl_matrix reals(1, 2, {-0.5, 1234567});
  EXPECT_EQ(text_of(matu8_write_ascii, &three, nullptr, 70, nullptr), "1 2 30\n");
  EXPECT_EQ(text_of(matu8_write_ascii, &three, "", 4, nullptr), "12\n30\n");  // 3 a number
  EXPECT_EQ(text_of(matu8_write_ascii, &three, ", ", 8, nullptr), "1, 2, \n30\n");
  EXPECT_EQ(text_of(matu8_write_ascii, &three, ",", 3, nullptr), "\n1,\n2,\n30\n");  // too short for any
  EXPECT_EQ(text_of(matdbl_write_ascii, &reals, ";", 99, nullptr), "      -0.5;1.23457e+06\n");
}

// The rule of lists, plainly.
template <class M>
std::string listed(const M& mat, const std::string& delimiter, std::uint16_t line_length) {
  constexpr _korvo_type type = tag<M>::type;
  const std::size_t margin = is_floating(type) ? 18 : type == KORVO_UINT8 ? 3 : sizeof *mat.data == 2 ? 6 : 11;
  std::string text;
  std::string line;
  for (std::int32_t i = 0; i < mat.nelem; ++i) {
    if (line_length < line.size() + delimiter.size() + margin) text += std::exchange(line, "") + "\n";
    char number[64];
    (void)std::snprintf(number, sizeof number, is_floating(type) ? "%10g" : "%.0f",
                        static_cast<double>(mat.data[i]));
    line += number + (i + 1 < mat.nelem ? delimiter : "");
  }
  return text + line + "\n";
}

TEST(MatIoLists, OfEveryTypeAreSetByTheRuleAndReadBack) {
  each_record(real_records{}, [&]<class M> {
    const double low = std::is_signed_v<element<M>> ? -128 : 0;
    const matrix<M> all[] = {matrix<M>::random(30, 31, 5, low, sizeof(element<M>) == 1 ? 255 : 32767),
                             extremes<M>()};
    for (const matrix<M>& mat : all)
      for (const std::uint16_t length : std::vector<std::uint16_t>{0, 40, 70, 65535})
        for (const std::size_t gap : {1U, 8U, 9U, 5000U}) {
          const _univ_mat same = mat.universal();
          const std::string delimiter(gap, ';');
          const std::string text = text_of(forms<M>::write_ascii, &mat, delimiter.c_str(), length, nullptr);
          ASSERT_EQ(text, listed<M>(mat, delimiter, length)) << length;
          ASSERT_EQ(text, text_of(matuniv_write_ascii, &same, delimiter.c_str(), length, nullptr));
          if (gap == 5000) continue;
          matrix<M> typed(mat.nrow, mat.ncol);
          matrix<M> again(mat.nrow, mat.ncol);
          _univ_mat universal = again.universal();
          ASSERT_EQ(result_on(text, forms<M>::read_ascii, ';', 0, nullptr, &typed), KORVO_ERR_OK);
          ASSERT_EQ(result_on(text, matuniv_read_ascii, ';', 0, nullptr, &universal), KORVO_ERR_OK);
          ASSERT_EQ(text_of(forms<M>::write_ascii, &typed, delimiter.c_str(), length, nullptr), text);
          ASSERT_TRUE(same_elements<M>(typed, again));
        }
  });
}

TEST(ReadAscii, PassesDelimitersAndComments) {
  const auto expect = [](const std::string& text, char delimiter, char comment, code expected,
                         const char* rest = "") {
    dbl_matrix reals(1, 3);
    s32_matrix wholes(1, 3);
    fault_stream one(text);
    fault_stream other(text);
    EXPECT_EQ(matdbl_read_ascii(one.get(), delimiter, comment, nullptr, &reals), expected) << text;
    EXPECT_EQ(mats32_read_ascii(other.get(), delimiter, comment, nullptr, &wholes), expected) << text;
    if (expected != KORVO_ERR_OK) return;
    EXPECT_EQ(reals.elements(), (std::vector<double>{1, 2, 3})) << text;
    EXPECT_EQ(wholes.elements(), (std::vector<std::int32_t>{1, 2, 3})) << text;
    EXPECT_EQ(one.rest(), rest);
    EXPECT_EQ(other.rest(), rest);
  };
  expect("1,2 # note\n3", ',', '#', KORVO_ERR_OK);
  expect("##\n#1\n ,,\n1,, ,2\t#\n#,\n,3,", ',', '#', KORVO_ERR_OK, ",");
  expect("1 2 3 4", 0, 0, KORVO_ERR_OK, " 4");
  expect("1\377 2\377\376 9\n3", '\377', '\376', KORVO_ERR_OK);  // not taken for the end of the stream
  expect(std::string("1\0002 3", 6), 0, 0, KORVO_ERR_IO);        // 0 is no character to pass
  expect("1,2;3", ',', '#', KORVO_ERR_IO);
  expect("1 -,2,3", ',', '#', KORVO_ERR_OK);  // a sign alone goes with the attempt to read a number
  expect("1 2 # 3", ',', '#', KORVO_ERR_IO);  // a comment that the stream ends in
  for (const std::size_t length : {97U, 98U, 99U, 100U, 198U, 199U, 5000U})
    expect("1 2\n#" + std::string(length, '4') + "\n3", 0, '#', KORVO_ERR_OK);
}

TEST(MatIoRaw, OrdersBytesAsAsked) {
  const s16_matrix shorts(1, 2, {1, -2});
  const matrix<_u32_mat> word(1, 1, {0x01020304});
  const flt_matrix one(1, 1, {1.0});
  const dbl_matrix minus_two(1, 1, {-2.0});
  EXPECT_EQ(text_of(mats16_write_raw, &shorts, 1, nullptr), std::string("\0\1\xff\xfe", 4));
  EXPECT_EQ(text_of(mats16_write_raw, &shorts, 0, nullptr), std::string("\1\0\xfe\xff", 4));
  EXPECT_EQ(text_of(matu32_write_raw, &word, 2, nullptr), "\1\2\3\4");
  EXPECT_EQ(text_of(matflt_write_raw, &one, 1, nullptr), std::string("\x3f\x80\0\0", 4));
  EXPECT_EQ(text_of(matdbl_write_raw, &minus_two, 0, nullptr), std::string("\0\0\0\0\0\0\0\xc0", 8));

  // Both orders of all types come back, and so do the bits of a signalling NaN.
  each_record(real_records{}, [&]<class M> {
    matrix<M> mat = matrix<M>::random(3, 7, 11);
    const std::uint32_t signalling = 0x7fa00001;
    if constexpr (sizeof *mat.data == sizeof signalling) std::memcpy(mat.data, &signalling, sizeof signalling);
    const _univ_mat same = mat.universal();
    for (const std::uint8_t flag : std::vector<std::uint8_t>{0, 1}) {
      matrix<M> back(3, 7);
      matrix<M> again(3, 7);
      _univ_mat universal = again.universal();
      const std::string bytes = text_of(forms<M>::write_raw, &mat, flag, nullptr);
      EXPECT_EQ(text_of(matuniv_write_raw, &same, flag, nullptr), bytes);
      fault_stream stream("12345" + bytes + "rest");
      EXPECT_EQ(forms<M>::read_raw(stream.get(), 5, flag, nullptr, &back), KORVO_ERR_OK);
      EXPECT_EQ(stream.rest(), "rest");
      EXPECT_EQ(result_on(bytes, matuniv_read_raw, 0, flag, nullptr, &universal), KORVO_ERR_OK);
      EXPECT_TRUE(same_elements<M>(mat, back) && same_elements<M>(mat, again));
    }
  });
}

}  // namespace

// Matrix files and their streams when something is wrong: files cut short, streams that fail, the host's
// locale, refused arguments, hosts that stop a call.
#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>

#include "korvos/matrix/mat_io.h"
#include "tests/support/costs.hpp"
#include "tests/support/heap.hpp"
#include "tests/support/locale.hpp"
#include "tests/support/mat_io_forms.hpp"
#include "tests/support/matrix.hpp"

using namespace korvo;

namespace {

template <class M>
using forms = mat_io_forms<M>;

// Calls test(file, run) for each reader, with a file that none of its beginnings can stand for.
template <class M, class Test>
void each_reader(Test test) {
  const matrix<M> mat(2, 3, {11, 0, 250, 7, 40, 5});
  matrix<M> back(2, 3);
  std::string file = text_of(forms<M>::print, &mat, nullptr, 20, nullptr);
  file.pop_back();
  test(file, [](FILE* stream) { return forms<M>::parse(stream, nullptr, std::make_unique<made<M>>().get()); });
  test(file,
       [](FILE* stream) { return matuniv_parse(stream, nullptr, std::make_unique<made<_univ_mat>>().get()); });
  file = text_of(forms<M>::write_ascii, &mat, " ;#\n", 20, nullptr);
  file.pop_back();
  test(file, [&](FILE* stream) { return forms<M>::read_ascii(stream, ';', '#', nullptr, &back); });
  file = "skipped" + text_of(forms<M>::write_raw, &mat, 1, nullptr);
  test(file, [&](FILE* stream) { return forms<M>::read_raw(stream, 7, 1, nullptr, &back); });
}

// The same for each writer, with a file that is empty.
template <class M, class Test>
void each_writer(Test test) {
  const matrix<M> mat(2, 3, {11, 0, 250, 7, 40, 5});
  test("", [&](FILE* stream) { return forms<M>::print(stream, &mat, nullptr, 20, nullptr); });
  test("", [&](FILE* stream) { return forms<M>::write_ascii(stream, &mat, "; ", 20, nullptr); });
  test("", [&](FILE* stream) { return forms<M>::write_ascii(stream, &mat, " and then ", 20, nullptr); });
  test("", [&](FILE* stream) { return forms<M>::write_raw(stream, &mat, 1, nullptr); });
}

TEST(MatIoFaults, FilesThatEndEarly) {
  const int live_before = heap::live_blocks();
  each_record(real_records{}, [&]<class M> {
    each_reader<M>([](const std::string& file, auto read) {
      fault_stream whole(file);
      ASSERT_EQ(read(whole.get()), KORVO_ERR_OK) << file;
      for (std::size_t size = 0; size < file.size(); ++size) {
        fault_stream cut(file.substr(0, size));
        const code result = read(cut.get());
        EXPECT_TRUE(result == KORVO_ERR_IO || (result == KORVO_ERR_ILLEGAL_TYPE && size < 6)) << size << file;
      }
    });
  });
  EXPECT_EQ(heap::live_blocks(), live_before);
}

TEST(MatIoFaults, StreamsThatFail) {
  const int live_before = heap::live_blocks();
  const auto check = [](const std::string& file, auto run) {
    fault_stream sound(file);
    ASSERT_EQ(run(sound.get()), KORVO_ERR_OK);
    ASSERT_GT(sound.calls(), 0);
    for (int k = 1; k <= sound.calls(); ++k) {
      fault_stream failing(file, k);
      EXPECT_EQ(run(failing.get()), KORVO_ERR_IO) << "call " << k << " of " << sound.calls() << " on " << file;
    }
  };
  each_record(real_records{}, [&]<class M> {
    each_reader<M>(check);
    each_writer<M>(check);
  });
  EXPECT_EQ(heap::live_blocks(), live_before);
}

// The runtime counts what reached the buffer of a stream as written, even if it could not be written out.
TEST(MatIoFaults, BuffersThatCannotBeWrittenOut) {
  const u8_matrix mat(1, 3);
  fault_stream list({}, 2, _IOLBF);
  fault_stream lines({}, 2, _IOLBF);
  EXPECT_EQ(matu8_write_ascii(list.get(), &mat, nullptr, 5, nullptr), KORVO_ERR_IO);
  EXPECT_EQ(matu8_print(lines.get(), &mat, nullptr, 0, nullptr), KORVO_ERR_IO);
  EXPECT_EQ(matu8_print(lines.get(), &mat, nullptr, 0, nullptr), KORVO_ERR_IO);  // its indicator is still set
}

TEST(MatIoLocale, OfTheHostChangesNothingAndIsBackAfterEveryCall) {
  const flt_matrix reals(1, 2, {0.5, 1e6});
  const auto texts = [&] {
    return text_of(matflt_print, &reals, "%'.2f ", 0, nullptr) +
           text_of(matflt_write_ascii, &reals, nullptr, 70, nullptr);
  };
  const std::string expected = texts();
  const comma_locale host;
  char half[8];
  (void)std::snprintf(half, sizeof half, "%.1f", 0.5);
  ASSERT_EQ(std::string(half), host.is_available() ? "0,5" : "0.5");
  EXPECT_EQ(texts(), expected);
  flt_matrix half_read(1, 1);
  EXPECT_EQ(result_on("0.5", matflt_read_ascii, 0, 0, nullptr, &half_read), KORVO_ERR_OK);
  EXPECT_EQ(half_read.data[0], 0.5F);
  const auto check = [&](const std::string& file, auto run) {
    for (const int failing_call : {INT_MAX, 1}) {
      fault_stream stream(file, failing_call);
      EXPECT_EQ(run(stream.get()), failing_call == 1 ? KORVO_ERR_IO : KORVO_ERR_OK);
      EXPECT_EQ(host.is_set(), host.is_available());
    }
  };
  each_reader<_flt_mat>(check);
  each_writer<_flt_mat>(check);
}

TEST(MatIoRefusals, ComeInTheirOrder) {
  fault_stream file("1 2 3");
  each_record(real_records{}, [&]<class M> {
    using forms = mat_io_forms<M>;
    matrix<M> mat(1, 1);
    M none = mat;
    none.nrow = 0;
    for (M* const given : {&none, static_cast<M*>(&mat)}) {
      const code expected = given == &none ? KORVO_ERR_ILLEGAL_SIZE : KORVO_ERR_NULL_POINTER;
      EXPECT_EQ(forms::print(nullptr, given, "%s", 0, nullptr), expected);
      EXPECT_EQ(forms::write_ascii(nullptr, given, nullptr, 70, nullptr), expected);
      EXPECT_EQ(forms::read_ascii(nullptr, 0, 0, nullptr, given), expected);
      EXPECT_EQ(forms::read_raw(nullptr, -1, 0, nullptr, given), expected);
    }
    EXPECT_EQ(forms::read_raw(file.get(), -1, 0, nullptr, &mat), KORVO_ERR_ILLEGAL_VALUE);
    EXPECT_EQ(forms::write_raw(nullptr, &none, 0, nullptr), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(forms::write_raw(file.get(), &none, 0, nullptr), KORVO_ERR_ILLEGAL_SIZE);
    EXPECT_EQ(forms::parse(nullptr, nullptr, &mat), KORVO_ERR_NULL_POINTER);
    EXPECT_EQ(forms::parse(file.get(), nullptr, nullptr), KORVO_ERR_NULL_POINTER);
  });
  cpx_matrix complex(1, 1);
  _univ_mat dcomplex = complex.universal();
  _univ_mat sint8 = dcomplex;
  sint8.type = KORVO_SINT8;
  for (_univ_mat* const mat : {&dcomplex, &sint8, static_cast<_univ_mat*>(nullptr)}) {
    const code expected = mat ? KORVO_ERR_ILLEGAL_TYPE : KORVO_ERR_NULL_POINTER;
    EXPECT_EQ(matuniv_print(nullptr, mat, nullptr, 0, nullptr), expected);
    EXPECT_EQ(matuniv_write_ascii(nullptr, mat, nullptr, 70, nullptr), expected);
    EXPECT_EQ(matuniv_read_ascii(nullptr, 0, 0, nullptr, mat), expected);
    EXPECT_EQ(matuniv_write_raw(nullptr, mat, 0, nullptr), expected);
    EXPECT_EQ(matuniv_read_raw(nullptr, -1, 0, nullptr, mat), expected);
  }
  EXPECT_EQ(matuniv_parse(nullptr, nullptr, &dcomplex), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(matuniv_parse(file.get(), nullptr, nullptr), KORVO_ERR_NULL_POINTER);
  EXPECT_EQ(file.rest(), "1 2 3");
}

TEST(MatIoCosts, AreThoseOfCharactersRowsAndBytes) {
  const s16_matrix four(2, 2, {1, 2, 30, 4});
  const u8_matrix three(1, 3, {1, 2, 30});
  s16_matrix wide(1, 3);
  u8_matrix narrow(1, 3);
  expect_tallies([&](void* host) { return result_on("", mats16_print, &four, nullptr, 15, host); },
                 {30010 + 1000 * 32, 30010 + 1000 * (32 + 33)});
  expect_tallies(
      [&](void* host) {
        made<_u8_mat> back;
        return result_on("uint8 Matrix: nrow=2, ncol=1 {1 2}", matu8_parse, host, &back);
      },
      {10000, 20000});
  expect_tallies([&](void* host) { return result_on("", matu8_write_ascii, &three, ",", 3, host); },
                 {1000, 4000, 7000, 10000});
  expect_tallies([&](void* host) { return result_on("1,2 #\n3", matu8_read_ascii, ',', '#', host, &narrow); },
                 {5000});
  expect_tallies([&](void* host) { return result_on("", mats16_write_raw, &wide, 1, host); }, {6006});
  expect_tallies([&](void* host) { return result_on("", matu8_write_raw, &three, host); }, {3000});
  expect_tallies([&](void* host) { return result_on("1234567890", mats16_read_raw, 4, 1, host, &wide); },
                 {10000, 10006});
  expect_tallies([&](void* host) { return result_on("1234567", matu8_read_raw, 4, host, &narrow); }, {7000});
}

}  // namespace

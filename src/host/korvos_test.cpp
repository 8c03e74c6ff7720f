#include "korvos/host/korvos.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "tests/support/hash.hpp"
#include "tests/support/matrix.hpp"

namespace {

using namespace korvo;
using std::int32_t;

// 3 rows in columns of 5, the last of which ends with its rows.
aMatrix host_matrix(int32_t cols, double* real = nullptr, double* imag = nullptr) {
  return {7, 5, static_cast<std::uint32_t>(cols * 40 - 16), 7, real, imag, 3, cols};
}

TEST(Bridge, KeepsToTheStrideForEveryTypeThereAndBack) {
  each_record(real_records{}, []<class M> {
    const auto in = matrix<M>::random(3, 12, 1), again = matrix<M>::random(3, 4, 2);
    dbl_matrix gaps(12, 5, -7.0), back[] = {{3, 4}, {3, 4}, {3, 4}};
    aMatrix host = host_matrix(12, gaps.data);
    const _univ_mat from = in.universal();
    EXPECT_EQ(matuniv_assign_to_sheetrix(&from, &host), KORVO_ERR_OK);
    for (int32_t x = 0; x < 60; ++x) EXPECT_EQ(gaps.data[x], x % 5 < 3 ? in(x % 5, x / 5) : -7.0);
    int32_t one = 1, three = 3;
    _univ_mat grey = again.universal();
    _univ_mat planes[] = {back[0].universal(), back[1].universal(), back[2].universal()};
    _mat_set grey_set = {1, &one, 1, &grey}, set = {1, &three, 3, planes};
    EXPECT_EQ(matset_assign_from_sheetrix_color(&host, &set), KORVO_ERR_OK);
    for (int32_t x = 0; x < 36; ++x) EXPECT_EQ(back[x / 4 % 3](x / 12, x % 4), in.data[x]);
    EXPECT_EQ(matset_assign_to_sheetrix_color(&grey_set, &host), KORVO_ERR_OK);
    for (int32_t x = 0; x < 60; ++x) EXPECT_EQ(gaps.data[x], x % 5 < 3 ? again(x % 5, x / 5 % 4) : -7.0);
    host.cols = 4;
    EXPECT_EQ(matset_assign_to_sheetrix_color(&grey_set, &host),
              KORVO_ERR_ILLEGAL_SIZE);  // three times too few
  });
}

TEST(Bridge, MakesEachPartAtItsFirstNumberThatIsNotZero) {
  cpx_matrix in(3, 4), back(3, 4);
  _univ_mat from = in.universal(), to = back.universal();
  std::fill_n(in.data, 12, korvo_dcomplex{-0.0, 0.0});
  aMatrix host = host_matrix(4);
  EXPECT_EQ(matuniv_assign_to_sheetrix(&from, &host), KORVO_ERR_OK);
  EXPECT_EQ(host.real, nullptr);
  in(1, 1).re = NAN;
  host.bytes_per_part -= 1;
  EXPECT_EQ(matuniv_assign_to_sheetrix(&from, &host), KORVO_ERR_ILLEGAL_SIZE);
  host.bytes_per_part += 1;
  EXPECT_EQ(matuniv_assign_to_sheetrix(&from, &host), KORVO_ERR_OK);
  EXPECT_EQ(host.imag, nullptr);
  ASSERT_NE(host.real, nullptr);
  for (int32_t x = 0; x < 18; ++x)  // of the zeros with a sign only those that come later are stored
    EXPECT_EQ(std::signbit(host.real[x]), x % 5 == 2 || (x % 5 == 1 && x > 6)) << x;
  EXPECT_EQ(matuniv_assign_from_sheetrix(&host, &to), KORVO_ERR_OK);
  EXPECT_TRUE(std::isnan(back(1, 1).re) && back(1, 1).im == 0.0);
  host.rows_allocated = 2;
  EXPECT_EQ(matuniv_assign_from_sheetrix(&host, &to), KORVO_ERR_ILLEGAL_SIZE);
  std::free(host.real);
}

TEST(Bridge, RefusesImaginaryZerosForDoublesAndPointsAtColumns) {
  dbl_matrix zeros(4, 5), back(3, 4, 1.0);
  aMatrix host = host_matrix(4, nullptr, zeros.data);
  _univ_mat to = back.universal();
  EXPECT_EQ(matuniv_assign_from_sheetrix(&host, &to), KORVO_ERR_ILLEGAL_TYPE);
  double** const columns[] = {allocRealColArr(&host), allocImagColArr(&host)};
  EXPECT_TRUE(columns[0][3] == nullptr && columns[1][3] == zeros.data + 15);
  for (double** const array : columns) std::free(array);
  host.imag = nullptr;
  EXPECT_EQ(matuniv_assign_from_sheetrix(&host, &to), KORVO_ERR_OK);
  EXPECT_EQ(back.elements(), std::vector<double>(12));
}

TEST(Messages, AreTheHostsOwn) {
  std::string texts, codes;
  for (const char* text : shx_std_error_messages) texts += std::string(text) + '\n';
  byte_hash hash;
  hash.add(texts.data(), texts.size());
  EXPECT_EQ(hash.value(), 0xf0020000d6ea62beU);
  for (int32_t e = -1; e <= 17; ++e) codes += std::to_string(korvo_err_translate(_korvo_errcode{e})) + ' ';
  EXPECT_EQ(codes, "53 53 46 53 53 45 53 53 53 49 1 48 5 53 53 53 53 53 53 ");
}

}  // namespace

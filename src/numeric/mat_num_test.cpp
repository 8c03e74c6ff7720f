#include "korvos/numeric/mat_num.h"

#include <numeric>

#include "tests/support/all.hpp"

namespace {

using namespace korvo;

constexpr auto lu = matdbl_lu_decomposition;
constexpr auto solve = matdbl_lu_solve;
constexpr auto nnls = matdbl_non_negative_least_squares;

dbl_matrix numbers(int m, int n, unsigned seed) { return dbl_matrix::random(m, n, seed, -6.7, 6.7); }
dbl_matrix each(int rows, int cols, const auto& element) {
  dbl_matrix mat(rows, cols);
  for (int i = 0; i < mat.nelem; ++i) mat.data[i] = element(i / cols, i % cols);
  return mat;
}
double unit(int i, int j) { return i == j ? 1.0 : 0.0; }

// In the sense of Frobenius; and that of b - a x, in units of its worst rounding.
double norm(const dbl_matrix& a) {
  return std::sqrt(std::inner_product(a.data, a.data + a.nelem, a.data, 0.0));
}
double residual(const dbl_matrix& a, const dbl_matrix& x, dbl_matrix b, double scale) {
  for (int i = 0; i < b.nelem; ++i)
    for (int k = 0; k < a.ncol; ++k) b.data[i] -= a(i / b.ncol, k) * x(k, i % b.ncol);
  return norm(b) / (a.nrow * scale * 0x1p-52);
}

using codes = std::vector<_korvo_errcode>;
void expect(_korvo_errcode code, const codes& seen) { EXPECT_EQ(seen, codes(seen.size(), code)); }

// Column by column, as the method is defined.
void decompose(const dbl_matrix& a, const s32_matrix& pivots) {
  const int n = a.nrow;
  dbl_matrix scales(n, 1, HUGE_VAL);
  for (int i = 0; i < a.nelem; ++i)
    scales.data[i / n] = std::min(scales.data[i / n], 1.0 / std::fabs(a.data[i]));
  for (int j = 0, pivot = 0; j < n; ++j) {
    double best = 0.0;
    for (int i = 0; i < n; ++i) {
      for (int k = 0; k < std::min(i, j); ++k) a(i, j) -= a(i, k) * a(k, j);
      const double candidate = std::fabs(a(i, j)) * scales(i, 0);
      if (i >= j && candidate >= best) best = candidate, pivot = i;
    }
    pivots(j, 0) = pivot;
    for (int k = 0; pivot != j && k < n; ++k) std::swap(a(pivot, k), a(j, k));
    scales(pivot, 0) = scales(j, 0);
    if (a(j, j) == 0.0) a(j, j) = 1e-20;
    for (int i = j + 1; i < n; ++i) a(i, j) *= 1.0 / a(j, j);
  }
}

const dbl_matrix noise = numbers(500, 500, 5);
double (*const kinds[])(int i, int j, int n) = {
    [](int i, int j, int) { return noise(i, j); },
    [](int i, int j, int) { return noise(0, j) + 1e-15 * noise(i, j); },     // near singular
    [](int i, int j, int) { return std::ldexp(noise(i, j), 9 * (i % 3)); },  // scaled rows
    [](int i, int j, int n) { return noise(i % (n / 2 + 1), j); },           // of half the rank
    [](int, int, int) { return 1.0; },
    [](int i, int j, int) { return 1.0 / (i + j + 1.0); }};  // Hilbert's

TEST(LuDecomposition, IsTheColumnFormAtEachLevelAndLeavesSmallResiduals) {
  for (std::size_t kind = 0; kind < std::size(kinds); ++kind)
    for (const int n : {1, 2, 3, 5, 17, 64, 130, 500}) {
      if (n == 500 && kind > 0) continue;
      SCOPED_TRACE(std::to_string(n) + " of kind " + std::to_string(kind));
      dbl_matrix in = each(n, n, [&](int i, int j) { return kinds[kind](i, j, n); }), twin(in), inverse(in);
      s32_matrix pivots(n, 1);
      decompose(twin, pivots);
      each_level([&] {
        dbl_matrix a(in);
        s32_matrix record(n, 1, -7);
        EXPECT_EQ(lu(&a, nullptr, &record, &a), KORVO_ERR_OK);
        EXPECT_TRUE(a.elements() == twin.elements() && record.elements() == pivots.elements());
      });
      if (n == 500) continue;
      dbl_matrix rhs = numbers(n, 1, 6), x(n, 1);
      expect(KORVO_ERR_OK, {solve(&twin, &rhs, &pivots, nullptr, &x), matdbl_inverse(&in, nullptr, &inverse)});
      EXPECT_LT(residual(in, x, rhs, norm(in) * norm(x)), 30.0);
      EXPECT_LT(residual(in, inverse, each(n, n, unit), norm(in) * norm(inverse)), 30.0);
    }
}

TEST(LuDecomposition, TakesTheLaterOfEqualsAndReplacesZeroPivots) {
  dbl_matrix ones(3, 3, 1.0), a(3, 3), huge(3, 3), zero(1, 1);
  s32_matrix pivots(3, 1);
  expect(KORVO_ERR_OK, {lu(&ones, nullptr, &pivots, &a), matdbl_inverse(&ones, nullptr, &huge)});
  EXPECT_EQ(a.elements(), (std::vector<double>{1, 1, 1, 1, 1e-20, 0, 1, 0, 1e-20}));
  EXPECT_EQ(pivots.elements(), (std::vector<std::int32_t>{2, 2, 2}));
  EXPECT_GT(norm(huge), 1e19);
  ones(1, 0) = ones(1, 1) = ones(1, 2) = 0.0;
  expect(KORVO_ERR_SINGULAR_MATRIX, {lu(&ones, nullptr, &pivots, &a), matdbl_inverse(&zero, nullptr, &zero)});
  EXPECT_EQ(a.elements(), ones.elements());
  for (const double odd : {std::nan(""), HUGE_VAL, 5e-324}) {  // stays inside, whatever comes out
    dbl_matrix in = each(40, 40, [=](int i, int j) { return (i + j) % 7 == 0 ? odd : noise(i, j); });
    s32_matrix record(40, 1, -7);
    EXPECT_EQ(lu(&in, nullptr, &record, &in), KORVO_ERR_OK);
    for (int j = 0; j < 40; ++j) EXPECT_TRUE(record(j, 0) >= j && record(j, 0) < 40);
  }
}

TEST(LuSolve, LeavesLeadingSmallElementsOutOfTheSums) {
  const dbl_matrix a(3, 3, {1, 0, 0, 1e30, 1, 0, 1e30, 1, 1});
  const s32_matrix pivots(3, 1, {0, 1, 2});
  dbl_matrix x(3, 1, {1e-20, 2, 5}), zeros(3, 1);
  expect(KORVO_ERR_OK, {solve(&a, &x, &pivots, nullptr, &x), solve(&a, &zeros, &pivots, nullptr, &zeros)});
  EXPECT_EQ(x.elements(), (std::vector<double>{1e-20, 2, 3}));
  EXPECT_EQ(zeros.elements(), (std::vector<double>{0, 0, 0}));
}

// Sizes, addresses and null pointers are those of the rows.
TEST(LinearSystems, RefuseInOrder) {
  dbl_matrix a(2, 2, {1, 1, 1, 0}), b(2, 1, 1.0), x(2, 1, 7.0);
  s32_matrix pivots(2, 1, 0), high(2, 1, {0, 2}), low(2, 1, {-1, 0});
  _univ_mat u = a.universal(), p = pivots.universal();
  expect(KORVO_ERR_NULL_POINTER,
         {matuniv_lu_decomposition(&u, nullptr, &u, nullptr), matuniv_lu_solve(&u, &p, &p, nullptr, nullptr)});
  expect(KORVO_ERR_ILLEGAL_TYPE, {matuniv_lu_decomposition(&u, nullptr, &u, &u),
                                  matuniv_lu_solve(&u, &p, &p, nullptr, &u), matuniv_inverse(&p, nullptr, &p)});
  expect(KORVO_ERR_OUT_OF_BOUNDS, {solve(&a, &b, &high, nullptr, &x), solve(&a, &b, &low, nullptr, &x)});
  EXPECT_EQ(x.elements(), (std::vector<double>{7, 7}));
  EXPECT_EQ(solve(&a, &b, &pivots, nullptr, &x), KORVO_ERR_ILLEGAL_VALUE);
}

TEST(LinearSystems, PollAtTheirStatedCosts) {
  dbl_matrix in = numbers(40, 40, 4), a(in), x(40, 1, 1.0);
  s32_matrix pivots(40, 1);
  expect_tallies([&](void* host) { return lu(&in, host, &pivots, &a); }, steps_of(40, 32000));
  expect_tallies([&](void* host) { return solve(&a, &x, &pivots, host, &x); }, {5000, 9800});
  const threshold every_test_polls(1e-9);
  fake_host host;
  EXPECT_EQ(matdbl_inverse(&in, host.intrp_ptr(), &a), KORVO_ERR_OK);
  EXPECT_EQ(host.polls(), 40 + 40 * (1 + 2 + 40));  // steps; for each column its zeros, solution and place
}

// At the optimum there is no gradient where x is above 0, and none upward where it is 0.
TEST(NonNegativeLeastSquares, FindsTheOptimum) {
  for (unsigned seed = 1; seed <= 4000; ++seed) {
    const unsigned size = seed % 40 == 0 ? 61 : 9;
    const int m = static_cast<int>(seed % size) + 1, n = static_cast<int>(seed / 9 % size) + 1;
    const dbl_matrix a = numbers(m, n, seed), b = numbers(1, m, ~seed);
    for (int i = 0; i < a.nelem && seed % 4 == 0; ++i) a.data[i] *= i * i % 11 % 3;
    for (int i = 0; i < m && seed % 5 == 0; ++i) a(i, n - 1) = a(i, 0) * 2.0 + (n > 2 ? a(i, 1) : 0.0);
    dbl_matrix x(n, 1, 9.0), rest(b), gradient(n, 1);
    EXPECT_EQ(nnls(&a, &b, nullptr, &x), KORVO_ERR_OK);
    for (int i = 0; i < a.nelem; ++i) rest.data[i / n] -= a.data[i] * x.data[i % n];
    for (int i = 0; i < a.nelem; ++i) gradient.data[i % n] += a.data[i] * rest.data[i / n];
    for (int j = 0; j < n; ++j)
      EXPECT_LT(std::max(gradient.data[j], x.data[j] > 0.0 ? -gradient.data[j] : -x.data[j]), 1e-9) << seed;
  }
}

TEST(NonNegativeLeastSquares, CutsTheIdentityAndPollsOnceAPass) {
  dbl_matrix one = each(3, 3, unit), b(1, 3, {4, -5, 6}), away(3, 1, -1.0), zeros(3, 1), x(3, 1);
  expect_tallies([&](void* host) { return nnls(&one, &b, host, &x); }, {90, 180});
  EXPECT_EQ(x.elements(), (std::vector<double>{4, 0, 6}));
  fake_host host(0);  // is not asked where there is nothing to do
  expect(KORVO_ERR_OK, {nnls(&one, &zeros, host.intrp_ptr(), &x), nnls(&one, &away, host.intrp_ptr(), &x)});
  EXPECT_EQ(x.elements(), zeros.elements());
}

}  // namespace

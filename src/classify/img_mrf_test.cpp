#include "korvos/classify/img_mrf.h"

#include "korvos/numeric/mat_num.h"
#include "tests/support/all.hpp"
#include "tests/support/scene.hpp"

namespace {

using namespace korvo;
using std::int32_t;

_mat_set* set(scene& s, std::vector<int32_t> dims, _korvo_type type, int32_t r, int32_t c, double low,
              double high) {
  std::vector<_univ_mat*> members;
  while (std::ssize(members) < dims.front() * (dims.size() > 1 ? dims.back() : 1))
    members.push_back(s.in(type, r, c, low, high));
  return s.in_set(members, dims);
}
template <class T = double>
T& at(const _mat_set* set, int32_t i, int32_t p) {
  return static_cast<T*>(set->mats[i].data)[p];
}
constexpr auto& label = at<int32_t>;

TEST(Gaussian, UpdatedByASecondBatchHasTheSampleCovarianceOfBoth) {
  scene s;
  const auto in = set(s, {4, 3}, KORVO_SINT16, 7, 60, -500.0, 500.0);
  const auto known = set(s, {4}, KORVO_SINT32, 7, 60, -2.0, 2.0);  // none of class 2
  const auto first = set(s, {4}, KORVO_DOUBLE, 4, 3, 0.0, 1.0),
             both = set(s, {4}, KORVO_DOUBLE, 4, 3, 0.0, 1.0);
  const s32_matrix early(4, 1, {0, -1, 0, 0}), late(1, 4, {1, 0, 1, 1});
  s32_matrix n_first(1, 4), n(4, 1);
  label(known, 2, 5) = 3;  // the one pixel of its class
  EXPECT_EQ(imgset_classify_gaussian_estimate(in, known, &early, nullptr, &n_first, first), KORVO_ERR_OK);
  at(first, 3, 0) = at(first, 3, 3) = NAN;  // of no pixels: not looked at
  const auto update = [&](void* host) {
    return imgset_classify_gaussian_update(in, known, first, &late, &n_first, host, &n, both);
  };
  expect_tallies(update, {15120, 30240, 45360, 45450, 45540, 45630});  // 9 * 420 * 4; 9 * 10, not for class 2
  double sum = 0.0, products = 0.0;
  for (int32_t x = 0; x < 1680; ++x)  // of bands 2 and 0 in class 1, about the means
    if (const int32_t t = x / 420, p = x % 420; label(known, t, p) == 1) {
      sum += at<int16_t>(in, t * 3 + 2, p) - at(both, 1, 2);
      products +=
          (at<int16_t>(in, t * 3 + 2, p) - at(both, 1, 2)) * (at<int16_t>(in, t * 3, p) - at(both, 1, 0));
    }
  EXPECT_NEAR(sum, 0.0, 1e-6);
  for (const int32_t place : {5, 9}) EXPECT_NEAR(at(both, 1, place), products / (n(1, 0) - 1), 1e-6);
  EXPECT_TRUE(n(2, 0) == 0 && at(both, 2, 0) == 0.0 && n(3, 0) == 1 && at(both, 3, 3) == 0.0);
  n_first(0, 1) = INT32_MAX;
  label(known, 1, 0) = 4;  // in a frame that takes no part
  EXPECT_EQ(update(nullptr), KORVO_ERR_OVERFLOW);
  label(known, 3, 419) = 4;
  EXPECT_EQ(update(nullptr), KORVO_ERR_ILLEGAL_VALUE);
  EXPECT_EQ(imgset_classify_gaussian_update(in, in, both, &n, &n, nullptr, &n, both),
            KORVO_ERR_ILLEGAL_ADDRESS);
}

TEST(Gaussian, DistanceIsThePlainLoopAndFarFromAClassWithoutSpread) {
  scene s;
  const auto in = set(s, {2, 7}, KORVO_FLOAT, 5, 79, -9.0, 9.0),
             band = set(s, {1, 1}, KORVO_UINT8, 1, 1, 9.0, 9.0);
  const auto classes = set(s, {1}, KORVO_DOUBLE, 8, 7, 0.0, 20.0),
             line = set(s, {2}, KORVO_DOUBLE, 2, 1, 4.0, 4.0);
  const auto out = set(s, {1}, KORVO_DOUBLE, 5, 79, 0.0, 0.0), few = set(s, {2}, KORVO_DOUBLE, 1, 1, 0.0, 0.0);
  const _dbl_mat covariance = {7, 7, 49, &at(classes, 0, 7)};
  dbl_matrix inverse(7, 7);
  EXPECT_EQ(matdbl_inverse(&covariance, nullptr, &inverse), KORVO_ERR_OK);
  EXPECT_EQ(imgset_classify_gaussian_distance(in, classes, 1, nullptr, out), KORVO_ERR_OK);
  for (int32_t p = 0; p < 5 * 79; ++p) {
    const auto d = [&](int32_t i) { return double{at<float>(in, 7 + i, p)} - at(classes, 0, i); };
    double expected = 0.0, y = 0.0;
    for (int32_t j = 0; j < 7; ++j, y = 0.0) {
      for (int32_t k = 0; k < 7; ++k) y += d(k) * inverse(k, j);
      expected += d(j) * y;
    }
    EXPECT_EQ(at(out, 0, p), expected);
  }
  at(line, 1, 1) = 1e-10;
  const auto run = [&](void* host) { return imgset_classify_gaussian_distance(band, line, 0, host, few); };
  expect_tallies(run, {5, 10});
  EXPECT_EQ((std::vector{at(few, 0, 0), at(few, 1, 0)}), (std::vector{6.25, 25.0 * 1e37}));
}

// The field as it is described, on whole images.
bool settle_slowly(const _mat_set* known, const _mat_set* kernels, int32_t t, _mat_set* d, s32_matrix& out) {
  const int32_t n = out.nelem, cols = out.ncol, hr = kernels->mats[0].nrow / 2, hc = kernels->mats[0].ncol / 2;
  std::fill_n(out.data, n, -1);
  s32_matrix mask(1, n, 1), next(1, n);
  const auto around = [&](int32_t p, auto visit) {
    for (int32_t q = 0; q < n; ++q)
      if (const int32_t r = q / cols - p / cols + hr, c = q % cols - p % cols + hc;
          r >= 0 && c >= 0 && r <= 2 * hr && c <= 2 * hc)
        visit(q, r * (2 * hc + 1) + c);
  };
  for (int sweep = 0; sweep < 100; ++sweep, std::swap(mask.data, next.data)) {
    std::fill_n(next.data, n, 0);
    for (int32_t p = 0; p < n; ++p)
      for (int32_t k = 0; mask.data[p] && k < kernels->nmat; ++k)
        if (const int32_t f = t + k - kernels->nmat / 2; f >= 0 && f < known->nmat)
          around(p, [&](int32_t q, int32_t tap) {
            const int32_t c = f == t ? out.data[q] : label(known, f, q);
            if (q != p && c >= 0 && c < d->nmat) at(d, c, p) -= at(kernels, k, tap);
          });
    for (int32_t p = 0, best; p < n; ++p) {
      best = at(d, 1, p) < at(d, 0, p) ? 1 : 0;
      if (mask.data[p] && best != std::exchange(out.data[p], best))
        around(p, [&](int32_t q, int32_t) { next.data[q] = 1; });
    }
  }
  return std::count(mask.data, mask.data + n, 1) == 0;
}

TEST(MarkovField, IsTheDescribedOneInPlaceTooAndWhetherItSettlesOrNot) {
  int settled = 0;
  for (int32_t round = 0; round < 60; ++round) {
    scene s;
    const auto known = set(s, {4}, KORVO_SINT32, 5, 6, -2.0, 4.0);  // -1 and classes that there are not, too
    const auto kernels = set(s, {round % 3 * 2 + 1}, KORVO_DOUBLE, round % 5 * 2 + 1, 9 - round % 5 * 2, -40.0,
                             round % 2 * 40.0);
    const auto distances = [&] { return set(s, {2}, KORVO_DOUBLE, 5, 6, 0.0, 30.0); };
    const auto in = distances(), found = distances(), slow = distances();
    for (int32_t x = 0; x < 60; ++x) at(slow, x / 30, x % 30) = at(in, x / 30, x % 30);
    s32_matrix out(5, 6), slow_out(5, 6);
    const bool settles = settle_slowly(known, kernels, round % 4, slow, slow_out);
    settled += settles;
    for (_mat_set* const d : {found, in}) {
      EXPECT_EQ(imgset_classify_markov_random_field(known, kernels, in, round % 4, nullptr, d, &out),
                settles ? KORVO_ERR_OK : KORVO_ERR_NOT_CONVERGING);
      EXPECT_EQ(out.elements(), slow_out.elements());
      for (int32_t x = 0; x < 60; ++x) EXPECT_EQ(at(d, x / 30, x % 30), at(slow, x / 30, x % 30));
    }
  }
  EXPECT_TRUE(settled > 0 && settled < 60) << settled;
}

TEST(MarkovField, EndsAfterTheSecondSweepWhereKernelsAreZero) {
  scene s;
  const auto known = set(s, {2}, KORVO_SINT32, 1, 6, 0.0, 2.0), d = set(s, {2}, KORVO_DOUBLE, 1, 6, 0.0, 30.0);
  const auto kernels = set(s, {3}, KORVO_DOUBLE, 3, 5, 0.0, 0.0);
  _s32_mat out = {1, 6, 6, &label(known, 0, 0)};  // labels that are not read
  const auto run = [&](void* host) {
    return imgset_classify_markov_random_field(known, kernels, d, 0, host, d, &out);
  };
  expect_tallies(run, {1914, 2130, 4044, 4260});  // 2 * 2 + 15 * 3 * 7 and 3 * 2 + 2 * 15, times 6 columns
}

TEST(Threshold, RejectsByTheSpreadOfAssignedDistances) {
  scene s;
  const auto d = set(s, {2}, KORVO_DOUBLE, 1, 5, 0.0, 0.0), known = set(s, {2}, KORVO_SINT32, 1, 5, 0.0, 1.0);
  const auto out = set(s, {2}, KORVO_SINT32, 1, 5, 0.0, 1.0);
  const auto expect = [&](std::vector<int32_t> before, double fraction, std::vector<int32_t> after) {
    std::copy(before.begin(), before.end(), &label(known, 1, 0));
    expect_tallies(
        [&](void* host) { return imgset_classify_threshold_distance(d, known, 1, fraction, host, out); },
        {10, 30});
    EXPECT_EQ(std::vector(&label(out, 1, 0), &label(out, 1, 0) + 5), after);
  };
  for (int32_t p = 0; p < 5; ++p) at(d, p % 2, p) = p;
  const std::vector<int32_t> some = {-1, 1, 0, 1, 0},
                             one = {-2, -1, -1, 1, -1};  // from 1 to 4; least and most alike
  expect(some, 1.0, some);
  expect(some, 0.5, {-1, 1, 0, -1, -1});
  expect(some, 0.0, {-1, 1, -1, -1, -1});
  expect(one, 0.0, one);
  label(known, 1, 4) = 2;
  EXPECT_EQ(imgset_classify_threshold_distance(d, known, 1, 0.0, nullptr, known), KORVO_ERR_ILLEGAL_VALUE);
}

// Of two faults the first check sees its own.
TEST(Classification, RefusesInOrder) {
  scene s;
  const auto doubles_of = [&](int32_t count, int32_t rows, int32_t cols) {
    return set(s, {count}, KORVO_DOUBLE, rows, cols, 0.0, 1.0);
  };
  const auto images = set(s, {2, 2}, KORVO_UINT8, 4, 5, 0.0, 9.0),
             integers = set(s, {3}, KORVO_SINT32, 4, 5, 0.0, 2.0);
  const auto statistics = doubles_of(3, 3, 2), doubles = doubles_of(3, 4, 5), other = doubles_of(3, 4, 5),
             narrow = doubles_of(3, 4, 4), kernel = doubles_of(1, 3, 3), even = doubles_of(1, 3, 2);
  s32_matrix out(4, 5);
  const auto distance = [&](_korvo_errcode expected, const _mat_set* in, int32_t frame, _mat_set* to) {
    EXPECT_EQ(imgset_classify_gaussian_distance(in, statistics, frame, nullptr, to), expected);
  };
  distance(KORVO_ERR_NULL_POINTER, nullptr, 9, narrow);
  distance(KORVO_ERR_ILLEGAL_SIZE, images, 9, narrow);
  for (const int32_t frame : {-1, 2}) distance(KORVO_ERR_ILLEGAL_VALUE, images, frame, integers);
  distance(KORVO_ERR_ILLEGAL_TYPE, images, 1, integers);
  const auto field = [&](_korvo_errcode expected, const _mat_set* labels, const _mat_set* kernels,
                         int32_t frame, _mat_set* to) {
    EXPECT_EQ(imgset_classify_markov_random_field(labels, kernels, doubles, frame, nullptr, to, &out),
              expected);
  };
  field(KORVO_ERR_NULL_POINTER, nullptr, even, 9, narrow);
  field(KORVO_ERR_ILLEGAL_SIZE, integers, even, 9, other);
  field(KORVO_ERR_ILLEGAL_SIZE, integers, kernel, 9, narrow);
  field(KORVO_ERR_ILLEGAL_VALUE, other, kernel, 3, other);
  field(KORVO_ERR_ILLEGAL_TYPE, other, kernel, 0, other);
  const auto reject = [&](_korvo_errcode expected, const _mat_set* labels, int32_t frame, double fraction) {
    EXPECT_EQ(imgset_classify_threshold_distance(doubles, labels, frame, fraction, nullptr, integers),
              expected);
  };
  reject(KORVO_ERR_ILLEGAL_SIZE, narrow, 9, 2.0);
  reject(KORVO_ERR_ILLEGAL_TYPE, other, 9, 2.0);
  reject(KORVO_ERR_ILLEGAL_VALUE, integers, 3, 0.5);
  for (const double fraction : {-0.1, 1.1, std::nan("")})
    reject(KORVO_ERR_ILLEGAL_VALUE, integers, 0, fraction);
}

}  // namespace

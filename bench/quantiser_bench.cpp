// Vector quantiser design: passes of a search for the nearest codewords.
#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "bench/bench.hpp"
#include "korvos/classify/cls_gla.h"

#ifdef KORVOS_BENCH_OPENBLAS
extern "C" void dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                       const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
                       const double* beta, double* c, const int* ldc);
#endif

namespace {

using korvo::dbl_matrix;

constexpr int count = 100000;
constexpr int width = 16;
constexpr int codewords = 256;

struct vectors {
  dbl_matrix training = dbl_matrix::random(count, width, 1);
  dbl_matrix initial = dbl_matrix::random(codewords, width, 2);
  dbl_matrix found = dbl_matrix(codewords, width);
};

std::string family_of(std::int32_t mode) { return "quantiser_two_passes_mode_" + std::to_string(mode); }

// Two passes: the first moves the codewords, and the second falls below the threshold. No cell is empty.
void add_design(const std::shared_ptr<vectors>& work, std::int32_t mode) {
  bench::add(family_of(mode), codewords, "korvos", [=] {
    return [=] {
      const _univ_mat training = work->training.universal();
      const _univ_mat initial = work->initial.universal();
      _univ_mat found = work->found.universal();
      bench::check(clsuniv_vector_quantizer_design_gla(&training, &initial, 1e30, 1.0, 1.0, mode, nullptr,
                                                       nullptr, &found, nullptr, nullptr, nullptr));
    };
  });
}

#ifdef KORVOS_BENCH_OPENBLAS
double dot(const double* x, const double* y) {
  double sum = 0.0;
  for (int e = 0; e < width; ++e) sum += x[e] * y[e];
  return sum;
}

// |c|^2 - 2 x.c decides which codeword is nearest; blocks of the product stay in the cache.
void pass_by_product(const vectors& work, std::vector<double>& products, std::vector<std::int64_t>& nearest) {
  constexpr int block = 256;
  constexpr double minus_two = -2.0;
  constexpr double zero = 0.0;
  double squares[codewords];
  for (int k = 0; k < codewords; ++k) squares[k] = dot(&work.initial(k, 0), &work.initial(k, 0));
  for (int first = 0; first < count; first += block) {
    const int rows = std::min(block, count - first);
    dgemm_("T", "N", &codewords, &rows, &width, &minus_two, work.initial.data, &width, &work.training(first, 0),
           &width, &zero, products.data(), &codewords);
    for (int i = 0; i < rows; ++i) {
      double* const row = products.data() + std::int64_t{i} * codewords;
      for (int k = 0; k < codewords; ++k) row[k] += squares[k];
      nearest[static_cast<std::size_t>(first + i)] = std::min_element(row, row + codewords) - row;
    }
  }
}

// Two passes and the sums of the cells, as above.
void add_products(const std::shared_ptr<vectors>& work, std::int32_t mode) {
  bench::add(family_of(mode), codewords, "openblas product", [=] {
    const auto products = std::make_shared<std::vector<double>>(256 * codewords);
    const auto nearest = std::make_shared<std::vector<std::int64_t>>(count);
    return [=] {
      for (int pass = 0; pass < 2; ++pass) {
        pass_by_product(*work, *products, *nearest);
        std::fill_n(work->found.data, work->found.nelem, 0.0);
        for (int i = 0; i < count; ++i) {
          double* const centroid = &work->found(static_cast<int>((*nearest)[static_cast<std::size_t>(i)]), 0);
          for (int e = 0; e < width; ++e) centroid[e] += work->training(i, e);
        }
      }
    };
  });
}
#endif

const bench::registration all([] {
  const auto work = std::make_shared<vectors>();
  for (const std::int32_t mode : {0, 1, 2}) {
    add_design(work, mode);
#ifdef KORVOS_BENCH_OPENBLAS
    add_products(work, mode);
#endif
  }
});

}  // namespace

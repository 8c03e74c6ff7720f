// Linear algebra: LU decomposition, inverse, non-negative least squares.
#include <algorithm>
#include <memory>

#include "bench/bench.hpp"
#include "korvos/numeric/mat_num.h"

#ifdef KORVOS_BENCH_EIGEN
#include <Eigen/LU>
#endif
#ifdef KORVOS_BENCH_OPENBLAS
extern "C" void dgetrf_(const int* m, const int* n, double* a, const int* lda, int* pivots, int* info);
#endif

namespace {

using korvo::dbl_matrix;

struct square {
  explicit square(int n) : in(dbl_matrix::random(n, n, 1, -9.0, 9.0)), out(n, n), pivots(n, 1) {}
  dbl_matrix in, out;
  korvo::s32_matrix pivots;
};

#ifdef KORVOS_BENCH_EIGEN
using eigen = Eigen::Map<Eigen::MatrixXd>;
#endif

void add_lu(int n) {
  const auto m = std::make_shared<square>(n);
  bench::add("lu", n, "korvos", [=] {
    return [=] { bench::check(matdbl_lu_decomposition(&m->in, nullptr, &m->pivots, &m->out)); };
  });
#ifdef KORVOS_BENCH_EIGEN
  bench::add("lu", n, "eigen", [=] {
    return [=, lu = Eigen::PartialPivLU<Eigen::MatrixXd>(n)]() mutable { lu.compute(eigen(m->in.data, n, n)); };
  });
#endif
#ifdef KORVOS_BENCH_OPENBLAS
  bench::add("lu", n, "openblas", [=] {
    return [=] {
      int info = 0;
      std::copy_n(m->in.data, m->in.nelem, m->out.data);
      dgetrf_(&n, &n, m->out.data, &n, m->pivots.data, &info);
    };
  });
#endif
}

void add_inverse(int n) {
  const auto m = std::make_shared<square>(n);
  bench::add("inverse", n, "korvos",
             [=] { return [=] { bench::check(matdbl_inverse(&m->in, nullptr, &m->out)); }; });
#ifdef KORVOS_BENCH_EIGEN
  bench::add("inverse", n, "eigen",
             [=] { return [=] { eigen(m->out.data, n, n) = eigen(m->in.data, n, n).inverse(); }; });
#endif
}

void add_nnls(int rows, int cols) {
  struct work {
    dbl_matrix a, b, x;
  };
  const auto m = std::make_shared<work>(work{dbl_matrix::random(rows, cols, 1, -9.0, 9.0),
                                             dbl_matrix::random(rows, 1, 2, -9.0, 9.0), dbl_matrix(cols, 1)});
  bench::add("nnls_200", cols, "korvos", [=] {
    return [=] { bench::check(matdbl_non_negative_least_squares(&m->a, &m->b, nullptr, &m->x)); };
  });
}

const bench::registration all([] {
  add_lu(500);
  add_lu(1000);
  add_inverse(300);
  add_nnls(200, 100);
});

}  // namespace

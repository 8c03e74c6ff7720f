// The Hartley transform and the cosine transform of matrices, of sizes that are powers of two.
#include <cstdint>
#include <memory>

#include "bench/bench.hpp"
#include "korvos/signal/sig_pow2.h"

#ifdef KORVOS_BENCH_FFTW
#include <fftw3.h>
#endif

namespace {

using korvo::dbl_matrix;

struct transform {
  transform(std::int32_t rows, std::int32_t cols)
      : in(dbl_matrix::random(rows, cols, 1, -1.0, 1.0)), out(rows, cols) {}
  dbl_matrix in, out;
};

#ifdef KORVOS_BENCH_FFTW
// A plan that is measured once; planning overwrites the elements.
void add_peer(const char* family, std::int32_t rows, std::int32_t cols, fftw_r2r_kind kind) {
  bench::add(family, cols, "fftw", [=] {
    const auto work = std::make_shared<transform>(rows, cols);
    const int sizes[] = {rows, cols};
    const fftw_r2r_kind kinds[] = {kind, kind};
    const int skip = rows == 1 ? 1 : 0;
    const std::shared_ptr<fftw_plan_s> plan(fftw_plan_r2r(2 - skip, sizes + skip, work->in.data, work->out.data,
                                                          kinds, FFTW_MEASURE | FFTW_PRESERVE_INPUT),
                                            fftw_destroy_plan);
    return [=] {
      (void)work;
      fftw_execute(plan.get());
    };
  });
}
#endif

const bench::registration all([] {
  constexpr std::int32_t length = 65536;
  constexpr std::int32_t side = 512;
  const auto vector = std::make_shared<transform>(1, length);
  const auto square = std::make_shared<transform>(side, side);
  bench::add("hartley", length, "korvos", [=] {
    return [=] { bench::check(sigdbl_transform_hartley(&vector->in, nullptr, &vector->out)); };
  });
  bench::add("cosine_2d_pow2", side, "korvos", [=] {
    return [=] {
      bench::check(sigdbl_transform_discrete_cosine_II_2d_pow2(&square->in, 0, nullptr, &square->out));
    };
  });
#ifdef KORVOS_BENCH_FFTW
  add_peer("hartley", 1, length, FFTW_DHT);
  add_peer("cosine_2d_pow2", side, side, FFTW_REDFT10);
#endif
});

}  // namespace

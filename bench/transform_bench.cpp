// Fourier and cosine transforms.
#include <cstdint>
#include <memory>
#include <string>

#include "bench/bench.hpp"
#include "korvos/signal/sig_tran.h"

#ifdef KORVOS_BENCH_FFTW
#include <fftw3.h>
#endif

namespace {

using korvo::cpx_matrix;
using korvo::dbl_matrix;

struct columns {
  columns(int n, int count) : in(cpx_matrix::random(n, count, 1, -1.0, 1.0)), out(n, count) {}
  cpx_matrix in, out;
};

#ifdef KORVOS_BENCH_FFTW
using plan = std::unique_ptr<fftw_plan_s, void (*)(fftw_plan)>;

fftw_complex* numbers(const cpx_matrix& m) { return reinterpret_cast<fftw_complex*>(m.data); }

// Down the columns of matrices by rows, as here.
plan plan_columns(const columns& work, unsigned how) {
  const int n = work.in.nrow;
  const int count = work.in.ncol;
  return {fftw_plan_many_dft(1, &n, count, numbers(work.in), nullptr, count, 1, numbers(work.out), nullptr,
                             count, 1, FFTW_FORWARD, how),
          fftw_destroy_plan};
}

// For the transform of type II along a column, or along both sides; not scaled.
plan plan_cosine(const dbl_matrix& in, const dbl_matrix& out, bool inverse, unsigned how) {
  const fftw_r2r_kind kind = inverse ? FFTW_REDFT01 : FFTW_REDFT10;
  if (in.ncol == 1) return {fftw_plan_r2r_1d(in.nrow, in.data, out.data, kind, how), fftw_destroy_plan};
  return {fftw_plan_r2r_2d(in.nrow, in.ncol, in.data, out.data, kind, kind, how), fftw_destroy_plan};
}

// Who keeps a plan, and what those pay who do not. Planning may write to the input: it comes before the work.
template <class MakePlan>
void add_peers(const std::string& family, int n, MakePlan make) {
  bench::add(family, n, "fftw measured", [=] {
    return [made = std::make_shared<plan>(make(FFTW_MEASURE))] { fftw_execute(made->get()); };
  });
  bench::add(family, n, "fftw with planning", [=] {
    return [=] {
      fftw_forget_wisdom();
      fftw_execute(make(FFTW_ESTIMATE).get());
    };
  });
}
#endif

void add_fourier(int n, int count) {
  const std::string family = count == 1 ? "fourier" : "fourier_" + std::to_string(count) + "_columns";
  const auto work = std::make_shared<columns>(n, count);
  bench::add(family, n, "korvos", [=] {
    return [=] { bench::check(sigcpx_transform_discrete_fourier(&work->in, 0, nullptr, &work->out)); };
  });
#ifdef KORVOS_BENCH_FFTW
  add_peers(family, n, [=](unsigned how) { return plan_columns(*work, how); });
#endif
}

template <class Form>
void add_cosine(const std::string& family, int rows, int cols, bool inverse, Form form) {
  const auto in = std::make_shared<dbl_matrix>(dbl_matrix::random(rows, cols, 1, -1.0, 1.0));
  const auto out = std::make_shared<dbl_matrix>(rows, cols);
  bench::add(family, rows, "korvos", [=] { return [=] { bench::check(form(in.get(), out.get())); }; });
#ifdef KORVOS_BENCH_FFTW
  add_peers(family, rows, [=](unsigned how) { return plan_cosine(*in, *out, inverse, how); });
#endif
}

const bench::registration all([] {
  for (const int n : {1000, 1009, 1024, 44100, 65536, 1 << 20}) add_fourier(n, 1);
  add_fourier(1024, 256);
  add_cosine("cosine", 65536, 1, false, [](const dbl_matrix* in, dbl_matrix* out) {
    return sigdbl_transform_discrete_cosine_II(in, nullptr, out);
  });
  add_cosine("cosine_inverse", 65536, 1, true, [](const dbl_matrix* in, dbl_matrix* out) {
    return sigdbl_transform_discrete_cosine_II_inverse(in, nullptr, out);
  });
  add_cosine("cosine_2d", 512, 512, false, [](const dbl_matrix* in, dbl_matrix* out) {
    return sigdbl_transform_discrete_cosine_II_2d(in, 0, nullptr, out);
  });
});

}  // namespace

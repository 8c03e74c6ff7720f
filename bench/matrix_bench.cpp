// Matrix operations: element-wise arithmetic, products, casts, transposition, copies, ranges.
#include <cstdint>
#include <map>
#include <memory>

#include "bench/bench.hpp"
#include "bench/plain_loops.hpp"
#include "korvos/matrix/mat_arit.h"
#include "korvos/matrix/mat_assn.h"
#include "korvos/matrix/mat_cast.h"
#include "korvos/matrix/mat_summ.h"

#ifdef KORVOS_BENCH_OPENCV
#include <opencv2/core.hpp>
#endif
#ifdef KORVOS_BENCH_EIGEN
#include <Eigen/Core>
#endif
#ifdef KORVOS_BENCH_FFTW
#include <fftw3.h>
#endif

namespace {

using korvo::matrix;

template <class M>
struct operands {
  explicit operands(int side)
      : a(matrix<M>::random(side, side, 1)), b(matrix<M>::random(side, side, 2)), out(side, side) {}
  matrix<M> a, b, out;
};

// The same arrays for everyone: where they lie in memory is worth a third of the time in cache.
template <class Data>
std::shared_ptr<Data> shared_data(int side) {
  static std::map<int, std::shared_ptr<Data>> made;
  std::shared_ptr<Data>& known = made[side];
  if (!known) known = std::make_shared<Data>(side);
  return known;
}
template <class M>
std::shared_ptr<operands<M>> shared_operands(int side) {
  return shared_data<operands<M>>(side);
}

// Element-wise forms beside the compiler's own loop, in cache and in memory.
template <class M, auto form>
void elementwise(const char* family,
                 void (*plain)(const korvo::element<M>*, const korvo::element<M>*, korvo::element<M>*, int)) {
  for (const int side : {128, 4096}) {
    bench::add(family, side, "korvos", [=] {
      return [m = shared_operands<M>(side)] { bench::check(form(&m->a, &m->b, nullptr, &m->out)); };
    });
    bench::add(family, side, "plain loop", [=] {
      return [m = shared_operands<M>(side), plain] { plain(m->a.data, m->b.data, m->out.data, m->out.nelem); };
    });
  }
}

void add_elementwise() {
  elementwise<_u8_mat, matu8_add>("add_u8", plain::add<std::uint8_t>);
  elementwise<_s16_mat, mats16_add>("add_s16", plain::add<std::int16_t>);
  elementwise<_dbl_mat, matdbl_add>("add_dbl", plain::add<double>);
  elementwise<_u8_mat, matu8_multiply_elem>("multiply_elem_u8", plain::multiply<std::uint8_t>);
  elementwise<_s16_mat, mats16_multiply_elem>("multiply_elem_s16", plain::multiply<std::int16_t>);
  elementwise<_dbl_mat, matdbl_multiply_elem>("multiply_elem_dbl", plain::multiply<double>);
}

void add_mixed() {
  struct mixed {
    matrix<_u8_mat> a = matrix<_u8_mat>::random(1024, 1024, 1);
    matrix<_s16_mat> b = matrix<_s16_mat>::random(1024, 1024, 2);
    matrix<_dbl_mat> out{1024, 1024};
  };
  bench::add("add_u8_s16_to_dbl", 1024, "korvos", [] {
    return [m = std::make_shared<mixed>()] {
      const _univ_mat a = m->a.universal();
      const _univ_mat b = m->b.universal();
      _univ_mat out = m->out.universal();
      bench::check(matuniv_add(&a, &b, nullptr, &out));
    };
  });
}

constexpr int product_side = 256;

void add_product() {
  bench::add("multiply_dbl", product_side, "korvos", [] {
    return [m = shared_operands<_dbl_mat>(product_side)] {
      bench::check(matdbl_multiply(&m->a, &m->b, nullptr, &m->out));
    };
  });
  bench::add("multiply_u8", product_side, "korvos", [] {
    return [m = shared_operands<_u8_mat>(product_side)] {
      bench::check(matu8_multiply(&m->a, &m->b, nullptr, &m->out));
    };
  });
#ifdef KORVOS_BENCH_EIGEN
  bench::add("multiply_dbl", product_side, "eigen", [] {
    using eigen = Eigen::Map<Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>>;
    return [m = shared_operands<_dbl_mat>(product_side)] {
      eigen(m->out.data, product_side, product_side).noalias() =
          eigen(m->a.data, product_side, product_side) * eigen(m->b.data, product_side, product_side);
    };
  });
#endif
}

void add_casts() {
  struct pair {
    explicit pair(int side) : in(matrix<_dbl_mat>::random(side, side, 1, -40.0, 300.0)), out(side, side) {}
    matrix<_dbl_mat> in;
    matrix<_u8_mat> out;
  };
  for (const int side : {256, 4096}) {
    bench::add("cast_dbl_to_u8", side, "korvos", [=] {
      return [m = shared_data<pair>(side)] { bench::check(matdbl_cast_to_u8(&m->in, 1, nullptr, &m->out)); };
    });
#ifdef KORVOS_BENCH_OPENCV
    bench::add("cast_dbl_to_u8", side, "opencv", [=] {
      return [m = shared_data<pair>(side), side] {
        cv::Mat out(side, side, CV_8U, m->out.data);
        cv::Mat(side, side, CV_64F, m->in.data).convertTo(out, CV_8U);
      };
    });
#endif
  }
}

// Casts of other kinds, as a baseline.
template <class M, class N, class Cast>
void add_cast(const char* family, Cast cast) {
  struct pair {
    matrix<M> in = matrix<M>::random(1024, 1024, 1, 0.0, 200.0);
    matrix<N> out{1024, 1024};
  };
  bench::add(family, 1024, "korvos",
             [=] { return [m = std::make_shared<pair>(), cast] { bench::check(cast(&m->in, &m->out)); }; });
}

void add_other_casts() {
  add_cast<_u8_mat, _dbl_mat>("cast_u8_to_dbl",
                              [](auto* in, auto* out) { return matu8_cast_to_dbl(in, nullptr, out); });
  add_cast<_s32_mat, _u8_mat>("cast_s32_to_u8",
                              [](auto* in, auto* out) { return mats32_cast_to_u8(in, 0, nullptr, out); });
  add_cast<_dbl_mat, _s16_mat>("cast_dbl_to_s16",
                               [](auto* in, auto* out) { return matdbl_cast_to_s16(in, 0, nullptr, out); });
  add_cast<_dbl_mat, _u32_mat>("cast_dbl_to_u32",
                               [](auto* in, auto* out) { return matdbl_cast_to_u32(in, 1, nullptr, out); });
  add_cast<_dbl_mat, _flt_mat>("cast_dbl_to_flt",
                               [](auto* in, auto* out) { return matdbl_cast_to_flt(in, 0, nullptr, out); });
  add_cast<_dbl_mat, _cpx_mat>("dbl_to_complex",
                               [](auto* in, auto* out) { return matdbl_to_complex(in, in, nullptr, out); });
}

template <class M, auto form>
void add_transposition(const char* family, [[maybe_unused]] int cv_type) {
  for (const int side : {512, 4096}) {
    bench::add(family, side, "korvos",
               [=] { return [m = shared_operands<M>(side)] { bench::check(form(&m->a, nullptr, &m->out)); }; });
#ifdef KORVOS_BENCH_OPENCV
    bench::add(family, side, "opencv", [=] {
      return [m = shared_operands<M>(side), side, cv_type] {
        cv::Mat out(side, side, cv_type, m->out.data);
        cv::transpose(cv::Mat(side, side, cv_type, m->a.data), out);
      };
    });
#endif
  }
}

#ifdef KORVOS_BENCH_FFTW
// FFTW transposes by a plan of rank 0.
void add_fftw_transposition() {
  for (const int side : {512, 4096}) {
    bench::add("transpose_dbl", side, "fftw", [=] {
      auto m = shared_operands<_dbl_mat>(side);
      const fftw_iodim loops[] = {{side, side, 1}, {side, 1, side}};
      const std::shared_ptr<fftw_plan_s> plan(
          fftw_plan_guru_r2r(0, nullptr, 2, loops, m->a.data, m->out.data, nullptr, FFTW_MEASURE),
          fftw_destroy_plan);
      return [m, plan] { fftw_execute(plan.get()); };
    });
  }
}
#endif

void add_moves() {
  struct pair {
    matrix<_dbl_mat> in = matrix<_dbl_mat>::random(1024, 1024, 1);
    matrix<_dbl_mat> out{1024, 1024};
    matrix<_dbl_mat> small{1000, 1000};
    double low = 0.0, high = 0.0;
  };
  const auto add = [](const char* family, auto form) {
    bench::add(family, 1024, "korvos",
               [=] { return [m = std::make_shared<pair>(), form] { bench::check(form(*m)); }; });
  };
  add("assign_scalar_dbl", [](pair& m) { return matdbl_assign_scalar(1.0, nullptr, &m.out); });
  add("assign_submat_dbl", [](pair& m) { return matdbl_assign_submat(&m.small, 7, 9, nullptr, &m.out); });
  add("assign_zeropad_dbl", [](pair& m) { return matdbl_assign_zeropad(&m.small, nullptr, &m.out); });
  add("extract_dbl", [](pair& m) { return matdbl_extract(&m.in, 7, 9, nullptr, &m.small); });
  add("add_scalar_dbl", [](pair& m) { return matdbl_add_scalar(&m.in, 1.0, nullptr, &m.out); });
  add("multiply_scalar_dbl", [](pair& m) { return matdbl_multiply_scalar(&m.in, 3.0, nullptr, &m.out); });
  add("assign_dbl", [](pair& m) { return matdbl_assign(&m.in, nullptr, &m.out); });
  add("flip_left_right_dbl", [](pair& m) { return matdbl_flip_left_right(&m.in, nullptr, &m.out); });
  add("flip_up_down_dbl", [](pair& m) { return matdbl_flip_up_down(&m.in, nullptr, &m.out); });
  add("translate_dbl", [](pair& m) { return matdbl_translate(&m.in, 3, 5, 0.0, nullptr, &m.out); });
  add("range_dbl", [](pair& m) { return matdbl_range(&m.in, nullptr, &m.low, &m.high); });
  add("rescale_dbl", [](pair& m) { return matdbl_rescale(&m.in, 0.0, 1.0, nullptr, &m.out); });
  add("abs_dbl", [](pair& m) { return matdbl_abs(&m.in, nullptr, &m.out); });
}

const bench::registration all([] {
  add_elementwise();
  add_mixed();
  add_product();
  add_casts();
  add_other_casts();
  add_transposition<_dbl_mat, matdbl_transpose>("transpose_dbl", 6 /* CV_64F */);
  add_transposition<_u8_mat, matu8_transpose>("transpose_u8", 0 /* CV_8U */);
#ifdef KORVOS_BENCH_FFTW
  add_fftw_transposition();
#endif
  add_moves();
});

}  // namespace

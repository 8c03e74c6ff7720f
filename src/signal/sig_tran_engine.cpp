// The Fourier engine: set-up, groups of runs, scaling.
#include <algorithm>
#include <cmath>

#include "signal/sig_tran.hpp"

namespace korvo {
namespace {

constexpr double two_pi_fifths = 1.2566370614359172;
constexpr double half_root_3 = 0.8660254037844386;
constexpr double two_pi = 6.283185307179586;

}  // namespace

fourier_engine::fourier_engine(std::int32_t n, std::int32_t direction, void* intrp_ptr)
    : n_(n),
      direction_(direction),
      cost_(intrp_ptr, 50.0),
      cos_72_(std::cos(two_pi_fifths)),
      sin_72_(direction * std::sin(two_pi_fifths)),
      sin_60_(direction * half_root_3),
      two_pi_(direction * two_pi) {
  localfn_sig_fft_factorize(n, &factors_);
  cost_.count(factors_.cost);
  for (std::int32_t i = 0; i < factors_.squares; ++i) outer_ *= factors_.table[i];
}

code fourier_engine::make() {
  for (scratch<double>* const array : {&sums_, &differences_, &cosines_, &sines_})
    TRY(array->make(factors_.largest_plus_1));
  TRY(sources_.make(factors_.order_entries));
  return find_cycles();
}

code fourier_engine::transform(korvo_dcomplex* data, std::int64_t total) {
  const std::int64_t runs = total / n_;
  const std::int64_t together = std::max<std::int64_t>(1, in_cache / n_);  // they share their twiddles
  for (std::int64_t i = 0; i < runs; i += together) {
    const std::int64_t some = std::min(together, runs - i);
    TRY(do_passes(data + i * n_, some, n_, 0));
    for (std::int64_t k = i; k < i + some; ++k) TRY(reorder(data + k * n_));
  }
  if (direction_ < 0) return KORVO_ERR_OK;
  const double scale = 1.0 / n_;
  for (std::int64_t i = 0; i < total; ++i) data[i] = {data[i].re * scale, data[i].im * scale};
  (void)cost_.add(3.0 * static_cast<double>(total));  // kept: what the host answers now is ignored
  return KORVO_ERR_OK;
}

code localfn_sig_fft_mixed_radix(korvo_dcomplex* data, std::int64_t total, std::int32_t n,
                                 std::int32_t direction, void* intrp_ptr) {
  if (n < 2) return KORVO_ERR_OK;
  fourier_engine engine(n, direction, intrp_ptr);
  TRY(engine.make());
  const code result = engine.transform(data, total);
  return result == KORVO_ERR_INTERRUPT ? KORVO_ERR_OK : result;  // kept: hosts count on the silence
}

}  // namespace korvo

// Data windows: closed formulas, Kaiser's by way of I0, Chebyshev's by way of its spectrum.
#include "korvos/signal/sig_win.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"

namespace korvo {
namespace {

constexpr double pi = 3.141592653589793;
constexpr double two_pi = 6.283185307179586;
constexpr double inverse_pi = 0.3183098861837907;
constexpr double ln_2 = 0.6931471805599453;

double real(std::int64_t x) { return static_cast<double>(x); }

code check(const _dbl_mat* out) {
  TRY(valid(out));
  return out->nrow == 1 || out->ncol == 1 ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_SIZE;
}

// Elements from both ends: value(i) for the first `count` and the last.
template <class Value>
void fill_ends(double* w, std::int64_t n, std::int64_t count, Value value) {
  for (std::int64_t i = 0; i < count; ++i) w[i] = w[n - 1 - i] = value(i);
}

// The same up to a middle element of 1, which an odd n has.
template <class Value>
void fill_around_middle(double* w, std::int64_t n, Value value) {
  fill_ends(w, n, n / 2, value);
  if (n % 2 != 0) w[n / 2] = 1.0;
}

double hanning_at(std::int64_t i, std::int64_t n) {
  return (1.0 - std::cos(real(i + 1) * two_pi / real(n + 1))) * 0.5;
}

// Windows without a parameter.

void rectangle(double* w, std::int64_t n) { std::fill_n(w, n, 1.0); }

void triangle(double* w, std::int64_t n) {
  const double slope = 2.0 / real(n + 1);
  fill_around_middle(w, n, [=](std::int64_t i) { return real(i + 1) * slope; });
}

void hanning(double* w, std::int64_t n) {
  for (std::int64_t i = 0; i < n; ++i) w[i] = hanning_at(i, n);
}

// A single element is 0 / 0.
void hamming(double* w, std::int64_t n) {
  for (std::int64_t i = 0; i < n; ++i) w[i] = 0.54 - 0.46 * std::cos(real(i) * two_pi / real(n - 1));
}

void blackman(double* w, std::int64_t n) {
  for (std::int64_t i = 0; i < n; ++i) {
    const double t = real(i + 1) * two_pi / real(n + 1);
    w[i] = 0.42 - 0.5 * std::cos(t) + 0.08 * std::cos(2.0 * t);
  }
}

void nuttall(double* w, std::int64_t n) {
  w[0] = w[n - 1] = 0.0;
  for (std::int64_t i = 1; i < n - 1; ++i) {
    const double t = real(i) * two_pi / real(n - 1);
    w[i] = 0.3635819 - 0.4891775 * std::cos(t) + 0.1365995 * std::cos(2.0 * t) - 0.0106411 * std::cos(3.0 * t);
  }
}

void born_jordan(double* w, std::int64_t n) {
  const std::int64_t h = (n - 1) / 2;
  fill_ends(w, n, h + 1, [=](std::int64_t i) { return 1.0 / real(h - i + 1); });
}

using window = void (*)(double* w, std::int64_t n);

code filled(window fill, double cost_of_element, void* intrp_ptr, _dbl_mat* out) {
  TRY(check(out));
  fill(out->data, out->nelem);
  return checkpoint(intrp_ptr).add(cost_of_element * out->nelem);
}

// Windows with one.

code raised_cosine(double taper, void* intrp_ptr, _dbl_mat* out) {
  if (!(taper >= 0.0 && taper <= 1.0)) return KORVO_ERR_ILLEGAL_VALUE;  // kept: before the look at out
  TRY(check(out));
  const std::int64_t n = out->nelem;
  checkpoint cost(intrp_ptr);
  rectangle(out->data, n);
  TRY(cost.add(5.0 * real(n)));
  if (taper == 0.0) return KORVO_ERR_OK;
  const auto m = static_cast<std::int64_t>(std::floor(real(n) * taper));
  fill_ends(out->data, n, m / 2, [=](std::int64_t i) { return hanning_at(i, m); });
  return cost.add(10.0 * real(n));
}

code gaussian(double alpha, void* intrp_ptr, _dbl_mat* out) {
  TRY(check(out));
  if (!(alpha > 0.0)) return KORVO_ERR_ILLEGAL_VALUE;
  const std::int64_t n = out->nelem;
  fill_around_middle(out->data, n, [=](std::int64_t i) {
    const double t = 2.0 * alpha * (0.5 - real(i) / real(n - 1));
    return std::exp(-0.5 * (t * t));
  });
  return checkpoint(intrp_ptr).add(100.0 * real(n));
}

// The polynomial of these coefficients, the constant one first.
double polynomial(double x, std::initializer_list<double> coefficients) {
  double value = 0.0;
  for (const double* c = coefficients.end(); c != coefficients.begin();) value = *--c + x * value;
  return value;
}

double bessel_i0(double x) {
  const double magnitude = std::fabs(x);
  if (magnitude < 3.75) {
    return polynomial(x * x * 0.07111111111111111,
                      {1.0, 3.5156229, 3.0899424, 1.2067492, 0.2659732, 0.0360768, 0.0045813});
  }
  return std::exp(magnitude) / std::sqrt(magnitude) *
         polynomial(3.75 / magnitude, {0.39894228, 0.01328592, 0.00225319, -0.00157565, 0.00916281, -0.02057706,
                                       0.02635537, -0.01647633, 0.00392377});
}

code bessel_i0(double* x, std::int64_t count, void* intrp_ptr) {
  for (std::int64_t i = 0; i < count; ++i) x[i] = bessel_i0(x[i]);
  return checkpoint(intrp_ptr).add(500.0 * real(count));
}

code kaiser(double beta, void* intrp_ptr, _dbl_mat* out) {
  TRY(check(out));
  if (!(beta >= 0.0)) return KORVO_ERR_ILLEGAL_VALUE;
  const std::int64_t n = out->nelem;
  double* const w = out->data;
  const double b = real(n - 1) * beta * pi / real(n);
  checkpoint cost(intrp_ptr);
  for (std::int64_t i = 0; i < n; ++i) {
    const double q = real((2 * i - n - 1) / n);  // kept: a quotient of integers, -1 and then 0
    w[i] = std::sqrt(1.0 - q * q) * b;
  }
  TRY(cost.add(200.0 * real(n)));
  TRY(bessel_i0(w, n, intrp_ptr));
  double whole = b;
  TRY(bessel_i0(&whole, 1, intrp_ptr));
  for (std::int64_t i = 0; i < n; ++i) w[i] /= whole;
  return cost.add(10.0 * real(n));
}

// The inverse of cosh; where the square overflows the root is x itself.
double inverse_cosh(double x) {
  const double square = x * x;
  return std::isfinite(square) ? std::log(x + std::sqrt(square - 1.0)) : std::log(x) + ln_2;
}

// The spectrum of Chebyshev's window of n elements.
class equal_ripple {
 public:
  equal_ripple(double attenuation, std::int64_t n)
      : ripple_(std::pow(10.0, attenuation * -0.05)), order_(real(n - 1)) {
    const double edge =
        std::acos(1.0 / std::cosh(inverse_cosh((1.0 + ripple_) / ripple_) / order_)) * inverse_pi;
    const double c = std::cos(edge * two_pi);
    x0_ = (3.0 - c) / (c + 1.0);
  }

  double operator()(double frequency) const {
    const double cosine = std::cos(two_pi * frequency);
    if (!std::isfinite(x0_)) return std::pow((1.0 + cosine) / 2.0, order_ * 0.5);
    const double x = std::max(-1.0, (x0_ + 1.0) * 0.5 * cosine + (x0_ - 1.0) * 0.5);
    if (x <= 1.0) return ripple_ * std::cos(std::acos(x) * order_ * 0.5);
    const double argument = std::log(x + std::sqrt(x * x - 1.0)) * order_ * 0.5;
    const double value = ripple_ * std::cosh(argument);
    // cosh may overflow where the product would not
    return std::isfinite(value) ? value : std::exp(argument + std::log(ripple_) - ln_2);
  }

 private:
  double ripple_, order_;
  double x0_ = 0.0;
};

// What the inverse sum multiplies with cosines and with sines. For odd n the second stays a copy of the first:
// its sum cancels by symmetry.
void sample_spectrum(const equal_ripple& spectrum, std::int64_t n, double* p, double* q) {
  for (std::int64_t j = 0; j < n; ++j) {
    const double f = real(j) / real(n);
    p[j] = q[j] = spectrum(f);
    if (n % 2 != 0) continue;
    const double sign = j > n / 2 ? -1.0 : 1.0;
    q[j] = sign * (-p[j] * std::sin(pi * f));
    p[j] = sign * (p[j] * std::cos(pi * f));
  }
}

double inverse_sum(const double* p, const double* q, std::int64_t n, std::int64_t i) {
  double sum = 0.0;
  for (std::int64_t j = 0; j < n; ++j) {
    const double angle = real(j * i) * two_pi / real(n);
    sum += std::cos(angle) * p[j] + std::sin(angle) * q[j];
  }
  return sum;
}

// From the sums of the right half, the peak first, to the whole window.
void lay_out(double* w, std::int64_t n) {
  const std::int64_t h = (n + 1) / 2;
  const std::int64_t odd = n % 2;
  for (std::int64_t k = 0; k < h - 1; ++k) w[h + 1 - odd + k] = w[k + 1] / w[0];
  for (std::int64_t i = 0; i < h - 1; ++i) w[i] = w[n - 1 - i];
  w[h - 1] = w[h - odd] = 1.0;
}

code chebyshev(double attenuation, void* intrp_ptr, _dbl_mat* out) {
  TRY(check(out));
  if (!(attenuation >= 0.0)) return KORVO_ERR_ILLEGAL_VALUE;
  const std::int64_t n = out->nelem;
  scratch<char> cosines;
  scratch<char> sines;
  TRY(cosines.make(8 * n + 10));
  TRY(sines.make(8 * n + 10));
  auto* const p = static_cast<double*>(static_cast<void*>(cosines.data()));
  auto* const q = static_cast<double*>(static_cast<void*>(sines.data()));
  sample_spectrum(equal_ripple(attenuation, n), n, p, q);
  checkpoint cost(intrp_ptr);
  cost.count(100.0 * real(n));
  for (std::int64_t i = 0; i < (n + 1) / 2; ++i) {
    out->data[i] = inverse_sum(p, q, n, i);
    TRY(cost.add(50.0 * real(n)));
  }
  lay_out(out->data, n);
  return KORVO_ERR_OK;
}

template <class F>
code universal(_univ_mat* out, F form) {
  if (!out) return KORVO_ERR_NULL_POINTER;
  return dispatch(out->type, records<_dbl_mat>{}, [&]<class M> {
    M to = as<M>(*out);
    return form(&to);
  });
}

}  // namespace
}  // namespace korvo

using namespace korvo;

#define FIXED(typed, univ, fill, cost)                                                      \
  code typed(void* intrp_ptr, _dbl_mat* out) { return filled(fill, cost, intrp_ptr, out); } \
  code univ(void* intrp_ptr, _univ_mat* out) {                                              \
    return universal(out, [=](_dbl_mat* to) { return typed(intrp_ptr, to); });              \
  }
#define TUNED(typed, univ, method, parameter)                                                                \
  code typed(double parameter, void* intrp_ptr, _dbl_mat* out) { return method(parameter, intrp_ptr, out); } \
  code univ(double parameter, void* intrp_ptr, _univ_mat* out) {                                             \
    return universal(out, [=](_dbl_mat* to) { return method(parameter, intrp_ptr, to); });                   \
  }

extern "C" {

FIXED(sigdbl_window_rectangle, siguniv_window_rectangle, rectangle, 5.0)
FIXED(sigdbl_window_triangle, siguniv_window_triangle, triangle, 5.0)
FIXED(sigdbl_window_hanning, siguniv_window_hanning, hanning, 50.0)
FIXED(sigdbl_window_hamming, siguniv_window_hamming, hamming, 50.0)
FIXED(sigdbl_window_blackman, siguniv_window_blackman, blackman, 100.0)
FIXED(sigdbl_window_nuttall, siguniv_window_nuttall, nuttall, 200.0)
FIXED(sigdbl_window_born_jordan, siguniv_window_born_jordan, born_jordan, 5.0)

TUNED(sigdbl_window_raised_cosine, siguniv_window_raised_cosine, raised_cosine, taper)
TUNED(sigdbl_window_gaussian, siguniv_window_gaussian, gaussian, alpha)
TUNED(sigdbl_window_kaiser, siguniv_window_kaiser, kaiser, beta)
TUNED(sigdbl_window_chebyshev, siguniv_window_chebyshev, chebyshev, attenuation)

}  // extern "C"

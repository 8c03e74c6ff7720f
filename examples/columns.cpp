// Windows, transforms and levels of columns.
#include "columns.hpp"

#include <algorithm>
#include <cmath>

namespace demo {
namespace {

matrix transformed(const _univ_mat& in, std::uint8_t inverse) {
  matrix out(in.nrow, in.ncol, KORVO_DCOMPLEX);
  check(siguniv_transform_discrete_fourier(&in, inverse, nullptr, &out));
  return out;
}

}  // namespace

matrix hanning(std::int32_t count) {
  matrix out(count, 1);
  check(siguniv_window_hanning(nullptr, &out));
  return out;
}

matrix padded_below(const _univ_mat& in, std::int32_t rows) {
  matrix out = filled(rows, in.ncol, 0.0);
  check(matuniv_assign_submat(&in, 0, 0, nullptr, &out));
  return out;
}

matrix fourier(const _univ_mat& in) { return transformed(in, 0); }

matrix inverse_fourier(const _univ_mat& in) { return transformed(in, 1); }

matrix power(const _univ_mat& in) {
  matrix out(in.nrow, in.ncol);
  std::ranges::transform(elements<korvo_dcomplex>(in), elements(out).begin(),
                         [](const korvo_dcomplex& z) { return z.re * z.re + z.im * z.im; });
  return out;
}

matrix decibels(const _univ_mat& power, double reference) {
  matrix out(power.nrow, power.ncol);
  std::ranges::transform(elements(power), elements(out).begin(), [&](double each) {
    return reference > 0.0 ? 10.0 * std::log10(std::max(each / reference, 1e-30)) : -300.0;
  });
  return out;
}

double greatest(const _univ_mat& in) { return std::ranges::max(elements(in)); }

}  // namespace demo

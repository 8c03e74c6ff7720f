// DCT-II along the columns by way of the Fourier engine: forward at twice the length, inverse at four times.
#include <cmath>

#include "core/valid.hpp"
#include "signal/sig_tran.hpp"

namespace korvo {
namespace {

constexpr double pi = 3.141592653589793;
constexpr double root_2 = 1.414213562373095;
constexpr double half_root_2 = 0.7071067811865476;

// The columns of mat one after another as the first elements of runs that are `times` as long; the rest is 0.
code lay_out(const _dbl_mat& mat, std::int32_t times, temporary<_cpx_mat>* runs) {
  TRY(runs->make(mat.ncol, std::int64_t{times} * mat.nrow));
  for (std::int64_t c = 0; c < mat.ncol; ++c) {
    korvo_dcomplex* const run = runs->data + c * runs->ncol;
    for (std::int64_t k = 0; k < mat.nrow; ++k) run[k] = {mat.data[k * mat.ncol + c], 0.0};
    for (std::int64_t k = mat.nrow; k < runs->ncol; ++k) run[k] = {};
  }
  return KORVO_ERR_OK;
}

// Cosine and sine of theta_k, by which element k of each transformed run is turned.
code make_rotations(std::int32_t n, scratch<korvo_dcomplex>* rotations) {
  TRY(rotations->make(n));
  for (std::int32_t k = 0; k < n; ++k) {
    const double theta = k * pi / (2.0 * n);
    (*rotations)[k] = {std::cos(theta), std::sin(theta)};
  }
  return KORVO_ERR_OK;
}

}  // namespace

code localfn_sig_dct_II_columns(_dbl_mat* mat, void* intrp_ptr) {
  const std::int32_t n = mat->nrow;
  const std::int32_t columns = mat->ncol;
  checkpoint cost(intrp_ptr);
  temporary<_cpx_mat> runs;
  TRY(lay_out(*mat, 2, &runs));
  TRY(cost.add_steps(3.0 * columns, n));        // rows of padding
  TRY(cost.add_steps(2.0 * n, columns));        // columns of the input
  TRY(cost.add_steps(3.0 * columns, columns));  // columns for the engine
  TRY(localfn_sig_fft_mixed_radix(runs.data, runs.nelem, 2 * n, -1, intrp_ptr));
  TRY(cost.add_steps(3.0 * columns, columns));  // and back

  scratch<korvo_dcomplex> rotations;
  TRY(make_rotations(n, &rotations));
  const double root_n = std::sqrt(static_cast<double>(n));
  const double scale = 1.0 / root_n * root_2;
  for (std::int64_t c = 0; c < columns; ++c) {
    const korvo_dcomplex* const run = runs.data + c * runs.ncol;
    for (std::int64_t k = 0; k < n; ++k) {
      const double turned = rotations[k].re * run[k].re + rotations[k].im * run[k].im;
      mat->data[k * columns + c] = k == 0 ? turned / root_n : turned * scale;
    }
    TRY(cost.add(5.0 * n));
  }
  return KORVO_ERR_OK;
}

// Kept: it does not poll by itself.
code localfn_sig_dct_II_inverse_columns(_dbl_mat* mat, void* intrp_ptr) {
  const std::int64_t n = mat->nrow;
  temporary<_cpx_mat> runs;
  TRY(lay_out(*mat, 4, &runs));
  for (std::int64_t i = 0; i < runs.nelem; i += 4 * n)
    for (std::int64_t k = 0; k < n; ++k) runs.data[i + k].re *= k == 0 ? 0.5 : half_root_2;
  TRY(localfn_sig_fft_mixed_radix(runs.data, runs.nelem, runs.ncol, -1, intrp_ptr));
  const double scale = 2.0 / std::sqrt(static_cast<double>(n));
  for (std::int64_t c = 0; c < mat->ncol; ++c)
    for (std::int64_t k = 0; k < n; ++k)
      mat->data[k * mat->ncol + c] = scale * runs.data[c * runs.ncol + 2 * k + 1].re;
  return KORVO_ERR_OK;
}

}  // namespace korvo

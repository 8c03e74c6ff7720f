// Region growing: polynomials of the regions, by normal equations, and what a merge costs.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "core/dispatch.hpp"
#include "segment/img_erg.hpp"

namespace korvo {

// Powers are products, so that they are the same bits everywhere.
void polynomial_basis::terms_at(std::int64_t row, std::int64_t col, double* terms) const {
  terms[0] = 1.0;
  if (order_ == 0) return;
  const double x = static_cast<double>(col) / cols_ - 0.5;
  const double y = static_cast<double>(row) / rows_ - 0.5;
  const std::int64_t n = order_;
  if (product_) {
    for (std::int64_t j = 1; j <= n; ++j) terms[j] = terms[j - 1] * y;
    double power = 1.0;
    for (std::int64_t i = 1; i <= n; ++i) {
      power *= x;
      for (std::int64_t j = 0; j <= n; ++j) terms[i * (n + 1) + j] = power * terms[j];
    }
    return;
  }
  terms[1] = x;
  terms[2] = y;
  for (std::int64_t i = 3; i <= 2 * n; ++i) terms[i] = terms[i - 2] * (i % 2 == 1 ? x : y);
}

namespace {

// Cholesky's factors without roots, in place: L below the diagonal, which is 1 in L, and the pivots on it. Only
// the lower triangle is read and written. With order 0 a mean is a true quotient, exact where it can be.
template <int fixed>
code factorise(double* a, std::int64_t size) {
  const std::int64_t m = fixed ? fixed : size;
  for (std::int64_t i = 0; i < m; ++i) {
    double* const row = a + i * m;
    for (std::int64_t j = 1; j < i; ++j)
      for (std::int64_t k = 0; k < j; ++k) row[j] -= row[k] * a[j * m + k];
    for (std::int64_t j = 0; j < i; ++j) {
      const double scaled = row[j] / a[j * m + j];
      row[i] -= row[j] * scaled;
      row[j] = scaled;
    }
    if (!(row[i] > 0.0)) return KORVO_ERR_SINGULAR_MATRIX;
  }
  return KORVO_ERR_OK;
}

template <int fixed>
void substitute_forward(const double* factor, std::int64_t size, double* x) {
  const std::int64_t m = fixed ? fixed : size;
  for (std::int64_t i = 1; i < m; ++i)
    for (std::int64_t k = 0; k < i; ++k) x[i] -= factor[i * m + k] * x[k];
}

void substitute_backward(const double* factor, std::int64_t m, double* x) {
  for (std::int64_t i = m - 1; i >= 0; --i) {
    x[i] /= factor[i * m + i];
    for (std::int64_t k = i + 1; k < m; ++k) x[i] -= factor[k * m + i] * x[k];
  }
}

template <int fixed>
void multiply(const double* a, const double* x, std::int64_t size, double* out) {
  const std::int64_t m = fixed ? fixed : size;
  for (std::int64_t i = 0; i < m; ++i) {
    out[i] = 0.0;
    for (std::int64_t k = 0; k < m; ++k) out[i] += a[i * m + k] * x[k];
  }
}

constexpr double smallest_negative = 1e-09;  // a product as near to 0 as this is rounding

// Beyond this the doubles of one gram are more than can be had.
constexpr std::int64_t largest_basis = 16383;

}  // namespace

struct fit_methods {
  // Sums the terms and pixels of a block in the order of its pixels. The gram is mirrored at the end.
  template <class M>
  static void sum_block(const region_fits& fits, std::int64_t i, std::int64_t j, double* values) {
    const growth_plan& plan = fits.plan_;
    const std::int64_t m = fits.size_;
    double* const terms = fits.work_.data();
    double* const moments = values + m * m + plan.image->nmat * m;
    std::fill_n(values, fits.stride_, 0.0);
    for (std::int64_t r = i * plan.grid_rows; r < (i + 1) * plan.grid_rows; ++r)
      for (std::int64_t c = j * plan.grid_cols; c < (j + 1) * plan.grid_cols; ++c) {
        fits.basis_.terms_at(r, c, terms);
        for (std::int64_t s = 0; s < m; ++s)
          for (std::int64_t t = 0; t <= s; ++t) values[s * m + t] += terms[s] * terms[t];
        for (std::int64_t b = 0; b < plan.image->nmat; ++b) {
          const auto pixel = static_cast<double>(
              static_cast<const element<M>*>(plan.image->mats[b].data)[r * plan.cols() + c]);
          for (std::int64_t s = 0; s < m; ++s) moments[b * m + s] += terms[s] * pixel;
        }
      }
    for (std::int64_t s = 0; s < m; ++s)
      for (std::int64_t t = 0; t < s; ++t) values[t * m + s] = values[s * m + t];
  }

  // The coefficients of each band from gram and moments.
  static code fit(const region_fits& fits, double* values) {
    const std::int64_t m = fits.size_;
    const std::int64_t all = fits.plan_.image->nmat * m;
    double* const factor = fits.work_.data();
    std::copy_n(values, m * m, factor);
    TRY(factorise<0>(factor, m));
    double* const coefficients = values + m * m;
    std::copy_n(coefficients + all, all, coefficients);
    for (std::int64_t b = 0; b < all; b += m) {
      substitute_forward<0>(factor, m, coefficients + b);
      substitute_backward(factor, m, coefficients + b);
    }
    return KORVO_ERR_OK;
  }

  // d' A inverse(A + B) B d for the difference d of coefficients in each band: with L and the pivots of A + B
  // the product of inverse(L) A d and inverse(L) B d over the pivots, the same bits whichever region is a.
  template <int fixed>
  static code cost(const region_fits& fits, std::int64_t a, std::int64_t b, std::uint32_t length,
                   double* cost) {
    const std::int64_t m = fixed ? fixed : fits.size_;
    double room[fixed ? static_cast<std::size_t>(fixed * (fixed + 3)) : 1];
    double* const factor = fixed ? room : fits.work_.data();
    double* const difference = factor + m * m;
    double* const from_a = difference + m;
    double* const from_b = from_a + m;
    const double* const gram_a = fits.values_.data() + a * fits.stride_;
    const double* const gram_b = fits.values_.data() + b * fits.stride_;
    for (std::int64_t i = 0; i < m * m; ++i) factor[i] = gram_a[i] + gram_b[i];
    TRY(factorise<fixed>(factor, m));
    double sum = 0.0;
    double product = 0.0;
    for (std::int64_t band = 0; band < fits.plan_.image->nmat; ++band) {
      const std::int64_t at = m * m + band * m;
      for (std::int64_t i = 0; i < m; ++i) difference[i] = gram_a[at + i] - gram_b[at + i];
      multiply<fixed>(gram_a, difference, m, from_a);
      multiply<fixed>(gram_b, difference, m, from_b);
      substitute_forward<fixed>(factor, m, from_a);
      substitute_forward<fixed>(factor, m, from_b);
      product = 0.0;
      for (std::int64_t i = 0; i < m; ++i) product += from_a[i] * from_b[i] / factor[i * m + i];
      sum += fits.plan_.weights[band] * product;
    }
    *cost = sum / length;
    if (!(*cost < 0.0)) return KORVO_ERR_OK;
    *cost = 0.0;  // kept: it is the last band, without its weight, that says whether this is rounding
    return std::fabs(product) < smallest_negative ? KORVO_ERR_OK : KORVO_ERR_ROUNDOFF;
  }
};

code region_fits::make() {
  size_ = basis_.size();
  const std::int64_t planes = plan_.image->nmat;
  if (size_ > largest_basis || planes * size_ > largest_size / std::int64_t{sizeof(double)})
    return KORVO_ERR_MALLOC;
  cost_ = size_ == 1 ? &fit_methods::cost<1> : size_ == 3 ? &fit_methods::cost<3> : &fit_methods::cost<0>;
  stride_ = size_ * size_ + 2 * planes * size_;
  const std::int64_t rows = plan_.block_rows();
  const std::int64_t cols = plan_.block_cols();
  TRY(values_.make(rows * cols * stride_));
  TRY(work_.make(size_ * (size_ + 3)));
  return dispatch(plan_.image->mats[0].type, real_records{}, [&]<class M> {
    for (std::int64_t i = 0; i < rows; ++i)
      for (std::int64_t j = 0; j < cols; ++j) {
        double* const values = values_.data() + (i * cols + j) * stride_;
        fit_methods::sum_block<M>(*this, i, j, values);
        TRY(fit_methods::fit(*this, values));
      }
    return KORVO_ERR_OK;
  });
}

code region_fits::absorb(std::int64_t a, std::int64_t b) {
  double* const into = values_.data() + a * stride_;
  const double* const from = values_.data() + b * stride_;
  for (std::int64_t i = 0; i < stride_; ++i) into[i] += from[i];  // the coefficients are formed anew
  return fit_methods::fit(*this, into);
}

}  // namespace korvo

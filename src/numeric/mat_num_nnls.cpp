// Non-negative least squares.
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "core/checkpoint.hpp"
#include "core/levels.hpp"
#include "core/loop.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"
#include "korvos/numeric/mat_num.h"
#include "numeric/mat_num_orthogonal.hpp"

#define KORVO_KERNELS "numeric/mat_num_nnls_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

// The sets of variables and the triangular form of the positive set's columns. Rows, columns and positions are
// counted from 1, but an element of a row of `a` from 0. The index list is a permutation of 1 to n: its first
// `positive` entries are the positive set, in the order of the triangle's columns, and the rest the zero set.
class active_set {
 public:
  active_set(double* const* a, std::int64_t m, std::int64_t n, double* b, double* x)
      : a_(a), m_(m), n_(n), b_(b), x_(x) {}

  // The work arrays; all variables in the zero set.
  code make();

  // Whether there may be a variable that is to enter.
  bool is_open() const { return positive_ < n_ && positive_ < m_; }

  // Looks for the variable that is to enter, lets it, and solves; *found is 0 if there is none.
  code enter(std::int64_t* found);

  // How far the positive set may go towards its solution: at 2.0 all the way. *leaving is the position of the
  // variable that stops it.
  double reach(std::int64_t* leaving) const;

  // Goes so far, and takes out of the set what has become 0; then solves again.
  code retreat(double alpha, std::int64_t leaving);

  // Takes the solution over.
  void accept();

 private:
  double& a(std::int64_t row, std::int64_t variable) const { return a_[row][variable - 1]; }
  double& x(std::int64_t position) const { return x_[index_[position] - 1]; }
  code check(std::int64_t position) const;
  std::int64_t steepest() const;
  void reflect(std::int64_t j);
  bool is_independent(std::int64_t j) const;
  bool grows(std::int64_t j);
  void move(std::int64_t position);
  code remove(std::int64_t position);
  void solve();

  double* const* a_;
  std::int64_t m_, n_;
  double* b_;
  double* x_;
  std::int64_t positive_ = 0;
  double up_ = 0.0;
  scratch<std::int32_t> index_;
  scratch<double> w_;      // gradient; and products of the columns with a reflection
  scratch<double> zz_;     // the right-hand side, transformed; and the solution
  scratch<double> u_;      // the column that enters
  scratch<double> v_;      // the same with its pivot replaced, as it is applied
  scratch<double> dummy_;  // in place of vectors while a reflection is only constructed
};

code active_set::make() {
  TRY(index_.make(n_ + 1));
  TRY(w_.make(n_ + 1));
  TRY(zz_.make(m_ + 1));
  TRY(u_.make(m_ + 1));
  TRY(v_.make(m_ + 1));
  TRY(dummy_.make(2));
  for (std::int64_t i = 1; i <= n_; ++i) index_[i] = static_cast<std::int32_t>(i);
  std::fill_n(x_, n_, 0.0);
  return KORVO_ERR_OK;
}

// Before an entry of the index list is followed.
code active_set::check(std::int64_t position) const {
  if (positive_ < 0 || positive_ > std::min(m_, n_) || position < 1 || position > n_)
    return KORVO_ERR_OUT_OF_BOUNDS;
  return index_[position] >= 1 && index_[position] <= n_ ? KORVO_ERR_OK : KORVO_ERR_OUT_OF_BOUNDS;
}

// The position of the largest component of the gradient in the zero set, 0 if none is above 0.
std::int64_t active_set::steepest() const {
  std::int64_t found = 0;
  double largest = 0.0;
  for (std::int64_t i = positive_ + 1; i <= n_; ++i)
    if (w_[index_[i]] > largest) largest = w_[index_[i]], found = i;
  return found;
}

// Turns column j to 0 below the next row of the triangle; what defines the reflection stays in its place, and
// u.
void active_set::reflect(std::int64_t j) {
  const std::int64_t next = positive_ + 1;
  for (std::int64_t l = 1; l <= m_; ++l) u_[l] = a(l, j);
  localfn_mat_householder(householder_mode::construct_and_apply, next, next + 1, m_, u_.data(), &up_,
                          dummy_.data(), 1, 1, 0);
  for (std::int64_t l = 1; l <= m_; ++l) a(l, j) = u_[l];
}

bool active_set::is_independent(std::int64_t j) const {
  double squares = 0.0;
  for (std::int64_t l = 1; l <= positive_; ++l) squares += a(l, j) * a(l, j);
  const double length = std::sqrt(squares);
  return (std::fabs(a(positive_ + 1, j)) * 0.01 + length) - length > 0.0;
}

// Whether variable j would become positive; zz is the right-hand side with it.
bool active_set::grows(std::int64_t j) {
  const std::int64_t next = positive_ + 1;
  std::copy_n(b_ + 1, m_, zz_.data() + 1);
  localfn_mat_householder(householder_mode::apply, next, next + 1, m_, u_.data(), &up_, zz_.data() + 1, 1, 1,
                          1);
  return zz_[next] / a(next, j) > 0.0;
}

// Moves the variable from its position in the zero set to the end of the positive set, and reflects the columns
// of the variables that stay.
void active_set::move(std::int64_t position) {
  std::copy_n(zz_.data() + 1, m_, b_ + 1);
  std::swap(index_[position], index_[++positive_]);
  const std::int64_t j = index_[positive_];
  const double bb = up_ * u_[positive_];
  if (positive_ < m_ && bb < 0.0) {  // as localfn_mat_householder() asks
    std::copy_n(u_.data() + positive_, m_ - positive_ + 1, v_.data() + positive_);
    v_[positive_] = up_;
    KORVO_AT_LEVEL(multiply_columns)(a_, v_.data(), positive_, m_, n_, w_.data() + 1);
    for (std::int64_t i = 1; i <= positive_; ++i) w_[index_[i]] = 0.0;  // these columns are finished
    KORVO_AT_LEVEL(reflect_columns)(a_, v_.data(), positive_, m_, n_, w_.data() + 1, 1.0 / bb);
  }
  for (std::int64_t l = positive_ + 1; l <= m_; ++l) a(l, j) = 0.0;
}

// The triangular system of the positive set, from its last variable back.
void active_set::solve() {
  for (std::int64_t i = positive_; i >= 1; --i) {
    const std::int64_t j = index_[i];
    zz_[i] /= a(i, j);
    for (std::int64_t l = 1; l < i; ++l) zz_[l] -= a(l, j) * zz_[i];
  }
}

code active_set::enter(std::int64_t* found) {
  KORVO_AT_LEVEL(multiply_columns)(a_, b_, positive_ + 1, m_, n_, w_.data() + 1);
  std::int64_t refused = 0;
  while ((*found = steepest()) > 0) {
    TRY(check(*found));
    const std::int64_t j = index_[*found];
    const double saved = a(positive_ + 1, j);
    reflect(j);
    if (!is_independent(j)) {
      // kept: the column stays reflected and w as it is, so the same one is found again; the second time it
      // ends the search, which would not end otherwise.
      if (refused == j) return *found = 0, KORVO_ERR_OK;
      refused = j;
    } else if (grows(j)) {
      move(*found);
      solve();
      return KORVO_ERR_OK;
    } else {
      a(positive_ + 1, j) = saved;
      w_[j] = 0.0;
    }
  }
  return KORVO_ERR_OK;
}

double active_set::reach(std::int64_t* leaving) const {
  double alpha = 2.0;
  for (std::int64_t i = 1; i <= positive_; ++i) {
    if (zz_[i] > 0.0) continue;
    const double t = -x(i) / (zz_[i] - x(i));
    if (t < alpha) alpha = t, *leaving = i;
  }
  return alpha;
}

// Puts the variable back in the zero set. Those behind it move up, and each leaves one element below the
// triangle that a rotation turns to 0.
code active_set::remove(std::int64_t position) {
  TRY(check(position));
  const std::int32_t variable = index_[position];
  x(position) = 0.0;
  for (std::int64_t i = position + 1; i <= positive_; ++i) {
    TRY(check(i));
    const std::int64_t j = index_[i - 1] = index_[i];
    double c = 0.0, s = 0.0, length = 0.0;
    localfn_mat_givens_construct(a(i - 1, j), a(i, j), &c, &s, &length);
    KORVO_AT_LEVEL(rotate_rows)(c, s, a_[i - 1], a_[i], n_);
    a(i - 1, j) = length;
    a(i, j) = 0.0;
    localfn_mat_givens_apply(c, s, &b_[i - 1], &b_[i]);
  }
  index_[positive_--] = variable;
  return KORVO_ERR_OK;
}

code active_set::retreat(double alpha, std::int64_t leaving) {
  for (std::int64_t i = 1; i <= positive_; ++i) x(i) += alpha * (zz_[i] - x(i));
  while (leaving <= positive_) {
    TRY(remove(leaving));
    for (leaving = 1; leaving <= positive_ && x(leaving) > 0.0;) ++leaving;
  }
  std::copy_n(b_ + 1, m_, zz_.data() + 1);
  solve();
  return KORVO_ERR_OK;
}

void active_set::accept() {
  for (std::int64_t i = 1; i <= positive_; ++i) x(i) = zz_[i];
}

// The iteration, on row pointers and a right-hand side counted from 1; both are changed. x counts from 0.
code localfn_mat_nnls_core(double* const* a, std::int64_t m, std::int64_t n, double* b, double* x,
                           void* intrp_ptr) {
  const double pass_cost = static_cast<double>(m) * static_cast<double>(n) * 10.0;
  checkpoint cost(intrp_ptr);
  active_set set(a, m, n, b, x);
  TRY(set.make());
  std::int64_t passes = 0;
  while (set.is_open()) {
    std::int64_t found = 0;
    TRY(set.enter(&found));
    if (found == 0) break;
    for (;;) {
      ++passes;
      TRY(cost.add(pass_cost));
      if (passes > 3 * n) return KORVO_ERR_NOT_CONVERGING;
      std::int64_t leaving = 0;
      const double alpha = set.reach(&leaving);
      if (alpha == 2.0) break;
      TRY(set.retreat(alpha, leaving));
    }
    set.accept();
  }
  return KORVO_ERR_OK;
}

code non_negative_least_squares(const _dbl_mat* a, const _dbl_mat* b, void* intrp_ptr, _dbl_mat* x) {
  TRY(valid(a, b, x));
  if (b->nelem != a->nrow || x->nelem != a->ncol) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(x, a) || shares_data(x, b)) return KORVO_ERR_ILLEGAL_ADDRESS;
  const std::int64_t m = a->nrow;
  const std::int64_t n = a->ncol;
  scratch<double> elements;
  scratch<double*> rows;
  scratch<double> rhs;
  TRY(elements.make(m * n));
  TRY(rows.make(m + 1));
  TRY(rhs.make(m + 1));
  std::copy_n(a->data, m * n, elements.data());
  std::copy_n(b->data, m, rhs.data() + 1);
  for (std::int64_t l = 1; l <= m; ++l) rows[l] = elements.data() + (l - 1) * n;
  return localfn_mat_nnls_core(rows.data(), m, n, rhs.data(), x->data, intrp_ptr);
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" _korvo_errcode matdbl_non_negative_least_squares(const _dbl_mat* a, const _dbl_mat* b,
                                                            void* intrp_ptr, _dbl_mat* x) {
  return non_negative_least_squares(a, b, intrp_ptr, x);
}

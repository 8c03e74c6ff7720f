// Householder transformations and Givens rotations.
#include "numeric/mat_num_orthogonal.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace korvo {
namespace {

// The length of the pivot and elements first to last, each divided by their largest so that no square
// overflows; 0.0 if there is nothing but zeros.
double length_of(const double* u, std::int64_t pivot, std::int64_t first, std::int64_t last) {
  double largest = std::fabs(u[pivot]);
  for (std::int64_t i = first; i <= last; ++i) largest = std::max(largest, std::fabs(u[i]));
  if (!(largest > 0.0)) return 0.0;
  const double inverse = 1.0 / largest;
  const auto square = [=](double x) { return (x * inverse) * (x * inverse); };
  double sum = square(u[pivot]);
  for (std::int64_t i = first; i <= last; ++i) sum += square(u[i]);
  return std::sqrt(sum) * largest;
}

}  // namespace

void localfn_mat_householder(householder_mode mode, std::int64_t pivot, std::int64_t first, std::int64_t last,
                             double* u, double* up, double* c, std::int64_t element_stride,
                             std::int64_t vector_stride, std::int64_t count) {
  if (!(0 < pivot && pivot < first && first <= last)) return;
  if (mode == householder_mode::construct_and_apply) {
    const double length = length_of(u, pivot, first, last);
    if (length == 0.0) return;
    const double turned = u[pivot] > 0.0 ? -length : length;
    *up = u[pivot] - turned;
    u[pivot] = turned;
  } else if (!(std::fabs(u[pivot]) > 0.0)) {
    return;
  }
  const double bb = *up * u[pivot];
  if (!(bb < 0.0)) return;
  for (; count > 0; --count, c += vector_stride) {
    const auto at = [=](std::int64_t i) -> double& { return c[(i - 1) * element_stride]; };
    double sum = at(pivot) * *up;
    for (std::int64_t i = first; i <= last; ++i) sum += at(i) * u[i];
    if (sum == 0.0) continue;
    sum *= 1.0 / bb;
    at(pivot) += sum * *up;
    for (std::int64_t i = first; i <= last; ++i) at(i) += sum * u[i];
  }
}

void localfn_mat_givens_construct(double a, double b, double* c, double* s, double* length) {
  if (std::fabs(a) > std::fabs(b)) {
    const double xr = b / a;
    const double yr = std::sqrt(1.0 + xr * xr);
    *c = std::copysign(1.0, a) / yr;
    *s = *c * xr;
    *length = std::fabs(a) * yr;
  } else if (b == 0.0) {
    *c = 0.0;
    *s = 1.0;
    *length = 0.0;
  } else {
    const double xr = a / b;
    const double yr = std::sqrt(1.0 + xr * xr);
    *s = std::copysign(1.0, b) / yr;
    *c = *s * xr;
    *length = std::fabs(b) * yr;
  }
}

void localfn_mat_givens_apply(double c, double s, double* z1, double* z2) {
  const double turned = c * *z1 + s * *z2;
  *z2 = c * *z2 - s * *z1;
  *z1 = turned;
}

}  // namespace korvo

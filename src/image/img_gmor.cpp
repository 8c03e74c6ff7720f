// Grey-scale morphology: erode, dilate, open, close.
#include "korvos/image/img_gmor.h"

#include <cstdint>

#include "core/levels.hpp"
#include "core/loop.hpp"
#include "image/img_morp.hpp"
#include "korvos/signal/sig_conv.h"
#include "matrix/operand.hpp"

#define KORVO_KERNELS "image/img_morp_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

struct placing {
  std::int32_t row;
  std::int32_t col;
  std::int32_t boundary;
};

// Kept: a dilation reflects the function, an erosion does not, and neither saturates.
template <bool dilates, class M>
code transform(const M* image, const M* function, placing at, void* intrp_ptr, M* result) {
  using T = element<M>;
  TRY(valid(image, function, result));
  if (!same_shape(image, result)) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(result, image) || shares_data(result, function)) return KORVO_ERR_ILLEGAL_ADDRESS;
  if (at.boundary != SIG_BOUNDARY_ZERO && at.boundary != SIG_BOUNDARY_CONTINUE) return KORVO_ERR_ILLEGAL_VALUE;

  const double row_cost = (static_cast<double>(function->nelem) * image->ncol + 1.0) * 8.0;
  const auto copy = [](const T* from, T* samples, std::int64_t n) { std::copy_n(from, n, samples); };
  const auto write = [=](const T* from, std::int64_t index, std::int64_t n) {
    std::copy_n(from, n, result->data + index);
  };
  return each_tile<dilates>(sampled<T, T, decltype(copy)>{image->data, image->nrow, image->ncol,
                                                          at.boundary == SIG_BOUNDARY_CONTINUE, copy},
                            place<dilates>(function, at.row, at.col, false), row_cost, checkpoint(intrp_ptr),
                            intrp_ptr != nullptr, KORVO_AT_LEVEL(extremes<dilates, T>), write);
}

template <bool dilates>
code universal(const _univ_mat* image, const _univ_mat* function, placing at, void* intrp_ptr,
               _univ_mat* result) {
  return dispatch_operands(image, function, intrp_ptr, result, morphology_records{},
                           [&]<class M>(const M* samples, const M* entries, M* to) {
                             return transform<dilates>(samples, entries, at, intrp_ptr, to);
                           });
}

// Opening, or closing if it dilates first. The steps find what else is wrong.
template <bool dilates>
code twice(const _univ_mat* image, const _univ_mat* function, std::int32_t boundary, void* intrp_ptr,
           _univ_mat* result) {
  if (!image) return KORVO_ERR_NULL_POINTER;
  if (result && result->data && shares_data(result, image)) return KORVO_ERR_ILLEGAL_ADDRESS;
  const placing at = {0, 0, boundary};
  return in_two_steps(
      *image, [&](_univ_mat* out) { return universal<dilates>(image, function, at, intrp_ptr, out); },
      [&](const _univ_mat* in) { return universal<!dilates>(in, function, at, intrp_ptr, result); });
}

}  // namespace
}  // namespace korvo

using namespace korvo;

#define ONCE(name, M, method, dilates)                                                                   \
  code name(const M* image, const M* function, int32_t origin_row, int32_t origin_col, int32_t boundary, \
            void* intrp_ptr, M* result) {                                                                \
    return method<dilates>(image, function, {origin_row, origin_col, boundary}, intrp_ptr, result);      \
  }
#define TWICE(name, dilates)                                                                      \
  code name(const _univ_mat* image, const _univ_mat* function, int32_t boundary, void* intrp_ptr, \
            _univ_mat* result) {                                                                  \
    return twice<dilates>(image, function, boundary, intrp_ptr, result);                          \
  }

extern "C" {

ONCE(imgu8_grayscale_erode, _u8_mat, transform, false)
ONCE(imgu16_grayscale_erode, _u16_mat, transform, false)
ONCE(imgs32_grayscale_erode, _s32_mat, transform, false)
ONCE(imgdbl_grayscale_erode, _dbl_mat, transform, false)
ONCE(imguniv_grayscale_erode, _univ_mat, universal, false)

ONCE(imgu8_grayscale_dilate, _u8_mat, transform, true)
ONCE(imgu16_grayscale_dilate, _u16_mat, transform, true)
ONCE(imgs32_grayscale_dilate, _s32_mat, transform, true)
ONCE(imgdbl_grayscale_dilate, _dbl_mat, transform, true)
ONCE(imguniv_grayscale_dilate, _univ_mat, universal, true)

TWICE(imguniv_grayscale_open, false)
TWICE(imguniv_grayscale_close, true)

}  // extern "C"

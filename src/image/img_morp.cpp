// Binary morphology: erode, dilate, open, close.
#include "korvos/image/img_morp.h"

#include <cstdint>

#include "core/levels.hpp"
#include "core/loop.hpp"
#include "image/img_morp.hpp"
#include "korvos/matrix/mat_assn.h"

#define KORVO_KERNELS "image/img_morp_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

template <class T>
struct two_values {
  T foreground;
  T background;
};

struct origin {
  std::int32_t row;
  std::int32_t col;
};

// The scalar assignment that a dilation begins with. Hosts see its poll; else it would leave no trace, since
// every pixel is written below.
template <class M>
code clear(element<M> background, void* intrp_ptr, M* result) {
  _univ_scalar scalar = {{}, tag<M>::type};
  scalar.value.*tag<M>::member = background;
  _univ_mat out = {result->nrow, result->ncol, result->nelem, result->data, tag<M>::type};
  return matuniv_assign_scalar(scalar, intrp_ptr, &out);
}

// Kept: neither operation reflects the element, as entries are placed by one rule: over the pixels that an
// erosion looks at, and over those that a dilation paints, which each look at a reflected element. Outside is
// background.
template <bool dilates, class M>
code transform(const M* image, const _u8_mat* element, origin at, two_values<korvo::element<M>> values,
               void* intrp_ptr, M* result) {
  using T = korvo::element<M>;
  TRY(valid(image, element, result));
  if (!same_shape(image, result)) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(result, image) || shares_data(result, element)) return KORVO_ERR_ILLEGAL_ADDRESS;
  if (values.foreground == values.background) return KORVO_ERR_ILLEGAL_VALUE;
  if (dilates && intrp_ptr) TRY(clear(values.background, intrp_ptr, result));

  const double row_cost = ((3.0 * element->ncol + 3.0) * element->nrow + (dilates ? 2.0 : 4.0)) * image->ncol;
  const auto find = KORVO_AT_LEVEL(find<T>);
  const auto paint = KORVO_AT_LEVEL(paint<T>);
  const auto masked = [=](const T* from, std::uint8_t* mask, std::int64_t n) {
    find(from, values.foreground, mask, n);
  };
  const auto write = [=](const std::uint8_t* mask, std::int64_t index, std::int64_t n) {
    paint(mask, values.foreground, values.background, result->data + index, n);
  };
  return each_tile<dilates>(
      sampled<std::uint8_t, T, decltype(masked)>{image->data, image->nrow, image->ncol, false, masked},
      place<dilates>(element, at.row, at.col, true), row_cost,
      checkpoint(intrp_ptr, dilates ? 0.0 : element->nelem), intrp_ptr != nullptr,
      KORVO_AT_LEVEL(extremes<dilates, std::uint8_t>), write);
}

template <bool dilates>
code universal(const _univ_mat* image, const _univ_mat* element, origin at, _univ_scalar foreground,
               _univ_scalar background, void* intrp_ptr, _univ_mat* result) {
  if (!image || !element || !result) return KORVO_ERR_NULL_POINTER;
  if (result->type != image->type || element->type != KORVO_UINT8 || foreground.type != image->type ||
      background.type != image->type)
    return KORVO_ERR_ILLEGAL_TYPE;
  return dispatch(image->type, morphology_records{}, [&]<class M> {
    const M from = as<M>(*image);
    const _u8_mat entries = as<_u8_mat>(*element);
    M to = as<M>(*result);
    return transform<dilates>(&from, &entries, at, {number<M>(foreground), number<M>(background)}, intrp_ptr,
                              &to);
  });
}

// Opening, or closing if it dilates first.
template <bool dilates>
code twice(const _univ_mat* image, const _univ_mat* element, _univ_scalar foreground, _univ_scalar background,
           void* intrp_ptr, _univ_mat* result) {
  if (!image || !result || !element) return KORVO_ERR_NULL_POINTER;
  TRY(matuniv_validate(image));
  if (shares_data(result, image)) return KORVO_ERR_ILLEGAL_ADDRESS;
  return in_two_steps(
      *image,
      [&](_univ_mat* out) {
        return universal<dilates>(image, element, {0, 0}, foreground, background, intrp_ptr, out);
      },
      [&](const _univ_mat* in) {
        return universal<!dilates>(in, element, {0, 0}, foreground, background, intrp_ptr, result);
      });
}

}  // namespace
}  // namespace korvo

using namespace korvo;

#define TYPED(name, M, T, dilates)                                                                           \
  code name(const M* image, const _u8_mat* element, int32_t origin_row, int32_t origin_col, T foreground,    \
            T background, void* intrp_ptr, M* result) {                                                      \
    return transform<dilates>(image, element, {origin_row, origin_col}, {foreground, background}, intrp_ptr, \
                              result);                                                                       \
  }
#define UNIVERSAL(name, dilates)                                                                           \
  code name(const _univ_mat* image, const _univ_mat* element, int32_t origin_row, int32_t origin_col,      \
            _univ_scalar foreground, _univ_scalar background, void* intrp_ptr, _univ_mat* result) {        \
    return universal<dilates>(image, element, {origin_row, origin_col}, foreground, background, intrp_ptr, \
                              result);                                                                     \
  }
#define TWICE(name, dilates)                                                           \
  code name(const _univ_mat* image, const _univ_mat* element, _univ_scalar foreground, \
            _univ_scalar background, void* intrp_ptr, _univ_mat* result) {             \
    return twice<dilates>(image, element, foreground, background, intrp_ptr, result);  \
  }

extern "C" {

TYPED(imgu8_binary_erode, _u8_mat, uint8_t, false)
TYPED(imgu16_binary_erode, _u16_mat, uint16_t, false)
TYPED(imgs32_binary_erode, _s32_mat, int32_t, false)
TYPED(imgdbl_binary_erode, _dbl_mat, double, false)
UNIVERSAL(imguniv_binary_erode, false)

TYPED(imgu8_binary_dilate, _u8_mat, uint8_t, true)
TYPED(imgu16_binary_dilate, _u16_mat, uint16_t, true)
TYPED(imgs32_binary_dilate, _s32_mat, int32_t, true)
TYPED(imgdbl_binary_dilate, _dbl_mat, double, true)
UNIVERSAL(imguniv_binary_dilate, true)

TWICE(imguniv_binary_open, false)
TWICE(imguniv_binary_close, true)

}  // extern "C"

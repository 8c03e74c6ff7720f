// Modulus maxima of a wavelet transform.
#include "korvos/wavelet/wav_wtmm.h"

#include <cmath>
#include <cstdint>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/levels.hpp"
#include "core/loop.hpp"
#include "core/valid.hpp"

#define KORVO_KERNELS "wavelet/wav_wtmm_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

code modulus_maxima(const _dbl_mat* transform, double tolerance, bool include_ends, void* intrp_ptr,
                    _s32_mat* mask) {
  TRY(valid(transform, mask));
  if (transform->nelem != mask->nelem) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(transform, mask)) return KORVO_ERR_ILLEGAL_ADDRESS;
  const double* const data = transform->data;
  const std::int64_t cols = transform->ncol;
  const auto stands_above = [&](std::int64_t at, std::int64_t neighbour) {
    return std::fabs(data[at]) > std::fabs(data[neighbour]) + tolerance;
  };
  const auto mark_interior = KORVO_AT_LEVEL(mark_interior);
  checkpoint cost(intrp_ptr);
  for (std::int64_t first = 0; first < transform->nelem; first += cols) {
    const std::int64_t last = first + cols - 1;
    mark_interior(data + first, tolerance, transform->ncol, mask->data + first);
    mask->data[last] = include_ends && cols > 1 && stands_above(last, last - 1);
    // kept: the right neighbour in a single column is the next element of the data
    mask->data[first] = include_ends && first + 1 < transform->nelem && stands_above(first, first + 1);
    TRY(cost.set(3.0 * static_cast<double>(cols)));
  }
  return KORVO_ERR_OK;
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" code wavuniv_transform_modulus_maxima(const _univ_mat* transform, double tolerance,
                                                 uint8_t include_ends, void* intrp_ptr, _univ_mat* mask) {
  if (!transform || !mask) return KORVO_ERR_NULL_POINTER;
  if (transform->type != KORVO_DOUBLE || mask->type != KORVO_SINT32) return KORVO_ERR_ILLEGAL_TYPE;
  const auto from = as<_dbl_mat>(*transform);
  auto to = as<_s32_mat>(*mask);
  return modulus_maxima(&from, tolerance, include_ends != 0, intrp_ptr, &to);
}

// Hysteresis: components above a low threshold that have a pixel at or above a high one.
#include <algorithm>
#include <cstdint>
#include <type_traits>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/temporary.hpp"
#include "core/universal.hpp"
#include "core/valid.hpp"
#include "korvos/matrix/mat_thr.h"
#include "korvos/segment/img_cany.h"
#include "korvos/segment/img_ccmp.h"

namespace korvo {
namespace {

// Candidates lie outside this and the low threshold. Kept: so does what is below it.
constexpr double lowest = -1e+37;

template <class T>
bool equal(T a, T b) {
  return a == b;
}
bool equal(korvo_dcomplex a, korvo_dcomplex b) { return a.re == b.re && a.im == b.im; }

code check(const _univ_mat* image, double low, double high, const _univ_scalar& edge,
           const _univ_scalar& background, const _univ_mat* result) {
  TRY(matuniv_validate(image));
  TRY(matuniv_validate(result));
  if (edge.type != result->type || background.type != result->type) return KORVO_ERR_ILLEGAL_TYPE;
  TRY(dispatch(result->type, all_records{}, [&]<class M> {
    return equal(number<M>(edge), number<M>(background)) ? KORVO_ERR_ILLEGAL_VALUE : KORVO_ERR_OK;
  }));
  if (!same_shape(image, result)) return KORVO_ERR_ILLEGAL_SIZE;
  if (!(high >= low)) return KORVO_ERR_ILLEGAL_VALUE;
  if (shares_data(image, result)) return KORVO_ERR_ILLEGAL_ADDRESS;
  const bool has_labels = result->type != KORVO_FLOAT && result->type != KORVO_DCOMPLEX;
  return image->type != KORVO_DCOMPLEX && has_labels ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_TYPE;
}

// Raises the flag of each label that has a strong pixel. Kept: of float images the threshold is made a float.
template <class M>
void flag_strong(const M& image, double high, const std::uint32_t* labels, std::uint32_t* flags) {
  using number = std::conditional_t<std::is_same_v<M, _flt_mat>, float, double>;
  const auto threshold = static_cast<number>(high);
  for (std::int64_t i = 0; i < image.nelem; ++i)
    if (static_cast<number>(image.data[i]) >= threshold) flags[labels[i]] = 1;
}

template <class M>
void write_flagged(const std::uint32_t* labels, const std::uint32_t* flags, element<M> edge,
                   element<M> background, const M& out) {
  for (std::int64_t i = 0; i < out.nelem; ++i) out.data[i] = flags[labels[i]] != 0 ? edge : background;
}

// Of the candidates, which have the value `edge` in the result, those stay whose component has a strong pixel.
code keep_strong(const _univ_mat* image, double high, const _univ_scalar& edge, const _univ_scalar& background,
                 void* intrp_ptr, _univ_mat* result) {
  constexpr std::int32_t eight = 8;
  universal_temporary<_u32_mat> labels;
  std::uint32_t count = 0;  // background and all, so never 0 once it is known
  TRY(labels.make_like(result));
  TRY(imguniv_connected_components(result, eight, edge, 1, intrp_ptr, &labels, &count));
  const auto* const label = static_cast<const std::uint32_t*>(labels.data);
  scratch<std::uint32_t> flags;
  TRY(flags.make(count));
  std::fill_n(flags.data(), count, 0);
  TRY(dispatch(image->type, real_records{}, [&]<class M> {
    flag_strong(as<M>(*image), high, label, flags.data());
    return KORVO_ERR_OK;
  }));
  flags[0] = 0;  // with equal thresholds a strong pixel may be no candidate
  checkpoint cost(intrp_ptr);
  TRY(cost.add(image->nelem * 4.0));
  TRY(dispatch(result->type, real_records{}, [&]<class M> {
    write_flagged(label, flags.data(), number<M>(edge), number<M>(background), as<M>(*result));
    return KORVO_ERR_OK;
  }));
  return cost.add(image->nelem * 3.0);
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code imguniv_threshold_hysteresis(const _univ_mat* image, double low, double high, _univ_scalar edge,
                                  _univ_scalar background, void* intrp_ptr, _univ_mat* result) {
  TRY(check(image, low, high, edge, background, result));
  TRY(matuniv_threshold(image, lowest, low, edge, background, intrp_ptr, result));
  return keep_strong(image, high, edge, background, intrp_ptr, result);
}

}  // extern "C"

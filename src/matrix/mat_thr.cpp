// Threshold: one value inside a range, another outside.
#include "korvos/matrix/mat_thr.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "core/arithmetic.hpp"
#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/levels.hpp"
#include "core/loop.hpp"
#include "core/valid.hpp"

namespace korvo {
namespace {

// A closed range in the type in which elements are compared: their own if that is an integer, else double.
template <class T>
struct range_of {
  using bound = std::conditional_t<std::is_integral_v<T>, T, double>;
  bound low, high;

  range_of(double least, double most) : low{}, high{} {
    if constexpr (std::is_integral_v<T>) {
      least = std::max(std::ceil(least), double{std::numeric_limits<T>::lowest()});
      most = std::min(std::floor(most), double{std::numeric_limits<T>::max()});
      const bool empty = most < least;
      low = empty ? T{1} : static_cast<T>(least);
      high = empty ? T{0} : static_cast<T>(most);
    } else {
      low = least;
      high = most;
    }
  }
};

}  // namespace
}  // namespace korvo

#define KORVO_KERNELS "matrix/mat_thr_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

constexpr std::int32_t strip_size = 4096;  // the marks of a strip stay in the cache

template <class In, class Out>
code threshold(const In* in, double low, double high, element<Out> outside, element<Out> inside,
               void* intrp_ptr, Out* out) {
  TRY(valid(in));
  TRY(valid(out));
  if (!same_shape(in, out)) return KORVO_ERR_ILLEGAL_SIZE;
  if (!std::is_same_v<In, Out> && shares_data(in, out)) return KORVO_ERR_ILLEGAL_ADDRESS;
  if (std::isnan(low) || std::isnan(high)) return KORVO_ERR_ILLEGAL_VALUE;
  const range_of<element<In>> range(low, high);
  std::uint8_t marks[strip_size];
  checkpoint poll(intrp_ptr);
  for (std::int32_t first = 0; first < in->nelem;) {
    const std::int32_t count = std::min(strip_size, in->nelem - first);
    KORVO_AT_LEVEL(mark_range<element<In>>)(in->data + first, range, marks, count);
    KORVO_AT_LEVEL(choose<element<Out>>)(marks, outside, inside, out->data + first, count);
    TRY(poll.add(3.0 * count));
    first += count;
  }
  return KORVO_ERR_OK;
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code matuniv_threshold(const _univ_mat* in, double low, double high, _univ_scalar outside, _univ_scalar inside,
                       void* intrp_ptr, _univ_mat* out) {
  if (!in || !out) return KORVO_ERR_NULL_POINTER;
  if (outside.type != out->type || inside.type != out->type) return KORVO_ERR_ILLEGAL_TYPE;
  return dispatch(in->type, real_records{}, [&]<class In> {
    const In from = as<In>(*in);
    return dispatch(out->type, all_records{}, [&]<class Out> {
      Out to = as<Out>(*out);
      return threshold(&from, low, high, number<Out>(outside), number<Out>(inside), intrp_ptr, &to);
    });
  });
}

}  // extern "C"

// Sorting: the whole order, the order at some places, the elements in order.
#include "korvos/matrix/mat_sort.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <span>
#include <type_traits>

#include "core/arithmetic.hpp"
#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"

namespace korvo {
namespace {

constexpr double cost_of_place = 10.0;

// A total order of places: by element, NaN last, and of equal ones the earlier first.
template <class T>
struct by_element {
  const T* in;

  bool operator()(std::int32_t i, std::int32_t j) const {
    const T x = in[i];
    const T y = in[j];
    if (x < y) return true;
    if (y < x) return false;
    if constexpr (std::is_floating_point_v<T>) {
      const bool last = std::isnan(x);
      if (last != std::isnan(y)) return !last;
    }
    return i < j;
  }
};

// Merge sort from runs that the cache holds, into `index`. A long merge is done in pieces, to be stopped.
template <class T>
class merge_sort {
 public:
  merge_sort(by_element<T> before, checkpoint& poll) : before_(before), poll_(poll) {}

  [[nodiscard]] code sort(std::int32_t* index, std::int64_t n) {
    for (std::int64_t first = 0; first < n; first += piece) {
      const std::int64_t end = std::min(first + piece, n);
      std::sort(index + first, index + end, before_);
      TRY(poll_.add(cost_of_place * static_cast<double>(end - first)));
    }
    if (n <= piece) return KORVO_ERR_OK;
    TRY(other_.make(n));
    std::int32_t* from = index;
    std::int32_t* to = other_.data();
    for (std::int64_t run = piece; run < n; run *= 2, std::swap(from, to))
      for (std::int64_t first = 0; first < n; first += 2 * run)
        TRY(merge(from, to, first, std::min(first + run, n), std::min(first + 2 * run, n)));
    if (from != index) std::copy_n(from, n, index);
    return KORVO_ERR_OK;
  }

 private:
  static constexpr std::int64_t piece = 1 << 14;

  [[nodiscard]] code merge(const std::int32_t* from, std::int32_t* to, std::int64_t left, std::int64_t middle,
                           std::int64_t end) {
    std::int64_t right = middle;
    for (std::int64_t out = left; out < end;) {
      const std::int64_t stop = std::min(out + piece, end);
      const std::int64_t done = stop - out;
      for (; out < stop; ++out) {
        const bool takes_right = left == middle || (right < end && before_(from[right], from[left]));
        to[out] = takes_right ? from[right++] : from[left++];
      }
      TRY(poll_.add(cost_of_place * static_cast<double>(done)));
    }
    return KORVO_ERR_OK;
  }

  by_element<T> before_;
  checkpoint& poll_;
  scratch<std::int32_t> other_;
};

// Puts each place of a sorted list right: the middle one first, which parts the rest.
template <class T>
code select(std::int32_t* index, std::int64_t first, std::int64_t end, std::span<const std::int32_t> places,
            by_element<T> before, checkpoint& poll) {
  while (!places.empty()) {
    const std::size_t middle = places.size() / 2;
    const std::int64_t place = places[middle];
    if (first <= place && place < end) {
      std::nth_element(index + first, index + place, index + end, before);
      TRY(poll.add(cost_of_place * static_cast<double>(end - first)));
    }
    TRY(select(index, first, std::min(place, end), places.first(middle), before, poll));
    first = std::max(first, place + 1);
    places = places.subspan(middle + 1);
  }
  return KORVO_ERR_OK;
}

template <class M>
code sort_index(const M* in, const _s32_mat* positions, void* intrp_ptr, _s32_mat* index) {
  const std::int32_t n = in->nelem;
  const by_element<element<M>> before{in->data};
  checkpoint poll(intrp_ptr);
  if (!positions) {
    std::iota(index->data, index->data + n, 0);
    return merge_sort(before, poll).sort(index->data, n);
  }
  const auto outside = [=](std::int32_t place) { return place < 0 || place >= n; };
  if (std::any_of(positions->data, positions->data + positions->nelem, outside)) return KORVO_ERR_OUT_OF_BOUNDS;
  scratch<std::int32_t> places;
  TRY(places.make(positions->nelem));
  std::copy_n(positions->data, positions->nelem, places.data());
  std::sort(places.data(), places.data() + positions->nelem);
  std::iota(index->data, index->data + n, 0);
  return select(index->data, 0, n, {places.data(), static_cast<std::size_t>(positions->nelem)}, before, poll);
}

template <class M>
code sort(const M* in, void* intrp_ptr, M* out) {
  TRY(valid(in));
  TRY(valid(out));
  if (!same_shape(in, out)) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(in, out)) return KORVO_ERR_ILLEGAL_ADDRESS;
  temporary<_s32_mat> index;
  TRY(index.make(in->nrow, in->ncol));
  TRY(sort_index<M>(in, nullptr, intrp_ptr, &index));
  for (std::int32_t k = 0; k < in->nelem; ++k) out->data[k] = in->data[index.data[k]];
  return checkpoint(intrp_ptr).add(2.0 * in->nelem);
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code matdbl_sort_index_partial(const _dbl_mat* in, const _s32_mat* positions, void* intrp_ptr,
                               _s32_mat* index) {
  TRY(valid(in));
  TRY(valid(index));
  if (positions) TRY(valid(positions));
  if (!same_shape(in, index)) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(index, in) || (positions && shares_data(index, positions))) return KORVO_ERR_ILLEGAL_ADDRESS;
  return sort_index(in, positions, intrp_ptr, index);
}

code matuniv_sort(const _univ_mat* in, void* intrp_ptr, _univ_mat* out) {
  return dispatch_same(in, out, real_records{},
                       [=](const auto* from, auto* to) { return sort(from, intrp_ptr, to); });
}

}  // extern "C"

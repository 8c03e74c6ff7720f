// The Fourier engine: from digit-reversed to natural order, in place.
//
// With A the product of the square factors on either side and M that of the square-free ones between them, an
// index has the digits a, m, b, of sizes A, M, A. The passes leave (a, m, b) where its digits in reverse
// belong: a and b change places, each reversed, by swaps of pairs; and m is reversed by moving along cycles.
#include <algorithm>
#include <utility>

#include "signal/sig_tran.hpp"

namespace korvo {
namespace {

// Counts up in mixed radix and knows the number with its digits in reverse order.
class reversed_counter {
 public:
  reversed_counter(const std::int32_t* radices, std::int32_t count) : radices_(radices), count_(count) {
    for (std::int32_t i = 0, weight = 1; i < count; weight *= radices[i++]) weights_[i] = weight;
  }
  std::int32_t reversed() const { return reversed_; }
  void advance() {
    for (std::int32_t i = count_ - 1; i >= 0; --i) {
      reversed_ += weights_[i];
      if (++digits_[i] < radices_[i]) return;
      reversed_ -= weights_[i] * radices_[i];
      digits_[i] = 0;
    }
  }

 private:
  const std::int32_t* radices_;
  std::int32_t count_;
  std::int32_t weights_[fourier_factors::most] = {};
  std::int32_t digits_[fourier_factors::most] = {};
  std::int32_t reversed_ = 0;
};

// Elements (d, e) of one tile, whose rows are `pitch` apart, for elements (e, d) of another.
void swap_tiles(korvo_dcomplex* one, korvo_dcomplex* other, std::int64_t pitch, std::int32_t size) {
  for (std::int32_t d = 0; d < size; ++d)
    for (std::int32_t e = 0; e < size; ++e) std::swap(one[d * pitch + e], other[e * pitch + d]);
}
void transpose_tile(korvo_dcomplex* tile, std::int64_t pitch, std::int32_t size) {
  for (std::int32_t d = 0; d < size; ++d)
    for (std::int32_t e = d + 1; e < size; ++e) std::swap(tile[d * pitch + e], tile[e * pitch + d]);
}

constexpr double cost_of_step = 10.0;

}  // namespace

code fourier_engine::reorder(korvo_dcomplex* run) {
  if (factors_.squares > 0)
    for (std::int64_t m = 0; m < n_ / (outer_ * outer_); ++m) TRY(swap_square_factors(run + m * outer_));
  return factors_.groups > 1 ? move_along_cycles(run) : KORVO_ERR_OK;
}

// For one m. The first digit of a and the last of b are taken together, so that tiles of neighbours are
// swapped.
code fourier_engine::swap_square_factors(korvo_dcomplex* run) {
  const std::int32_t size = factors_.table[0];
  const std::int64_t tiles = outer_ / size;
  const std::int64_t row = n_ / outer_;
  const std::int64_t pitch = tiles * row;
  reversed_counter s(factors_.table + 1, factors_.squares - 1);
  for (std::int64_t i = 0; i < tiles; ++i, s.advance()) {
    TRY(cost_.add_steps(cost_of_step, std::int64_t{size} * size * (tiles - i - 1) + size * (size - 1) / 2));
    transpose_tile(run + i * row + s.reversed() * size, pitch, size);
    reversed_counter t = s;
    for (std::int64_t j = i + 1; j < tiles; ++j) {
      t.advance();
      korvo_dcomplex* const one = run + i * row + t.reversed() * size;
      korvo_dcomplex* const other = run + j * row + s.reversed() * size;
      if (size == 4)
        swap_tiles(one, other, pitch, 4);
      else
        swap_tiles(one, other, pitch, size);
    }
  }
  return KORVO_ERR_OK;
}

// sources_[m] is the group that comes to m; it is negative for all groups of a cycle but the first.
code fourier_engine::find_cycles() {
  const std::int32_t groups = factors_.groups;
  if (groups == 1) return KORVO_ERR_OK;
  if (groups >= factors_.order_entries) return KORVO_ERR_ILLEGAL_SIZE;
  reversed_counter m(factors_.table + factors_.squares, factors_.count - 2 * factors_.squares);
  for (std::int32_t i = 0; i < groups; ++i, m.advance()) sources_[m.reversed()] = i;
  for (std::int32_t first = 1; first < groups; ++first) {
    if (sources_[first] == first) sources_[first] = -first;
    if (sources_[first] < 0) continue;
    for (std::int32_t k = sources_[first]; k != first;) k = std::exchange(sources_[k], -sources_[k]);
  }
  return KORVO_ERR_OK;
}

code fourier_engine::move_along_cycles(korvo_dcomplex* run) {
  for (std::int64_t a = 0; a < outer_; ++a)
    for (std::int32_t first = 1; first < factors_.groups; ++first) {
      if (sources_[first] < 0) continue;
      for (std::int64_t b = 0; b < outer_; b += factors_.largest_plus_1)
        TRY(move_along_cycle(run + a * (n_ / outer_) + b, first,
                             std::min<std::int64_t>(factors_.largest_plus_1, outer_ - b)));
    }
  return KORVO_ERR_OK;
}

// `width` elements of each group; those of the first are held until the last step.
code fourier_engine::move_along_cycle(korvo_dcomplex* groups, std::int32_t first, std::int64_t width) {
  for (std::int64_t i = 0; i < width; ++i) {
    sums_[i] = groups[first * outer_ + i].re;
    differences_[i] = groups[first * outer_ + i].im;
  }
  std::int32_t to = first;
  for (std::int32_t from = sources_[first]; from != first; from = -sources_[to]) {
    TRY(cost_.add(cost_of_step));
    std::copy_n(groups + from * outer_, width, groups + to * outer_);
    to = from;
  }
  TRY(cost_.add(cost_of_step));
  for (std::int64_t i = 0; i < width; ++i) groups[to * outer_ + i] = {sums_[i], differences_[i]};
  return KORVO_ERR_OK;
}

}  // namespace korvo

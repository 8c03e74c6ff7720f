// The Fourier engine: the order of its factors.
#include <algorithm>

#include "signal/sig_tran.hpp"

namespace korvo {
namespace {

constexpr std::int32_t next_trial(std::int32_t j) { return j == 2 ? 3 : j + 2; }

// Takes a divisor out of rest as often as it goes, appending `factor` each time.
void extract(std::int64_t divisor, std::int32_t factor, std::int32_t* rest, fourier_factors* f) {
  for (; *rest % divisor == 0; *rest = static_cast<std::int32_t>(*rest / divisor))
    f->table[f->count++] = factor;
}

// Squares of trial values below the rest: a rest that is just such a square is left as two equal factors.
void extract_squares(std::int32_t* rest, fourier_factors* f) {
  std::int32_t j = 2;
  do {
    extract(std::int64_t{j} * j, j, rest, f);
    f->cost += 100.0;
    j = next_trial(j);
  } while (std::int64_t{j} * j < *rest);
}

void extract_square_free(std::int32_t* rest, fourier_factors* f) {
  for (std::int32_t j = 2; *rest > 1; j = next_trial(j)) {
    extract(j, j, rest, f);
    f->cost += 50.0;
  }
}

}  // namespace

void localfn_sig_fft_factorize(std::int32_t n, fourier_factors* f) {
  *f = {};
  std::int32_t rest = n;
  extract(16, 4, &rest, f);
  const std::int32_t sixteens = f->count;
  f->cost += 50.0 * sixteens;
  extract_squares(&rest, f);
  f->squares = f->count;
  extract_square_free(&rest, f);

  const std::int32_t* const table = f->table;
  const std::int32_t last_square = f->squares > 0 ? table[f->squares - 1] : 0;
  f->largest_plus_1 = 1 + std::max({last_square, table[f->count - 1], table[0]});
  f->groups = 1;
  if (f->count - f->squares > 1)
    for (std::int32_t i = f->squares; i < f->count; ++i) f->groups *= table[i];

  std::reverse_copy(table, table + f->squares, f->table + f->count);
  f->count += f->squares;
  f->cost += 100.0;
  const std::int32_t swaps = f->count + 4 * sixteens;
  f->order_entries = swaps < f->groups ? f->groups + 1 : swaps + 2;
}

}  // namespace korvo

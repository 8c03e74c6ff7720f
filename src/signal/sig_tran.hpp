// What the files of the Fourier and cosine transforms tell each other.
#pragma once

#include <cstdint>

#include "core/checkpoint.hpp"
#include "core/code.hpp"
#include "core/temporary.hpp"

namespace korvo {

// The factors of a length in the order of the passes: square factors, square-free ones ascending, the square
// factors mirrored. The order is what lets the result be put right in place.
struct fourier_factors {
  static constexpr std::int32_t most = 21;  // enough for every positive 32-bit length
  std::int32_t table[most];
  std::int32_t count;           // of the table
  std::int32_t squares;         // how many lead it, and end it in reverse
  std::int32_t groups;          // the product of the square-free ones if there are several, else 1
  std::int32_t largest_plus_1;  // room for the work on one general butterfly
  std::int32_t order_entries;   // room for the permutation of the groups
  double cost;
};

void localfn_sig_fft_factorize(std::int32_t n, fourier_factors* factors);

// The engine: an in-place mixed-radix transform of runs of n elements. One routine in three files: set-up
// (sig_tran_engine.cpp), passes (sig_tran_passes.cpp), permutation (sig_tran_order.cpp).
class fourier_engine {
 public:
  fourier_engine(std::int32_t n, std::int32_t direction, void* intrp_ptr);

  // The work arrays, which depend on the factors and not on n.
  [[nodiscard]] code make();
  [[nodiscard]] code transform(korvo_dcomplex* data, std::int64_t total);

 private:
  // One pass: spans of `factor` parts each.
  struct pass {
    std::int32_t factor;
    std::int64_t part;
    bool is_last;
    long double cd, sd;  // the rotation step is (1 - cd, sd)
    std::int64_t span() const { return factor * part; }
  };

  [[nodiscard]] code do_passes(korvo_dcomplex* data, std::int64_t spans, std::int64_t span, std::int32_t first);
  [[nodiscard]] code do_pass(const pass& p, korvo_dcomplex* data, std::int64_t spans);
  pass pass_of(std::int32_t index, std::int64_t span) const;
  [[nodiscard]] code do_factor_2(const pass& p, korvo_dcomplex* data, std::int64_t spans);
  [[nodiscard]] code do_factor_3(const pass& p, korvo_dcomplex* data, std::int64_t spans);
  [[nodiscard]] code do_factor_4(const pass& p, korvo_dcomplex* data, std::int64_t spans);
  [[nodiscard]] code do_factor_5(const pass& p, korvo_dcomplex* data, std::int64_t spans);
  [[nodiscard]] code do_general_factor(const pass& p, korvo_dcomplex* data, std::int64_t spans);
  [[nodiscard]] code general_butterfly(const pass& p, korvo_dcomplex* x);
  [[nodiscard]] code rotate(const pass& p, korvo_dcomplex* data, std::int64_t spans);
  void make_table(std::int32_t factor);

  [[nodiscard]] code find_cycles();
  [[nodiscard]] code reorder(korvo_dcomplex* run);
  [[nodiscard]] code swap_square_factors(korvo_dcomplex* run);
  [[nodiscard]] code move_along_cycles(korvo_dcomplex* run);
  [[nodiscard]] code move_along_cycle(korvo_dcomplex* groups, std::int32_t first, std::int64_t width);

  static constexpr std::int64_t in_cache = 1 << 15;  // elements that the next passes find in the cache

  std::int32_t n_;
  std::int32_t direction_;
  checkpoint cost_;
  fourier_factors factors_;
  std::int64_t outer_ = 1;                    // the product of the leading square factors
  std::int32_t table_factor_ = 0;             // what cosines_ and sines_ are for
  double cos_72_, sin_72_, sin_60_, two_pi_;  // the sines and the angle in the direction's sense
  scratch<double> sums_, differences_, cosines_, sines_;
  scratch<std::int32_t> sources_;
};

// Transforms each run of n elements of data in place: forward without scaling for direction -1, inverse with
// 1 / n for +1. Kept: a host that stops it gets KORVO_ERR_OK, and data that are transformed in part.
[[nodiscard]] code localfn_sig_fft_mixed_radix(korvo_dcomplex* data, std::int64_t total, std::int32_t n,
                                               std::int32_t direction, void* intrp_ptr);

// DCT-II and its inverse along the columns, in place.
[[nodiscard]] code localfn_sig_dct_II_columns(_dbl_mat* mat, void* intrp_ptr);
[[nodiscard]] code localfn_sig_dct_II_inverse_columns(_dbl_mat* mat, void* intrp_ptr);

}  // namespace korvo

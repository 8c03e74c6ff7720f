// The smoothing kernel of the Choi-Williams distribution.
#include <cmath>
#include <cstdint>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/temporary.hpp"
#include "korvos/signal/sig_tfrq.h"
#include "signal/sig_tfrq.hpp"

namespace korvo {
namespace {

code choi_williams_kernel(std::int32_t num_lags, std::int32_t num_samples, double sigma, void* intrp_ptr,
                          _dbl_mat* kernel) {
  constexpr double reciprocal_of_4_pi = 0.07957747154594767;
  if (!kernel) return KORVO_ERR_NULL_POINTER;
  if (num_lags < 1 || num_samples < 1 || !(sigma > 0.0)) return KORVO_ERR_ILLEGAL_VALUE;
  kernel->data = nullptr;  // a failure from here on leaves no matrix
  temporary<_dbl_mat> made;
  TRY(made.make(choi_williams_rows(num_lags, num_samples, sigma), num_lags));
  const double d = std::sqrt(sigma * reciprocal_of_4_pi);
  const double e = sigma * -0.25;
  checkpoint cost(intrp_ptr, 5.0 * made.nrow);
  for (std::int32_t i = 0; i < made.nrow; ++i) {
    double* const row = made.data + std::int64_t{i} * num_lags;
    const double square = static_cast<double>(i) * i;
    row[0] = i == 0 ? 1.0 : 0.0;
    for (std::int32_t j = 1; j < num_lags; ++j)
      row[j] = d / j * std::exp(square * e / (static_cast<double>(j) * j));
    TRY(cost.add(100.0 * made.nrow));
  }
  *kernel = made;
  made.data = nullptr;  // the caller's now
  return KORVO_ERR_OK;
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code sigdbl_kernel_choi_williams(int32_t num_lags, int32_t num_samples, double sigma, void* intrp_ptr,
                                 _dbl_mat* kernel) {
  return choi_williams_kernel(num_lags, num_samples, sigma, intrp_ptr, kernel);
}

code siguniv_kernel_choi_williams(int32_t num_lags, int32_t num_samples, double sigma, void* intrp_ptr,
                                  _univ_mat* kernel, _korvo_type type) {
  if (!kernel) return KORVO_ERR_NULL_POINTER;
  kernel->type = type;  // kept: stored before it is looked at
  return dispatch(type, records<_dbl_mat>{}, [&]<class M> {
    M typed = as<M>(*kernel);
    const code result = choi_williams_kernel(num_lags, num_samples, sigma, intrp_ptr, &typed);
    give_back(typed, kernel);
    return result;
  });
}

}  // extern "C"

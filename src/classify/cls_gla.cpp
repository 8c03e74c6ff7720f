// Design of codebooks from training vectors: refining a given one, and growing one by splitting.
#include "korvos/classify/cls_gla.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>

#include "classify/cls_utnn.hpp"
#include "core/dispatch.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"
#include "korvos/core/ut_rand.h"
#include "korvos/matrix/mat_assn.h"
#include "matrix/operand.hpp"

namespace korvo {
namespace {

struct settings {
  double threshold;
  double additive_scale;
  double multiplicative_scale;
  std::int32_t mode;
  void* intrp_ptr;
  void* rand_ptr;
};

// What is reported beside the codebook; each may be null.
struct report {
  double* distortion;
  _univ_mat* populations;
  _univ_mat* cell_distortions;
};

code check_column(const _univ_mat* mat, _korvo_type type, std::int32_t rows) {
  if (!mat) return KORVO_ERR_OK;
  TRY(matuniv_validate(mat));
  if (mat->type != type) return KORVO_ERR_ILLEGAL_TYPE;
  return mat->nelem == rows && mat->ncol == 1 ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_SIZE;
}

code check(const _univ_mat* training, const _univ_mat* initial, const settings& set, const _univ_mat* codebook,
           const report& to) {
  for (const _univ_mat* mat : {training, initial, codebook}) TRY(matuniv_validate(mat));
  if (initial->type != codebook->type || codebook->type != KORVO_DOUBLE || training->type == KORVO_DCOMPLEX)
    return KORVO_ERR_ILLEGAL_TYPE;
  if (!same_shape(initial, codebook) || training->ncol != codebook->ncol) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(training, codebook)) return KORVO_ERR_ILLEGAL_ADDRESS;
  for (const double positive : {set.threshold, set.additive_scale, set.multiplicative_scale})
    if (!(positive > 0.0)) return KORVO_ERR_ILLEGAL_VALUE;
  TRY(check_column(to.populations, KORVO_SINT32, codebook->nrow));
  TRY(check_column(to.cell_distortions, KORVO_DOUBLE, codebook->nrow));
  if (set.mode < full_search || set.mode > table_search) return KORVO_ERR_ILLEGAL_VALUE;
  if (shares_data_with_any(to.populations, {training, initial, codebook}) ||
      shares_data_with_any(to.cell_distortions, {training, initial, codebook, to.populations}))
    return KORVO_ERR_ILLEGAL_ADDRESS;
  return KORVO_ERR_OK;
}

// One design. The number of codewords at any time is the number of rows of the codebook.
class quantiser_design {
 public:
  quantiser_design(const settings& set, _univ_mat* codebook) : set_(set), codebook_(codebook) {}

  // Brings the training set, and makes room for as many codewords as the codebook has now: the centroids
  // need what the codebook may grow to, so that its size in bytes has been tested here.
  [[nodiscard]] code make(const _univ_mat* training);

  // The iteration at the present number of codewords; and with more and more of them, up to `size`.
  [[nodiscard]] code refine();
  [[nodiscard]] code grow(std::int32_t size);

  // Drops the codewords of empty cells and writes the report.
  [[nodiscard]] code finish(const report& to);

 private:
  double* codeword(std::int64_t row) const {
    return static_cast<double*>(codebook_->data) + row * codebook_->ncol;
  }
  [[nodiscard]] code search();
  [[nodiscard]] code split(std::int32_t first, std::int32_t attempt) const;
  void gather_occupied() const;
  void compact() const;

  settings set_;
  _univ_mat* codebook_;
  operand training_;
  nearest_search search_;
  scratch<std::int32_t> populations_;
  scratch<double> distortions_;
  scratch<double> centroids_;
  double distortion_ = beyond_reach;
  std::int32_t empty_ = 0;
};

code quantiser_design::make(const _univ_mat* training) {
  TRY(populations_.make(codebook_->nrow));
  TRY(distortions_.make(codebook_->nrow));
  TRY(centroids_.make(codebook_->nelem));
  TRY(search_.make(set_.mode, codebook_->nrow, codebook_->ncol));
  return training_.bring(*training, KORVO_DOUBLE, set_.intrp_ptr);
}

code quantiser_design::search() {
  TRY(search_.pass(training_.typed<_dbl_mat>(), as<_dbl_mat>(*codebook_), set_.intrp_ptr,
                   {populations_.data(), distortions_.data(), centroids_.data(), nullptr}, &distortion_));
  const std::int32_t* const populations = populations_.data();
  empty_ = static_cast<std::int32_t>(std::count(populations, populations + codebook_->nrow, 0));
  return KORVO_ERR_OK;
}

// Moves an element away from 0.
double perturbed(double x, double u, double additive, double multiplicative) {
  if (x == 0.0) return u * additive;
  if (std::fabs(x) >= 0.9 * additive) return x * (1.0 + u * multiplicative);
  return x >= 0.0 ? x + u * additive : x - u * additive;
}

// The rows from `first` on become perturbed copies of the first ones; a row that is one may be copied again.
code quantiser_design::split(std::int32_t first, std::int32_t attempt) const {
  const double power = std::int32_t{1} << attempt;
  const double additive = set_.additive_scale / power;
  const double multiplicative = set_.multiplicative_scale / power;
  const double* from = codeword(0);
  double* const end = codeword(codebook_->nrow);
  for (double* to = codeword(first); to < end; ++to, ++from) {
    double u = 0.0;
    TRY(korvo_rand_uniform(set_.rand_ptr, &u));
    *to = perturbed(*from, u, additive, multiplicative);
  }
  return KORVO_ERR_OK;
}

// The first rows become the centroids of the occupied cells in descending order of distortion, of equal ones
// the later first.
void quantiser_design::gather_occupied() const {
  for (std::int64_t q = 0; q < codebook_->nrow - empty_; ++q) {
    std::int64_t worst = 0;
    double highest = 0.0;
    for (std::int64_t k = 0; k < codebook_->nrow; ++k)
      if (populations_[k] > 0 && distortions_[k] >= highest) {
        worst = k;
        highest = distortions_[k];
      }
    std::copy_n(centroids_.data() + worst * codebook_->ncol, codebook_->ncol, codeword(q));
    populations_[worst] = 0;
  }
}

code quantiser_design::refine() {
  constexpr std::int32_t retry_limit = 10;
  std::int32_t retry = 0;
  for (double previous = beyond_reach;; previous = distortion_) {
    TRY(search());
    if (previous < distortion_) return KORVO_ERR_NOT_CONVERGING;
    if (distortion_ == 0.0) return KORVO_ERR_OK;
    if (empty_ == 0) {
      // kept: the codebook stays the one that was searched, and the last centroids are not copied in
      if ((previous - distortion_) / distortion_ < set_.threshold) return KORVO_ERR_OK;
      std::copy_n(centroids_.data(), codebook_->nelem, codeword(0));
      retry = 0;
    } else {
      if (retry == retry_limit) return KORVO_ERR_OK;
      gather_occupied();
      TRY(split(codebook_->nrow - empty_, retry++));
    }
  }
}

code quantiser_design::grow(std::int32_t size) {
  TRY(matuniv_realloc(codebook_, 1, codebook_->ncol));
  std::fill_n(codeword(0), codebook_->ncol, 0.0);
  for (std::int32_t m = 1; m < size; m = codebook_->nrow) {
    TRY(refine());
    if (empty_ > 0 || distortion_ == 0.0) return KORVO_ERR_OK;
    TRY(matuniv_realloc(codebook_, m <= size / 2 ? 2 * m : size, codebook_->ncol));
    TRY(split(m, 0));
  }
  return refine();
}

// Occupied cells move forward in their order.
void quantiser_design::compact() const {
  std::int64_t to = 0;
  for (std::int64_t k = 0; k < codebook_->nrow; ++k) {
    if (populations_[k] == 0) continue;
    std::copy_n(codeword(k), codebook_->ncol, codeword(to));
    populations_[to] = populations_[k];
    distortions_[to++] = distortions_[k];
  }
}

template <class T>
code write_column(const T* from, std::int32_t rows, _univ_mat* to) {
  if (!to) return KORVO_ERR_OK;
  if (to->nrow != rows) TRY(matuniv_realloc(to, rows, 1));
  std::copy_n(from, rows, static_cast<T*>(to->data));
  return KORVO_ERR_OK;
}

code quantiser_design::finish(const report& to) {
  if (empty_ > 0) {
    compact();
    TRY(matuniv_realloc(codebook_, codebook_->nrow - empty_, codebook_->ncol));
  }
  TRY(write_column(populations_.data(), codebook_->nrow, to.populations));
  TRY(write_column(distortions_.data(), codebook_->nrow, to.cell_distortions));
  if (to.distortion) *to.distortion = distortion_;
  return KORVO_ERR_OK;
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code clsuniv_vector_quantizer_design_gla(const _univ_mat* training, const _univ_mat* initial, double threshold,
                                         double additive_scale, double multiplicative_scale,
                                         int32_t search_mode, void* intrp_ptr, void* rand_ptr,
                                         _univ_mat* codebook, double* distortion, _univ_mat* populations,
                                         _univ_mat* cell_distortions) {
  const settings set = {threshold, additive_scale, multiplicative_scale, search_mode, intrp_ptr, rand_ptr};
  const report to = {distortion, populations, cell_distortions};
  TRY(check(training, initial, set, codebook, to));
  quantiser_design design(set, codebook);
  TRY(design.make(training));
  TRY(matuniv_assign(initial, intrp_ptr, codebook));
  TRY(design.refine());
  return design.finish(to);
}

code clsuniv_vector_quantizer_design_lbg(const _univ_mat* training, double threshold, double additive_scale,
                                         double multiplicative_scale, int32_t search_mode, void* intrp_ptr,
                                         void* rand_ptr, _univ_mat* codebook, double* distortion,
                                         _univ_mat* populations, _univ_mat* cell_distortions) {
  const settings set = {threshold, additive_scale, multiplicative_scale, search_mode, intrp_ptr, rand_ptr};
  const report to = {distortion, populations, cell_distortions};
  TRY(check(training, codebook, set, codebook, to));
  quantiser_design design(set, codebook);
  TRY(design.make(training));
  TRY(design.grow(codebook->nrow));
  return design.finish(to);
}

}  // extern "C"

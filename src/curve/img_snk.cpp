// Snakes: the energy of an image, and contours that descend it.
#include "korvos/curve/img_snk.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "core/checkpoint.hpp"
#include "core/temporary.hpp"
#include "core/universal.hpp"
#include "core/valid.hpp"
#include "curve/polygon.hpp"
#include "image/img_intp.hpp"
#include "korvos/curve/pgn_smpl.h"
#include "korvos/segment/img_cany.h"
#include "korvos/segment/img_edge.h"

namespace korvo {
namespace {

constexpr snake_params defaults = {IMG_CONTOUR_CLOSED, 1.0, 1.0, 1.0, 0.5, 50, 0.05, 0.05};

struct images {
  _dbl_mat energy, row_gradient, column_gradient;
};

// The symmetric matrix of five diagonals: the main one and two beside it, then the factors L D L' in its place.
class band {
 public:
  [[nodiscard]] code make(std::int32_t n) {
    n_ = n;
    return rows_.make(n);
  }

  void build(const snake_params& with) {
    const double inverse_step = 1.0 / with.step;
    for (std::int32_t i = 0; i < n_; ++i)
      rows_[i] = {6.0 * with.beta + 2.0 * with.alpha + inverse_step, -with.alpha - 4.0 * with.beta, with.beta};
    if (with.contour_type != IMG_CONTOUR_OPEN) return;
    rows_[0].d = rows_[n_ - 1].d = 2.0 * with.beta + inverse_step + with.alpha;
    rows_[0].l = rows_[n_ - 2].l = -with.alpha - 3.0 * with.beta;
  }

  void factor() {
    const auto divided = [](double x, double pivot) { return pivot == 0.0 ? x : x / pivot; };
    const auto d = [&](std::int32_t i) -> double& { return rows_[i].d; };
    const auto l = [&](std::int32_t i) -> double& { return rows_[i].l; };
    const auto m = [&](std::int32_t i) -> double& { return rows_[i].m; };
    l(0) = divided(l(0), d(0));
    d(1) -= l(0) * l(0) * d(0);
    for (std::int32_t i = 0; i < n_ - 2; ++i) {
      m(i) = divided(m(i), d(i));
      l(i + 1) = divided(l(i + 1) - m(i) * l(i) * d(i), d(i + 1));
      d(i + 2) = d(i + 2) - m(i) * m(i) * d(i) - l(i + 1) * l(i + 1) * d(i + 1);
    }
  }

  // Both coordinates at once, in place.
  void solve(point* v) const {
    subtract(v[1], rows_[0].l, v[0]);
    for (std::int32_t i = 2; i < n_; ++i) {
      subtract(v[i], rows_[i - 1].l, v[i - 1]);
      subtract(v[i], rows_[i - 2].m, v[i - 2]);
    }
    for (std::int32_t i = 0; i < n_; ++i) v[i] = {v[i].x / rows_[i].d, v[i].y / rows_[i].d};
    subtract(v[n_ - 2], rows_[n_ - 2].l, v[n_ - 1]);
    for (std::int32_t i = n_ - 3; i >= 0; --i) {
      subtract(v[i], rows_[i].l, v[i + 1]);
      subtract(v[i], rows_[i].m, v[i + 2]);
    }
  }

  static void subtract(point& from, double factor, const point& other) {
    from.x -= factor * other.x;
    from.y -= factor * other.y;
  }

 private:
  struct row {
    double d, l, m;
  };
  std::int32_t n_ = 0;
  scratch<row> rows_;
};

class snake {
 public:
  snake(const images& on, const snake_params& with, bool is_automatic, const _dbl_mat& contour, void* intrp_ptr)
      : on_(on),
        with_(with),
        is_automatic_(is_automatic),
        n_(contour.nrow),
        contour_(contour),
        poll_(intrp_ptr) {}

  // The results say how far it came even if it does not converge.
  [[nodiscard]] code run(snake_params* results) {
    TRY(matrix_.make(n_));
    TRY(candidate_.make(n_));
    TRY(contour_now_.make(n_));
    for (std::int32_t i = 0; i < n_; ++i) contour_now_[i] = vertex(contour_, i);
    TRY(measure(contour_now_.data()));
    TRY(prepare(is_automatic_));
    std::int32_t done = 0;
    const code result = iterate(&done);
    for (std::int32_t i = 0; i < n_; ++i) set_vertex(contour_, i, contour_now_[i]);
    if (result != KORVO_ERR_OK && result != KORVO_ERR_NOT_CONVERGING) return result;
    results->alpha = with_.alpha;
    results->beta = with_.beta;
    results->gamma = with_.gamma;
    results->step = with_.step;
    results->max_iterations = done;
    return result;
  }

 private:
  [[nodiscard]] code iterate(std::int32_t* done) {
    constexpr double farthest_mean = 1.0;
    constexpr std::int32_t between_weights = 5;
    double moved = 1.0;
    while (with_.stop_fraction < moved && *done < with_.max_iterations) {
      double mean = 0.0;
      TRY(find_candidate());
      TRY(compare(&mean, &moved));
      TRY(measure(candidate_.data()));
      if (std::isnan(mean)) return KORVO_ERR_NOT_CONVERGING;  // halving the step would go on for ever
      if (mean <= farthest_mean) {
        std::copy_n(candidate_.data(), n_, contour_now_.data());
        ++*done;
        if (is_automatic_ && *done % between_weights == 0) TRY(prepare(true));
      } else {
        with_.step /= 2.0;
        TRY(prepare(false));
      }
    }
    return with_.stop_fraction < moved ? KORVO_ERR_NOT_CONVERGING : KORVO_ERR_OK;
  }

  // Weights from the last sums, if they are to be new, and the factors of the matrix.
  [[nodiscard]] code prepare(bool is_weighed) {
    if (is_weighed) {
      with_.alpha = n_ / (2.0 * elastic_);
      with_.beta = n_ / (2.0 * bending_);
      with_.gamma = n_ / (2.0 * energy_);
    }
    matrix_.build(with_);
    TRY(poll_.add(6.0 * n_));
    matrix_.factor();
    return poll_.add(64.0 * n_);
  }

  // The neighbours of a vertex; the ends of an open contour stand in for those they lack.
  [[nodiscard]] point before(const point* v, std::int32_t i) const {
    return i > 0 ? v[i - 1] : is_closed() ? v[n_ - 1] : v[0];
  }
  [[nodiscard]] point after(const point* v, std::int32_t i) const {
    return i + 1 < n_ ? v[i + 1] : is_closed() ? v[0] : v[i];
  }
  [[nodiscard]] bool is_closed() const { return with_.contour_type == IMG_CONTOUR_CLOSED; }

  [[nodiscard]] code measure(const point* v) {
    energy_ = elastic_ = bending_ = 0.0;
    for (std::int32_t i = 0; i < n_; ++i) {
      const point here = v[i];
      const point prev = before(v, i);
      const point next = after(v, i);
      energy_ += corners(here.y, here.x, on_.energy.nrow, on_.energy.ncol).of(on_.energy.data);
      elastic_ += 0.5 * distance(prev, here);
      bending_ += 0.5 * length(prev.x - 2.0 * here.x + next.x, prev.y - 2.0 * here.y + next.y);
    }
    return poll_.add(48.0 * n_);
  }

  [[nodiscard]] code find_candidate() {
    const point* const v = contour_now_.data();
    point* const right = candidate_.data();
    for (std::int32_t i = 0; i < n_; ++i) {
      const corners at(v[i].y, v[i].x, on_.energy.nrow, on_.energy.ncol);
      right[i] = {v[i].x / with_.step - with_.gamma * at.of(on_.column_gradient.data),
                  v[i].y / with_.step - with_.gamma * at.of(on_.row_gradient.data)};
    }
    TRY(poll_.add(45.0 * n_));
    if (is_closed()) {  // the corners of the cyclic matrix, which the band lacks
      const double p = -with_.alpha - 4.0 * with_.beta;
      band::subtract(right[0], with_.beta, v[n_ - 2]);
      band::subtract(right[0], p, v[n_ - 1]);
      band::subtract(right[1], with_.beta, v[n_ - 1]);
      band::subtract(right[n_ - 1], with_.beta, v[1]);
      band::subtract(right[n_ - 1], p, v[0]);
      band::subtract(right[n_ - 2], with_.beta, v[0]);
    }
    matrix_.solve(right);
    return poll_.add(45.0 * 2.0 * n_);
  }

  // The mean distance between the contour and its candidate, and the fraction of vertices that moved.
  [[nodiscard]] code compare(double* mean, double* moved) {
    double sum = 0.0;
    std::int32_t count = 0;
    for (std::int32_t i = 0; i < n_; ++i) {
      const double way = distance(contour_now_[i], candidate_[i]);
      sum += way;
      count += way > with_.move_threshold ? 1 : 0;
    }
    *mean = sum / n_;
    *moved = static_cast<double>(count) / n_;
    return poll_.add(16.0 * n_);
  }

  const images& on_;
  snake_params with_;
  bool is_automatic_;
  std::int32_t n_;
  _dbl_mat contour_;
  checkpoint poll_;
  band matrix_;
  scratch<point> candidate_, contour_now_;
  double energy_ = 0.0, elastic_ = 0.0, bending_ = 0.0;
};

// Written so that NaN fails.
code check_params(const snake_params& with, bool is_automatic) {
  const bool weighs = with.alpha >= 0.0 && with.beta >= 0.0 && with.gamma >= 0.0;
  const bool goes_on =
      with.step > 0.0 && with.max_iterations >= 1 && with.move_threshold >= 0.0 && with.stop_fraction >= 0.0;
  const bool has_type = with.contour_type == IMG_CONTOUR_CLOSED || with.contour_type == IMG_CONTOUR_OPEN;
  return (weighs || is_automatic) && goes_on && has_type ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_VALUE;
}

code minimize(const _univ_mat* energy, const _univ_mat* row_gradient, const _univ_mat* column_gradient,
              const _univ_mat* initial, bool is_automatic, const snake_params* params, void* intrp_ptr,
              snake_params* results, _univ_mat* out) {
  const _univ_mat* const all[] = {energy, row_gradient, column_gradient, initial, out};
  for (const _univ_mat* mat : all) TRY(matuniv_validate(mat));
  if (!results) return KORVO_ERR_NULL_POINTER;
  const snake_params with = params ? *params : defaults;
  TRY(check_params(with, is_automatic));
  for (const _univ_mat* mat : all)
    if (mat->type != KORVO_DOUBLE) return KORVO_ERR_ILLEGAL_TYPE;
  for (const _univ_mat* contour : {initial, const_cast<const _univ_mat*>(out)})
    if (contour->ncol != 2 || contour->nrow < 3) return KORVO_ERR_ILLEGAL_SIZE;
  if (!same_shape(energy, row_gradient, column_gradient)) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data_with_any<_univ_mat>(out, {energy, row_gradient, column_gradient, initial}))
    return KORVO_ERR_ILLEGAL_ADDRESS;
  const bool is_closed = with.contour_type == IMG_CONTOUR_CLOSED;
  TRY(pgnuniv_resample_linear(initial, is_closed ? 1 : 0, intrp_ptr, out));
  const images on = {as<_dbl_mat>(*energy), as<_dbl_mat>(*row_gradient), as<_dbl_mat>(*column_gradient)};
  return snake(on, with, is_automatic, as<_dbl_mat>(*out), intrp_ptr).run(results);
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code imguniv_snake_edge_energy(const _univ_mat* image, double sigma, void* intrp_ptr, _univ_mat* out) {
  if (!image || !out) return KORVO_ERR_NULL_POINTER;
  if (out->type != KORVO_DOUBLE || image->type == KORVO_DCOMPLEX) return KORVO_ERR_ILLEGAL_TYPE;
  TRY(matuniv_validate(image));
  TRY(matuniv_validate(out));
  if (!same_shape(image, out)) return KORVO_ERR_ILLEGAL_SIZE;
  universal_temporary<_dbl_mat> rows, columns;
  TRY(rows.make_like(image));
  TRY(columns.make_like(image));
  TRY(imguniv_filter_derivative_of_gaussian(image, sigma, intrp_ptr, &rows, &columns));
  auto* const energy = static_cast<double*>(out->data);
  for (std::int64_t i = 0; i < out->nelem; ++i)
    energy[i] = 1.0 / (length(columns.typed().data[i], rows.typed().data[i]) + 1.0);
  return checkpoint(intrp_ptr).add(8.0 * out->nelem);
}

code imguniv_snake(const _univ_mat* image, const _univ_mat* initial, double sigma, uint8_t automatic,
                   const snake_params* params, void* intrp_ptr, snake_params* results, _univ_mat* out) {
  if (!image || !initial || !results || !out) return KORVO_ERR_NULL_POINTER;
  TRY(matuniv_validate(image));
  universal_temporary<_dbl_mat> energy, rows, columns;
  TRY(energy.make_like(image));
  TRY(imguniv_snake_edge_energy(image, sigma, intrp_ptr, &energy));
  TRY(rows.make_like(image));
  TRY(columns.make_like(image));
  TRY(imguniv_gradient_sobel(&energy, intrp_ptr, &rows, &columns));
  return minimize(&energy, &rows, &columns, initial, automatic != 0, params, intrp_ptr, results, out);
}

code imguniv_snake_minimize(const _univ_mat* energy, const _univ_mat* row_gradient,
                            const _univ_mat* column_gradient, const _univ_mat* initial, uint8_t automatic,
                            const snake_params* params, void* intrp_ptr, snake_params* results,
                            _univ_mat* out) {
  return minimize(energy, row_gradient, column_gradient, initial, automatic != 0, params, intrp_ptr, results,
                  out);
}

}  // extern "C"

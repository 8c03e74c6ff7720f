// Region growing: what is written at the end.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <type_traits>

#include "core/dispatch.hpp"
#include "korvos/matrix/mat_sort.h"
#include "segment/img_erg.hpp"

namespace korvo {
namespace {

// The blocks of the image: where each lies, and the region that it belongs to.
struct block_map {
  const growth_plan& plan;
  const std::int32_t* region_of_block;

  [[nodiscard]] std::int32_t region_at(std::int64_t block_row, std::int64_t block_col) const {
    return region_of_block[block_row * plan.block_cols() + block_col];
  }

  // Calls visit(row, first column, region) for each row of pixels of each block, in the order of the pixels.
  template <class Visit>
  void each_run(Visit visit) const {
    for (std::int64_t row = 0; row < plan.rows(); ++row)
      for (std::int64_t j = 0; j < plan.block_cols(); ++j)
        visit(row, j * plan.grid_cols, region_at(row / plan.grid_rows, j));
  }
};

// The remainder modulo 2 to 32 of a whole number; 0 where there is none.
std::uint32_t wrapped(double whole) {
  constexpr double modulus = 4294967296.0;
  if (!std::isfinite(whole)) return 0;
  return static_cast<std::uint32_t>(static_cast<std::int64_t>(std::fmod(whole, modulus)));
}

// kept: what does not fit an integer type wraps
template <class T>
T as_pixel(double value) {
  if constexpr (std::is_floating_point_v<T>)
    return static_cast<T>(value);
  else
    return static_cast<T>(wrapped(std::floor(value + 0.5)));
}

template <class M>
void approximate(const region_fits& fits, const block_map& map, double* terms, const _mat_set* out) {
  const std::int64_t m = fits.size();
  map.each_run([&](std::int64_t row, std::int64_t col, std::int32_t region) {
    for (const std::int64_t end = col + map.plan.grid_cols; col < end; ++col) {
      fits.basis().terms_at(row, col, terms);
      for (std::int64_t b = 0; b < out->nmat; ++b) {
        const double* const coefficients = fits.coefficients(region) + b * m;
        double value = 0.0;
        for (std::int64_t i = 0; i < m; ++i) value += coefficients[i] * terms[i];
        static_cast<element<M>*>(out->mats[b].data)[row * map.plan.cols() + col] = as_pixel<element<M>>(value);
      }
    }
  });
}

// Marks the pixels below and right of boundaries, to the pixel of the corner where a segment ends.
void mark_boundaries(const block_map& map, const _univ_mat* out) {
  const growth_plan& plan = map.plan;
  const std::int64_t cols = plan.cols();
  auto* const marks = static_cast<std::uint8_t*>(out->data);
  std::fill_n(marks, out->nelem, std::uint8_t{0});
  for (std::int64_t i = 0; i < plan.block_rows(); ++i)
    for (std::int64_t j = 0; j < plan.block_cols(); ++j) {
      const std::int64_t top = i * plan.grid_rows;
      const std::int64_t left = j * plan.grid_cols;
      if (i > 0 && map.region_at(i - 1, j) != map.region_at(i, j))
        for (std::int64_t c = left; c <= std::min(left + plan.grid_cols, cols - 1); ++c)
          marks[top * cols + c] = 1;
      if (j > 0 && map.region_at(i, j - 1) != map.region_at(i, j))
        for (std::int64_t r = top; r <= std::min<std::int64_t>(top + plan.grid_rows, plan.rows() - 1); ++r)
          marks[r * cols + left] = 1;
    }
}

// Labels are places in the list, from 1. The ids of the regions themselves make room for them.
void label(const block_map& map, std::int32_t* id, const _s32_mat& region_list, const _univ_mat* out) {
  for (std::int32_t k = 0; k < region_list.nelem; ++k) id[region_list.data[k]] = -k - 1;
  map.each_run([&](std::int64_t row, std::int64_t col, std::int32_t region) {
    std::int32_t* const first = static_cast<std::int32_t*>(out->data) + row * map.plan.cols() + col;
    std::fill_n(first, map.plan.grid_cols, region < 0 ? -region : -id[region]);
  });
}

// Each block gets the id of its region. An id is a lower block's or its own, so one ascending pass will do.
code find_regions(const region_growth& growth, void* intrp_ptr, _s32_mat* region_list) {
  const growth_plan& plan = growth.fits.plan();
  const std::int64_t blocks = std::int64_t{plan.block_rows()} * plan.block_cols();
  std::int32_t* const id = growth.id.data();
  std::int32_t count = 0;
  for (std::int64_t k = 0; k < blocks; ++k) {
    if (id[k] == k) ++count;
    id[k] = id[id[k]];
  }
  if (count != growth.region_count) return KORVO_ERR_OUT_OF_BOUNDS;
  scratch<std::int32_t> found;  // from the last to the first
  TRY(found.make(count));
  for (std::int64_t k = 0, left = count; left > 0; ++k)
    if (id[k] == k) found[--left] = static_cast<std::int32_t>(k);
  const _univ_mat from = {1, count, count, found.data(), KORVO_SINT32};
  _univ_mat to = {1, count, count, region_list->data, KORVO_SINT32};
  return matuniv_sort(&from, intrp_ptr, &to);
}

// A set of matrices for the coefficients, or nothing.
code make_coefficients(const region_growth& growth, _mat_set* made) {
  TRY(matset_malloc(made, 1, &growth.fits.plan().image->nmat));
  const code result = matset_malloc_matrices(made, growth.region_count,
                                             static_cast<std::int32_t>(growth.fits.size()), KORVO_DOUBLE);
  if (result != KORVO_ERR_OK) (void)matset_free(made);
  return result;
}

void copy_coefficients(const region_fits& fits, const _s32_mat& region_list, const _mat_set& out) {
  const std::int64_t m = fits.size();
  for (std::int64_t b = 0; b < out.nmat; ++b)
    for (std::int64_t k = 0; k < region_list.nelem; ++k)
      std::copy_n(fits.coefficients(region_list.data[k]) + b * m, m,
                  static_cast<double*>(out.mats[b].data) + k * m);
}

}  // namespace

// All that can fail comes first.
code write_growth(const region_growth& growth, void* intrp_ptr, const growth_outputs& out) {
  const region_fits& fits = growth.fits;
  temporary<_s32_mat> region_list;
  TRY(region_list.make(1, growth.region_count));
  TRY(find_regions(growth, intrp_ptr, &region_list));
  scratch<double> terms;
  if (out.approximation) TRY(terms.make(fits.size()));
  _mat_set made{};
  if (out.coefficients) TRY(make_coefficients(growth, &made));

  const block_map map = {fits.plan(), growth.id.data()};
  if (out.region_count) *out.region_count = growth.region_count;
  if (out.final_scale) *out.final_scale = growth.scale;
  if (out.approximation)
    (void)dispatch(out.approximation->mats[0].type, real_records{}, [&]<class M> {
      approximate<M>(fits, map, terms.data(), out.approximation);
      return KORVO_ERR_OK;
    });
  if (out.boundaries) mark_boundaries(map, out.boundaries);
  if (out.labels) label(map, growth.id.data(), region_list, out.labels);
  if (out.coefficients) {
    copy_coefficients(fits, region_list, made);
    *out.coefficients = made;
  }
  return KORVO_ERR_OK;
}

}  // namespace korvo

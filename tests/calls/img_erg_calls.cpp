#include "korvos/segment/img_erg.h"
#include "tests/calls/calls.hpp"

namespace {

template <class M>
_univ_mat* universal(const M* mat, _univ_mat* same) {
  if (mat) *same = {mat->nrow, mat->ncol, mat->nelem, mat->data, korvo::tag<M>::type};
  return mat ? same : nullptr;
}

// The routine with typed outputs.
_korvo_errcode grow(const _univ_mat* image, std::int32_t order, std::uint8_t product, std::int32_t grid_rows,
                    std::int32_t grid_cols, std::int32_t least, double most, void* host, _univ_mat* fitted,
                    _u8_mat* boundaries, _s32_mat* labels, std::int32_t* count, double* scale) {
  _univ_mat marks{}, places{}, made{};
  const _korvo_errcode result =
      imguniv_region_grow_klm(image, order, product, grid_rows, grid_cols, least, most, host, fitted,
                              universal(boundaries, &marks), universal(labels, &places), &made, count, scale);
  return (void)korvo_free(made.data), result;
}

given one_image() {
  return args(1, 0, 2, 3, 4, 1e9)
      .sized(6, 9)
      .of(KORVO_UINT8, KORVO_UINT8)
      .refusing({null(0), no_data(0), miscounted(0), other_type(1), shaped(1, 9, 6), no_data(1), no_data(2),
                 miscounted(3), shaped(2, 3, 18), shaped(3, 9, 6), sharing(2, 1), valued(5, -1.0),
                 valued(5, NAN), valued(4, 1), valued(0, -1), valued(2, 4, KORVO_ERR_ILLEGAL_SIZE),
                 valued(3, 2, KORVO_ERR_ILLEGAL_SIZE)});
}

call_row bands_row() {
  return {"imgset_region_grow_klm", [](scene& s) -> ready_call {
            const auto band = [&] { return s.in(KORVO_FLOAT, 8, 6); };
            const auto fitted = [&] { return s.out(KORVO_FLOAT, 8, 6); };
            _mat_set *image = s.in_set({band(), band()}), *approximation = s.out_set({fitted(), fitted()});
            auto* const weights = s.in(KORVO_DOUBLE, 2, 1, 0.5, 0.5);
            auto *boundaries = s.out(KORVO_UINT8, 8, 6), *labels = s.out(KORVO_SINT32, 8, 6);
            auto* const coefficients = s.allocated<_mat_set>(true, false);
            auto* const count = s.number<std::int32_t>();
            auto* const scale = s.number<double>();
            return [=](void* host) {
              return imgset_region_grow_klm(image, weights, 1, 1, 2, 2, 3, 1e9, host, approximation, boundaries,
                                            labels, coefficients, count, scale);
            };
          }};
}

}  // namespace

call_rows img_erg_calls() { return {bands_row(), row("imguniv_region_grow_klm", &grow, one_image())}; }

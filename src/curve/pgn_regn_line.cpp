// Drawing of a polygon's sides, a pixel a row or column.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"
#include "curve/pgn_regn.hpp"
#include "korvos/matrix/mat_assn.h"

namespace korvo {
namespace {

using plotted_records = records<_u8_mat, _u16_mat, _s16_mat, _u32_mat, _s32_mat, _dbl_mat>;
using coordinate = double point::*;

struct side {
  point a, b;
};

// Cuts a side to lowest <= coordinate <= highest. False if it lies wholly past one of them. The other
// coordinate stays between those of the ends, whatever the rounding.
bool clip(coordinate along, coordinate across, double lowest, double highest, side& s) {
  const auto [nearer, farther] = std::minmax(s.a.*along, s.b.*along);
  if (farther < lowest || nearer > highest) return false;
  const side whole = s;
  const auto [least, greatest] = std::minmax(whole.a.*across, whole.b.*across);
  for (point* const end : {&s.a, &s.b}) {
    const double limit = std::clamp(end->*along, lowest, highest);
    if (limit == end->*along) continue;
    const double slope = (whole.b.*across - whole.a.*across) / (whole.b.*along - whole.a.*along);
    end->*across = std::clamp(end->*across + (limit - end->*along) * slope, least, greatest);
    end->*along = limit;
  }
  return true;
}

// The points of a side, one to each whole step along one axis up to the last: every other element of two
// arrays. Returns how many there are.
std::int32_t walk(coordinate along, coordinate across, side s, std::int32_t last, std::int32_t* positions,
                  std::int32_t* places) {
  if (s.a.*along > s.b.*along) std::swap(s.a, s.b);
  const double run = s.b.*along - s.a.*along;
  const double rise = s.b.*across - s.a.*across;
  const int sign = rise >= 0.0 ? 1 : -1;
  const auto first = static_cast<std::int32_t>(std::floor(s.a.*along + 0.5));
  const auto end = static_cast<std::int32_t>(std::min<double>(std::floor(s.b.*along + 0.5), last));
  auto place = static_cast<std::int32_t>(std::floor(s.a.*across + 0.5));
  // Where the side is at the next position, against the boundary of the pixel there.
  double e = (first + 1.0 - s.a.*along) * rise - (place + sign * 0.5 - s.a.*across) * run;
  const double e_across = rise - sign * run;
  for (std::int32_t position = first; position <= end; ++position) {
    positions[2 * std::int64_t{position - first}] = position;
    places[2 * std::int64_t{position - first}] = place;
    const bool crosses = sign > 0 ? e > 0.0 : e <= 0.0;
    place += crosses ? sign : 0;
    e += crosses ? e_across : rise;
  }
  return std::max(end - first + 1, 0);
}

// The points of a side within a square of `size` pixels, as rows and columns. Returns how many there are.
std::int32_t points_of(side s, std::int32_t size, const _s32_mat& points) {
  const double highest = size - 0.5;
  if (!clip(&point::x, &point::y, -0.5, highest, s) || !clip(&point::y, &point::x, -0.5, highest, s)) return 0;
  if (std::fabs(s.b.x - s.a.x) <= std::fabs(s.b.y - s.a.y))
    return walk(&point::y, &point::x, s, size - 1, points.data, points.data + 1);
  return walk(&point::x, &point::y, s, size - 1, points.data + 1, points.data);
}

template <class M>
code draw_sides(const _dbl_mat& polygon, bool closed, element<M> value, void* intrp_ptr, const M& image) {
  const std::int32_t size = std::max(image.nrow, image.ncol);
  temporary<_s32_mat> points;
  TRY(points.make(size, 2));
  checkpoint poll(intrp_ptr);
  for (std::int64_t i = closed ? 0 : 1; i < polygon.nrow; ++i) {
    const point before = vertex(polygon, i > 0 ? i - 1 : polygon.nrow - 1);
    const std::int32_t count = points_of({vertex(polygon, i), before}, size, points);
    TRY(poll.add_steps(10.0, count));
    for (std::int64_t k = 0; k < count; ++k) {
      const std::int64_t row = points.data[2 * k];
      const std::int64_t col = points.data[2 * k + 1];
      if (row >= 0 && row < image.nrow && col >= 0 && col < image.ncol)
        image.data[row * image.ncol + col] = value;
    }
    TRY(poll.add_steps(10.0, count));
  }
  return KORVO_ERR_OK;
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

// Kept: the background comes first, so that a bad polygon leaves an image of it.
code pgndbl_render_line(const _dbl_mat* polygon, uint8_t closed, _univ_scalar line, _univ_scalar background,
                        void* intrp_ptr, _univ_mat* result) {
  if (!polygon) return KORVO_ERR_NULL_POINTER;
  if (!result || line.type != result->type || background.type != result->type) return KORVO_ERR_ILLEGAL_TYPE;
  return dispatch(result->type, plotted_records{}, [&]<class M> {
    const M image = as<M>(*result);
    TRY(valid(&image));
    if (shares_data(polygon, &image)) return KORVO_ERR_ILLEGAL_ADDRESS;
    TRY(matuniv_assign_scalar(background, intrp_ptr, result));
    TRY(valid(polygon));
    TRY(has_vertices(*polygon));
    TRY(can_be_placed(*polygon));
    return draw_sides(*polygon, closed != 0, number<M>(line), intrp_ptr, image);
  });
}

code pgnuniv_render_line(const _univ_mat* polygon, uint8_t closed, _univ_scalar line, _univ_scalar background,
                         void* intrp_ptr, _univ_mat* result) {
  if (!polygon || !result) return KORVO_ERR_NULL_POINTER;
  if (polygon->type != KORVO_DOUBLE) return KORVO_ERR_ILLEGAL_TYPE;
  const auto from = as<_dbl_mat>(*polygon);
  return pgndbl_render_line(&from, closed, line, background, intrp_ptr, result);
}

}  // extern "C"

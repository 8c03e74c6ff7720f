// Resampling of polygons: linear, at equal distances.
#include "korvos/curve/pgn_smpl.h"

#include <cmath>
#include <cstdint>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/valid.hpp"
#include "curve/polygon.hpp"

namespace korvo {
namespace {

// The contour as a row of sides, the last of which closes it if that is wanted.
class contour {
 public:
  contour(const _dbl_mat& polygon, bool closed)
      : polygon_(polygon), sides_(closed ? polygon.nrow : polygon.nrow - 1) {}

  std::int32_t sides() const { return sides_; }
  point corner(std::int64_t i) const { return vertex(polygon_, i < polygon_.nrow ? i : i - polygon_.nrow); }
  double side(std::int64_t i) const { return distance(corner(i), corner(i + 1)); }

 private:
  const _dbl_mat& polygon_;
  std::int32_t sides_;
};

// Goes along the contour once: the places ascend.
void place_vertices(const contour& along, double length, std::int32_t parts, _dbl_mat* out) {
  std::int32_t side = 0;
  double begun = 0.0;  // length before this side
  double reach = along.sides() > 0 ? along.side(0) : 0.0;
  for (std::int64_t k = 0; k < out->nrow; ++k) {
    const double place = parts > 0 ? static_cast<double>(k) / parts * length : 0.0;
    while (place - begun > reach && side + 1 < along.sides()) {
      begun += reach;
      reach = along.side(++side);
    }
    const double share = reach > 0.0 ? std::fmin((place - begun) / reach, 1.0) : 0.0;
    const point a = along.corner(side);
    const point b = along.sides() > 0 ? along.corner(side + 1) : a;
    set_vertex(*out, k, {a.x + share * (b.x - a.x), a.y + share * (b.y - a.y)});
  }
}

code resample_linear(const _dbl_mat* polygon, bool closed, void* intrp_ptr, _dbl_mat* out) {
  TRY(valid(polygon));
  TRY(valid(out));
  if (polygon->ncol != 2 || out->ncol != 2) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(polygon, out)) return KORVO_ERR_ILLEGAL_ADDRESS;
  const contour along(*polygon, closed);
  checkpoint poll(intrp_ptr);
  double length = 0.0;
  for (std::int32_t i = 0; i < along.sides(); ++i) length += along.side(i);
  if (!std::isfinite(length)) return KORVO_ERR_ILLEGAL_VALUE;
  TRY(poll.add(10.0 * polygon->nrow));
  place_vertices(along, length, closed ? out->nrow : out->nrow - 1, out);
  return poll.add(20.0 * out->nrow);
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code pgnuniv_resample_linear(const _univ_mat* polygon, uint8_t closed, void* intrp_ptr, _univ_mat* out) {
  if (!polygon || !out) return KORVO_ERR_NULL_POINTER;
  if (polygon->type != KORVO_DOUBLE || out->type != KORVO_DOUBLE) return KORVO_ERR_ILLEGAL_TYPE;
  const _dbl_mat from = as<_dbl_mat>(*polygon);
  _dbl_mat to = as<_dbl_mat>(*out);
  return resample_linear(&from, closed != 0, intrp_ptr, &to);
}

}  // extern "C"

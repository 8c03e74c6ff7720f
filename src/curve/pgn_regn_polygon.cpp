// From a run-length chain to the polygon around its pixels.
#include <cstdint>

#include "core/arithmetic.hpp"
#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "curve/pgn_regn.hpp"

namespace korvo {
namespace {

// Corners of a pixel, clockwise from the upper right one; numbers count modulo 4.
constexpr double corner_x[] = {0.5, 0.5, -0.5, -0.5};
constexpr double corner_y[] = {-0.5, 0.5, 0.5, -0.5};

// A polygon that grows as it is drawn, from a pixel that moves.
struct outline {
  _dbl_mat* polygon;
  std::int64_t row, col;
  std::int32_t used = 0;

  void move(int direction, std::int64_t steps) {  // the farthest is 2^31 links of 2^31 steps: inside 64 bits
    row += row_step[direction] * steps;
    col += col_step[direction] * steps;
  }

  [[nodiscard]] code emit(int corner) {
    if (used == polygon->nrow) {
      if (std::int64_t{used} + growth > largest_size / 16) return KORVO_ERR_MALLOC;
      TRY(matdbl_realloc(polygon, used + growth, 2));
    }
    double* const place = polygon->data + 2 * std::int64_t{used++};
    place[0] = static_cast<double>(col) + corner_x[corner % 4];
    place[1] = static_cast<double>(row) + corner_y[corner % 4];
    return KORVO_ERR_OK;
  }

  // Without any vertex the chain was no closed one.
  [[nodiscard]] code finish() { return used > 0 ? matdbl_realloc(polygon, used, 2) : KORVO_ERR_ILLEGAL_VALUE; }
};

bool is_link(const pgn_chain& chain, std::int32_t i) {
  return chain.directions[i] >= 0 && chain.directions[i] <= 7 && chain.run_lengths[i] >= 1;
}

// The corners that a turn from p to d passes on its pixel.
code turn(int p, int d, outline& path) {
  const bool is_odd = p % 2 != 0;
  const int t = (d - p + (is_odd ? 10 : 9)) % 8;
  if (is_odd ? t == 7 : t / 2 == 3) return KORVO_ERR_ILLEGAL_VALUE;  // back to the left
  const int first = is_odd ? (p / 2 + 3) % 4 : p / 2;
  const int count = is_odd ? t / 2 + 1 : t / 2;
  for (int corner = first; corner < first + count; ++corner) TRY(path.emit(corner));
  return KORVO_ERR_OK;
}

// An even direction runs along a side; an odd one climbs a stair, two corners to each step but the first.
code run(int d, std::int32_t length, outline& path) {
  if (d % 2 == 0) return path.move(d, length), KORVO_ERR_OK;
  path.move(d, 1);
  for (std::int32_t i = 1; i < length; ++i) {
    TRY(path.emit(d / 2 + 3));
    TRY(path.emit(d / 2 + 4));
    path.move(d, 1);
  }
  return KORVO_ERR_OK;
}

code around_links(const pgn_chain& chain, void* intrp_ptr, outline& path) {
  checkpoint poll(intrp_ptr);
  std::int32_t before = chain.num_links - 1;
  for (std::int32_t i = 0; i < chain.num_links; before = i++) {
    if (!is_link(chain, before) || !is_link(chain, i)) return KORVO_ERR_ILLEGAL_VALUE;
    TRY(turn(chain.directions[before], chain.directions[i], path));
    TRY(run(chain.directions[i], chain.run_lengths[i], path));
    TRY(poll.add(50.0));
  }
  return path.finish();
}

code draw(const pgn_chain& chain, void* intrp_ptr, _dbl_mat* polygon) {
  TRY(matdbl_malloc(polygon, chain.num_links > 0 ? growth : 4, 2));
  outline path{polygon, chain.start_row, chain.start_col};
  if (chain.num_links > 0) return around_links(chain, intrp_ptr, path);
  for (const int corner : {2, 3, 0, 1}) TRY(path.emit(corner));
  return KORVO_ERR_OK;
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code pgndbl_boundary_chain_to_polygon(const pgn_chain* chain, void* intrp_ptr, _dbl_mat* polygon) {
  if (!chain || !polygon) return KORVO_ERR_NULL_POINTER;
  if (chain->num_links < 0) return KORVO_ERR_ILLEGAL_VALUE;
  if (chain->num_links > 0 && (!chain->run_lengths || !chain->directions)) return KORVO_ERR_NULL_POINTER;
  *polygon = {};
  const code result = draw(*chain, intrp_ptr, polygon);
  if (result != KORVO_ERR_OK) {
    (void)matdbl_free(polygon);
    *polygon = {};
  }
  return result;
}

code pgnuniv_boundary_chain_to_polygon(const pgn_chain* chain, void* intrp_ptr, _univ_mat* polygon) {
  if (!chain || !polygon) return KORVO_ERR_NULL_POINTER;
  if (polygon->type != KORVO_DOUBLE) return KORVO_ERR_ILLEGAL_TYPE;
  auto typed = as<_dbl_mat>(*polygon);
  const code result = pgndbl_boundary_chain_to_polygon(chain, intrp_ptr, &typed);
  give_back(typed, polygon);
  return result;
}

}  // extern "C"

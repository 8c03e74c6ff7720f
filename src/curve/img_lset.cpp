// Minimal paths: the potential, the level set of a front, the way down it.
#include "korvos/curve/img_lset.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <utility>

#include "core/checkpoint.hpp"
#include "core/temporary.hpp"
#include "core/universal.hpp"
#include "core/valid.hpp"
#include "korvos/segment/img_cany.h"
#include "korvos/segment/img_dist.h"

namespace korvo {
namespace {

constexpr double unreached = 1e37;

// The trial pixels by level: a binary heap in which a pixel may stand several times, entries from 1.
class front {
 public:
  struct entry {
    double level;
    std::int32_t row, col;
  };

  [[nodiscard]] code make(std::int64_t room) {
    room_ = room;
    return entries_.make(room + 1);
  }
  [[nodiscard]] bool is_empty() const { return count_ == 0; }

  [[nodiscard]] code push(entry added, checkpoint& poll) {
    if (count_ == room_) return KORVO_ERR_ILLEGAL_SIZE;
    std::int64_t at = ++count_;
    for (; at > 1 && entries_[at / 2].level > added.level; at /= 2) entries_[at] = entries_[at / 2];
    entries_[at] = added;
    return poll.add(0.5 * static_cast<double>(count_));
  }

  // The lowest; of two equal children the right one moves up.
  [[nodiscard]] code pop(entry* lowest, checkpoint& poll) {
    TRY(poll.add(0.5 * static_cast<double>(count_)));
    *lowest = entries_[1];
    const entry moved = entries_[count_--];
    std::int64_t at = 1;
    while (at <= count_ / 2) {
      std::int64_t child = 2 * at;
      if (child < count_ && !(entries_[child].level < entries_[child + 1].level)) ++child;
      if (!(moved.level > entries_[child].level)) break;
      entries_[at] = entries_[child];
      at = child;
    }
    entries_[at] = moved;
    return KORVO_ERR_OK;
  }

 private:
  scratch<entry> entries_;
  std::int64_t count_ = 0;
  std::int64_t room_ = 0;
};

class marching {
 public:
  marching(const _dbl_mat& potential, const _dbl_mat& level, void* intrp_ptr)
      : potential_(potential), level_(level), poll_(intrp_ptr) {}

  [[nodiscard]] code run(std::int32_t start_row, std::int32_t start_col) {
    TRY(label_.make(level_.nelem));
    TRY(front_.make(level_.nelem / 4));
    std::fill_n(level_.data, level_.nelem, unreached);
    std::fill_n(label_.data(), level_.nelem, far);
    TRY(try_pixel(start_row, start_col, 0.0));
    while (!front_.is_empty()) TRY(freeze_lowest());
    return KORVO_ERR_OK;
  }

 private:
  enum : std::uint8_t { far, frozen, trial };

  std::int64_t place(std::int64_t row, std::int64_t col) const { return row * level_.ncol + col; }

  [[nodiscard]] code try_pixel(std::int32_t row, std::int32_t col, double level) {
    level_.data[place(row, col)] = level;
    label_[place(row, col)] = trial;
    return front_.push({level, row, col}, poll_);
  }

  [[nodiscard]] code freeze_lowest() {
    front::entry at;
    TRY(front_.pop(&at, poll_));
    if (label_[place(at.row, at.col)] != trial) return KORVO_ERR_OK;  // solved and frozen since it was pushed
    label_[place(at.row, at.col)] = frozen;
    if (at.row > 0) TRY(solve(at.row - 1, at.col));
    if (at.col > 0) TRY(solve(at.row, at.col - 1));
    if (at.col + 1 < level_.ncol) TRY(solve(at.row, at.col + 1));
    if (at.row + 1 < level_.nrow) TRY(solve(at.row + 1, at.col));
    return KORVO_ERR_OK;
  }

  [[nodiscard]] code solve(std::int32_t row, std::int32_t col) {
    if (label_[place(row, col)] == frozen) return KORVO_ERR_OK;
    const std::int64_t at = place(row, col);
    // Kept: the low neighbour is admitted only above row or column 0, the high one up to the last.
    const side a = lower(row - 1 > 0, at - level_.ncol, row + 1 < level_.nrow, at + level_.ncol);
    const side b = lower(col - 1 > 0, at - 1, col + 1 < level_.ncol, at + 1);
    if (!a.is_known && !b.is_known) return KORVO_ERR_ILLEGAL_VALUE;
    const double solved = solution(a, b, potential_.data[at]);
    TRY(poll_.add(52.0));
    return try_pixel(row, col, solved);
  }

  struct side {
    bool is_known = false;
    double level = unreached;
  };

  // The lower of two neighbours that the front has touched.
  side lower(bool has_first, std::int64_t first, bool has_second, std::int64_t second) const {
    side found;
    if (has_first && label_[first] != far) found = {true, std::min(found.level, level_.data[first])};
    if (has_second && label_[second] != far) found = {true, std::min(found.level, level_.data[second])};
    return found;
  }

  static double solution(side a, side b, double cost) {
    double level = 0.0;
    if (a.level < b.level && a.level + cost < b.level) level = a.level + cost;
    if (b.level < a.level && b.level + cost < a.level) level = b.level + cost;
    if (!a.is_known || !b.is_known) return level;
    const double apart = a.level - b.level;
    const double under_root = cost * cost * 0.5 - apart * apart * 0.25;
    if (under_root < 0.0) return level;
    const double from_both = (a.level + b.level) * 0.5 + std::sqrt(under_root);
    return level < from_both ? from_both : level;
  }

  const _dbl_mat& potential_;
  const _dbl_mat& level_;
  checkpoint poll_;
  scratch<std::uint8_t> label_;
  front front_;
};

struct pixel {
  std::int32_t row, col;

  bool operator==(const pixel&) const = default;
  [[nodiscard]] bool lies_in(const _dbl_mat& image) const {
    return row >= 0 && row < image.nrow && col >= 0 && col < image.ncol;
  }
};

struct direction {
  std::int8_t code;
  std::int8_t row, col;
};
// In the order in which equal levels are chosen.
constexpr direction directions[] = {{6, -1, 0}, {4, 0, -1}, {0, 0, 1}, {2, 1, 0}};
constexpr direction jump = directions[0];

// A chain that is freed unless it is handed over.
class owned_chain : public pgn_chain {
 public:
  owned_chain() { static_cast<pgn_chain&>(*this) = pgn_chain{}; }
  owned_chain(const owned_chain&) = delete;
  owned_chain& operator=(const owned_chain&) = delete;
  ~owned_chain() { (void)pgn_chain_free(this); }

  [[nodiscard]] code add(std::int8_t code) {
    if (num_links > 0 && directions[num_links - 1] == code) {
      ++run_lengths[num_links - 1];
      return KORVO_ERR_OK;
    }
    TRY(pgn_chain_realloc(this, num_links + 1));
    directions[num_links - 1] = code;
    run_lengths[num_links - 1] = 1;
    return KORVO_ERR_OK;
  }
  pgn_chain release() { return std::exchange(static_cast<pgn_chain&>(*this), pgn_chain{}); }
};

// From one pixel down to another.
class descent {
 public:
  descent(const _dbl_mat& level, void* intrp_ptr) : level_(level), poll_(intrp_ptr) {}

  [[nodiscard]] code run(pixel from, pixel to, owned_chain* chain) {
    TRY(visited_.make(level_.nelem));
    std::fill_n(visited_.data(), level_.nelem, std::uint8_t{0});
    chain->start_row = from.row;
    chain->start_col = from.col;
    visited_[place(from)] = 1;
    for (pixel at = from; at != to;) {
      const direction* const way = lowest_neighbour(at);
      at = way ? pixel{at.row + way->row, at.col + way->col} : to;
      TRY(chain->add(way ? way->code : jump.code));
      visited_[place(at)] = 1;
      TRY(poll_.add(130.0));
    }
    return KORVO_ERR_OK;
  }

 private:
  std::int64_t place(pixel at) const { return std::int64_t{at.row} * level_.ncol + at.col; }

  const direction* lowest_neighbour(pixel at) const {
    const direction* best = nullptr;
    double least = unreached;
    for (const direction& way : directions) {
      const pixel next = {at.row + way.row, at.col + way.col};
      if (!next.lies_in(level_) || visited_[place(next)] || !(level_.data[place(next)] < least)) continue;
      least = level_.data[place(next)];
      best = &way;
    }
    return best;
  }

  const _dbl_mat& level_;
  checkpoint poll_;
  scratch<std::uint8_t> visited_;
};

// Kept: the row comes first here, unlike in other polygons.
code write_polygon(const pgn_chain& chain, void* intrp_ptr, _univ_mat* polygon) {
  temporary<_dbl_mat> vertices;
  TRY(vertices.make(std::int64_t{chain.num_links} + 1, 2));
  checkpoint poll(intrp_ptr);
  double* vertex = vertices.data;
  vertex[0] = chain.start_row;
  vertex[1] = chain.start_col;
  for (std::int32_t k = 0; k < chain.num_links; ++k, vertex += 2) {
    const auto* const way = std::find_if(std::begin(directions), std::end(directions),
                                         [&](const direction& d) { return d.code == chain.directions[k]; });
    vertex[2] = vertex[0] + static_cast<double>(way->row) * chain.run_lengths[k];
    vertex[3] = vertex[1] + static_cast<double>(way->col) * chain.run_lengths[k];
    TRY(poll.add(10.0));
  }
  give_back<_dbl_mat>(vertices, polygon);
  polygon->type = KORVO_DOUBLE;
  vertices.data = nullptr;
  return KORVO_ERR_OK;
}

struct path {
  pixel start, end;
  pgn_chain* chain;
  _univ_mat* polygon;

  // Empties the results too, so that a failure leaves nothing to free.
  [[nodiscard]] code check(const _univ_mat* image) const {
    if (!image || (!chain && !polygon)) return KORVO_ERR_NULL_POINTER;
    if (chain) *chain = {};
    if (polygon) *polygon = {};
    if (image->type != KORVO_DOUBLE) return KORVO_ERR_ILLEGAL_TYPE;
    const _dbl_mat typed = as<_dbl_mat>(*image);
    TRY(valid(&typed));
    return start.lies_in(typed) && end.lies_in(typed) ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_VALUE;
  }

  // Goes from the end to the start.
  [[nodiscard]] code trace(const _dbl_mat& level, void* intrp_ptr) const {
    owned_chain traced;
    TRY(descent(level, intrp_ptr).run(end, start, &traced));
    if (polygon) TRY(write_polygon(traced, intrp_ptr, polygon));
    if (chain) *chain = traced.release();
    return KORVO_ERR_OK;
  }
};

code check_levelset(const _univ_mat* potential, pixel start, const _univ_mat* out) {
  if (!potential || !out) return KORVO_ERR_NULL_POINTER;
  if (potential->type != KORVO_DOUBLE || out->type != KORVO_DOUBLE) return KORVO_ERR_ILLEGAL_TYPE;
  const _dbl_mat in = as<_dbl_mat>(*potential);
  const _dbl_mat to = as<_dbl_mat>(*out);
  TRY(valid(&in, &to));
  if (!same_shape(&in, &to)) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data(&in, &to)) return KORVO_ERR_ILLEGAL_ADDRESS;
  return start.lies_in(in) ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_VALUE;
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code imguniv_potential_canny(const _univ_mat* image, double sigma, double low, double high, void* intrp_ptr,
                             _univ_mat* out) {
  constexpr _univ_scalar edge = {{.u8 = 1}, KORVO_UINT8};
  constexpr _univ_scalar background = {{.u8 = 0}, KORVO_UINT8};
  if (!image || !out) return KORVO_ERR_NULL_POINTER;
  if (out->type != KORVO_DOUBLE) return KORVO_ERR_ILLEGAL_TYPE;
  TRY(matuniv_validate(image));
  TRY(matuniv_validate(out));
  if (!same_shape(image, out)) return KORVO_ERR_ILLEGAL_SIZE;
  universal_temporary<_u8_mat> edges;
  TRY(edges.make_like(image));
  TRY(imguniv_edge_canny(image, sigma, low, high, edge, background, intrp_ptr, &edges));
  return imguniv_transform_distance(&edges, IMG_METRIC_EUCLIDEAN, edge, intrp_ptr, out);
}

code imguniv_minpath_levelset_from_potential(const _univ_mat* potential, int32_t start_row, int32_t start_col,
                                             void* intrp_ptr, _univ_mat* out) {
  TRY(check_levelset(potential, {start_row, start_col}, out));
  const _dbl_mat in = as<_dbl_mat>(*potential);
  const _dbl_mat level = as<_dbl_mat>(*out);
  return marching(in, level, intrp_ptr).run(start_row, start_col);
}

code imguniv_minpath_from_levelset(const _univ_mat* levelset, int32_t start_row, int32_t start_col,
                                   int32_t end_row, int32_t end_col, void* intrp_ptr, pgn_chain* chain,
                                   _univ_mat* polygon) {
  const path wanted = {{start_row, start_col}, {end_row, end_col}, chain, polygon};
  TRY(wanted.check(levelset));
  return wanted.trace(as<_dbl_mat>(*levelset), intrp_ptr);
}

code imguniv_minpath_from_potential(const _univ_mat* potential, int32_t start_row, int32_t start_col,
                                    int32_t end_row, int32_t end_col, void* intrp_ptr, pgn_chain* chain,
                                    _univ_mat* polygon) {
  const path wanted = {{start_row, start_col}, {end_row, end_col}, chain, polygon};
  TRY(wanted.check(potential));
  const _dbl_mat in = as<_dbl_mat>(*potential);
  temporary<_dbl_mat> level;
  TRY(level.make(in.nrow, in.ncol));
  TRY(marching(in, level, intrp_ptr).run(start_row, start_col));
  return wanted.trace(level, intrp_ptr);
}

}  // extern "C"

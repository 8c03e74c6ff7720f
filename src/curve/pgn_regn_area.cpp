// Rendering of a polygon's area: of each pixel the part that the polygon covers, exactly.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"
#include "curve/pgn_regn.hpp"
#include "korvos/matrix/mat_sort.h"

namespace korvo {
namespace {

// The part of an edge within a row, from left to right; with equal x the lower end is the left one.
struct slice {
  point left, right;
  double slope;  // dx / dy of the edge
};

point cut(point upper, double slope, double y) { return {upper.x + (y - upper.y) * slope, y}; }

struct edge {
  point upper, lower;
  double sign;  // 1 for one that goes up
};

slice slice_of(const edge& e, double top, double bottom) {
  const double slope = (e.lower.x - e.upper.x) / (e.lower.y - e.upper.y);
  const point end = e.lower.y > bottom ? cut(e.upper, slope, bottom) : e.lower;
  const point begin = e.upper.y < top ? cut(e.upper, slope, top) : e.upper;
  return end.x <= begin.x ? slice{end, begin, slope} : slice{begin, end, slope};
}

// floor(x + 0.5); the library's floor is a call where there is no instruction for it.
std::int64_t column_of(double x) {
  const double moved = x + 0.5;
  const auto towards_zero = static_cast<std::int64_t>(moved);
  return towards_zero - (static_cast<double>(towards_zero) > moved ? 1 : 0);
}

// A set of numbers below a limit.
class number_set {
 public:
  [[nodiscard]] code make(std::int64_t limit) {
    words_ = (limit + 63) / 64;
    TRY(bits_.make(words_));
    clear();
    return KORVO_ERR_OK;
  }
  void clear() { std::fill_n(bits_.data(), words_, 0U); }
  void add(std::int64_t i) { bits_[i / 64] |= std::uint64_t{1} << (i % 64); }
  void remove(std::int64_t i) { bits_[i / 64] &= ~(std::uint64_t{1} << (i % 64)); }

  // In ascending order; f may remove the number that it is called with.
  template <class F>
  void each(F f) const {
    for (std::int64_t word = 0; word < words_; ++word)
      for (std::uint64_t rest = bits_[word]; rest != 0; rest &= rest - 1) f(64 * word + std::countr_zero(rest));
  }

 private:
  std::int64_t words_ = 0;
  scratch<std::uint64_t> bits_;
};

// A row of pixels by those columns that may differ from the one on their left. Each column takes the sums of
// the last of them up to it, so that what an edge adds to all that is right of it costs little.
struct sparse_row {
  std::int64_t cols;
  number_set kept = {};
  scratch<std::int64_t> number = {};  // of each kept column among them
  scratch<double> sums = {};
  std::int64_t count = 0;

  [[nodiscard]] code make() {
    TRY(kept.make(cols));
    TRY(number.make(cols));
    return sums.make(cols);
  }

  // Those where the area between a slice and the right end of the row differs from column to column.
  void keep(const slice& s) {
    const std::int64_t last = std::min(column_of(s.right.x) + 1, cols - 1);
    for (std::int64_t c = std::max<std::int64_t>(column_of(s.left.x), 0); c <= last; ++c) kept.add(c);
  }

  // When all are kept.
  void begin_sums() {
    count = 0;
    kept.each([this](std::int64_t c) { number[c] = count++; });
    std::fill_n(sums.data(), count, 0.0);
  }

  void write(double* row) const {
    std::int64_t written = 0;
    double last = 0.0;
    const double* sum = sums.data();
    kept.each([&](std::int64_t c) {
      std::fill(row + written, row + c, last);
      written = c;
      last = *sum++;
    });
    std::fill(row + written, row + cols, last);
  }
};

// Adds to a row the area between a slice and its right end.
void add_area(const slice& s, double sign, sparse_row& row) {
  const auto [xa, ya] = s.left;
  const auto [xb, yb] = s.right;
  const double g = s.slope == 0.0 ? 0.0 : 1.0 / s.slope;
  const std::int64_t ca = column_of(xa);
  const std::int64_t cb = column_of(xb);
  if (ca >= row.cols) return;
  const auto da = static_cast<double>(ca);
  const auto db = static_cast<double>(cb);
  const std::int64_t first = std::max<std::int64_t>(ca, 0);
  const std::int64_t shift = row.number[first] - first;  // all from there to cb + 1 are kept
  double h = 0.0;
  if (ca >= 0 && cb == ca) {
    row.sums[ca + shift] += (2.0 * da + 1.0 - xa - xb) * std::fabs(yb - ya) * sign * 0.5;
  } else {
    const double w = (ca < 0 ? -0.5 : da + 0.5) - xa;
    const double m = w * g + ya;
    if (ca >= 0) row.sums[ca + shift] += std::fabs(ya - m) * w * sign * 0.5;
    h = std::fabs(2.0 * m + g - 2.0 * ya) * sign * 0.5;
  }
  // Kept: h moves as for an edge whose y rises with x, though that of a falling one should move the other way.
  for (std::int64_t c = std::max<std::int64_t>(ca + 1, 0); c < std::min(cb, row.cols); ++c) {
    row.sums[c + shift] += h;
    h += sign * g;
  }
  if (cb > ca && cb >= 0 && cb < row.cols)
    row.sums[cb + shift] +=
        std::fabs((yb - ya) - (xb - db + 0.5) * (yb - (((db - 0.5) - xa) * g + ya)) * 0.5) * sign;
  const double height = std::fabs(yb - ya) * sign;
  const std::int64_t rest = cb + 1 < row.cols ? std::max<std::int64_t>(cb + 1, 0) + shift : row.count;
  for (std::int64_t i = rest; i < row.count; ++i) row.sums[i] += height;
}

// Moves a slice to the row below, where it ends at the latest at `end`, the lower vertex of its edge. False if
// the edge has no part there.
bool advance(slice& s, point end, double bottom) {
  const bool is_left_lower = s.right.y <= s.left.y;
  const point reached = is_left_lower ? s.left : s.right;
  point next = {reached.x + s.slope, reached.y + 1.0};
  if (next.y > end.y) {
    if (end.y < bottom) return false;
    next = end;
  }
  s.left = is_left_lower ? next : reached;
  s.right = is_left_lower ? reached : next;
  s.right.x = std::max(s.right.x, s.left.x);
  return next.y != reached.y;
}

// The edges of a polygon that cross a row, each known by its first vertex.
class active_edges {
 public:
  explicit active_edges(const _dbl_mat& polygon) : polygon_(polygon), count_(polygon.nrow) {}

  [[nodiscard]] code make(void* intrp_ptr) {
    TRY(order_.make(count_, 1));
    TRY(slices_.make(count_));
    TRY(active_.make(count_));
    temporary<_dbl_mat> y;
    TRY(y.make(count_, 1));
    for (std::int64_t i = 0; i < count_; ++i) y.data[i] = at(i).y;
    return matdbl_sort_index_partial(&y, nullptr, intrp_ptr, &order_);
  }

  double least_y() const { return at(order_.data[0]).y; }
  double greatest_y() const { return at(order_.data[count_ - 1]).y; }

  // Activates the edges that begin in a row, and returns the number of vertices taken.
  std::int64_t enter(double top, double bottom) {
    const std::int64_t before = taken_;
    const bool is_first = before == 0;
    for (; taken_ < count_ && at(order_.data[taken_]).y < bottom; ++taken_) {
      const std::int64_t i = order_.data[taken_];
      const std::int64_t previous = i > 0 ? i - 1 : count_ - 1;
      const double next_y = at(following(i)).y;
      if (at(previous).y >= bottom) activate(previous, top, bottom);
      // One that goes up out of the first row is entered too: clipping loses no area.
      const bool begins = next_y >= top || (is_first && at(i).y >= top);
      if (begins && next_y != at(i).y) activate(i, top, bottom);
    }
    return taken_ - before;
  }

  // Adds the area of all edges in the order of their numbers, moves them on, and returns how many they were.
  std::int64_t add_to(sparse_row& row, double bottom) {
    std::int64_t added = 0;
    row.kept.clear();
    row.kept.add(0);
    active_.each([&](std::int64_t i) { row.keep(slices_[i]), ++added; });
    row.begin_sums();
    active_.each([&](std::int64_t i) {
      const edge e = edge_from(i);
      add_area(slices_[i], e.sign, row);
      if (!advance(slices_[i], e.lower, bottom)) active_.remove(i);
    });
    return added;
  }

 private:
  point at(std::int64_t i) const { return vertex(polygon_, i); }
  std::int64_t following(std::int64_t i) const { return i + 1 < count_ ? i + 1 : 0; }

  edge edge_from(std::int64_t i) const {
    const point first = at(i);
    const point second = at(following(i));
    return first.y > second.y ? edge{second, first, 1.0} : edge{first, second, -1.0};
  }
  void activate(std::int64_t i, double top, double bottom) {
    slices_[i] = slice_of(edge_from(i), top, bottom);
    active_.add(i);
  }

  const _dbl_mat& polygon_;
  std::int32_t count_;
  std::int64_t taken_ = 0;  // vertices, in the order of their y
  temporary<_s32_mat> order_;
  scratch<slice> slices_;
  number_set active_;
};

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code pgndbl_render_region(const _dbl_mat* polygon, void* intrp_ptr, _dbl_mat* result) {
  if (!polygon || !result) return KORVO_ERR_NULL_POINTER;
  TRY(valid(polygon));
  TRY(valid(result));
  TRY(has_vertices(*polygon));
  if (shares_data(polygon, result)) return KORVO_ERR_ILLEGAL_ADDRESS;
  TRY(can_be_placed(*polygon));
  active_edges edges(*polygon);
  TRY(edges.make(intrp_ptr));
  const std::int64_t cols = result->ncol;
  sparse_row row{cols};
  TRY(row.make());
  const std::int64_t last = std::min<std::int64_t>(result->nrow - 1, column_of(edges.greatest_y()));
  std::int64_t r = std::clamp<std::int64_t>(column_of(edges.least_y()), 0, result->nrow);
  std::fill_n(result->data, r * cols, 0.0);
  checkpoint poll(intrp_ptr);
  code stopped = poll.add(3.0 * polygon->nrow);
  for (; r <= last && stopped == KORVO_ERR_OK; ++r) {
    const auto y = static_cast<double>(r);
    poll.count(30.0 * static_cast<double>(edges.enter(y - 0.5, y + 0.5)));
    const std::int64_t added = edges.add_to(row, y + 0.5);
    row.write(result->data + r * cols);
    stopped = poll.add((result->ncol + 2.0) * 50.0 * static_cast<double>(added));
  }
  std::fill(result->data + r * cols, result->data + result->nelem, 0.0);  // those below are 0, stopped or not
  return stopped;
}

code pgnuniv_render_region(const _univ_mat* polygon, void* intrp_ptr, _univ_mat* result) {
  if (!polygon || !result) return KORVO_ERR_NULL_POINTER;
  if (polygon->type != KORVO_DOUBLE || result->type != KORVO_DOUBLE) return KORVO_ERR_ILLEGAL_TYPE;
  const auto from = as<_dbl_mat>(*polygon);
  auto to = as<_dbl_mat>(*result);
  return pgndbl_render_region(&from, intrp_ptr, &to);
}

}  // extern "C"

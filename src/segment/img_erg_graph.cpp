// Region growing: the graph of the boundaries.
#include <algorithm>
#include <cstdint>
#include <utility>

#include "segment/img_erg.hpp"

namespace korvo {

// Horizontal edges line by line, then the vertical ones line by line from the left.
code boundary_graph::make(const growth_plan& plan) {
  const std::int64_t rows = plan.block_rows();
  const std::int64_t cols = plan.block_cols();
  const std::int64_t capacity = (rows - 1) * cols + rows * (cols - 1);
  TRY(edges_.make(capacity));
  TRY(vertices_.make((rows + 1) * (cols + 1)));
  TRY(lists_.make(rows * cols));
  std::fill_n(vertices_.data(), (rows + 1) * (cols + 1), boundary_vertex{{nothing, nothing, nothing, nothing}});
  std::fill_n(lists_.data(), rows * cols, edge_list{nothing, nothing});
  const auto region = [=](std::int64_t i, std::int64_t j) { return i * cols + j; };
  const auto vertex = [=](std::int64_t i, std::int64_t j) { return i * (cols + 1) + j; };
  for (std::int64_t i = 1; i < rows; ++i)
    for (std::int64_t j = 0; j < cols; ++j)
      add_edge(region(i - 1, j), region(i, j), vertex(i, j), vertex(i, j + 1), plan.grid_cols);
  for (std::int64_t j = 1; j < cols; ++j)
    for (std::int64_t i = 0; i < rows; ++i)
      add_edge(region(i, j - 1), region(i, j), vertex(i, j), vertex(i + 1, j), plan.grid_rows);
  const std::int64_t expected = (cols - 1) * plan.grid_rows * rows + (rows - 1) * cols * plan.grid_cols;
  return length_of_all() == expected ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_VALUE;
}

std::int64_t boundary_graph::length_of_all() const {
  std::int64_t sum = 0;
  for (std::int64_t i = 0; i < edge_count_; ++i) sum += edges_[i].length;
  return sum;
}

// Sizes are those of arrays that could be had, and so far below 32 bits.
void boundary_graph::add_edge(std::int64_t region_a, std::int64_t region_b, std::int64_t vertex_a,
                              std::int64_t vertex_b, std::int32_t length) {
  const auto number = [](std::int64_t x) { return static_cast<std::int32_t>(x); };
  const std::int32_t edge = number(edge_count_++);
  edges_[edge] = {{number(region_a), number(region_b)}, {number(vertex_a), number(vertex_b)}, {}, {}, {},
                  static_cast<std::uint32_t>(length)};
  for (const int side : {0, 1}) {
    append(edge, side);
    std::int32_t* const ends = vertices_[edges_[edge].vertex[side]].ends;
    *std::find(ends, ends + 4, nothing) = edge;
  }
}

// To the end of the list of the region on that side.
void boundary_graph::append(std::int32_t edge, int side) {
  boundary_edge& added = edges_[edge];
  const std::int32_t region = added.region[side];
  edge_list& list = lists_[region];
  added.previous[side] = list.last;
  added.next[side] = nothing;
  added.stamp[side] = next_stamp_++;
  if (list.last == nothing)
    list.first = edge;
  else
    edges_[list.last].next[edges_[list.last].side(region)] = edge;
  list.last = edge;
}

void boundary_graph::take_out(std::int32_t edge, int side) {
  const boundary_edge& gone = edges_[edge];
  const std::int32_t region = gone.region[side];
  const std::int32_t previous = gone.previous[side];
  const std::int32_t next = gone.next[side];
  (previous == nothing ? lists_[region].first : edges_[previous].next[edges_[previous].side(region)]) = next;
  (next == nothing ? lists_[region].last : edges_[next].previous[edges_[next].side(region)]) = previous;
}

// No vertex ends the edge any more.
void boundary_graph::detach(std::int32_t edge) {
  for (const std::int32_t at : edges_[edge].vertex)
    std::replace(vertices_[at].ends, vertices_[at].ends + 4, edge, nothing);
}

// Appends an edge to another at the vertex where both end. The joined one is gone from all lists.
void boundary_graph::concatenate(std::int32_t kept, std::int32_t joined, std::int32_t vertex,
                                 edge_order* order) {
  boundary_edge& grown = edges_[kept];
  const boundary_edge& gone = edges_[joined];
  const std::int32_t far = gone.vertex[gone.vertex[0] == vertex ? 1 : 0];
  grown.length += gone.length;
  grown.vertex[grown.vertex[0] == vertex ? 0 : 1] = far;
  std::fill_n(vertices_[vertex].ends, 4, nothing);
  std::replace(vertices_[far].ends, vertices_[far].ends + 4, joined, kept);
  for (const int side : {0, 1}) take_out(joined, side);
  order->remove(joined);
}

// Where two edges are left at a vertex they are one stretch: that of region a's list is kept. If both are of
// one list, that is the first of them; but `joined`, to which an edge of the other region has been joined,
// stands in the place of that one. Returns the edge that is kept, or nothing if no two are to be joined.
std::int32_t boundary_graph::join_at(std::int32_t vertex, std::int32_t a, std::int32_t b, std::int32_t joined,
                                     edge_order* order) {
  std::int32_t left[4];
  const std::int32_t* const ends = vertices_[vertex].ends;
  if (std::remove_copy(ends, ends + 4, left, nothing) - left != 2 || left[0] == left[1]) return nothing;
  const boundary_edge& first = edges_[left[0]];
  const boundary_edge& second = edges_[left[1]];
  if (first.region[0] == first.region[1]) return nothing;  // both are about to go
  bool swapped = false;
  if (first.borders(a) != second.borders(a)) {
    swapped = second.borders(a);
  } else if (joined == left[0] || joined == left[1]) {
    swapped = joined == left[0];
  } else {
    const std::int32_t region = first.borders(a) ? a : b;
    swapped = second.stamp[second.side(region)] < first.stamp[first.side(region)];
  }
  if (swapped) std::swap(left[0], left[1]);
  concatenate(left[0], left[1], vertex, order);
  return left[0];
}

// Moves what is left of b's list to the end of a's. What has become interior is in no list after that; it is
// chained by the first link, in order. Returns the first of these.
std::int32_t boundary_graph::move_list(std::int32_t a, std::int32_t b) {
  std::int32_t first_interior = nothing;
  std::int32_t* tail = &first_interior;
  for (std::int32_t i = lists_[b].first, next; i != nothing; i = next) {
    boundary_edge& moved = edges_[i];
    const int side = moved.side(b);
    next = moved.next[side];
    const bool interior = moved.region[1 - side] == a;
    if (interior) take_out(i, 1 - side);
    moved.region[side] = a;
    if (!interior) {
      append(i, side);
      continue;
    }
    *tail = i;
    tail = &moved.next[0];
  }
  *tail = nothing;
  lists_[b] = {nothing, nothing};
  return first_interior;
}

void boundary_graph::merge(std::int32_t edge, std::int32_t a, std::int32_t b, edge_order* order) {
  const boundary_edge& gone = edges_[edge];
  for (const int side : {0, 1}) take_out(edge, side);
  detach(edge);
  order->remove(edge);
  const std::int32_t joined = join_at(gone.vertex[0], a, b, nothing, order);
  if (!gone.closed()) (void)join_at(gone.vertex[1], a, b, joined, order);
  for (std::int32_t i = move_list(a, b), next; i != nothing; i = next) {
    next = edges_[i].next[0];
    detach(i);
    order->remove(i);
    for (const std::int32_t end : edges_[i].vertex) (void)join_at(end, a, a, nothing, order);
  }
}

bool boundary_graph::intact(std::int32_t region) const {
  std::int32_t previous = nothing;
  for (std::int32_t i = first_of(region); i != nothing; previous = i, i = next_of(i, region)) {
    const boundary_edge& each = edges_[i];
    const int side = each.side(region);
    if (!each.borders(region) || each.region[0] == each.region[1] || each.length == 0 ||
        each.previous[side] != previous)
      return false;
    if (previous != nothing && each.stamp[side] <= edges_[previous].stamp[edges_[previous].side(region)])
      return false;
    for (const std::int32_t end : each.vertex) {
      const boundary_vertex& at = vertices_[end];
      const auto own = std::count(at.ends, at.ends + 4, i);
      if (own != (each.closed() ? 2 : 1) || (at.degree() == 2 && own == 1)) return false;
    }
  }
  return lists_[region].last == previous;
}

}  // namespace korvo

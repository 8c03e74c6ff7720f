// The stages of region growing: polynomials of regions, the graph of their boundaries, the order of its edges.
#pragma once

#include <cstdint>

#include "core/code.hpp"
#include "core/temporary.hpp"
#include "korvos/core/mat_set.h"

namespace korvo {

// What to grow from, as the checks have left it: the grid divides the image, and there are two blocks or more.
struct growth_plan {
  const _mat_set* image;
  const double* weights;
  std::int32_t order;
  bool product_basis;
  std::int32_t grid_rows;
  std::int32_t grid_cols;

  [[nodiscard]] std::int32_t rows() const { return image->mats[0].nrow; }
  [[nodiscard]] std::int32_t cols() const { return image->mats[0].ncol; }
  [[nodiscard]] std::int32_t block_rows() const { return rows() / grid_rows; }
  [[nodiscard]] std::int32_t block_cols() const { return cols() / grid_cols; }
};

// The terms of the polynomials at a pixel.
class polynomial_basis {
 public:
  explicit polynomial_basis(const growth_plan& plan)
      : order_(plan.order), product_(plan.product_basis), rows_(plan.rows()), cols_(plan.cols()) {}

  [[nodiscard]] std::int64_t size() const {
    const std::int64_t n = order_;
    return product_ ? (n + 1) * (n + 1) : 2 * n + 1;
  }
  void terms_at(std::int64_t row, std::int64_t col, double* terms) const;

 private:
  std::int32_t order_;
  bool product_;
  double rows_;
  double cols_;
};

// Least-squares polynomials of all regions, one for each band, and what merging two of them costs.
class region_fits {
 public:
  explicit region_fits(const growth_plan& plan) : plan_(plan), basis_(plan) {}

  // Sums every block and fits its polynomials.
  [[nodiscard]] code make();

  // Region a takes in region b.
  [[nodiscard]] code absorb(std::int64_t a, std::int64_t b);

  // The rise in weighted squared error on merging a and b, for each pixel of the boundary that would go.
  [[nodiscard]] code cost(std::int64_t a, std::int64_t b, std::uint32_t length, double* cost) const {
    return cost_(*this, a, b, length, cost);
  }

  // Starts to load what cost() will read of a region first.
  void prefetch(std::int64_t region) const {
    __builtin_prefetch(values_.data() + region * stride_);
    __builtin_prefetch(values_.data() + region * stride_ + 8);
  }

  [[nodiscard]] const growth_plan& plan() const { return plan_; }
  [[nodiscard]] const polynomial_basis& basis() const { return basis_; }
  [[nodiscard]] std::int64_t size() const { return size_; }
  [[nodiscard]] double* coefficients(std::int64_t region) const {
    return values_.data() + region * stride_ + size_ * size_;
  }

 private:
  friend struct fit_methods;
  using cost_form = code (*)(const region_fits& fits, std::int64_t a, std::int64_t b, std::uint32_t length,
                             double* cost);

  growth_plan plan_;
  polynomial_basis basis_;
  std::int64_t size_ = 0;    // terms of a polynomial
  std::int64_t stride_ = 0;  // of a region: gram, then coefficients and moments of each band
  scratch<double> values_;
  scratch<double> work_;  // a factor and three vectors
  cost_form cost_ = nullptr;
};

// Edges by ascending cost, those of one cost first in, first out: a heap on (cost, number of the entry).
class edge_order {
 public:
  [[nodiscard]] code make(std::int64_t capacity);
  void insert(std::int32_t edge, double cost);
  void remove(std::int32_t edge);
  void renew(std::int32_t edge, double cost);  // as remove and insert

  [[nodiscard]] bool empty() const { return count_ == 0; }
  [[nodiscard]] std::int32_t count() const { return count_; }
  [[nodiscard]] std::int32_t cheapest() const { return heap_[0].edge; }
  [[nodiscard]] double cost(std::int32_t edge) const;

 private:
  struct entry {
    std::uint64_t key;
    std::int64_t number;
    std::int32_t edge;

    bool before(const entry& other) const { return key != other.key ? key < other.key : number < other.number; }
  };
  void put(std::int32_t place, const entry& what);
  void settle(std::int32_t place, const entry& what);

  scratch<entry> heap_;
  scratch<std::int32_t> place_;  // of each edge in the heap
  std::int32_t count_ = 0;
  std::int64_t next_number_ = 0;
};

constexpr std::int32_t nothing = -1;

// An unbroken stretch of boundary between two regions. It is in the list of each, by the link of that side.
struct boundary_edge {
  std::int32_t region[2];
  std::int32_t vertex[2];  // the same twice when the boundary is closed
  std::int32_t previous[2];
  std::int32_t next[2];
  std::int64_t stamp[2];  // ascends along a list
  std::uint32_t length;   // in pixels

  [[nodiscard]] bool closed() const { return vertex[0] == vertex[1]; }
  [[nodiscard]] bool borders(std::int32_t which) const { return region[0] == which || region[1] == which; }
  [[nodiscard]] int side(std::int32_t which) const { return region[1] == which ? 1 : 0; }
};

// A corner of blocks: the edges that end here, a closed one twice. An edge that passes does not end.
struct boundary_vertex {
  std::int32_t ends[4];

  [[nodiscard]] int degree() const { return (ends[0] >= 0) + (ends[1] >= 0) + (ends[2] >= 0) + (ends[3] >= 0); }
};

// The boundaries of all regions as a planar graph: one edge for each unbroken stretch between two regions. A
// stretch ends at the frame of the image and where three or four boundaries meet.
class boundary_graph {
 public:
  // The edges of a grid of single blocks. No edge is in the order yet.
  [[nodiscard]] code make(const growth_plan& plan);

  // Region a takes in region b, of which `edge` is a boundary.
  void merge(std::int32_t edge, std::int32_t a, std::int32_t b, edge_order* order);

  [[nodiscard]] std::int64_t edge_count() const { return edge_count_; }  // at the start
  [[nodiscard]] std::int64_t length_of_all() const;                      // at the start
  [[nodiscard]] const boundary_edge& edge(std::int64_t i) const { return edges_[i]; }
  [[nodiscard]] const boundary_vertex& vertex(std::int64_t i) const { return vertices_[i]; }
  [[nodiscard]] std::int32_t first_of(std::int64_t region) const { return lists_[region].first; }
  [[nodiscard]] std::int32_t next_of(std::int32_t edge, std::int32_t region) const {
    return edges_[edge].next[edges_[edge].side(region)];
  }

  // Whether all that concerns the edges of a region is as it must be: for tests, and for every merge of a build
  // for debugging.
  [[nodiscard]] bool intact(std::int32_t region) const;

 private:
  struct edge_list {
    std::int32_t first;
    std::int32_t last;
  };
  void add_edge(std::int64_t region_a, std::int64_t region_b, std::int64_t vertex_a, std::int64_t vertex_b,
                std::int32_t length);
  void append(std::int32_t edge, int side);
  void take_out(std::int32_t edge, int side);
  void detach(std::int32_t edge);
  std::int32_t join_at(std::int32_t vertex, std::int32_t a, std::int32_t b, std::int32_t joined,
                       edge_order* order);
  void concatenate(std::int32_t kept, std::int32_t joined, std::int32_t vertex, edge_order* order);
  std::int32_t move_list(std::int32_t a, std::int32_t b);

  std::int64_t edge_count_ = 0;
  std::int64_t next_stamp_ = 0;
  scratch<boundary_edge> edges_;
  scratch<boundary_vertex> vertices_;
  scratch<edge_list> lists_;
};

// All of it at one moment.
class region_growth {
 public:
  explicit region_growth(const growth_plan& plan) : fits(plan) {}

  // Each block a region of its own.
  [[nodiscard]] code begin();

  // Merges the two regions at the cheapest edge.
  [[nodiscard]] code merge();

  region_fits fits;
  boundary_graph graph;
  edge_order order;
  scratch<std::int32_t> id;  // of each block: itself, or a lower block of its region
  std::int32_t region_count = 0;
  double scale = 0.0;                // the cost of the cheapest edge
  std::int32_t boundary_length = 0;  // at the start that of all edges

 private:
  void fetch_next(std::int32_t edge, std::int32_t region) const;
};

// What is wanted; null where it is not.
struct growth_outputs {
  _mat_set* approximation;
  _univ_mat* boundaries;
  _univ_mat* labels;
  _mat_set* coefficients;
  std::int32_t* region_count;
  double* final_scale;
};

// Writes all outputs, or none. The ids of the blocks are used up.
[[nodiscard]] code write_growth(const region_growth& growth, void* intrp_ptr, const growth_outputs& out);

}  // namespace korvo

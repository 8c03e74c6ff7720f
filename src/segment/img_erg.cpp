// Region growing: checks, the loop of merges, sets and single images.
#include "korvos/segment/img_erg.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <numeric>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/valid.hpp"
#include "segment/img_erg.hpp"

namespace korvo {

code region_growth::begin() {
  const std::int64_t blocks = std::int64_t{fits.plan().block_rows()} * fits.plan().block_cols();
  TRY(id.make(blocks));
  TRY(graph.make(fits.plan()));
  TRY(order.make(graph.edge_count()));
  TRY(fits.make());
  std::iota(id.data(), id.data() + blocks, 0);
  for (std::int64_t i = 0; i < graph.edge_count(); ++i) {
    const boundary_edge& edge = graph.edge(i);
    double cost = 0.0;
    TRY(fits.cost(edge.region[0], edge.region[1], edge.length, &cost));
    order.insert(static_cast<std::int32_t>(i), cost);
  }
  region_count = static_cast<std::int32_t>(blocks);
  scale = order.cost(order.cheapest());
  boundary_length = static_cast<std::int32_t>(graph.length_of_all());
  return KORVO_ERR_OK;
}

// A list lies anywhere in memory: what its next edge needs is fetched while this one is costed.
void region_growth::fetch_next(std::int32_t edge, std::int32_t region) const {
  if (edge == nothing) return;
  const boundary_edge& next = graph.edge(edge);
  fits.prefetch(next.region[1 - next.side(region)]);
  if (const std::int32_t after = graph.next_of(edge, region); after != nothing)
    __builtin_prefetch(&graph.edge(after));
}

code region_growth::merge() {
  const std::int32_t edge = order.cheapest();
  const std::int32_t a = std::min(graph.edge(edge).region[0], graph.edge(edge).region[1]);
  const std::int32_t b = std::max(graph.edge(edge).region[0], graph.edge(edge).region[1]);
  id[b] = a;
  TRY(fits.absorb(a, b));
  graph.merge(edge, a, b, &order);
  for (std::int32_t i = graph.first_of(a); i != nothing; i = graph.next_of(i, a)) {
    const boundary_edge& each = graph.edge(i);
    fetch_next(graph.next_of(i, a), a);
    double cost = 0.0;
    TRY(fits.cost(each.region[0], each.region[1], each.length, &cost));
    order.renew(i, cost);
  }
  --region_count;
#if !defined(NDEBUG) && !defined(__OPTIMIZE__)  // it would double the time
  if (!graph.intact(a)) return KORVO_ERR_ILLEGAL_VALUE;
#endif
  if (order.empty()) return KORVO_ERR_OUT_OF_BOUNDS;
  scale = order.cost(order.cheapest());
  // kept: it goes down by the edge that comes next, not by what has gone
  boundary_length = difference(boundary_length, static_cast<std::int32_t>(graph.edge(order.cheapest()).length));
  return KORVO_ERR_OK;
}

namespace {

// The arguments, in the order in which they are looked at.
struct growth_call {
  const _mat_set* image;
  const _univ_mat* weights;
  std::int32_t order;
  std::uint8_t product_basis;
  std::int32_t grid_rows;
  std::int32_t grid_cols;
  std::int32_t minimum_regions;
  double maximum_scale;
};

code check_inputs(const growth_call& in) {
  TRY(matset_verify_allsame(in.image));
  TRY(dispatch(in.image->mats[0].type, real_records{}, []<class M> { return KORVO_ERR_OK; }));
  if (in.weights->type != KORVO_DOUBLE) return KORVO_ERR_ILLEGAL_TYPE;
  TRY(members_valid({in.image}));
  TRY(valid(in.weights));
  if (in.weights->nelem != in.image->nmat) return KORVO_ERR_ILLEGAL_VALUE;
  const auto* const weights = static_cast<const double*>(in.weights->data);
  double sum = 0.0;
  for (std::int32_t b = 0; b < in.image->nmat; ++b) {
    if (!(weights[b] >= 0.0)) return KORVO_ERR_ILLEGAL_VALUE;
    sum += weights[b];
  }
  const bool one = std::fabs(sum - 1.0) <= 1e-10 * (std::fabs(sum) + 1.0);
  return one && std::isfinite(sum) ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_VALUE;
}

code check_output(const _univ_mat* out, _korvo_type type) {
  if (!out) return KORVO_ERR_OK;
  TRY(valid(out));
  return out->type == type ? KORVO_ERR_OK : KORVO_ERR_ILLEGAL_TYPE;
}

// An output may lie in the image, of which no pixel is read any more when it is written.
code check_outputs(const _mat_set* image, const growth_outputs& out) {
  if (out.approximation) {
    TRY(matset_verify_aresame(image, out.approximation));
    TRY(members_valid({out.approximation}));
  }
  TRY(check_output(out.boundaries, KORVO_UINT8));
  TRY(check_output(out.labels, KORVO_SINT32));
  for (const _univ_mat* each : {out.boundaries, out.labels})
    if (each && !same_shape(each, image->mats)) return KORVO_ERR_ILLEGAL_SIZE;
  if (shares_data_with_any(out.boundaries, {out.labels})) return KORVO_ERR_ILLEGAL_ADDRESS;
  for (std::int32_t k = 0; out.approximation && k < image->nmat; ++k)
    if (shares_data_with_any(out.approximation->mats + k, {out.boundaries, out.labels}))
      return KORVO_ERR_ILLEGAL_ADDRESS;
  return KORVO_ERR_OK;
}

code check_grid(const growth_call& in) {
  if (!(in.maximum_scale >= 0.0) || in.minimum_regions < 2 || in.order < 0) return KORVO_ERR_ILLEGAL_VALUE;
  const std::int64_t least = std::int64_t{in.order} + 1;
  if (in.grid_rows < least || in.grid_cols < least) {
    // kept: the message is made and goes no further
    char message[80];
    const int written = std::snprintf(
        message, sizeof message, "the initial region grid sizes must be %ld or more", static_cast<long>(least));
    return written > 0 ? KORVO_ERR_ILLEGAL_SIZE : KORVO_ERR_IO;
  }
  const _univ_mat& first = in.image->mats[0];
  if (first.nrow % in.grid_rows != 0 || first.ncol % in.grid_cols != 0 ||
      (first.nrow == in.grid_rows && first.ncol == in.grid_cols))
    return KORVO_ERR_ILLEGAL_SIZE;
  return KORVO_ERR_OK;
}

code grow(const growth_call& in, void* intrp_ptr, const growth_outputs& out) {
  if (!in.image || !in.weights || !(out.approximation || out.boundaries || out.labels || out.coefficients))
    return KORVO_ERR_NULL_POINTER;
  TRY(check_inputs(in));
  TRY(check_outputs(in.image, out));
  TRY(check_grid(in));

  region_growth growth({in.image, static_cast<const double*>(in.weights->data), in.order, in.product_basis != 0,
                        in.grid_rows, in.grid_cols});
  TRY(growth.begin());
  const double blocks = growth.region_count;
  checkpoint cost(intrp_ptr);
  TRY(cost.add(80.0 * blocks + 40.0 + 30.0));
  while (growth.region_count > in.minimum_regions && growth.scale < in.maximum_scale) {
    TRY(growth.merge());
    TRY(cost.add(120.0 * blocks + 100.0));
  }
  return write_growth(growth, intrp_ptr, out);
}

// A matrix as a set of one member, and null as null.
class one_member {
 public:
  explicit one_member(const _univ_mat* mat) {
    if (!mat) return;
    member_ = *mat;
    present_ = true;
  }
  one_member(const one_member&) = delete;
  one_member& operator=(const one_member&) = delete;
  _mat_set* set() { return present_ ? &set_ : nullptr; }

 private:
  std::int32_t one_ = 1;
  _univ_mat member_{};
  _mat_set set_ = {1, &one_, 1, &member_};
  bool present_ = false;
};

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code imgset_region_grow_klm(const _mat_set* image, const _univ_mat* weights, int32_t order,
                            uint8_t product_basis, int32_t grid_rows, int32_t grid_cols,
                            int32_t minimum_regions, double maximum_scale, void* intrp_ptr,
                            _mat_set* approximation, _univ_mat* boundaries, _univ_mat* labels,
                            _mat_set* coefficients, int32_t* region_count, double* final_scale) {
  return grow({image, weights, order, product_basis, grid_rows, grid_cols, minimum_regions, maximum_scale},
              intrp_ptr, {approximation, boundaries, labels, coefficients, region_count, final_scale});
}

code imguniv_region_grow_klm(const _univ_mat* image, int32_t order, uint8_t product_basis, int32_t grid_rows,
                             int32_t grid_cols, int32_t minimum_regions, double maximum_scale, void* intrp_ptr,
                             _univ_mat* approximation, _univ_mat* boundaries, _univ_mat* labels,
                             _univ_mat* coefficients, int32_t* region_count, double* final_scale) {
  double one = 1.0;
  const _univ_mat weights = {1, 1, 1, &one, KORVO_DOUBLE};
  one_member image_set(image);
  one_member approximation_set(approximation);
  _mat_set made{};
  TRY(grow(
      {image_set.set(), &weights, order, product_basis, grid_rows, grid_cols, minimum_regions, maximum_scale},
      intrp_ptr,
      {approximation_set.set(), boundaries, labels, coefficients ? &made : nullptr, region_count,
       final_scale}));
  if (!coefficients) return KORVO_ERR_OK;
  *coefficients = made.mats[0];
  return matset_free(&made);
}

}  // extern "C"

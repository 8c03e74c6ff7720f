// Region growing: the order of the edges.
#include <bit>
#include <cmath>
#include <cstdint>

#include "segment/img_erg.hpp"

namespace korvo {
namespace {

// Costs are not negative: as bits they are in their own order. NaN is the last of all.
std::uint64_t key_of(double cost) {
  return std::isnan(cost) ? UINT64_MAX : std::bit_cast<std::uint64_t>(cost + 0.0);
}

}  // namespace

code edge_order::make(std::int64_t capacity) {
  TRY(heap_.make(capacity));
  return place_.make(capacity);
}

double edge_order::cost(std::int32_t edge) const { return std::bit_cast<double>(heap_[place_[edge]].key); }

void edge_order::put(std::int32_t place, const entry& what) {
  heap_[place] = what;
  place_[what.edge] = place;
}

// Puts an entry where it belongs, from a free place on up or down.
void edge_order::settle(std::int32_t place, const entry& what) {
  while (place > 0 && what.before(heap_[(place - 1) / 2])) {
    const std::int32_t parent = (place - 1) / 2;
    put(place, heap_[parent]);
    place = parent;
  }
  for (std::int64_t child = 2 * std::int64_t{place} + 1; child < count_; child = 2 * std::int64_t{place} + 1) {
    if (child + 1 < count_ && heap_[child + 1].before(heap_[child])) ++child;
    if (!heap_[child].before(what)) break;
    put(place, heap_[child]);
    place = static_cast<std::int32_t>(child);
  }
  put(place, what);
}

void edge_order::insert(std::int32_t edge, double cost) {
  const std::int32_t place = count_++;
  settle(place, {key_of(cost), next_number_++, edge});
}

void edge_order::remove(std::int32_t edge) {
  const entry last = heap_[--count_];
  if (last.edge != edge) settle(place_[edge], last);
}

void edge_order::renew(std::int32_t edge, double cost) {
  settle(place_[edge], {key_of(cost), next_number_++, edge});
}

}  // namespace korvo

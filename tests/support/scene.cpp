#include "tests/support/scene.hpp"

#include <algorithm>
#include <cstring>

#include "core/dispatch.hpp"

using korvo::all_records;
using korvo::dispatch;

namespace {

// Calls call.operator()<M>(), which makes a matrix, for the record of the type.
template <class Call>
_univ_mat of_type(_korvo_type type, Call call) {
  _univ_mat mat{};
  (void)dispatch(type, all_records{}, [&]<class M> {
    mat = static_cast<const korvo::matrix<M>*>(call.template operator()<M>())->universal();
    return KORVO_ERR_OK;
  });
  return mat;
}

}  // namespace

_univ_mat* scene::in(_korvo_type type, std::int32_t rows, std::int32_t cols, double low, double high) {
  _univ_mat* const held = hold<_univ_mat>(of_type(type, [&]<class M> { return in<M>(rows, cols, low, high); }));
  keep(held, sizeof *held);
  return held;
}

_univ_mat* scene::out(_korvo_type type, std::int32_t rows, std::int32_t cols) {
  return hold<_univ_mat>(of_type(type, [&]<class M> { return out<M>(rows, cols); }));
}

_mat_set* scene::out_set(const std::vector<_univ_mat*>& members, std::vector<std::int32_t> dims) {
  if (dims.empty()) dims = {static_cast<std::int32_t>(members.size())};
  auto* const held_dims = hold<std::vector<std::int32_t>>(std::move(dims));
  auto* const mats = hold<std::vector<_univ_mat>>();
  for (const _univ_mat* member : members) mats->push_back(*member);
  return hold<_mat_set>(_mat_set{static_cast<std::int32_t>(held_dims->size()), held_dims->data(),
                                 static_cast<std::int32_t>(mats->size()), mats->data()});
}

_mat_set* scene::in_set(const std::vector<_univ_mat*>& members, std::vector<std::int32_t> dims) {
  _mat_set* const set = out_set(members, std::move(dims));
  keep(set, sizeof *set);
  keep(set->dims, sizeof(std::int32_t) * static_cast<std::size_t>(set->ndim));
  keep(set->mats, sizeof(_univ_mat) * static_cast<std::size_t>(set->nmat));
  return set;
}

void scene::begin(_mat_set& set) {
  const std::int32_t dims[] = {2, 3};
  if (matset_malloc(&set, 2, dims) == KORVO_ERR_OK) std::fill_n(set.mats, set.nmat, _univ_mat{});
}

FILE* scene::stream(const std::string& text) {
  auto* const held = streamed = hold<fault_stream>(text.substr(0, most_text), failing_call);
  looks_.push_back([=](byte_hash& hash) { hash.add(held->text().data(), held->text().size()); });
  return held->get();
}

void scene::keep(const void* data, std::size_t size) {
  const auto* const first = static_cast<const unsigned char*>(data);
  kept_.push_back({data, {first, first + size}});
}

bool scene::inputs_are_unchanged() const {
  return std::all_of(kept_.begin(), kept_.end(), [](const bytes& input) {
    return std::memcmp(input.data, input.before.data(), input.before.size()) == 0;
  });
}

std::uint64_t scene::results() {
  byte_hash hash;
  for (const auto& look : looks_) look(hash);
  return hash.value();
}

void scene::look_at(const _univ_mat& mat, bool filled, byte_hash& hash) {
  (void)dispatch(mat.type, all_records{}, [&]<class M> {
    look_at(korvo::as<M>(mat), filled, hash);
    return KORVO_ERR_OK;
  });
}

void scene::look_at(const _mat_set& set, bool filled, byte_hash& hash) {
  hash.add(set.dims, sizeof(std::int32_t) * static_cast<std::size_t>(set.ndim));
  for (std::int32_t k = 0; filled && k < set.nmat; ++k) look_at(set.mats[k], filled, hash);
}

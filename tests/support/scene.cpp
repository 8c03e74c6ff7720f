#include "tests/support/scene.hpp"

#include <cstring>
#include <numeric>

#include "core/dispatch.hpp"

using korvo::all_records;
using korvo::dispatch;

scene::~scene() {
  for (auto end = ends_.rbegin(); end != ends_.rend(); ++end) (*end)();
}

_univ_mat* scene::in(_korvo_type type, std::int32_t rows, std::int32_t cols) {
  _univ_mat mat{};
  (void)dispatch(type, all_records{}, [&]<class M> {
    mat = static_cast<const korvo::matrix<M>*>(in<M>(rows, cols))->universal();
    return KORVO_ERR_OK;
  });
  _univ_mat* const held = hold(mat);
  keep(held, sizeof *held);
  return held;
}

_univ_mat* scene::out(_korvo_type type, std::int32_t rows, std::int32_t cols) {
  _univ_mat mat{};
  (void)dispatch(type, all_records{}, [&]<class M> {
    mat = static_cast<const korvo::matrix<M>*>(out<M>(rows, cols))->universal();
    return KORVO_ERR_OK;
  });
  return hold(mat);
}

_mat_set* scene::make_set(std::vector<_univ_mat*> members, std::vector<std::int32_t> dims) {
  if (dims.empty()) dims = {static_cast<std::int32_t>(members.size())};
  auto* const held_dims = hold(std::move(dims));
  auto* const mats = hold(std::vector<_univ_mat>{});
  for (const _univ_mat* member : members) mats->push_back(*member);
  return hold(_mat_set{static_cast<std::int32_t>(held_dims->size()), held_dims->data(),
                       static_cast<std::int32_t>(mats->size()), mats->data()});
}

_mat_set* scene::in_set(std::vector<_univ_mat*> members, std::vector<std::int32_t> dims) {
  _mat_set* const set = make_set(std::move(members), std::move(dims));
  keep(set, sizeof *set);
  keep(set->dims, sizeof(std::int32_t) * static_cast<std::size_t>(set->ndim));
  keep(set->mats, sizeof(_univ_mat) * static_cast<std::size_t>(set->nmat));
  return set;
}

_mat_set* scene::out_set(std::vector<_univ_mat*> members, std::vector<std::int32_t> dims) {
  return make_set(std::move(members), std::move(dims));
}

FILE* scene::reading(std::string text) {
  auto* const held = hold(std::move(text));
  FILE* const stream = fmemopen(held->data(), held->size(), "r");
  ends_.push_back([=] { (void)std::fclose(stream); });
  return stream;
}

FILE* scene::writing() {
  FILE* const stream = std::tmpfile();
  ends_.push_back([=] { (void)std::fclose(stream); });
  looks_.push_back([=](byte_hash& hash) {
    std::rewind(stream);
    for (int c = std::fgetc(stream); c != EOF; c = std::fgetc(stream)) hash.add(&c, 1);
  });
  return stream;
}

void scene::keep(const void* data, std::size_t size) {
  const auto* const first = static_cast<const unsigned char*>(data);
  kept_.push_back({data, {first, first + size}});
}

void scene::result(const void* data, std::size_t size) {
  looks_.push_back([=](byte_hash& hash) { hash.add(data, size); });
}

bool scene::inputs_are_unchanged() const {
  for (const bytes& input : kept_)
    if (std::memcmp(input.data, input.before.data(), input.before.size()) != 0) return false;
  return true;
}

std::uint64_t scene::results() {
  byte_hash hash;
  for (const auto& look : looks_) look(hash);
  return hash.value();
}

void scene::look_at(const _univ_mat& mat, byte_hash& hash) {
  (void)dispatch(mat.type, all_records{}, [&]<class M> {
    look_at(korvo::as<M>(mat), hash);
    return KORVO_ERR_OK;
  });
}

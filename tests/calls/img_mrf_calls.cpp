#include "korvos/classify/img_mrf.h"
#include "tests/calls/calls.hpp"

namespace {

constexpr std::int32_t frames = 3, classes = 3, rows = 5, cols = 13;

template <class Make>
_mat_set* set_of(scene& s, std::int32_t n, Make make, std::vector<std::int32_t> dims = {}) {
  std::vector<_univ_mat*> members;
  for (std::int32_t i = 0; i < n; ++i) members.push_back(make());
  return s.in_set(members, std::move(dims));
}

// What the routines read and write, for some bands of one type.
struct sequence {
  sequence(scene& s, _korvo_type type, std::int32_t bands)
      : images(set_of(s, frames * bands, [&] { return s.in(type, rows, cols); }, {frames, bands})),
        labels(set_of(s, frames, [&] { return s.in(KORVO_SINT32, rows, cols, -2.0, classes); })),
        old(set_of(s, classes, [&] { return s.in(KORVO_DOUBLE, bands + 1, bands); })),
        distances(set_of(s, classes, [&] { return s.in(KORVO_DOUBLE, rows, cols); })),
        kernels(set_of(s, 3, [&] { return s.in(KORVO_DOUBLE, 3, 3, 0.0, 2.0); })),
        flags(s.in<_s32_mat>(frames, 1, 0.0, 4.0)),
        old_counts(s.in<_s32_mat>(1, classes)),
        statistics(set_of(s, classes, [&] { return s.out(KORVO_DOUBLE, bands + 1, bands); })),
        found(set_of(s, classes, [&] { return s.out(KORVO_DOUBLE, rows, cols); })),
        kept(set_of(s, frames, [&] { return s.out(KORVO_SINT32, rows, cols); })),
        counts(s.out<_s32_mat>(1, classes)),
        result(s.out<_s32_mat>(rows, cols)) {}

  const _mat_set *images, *labels, *old, *distances, *kernels;
  const _s32_mat *flags, *old_counts;
  _mat_set *statistics, *found, *kept;
  _s32_mat *counts, *result;
};

using call_on = _korvo_errcode (*)(const sequence& q, void* host);
call_row sequence_row(const char* name, call_on call, _korvo_type type = KORVO_UINT8, std::int32_t bands = 2) {
  return {name, [=](scene& s) -> ready_call {
            return [call, q = sequence(s, type, bands)](void* host) { return call(q, host); };
          }};
}

#define CALL(name, ...) #name, [](const sequence& q, void* host) -> _korvo_errcode { return name(__VA_ARGS__); }

}  // namespace

call_rows img_mrf_calls() {
  return {sequence_row(CALL(imgset_classify_gaussian_estimate, q.images, q.labels, q.flags, host, q.counts,
                            q.statistics)),
          sequence_row(CALL(imgset_classify_gaussian_update, q.images, q.labels, q.old, q.flags, q.old_counts,
                            host, q.counts, q.statistics)),
          sequence_row(CALL(imgset_classify_gaussian_distance, q.images, q.old, 1, host, q.found), KORVO_FLOAT),
          sequence_row(CALL(imgset_classify_markov_random_field, q.labels, q.kernels, q.distances, 1, host,
                            q.found, q.result)),
          sequence_row(CALL(imgset_classify_threshold_distance, q.distances, q.labels, 2, 0.5, host, q.kept))};
}

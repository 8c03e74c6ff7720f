// A host that answers polls as a test wants.
#pragma once

#include <climits>

#include "korvos/core/ut_intrp.h"

class fake_host {
 public:
  // Answers `answer` at its k-th poll and 0 at all others; with k = 0 it answers `answer` always.
  explicit fake_host(int k = INT_MAX, int32_t answer = 1) : stop_at_(k), answer_(answer) {
    korvo_host_init(&host_, poll, this);
  }
  fake_host& operator=(fake_host&&) = delete;

  void* intrp_ptr() { return &host_; }
  int polls() const { return polls_; }

 private:
  static int32_t poll(void* object, int32_t one) {
    auto* const self = static_cast<fake_host*>(korvo_host_context(object));
    if (one != 1) return 1;  // a routine that asks anything else is stopped, and its test fails
    ++self->polls_;
    return self->stop_at_ == 0 || self->polls_ == self->stop_at_ ? self->answer_ : 0;
  }

  korvo_host host_{};
  int stop_at_;
  int32_t answer_;
  int polls_ = 0;
};

// Sets the exported threshold, and puts it back.
class threshold {
 public:
  explicit threshold(double value) : before_(korvo_interrupt_threshold) { korvo_interrupt_threshold = value; }
  threshold& operator=(threshold&&) = delete;
  ~threshold() { korvo_interrupt_threshold = before_; }

 private:
  double before_;
};

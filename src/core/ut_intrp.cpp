// The interrupt checkpoint: the one place where a calculation meets its host.
#include "korvos/core/ut_intrp.h"

#include <atomic>
#include <cstddef>
#include <cstring>

extern "C" {
double korvo_interrupt_threshold = 0.0;
}

namespace {

constexpr double default_threshold = 10000000.0;

// The threshold, settled by whoever asks first; a host may write it meanwhile.
double settled_threshold() {
  const std::atomic_ref shared(korvo_interrupt_threshold);
  double threshold = shared.load(std::memory_order_relaxed);
  if (threshold == 0.0) {
    threshold = default_threshold;
    shared.store(threshold, std::memory_order_relaxed);
  }
  return threshold;
}

// The index-th pointer at an address, whatever types the host gave the fields there.
void* pointer_at(const void* address, int index) {
  void* pointer = nullptr;
  std::memcpy(&pointer, static_cast<const char*>(address) + static_cast<std::size_t>(index) * sizeof pointer,
              sizeof pointer);
  return pointer;
}

// Calls the eleventh operation of the host's object. The table is loaded by hand: the layout is all that is
// known of the host, which need not be C++.
bool poll_says_stop(void* intrp_ptr) {
  constexpr int object_field = 1;
  constexpr int poll_interrupt = 10;
  void* const object = pointer_at(intrp_ptr, object_field);
  if (!object) return false;
  const auto poll = reinterpret_cast<korvo_poll_function>(pointer_at(pointer_at(object, 0), poll_interrupt));
  return poll(object, 1) == 1;
}

}  // namespace

extern "C" uint8_t korvo_interrupt(double cost, double* next_checkpoint, void* intrp_ptr) {
  const double threshold = settled_threshold();
  if (next_checkpoint && cost > *next_checkpoint) *next_checkpoint += threshold;  // once, however far ahead
  return intrp_ptr && poll_says_stop(intrp_ptr) ? 1 : 0;
}

// The cost tally and the next checkpoint of one routine.
#pragma once

#include <algorithm>
#include <cstdint>

#include "core/code.hpp"
#include "korvos/core/ut_intrp.h"

namespace korvo {

// Lives in one routine and is never handed to a callee: only intrp_ptr is.
class checkpoint {
 public:
  explicit checkpoint(void* intrp_ptr, double tally = 0.0) : host_(intrp_ptr), tally_(tally) {}

  // After a piece of work: adds its cost, and polls if a poll is due.
  [[nodiscard]] code add(double cost) { return set(tally_ + cost); }

  // The same for routines that set the tally instead of adding to it.
  [[nodiscard]] code set(double cost) {
    tally_ = cost;
    return test();
  }

  // Adds without a test, where the test comes later.
  void count(double cost) { tally_ += cost; }

  [[nodiscard]] code test() {
    return next_ < tally_ && korvo_interrupt(tally_, &next_, host_) != 0 ? KORVO_ERR_INTERRUPT : KORVO_ERR_OK;
  }

  // How many of the next steps of this cost a kernel may do in one strip, at least 1 and at most limit: all but
  // the last of them certainly pass without a poll, so add_strip() polls just where single steps would. No sum
  // up to `end` rounds up by as much as end * 2^-52, which is added to the cost of a step; the last factor
  // covers the division.
  [[nodiscard]] std::int32_t strip(double cost, std::int32_t limit) const {
    if (cost == 0.0) return next_ < tally_ ? 1 : limit;
    const double end = std::min(next_, tally_ + cost * limit);
    const double unpolled = (end - tally_) / (cost + end * 0x1p-52) * (1.0 - 1e-12);
    if (!(unpolled >= 1.0)) return 1;
    return unpolled < limit - 1 ? static_cast<std::int32_t>(unpolled) + 1 : limit;
  }

  // Work that is done in bulk: polls as often as `steps` single steps would, each of a cost that is a whole
  // number, as the tally must be, so that a product is as exact as a sum.
  [[nodiscard]] code add_steps(double cost, std::int64_t steps) {
    while (steps > 0) {
      const double all = tally_ + cost * static_cast<double>(steps);
      if (all <= next_) return tally_ = all, KORVO_ERR_OK;
      const std::int32_t some =
          strip(cost, static_cast<std::int32_t>(std::min<std::int64_t>(steps, INT32_MAX)));
      TRY(add(cost * some));
      steps -= some;
    }
    return KORVO_ERR_OK;
  }

  // The same for rounds of such steps, after each of which something is counted without a test.
  [[nodiscard]] code add_rounds(std::int64_t rounds, double cost, std::int64_t steps, double after) {
    for (; rounds > 0; --rounds) {
      const double round = cost * static_cast<double>(steps) + after;
      const double all = tally_ + round * static_cast<double>(rounds);
      if (all <= next_) return tally_ = all, KORVO_ERR_OK;
      TRY(add_steps(cost, steps));
      count(after);
    }
    return KORVO_ERR_OK;
  }

  // After a strip: adds the cost of each step, and polls after the last if a poll is due.
  [[nodiscard]] code add_strip(double cost, std::int32_t steps) {
    for (std::int32_t i = 1; i < steps; ++i) tally_ += cost;
    return add(cost);
  }

 private:
  void* host_;
  double tally_;
  double next_ = 0.0;
};

}  // namespace korvo

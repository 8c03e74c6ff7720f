// A host of our own, and a long call.
#include "stop.hpp"

#include <chrono>
#include <cstdio>

#include "words.hpp"

namespace demo {
namespace {

class stopwatch {
 public:
  double elapsed() const {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start_).count();
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

struct patience {
  double limit;
  stopwatch watch;
  int polls = 0;
};

// What the library asks from within its work: 1 stops the call.
std::int32_t poll(void* object, std::int32_t /*one*/) {
  auto* const mine = static_cast<patience*>(korvo_host_context(object));
  ++mine->polls;
  return mine->watch.elapsed() >= mine->limit ? 1 : 0;
}

}  // namespace

void show_stop(double milliseconds) {
  const matrix large = filled(4000, 1000, 1.0);
  const matrix kernel = filled(201, 201, 1.0 / (201.0 * 201.0));
  matrix out(large.nrow, large.ncol);

  std::printf("\na correlation of %d x %d with %d x %d, to be stopped after %.0f ms\n", large.nrow, large.ncol,
              kernel.nrow, kernel.ncol, milliseconds);
  std::fflush(stdout);
  patience mine{milliseconds, {}};
  korvo_host host;
  const _korvo_errcode code =
      imguniv_correlate(&large, &kernel, SIG_BOUNDARY_REFLECT, korvo_host_init(&host, poll, &mine), &out);
  const double took = mine.watch.elapsed();
  const char* message = nullptr;
  (void)korvo_err_string(code, &message);
  std::printf("returned \"%s\" after %.0f ms; polls: %d\n", message, took, mine.polls);
  if (code != KORVO_ERR_INTERRUPT) check(code);
}

}  // namespace demo

// The words of the benchmarks: registering a workload by family, size and who does it.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

#include "korvos/core/ut_err.h"
#include "tests/support/matrix.hpp"

namespace bench {

// A routine that fails measures nothing.
inline void check(_korvo_errcode result) {
  if (result == KORVO_ERR_OK) return;
  const char* text = nullptr;
  (void)korvo_err_string(result, &text);
  std::fprintf(stderr, "a benchmark failed: %s\n", text);
  std::exit(1);
}

// Registers the work that prepare() returns: prepare makes the data anew for each run, the work is timed.
template <class Prepare>
void add(const std::string& family, long size, const std::string& who, Prepare prepare) {
  const std::string name = family + "/" + std::to_string(size) + "/" + who;
  benchmark::RegisterBenchmark(name.c_str(), [prepare](benchmark::State& state) {
    auto work = prepare();
    for (auto _ : state) {
      work();
      benchmark::ClobberMemory();
    }
  })->Unit(benchmark::kMicrosecond);
}

// Static registration of a file's workloads.
struct registration {
  template <class F>
  explicit registration(F add_all) {
    add_all();
  }
};

}  // namespace bench

// The kernels of each CPU level under test, through the routines that use them.
//
// The test programs are linked with --wrap for korvo::processor_level, so that the library asks here. The
// library has no seam for it.
#pragma once

#include <initializer_list>

#include "core/levels.hpp"

// Lets the library use the kernels of a level up to that of the processor, in this thread.
class at_level {
 public:
  explicit at_level(korvo::level level);
  at_level& operator=(at_level&&) = delete;
  ~at_level();
};

// Calls test() at each level that the processor has.
template <class Test>
void each_level(Test test) {
  const korvo::level highest = korvo::processor_level();
  for (const korvo::level level : {korvo::level::baseline, korvo::level::avx2, korvo::level::avx512}) {
    if (level > highest) break;
    const at_level use(level);
    test();
  }
}

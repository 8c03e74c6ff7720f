#include "tests/support/levels.hpp"

#include <algorithm>

namespace {

thread_local korvo::level allowed = korvo::level::avx512;

}  // namespace

at_level::at_level(korvo::level level) { allowed = level; }
at_level::~at_level() { allowed = korvo::level::avx512; }

// The linker sends calls of korvo::processor_level() to the first, and those of the second to it.
extern "C" {

korvo::level __wrap__ZN5korvo15processor_levelEv();
korvo::level __real__ZN5korvo15processor_levelEv();

korvo::level __wrap__ZN5korvo15processor_levelEv() {
  return std::min(allowed, __real__ZN5korvo15processor_levelEv());
}

}  // extern "C"

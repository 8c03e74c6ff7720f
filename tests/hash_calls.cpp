// Prints the name and the hash of the results of each row of the table of calls, so that builds by different
// compilers and at different optimisations can be compared.
#include <cinttypes>
#include <cstdio>

#include "tests/calls/calls.hpp"

int main() {
  int failed = 0;
  for (const call_row& row : all_calls()) {
    scene s;
    const ready_call call = row.prepare(s);
    failed += call(nullptr) == KORVO_ERR_OK ? 0 : 1;
    std::printf("%016" PRIx64 " %s\n", s.results(), row.name.c_str());
  }
  return failed;
}

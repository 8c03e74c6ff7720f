// The heap under test: counts what the library allocates, and makes allocations fail.
//
// The test programs are linked with --wrap for malloc, calloc, realloc and free, so that calls from the
// library's objects come here; those of the C and C++ runtimes do not. The library has no seam for it.
#pragma once

namespace heap {

// Blocks that the library has allocated and not freed, in this thread.
int live_blocks();

// Allocations since the last fail_at() or fail_never().
int allocations();

// Lets the k-th allocation from now on fail, k from 1; and all after it too, if asked.
void fail_at(int k, bool and_after = false);
void fail_never();

}  // namespace heap

// Advice to the compiler on loops that it is to vectorise.
#pragma once

// The next loop may run in vectors: its outputs are either the very elements it reads at the same index or
// lie apart from all it reads.
#if defined(__clang__)
#define KORVO_INDEPENDENT _Pragma("clang loop vectorize(assume_safety) interleave(enable)")
#else
#define KORVO_INDEPENDENT _Pragma("GCC ivdep")
#endif

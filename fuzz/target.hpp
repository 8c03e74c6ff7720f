// What a fuzzer is written with. Each file has one target, which takes bytes from outside and must not fall
// over:
//
//   FUZZ_TARGET(fuzz_parse) { ... in.byte() ... in.stream() ... }
//
// libFuzzer calls it with bytes that it makes up; the tests, for which KORVOS_REPLAY is defined, with the files
// of fuzz/corpus/<name of the target>.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

// The bytes of one run. The first few can serve as arguments, the rest is the file.
class fuzz_input {
 public:
  fuzz_input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  std::uint8_t byte() {
    if (size_ == 0) return 0;
    --size_;
    return *data_++;
  }
  std::string rest() const { return {reinterpret_cast<const char*>(data_), size_}; }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
};

// A stream over bytes, closed by itself.
struct close_stream {
  void operator()(FILE* stream) const { (void)std::fclose(stream); }
};
using held_stream = std::unique_ptr<FILE, close_stream>;

inline held_stream reading(const std::string& bytes) {
  if (bytes.empty()) return held_stream(std::fopen("/dev/null", "r"));
  return held_stream(fmemopen(const_cast<char*>(bytes.data()), bytes.size(), "r"));
}

// What write(stream) writes.
template <class F>
std::string written(F write) {
  std::string bytes;
  const auto append = [](void* to, const char* data, std::size_t size) {
    static_cast<std::string*>(to)->append(data, size);
    return static_cast<ssize_t>(size);
  };
  held_stream stream(fopencookie(&bytes, "w", {nullptr, append, nullptr, nullptr}));
  write(stream.get());
  stream.reset();
  return bytes;
}

// Ends the run as a finding.
inline void require(bool holds) {
  if (!holds) std::abort();
}

using fuzz_function = void (*)(fuzz_input);

#ifdef KORVOS_REPLAY
struct fuzz_target {
  fuzz_target(const char* target_name, fuzz_function function);
  const char* name;
  fuzz_function run;
};
#define FUZZ_TARGET(name)                              \
  static void name(fuzz_input in);                     \
  static const fuzz_target name##_target(#name, name); \
  static void name(fuzz_input in)
#else
// Sizes are part of the input: what is larger than this cannot be had, and the routine says so.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
  return "allocator_may_return_null=1:max_allocation_size_mb=64";
}
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
#define FUZZ_TARGET(name)                                                             \
  static void name(fuzz_input in);                                                    \
  extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) { \
    name(fuzz_input(data, size));                                                     \
    return 0;                                                                         \
  }                                                                                   \
  static void name(fuzz_input in)
#endif

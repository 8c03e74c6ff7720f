// A hash of bytes (FNV-1a), to compare results bit for bit.
#pragma once

#include <cstddef>
#include <cstdint>

class byte_hash {
 public:
  void add(const void* data, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
      value_ = (value_ ^ static_cast<const unsigned char*>(data)[i]) * 0x100000001b3U;
  }
  std::uint64_t value() const { return value_; }

 private:
  std::uint64_t value_ = 0xcbf29ce484222325U;
};

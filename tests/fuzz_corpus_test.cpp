// Replays the seeds of every fuzzer, and what a fuzzer has found and been given as a seed since.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/target.hpp"
#include "tests/support/heap.hpp"

static std::vector<fuzz_target>& targets() {
  static std::vector<fuzz_target> all;
  return all;
}

fuzz_target::fuzz_target(const char* target_name, fuzz_function function) : name(target_name), run(function) {
  targets().push_back(*this);
}

TEST(FuzzCorpus, IsSurvivedByItsTarget) {
  ASSERT_FALSE(targets().empty());
  for (const fuzz_target& target : targets()) {
    const std::filesystem::directory_iterator seeds(KORVOS_FUZZ_CORPUS "/" + std::string(target.name));
    EXPECT_NE(begin(seeds), end(seeds)) << target.name << " has no seeds";
    for (const auto& seed : seeds) {
      std::ifstream file(seed.path(), std::ios::binary);
      const std::vector<char> bytes(std::istreambuf_iterator<char>(file), {});
      const int live_before = heap::live_blocks();
      target.run(fuzz_input(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()));
      EXPECT_EQ(heap::live_blocks(), live_before) << seed.path();
    }
  }
}

// The contact sheet: every picture of the demonstration, small and with captions.
#pragma once

#include <string>
#include <vector>

#include "words.hpp"

namespace demo {

// What fits exactly is pasted as it is.
constexpr std::int32_t tile_rows = 198, tile_cols = 264;

class sheet {
 public:
  // A picture of three planes, u8 or dbl; what it shows, and the calls that made it.
  void add(const _mat_set& picture, const std::string& caption, const std::string& calls);

  // All of them in rows of four, in u8.
  planes compose(const std::string& title, const std::string& subtitle) const;

 private:
  struct tile {
    planes picture;
    std::string caption, calls;
  };
  std::vector<tile> tiles_;
};

}  // namespace demo

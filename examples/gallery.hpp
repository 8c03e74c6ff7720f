// What stages work with: timed steps for the table, pictures for the directory and for the contact sheet.
#pragma once

#include <chrono>
#include <string>

#include "chart.hpp"
#include "sheet.hpp"
#include "table.hpp"
#include "words.hpp"

namespace demo {

class gallery {
 public:
  // Makes the directory if it is missing.
  explicit gallery(const std::string& directory);

  // Does `work`, which returns a matrix or planes, and gives it a row in the table.
  template <class Work>
  auto step(const std::string& name, Work work) {
    const auto start = std::chrono::steady_clock::now();
    auto result = named(name, work);
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    print_row(name, result, took.count());
    return result;
  }

  // Writes a PNG that is numbered in the order of the calls. Any element type; values are clipped to 0 to 255.
  void save(const std::string& name, const _univ_mat& grey);
  void save(const std::string& name, const _mat_set& colour);

  // The same, and a tile on the contact sheet.
  void hang(const std::string& name, const _univ_mat& grey, const std::string& caption,
            const std::string& calls);
  void hang(const std::string& name, const _mat_set& colour, const std::string& caption,
            const std::string& calls);

  // A chart that make(const chart_size&) draws, in full and as a tile.
  template <class Make>
  void plot(const std::string& name, const std::string& caption, const std::string& calls, Make make) {
    save(name, make(full_size));
    sheet_.add(make(tile_size), caption, calls);
  }

  // Writes the contact sheet and returns its path.
  std::string finish() const;

  std::string path(const std::string& file_name) const { return directory_ + "/" + file_name; }
  int pictures() const { return pictures_; }

 private:
  std::string next_path(const std::string& name);

  std::string directory_;
  sheet sheet_;
  int pictures_ = 0;
};

}  // namespace demo

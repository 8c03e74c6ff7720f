// The stages of the demonstration. A new one is a file of its own beside this one, and a line in each list
// here.
#pragma once

#include <array>

#include "gallery.hpp"
#include "subject.hpp"

namespace demo {

void show_casts(const subject& photo, gallery& out);
void show_smoothing(const subject& photo, gallery& out);
void show_sharpening(const subject& photo, gallery& out);
void show_statistics(const subject& photo, gallery& out);
void show_moves(const subject& photo, gallery& out);
void show_files(const subject& photo, gallery& out);

struct stage {
  const char* name;
  void (*run)(const subject& photo, gallery& out);
};

// In the order in which they run.
inline constexpr std::array stages{stage{"sharpening", show_sharpening},
                                   stage{"smoothing and boundary modes", show_smoothing},
                                   stage{"local statistics", show_statistics},
                                   stage{"casts and arithmetic", show_casts},
                                   stage{"moves", show_moves},
                                   stage{"files", show_files}};

}  // namespace demo

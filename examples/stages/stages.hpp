// The stages of the demonstration. A new one is a file of its own beside this one, and a line in each list
// here.
#pragma once

#include <array>

#include "gallery.hpp"
#include "series.hpp"
#include "subject.hpp"

namespace demo {

void show_casts(const subject& photo, gallery& out);
void show_smoothing(const subject& photo, gallery& out);
void show_sharpening(const subject& photo, gallery& out);
void show_statistics(const subject& photo, gallery& out);
void show_moves(const subject& photo, gallery& out);
void show_palette(const subject& photo, gallery& out);
void show_classes(const subject& photo, gallery& out);
void show_edges(const subject& photo, gallery& out);
void show_shapes(const subject& photo, gallery& out);
void show_regions(const subject& photo, gallery& out);
void show_contours(const subject& photo, gallery& out);
void show_files(const subject& photo, gallery& out);

void show_course(const series& heard, gallery& out);
void show_spectrum(const series& heard, gallery& out);
void show_time_frequency(const series& heard, gallery& out);
void show_crystals(const series& heard, gallery& out);
void show_ridges(const series& heard, gallery& out);

template <class Subject>
struct stage {
  const char* name;
  void (*run)(const Subject& subject, gallery& out);
};

// In the order in which they run.
inline constexpr std::array picture_stages{stage<subject>{"sharpening", show_sharpening},
                                           stage<subject>{"smoothing and boundary modes", show_smoothing},
                                           stage<subject>{"local statistics", show_statistics},
                                           stage<subject>{"casts and arithmetic", show_casts},
                                           stage<subject>{"moves", show_moves},
                                           stage<subject>{"palette", show_palette},
                                           stage<subject>{"classes", show_classes},
                                           stage<subject>{"files", show_files},
                                           stage<subject>{"edges", show_edges},
                                           stage<subject>{"shapes", show_shapes},
                                           stage<subject>{"regions", show_regions},
                                           stage<subject>{"contours", show_contours}};

inline constexpr std::array series_stages{
    stage<series>{"course of the series", show_course}, stage<series>{"spectrum", show_spectrum},
    stage<series>{"time and frequency", show_time_frequency}, stage<series>{"crystals", show_crystals},
    stage<series>{"ridges", show_ridges}};

}  // namespace demo

// The demonstration: a picture and a series go through their stages; a table on the screen, pictures in a
// directory.
#include <cstdio>
#include <exception>

#include "gallery.hpp"
#include "options.hpp"
#include "series.hpp"
#include "stages/stages.hpp"
#include "stop.hpp"
#include "subject.hpp"

namespace {

template <class Stages, class Subject>
void run_all(const Stages& stages, const Subject& subject, demo::gallery& out) {
  for (const auto& stage : stages) {
    demo::print_heading(stage.name);
    stage.run(subject, out);
  }
}

void run(const demo::options& wanted) {
  demo::gallery out(wanted.directory);
  demo::print_columns();
  const demo::subject photo = demo::make_subject(wanted.picture, out);
  const demo::series heard = demo::make_series(wanted.signal, out);
  run_all(demo::picture_stages, photo, out);
  run_all(demo::series_stages, heard, out);
  const std::string contact_sheet = out.finish();
  std::printf("\n%d pictures in %s; all of them on one: %s\n", out.pictures(), wanted.directory.c_str(),
              contact_sheet.c_str());
  if (wanted.stop_after) demo::show_stop(*wanted.stop_after);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const auto wanted = demo::parse(argc, argv);
    if (!wanted || wanted->help) {
      std::fprintf(wanted ? stdout : stderr, "%s\n", demo::usage);
      return wanted ? 0 : 2;
    }
    run(*wanted);
    return 0;
  } catch (const std::exception& reason) {
    std::fflush(stdout);
    std::fprintf(stderr, "demo: %s\n", reason.what());
    return 1;
  }
}

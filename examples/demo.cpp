// The demonstration: one picture goes through the stages; a table on the screen, pictures in a directory.
#include <cstdio>
#include <exception>

#include "gallery.hpp"
#include "options.hpp"
#include "stages/stages.hpp"
#include "stop.hpp"
#include "subject.hpp"

namespace {

void run(const demo::options& wanted) {
  demo::gallery out(wanted.directory);
  demo::print_columns();
  const demo::subject photo = demo::make_subject(wanted.picture, out);
  for (const demo::stage& stage : demo::stages) {
    demo::print_heading(stage.name);
    stage.run(photo, out);
  }
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

// Pictures of the steps, as files and as tiles.
#include "gallery.hpp"

#include <filesystem>
#include <system_error>

#include "png.hpp"

namespace demo {

gallery::gallery(const std::string& directory) : directory_(directory) {
  std::error_code error;
  std::filesystem::create_directories(directory, error);
  if (error) throw failure("cannot make " + directory + ": " + error.message());
}

std::string gallery::next_path(const std::string& name) {
  const std::string two_digits = std::to_string(100 + ++pictures_).substr(1);
  return path(two_digits + "_" + name + ".png");
}

void gallery::save(const std::string& name, const _univ_mat& grey) {
  write_png(next_path(name), as_type(grey, KORVO_UINT8));
}

void gallery::save(const std::string& name, const _mat_set& colour) {
  write_png(next_path(name), as_type(colour, KORVO_UINT8));
}

void gallery::hang(const std::string& name, const _univ_mat& grey, const std::string& caption,
                   const std::string& calls) {
  save(name, grey);
  sheet_.add(thrice(grey), caption, calls);
}

void gallery::hang(const std::string& name, const _mat_set& colour, const std::string& caption,
                   const std::string& calls) {
  save(name, colour);
  sheet_.add(colour, caption, calls);
}

std::string gallery::finish() const {
  const std::string version = std::to_string(KORVOS_VERSION_MAJOR) + "." + std::to_string(KORVOS_VERSION_MINOR);
  std::string result = path("contact_sheet.png");
  write_png(result,
            sheet_.compose("korvos", version + "  a picture and a series, and the calls that made the rest"));
  return result;
}

}  // namespace demo

// A host whose numbers have a decimal comma.
#pragma once

#include <locale.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

// Gives the thread such a locale for as long as it lives. None need be installed: the file of its numbers is
// written here, as the GNU C library reads it. With another C library it may have no effect; see is_set().
class comma_locale {
 public:
  comma_locale() {
    const auto directory = std::filesystem::temp_directory_path() / ("comma" + std::to_string(::getpid()));
    // The format, where each field is, then the decimal and the grouping characters.
    static const char numbers[] =
        "\x14\x11\3 \6\0\0\0 \0\0\0\"\0\0\0$\0\0\0(\0\0\0,\0\0\0000\0\0\0,\0.\0\3\3\0\0,\0\0\0.\0\0\0UTF-8";
    std::filesystem::create_directories(directory / "comma");
    std::ofstream(directory / "comma" / "LC_NUMERIC", std::ios::binary).write(numbers, sizeof numbers);
    // By way of the global locale: newlocale() of the GNU library keeps what it makes of the path.
    (void)::setenv("LOCPATH", directory.c_str(), 1);
    if (::setlocale(LC_NUMERIC, "comma")) locale_ = ::duplocale(LC_GLOBAL_LOCALE);
    (void)::setlocale(LC_NUMERIC, "C");
    (void)::unsetenv("LOCPATH");
    std::filesystem::remove_all(directory);
    before_ = ::uselocale(locale_);
  }
  comma_locale(comma_locale&&) = delete;
  ~comma_locale() {
    (void)::uselocale(before_);
    if (locale_) ::freelocale(locale_);
  }

  // Whether the thread has it now, and whether it ever had.
  bool is_set() const { return locale_ && ::uselocale(nullptr) == locale_; }
  bool is_available() const { return locale_ != nullptr; }

 private:
  locale_t locale_ = nullptr;
  locale_t before_ = nullptr;
};

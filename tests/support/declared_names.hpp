// The names that the public headers declare for export, as listed by tools/declared_names.sh when the tests
// were built.
#pragma once

#include <fstream>
#include <string>
#include <vector>

inline std::vector<std::string> declared_names() {
  std::ifstream list(KORVOS_DECLARED_NAMES);
  std::vector<std::string> names;
  for (std::string name; std::getline(list, name);) names.push_back(name);
  return names;
}

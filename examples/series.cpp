// The series, from a file or made, and stretches of it.
#include "series.hpp"

#include <algorithm>
#include <bit>
#include <utility>
#include <vector>

#include "heartbeat.hpp"
#include "numbers.hpp"
#include "scaling.hpp"

namespace demo {
namespace {

matrix column(const std::vector<double>& values) {
  matrix out(static_cast<std::int32_t>(values.size()), 1);
  std::copy(values.begin(), values.end(), elements(out).begin());
  return out;
}

}  // namespace

series make_series(const std::string& path, gallery& out) {
  print_heading("series");
  if (path.empty())
    return {out.step("make heartbeats", [] { return column(heartbeats(8192)); }), "made by the demo"};
  const std::string name = path.substr(path.find_last_of('/') + 1);
  matrix values =
      out.step("read " + name, [&] { return column(read_numbers(path, fewest_samples, most_samples)); });
  return {std::move(values), "read from the file"};
}

stretch middle(const series& heard) {
  constexpr std::uint32_t longest = 2048;
  const auto count =
      static_cast<std::int32_t>(std::min(longest, std::bit_floor(static_cast<std::uint32_t>(heard.count()))));
  return {(heard.count() - count) / 2, count};
}

axis time_axis(const stretch& where) {
  return {static_cast<double>(where.first), static_cast<double>(where.first + where.count), "sample"};
}

matrix samples(const series& heard, const stretch& where) {
  matrix out(where.count, 1);
  check(matuniv_extract(&heard.values, where.first, 0, nullptr, &out));
  check(matuniv_add_scalar(&out, number(-mean(out)), nullptr, &out));
  return out;
}

}  // namespace demo

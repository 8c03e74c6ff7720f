// The series itself, the whole of it and a stretch.
#include "stages/stages.hpp"

namespace demo {

void show_course(const series& heard, gallery& out) {
  const auto all = elements(heard.values);
  const auto drawn = [&](const chart_size& size, const stretch& where, const std::string& title) {
    const auto seen = all.subspan(static_cast<std::size_t>(where.first), static_cast<std::size_t>(where.count));
    chart page(size, title);
    panel here = page.add(time_axis(where), axis_for(seen, "value"));
    here.curve(where.first, 1.0, seen, accent);
    return page.take();
  };
  const stretch part = middle(heard);
  out.plot("series", "series", heard.origin, [&](const chart_size& size) {
    return drawn(size, {0, heard.count()}, "the series: " + std::to_string(heard.count()) + " samples");
  });
  out.plot("series_stretch", "a stretch of it", "matuniv_extract", [&](const chart_size& size) {
    return drawn(size, part, std::to_string(part.count) + " samples from the middle");
  });
}

}  // namespace demo

// Smoothing, and what the four boundary modes make of the edges.
#include <array>
#include <cstddef>

#include "filters.hpp"
#include "scaling.hpp"
#include "stages/stages.hpp"

namespace demo {
namespace {

struct boundary_mode {
  std::int32_t value;
  const char* name;
  const char* outside;
};

constexpr std::array<boundary_mode, 4> modes{{{SIG_BOUNDARY_ZERO, "zero", "outside: zero"},
                                              {SIG_BOUNDARY_PERIODIC, "periodic", "outside: repeated"},
                                              {SIG_BOUNDARY_REFLECT, "reflect", "outside: mirrored"},
                                              {SIG_BOUNDARY_CONTINUE, "continue", "outside: edge goes on"}}};

// The lower right corner of a picture with a margin beyond its edges, enlarged, and a line where it ends.
class corner_view {
 public:
  explicit corner_view(const _mat_set& photo)
      : small_(fitted(photo, 288, 384)),
        rows_((small_.first().nrow + 1) / 2),
        cols_((small_.first().ncol + 1) / 2),
        margin_rows_(rows_ / 3),
        margin_cols_(cols_ / 3),
        across_(bell_ahead(3, margin_cols_)),
        down_(bell_ahead(3, margin_rows_)) {}

  planes seen(std::int32_t boundary) const {
    constexpr std::array<double, 3> line_colour{255.0, 186.0, 92.0};
    const planes moved = smoothed(small_, across_, down_, boundary);
    planes out = each_plane(moved, [this](const _univ_mat& plane) { return enlarged(plane); });
    for (std::size_t k = 0; k < line_colour.size(); ++k) draw_line(line_colour[k], &out.mats[k]);
    return out;
  }

 private:
  static constexpr std::int32_t factor = 3;

  matrix enlarged(const _univ_mat& plane) const {
    matrix corner(rows_, cols_);
    check(matuniv_extract(&plane, plane.nrow - rows_, plane.ncol - cols_, nullptr, &corner));
    return scaled(corner, factor * rows_, factor * cols_);
  }

  void draw_line(double value, _univ_mat* out) const {
    constexpr std::int32_t width = 2;
    const std::int32_t bottom = factor * (rows_ - margin_rows_);
    const std::int32_t right = factor * (cols_ - margin_cols_);
    const matrix level = filled(width, right, value);
    const matrix upright = filled(bottom, width, value);
    check(matuniv_assign_submat(&level, bottom - width, 0, nullptr, out));
    check(matuniv_assign_submat(&upright, 0, right - width, nullptr, out));
  }

  planes small_;
  std::int32_t rows_, cols_, margin_rows_, margin_cols_;
  matrix across_, down_;
};

}  // namespace

void show_smoothing(const subject& photo, gallery& out) {
  const matrix kernel = out.step("bell-shaped kernel", [] { return bell(17); });
  const corner_view view(photo.colour);
  for (const boundary_mode& mode : modes) {
    const std::string outside = mode.outside;
    const planes soft =
        out.step("smoothed, " + outside, [&] { return smoothed(photo.colour, kernel, kernel, mode.value); });
    const planes corner = out.step("corner, " + outside, [&] { return view.seen(mode.value); });
    out.save(std::string("smoothed_") + mode.name, soft);
    out.hang(std::string("corner_") + mode.name, corner, outside,
             "imguniv_correlate, " + std::to_string(mode.value));
  }
}

}  // namespace demo

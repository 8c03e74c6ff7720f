// Lays out the contact sheet.
#include "sheet.hpp"

#include <cstdint>
#include <utility>

#include "colours.hpp"
#include "font.hpp"
#include "scaling.hpp"

namespace demo {
namespace {

constexpr std::int32_t columns = 4;
constexpr std::int32_t gap = 16, caption_rows = 44, header_rows = 88;

void paint(const ink& colour, _mat_set* out) {
  for (std::size_t k = 0; k < colour.size(); ++k)
    check(matuniv_assign_scalar(byte(colour[k]), nullptr, &out->mats[k]));
}

// Fewer tones, each a multiple of three: hardly to be seen, and the file is a third smaller.
planes with_fewer_tones(const _mat_set& in) {
  constexpr std::uint8_t step = 3;
  static_assert(255 % step == 0);
  const planes whole = as_type(in, KORVO_UINT8);  // clipped to 0 to 255
  return each_plane(whole, [](const _univ_mat& plane) {
    matrix shares(plane.nrow, plane.ncol);
    check(matuniv_multiply_scalar(&plane, number(1.0 / step), nullptr, &shares));
    matrix out = as_type(shares, KORVO_UINT8);
    check(matuniv_multiply_scalar(&out, byte(step), nullptr, &out));
    return out;
  });
}

void paste(const _mat_set& in, std::int32_t row, std::int32_t col, _mat_set* out) {
  for (std::int32_t k = 0; k < in.nmat; ++k)
    check(matuniv_assign_submat(&in.mats[k], row, col, nullptr, &out->mats[k]));
}

}  // namespace

void sheet::add(const _mat_set& picture, const std::string& caption, const std::string& calls) {
  const planes small = with_fewer_tones(fitted(picture, tile_rows, tile_cols));
  planes framed(tile_rows, tile_cols, KORVO_UINT8);
  paint(frame, &framed);
  paste(small, (tile_rows - small.first().nrow) / 2, (tile_cols - small.first().ncol) / 2, &framed);
  tiles_.push_back({std::move(framed), caption, calls});
}

planes sheet::compose(const std::string& title, const std::string& subtitle) const {
  const auto count = static_cast<std::int32_t>(tiles_.size());
  const std::int32_t rows = (count + columns - 1) / columns;
  planes out(header_rows + rows * (tile_rows + caption_rows + gap), gap + columns * (tile_cols + gap),
             KORVO_UINT8);
  paint(paper, &out);
  write_text(title, 24, gap, 5, accent, &out);
  write_text(subtitle, 43, gap + static_cast<std::int32_t>(title.size() + 1) * letter_cols * 5, 2, dim, &out);
  for (std::int32_t i = 0; i < count; ++i) {
    const tile& t = tiles_[static_cast<std::size_t>(i)];
    const std::int32_t row = header_rows + i / columns * (tile_rows + caption_rows + gap);
    const std::int32_t col = gap + i % columns * (tile_cols + gap);
    paste(t.picture, row, col, &out);
    write_text(t.caption, row + tile_rows + 6, col, 2, bright, &out);
    write_text(t.calls, row + tile_rows + 25, col, 2, dim, &out);
  }
  return out;
}

}  // namespace demo

// Boundary tracing: from a region of an image to a run-length chain.
#include <cstdint>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/valid.hpp"
#include "curve/pgn_regn.hpp"

namespace korvo {
namespace {

// A pixel of a region, which may move to its neighbours in the region.
template <class T>
class cursor {
 public:
  static constexpr int nowhere = 8;

  template <class M>
  cursor(const M& image, std::int64_t row, std::int64_t col)
      : rows_(image.nrow), cols_(image.ncol), row_(row), col_(col) {
    pixel_ = image.data + row * cols_ + col;
    value_ = *pixel_;
    for (int d = 0; d < 8; ++d) offset_[d] = row_step[d] * cols_ + col_step[d];
  }

  std::int32_t row() const { return static_cast<std::int32_t>(row_); }
  std::int32_t col() const { return static_cast<std::int32_t>(col_); }
  const T* pixel() const { return pixel_; }

  // The first direction from `start` on, clockwise, in which the region has a pixel.
  int neighbour(int start) const {
    const bool is_off_frame = row_ > 0 && row_ < rows_ - 1 && col_ > 0 && col_ < cols_ - 1;
    if (is_off_frame) return search(start, [](int) { return true; });
    return search(start, [this](int d) { return is_inside(d); });
  }

  bool has_neighbour(int d) const { return is_inside(d) && pixel_[offset_[d]] == value_; }

  void move(int direction) {
    row_ += row_step[direction];
    col_ += col_step[direction];
    pixel_ += offset_[direction];
  }

 private:
  bool is_inside(int direction) const {
    const std::int64_t row = row_ + row_step[direction];
    const std::int64_t col = col_ + col_step[direction];
    return row >= 0 && row < rows_ && col >= 0 && col < cols_;
  }

  template <class IsInside>
  int search(int start, IsInside may_read) const {
    for (int k = start; k < start + 8; ++k)
      if (const int d = k & 7; may_read(d) && pixel_[offset_[d]] == value_) return d;
    return nowhere;
  }

  std::int64_t rows_, cols_, row_, col_;
  const T* pixel_;
  T value_;
  std::int64_t offset_[8] = {};
};

// Follows the boundary from a pixel with background on its left. Each step turns about a background pixel
// beside the region, no two steps of a round about the same side of the same pixel, so that the round comes to
// an end.
template <class T>
code follow(cursor<T> at, void* intrp_ptr, pgn_chain* chain) {
  const T* const start = at.pixel();
  TRY(pgn_chain_malloc(chain, growth));
  std::int32_t used = 0;
  std::int64_t steps = 0;
  for (int previous = 6;; ++steps) {
    const int direction = at.neighbour((2 * (previous / 2) + 7) % 8);
    if (at.pixel() == start && used > 0 && direction == chain->directions[0]) break;
    if (used > 0 && direction == previous) {
      ++chain->run_lengths[used - 1];
    } else {
      if (used == chain->num_links) TRY(pgn_chain_realloc(chain, used + growth));
      chain->run_lengths[used] = 1;
      chain->directions[used++] = static_cast<std::int8_t>(direction);
    }
    at.move(direction);
    previous = direction;
  }
  TRY(pgn_chain_realloc(chain, used));
  return checkpoint(intrp_ptr).add(50.0 * static_cast<double>(steps));
}

template <class M>
code boundary_chain_from_region(const M* image, std::int32_t row, std::int32_t col, void* intrp_ptr,
                                pgn_chain* chain) {
  if (!image || !chain) return KORVO_ERR_NULL_POINTER;
  TRY(valid(image));
  if (row < 0 || row >= image->nrow || col < 0 || col >= image->ncol) return KORVO_ERR_ILLEGAL_VALUE;
  constexpr int east = 0, west = 4;
  cursor<element<M>> at(*image, row, col);
  while (at.has_neighbour(west)) at.move(west);
  TRY(pgn_chain_malloc(chain, 0));
  chain->start_row = at.row();
  chain->start_col = at.col();
  if (at.neighbour(east) == at.nowhere) return KORVO_ERR_OK;
  const code result = follow(at, intrp_ptr, chain);
  if (result != KORVO_ERR_OK) (void)pgn_chain_free(chain);
  return result;
}

}  // namespace
}  // namespace korvo

using namespace korvo;

#define CHAIN_FROM_REGION(name, M)                                                         \
  code name(const M* image, int32_t row, int32_t col, void* intrp_ptr, pgn_chain* chain) { \
    return boundary_chain_from_region(image, row, col, intrp_ptr, chain);                  \
  }

extern "C" {

CHAIN_FROM_REGION(pgnu8_boundary_chain_from_region, _u8_mat)
CHAIN_FROM_REGION(pgnu16_boundary_chain_from_region, _u16_mat)
CHAIN_FROM_REGION(pgnu32_boundary_chain_from_region, _u32_mat)
CHAIN_FROM_REGION(pgns32_boundary_chain_from_region, _s32_mat)
CHAIN_FROM_REGION(pgndbl_boundary_chain_from_region, _dbl_mat)

code pgnuniv_boundary_chain_from_region(const _univ_mat* image, int32_t row, int32_t col, void* intrp_ptr,
                                        pgn_chain* chain) {
  if (!image || !chain) return KORVO_ERR_NULL_POINTER;
  return dispatch(image->type, records<_u8_mat, _u16_mat, _u32_mat, _s32_mat, _dbl_mat>{}, [&]<class M> {
    const M typed = as<M>(*image);
    return boundary_chain_from_region(&typed, row, col, intrp_ptr, chain);
  });
}

}  // extern "C"

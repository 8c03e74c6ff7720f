// What binary and grey-scale morphology share: the walk over an image in tiles, and the step through a
// temporary.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"

namespace korvo {

using morphology_records = records<_u8_mat, _u16_mat, _s32_mat, _dbl_mat>;

// A structuring element and where it comes to lie: the samples of result (r, c) begin at (r + top, c + left),
// and entry (i, j) has the one i rows and j columns on or, in a reflected element, as many before the last one.
template <class T>
struct placed {
  const T* values;
  std::int64_t rows;
  std::int64_t cols;
  std::int64_t top;
  std::int64_t left;
  bool reflected;
  bool selects;  // zero entries are left out, and the others count as 0
  bool flat;     // all entries count as 0
};

// For minima the element lies as it stands, for maxima it is reflected through its origin.
template <bool largest, class M>
placed<element<M>> place(const M* element, std::int64_t origin_row, std::int64_t origin_col, bool selects) {
  using T = korvo::element<M>;
  const bool flat = selects || std::all_of(element->data, element->data + element->nelem,
                                           [](T value) { return value == T{}; });
  return {element->data,
          element->nrow,
          element->ncol,
          largest ? origin_row - (element->nrow - 1) : -origin_row,
          largest ? origin_col - (element->ncol - 1) : -origin_col,
          largest,
          selects,
          flat};
}

// An entry that takes part: where its sample lies from the first of the result, and what it counts.
template <class T>
struct taking_part {
  std::int32_t offset;
  T value;
};

// Some rows and columns of results, and the samples that they need for a part of the element.
template <class T>
struct tile {
  static constexpr std::int64_t line = 64 / sizeof(T);  // what the widest vectors hold
  static constexpr std::int64_t width = 8 * line;
  static constexpr std::int64_t height = 32;
  static constexpr std::int64_t reach = 32;  // rows and columns of a part at most
  static constexpr std::int64_t pitch = width + std::max(line, reach);

  std::int64_t rows;  // of results
  std::int64_t cols;  // in whole lines
  std::int64_t part_rows;
  std::int64_t part_cols;
  std::int64_t count;  // of entries in the list
  bool whole;          // every entry of the part takes part
  bool flat;
  bool begun;  // the results hold what other parts have left
  taking_part<T> entries[reach * reach];
  T results[height * width];
  static constexpr std::int64_t room =
      (height + reach - 1) * pitch + line + reach;  // kernels look past the last row
  static constexpr std::int64_t stretch = 4;
  // Behind the samples, where elements select, the minima or maxima of the stretches of 4 that begin with each.
  T samples[std::is_same_v<T, std::uint8_t> ? 2 * room : room];
};

// Lists the entries of the part from (i0, j0) on, in their order; for an element that selects, runs of them as
// stretches, of which the last two may overlap.
template <class T>
void list(const placed<T>& element, std::int64_t i0, std::int64_t j0, tile<T>& on) {
  constexpr std::int64_t stretch = tile<T>::stretch;
  std::int64_t taken = 0;
  on.count = 0;
  for (std::int64_t i = 0; i < on.part_rows; ++i) {
    const T* const values = element.values + (i0 + i) * element.cols + j0;
    const std::int64_t row = (element.reflected ? on.part_rows - 1 - i : i) * tile<T>::pitch;
    const auto add = [&](std::int64_t offset, T value) {
      on.entries[on.count++] = {static_cast<std::int32_t>(row + offset), value};
    };
    for (std::int64_t j = 0; j < on.part_cols; ++j) {
      if (!element.selects) add(element.reflected ? on.part_cols - 1 - j : j, values[j]);
      if (!element.selects || values[j] == T{}) continue;
      const T* const end = std::find(values + j, values + on.part_cols, T{});
      const std::int64_t run = end - (values + j);
      const std::int64_t first = element.reflected ? on.part_cols - j - run : j;
      for (std::int64_t k = 0; k < run; k += run < stretch ? 1 : stretch)
        add(run < stretch ? first + k : tile<T>::room + first + std::min(k, run - stretch), T{});
      taken += run;
      j += run - 1;
    }
  }
  on.whole = !element.selects || taken == on.part_rows * on.part_cols;
}

// An image of elements E as a tile reads it: where `continues`, its edge goes on, else all outside is 0.
// `convert` makes samples from a stretch of elements.
template <class T, class E, class Convert>
struct sampled {
  const E* data;
  std::int64_t nrow;
  std::int64_t ncol;
  bool continues;
  Convert convert;

  // The samples of a row from column `col` on, either of them anywhere.
  void read(std::int64_t row, std::int64_t col, std::int64_t count, T* samples) const {
    if (!continues && (row < 0 || row >= nrow)) {
      std::fill_n(samples, count, T{});
      return;
    }
    const E* const from = data + std::clamp<std::int64_t>(row, 0, nrow - 1) * ncol;
    const std::int64_t first = std::clamp<std::int64_t>(-col, 0, count);
    const std::int64_t last = std::clamp(ncol - col, first, count);
    T before = {};
    T after = {};
    if (continues) convert(from, &before, 1), convert(from + (ncol - 1), &after, 1);
    std::fill_n(samples, first, before);
    if (first < last) convert(from + (col + first), samples + first, last - first);
    std::fill_n(samples + last, count - last, after);
  }
};

// The results of a tile whose first is (r, c). Parts of several rows change the order of entries, which dbl
// alone can tell, by the signs of zeros.
template <bool largest, class T, class Image, class Extremes>
void fill(const Image& image, const placed<T>& element, std::int64_t r, std::int64_t c, Extremes extremes,
          tile<T>& on) {
  constexpr std::int64_t reach = tile<T>::reach;
  const bool by_rows = element.cols > reach && std::is_floating_point_v<T>;
  on.begun = false;
  for (std::int64_t i = 0; i < element.rows; i += on.part_rows) {
    on.part_rows = std::min(by_rows ? 1 : reach, element.rows - i);
    for (std::int64_t j = 0; j < element.cols; j += on.part_cols) {
      on.part_cols = std::min(reach, element.cols - j);
      list(element, i, j, on);
      if (on.count == 0) continue;
      const std::int64_t top = r + element.top + (largest ? element.rows - i - on.part_rows : i);
      const std::int64_t left = c + element.left + (largest ? element.cols - j - on.part_cols : j);
      for (std::int64_t a = 0; a < on.rows + on.part_rows - 1; ++a)
        image.read(top + a, left, on.cols + on.part_cols - 1, on.samples + a * tile<T>::pitch);
      extremes(on);
      on.begun = true;
    }
  }
  constexpr T none = largest ? std::numeric_limits<T>::lowest() : std::numeric_limits<T>::max();
  if (!on.begun) std::fill_n(on.results, on.rows * tile<T>::width, none);
}

// Minima or maxima over the element at every pixel of the image, in tiles side by side; write(from, index,
// count) puts results into their place. Polls after each row.
template <bool largest, class T, class Image, class Extremes, class Write>
code each_tile(const Image& image, const placed<T>& element, double row_cost, checkpoint cost, bool has_host,
               Extremes extremes, Write write) {
  scratch<tile<T>> work;  // too large for the stack of a small thread
  TRY(work.make(1));
  tile<T>& on = work[0];
  on.flat = element.flat;
  for (std::int64_t r = 0; r < image.nrow; r += on.rows) {
    on.rows = std::min(tile<T>::height, image.nrow - r);
    const auto most = static_cast<std::int32_t>(on.rows);
    if (has_host) on.rows = cost.strip(row_cost, most);
    for (std::int64_t c = 0; c < image.ncol; c += tile<T>::width) {
      const std::int64_t cols = std::min(tile<T>::width, image.ncol - c);
      on.cols = (cols + tile<T>::line - 1) / tile<T>::line * tile<T>::line;
      fill<largest>(image, element, r, c, extremes, on);
      for (std::int64_t a = 0; a < on.rows; ++a)
        write(on.results + a * tile<T>::width, (r + a) * image.ncol + c, cols);
    }
    TRY(cost.add_strip(row_cost, static_cast<std::int32_t>(on.rows)));
  }
  return KORVO_ERR_OK;
}

// Two steps, of which the first writes what the second reads: a matrix like the image.
template <class First, class Second>
code in_two_steps(const _univ_mat& image, First first, Second second) {
  return dispatch(image.type, all_records{}, [&]<class M> {
    temporary<M> made;
    TRY(made.make(image.nrow, image.ncol));
    const _univ_mat between = {made.nrow, made.ncol, made.nelem, made.data, image.type};
    _univ_mat to = between;
    TRY(first(&to));
    return second(&between);
  });
}

}  // namespace korvo

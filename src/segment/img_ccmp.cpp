// Connected components of images and of stacks of them.
#include "korvos/segment/img_ccmp.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <numeric>
#include <utility>

#include "core/checkpoint.hpp"
#include "core/dispatch.hpp"
#include "core/levels.hpp"
#include "core/temporary.hpp"
#include "core/valid.hpp"

#define KORVO_KERNELS "segment/img_ccmp_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

using image_records = records<_u8_mat, _u16_mat, _u32_mat, _s16_mat, _s32_mat, _dbl_mat>;
using stack_records = records<_u8_mat, _u16_mat, _u32_mat, _s32_mat, _dbl_mat>;

// The table of equivalences. A label's entry is a lower label of the same component, or the label itself: a
// root. It grows in fixed steps, since most images need the first one only.
class equivalences {
 public:
  equivalences() = default;
  equivalences(const equivalences&) = delete;
  equivalences& operator=(const equivalences&) = delete;
  ~equivalences() { (void)korvo_free(entries_); }

  [[nodiscard]] std::uint32_t* entries() const { return entries_; }
  [[nodiscard]] std::uint32_t next() const { return static_cast<std::uint32_t>(next_); }
  void grow_by(std::int64_t entries) { step_ = entries; }

  // Makes the next labels, each a root.
  [[nodiscard]] code add(std::int64_t count) {
    if (next_ + count > room_) {
      const std::int64_t room = room_ + (next_ + count - room_ + step_ - 1) / step_ * step_;
      constexpr std::int64_t bytes = sizeof *entries_;
      if (room > largest_size / bytes) return KORVO_ERR_MALLOC;
      void* moved = entries_;
      TRY(korvo_realloc(&moved, static_cast<std::int32_t>(room * bytes)));
      entries_ = static_cast<std::uint32_t*>(moved);
      room_ = room;
    }
    std::iota(entries_ + next_, entries_ + next_ + count, next());
    next_ += count;
    return KORVO_ERR_OK;
  }

  // Numbers the roots from 0 in ascending order, and makes every entry the number of its root, which stands
  // there already when an entry looks it up. Returns the number of roots.
  std::uint32_t number_roots() {
    std::uint32_t roots = 0;
    for (std::int64_t x = 0; x < next_; ++x) {
      const std::uint32_t lower = entries_[x];
      const bool is_root = lower == x;
      entries_[x] = is_root ? roots : entries_[lower];
      roots += is_root ? 1 : 0;
    }
    return roots;
  }

 private:
  std::uint32_t* entries_ = nullptr;
  std::int64_t room_ = 0;
  std::int64_t next_ = 0;
  std::int64_t step_ = 5000;
};

// Labelling in progress. The runs of foreground in the rows of all planes, counted from 1 in raster order, are
// the provisional labels, so that the lowest of a component is that of its first pixel. Until the end each row
// of the label image keeps at its front one bit a pixel, for which every row has room, and nothing else need
// be kept. Rows may be labelled in place.
class labelling {
 public:
  [[nodiscard]] code begin(std::int32_t ncol, bool diagonally) {
    ncol_ = ncol;
    words_ = (std::int64_t{ncol} + 63) / 64;
    diagonally_ = diagonally;
    TRY(table_.add(1));  // the background's
    TRY(bits_.make(3 * words_));
    row_ = bits_.data();
    above_ = row_ + words_;
    behind_ = above_ + words_;
    return KORVO_ERR_OK;
  }

  // Takes up the next row: joins its runs to those of the row above, if it is not the first of its plane, and
  // to those of its row in the plane before, if there is one.
  template <class T>
  [[nodiscard]] code add_row(const T* in, T value, bool is_first, const std::uint32_t* labels_behind,
                             std::uint32_t* labels) {
    const std::uint32_t first = table_.next();
    TRY(table_.add(KORVO_AT_LEVEL(find_runs<T>)(in, value, ncol_, row_)));
    const auto join = KORVO_AT_LEVEL(join_runs);
    if (!is_first) join(row_, above_, words_, diagonally_, first, first_above_, table_.entries());
    if (labels_behind) {
      load_bits(labels_behind, behind_);
      first_behind_ = join(row_, behind_, words_, false, first, first_behind_, table_.entries());
    }
    save_bits(labels);
    std::swap(row_, above_);
    first_above_ = first;
    return KORVO_ERR_OK;
  }

  // The table is to grow by its size so far.
  void grow_by_present_size(std::int64_t least) {
    table_.grow_by(std::max<std::int64_t>(table_.next(), least));
  }

  // Numbers the components, those of at least `min_size` pixels, and writes their numbers over the bits.
  [[nodiscard]] code finish(std::uint32_t min_size, const _univ_mat* planes, std::int32_t count_of_planes,
                            std::uint32_t* count) {
    std::uint32_t found = table_.number_roots();
    if (min_size > 1) {
      scratch<std::uint32_t> sizes;
      TRY(sizes.make(found));
      std::fill_n(sizes.data(), found, 0U);
      each_row(planes, count_of_planes, KORVO_AT_LEVEL(add_sizes),
               [&](std::uint32_t*) { return sizes.data(); });
      found = drop_small(min_size, found, sizes.data());
    }
    each_row(planes, count_of_planes, KORVO_AT_LEVEL(write_labels),
             [](std::uint32_t* labels) { return labels; });
    *count = found;
    return KORVO_ERR_OK;
  }

 private:
  // A label has room for the bits of 32 pixels.
  [[nodiscard]] std::int64_t labels_of_bits() const { return (std::int64_t{ncol_} + 31) / 32; }
  void save_bits(std::uint32_t* labels) const {
    for (std::int64_t k = 0; k < labels_of_bits(); ++k)
      labels[k] = static_cast<std::uint32_t>(row_[k / 2] >> k % 2 * 32);
  }
  void load_bits(const std::uint32_t* labels, std::uint64_t* bits) const {
    std::fill_n(bits, words_, 0U);
    for (std::int64_t k = 0; k < labels_of_bits(); ++k) bits[k / 2] |= std::uint64_t{labels[k]} << k % 2 * 32;
  }

  // Calls kernel(bits, columns, table, last label, label of the first run, result(labels)) for each row in
  // turn.
  template <class Kernel, class Result>
  void each_row(const _univ_mat* planes, std::int32_t count_of_planes, Kernel kernel, Result result) const {
    std::uint32_t first = 1;
    for (std::int32_t p = 0; p < count_of_planes; ++p) {
      auto* labels = static_cast<std::uint32_t*>(planes[p].data);
      for (std::int32_t i = 0; i < planes[p].nrow; ++i, labels += ncol_) {
        load_bits(labels, row_);
        first = kernel(row_, ncol_, table_.entries(), table_.next() - 1, first, result(labels));
      }
    }
  }

  // Turns sizes into new numbers, and the table to those. Returns how many there are.
  std::uint32_t drop_small(std::uint32_t min_size, std::uint32_t found, std::uint32_t* sizes) {
    std::uint32_t kept = 1;
    sizes[0] = 0;
    for (std::uint32_t c = 1; c < found; ++c) sizes[c] = sizes[c] < min_size ? 0 : kept++;
    for (std::uint32_t x = 1; x < table_.next(); ++x) table_.entries()[x] = sizes[table_.entries()[x]];
    return kept;
  }

  std::int32_t ncol_ = 0;
  std::int64_t words_ = 0;
  bool diagonally_ = false;
  equivalences table_;
  scratch<std::uint64_t> bits_;
  std::uint64_t* row_ = nullptr;
  std::uint64_t* above_ = nullptr;
  std::uint64_t* behind_ = nullptr;
  std::uint32_t first_above_ = 1;   // the label of the first run in the row above
  std::uint32_t first_behind_ = 1;  // and of the row behind
};

// All rows of an image. The later passes are counted here too, though what they do is done at the end: one
// pass that numbers and writes at once.
template <class M>
code label_rows(const M* image, element<M> value, double cost_below, void* intrp_ptr, labelling& work,
                std::uint32_t* labels) {
  constexpr double cost_first = 5.0;
  checkpoint cost(intrp_ptr);
  for (std::int32_t i = 0; i < image->nrow; ++i) {
    const std::int64_t at = std::int64_t{i} * image->ncol;
    TRY(work.add_row(image->data + at, value, i == 0, nullptr, labels + at));
    TRY(cost.add(image->ncol * (i == 0 ? cost_first : cost_below)));
  }
  TRY(cost.add(image->nelem));    // to flatten the table
  return cost.add(image->nelem);  // to number
}

constexpr double cost_of_4 = 25.0;
constexpr double cost_of_8 = 100.0;

template <class M>
code label_image(const M* image, std::int32_t connectivity, element<M> value, std::uint32_t min_size,
                 void* intrp_ptr, _u32_mat* labels, std::uint32_t* count) {
  TRY(valid(image));
  TRY(valid(labels));
  if (!same_shape(image, labels)) return KORVO_ERR_ILLEGAL_SIZE;
  if (!count) return KORVO_ERR_NULL_POINTER;
  labelling work;
  TRY(work.begin(image->ncol, connectivity != 0));
  TRY(label_rows(image, value, connectivity != 0 ? cost_of_8 : cost_of_4, intrp_ptr, work, labels->data));
  const _univ_mat plane = {labels->nrow, labels->ncol, labels->nelem, labels->data, KORVO_UINT32};
  return work.finish(min_size, &plane, 1, count);
}

template <class M>
code label_stack(const _mat_set* images, element<M> value, std::uint32_t min_size, void* intrp_ptr,
                 _mat_set* labels, std::uint32_t* count) {
  constexpr double cost_of_6 = 20.0;
  constexpr std::int64_t least_step = 5000;
  const M plane = as<M>(images->mats[0]);
  const auto labels_of = [&](std::int32_t p) { return static_cast<std::uint32_t*>(labels->mats[p].data); };
  labelling work;
  TRY(work.begin(plane.ncol, false));
  TRY(label_rows(&plane, value, cost_of_4, intrp_ptr, work, labels_of(0)));
  work.grow_by_present_size(least_step);
  checkpoint cost(intrp_ptr);
  for (std::int32_t p = 1; p < images->nmat; ++p) {
    const auto* const in = static_cast<const element<M>*>(images->mats[p].data);
    for (std::int32_t i = 0; i < plane.nrow; ++i) {
      const std::int64_t at = std::int64_t{i} * plane.ncol;
      TRY(work.add_row(in + at, value, i == 0, labels_of(p - 1) + at, labels_of(p) + at));
      TRY(cost.add(plane.ncol * cost_of_6));
    }
  }
  const double all = static_cast<double>(plane.nelem) * images->nmat;
  TRY(cost.add(all));
  TRY(cost.add(all));
  return work.finish(min_size, labels->mats, labels->nmat, count);
}

code check_stacks(const _mat_set* images, const _mat_set* labels, const std::uint32_t* count) {
  TRY(matset_verify_allsame(images));
  TRY(matset_verify_allsame(labels));
  if (!count) return KORVO_ERR_NULL_POINTER;
  if (labels->mats[0].type != KORVO_UINT32) return KORVO_ERR_ILLEGAL_TYPE;
  if (images->nmat != labels->nmat || !same_shape(images->mats, labels->mats)) return KORVO_ERR_ILLEGAL_SIZE;
  return KORVO_ERR_OK;
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

#define LABEL(name, M, T)                                                                           \
  code name(const M* image, int32_t connectivity, T foreground, uint32_t min_size, void* intrp_ptr, \
            _u32_mat* labels, uint32_t* count) {                                                    \
    return label_image(image, connectivity, foreground, min_size, intrp_ptr, labels, count);        \
  }

LABEL(imgu8_connected_components, _u8_mat, uint8_t)
LABEL(imgu16_connected_components, _u16_mat, uint16_t)
LABEL(imgu32_connected_components, _u32_mat, uint32_t)
LABEL(imgs16_connected_components, _s16_mat, int16_t)
LABEL(imgs32_connected_components, _s32_mat, int32_t)
LABEL(imgdbl_connected_components, _dbl_mat, double)

code imguniv_connected_components(const _univ_mat* image, int32_t connectivity, _univ_scalar foreground,
                                  uint32_t min_size, void* intrp_ptr, _univ_mat* labels, uint32_t* count) {
  if (!image || !labels) return KORVO_ERR_NULL_POINTER;
  if (labels->type != KORVO_UINT32 || foreground.type != image->type) return KORVO_ERR_ILLEGAL_TYPE;
  return dispatch(image->type, image_records{}, [&]<class M> {
    const M in = as<M>(*image);
    _u32_mat out = as<_u32_mat>(*labels);
    return label_image(&in, connectivity, number<M>(foreground), min_size, intrp_ptr, &out, count);
  });
}

code imgset_connected_components_3d(const _mat_set* images, int32_t /*connectivity*/, _univ_scalar foreground,
                                    uint32_t min_size, void* intrp_ptr, _mat_set* labels, uint32_t* count) {
  TRY(check_stacks(images, labels, count));
  if (foreground.type != images->mats[0].type) return KORVO_ERR_ILLEGAL_TYPE;
  return dispatch(foreground.type, stack_records{}, [&]<class M> {
    TRY(members_valid({images, labels}));
    return label_stack<M>(images, number<M>(foreground), min_size, intrp_ptr, labels, count);
  });
}

}  // extern "C"

// The nearest codeword of each training vector: full search, search by norms, search by norms with a table.
#pragma once

#include <cstdint>

#include "core/code.hpp"
#include "core/temporary.hpp"
#include "korvos/core/mat_univ.h"

namespace korvo {

enum search_mode : std::int32_t { full_search = 0, norm_search = 1, table_search = 2 };

// What the distance to the nearest codeword must be less than.
constexpr double beyond_reach = 1e37;

// Codewords by groups: the elements of one index of all codewords of a group lie side by side.
struct codeword_groups {
  static constexpr std::int64_t group = 16;  // a multiple of twice the lanes of every level
  const double* data;
  std::int64_t codewords;
  std::int64_t dimension;
};

// What a pass finds: of each codeword's cell the population, the mean squared distance and the mean of its
// members, and the row number of each training vector's codeword. The last two may be null.
struct cell_statistics {
  std::int32_t* populations;
  double* distortions;
  double* centroids;
  std::int32_t* index;
};

class nearest_search {
 public:
  // Makes room for codebooks of up to `codewords` rows.
  [[nodiscard]] code make(std::int32_t mode, std::int64_t codewords, std::int64_t dimension);

  // One pass over the training vectors, and the mean of their squared distances; polls once.
  [[nodiscard]] code pass(const _dbl_mat& training, const _dbl_mat& codebook, void* intrp_ptr,
                          const cell_statistics& found, double* distortion) const;

 private:
  struct nearest {
    std::int64_t position;
    double distance;
  };

  void prepare(const _dbl_mat& codebook) const;
  void gather(const _dbl_mat& codebook) const;
  void sort(const _dbl_mat& codebook) const;
  void tabulate(const _dbl_mat& codebook) const;
  nearest walk(const double* x, const _dbl_mat& codebook) const;
  void find(const double* x, std::int64_t count, const _dbl_mat& codebook, std::int32_t* rows,
            double* distances) const;
  std::int64_t first_not_below(double bound, std::int64_t low, std::int64_t high) const;
  std::int64_t last_below(double bound, std::int64_t low, std::int64_t high) const;

  std::int32_t mode_ = full_search;
  scratch<double> groups_;
  scratch<double> norms_;       // ascending
  scratch<std::int32_t> rows_;  // of the codewords in the order of their norms
  scratch<double> table_;       // distances between codewords, by position in that order
};

}  // namespace korvo

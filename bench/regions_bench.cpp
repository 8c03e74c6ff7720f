// Region growing: one band, blocks of 4 by 4, to two regions.
#include <cstdint>
#include <memory>
#include <string>

#include "bench/bench.hpp"
#include "korvos/segment/img_erg.h"

namespace {

using korvo::dbl_matrix;

enum picture { noise, flat, stripes };

std::shared_ptr<dbl_matrix> draw(int size, picture what) {
  auto image = std::make_shared<dbl_matrix>(dbl_matrix::random(size, size, 1));
  for (int row = 0; row < size && what != noise; ++row)
    for (int col = 0; col < size; ++col)
      (*image)(row, col) = what == stripes ? (row + col) / 16 % 2 * 9.0 : 0.0;
  return image;
}

void add_growth(const std::string& family, int size, std::int32_t order, picture what) {
  bench::add("region_growing_" + family + "_order_" + std::to_string(order), size, "korvos", [=] {
    const auto image = draw(size, what);
    const auto labels = std::make_shared<korvo::s32_matrix>(size, size);
    return [=] {
      const _univ_mat from = image->universal();
      _univ_mat to = labels->universal();
      bench::check(imguniv_region_grow_klm(&from, order, 0, 4, 4, 2, 1e300, nullptr, nullptr, nullptr, &to,
                                           nullptr, nullptr, nullptr));
    };
  });
}

const bench::registration all([] {
  for (const int size : {128, 256, 512, 1024})
    for (const std::int32_t order : {0, 1}) {
      add_growth("noise", size, order, noise);
      add_growth("flat", size, order, flat);
      add_growth("stripes", size, order, stripes);
    }
});

}  // namespace

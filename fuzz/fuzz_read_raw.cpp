// Raw matrices: what can be read is written as the same bytes.
#include <vector>

#include "fuzz/target.hpp"
#include "korvos/core/mat_univ.h"
#include "korvos/matrix/mat_io.h"

FUZZ_TARGET(fuzz_read_raw) {
  const auto type = static_cast<_korvo_type>(in.byte() % 9);
  const std::uint8_t big_endian = in.byte();
  const std::int32_t skip = static_cast<std::int8_t>(in.byte());
  const std::int32_t rows = 1 + in.byte() % 8;
  const std::int32_t cols = 1 + in.byte() % 8;
  const std::string file = in.rest();
  const held_stream stream = reading(file);
  std::vector<korvo_dcomplex> elements(static_cast<std::size_t>(rows * cols));
  _univ_mat mat{};
  require(matuniv_wrap_data(&mat, elements.data(), rows, cols, type) == KORVO_ERR_OK);
  if (matuniv_read_raw(stream.get(), skip, big_endian, nullptr, &mat) != KORVO_ERR_OK) return;

  const std::string bytes =
      written([&](FILE* to) { require(matuniv_write_raw(to, &mat, big_endian, nullptr) == KORVO_ERR_OK); });
  require(file.compare(static_cast<std::size_t>(skip), bytes.size(), bytes) == 0);
}

// Lists of numbers: what can be read is written and read again.
#include <vector>

#include "fuzz/target.hpp"
#include "korvos/core/mat_univ.h"
#include "korvos/matrix/mat_io.h"

FUZZ_TARGET(fuzz_read_ascii) {
  const auto type = static_cast<_korvo_type>(in.byte() % 9);  // those without a list too
  const auto delimiter = static_cast<char>(in.byte());
  const auto comment = static_cast<char>(in.byte());
  const std::int32_t count = 1 + in.byte() % 16;
  const std::string file = in.rest();
  const held_stream stream = reading(file);
  std::vector<korvo_dcomplex> elements(static_cast<std::size_t>(count));
  _univ_mat mat{};
  require(matuniv_wrap_data(&mat, elements.data(), 1, count, type) == KORVO_ERR_OK);
  if (matuniv_read_ascii(stream.get(), delimiter, comment, nullptr, &mat) != KORVO_ERR_OK) return;

  const auto write = [&](FILE* to) {
    require(matuniv_write_ascii(to, &mat, nullptr, static_cast<std::uint8_t>(comment), nullptr) ==
            KORVO_ERR_OK);
  };
  const std::string text = written(write);
  const held_stream again = reading(text);
  require(matuniv_read_ascii(again.get(), 0, 0, nullptr, &mat) == KORVO_ERR_OK);
  require(written(write) == text);
}

// Printed matrices: what can be parsed is printed and parsed again without a loss.
#include <cstring>

#include "core/dispatch.hpp"
#include "fuzz/target.hpp"
#include "korvos/core/mat_univ.h"
#include "korvos/matrix/mat_io.h"

namespace {

std::size_t bytes_of(const _univ_mat& mat) {
  std::size_t size = 0;
  (void)korvo::dispatch(mat.type, korvo::real_records{}, [&]<class M> {
    size = sizeof(korvo::element<M>) * static_cast<std::size_t>(mat.nelem);
    return KORVO_ERR_OK;
  });
  return size;
}

}  // namespace

FUZZ_TARGET(fuzz_parse) {
  const auto line_length = static_cast<std::int8_t>(in.byte());
  const std::string file = in.rest();
  const held_stream stream = reading(file);
  _univ_mat mat{};
  while (matuniv_parse(stream.get(), nullptr, &mat) == KORVO_ERR_OK) {  // matrices may follow one another
    const std::string text = written([&](FILE* to) {
      const char* const format = korvo::is_floating(mat.type) ? "%.17g " : nullptr;
      require(matuniv_print(to, &mat, format, line_length, nullptr) == KORVO_ERR_OK);
    });
    const held_stream again = reading(text);
    _univ_mat same{};
    require(matuniv_parse(again.get(), nullptr, &same) == KORVO_ERR_OK);
    require(same.type == mat.type && same.nrow == mat.nrow && same.ncol == mat.ncol);
    require(std::memcmp(same.data, mat.data, bytes_of(mat)) == 0);
    require(matuniv_free(&same) == KORVO_ERR_OK && matuniv_free(&mat) == KORVO_ERR_OK);
  }
  require(mat.data == nullptr);
}

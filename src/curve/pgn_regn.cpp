// The run-length chain record: making, resizing, freeing.
#include "korvos/curve/pgn_regn.h"

#include <algorithm>
#include <cstdint>

#include "core/temporary.hpp"

namespace korvo {
namespace {

// Gives an array, which may be null, room for `count` elements, sized in 64 bits.
template <class T>
code resize(T** array, std::int64_t count) {
  const std::int64_t bytes = count * static_cast<std::int64_t>(sizeof(T));
  if (bytes > largest_size) return KORVO_ERR_MALLOC;
  void* block = *array;
  TRY(korvo_realloc(&block, static_cast<std::int32_t>(bytes)));
  *array = static_cast<T*>(block);
  return KORVO_ERR_OK;
}

}  // namespace
}  // namespace korvo

using namespace korvo;

extern "C" {

code pgn_chain_malloc(pgn_chain* chain, int32_t num_links) {
  if (!chain) return KORVO_ERR_NULL_POINTER;
  if (num_links < 0) return KORVO_ERR_ILLEGAL_VALUE;
  *chain = {chain->start_row, chain->start_col, 0, nullptr, nullptr};
  if (num_links == 0) return KORVO_ERR_OK;
  scratch<std::int32_t> run_lengths;
  scratch<std::int8_t> directions;
  TRY(run_lengths.make(num_links));
  TRY(directions.make(num_links));
  *chain = {chain->start_row, chain->start_col, num_links, run_lengths.release(), directions.release()};
  return KORVO_ERR_OK;
}

code pgn_chain_realloc(pgn_chain* chain, int32_t num_links) {
  if (!chain) return KORVO_ERR_NULL_POINTER;
  if (num_links < 0) return KORVO_ERR_ILLEGAL_VALUE;
  if (num_links == 0) return pgn_chain_free(chain);
  chain->num_links =
      std::min(chain->num_links, num_links);  // holds should one array be resized and not the other
  TRY(resize(&chain->run_lengths, num_links));
  TRY(resize(&chain->directions, num_links));
  chain->num_links = num_links;
  return KORVO_ERR_OK;
}

code pgn_chain_free(pgn_chain* chain) {
  if (!chain) return KORVO_ERR_OK;
  (void)korvo_free(chain->run_lengths);
  (void)korvo_free(chain->directions);
  return pgn_chain_malloc(chain, 0);
}

}  // extern "C"

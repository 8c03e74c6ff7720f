// Chains in scenes.
#pragma once

#include "korvos/curve/pgn_regn.h"
#include "tests/support/scene.hpp"

// A chain of the scene, empty at first; its links are looked at if the routine fills them.
inline pgn_chain* chain_in(scene& s, bool filled) {
  return s.record<pgn_chain>(
      [=](pgn_chain* chain, byte_hash& hash) {
        const auto links = static_cast<std::size_t>(filled ? chain->num_links : 0);
        hash.add(chain, 3 * sizeof(std::int32_t));
        if (links > 0) hash.add(chain->run_lengths, links * sizeof(std::int32_t));
        if (links > 0) hash.add(chain->directions, links);
      },
      [](pgn_chain* chain) { (void)pgn_chain_free(chain); });
}

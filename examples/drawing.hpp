// Contours over pictures.
#pragma once

#include "colours.hpp"
#include "words.hpp"

namespace demo {

// A chain that frees itself.
struct chain : pgn_chain {
  chain() : pgn_chain{} {}
  chain(const chain&) = delete;
  chain& operator=(const chain&) = delete;
  ~chain() { (void)pgn_chain_free(this); }
};

// The polygon of a matrix of two columns, x and y, over a picture of u8, in a line three pixels wide.
void draw(const _univ_mat& polygon, bool closed, ink colour, const _mat_set& picture);

// A grey picture, darker than it is, in three planes of u8.
planes dimmed(const _univ_mat& grey);

}  // namespace demo

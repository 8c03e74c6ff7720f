// The range of a matrix, for modules that have the record as a template parameter.
#pragma once

#include <cstdint>

#include "core/checkpoint.hpp"
#include "core/element.hpp"
#include "core/valid.hpp"

namespace korvo {

template <class M>
code range(const M* in, void* intrp_ptr, element<M>* minimum, element<M>* maximum) {
  TRY(valid(in));
  if (!minimum || !maximum) return KORVO_ERR_NULL_POINTER;
  element<M> least = in->data[0];
  element<M> greatest = in->data[0];
  for (std::int32_t i = 1; i < in->nelem; ++i) {
    const element<M> x = in->data[i];
    least = x < least ? x : least;
    greatest = x > greatest ? x : greatest;
  }
  *minimum = least;
  *maximum = greatest;
  return checkpoint(intrp_ptr).add(3.0 * in->nelem);
}

}  // namespace korvo

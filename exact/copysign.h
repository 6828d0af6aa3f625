// copysign(x, y): the magnitude of x with the sign of y; bits only, NaN included.
#pragma once

#include "frame/kernel.h"

namespace vorx {

template <class E>
struct copysign_kernel : kernel<E> {
  using V = typename E::vector;
  static V path(V x, V y, const no_constants&) {
    V magnitude = magnitude_mask<V>();
    return (x & magnitude) | clear(magnitude, y);
  }
};
using copysign_f32 = copysign_kernel<f32>;
using copysign_f64 = copysign_kernel<f64>;

}  // namespace vorx

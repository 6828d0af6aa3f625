// mad(x, y, z) = x y + z with two roundings, product and sum: never fused.
#pragma once

#include "frame/kernel.h"

namespace vorx {

template <class E>
struct mad_kernel : kernel<E> {
  using V = typename E::vector;
  static V path(V x, V y, V z, const no_constants&) { return x * y + z; }
};
using mad_f32 = mad_kernel<f32>;
using mad_f64 = mad_kernel<f64>;

}  // namespace vorx

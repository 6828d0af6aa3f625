// fabs(x): x with its sign bit cleared, a NaN included.
#pragma once

#include "frame/kernel.h"

namespace vorx {

template <class E>
struct fabs_kernel : kernel<E> {
  using V = typename E::vector;
  static V path(V x, const no_constants&) { return x & magnitude_mask<V>(); }
};
using fabs_f32 = fabs_kernel<f32>;
using fabs_f64 = fabs_kernel<f64>;

}  // namespace vorx

// fabs(x): x with its sign bit cleared, a NaN included.
#pragma once

#include "frame/kernel.h"

namespace vorx {

template <class E>
struct fabs_constants {
  typename E::constant magnitude = pattern<E>(0x7fffffff, 0x7fffffffffffffff);
};

template <class E>
struct fabs_kernel : kernel<E, fabs_constants<E>> {
  using typename kernel<E, fabs_constants<E>>::constants;
  using V = typename E::vector;
  static V path(V x, const constants& k) { return x & k.magnitude; }
};
using fabs_f32 = fabs_kernel<f32>;
using fabs_f64 = fabs_kernel<f64>;

}  // namespace vorx

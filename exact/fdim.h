// fdim(x, y) = x - y where y < x, else +0.
#pragma once

#include "exact/fields.h"

namespace vorx {

// Special results: x where y is not a NaN but x is, y where it is a NaN, bits untouched; fdim(+inf, +inf) = +0.
template <class E>
struct fdim_kernel : kernel<E, finite_constants<E>> {
  using typename kernel<E, finite_constants<E>>::constants;
  using V = typename E::vector;
  using T = typename E::scalar;

  static V path(V x, V y, const constants&) { return (x - y) & as_float(y < x); }
  static i32x4 special(V x, V y, const constants& k) { return not_finite(x, y, k); }
  static int rare(const T* x, const T* y, T* result) {  // infinities keep the path's result
    if (is_nan(bits_of(*x))) *result = *x;
    if (is_nan(bits_of(*y))) *result = *y;
    return ordinary;
  }
};
using fdim_f32 = fdim_kernel<f32>;
using fdim_f64 = fdim_kernel<f64>;

}  // namespace vorx

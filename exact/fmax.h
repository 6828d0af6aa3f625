// fmax, fmin: the larger, the smaller of x and y; a NaN gives way to the other operand. The packed operation decides: of two
// zeros, whatever their signs, it takes y.
#pragma once

#include "exact/fields.h"

namespace vorx {

// Special results: y where x is a NaN, x where only y is one; bits untouched, so that two NaN give y.
template <class E, bool larger>
struct fmax_kernel : kernel<E, finite_constants<E>> {
  using typename kernel<E, finite_constants<E>>::constants;
  using V = typename E::vector;
  using T = typename E::scalar;

  static V path(V x, V y, const constants&) { return larger ? max(x, y) : min(x, y); }
  static i32x4 special(V x, V y, const constants& k) { return not_finite(x, y, k); }
  static int rare(const T* x, const T* y, T* result) { return choose_number(x, y, result); }
};
using fmax_f32 = fmax_kernel<f32, true>;
using fmax_f64 = fmax_kernel<f64, true>;
using fmin_f32 = fmax_kernel<f32, false>;
using fmin_f64 = fmax_kernel<f64, false>;

}  // namespace vorx

// maxmag, minmag: the operand of larger, of smaller magnitude; of equal magnitudes the larger, the smaller operand. The packed
// operation on (y, x) decides then: of two zeros, whatever their signs, it takes x.
#pragma once

#include "exact/fields.h"

namespace vorx {

// Special results: y where x is a NaN, x where only y is one; bits untouched, so that two NaN give y.
template <class E, bool larger>
struct maxmag_kernel : kernel<E, finite_constants<E>> {
  using typename kernel<E, finite_constants<E>>::constants;
  using V = typename E::vector;
  using T = typename E::scalar;

  static V path(V x, V y, const constants& k) {
    V ax = x & k.magnitude, ay = y & k.magnitude;
    V unequal = select(larger ? ay < ax : ax < ay, x, y);
    return select(ax == ay, larger ? max(y, x) : min(y, x), unequal);
  }
  static i32x4 special(V x, V y, const constants& k) { return not_finite(x, y, k); }
  static int rare(const T* x, const T* y, T* result) { return choose_number(x, y, result); }
};
using maxmag_f32 = maxmag_kernel<f32, true>;
using maxmag_f64 = maxmag_kernel<f64, true>;
using minmag_f32 = maxmag_kernel<f32, false>;
using minmag_f64 = maxmag_kernel<f64, false>;

}  // namespace vorx

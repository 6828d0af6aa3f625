// modf(x) = x - trunc(x), with the sign of x; second result trunc(x).
//
// A negative integral x has the fraction +0: the plain difference, deliberately.
#pragma once

#include "exact/fields.h"

namespace vorx {

// Special results: infinities give a zero of their sign and themselves, NaN itself twice, quiet.
template <class E>
struct modf_kernel : kernel<E, finite_constants<E>> {
  using typename kernel<E, finite_constants<E>>::constants;
  using V = typename E::vector;
  using T = typename E::scalar;
  static constexpr T seams[] = {-1, 0, 1};

  static two<V, V> path(V x, const constants&) {
    V integral = round_to_integral<toward_zero>(x);
    return {x - integral, integral};
  }
  static i32x4 special(V x, const constants& k) { return not_finite(x, k); }
  static int rare(const T* x, T* fraction, T* integral) { return split_special(x, fraction, integral); }
};
using modf_f32 = modf_kernel<f32>;
using modf_f64 = modf_kernel<f64>;

}  // namespace vorx

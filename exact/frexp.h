// frexp(x): m in [0.5, 1) with the sign of x, and the integer n, so that x = m 2^n.
#pragma once

#include "exact/fields.h"

namespace vorx {

template <class E>
struct frexp_constants : normal_constants<E> {
  typename E::constant exponent = pattern<E>(0x7f800000, 0x7ff0000000000000);
  typename E::constant half = pattern<E>(0x3f000000, 0x3fe0000000000000);
  rep32 half_exponent = bits32(format<E>::bias - 1);
};

// Special results: zeros, infinities and NaN come back with n = 0, a signalling NaN quiet.
template <class E>
struct frexp_kernel : kernel<E, frexp_constants<E>> {
  using typename kernel<E, frexp_constants<E>>::constants;
  using V = typename E::vector;
  using T = typename E::scalar;
  using I = typename E::integer;
  using F = format<E>;

  static two<V, i32x4> path(V x, const constants& k) {
    V m = clear(k.exponent, x) | k.half;
    i32x4 n = biased_exponent(x, k) - k.half_exponent;
    return {m, pack_lanes<E>(n)};
  }
  static i32x4 special(V x, const constants& k) { return not_normal(x, k); }

  static int rare(const T* x, T* m, int32_t* n) {
    I bits = bits_of(*x);
    if (is_zero(bits) || is_not_finite(bits)) {
      *m = *x * opaque(T(1));
      *n = 0;
      return ordinary;
    }
    bits = bits_of(*x * power_of_two<T>(F::normalise));
    *m = from_bits(with_exponent(bits, F::bias - 1));
    *n = biased_exponent_of(bits) - (F::bias - 1) - F::normalise;
    return ordinary;
  }
};
using frexp_f32 = frexp_kernel<f32>;
using frexp_f64 = frexp_kernel<f64>;

}  // namespace vorx

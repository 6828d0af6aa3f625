// ldexp(x, n) = x 2^n, rounded once.
//
// The path adds n to the exponent field. That is the result where x and x 2^n are both normal; all other lanes are special.
#pragma once

#include "exact/fields.h"

namespace vorx {

template <class E>
struct ldexp_constants {
  typename E::constant magnitude = pattern<E>(0x7fffffff, 0x7fffffffffffffff);
  rep32 one = bits32(1);
  rep32 range = bits32(format<E>::max_field - 2);
};

// Special results: zeros, infinities and NaN come back whatever n is, a signalling NaN quiet; infinity on overflow, gradual
// underflow.
template <class E>
struct ldexp_kernel : kernel<E, ldexp_constants<E>> {
  using typename kernel<E, ldexp_constants<E>>::constants;
  using V = typename E::vector;
  using T = typename E::scalar;
  using I = typename E::integer;
  using F = format<E>;

  static V path(V x, i32x4 n, const constants&) {
    if constexpr (E::lanes == 4)
      return as_float(as_int(x) + (n << F::fraction_bits));
    else
      return as_float(as_int(x) + (extend_zero(n) << F::fraction_bits));
  }

  // Flagged unless the biased exponents e of x and e + n are both 1 to 254 (2046): with 1 taken off both, unless the smaller is
  // not negative and the larger at most 253 (2045). A sum that wraps changes its sign and is flagged too.
  static i32x4 special(V x, i32x4 n, const constants& k) {
    i32x4 e = biased_exponent(x, k) - k.one;
    i32x4 sum = e + (E::lanes == 4 ? n : duplicate_words(n));
    return min(e, sum) | (as_int(k.range) - max(e, sum));  // a sign bit where negative
  }

  static int rare(const T* x, const int32_t* n, T* result) {
    constexpr int limit = 65536;  // moves every number out of range, and keeps e + n small
    I bits = only_bits(bits_of(*x));
    if (is_zero(bits) || is_not_finite(bits)) return *result = *x * opaque(T(1)), ordinary;

    int e = biased_exponent_of(bits);
    if (e == 0) {
      bits = bits_of(*x * power_of_two<T>(F::normalise));
      e = biased_exponent_of(bits) - F::normalise;
    }
    e += *n < -limit ? -limit : *n > limit ? limit : *n;

    T sign = from_bits(bits_of(T(1)) | (bits & sign_bit<I>));
    if (e >= F::max_field) return *result = sign * overflowed<T>(), overflow;
    if (e >= 1) return *result = from_bits(with_exponent(bits, e)), ordinary;
    if (e >= -F::fraction_bits) {  // at e = -fraction_bits the result is half the smallest subnormal or more, and may round up
      T wide = from_bits(with_exponent(bits, e + F::normalise));
      *result = wide * power_of_two<T>(-F::normalise);  // the one rounding
      if (!is_zero(only_bits(bits_of(*result)))) return ordinary;
    }
    return *result = sign * underflowed<T>(), underflow;
  }
};
using ldexp_f32 = ldexp_kernel<f32>;
using ldexp_f64 = ldexp_kernel<f64>;

}  // namespace vorx

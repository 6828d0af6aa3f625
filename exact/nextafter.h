// nextafter(x, y): the number next to x in the direction of y.
//
// Numbers of one sign are ordered like their bit patterns. The path finishes lanes whose signs differ, where the step goes
// towards zero: one pattern down. Lanes of like signs are special, deliberately.
#pragma once

#include "exact/fields.h"

namespace vorx {

template <class E>
struct nextafter_constants : normal_constants<E> {
  // From the second normal number on, for x: the step must not leave the normal range. Doubles are tested by their high words, so
  // that the first 2^32 normal ones are special.
  rep32 second = bits32(E::lanes == 4 ? 0x80800001 : 0x80100001);
  rep32 second_range = bits32(E::lanes == 4 ? 0xfefffffe : 0xffdffffe);
  rep32 minus_one = bits32(0xffffffff);
  typename E::constant one = pattern<E>(1, 1);
};

// Special results: y where x equals y, NaN for NaN; from zero the smallest subnormal with the sign of y.
template <class E>
struct nextafter_kernel : kernel<E, nextafter_constants<E>> {
  using typename kernel<E, nextafter_constants<E>>::constants;
  using V = typename E::vector;
  using T = typename E::scalar;
  using I = typename E::integer;
  using F = format<E>;

  static V path(V x, V, const constants& k) { return as_float(as_int(x) - k.one); }
  static i32x4 special(V x, V y, const constants& k) {
    i32x4 x_out = (magnitude_words(x, k) - k.second) > k.second_range;
    i32x4 like_signs = field_words(x ^ y) > k.minus_one;
    return x_out | like_signs | not_normal(y, k);
  }

  static int rare(const T* x, const T* y, T* result) {
    I a = bits_of(*x), b = bits_of(*y);
    if (is_nan(a) || is_nan(b)) return *result = *x + *y, ordinary;
    if (*x == *y) return *result = *y, ordinary;
    if (is_zero(a)) {
      a = (b & sign_bit<I>) | 1;
    } else {
      bool away_from_zero = ((a ^ b) & sign_bit<I>) == 0 && (a & ~sign_bit<I>) < (b & ~sign_bit<I>);
      a += away_from_zero ? 1 : I(-1);
    }
    *result = from_bits(a);
    int field = biased_exponent_of(a);
    if (field == F::max_field) return opaque(overflowed<T>()), overflow;  // for the flag
    if (field == 0) return opaque(underflowed<T>()), underflow;
    return ordinary;
  }
};
using nextafter_f32 = nextafter_kernel<f32>;
using nextafter_f64 = nextafter_kernel<f64>;

}  // namespace vorx

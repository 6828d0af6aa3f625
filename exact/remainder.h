// remainder(x, y) = x - n y with n the integer nearest to x / y, halves to even; exact. remquo gives n too.
//
// The steps are those of fmod (see there), with the quotient rounded to nearest.
#pragma once

#include "exact/long_division.h"

namespace vorx {

template <class E>
struct remainder_constants {
  typename E::constant magnitude = pattern<E>(0x7fffffff, 0x7fffffffffffffff);
  typename E::constant sign = pattern<E>(0x80000000, 0x8000000000000000);
  typename E::constant upper = pattern<E>(0xfffff000, 0xfffffffffc000000);  // 12 of 24 bits, 27 of 53 bits
  typename E::constant one = pattern<E>(0x3f800000, 0x3ff0000000000000);
  rep32 quotient_bits = bits32(E::lanes == 4 ? 11 : 25);
  // Divisors from 2^-126 to 2^116 (float), from 2^-1022 to 2^998 (double), so that q y does not overflow: one signed comparison
  // of biased words.
  rep32 smallest = bits32(E::lanes == 4 ? 0x80800000 : 0x80100000);
  rep32 range = bits32(E::lanes == 4 ? 0xf8ffffff : 0xfe3fffff);
};

// Special results: NaN for a zero y, an infinite x, a NaN, the integer being 0 then; x and 0 for an infinite y. A zero keeps the
// sign of x.
template <class E>
struct remainder_base : kernel<E, remainder_constants<E>> {
  using typename kernel<E, remainder_constants<E>>::constants;
  using V = typename E::vector;

  // Remainder and quotient, the latter as a number.
  VORX_INLINE static two<V, V> divide(V x, V y, const constants& k) {
    V q = round_to_integral<current_quiet>(x / y);
    V yh = y & k.upper, yl = y - yh;
    V r = x - q * yh - q * yl;

    // More than half of y is left where the division rounded across the middle between two integers. (|y| - |r| is exact where it
    // matters; 0.5 |y| might be rounded.)
    V r_sign = r & k.sign, ar = r ^ r_sign;
    V y_sign = y & k.sign, ay = y ^ y_sign;
    V off = as_float((ay - ar) < ar);
    q = q + (off & (V(k.one) | (r_sign ^ y_sign)));
    r = r - (off & (ay | r_sign));
    return {r | (as_float(r == V{}) & x & k.sign), q};
  }
  static i32x4 special(V x, V y, const constants& k) { return needs_long_division(x, y, k); }
};

template <class E>
struct remainder_kernel : remainder_base<E> {
  using typename remainder_base<E>::constants;
  using V = typename E::vector;
  using T = typename E::scalar;

  static V path(V x, V y, const constants& k) { return remainder_base<E>::divide(x, y, k).first; }
  static int rare(const T* x, const T* y, T* result) {
    division<T> by(*x, *y);
    if (by.is_trivial) return *result = by.trivial, ordinary;
    by.reduce();
    *result = by.remainder_to_nearest();
    return ordinary;
  }
};
using remainder_f32 = remainder_kernel<f32>;
using remainder_f64 = remainder_kernel<f64>;

// The integer is whole on the path; the rare-case routine gives its sign and the low 31 bits of its magnitude.
template <class E>
struct remquo_kernel : remainder_base<E> {
  using typename remainder_base<E>::constants;
  using V = typename E::vector;
  using T = typename E::scalar;

  static two<V, i32x4> path(V x, V y, const constants& k) {
    auto [r, q] = remainder_base<E>::divide(x, y, k);
    return {r, to_int(q)};
  }
  static int rare(const T* x, const T* y, T* result, int32_t* quotient) {
    division<T> by(*x, *y);
    if (by.is_trivial) return *result = by.trivial, *quotient = 0, ordinary;
    by.reduce();
    *result = by.remainder_to_nearest();
    int32_t n = static_cast<int32_t>(by.quotient & 0x7fffffff);
    *quotient = by.negative ? -n : n;
    return ordinary;
  }
};
using remquo_f32 = remquo_kernel<f32>;
using remquo_f64 = remquo_kernel<f64>;

}  // namespace vorx

// fmod(x, y) = x - n y with n = trunc(x / y), exact, with the sign of x.
//
// The path takes quotients of up to 12 bits (float) or 26 bits (double): the products of q with both halves of y are then exact,
// and so is every difference. All terms are multiples of the last bit of y, and where a difference has more bits than a
// significand, x and q yh have as many zero bits at their end.
#pragma once

#include "exact/long_division.h"

namespace vorx {

template <class E>
struct fmod_constants {
  typename E::constant magnitude = pattern<E>(0x7fffffff, 0x7fffffffffffffff);
  typename E::constant upper = pattern<E>(0xfffff000, 0xfffffffffc000000);  // 12 of 24 bits, 27 of 53 bits
  rep32 quotient_bits = bits32(E::lanes == 4 ? 11 : 25);
  // Divisors from 2^-114 (float), 2^-1022 (double), to the largest finite number: one signed comparison of biased words.
  rep32 smallest = bits32(E::lanes == 4 ? 0x86800000 : 0x80100000);
  rep32 range = bits32(E::lanes == 4 ? 0xf8ffffff : 0xffdfffff);
};

// Special results: NaN for a zero y, an infinite x, a NaN; x for an infinite y. A zero keeps the sign of x.
template <class E>
struct fmod_kernel : kernel<E, fmod_constants<E>> {
  using typename kernel<E, fmod_constants<E>>::constants;
  using V = typename E::vector;
  using T = typename E::scalar;

  static V path(V x, V y, const constants& k) {
    V ax = x & k.magnitude, ay = y & k.magnitude, sign = x ^ ax;
    V q = round_to_integral<toward_zero>(ax / ay);
    V yh = ay & k.upper, yl = ay - yh;
    V r = ax - q * yh - q * yl;
    r = r + (as_float(r < V{}) & ay);  // the rounded quotient was one too large
    return r | sign;
  }
  static i32x4 special(V x, V y, const constants& k) { return needs_long_division(x, y, k); }
  static int rare(const T* x, const T* y, T* result) {
    division<T> by(*x, *y);
    if (by.is_trivial) return *result = by.trivial, ordinary;
    by.reduce();
    *result = by.remainder_towards_zero();
    return ordinary;
  }
};
using fmod_f32 = fmod_kernel<f32>;
using fmod_f64 = fmod_kernel<f64>;

}  // namespace vorx

// round(x): to the nearest integral value, halfway cases away from zero.
//
// The magnitude is rounded to nearest even; a halfway case that went down to the even neighbour shows as a difference of exactly
// 0.5 and is moved up by 1. (floor(|x| + 0.5) would be wrong just below 0.5 and for odd |x| from 2^23 on, where the sum rounds.)
#pragma once

#include "frame/kernel.h"

namespace vorx {

template <class E>
struct round_constants {
  typename E::constant magnitude = pattern<E>(0x7fffffff, 0x7fffffffffffffff);
  typename E::constant half = pattern<E>(0x3f000000, 0x3fe0000000000000);
  typename E::constant one = pattern<E>(0x3f800000, 0x3ff0000000000000);
};

// The sign of x stays on zero results, infinities and NaN.
template <class E>
struct round_kernel : kernel<E, round_constants<E>> {
  using typename kernel<E, round_constants<E>>::constants;
  using V = typename E::vector;

  static V path(V x, const constants& k) {
    V a = x & k.magnitude;
    V r = round_to_integral<to_nearest>(a);
    V up = as_float((a - r) == k.half) & k.one;  // the difference of a number and its nearest integer is exact
    return (r + up) | clear(k.magnitude, x);
  }
};
using round_f32 = round_kernel<f32>;
using round_f64 = round_kernel<f64>;

}  // namespace vorx

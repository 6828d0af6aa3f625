// Native arcsines and arccosines, in radians and in half revolutions: the scheme of the accurate kernels with shorter polynomials
// and without the roots' tails. They need no rare cases: the root of a negative number is NaN beyond 1.
#pragma once

#include "frame/kernel.h"

namespace vorx {

struct native_arcsine_in_radians_f32 {
  rep32 right_angle = c(0x3fc90fdb, 1.57079637f);
  rep32 straight_angle = c(0x40490fdb, 3.14159274f);
  // asin v = v P(v^2) on [0, 1/2]: 2^-14.9 relative (tables/fits/inverse_trig_native.sollya)
  rep32 c2 = c(0x3dc496f1, 0.0959910229f);
  rep32 c1 = c(0x3e287ca2, 0.164537936f);
  rep32 c0 = c(0x3f800105, 1.00003111f);
};
struct native_arcsine_in_half_revolutions_f32 {
  rep32 right_angle = c(0x3f000000, 0.5f);
  rep32 straight_angle = c(0x3f800000, 1.0f);
  // asin v / pi = v P(v^2) on [0, 1/2]: 2^-14.9 relative (tables/fits/inverse_trig_native.sollya)
  rep32 c2 = c(0x3cfa4bd4, 0.0305537358f);
  rep32 c1 = c(0x3d56868d, 0.0523744114f);
  rep32 c0 = c(0x3ea2facf, 0.318319768f);
};
struct native_arcsine_in_radians_f64 {
  rep64 right_angle = c(0x3ff921fb54442d18, 1.5707963267948966);
  rep64 straight_angle = c(0x400921fb54442d18, 3.141592653589793);
  // asin v = v P(v^2) on [0, 1/2]: 2^-31.8 relative (tables/fits/inverse_trig_native.sollya)
  rep64 c6 = c(0x3fa365bebfc30afb, 0.03788562861293162);
  rep64 c5 = c(0x3f8cf525c064070c, 0.01413945668582841);
  rep64 c4 = c(0x3fa0554db2c5afa7, 0.03190081412580464);
  rep64 c3 = c(0x3fa6c91bbfc2f8d4, 0.04450308528747518);
  rep64 c2 = c(0x3fb333988d6167e9, 0.07500604106590426);
  rep64 c1 = c(0x3fc55554848e3912, 0.1666665694469392);
  rep64 c0 = c(0x3ff0000000117f17, 1.0000000002546068);
};
struct native_arcsine_in_half_revolutions_f64 {
  rep64 right_angle = c(0x3fe0000000000000, 0.5);
  rep64 straight_angle = c(0x3ff0000000000000, 1.0);
  // asin v / pi = v P(v^2) on [0, 1/2]: 2^-31.8 relative (tables/fits/inverse_trig_native.sollya)
  rep64 c6 = c(0x3f88b29542bbbef6, 0.01205937013534662);
  rep64 c5 = c(0x3f726f5b3331086f, 0.004500728845473131);
  rep64 c4 = c(0x3f84cbcd0cd0ba9c, 0.010154344514459006);
  rep64 c3 = c(0x3f8d02f1bc21c3bb, 0.014165772012548197);
  rep64 c2 = c(0x3f9872bb290c8f94, 0.023875164394794604);
  rep64 c1 = c(0x3fab2994dde4bc5d, 0.05305161675129775);
  rep64 c0 = c(0x3fd45f306de00f77, 0.31830988626483453);
};

template <class E, class Unit>
struct native_arcsine_constants : Unit {
  typename E::constant magnitude = pattern<E>(0x7fffffff, 0x7fffffffffffffff);
  typename E::constant sign = pattern<E>(0x80000000, 0x8000000000000000);
  typename E::constant one_half = pattern<E>(0x3f000000, 0x3fe0000000000000);
  typename E::constant minus_one_half = pattern<E>(0xbf000000, 0xbfe0000000000000);
  typename E::constant minus_two = pattern<E>(0xc0000000, 0xc000000000000000);

  VORX_INLINE f32x4 arcsine(f32x4 v, f32x4 z) const { return v * horner(z, this->c2, this->c1, this->c0); }
  VORX_INLINE f64x2 arcsine(f64x2 v, f64x2 z) const {
    f64x2 z2 = z * z;
    f64x2 p = z * this->c6 + this->c5;
    p = p * z2 + (z * this->c4 + this->c3);
    p = p * z2 + (z * this->c2 + this->c1);
    return v * (p * z + this->c0);
  }
};

template <class E, class Unit>
struct native_arcsine : kernel<E, native_arcsine_constants<E, Unit>> {
  using typename kernel<E, native_arcsine_constants<E, Unit>>::constants;
  using V = typename E::vector;

  static V path(V x, const constants& k) {
    V a = x & k.magnitude;
    V w = a * k.minus_one_half + k.one_half;
    V z = min(a * a, w);
    auto small = a < as_float(k.one_half);
    V v = select(small, a, sqrt(w) * k.minus_two);
    V y = k.arcsine(v, z) + clear(as_float(small), k.right_angle);
    return y ^ (x & k.sign);
  }
};

template <class E, class Unit>
struct native_arccosine : kernel<E, native_arcsine_constants<E, Unit>> {
  using typename kernel<E, native_arcsine_constants<E, Unit>>::constants;
  using V = typename E::vector;

  static V path(V x, const constants& k) {
    V n = x | k.sign;  // -|x|
    V w = n * k.one_half + k.one_half;
    V z = min(x * x, w);
    V root = sqrt(w);
    auto small = z < w;
    V v = select(small, n, root + root) ^ (x & k.sign);
    V constant = select(small, k.right_angle, as_float(x < z) & k.straight_angle);
    return k.arcsine(v, z) + constant;
  }
};

}  // namespace vorx

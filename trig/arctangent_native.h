// Native arctangents, in radians and in half revolutions: the schemes of the accurate kernels with shorter polynomials, without
// the tails of quotients and angles.
#pragma once

#include "trig/arctangent2.h"

namespace vorx {

struct native_arctangent_in_radians_f32 {
  rep32 right_angle = c(0x3fc90fdb, 1.57079637f);
  rep32 straight_angle = c(0x40490fdb, 3.14159274f);
  // atan v = v P(v^2) on [0, 1]: 2^-12.2 relative (tables/fits/inverse_trig_native.sollya)
  rep32 c3 = c(0xbd358ff6, -0.044326745f);
  rep32 c2 = c(0x3e1f501a, 0.155579001f);
  rep32 c1 = c(0xbea6d062, -0.325808585f);
  rep32 c0 = c(0x3f7ff219, 0.999787867f);
};
struct native_arctangent_in_half_revolutions_f32 {
  rep32 right_angle = c(0x3f000000, 0.5f);
  rep32 straight_angle = c(0x3f800000, 1.0f);
  // atan v / pi = v P(v^2) on [0, 1]: 2^-12.2 relative (tables/fits/inverse_trig_native.sollya)
  rep32 c3 = c(0xbc672b6f, -0.0141094765f);
  rep32 c2 = c(0x3d4ad79f, 0.0495220385f);
  rep32 c1 = c(0xbdd464d4, -0.103707939f);
  rep32 c0 = c(0x3ea2f0a9, 0.318242341f);
};
struct native_arctangent_in_radians_f64 {
  static constexpr const arctangent_row* arctangents = arctangent_f64;
  // atan v = v P(v^2) on [0, 1/15.75]: 2^-31.6 relative (tables/fits/inverse_trig_native.sollya)
  rep64 c2 = c(0x3fc97d65c0b9236e, 0.19913932714760157);
  rep64 c1 = c(0xbfd5554fe20a1f97, -0.3333320338647296);
  rep64 c0 = c(0x3fefffffffd8074b, 0.999999999709169);
};
struct native_arctangent_in_half_revolutions_f64 {
  static constexpr const arctangent_row* arctangents = arctangent_in_half_revolutions_f64;
  // atan v / pi = v P(v^2) on [0, 1/15.75]: 2^-31.6 relative (tables/fits/inverse_trig_native.sollya)
  rep64 c2 = c(0x3fb03a32720c33a0, 0.06338801655165449);
  rep64 c1 = c(0xbfbb298ef72c9a7a, -0.10610288176085617);
  rep64 c0 = c(0x3fd45f306db0562a, 0.31830988609121624);
};

template <class E, class Unit>
struct native_arctangent_constants : Unit {
  typename E::constant magnitude = pattern<E>(0x7fffffff, 0x7fffffffffffffff);
  typename E::constant sign = pattern<E>(0x80000000, 0x8000000000000000);
  typename E::constant one = pattern<E>(0x3f800000, 0x3ff0000000000000);
};

template <class Unit>
struct native_arctangent_f32 : kernel<f32, native_arctangent_constants<f32, Unit>> {
  using typename kernel<f32, native_arctangent_constants<f32, Unit>>::constants;

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 a = x & k.magnitude;
    f32x4 u = min(a, k.one) / max(k.one, a);
    f32x4 big = as_float(as_int(a) > as_int(k.one));
    f32x4 r = u * horner(u * u, k.c3, k.c2, k.c1, k.c0);
    return ((r ^ (big & k.sign)) + (big & k.right_angle)) ^ (x & k.sign);
  }
};

template <class Unit>
struct native_arctangent2_f32 : kernel<f32, native_arctangent_constants<f32, Unit>> {
  using typename kernel<f32, native_arctangent_constants<f32, Unit>>::constants;

  static f32x4 path(f32x4 y, f32x4 x, const constants& k) {
    f32x4 ax = x & k.magnitude, ay = y & k.magnitude;
    f32x4 swap = as_float(ax < ay);
    f32x4 u = min(ax, ay) / max(ax, ay);
    f32x4 r = u * horner(u * u, k.c3, k.c2, k.c1, k.c0);
    r = (r ^ (swap & k.sign)) + (swap & k.right_angle);
    r = (r ^ (x & k.sign)) + (as_float(as_int(x) >> 31) & k.straight_angle);
    return r ^ (y & k.sign);
  }
};

template <class Unit>
struct native_arctangent_f64_constants : native_arctangent_constants<f64, Unit>, arctangent_index_f64 {
  rep64 limit = c(0x43f0000000000000, 0x1p64);
};

template <class Unit>
struct native_arctangent_f64 : kernel<f64, native_arctangent_f64_constants<Unit>> {
  using typename kernel<f64, native_arctangent_f64_constants<Unit>>::constants;

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 a = x & k.magnitude;
    auto [hi, lo, c] = k.rows_of(a, Unit::arctangents);
    a = min(as_float(k.limit), a);
    f64x2 t = (a - c) / (a * c + k.one);
    return (hi + t * horner(t * t, k.c2, k.c1, k.c0)) ^ (x & k.sign);
  }
};

template <class Unit>
struct native_arctangent2_f64_constants : native_arctangent_constants<f64, Unit>, arctangent2_index_f64 {};

template <class Unit>
struct native_arctangent2_f64 : kernel<f64, native_arctangent2_f64_constants<Unit>> {
  using typename kernel<f64, native_arctangent2_f64_constants<Unit>>::constants;

  static f64x2 path(f64x2 y, f64x2 x, const constants& k) {
    auto [hi, lo, c] = k.rows_of(y, x, Unit::arctangents);
    f64x2 ay = y & k.magnitude, ax = x & k.magnitude;
    f64x2 t = ((ay - c * ax) ^ (x & k.sign)) / (ax + c * ay);
    return (hi + t * horner(t * t, k.c2, k.c1, k.c0)) ^ (y & k.sign);
  }
};

}  // namespace vorx

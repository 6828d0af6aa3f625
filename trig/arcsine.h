// What the arcsine and the arccosine share: below one half they are polynomials in x; from there on asin |x| is
// pi/2 - 2 asin(s) with s = sqrt((1 - |x|)/2) <= 1/2, so that one polynomial serves both ranges. A minimum picks its argument z:
// x^2 <= (1 - |x|)/2 exactly where |x| <= 1/2.
#pragma once

#include "frame/head_and_tail.h"

namespace vorx {

// P(z) - p0, of degree 13.
VORX_INLINE f64x2 arcsine_behind_p0(f64x2 z, const auto& k) {
  f64x2 z2 = z * z;
  f64x2 p = (z * k.p13 + k.p12) * z2 + (z * k.p11 + k.p10);
  p = p * z2 + (z * k.p9 + k.p8);
  p = p * z2 + (z * k.p7 + k.p6);
  p = p * z2 + (z * k.p5 + k.p4);
  p = p * z2 + (z * k.p3 + k.p2);
  return (p * z + k.p1) * z;
}

// asin v = v + v z R(z), z = v^2.
struct arcsine_f32_constants {
  // asin v on |v| <= 1/2: relative error 2^-26.7 (tables/fits/polynomials.sollya)
  rep32 c4 = c(0x3d2edc07, 0.0426903032f);
  rep32 c3 = c(0x3cc32a6b, 0.0238239374f);
  rep32 c2 = c(0x3d3a9ab4, 0.0455576926f);
  rep32 c1 = c(0x3d997c12, 0.0749436766f);
  rep32 c0 = c(0x3e2aaaff, 0.166667923f);

  VORX_INLINE f32x4 arcsine(f32x4 v, f32x4 z) const {
    f32x4 r = ((z * c4 + c3) * (z * z) + (z * c2 + c1)) * z + c0;
    return v + v * z * r;
  }
};

// The result in half revolutions: v/pi = v (5/16 + T(4z)), with v in two parts where it is a root. The head of v is so short that
// its product with 5/16 is exact, and the sum of this with a multiple of 1/2, too, but for |v| < 2^-11.
struct arcsine_in_half_revolutions_f32 {
  rep32 sign = bits32(0x80000000);
  rep32 one = c(0x3f800000, 1.0f);
  rep32 two = c(0x40000000, 2.0f);
  rep32 head_bits = bits32(0xffffc000);  // 10 bits
  rep32 leading = c(0x3ea00000, 0.3125f);
  // asin v / pi = v (5/16 + T(4z)) on |v| <= 1/2, z = v^2: relative error 2^-27.5 (tables/fits/half_revolutions_f32.sollya)
  rep32 t5 = c(0x375ef057, 1.32881896e-05f);
  rep32 t4 = c(0x37f81341, 2.95728696e-05f);
  rep32 t3 = c(0x396da516, 0.000226635806f);
  rep32 t2 = c(0x3ac36b76, 0.00149093451f);
  rep32 t1 = c(0x3c594d1f, 0.013263016f);
  rep32 t0 = c(0x3bbe60d8, 0.00580988452f);

  VORX_INLINE f32x4 behind_leading(f32x4 z4) const { return horner(z4, t5, t4, t3, t2, t1, t0); }

  // origin + asin(v) / pi with t = T(4z): v is the argument itself or, where `is_root`, the root of w or its negative.
  VORX_INLINE f32x4 add(f32x4 origin, f32x4 v, i32x4 is_root, f32x4 w, f32x4 t) const {
    f32x4 head = v & head_bits;
    f32x4 tail = select(is_root, (w - head * head) / (v + head), v - head);
    return (origin + head * leading) + (tail * leading + v * t);
  }
};

// ---- the double kernels: the root as head and tail, the sums of the large parts exact ----

// The result in radians. The low part of a multiple of pi/2 is the multiple times low_part.
struct arcsine_in_radians_f64 {
  rep64 right_angle = c(0x3ff921fb54442d18, 1.5707963267948966);
  rep64 straight_angle = c(0x400921fb54442d18, 3.1415926535897931);
  rep64 low_part = c(0x3c8678afae35cdd1, 3.8981718325193755e-17);
  // asin v - v = v z P(z) on |v| <= 1/2, z = v^2: 2^-62 of v (tables/fits/arcsine_f64.sollya)
  rep64 p13 = c(0x3fa0018f02211dc7, 0.03126189137452289);
  rep64 p12 = c(0xbf9689b26efe5c3b, -0.02200964739276066);
  rep64 p11 = c(0x3f9622dd14f5a787, 0.021617369083663653);
  rep64 p10 = c(0x3f61927dfef688cf, 0.0021450482233414734);
  rep64 p9 = c(0x3f839bb9ce5ecc41, 0.009574367151662712);
  rep64 p8 = c(0x3f839adf837f9b98, 0.009572740746035355);
  rep64 p7 = c(0x3f87b398f2a65fe4, 0.01157302370556574);
  rep64 p6 = c(0x3f8c98b91303639d, 0.013963170902956007);
  rep64 p5 = c(0x3f91c4f265ba4bcd, 0.01735285516640399);
  rep64 p4 = c(0x3f96e8b9f6713dec, 0.02237215582527867);
  rep64 p3 = c(0x3f9f1c71c85ed4a1, 0.030381944517746565);
  rep64 p2 = c(0x3fa6db6db6d9654c, 0.044642857141932696);
  rep64 p1 = c(0x3fb33333333334b8, 0.0750000000000054);
  rep64 p0 = c(0x3fc5555555555555, 0.16666666666666666);

  VORX_INLINE f64x2 behind_p0(f64x2 z) const { return arcsine_behind_p0(z, *this); }

  VORX_INLINE head_and_tail<f64x2> add(f64x2 constant, f64x2 head, f64x2 tail) const {
    auto [sum, error] = fast_two_sum(constant, head);
    return {sum, error + (tail + constant * low_part)};
  }
};

// The result in half revolutions: v times 1/pi in two parts, the product of the heads exact.
struct arcsine_in_half_revolutions_f64 {
  rep64 right_angle = c(0x3fe0000000000000, 0.5);
  rep64 straight_angle = c(0x3ff0000000000000, 1.0);
  rep64 inv_pi = c(0x3fd45f306dc9c883, 0.31830988618379069);
  rep64 inv_pi_hi = c(0x3fd45f3068000000, 0.31830988079309464);  // 26 bits
  rep64 inv_pi_lo = c(0x3e3727220a94fe14, 5.390696036528002e-09);
  rep64 upper_half = bits64(upper_half_f64);
  // asin v / pi - v / pi = v z P(z) on |v| <= 1/2, z = v^2: 2^-62 of v / pi (tables/fits/arcsine_f64.sollya)
  rep64 p13 = c(0x3f849f28ee3d65ac, 0.010069198389532762);
  rep64 p12 = c(0xbf7d836dc43f3155, -0.007205418372859225);
  rep64 p11 = c(0x3f7ccc35261e6874, 0.007030685055633968);
  rep64 p10 = c(0x3f4438265c552fde, 0.0006170451457960765);
  rep64 p9 = c(0x3f691ea8987aca46, 0.0030663769610666273);
  rep64 p8 = c(0x3f68ee94bdf52e16, 0.0030434517972588544);
  rep64 p7 = c(0x3f6e2e897299ebed, 0.003684299900496671);
  rep64 p6 = c(0x3f723477f5d72d57, 0.0044445692014492754);
  rep64 p5 = c(0x3f769fe6f29aae17, 0.0055235883134332675);
  rep64 p4 = c(0x3f7d2b3392f200eb, 0.007121278248746625);
  rep64 p3 = c(0x3f83ce52a48b23ab, 0.009670873304814828);
  rep64 p2 = c(0x3f8d1a452f1d3c84, 0.014210262775718137);
  rep64 p1 = c(0x3f98723a1d588c89, 0.023873241463786363);
  rep64 p0 = c(0x3fab2995e7b7b603, 0.05305164769729844);

  VORX_INLINE f64x2 behind_p0(f64x2 z) const { return arcsine_behind_p0(z, *this); }

  VORX_INLINE head_and_tail<f64x2> add(f64x2 constant, f64x2 v, f64x2 v_tail) const {
    auto [head, tail] = cut(v, upper_half);
    auto [sum, error] = fast_two_sum(constant, head * inv_pi_hi);
    return {sum, error + (head * inv_pi_lo + (tail + v_tail) * inv_pi)};
  }
};

template <class Unit>
struct arcsine_f64_constants : Unit {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  rep64 root_bits = bits64(upper_half_f64);
  rep64 half = c(0x3fe0000000000000, 0.5);
  rep64 one = c(0x3ff0000000000000, 1.0);
  rep64 minus_one = c(0xbff0000000000000, -1.0);
  rep64 four = c(0x4010000000000000, 4.0);
};

// The two ranges: v = x below one half, 2 s with the sign of `signs` above; head + tail is v, more exactly where it is a root.
struct arcsine_argument {
  f64x2 small, v, head, tail;  // the first is a mask
};
template <class C>
VORX_INLINE arcsine_argument select_argument(f64x2 x, f64x2 signs, f64x2 w, f64x2 z, i64x2 is_small, const C& k) {
  in_order(is_small, z);  // or the compiler computes the complement of the mask as well
  f64x2 small = as_float(is_small), root = sqrt(w);
  root = (root + root) ^ signs;
  f64x2 head = root & k.root_bits;
  f64x2 tail = (z * k.four - head * head) / (root + head);
  return {small, select(is_small, x, root), select(is_small, x, head), clear(small, tail)};
}

// a + v z P(z): the term with p0 is up to 2^-3.5 of the sum, and its sum with the head therefore exact; the terms behind it are
// below 2^-6.
template <class C>
VORX_INLINE f64x2 arcsine_sum(head_and_tail<f64x2> a, f64x2 v, f64x2 z, const C& constants) {
  f64x2 cube = v * z;
  in_order(cube, z);
  const C& k = behind(a.tail, constants);
  f64x2 rest = cube * k.behind_p0(z) + a.tail;
  auto [sum, error] = fast_two_sum(a.head, cube * k.p0);
  return sum + (error + rest);
}

template <class Unit>
struct arcsine_f64_path : kernel<f64, arcsine_f64_constants<Unit>> {
  using typename kernel<f64, arcsine_f64_constants<Unit>>::constants;

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 a = x & k.magnitude;
    f64x2 w = k.half - a * k.half;
    f64x2 z = min(a * a, w);
    auto [small, v, head, tail] = select_argument(a, k.sign, w, z, a < as_float(k.half), k);  // false for a NaN
    return arcsine_sum(k.add(clear(small, k.right_angle), head, tail), v, z, k) ^ (x & k.sign);
  }
};

template <class Unit>
struct arccosine_f64_path : kernel<f64, arcsine_f64_constants<Unit>> {
  using typename kernel<f64, arcsine_f64_constants<Unit>>::constants;

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 w = (x | k.sign) * k.half + k.half;
    f64x2 z = min(x * x, w);
    f64x2 above = as_float(x < z) & k.straight_angle;
    auto [small, v, head, tail] = select_argument(x ^ k.sign, x & k.sign, w, z, z < w, k);
    return arcsine_sum(k.add(select(as_int(small), f64x2(k.right_angle), above), head, tail), v, z, k);
  }
  static i32x4 special(f64x2 x, const constants& k) { return as_i32((x | k.sign) <= as_float(k.minus_one)); }
};

// The arguments that the rare-case routines of both get: 1 and -1, for which they have a value, and what has none.
template <class T>
VORX_INLINE int inverse_at_border(T x, T at_one, T at_minus_one, T* result) {
  if (x == 1) return *result = at_one, ordinary;
  if (x == -1) return *result = at_minus_one, ordinary;
  if (x != x) return *result = opaque(x) * x, ordinary;
  return *result = invalid<T>(), domain_error;
}

}  // namespace vorx

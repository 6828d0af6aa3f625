// Sine and cosine of any finite argument, out of line: the large path of sin, cos, sincos and sincosreg. After the reduction by
// revolutions, x = a_k + r + low, the angle sum with sin(a_k) = Sh + Sl and cos(a_k) = Ck = Cl + Ct, Cl a power of two:
//
//   sin x = (Sh + r Cl) + r Ct + { Sh (cos r - 1) + [low (Ck - r Sh) + Sl] + Ck (sin r - r) }
//
// r Cl is exact, the errors of the two leading sums are kept, and everything in braces is below 2^-6 of the result: 0.51 ULP. The
// cosine is the sine a quarter of the table further on. A tiny x is its own sine, which keeps the sign of a zero.
#pragma once

#include "tables/sine_cosine.h"
#include "trig/reduction.h"

namespace vorx {

struct large_sine_f32_constants : reduction_f32_constants {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 tiny = c(0x35800000, 0x1p-20f);
  rep32 quarter = bits32(64);
  rep32 row_mask = bits32(0xff);
  // sin r - r on |r| <= pi / 256: absolute error 2^-46.6 (tables/fits/polynomials.sollya)
  rep32 s1 = c(0xbe2aaaab, -0.166666672f);
  rep32 s2 = c(0x3c08885c, 0.00833329186f);
  // cos r - 1 on |r| <= pi / 256: absolute error 2^-50.1 (tables/fits/polynomials.sollya)
  rep32 c1 = c(0xbf000000, -0.5f);
  rep32 c2 = c(0x3d2aaa7c, 0.0416664928f);
};

VORX_INLINE f32x4 angle_sum(i32x4 row, f32x4 r, f32x4 low, const large_sine_f32_constants& k) {
  row = row & k.row_mask;
  f32x4 ct = load_aligned(sine_cosine_f32[extract<0>(row)]), sh = load_aligned(sine_cosine_f32[extract<1>(row)]),
        sl = load_aligned(sine_cosine_f32[extract<2>(row)]), cl = load_aligned(sine_cosine_f32[extract<3>(row)]);
  transpose(ct, sh, sl, cl);

  f32x4 ck = ct + cl;
  f32x4 z = r * r;
  f32x4 lead = r * cl, tail = r * ct;
  f32x4 u = sh + lead;
  f32x4 v = u + tail;
  f32x4 error = (u - v) + tail + ((sh - u) + lead);
  f32x4 cosine_part = sh * z * (k.c1 + k.c2 * z);
  f32x4 sine_part = ck * r * z * (k.s1 + k.s2 * z);
  return v + (cosine_part + (low * (ck - r * sh) + sl) + sine_part + error);
}

struct large_sine_f64_constants : reduction_f64_constants {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 tiny = c(0x3e40000000000000, 0x1p-27);
  rep64 quarter = bits64(128);
  rep64 row_mask = bits64(0x1ff);
  // sin r - r on |r| <= pi / 512: absolute error 2^-68.4 (tables/fits/polynomials.sollya)
  rep64 s1 = c(0xbfc5555555554448, -0.1666666666665455);
  rep64 s2 = c(0x3f81110fabb3551c, 0.0083333229326095146);
  // cos r - 1 on |r| <= pi / 512: absolute error 2^-78.7 (tables/fits/polynomials.sollya)
  rep64 c1 = c(0xbfe0000000000000, -0.5);
  rep64 c2 = c(0x3fa5555555554ccf, 0.041666666666651524);
  rep64 c3 = c(0xbf56c16ab163b2d7, -0.0013888875887985619);
};

// The columns of two rows.
struct sine_cosine_columns {
  f64x2 ct, cl, sh, sl;
};
VORX_INLINE sine_cosine_columns columns(const double* a, const double* b) {
  f64x2 cos_a = load_aligned(a), cos_b = load_aligned(b), sin_a = load_aligned(a + 2), sin_b = load_aligned(b + 2);
  f64x2 ct = lower_lanes(cos_a, cos_b), cl = {opaque(upper_lanes(cos_a, cos_b).v)};  // else ct + cl becomes a slow haddpd
  return {ct, cl, lower_lanes(sin_a, sin_b), upper_lanes(sin_a, sin_b)};
}

// A sum, rounded, and what has to be added to it.
struct sum_and_rest {
  f64x2 sum, rest;
};
// Sh + r Cl + r Ct: the rest is its rounding errors.
VORX_INLINE sum_and_rest leading_sum(const sine_cosine_columns& row, f64x2 r) {
  f64x2 lead = r * row.cl, tail = r * row.ct;
  f64x2 u = row.sh + lead;
  f64x2 v = u + tail;
  return {v, (u - v) + tail + ((row.sh - u) + lead)};
}

VORX_INLINE f64x2 angle_sum(i64x2 row, f64x2 r, f64x2 low, const large_sine_f64_constants& k) {
  i32x4 index = as_i32(row & k.row_mask);
  auto columns_of_row = columns(sine_cosine_f64[extract<0>(index)], sine_cosine_f64[extract<2>(index)]);
  auto [ct, cl, sh, sl] = columns_of_row;
  f64x2 ck = ct + cl;
  f64x2 z = r * r;
  auto [v, error] = leading_sum(columns_of_row, r);
  f64x2 cosine_part = sh * z * (k.c1 + z * (k.c2 + k.c3 * z));
  f64x2 sine_part = ck * r * z * (k.s1 + k.s2 * z);
  return v + (cosine_part + (low * (ck - r * sh) + sl) + sine_part + error);
}

template <class V>
using large_sine_constants = std::conditional_t<std::is_same_v<V, f32x4>, large_sine_f32_constants, large_sine_f64_constants>;

template <class V>
VORX_INLINE V large_sine(V x, auto reduced, const large_sine_constants<V>& k) {
  return select((x & k.magnitude) <= k.tiny, x, angle_sum(reduced.k, reduced.high, reduced.low, k));
}
template <class V>
VORX_INLINE V large_cosine(auto reduced, const large_sine_constants<V>& k) {
  return angle_sum(reduced.k + k.quarter, reduced.high, reduced.low, k);
}

// One copy for all widths and variants. A register goes to and from a function of the plain C convention in xmm0 only if it is
// not wrapped in a struct.
template <class V>
using bare = decltype(V::v);
#define VORX_OUT_OF_LINE [[gnu::noinline, gnu::force_align_arg_pointer]] inline

template <class V>
VORX_OUT_OF_LINE bare<V> sin_large(bare<V> bare_x) {
  const auto& k = *hide(&constant_pool<large_sine_constants<V>>);
  V x = {bare_x};
  return large_sine(x, reduce(x, k), k).v;
}
template <class V>
VORX_OUT_OF_LINE bare<V> cos_large(bare<V> bare_x) {
  const auto& k = *hide(&constant_pool<large_sine_constants<V>>);
  return large_cosine<V>(reduce(V{bare_x}, k), k).v;
}
template <class V>
VORX_OUT_OF_LINE bare<V> sincos_large(bare<V> bare_x, V* cosine) {
  const auto& k = *hide(&constant_pool<large_sine_constants<V>>);
  V x = {bare_x};
  auto reduced = reduce(x, k);
  *cosine = large_cosine<V>(reduced, k);
  return large_sine(x, reduced, k).v;
}

}  // namespace vorx

// Tangent of any finite argument, out of line: the large path of tan, after the reduction x = a_k + r + low (reduction.h). A
// tiny x is its own tangent, which keeps the sign of a zero.
#pragma once

#include "tables/tangent.h"
#include "trig/large_sine.h"

namespace vorx {

struct large_tan_f32_constants : reduction_f32_constants {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 tiny = c(0x35800000, 0x1p-20f);
  rep32 row_mask = bits32(0x7f);  // period pi: half a revolution
};

// Float: an expansion in r from the row of a_k,
//
//   u + ([(f9 r + f8) r + f7] r^2 + f6 r + low (f5 + f6) + f4 + error of u),   u = f3 + f5 r with an exact product,
//
// which between pi/4 and 3 pi/4 is the tangent without its pole; there f2 = 1, and 1/(pi/2 - a_k - r - low) is added. The
// denominator is h + l, h of 12 bits (f0 and f1 hold pi/2 - a_k); with the processor's estimate g of 1/h, cut to 12 bits, and
// E = 1 - (h + l) g, below 2^-10 and exact but for l g, the reciprocal is g + g E + g E^2. It is never the reciprocal of zero: no
// float is a multiple of pi/2 except zero, which is tiny.
VORX_INLINE f32x4 tangent_of_sum(i32x4 row, f32x4 r, f32x4 low, const large_tan_f32_constants& k) {
  row = row & k.row_mask;
  i32x4 offset = (row << 5) + (row << 3);  // 40 bytes each
  auto table = reinterpret_cast<const char*>(tangent_f32);
  const char *p0 = table + extract<0>(offset), *p1 = table + extract<1>(offset), *p2 = table + extract<2>(offset),
             *p3 = table + extract<3>(offset);
  f32x4 f0 = load_floats(p0), f1 = load_floats(p1), f2 = load_floats(p2), f3 = load_floats(p3);
  transpose(f0, f1, f2, f3);
  f32x4 f4 = load_floats(p0 + 16), f5 = load_floats(p1 + 16), f6 = load_floats(p2 + 16), f7 = load_floats(p3 + 16);
  transpose(f4, f5, f6, f7);
  f32x4 f8 = load_floats(p0 + 32), f9 = load_floats(p1 + 32), unused_a = load_floats(p2 + 32), unused_b = load_floats(p3 + 32);
  transpose(f8, f9, unused_a, unused_b);

  f32x4 d = f0 - r;
  f32x4 d_error = ((f0 - d) - r) + (f1 - low);
  f32x4 h = d & k.split;
  f32x4 l = (d - h) + d_error;
  f32x4 g = estimate_reciprocal(h) & k.split;
  f32x4 e = (k.one - h * g) - l * g;
  g = g * f2;

  f32x4 z = r * r;
  f32x4 lead = r * f5;
  f32x4 u = f3 + lead;
  f32x4 u_error = (f3 - u) + lead;
  f32x4 rest = (((f9 * r + f8) * r + f7) * z + r * f6) + (low * (f5 + f6) + f4) + u_error;

  f32x4 sum = g + u;  // |g| > |u| or g = 0: the error is exact
  f32x4 sum_error = (g - sum) + u;
  return sum + (sum_error + (g * e + g * e * e) + rest);
}

VORX_OUT_OF_LINE __m128 tan_large(__m128 bare_x) {
  f32x4 x = {bare_x};
  const auto& k = *hide(&constant_pool<large_tan_f32_constants>);
  auto [row, r, low] = reduce(x, k);
  return select((x & k.magnitude) <= k.tiny, x, tangent_of_sum(row, r, low, k)).v;
}

struct large_tan_f64_constants : large_sine_f64_constants {
  rep64 row_mask = bits64(0xff);  // period pi: half a revolution
};

// As angle_sum, for cosine_part = cos r - 1 and sine_part = sin r - r + low, but the rest is not added.
VORX_INLINE sum_and_rest angle_sum_terms(const sine_cosine_columns& row, f64x2 r, f64x2 sine_part, f64x2 cosine_part) {
  auto [sum, error] = leading_sum(row, r);
  return {sum, (row.sl + error) + (row.sh * cosine_part + (row.ct + row.cl) * sine_part)};
}

// Double: sine over cosine, by the angle sum of large_sine.h from rows a quarter of the table apart. Lead and rest stay apart,
// and what the two sums share is computed once: cos r - 1 and sin r - r + low, which leaves out low r Sh, below 2^-67 of the
// result. The quotient is a first part q of 26 bits, whose product with the upper 26 bits of the cosine is exact, and the
// remainder times the reciprocal. Sums add first what is ready first: one large lane costs its vector this function's latency.
VORX_INLINE f64x2 tangent_of_sum(i64x2 row, f64x2 r, f64x2 low, const large_tan_f64_constants& k) {
  i32x4 index = as_i32(row & k.row_mask);
  const double *a = sine_cosine_f64[extract<0>(index)], *b = sine_cosine_f64[extract<2>(index)];
  constexpr int quarter = 4 * 128;  // doubles, from a row to that of a_k + pi/2
  f64x2 z = r * r;
  f64x2 cosine_part = z * k.c1 + z * z * (k.c2 + k.c3 * z);
  f64x2 sine_part = low + r * z * (k.s1 + k.s2 * z);
  auto [c, c_rest] = angle_sum_terms(columns(a + quarter, b + quarter), r, sine_part, cosine_part);
  auto [s, s_rest] = angle_sum_terms(columns(a, b), r, sine_part, cosine_part);
  f64x2 cosine = c + c_rest;
  f64x2 reciprocal = k.one / cosine;

  f64x2 q = ((s + s_rest) * reciprocal) & k.split;
  f64x2 ch = cosine & k.split;
  f64x2 cl = (c - ch) + c_rest;
  f64x2 remainder = (s - q * ch) + s_rest - q * cl;
  return q + remainder * reciprocal;
}

VORX_OUT_OF_LINE __m128d tan_large(__m128d bare_x) {
  f64x2 x = {bare_x};
  const auto& k = *hide(&constant_pool<large_tan_f64_constants>);
  auto [row, r, low] = reduce(x, k);
  return select((x & k.magnitude) <= k.tiny, x, tangent_of_sum(row, r, low, k)).v;
}

}  // namespace vorx

// What the arctangents share.
//
// Float: a polynomial on [0, 1], in reciprocals above 1.
//
// Double: the angle of (x, y) is atan c + atan t with t = (y - c x) / (x + c y), c the nearest of a table of points with 5 bits.
// Below the first point c = 0, above the last c = 2^60, which stands for infinity: t is about -x / y. |t| <= 1/15.75, and except
// where c = 0 no more than 2^-4 of the result, mostly 2^-5, so that its rounding hardly counts.
#pragma once

#include "frame/head_and_tail.h"
#include "tables/arctangent.h"

namespace vorx {

// Float: atan u = u Q(z), z = u^2, for 0 <= u <= 1. The coefficients of atan and atan2 are close but not equal, on purpose: each
// kernel has its own.
template <class C>
VORX_INLINE f32x4 arctangent_factor(f32x4 z, const C& k) {
  f32x4 z2 = z * z;
  f32x4 odd = horner(z2, k.a7, k.a5, k.a3, k.a1);
  odd = z * odd + k.one;
  in_order(odd, z2);
  return odd + z2 * horner(z2, k.a8, k.a6, k.a4, k.a2);
}

// Float, in half revolutions: v/pi = v (9/32 + T(z)), T(z) = (z - centre) G(z), which is between -0.032 and 0.038. The head of v
// is so short that its product with 9/32 is exact, and the difference of this and 1/2, too, from 2^-10 on.
struct arctangent_in_half_revolutions_f32 {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 sign = bits32(0x80000000);
  rep32 one = c(0x3f800000, 1.0f);
  rep32 right_angle = c(0x3f000000, 0.5f);
  rep32 head_bits = bits32(0xffffc000);  // 10 bits
  rep32 leading = c(0x3e900000, 0.28125f);
  rep32 centre = c(0x3edfcd8c, 0.437115073f);
  // atan v / pi = v (9/32 + (z - centre) G(z)) on |v| <= 1, z = v^2: relative error 2^-27.4
  // (tables/fits/half_revolutions_f32.sollya)
  rep32 g8 = c(0xba11a665, -0.000555610575f);
  rep32 g7 = c(0x3b4d9995, 0.00313720596f);
  rep32 g6 = c(0xbc085f9a, -0.00832357444f);
  rep32 g5 = c(0x3c6ddf5c, 0.0145185851f);
  rep32 g4 = c(0xbca56906, -0.0201916806f);
  rep32 g3 = c(0x3cd49057, 0.0259477329f);
  rep32 g2 = c(0xbd0b6fbb, -0.0340421014f);
  rep32 g1 = c(0x3d47c811, 0.0487747826f);
  rep32 g0 = c(0xbdada2a9, -0.0847829059f);

  // origin + atan(v) / pi for z = v^2. In pairs of coefficients, which nearly cancel each other for z near 1.
  VORX_INLINE f32x4 add(f32x4 origin, f32x4 v, f32x4 z) const {
    f32x4 z2 = z * z;
    f32x4 g = z2 * g8 + (z * g7 + g6);
    g = g * z2 + (z * g5 + g4);
    g = g * z2 + (z * g3 + g2);
    g = g * z2 + (z * g1 + g0);
    f32x4 t = (z - centre) * g;
    auto [head, tail] = cut(v, head_bits);
    return (origin + head * leading) + (tail * leading + v * t);
  }
};

// ---- double ----

struct arctangent_rows {
  f64x2 hi, lo, c;
};
// The rows at byte offsets that stand in two 32-bit lanes, counted from `before` bytes before the table.
template <int lane0, int lane1>
VORX_INLINE arctangent_rows gather_rows(const arctangent_row* table, i32x4 offsets, int before) {
  auto row0 = reinterpret_cast<const arctangent_row*>(row_address<lane0>(table, offsets, before));
  f64x2 a = load_aligned(&row0->hi), c = {_mm_load_sd(&row0->c)};
  in_order(a, offsets);
  in_order(c, offsets);
  auto row1 = reinterpret_cast<const arctangent_row*>(row_address<lane1>(table, offsets, before));
  f64x2 b = load_aligned(&row1->hi);
  return {lower_lanes(a, b), upper_lanes(a, b), {_mm_loadh_pd(c.v, &row1->c)}};
}

// The result in radians: hi + (t + (rest + lo)), t in two parts where it needs to be.
struct angle_in_radians_f64 {
  static constexpr const arctangent_row* arctangents = arctangent_f64;
  // Multiples of an eighth of a revolution.
  static constexpr double eighths[] = {
      0, scalar(0x3fe921fb54442d18, 0.78539816339744831), scalar(0x3ff921fb54442d18, 1.5707963267948966),
      scalar(0x4002d97c7f3321d2, 2.3561944901923448), scalar(0x400921fb54442d18, 3.1415926535897931)};
  // atan t - t = t z P(z) on |t| <= 1/15.75, z = t^2: 2^-60 of t (tables/fits/arctangent_f64.sollya)
  rep64 p4 = c(0xbfb7131e7e788494, -0.090135484577802238);
  rep64 p3 = c(0x3fbc719927929fb6, 0.11110837188846187);
  rep64 p2 = c(0xbfc2492489bcacf9, -0.14285713887634425);
  rep64 p1 = c(0x3fc99999999878a8, 0.19999999999794693);
  rep64 p0 = c(0xbfd5555555555552, -0.33333333333333315);

  VORX_INLINE f64x2 sum(f64x2 hi, f64x2 t, f64x2 small) const { return hi + (t + small); }
  VORX_INLINE f64x2 sum(f64x2 hi, f64x2 head, f64x2 tail, f64x2 small) const { return hi + (head + (tail + small)); }
};

// The result in half revolutions: t times 1/pi in two parts, the product of the heads exact.
struct angle_in_half_revolutions_f64 {
  static constexpr const arctangent_row* arctangents = arctangent_in_half_revolutions_f64;
  static constexpr double eighths[] = {0, 0.25, 0.5, 0.75, 1};
  rep64 inv_pi = c(0x3fd45f306dc9c883, 0.31830988618379069);
  rep64 inv_pi_hi = c(0x3fd45f3068000000, 0.31830988079309464);  // 26 bits
  rep64 inv_pi_lo = c(0x3e3727220a94fe14, 5.390696036528002e-09);
  rep64 upper_half = bits64(upper_half_f64);
  // atan t / pi - t / pi = t z P(z) on |t| <= 1/15.75, z = t^2: 2^-60 of t / pi (tables/fits/arctangent_f64.sollya)
  rep64 p4 = c(0xbf9d61755f4cbb74, -0.028692087117799983);
  rep64 p3 = c(0x3fa21b9c56dcbfe7, 0.035366902926739212);
  rep64 p2 = c(0xbfa748374e44c53e, -0.045472839645649619);
  rep64 p1 = c(0x3fb04c26be3a581f, 0.063661977236137521);
  rep64 p0 = c(0xbfbb2995e7b7b600, -0.10610329539459684);

  VORX_INLINE f64x2 sum(f64x2 hi, f64x2 t, f64x2 small) const {
    auto [head, tail] = cut(t, upper_half);
    return sum(hi, head, tail, small);
  }
  VORX_INLINE f64x2 sum(f64x2 hi, f64x2 head, f64x2 tail, f64x2 small) const {
    return hi + (head * inv_pi_hi + ((head * inv_pi_lo + tail * inv_pi) + small));
  }
};

// What picks the row of an argument that is not negative.
struct arctangent_index_f64 {
  rep32 first = bits32(0x3faf0000);  // high words: what is smaller has c = 0, what is larger than the last c = infinity
  rep32 last = bits32(0x40300000);
  rep32 half_step = high_words(0x00008000);

  VORX_INLINE arctangent_rows rows_of(f64x2 a, const arctangent_row* table) const {
    i32x4 high = max(min(words(a), last), first) + half_step;
    i64x2 offset = shift_right_logical(as_i64(high), 48) << 5;
    return gather_rows<0, 2>(table, as_i32(offset), 0x3faf << 5);
  }
};

// atan t - t, in the unit of the constants.
template <class C>
VORX_INLINE f64x2 arctangent_rest(f64x2 t, const C& k) {
  f64x2 z = t * t;
  f64x2 p = ((z * k.p4 + k.p3) * (z * z) + (z * k.p2 + k.p1)) * z + k.p0;
  return t * z * p;
}

}  // namespace vorx

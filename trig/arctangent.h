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

// Float, in half revolutions: v / pi + v z P(z), the leading product in two parts, its heads' product exact.
struct arctangent_in_half_revolutions_f32 {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 sign = bits32(0x80000000);
  rep32 one = c(0x3f800000, 1.0f);
  rep32 right_angle = c(0x3f000000, 0.5f);
  rep32 upper_half = bits32(upper_half_f32);
  rep32 inv_pi = c(0x3ea2f983, 0.318309873f);
  rep32 inv_pi_hi = c(0x3ea2f000, 0.318237305f);  // 12 bits
  rep32 inv_pi_lo = c(0x389836e5, 7.25814971e-05f);
  // atan v / pi - v / pi = v z P(z) on |v| <= 1, z = v^2: 2^-29 of v / pi (tables/fits/half_revolutions_f32.sollya)
  rep32 p9 = c(0x39fc6931, 0.000481435593f);
  rep32 p8 = c(0xbb40c317, -0.00294131576f);
  rep32 p7 = c(0x3c09fb32, 0.00842170604f);
  rep32 p6 = c(0xbc7ff42f, -0.0156221827f);
  rep32 p5 = c(0x3cb777d3, 0.0223960038f);
  rep32 p4 = c(0xbce8e719, -0.0284305084f);
  rep32 p3 = c(0x3d108fe3, 0.0352934711f);
  rep32 p2 = c(0xbd3a3b95, -0.0454669781f);
  rep32 p1 = c(0x3d82611b, 0.0636617765f);
  rep32 p0 = c(0xbdd94caf, -0.106103294f);

  // For 0 <= u <= 1.
  VORX_INLINE f32x4 angle(f32x4 u) const {
    f32x4 z = u * u, z2 = z * z, cube = u * z;
    auto [head, tail] = cut(u, upper_half);
    tail = head * inv_pi_lo + tail * inv_pi;
    head = head * inv_pi_hi;
    in_order(tail, z);
    f32x4 p = (z * p9 + p8) * z2 + (z * p7 + p6);
    p = p * z2 + (z * p5 + p4);
    p = p * z2 + (z * p3 + p2);
    p = (p * z + p1) * z;
    auto [sum, error] = fast_two_sum(head, cube * p0);
    return sum + (error + (cube * p + tail));
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

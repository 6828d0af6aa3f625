// |x|^y = e^(y ln |x|) for floats, y ln |x| in two parts: the vector path that pow, powr and pown share.
#pragma once

#include "frame/head_and_tail.h"
#include "frame/kernel.h"
#include "tables/powlnf_tab.h"

namespace vorx {

struct power_f32_range_constants {
  rep32 smallest = bits32(0x80800000);     // the smallest normal number, biased for a signed comparison
  rep32 below_range = bits32(0xfefffffe);  // the largest finite number is out of range: a limit that is meant
};
struct power_f32_constants : power_f32_range_constants {
  rep32 significand = bits32(0x007fffff);
  rep32 index_digits = bits32(0x007f0000);
  rep32 index_half = bits32(0x00010000);
  rep32 row = bits32(0x007f0);  // 16 times an index from 0 to 64
  rep32 bias = bits32(127);
  rep32 one = c(0x3f800000, 1.0f);
  rep32 upper_part = bits32(0x7fffc000);
  rep32 ln2_hi = c(0x3f317000, 0.693115234f);  // low 12 bits zero: k * ln2_hi is exact
  rep32 ln2_lo = c(0x3805fdf4, 3.19461833e-05f);
  rep32 next_to_one = bits32(0x407e0000);
  rep32 next_to_one_limit = bits32(0x7ffc0000);
  rep32 splitter = c(0x45800800, 4097.0f);
  // ln(1 + r) on |r| <= 0.0094, c1 = 1: relative error 2^-29.2 (tables/fits/polynomials.sollya)
  rep32 c4 = c(0xbe800000, -0.25f);
  rep32 c3 = c(0x3eaaaaab, 0.333333343f);
  rep32 c2 = c(0xbf000000, -0.5f);

  rep32 log2e = c(0x3fb8aa3b, 1.44269502f);
  rep32 shifter = c(0x4b400000, 12582912.0f);  // 1.5 x 2^23: the sum carries n in its low bits
  rep32 step_hi = c(0x3f317200, 0.693145752f);
  rep32 step_lo = c(0x35bfbe8e, 1.42860677e-06f);

  rep32 magnitude = bits32(0x7fffffff);
  rep32 just_negative = bits32(0x7fffffff);  // sends 0x00000001 to the smallest integer
  rep32 largest = bits32(0x7f7fffff);
  rep32 largest_moved = bits32(0xff7ffffe);
};
static_assert(low_zero_bits(power_f32_constants{}.ln2_hi) >= 8);
static_assert(low_zero_bits(power_f32_constants{}.step_hi) >= 9);
static_assert(sizeof(powlnf_row) == 16);

// ln x as hi + lo, x positive and normal. x = 2^k m, m = (1 + r) c.
VORX_INLINE head_and_tail<f32x4> ln_of_power(f32x4 x, const power_f32_constants& k) {
  i32x4 bits = as_int(x);
  i32x4 offset = shift_right_logical((bits & k.index_digits) + k.index_half, 13) & k.row;
  f32x4 hi = load_aligned(reinterpret_cast<const float*>(row_address<0>(powlnf_tab, offset, 0)));
  f32x4 lo = load_aligned(reinterpret_cast<const float*>(row_address<1>(powlnf_tab, offset, 0)));
  in_order(lo, offset);
  f32x4 reciprocal = load_aligned(reinterpret_cast<const float*>(row_address<2>(powlnf_tab, offset, 0)));
  f32x4 unused = load_aligned(reinterpret_cast<const float*>(row_address<3>(powlnf_tab, offset, 0)));
  transpose(hi, lo, reciprocal, unused);

  f32x4 m = as_float((bits & k.significand) | k.one);
  f32x4 m_hi = m & k.upper_part;
  f32x4 r_hi = m_hi * reciprocal - k.one, r_lo = (m - m_hi) * reciprocal;  // the first is exact
  f32x4 r = r_hi + r_lo;
  f32x4 e = to_float(shift_right_logical(bits, 23) - k.bias);
  f32x4 head = e * k.ln2_hi + (hi + r_hi);
  f32x4 tail = ((r * k.c4 + k.c3) * r + k.c2) * (r * r) + (e * k.ln2_lo + lo);
  // Next to one, k = 0 and ln c = 0, or they cancel: r_lo belongs to the head.
  f32x4 next_to_one = as_float((bits + k.next_to_one) > k.next_to_one_limit);
  return {head + (next_to_one & r_lo), tail + clear(next_to_one, r_lo)};
}

// y ln x: the head is exact for what it is the product of; not a number where |y| is so large that its split overflows.
VORX_INLINE head_and_tail<f32x4> times_ln(f32x4 y, head_and_tail<f32x4> ln, const power_f32_constants& k) {
  f32x4 y_scaled = y * k.splitter;
  f32x4 y_hi = y_scaled - (y_scaled - y), y_lo = y - y_hi;
  f32x4 s = ln.head + ln.tail, s_scaled = s * k.splitter;
  f32x4 s_hi = (s + s_scaled) - s_scaled, s_lo = ln.tail + (ln.head - s_hi);
  return {s_hi * y_hi, s_lo * y_hi + (s_hi * y_lo + s_lo * y_lo)};
}

// e^(head + tail), for |head| < 87.3; with the coefficients of its owner.
VORX_INLINE f32x4 exp_of_product(head_and_tail<f32x4> p, const power_f32_constants& k, const auto& e) {
  f32x4 t = p.head * k.log2e + k.shifter;
  f32x4 n = t - k.shifter;
  f32x4 q = ((p.head - n * k.step_hi) - n * k.step_lo) + p.tail;
  return as_float(as_int(horner(q, e.g5, e.g4, e.g3, e.g2, e.g1, e.g0)) + (as_int(t) << 23));
}

// Not a positive normal number below the largest.
VORX_INLINE i32x4 not_in_power_range(f32x4 x, const power_f32_range_constants& k) {
  return as_int(x) - k.smallest > k.below_range;
}

// What no power in double precision takes either: x not a positive number, or y infinite or NaN.
VORX_INLINE i32x4 not_positive_finite(f32x4 x, const power_f32_constants& k) {
  return (as_int(x) + k.just_negative) > k.largest_moved;
}
VORX_INLINE i32x4 not_finite(f32x4 y, const power_f32_constants& k) { return (as_int(y) & k.magnitude) > k.largest; }

}  // namespace vorx

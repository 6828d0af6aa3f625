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
  rep32 row = bits32(0x007f0);  // 16 times an index from 0 to 127
  rep32 one = c(0x3f800000, 1.0f);
  rep32 minus_one = c(0xbf800000, -1.0f);  // beside `one`, so that neither stays in a register for the other
  rep32 upper_part = bits32(0x7fffc000);
  rep32 ln2_hi = c(0x33b17000, 0x1.62ep-1f * 0x1p-23f);  // low 12 bits zero: k * ln2_hi is exact
  rep32 ln2_lo = c(0x2c85fdf4, 0x1.0bfbe8p-15f * 0x1p-23f);
  rep32 next_to_one = bits32(0x407e0000);
  rep32 next_to_one_limit = bits32(0x7ffc0000);
  rep32 splitter = c(0x45800800, 4097.0f);
  // ln(1 + r) on |r| <= 0.0094, c1 = 1: relative error 2^-29.2 (tables/fits/polynomials.sollya)
  rep32 c4 = c(0xbe800000, -0.25f);
  rep32 c3 = c(0x3eaaaaab, 0.333333343f);
  rep32 c2 = c(0xbf000000, -0.5f);

  rep32 log2e = c(0x3fb8aa3b, 1.44269502f);
  rep32 shifter = c(0x4b400000, 12582912.0f);  // 1.5 x 2^23: the sum carries n in its low bits
  rep32 minus_shifter = c(0xcb400000, -12582912.0f);
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

// ln x as hi + lo, x normal and positive; ln |x| for normal x of either sign. x = 2^k m, m = (1 + r) c.
enum class base { positive, either_sign };
template <base of = base::positive>
VORX_INLINE head_and_tail<f32x4> ln_of_power(f32x4 x, const power_f32_constants& k) {
  auto bits = [&] { return copy(as_int(x)); };
  auto bits_of_magnitude = [&] { return of == base::positive ? bits() : bits() & k.magnitude; };

  static_assert(sizeof(powlnf_row) == 1 << (23 - 7 - 12));
  auto [hi, lo, reciprocal] = gather_triples(&powlnf_tab[0].hi, shift_right_logical(bits(), 12) & k.row);

  f32x4 m = as_float((bits() & k.significand) | k.one);
  f32x4 e = to_float(bits_of_magnitude() - as_int(m));             // 2^23 k
  f32x4 head = copy(e) * k.ln2_hi + hi, tail = e * k.ln2_lo + lo;  // the first is exact
  in_order(head, m), in_order(tail, m);
  f32x4 m_hi = copy(m) & k.upper_part;
  f32x4 r_lo = (m - m_hi) * reciprocal, r_hi = m_hi * reciprocal + k.minus_one;  // both are exact
  head = head + r_hi;                                                            // exact too
  f32x4 r = r_hi + r_lo;
  in_register(x);
  tail = ((copy(r) * k.c4 + k.c3) * r + k.c2) * (r * r) + tail;
  // Next to one, k = 0 and ln c = 0, or they cancel: r_lo belongs to the head.
  f32x4 to_head = as_float((bits_of_magnitude() + k.next_to_one) > k.next_to_one_limit) & r_lo;
  in_order(to_head, r_lo);  // or the compiler makes the difference of an and-not with the mask, which takes a copy
  return {head + to_head, tail + (to_head ^ r_lo)};
}

// ln x as the sum of twelve bits and the rest.
VORX_INLINE head_and_tail<f32x4> twelve_bits_and_rest(head_and_tail<f32x4> ln, const power_f32_constants& k) {
  f32x4 s = ln.head + ln.tail, s_scaled = copy(s) * k.splitter;
  f32x4 s_hi = (s + s_scaled) - s_scaled;
  return {s_hi, ln.tail + (ln.head - s_hi)};
}

// y ln x: the head is exact for what it is the product of; not a number where |y| is so large that its split overflows.
VORX_INLINE head_and_tail<f32x4> times_ln(f32x4 y, head_and_tail<f32x4> ln, const power_f32_constants& k) {
  auto [s_hi, s_lo] = twelve_bits_and_rest(ln, k);
  f32x4 y_scaled = copy(y) * k.splitter;
  f32x4 y_hi = y_scaled - (y_scaled - y), y_lo = y - y_hi;
  return {s_hi * y_hi, s_lo * y_hi + (s_hi * y_lo + s_lo * y_lo)};
}

// A lane test and what it is of.
struct power_f32_halfway {
  head_and_tail<f32x4> product;
  i32x4 flags;
};

// e^(head + tail), for |head| < 87.3; with the coefficients of its owner. `units` is added to its bits: a unit in the last place,
// or the sign bit.
VORX_INLINE f32x4 exp_of_product(head_and_tail<f32x4> p, const power_f32_constants& k, const auto& e, i32x4 units = {}) {
  f32x4 t = copy(p.head) * k.log2e + k.shifter;
  f32x4 n = copy(t) + k.minus_shifter;
  f32x4 q = ((p.head - copy(n) * k.step_hi) - n * k.step_lo) + p.tail;
  f32x4 y = horner(q, copy(q) * e.g5 + e.g4, e.g3, e.g2, e.g1, e.g0);
  return as_float(as_int(y) + ((as_int(t) << 23) + units));
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

// ln x as head + tail in double precision, good to 2^-67.3 of itself: for powers, and for whatever else needs more bits of a
// logarithm than a double has. Both forms give the same bits; there is no reciprocal estimate in it.
#pragma once

#include "frame/head_and_tail.h"
#include "tables/ln_j128_rows.h"

namespace vorx {

struct ln_reduction_constants {
  rep64 half_step = bits64(0x0000100000000000);  // half a step of the table, in the significand
  rep64 exponent = bits64(0xfff0000000000000);
  rep64 one = c(0x3ff0000000000000, 1.0);
  rep64 integer = c(0x4330000000000000, 0x1p52);  // with the biased exponent of x in its low bits, 2^52 more than that
  rep64 biased = c(0x43300000000003ff, 4503599627371519.0);
  rep64 row_offset = bits64(127 * sizeof(ln_row));
};

// x = 2^k z with z in [1 - 2^-9, 2 - 2^-8), z = (1 + r) c: k = 0 and c = 1 for x next to 1.
struct ln_reduction {
  f64x2 k, z;
  i64x2 offset;  // of the row of z, in bytes, in the low words
};
// x positive and normal.
VORX_INLINE ln_reduction reduce_to_ln_row(f64x2 x, const ln_reduction_constants& k) {
  i64x2 centred = as_int(x) + k.half_step;  // carries into the exponent where z is in row 0 of the next one
  f64x2 exponent = as_float(shift_right_logical(centred, 52) | k.integer) - k.biased;
  f64x2 z = as_float((as_int(x) - (centred & k.exponent)) + k.one);
  static_assert(sizeof(ln_row) == 1 << 5);
  return {exponent, z, shift_right_logical(centred, 52 - 7 - 5) & k.row_offset};
}

struct ln_in_parts_constants : ln_reduction_constants {
  rep64 upper_half = bits64(upper_half_f64);
  rep64 half_unit = bits64(uint64_t(1) << 26);               // of the upper half
  rep64 ln2_hi = c(0x3fe62e42fefa3800, 0.6931471805598903);  // low 11 bits zero, like all ln c: k * ln2_hi + ln c is exact
  rep64 ln2_lo = c(0x3d2ef35793c76730, 5.497923018708371e-14);
  rep64 half = c(0x3fe0000000000000, 0.5);
  // ln(1 + r) - r + r^2/2 on |r| <= 0.00587: absolute error 2^-80.4 (tables/fits/ln_in_parts.sollya)
  rep64 c9 = c(0x3fbd81399cefb8c3, 0.11525306779342075);
  rep64 c8 = c(0xbfc0003287b5374a, -0.12500602365838126);
  rep64 c7 = c(0x3fc249227a786233, 0.14285689334862325);
  rep64 c6 = c(0xbfc55555551c641f, -0.16666666656308934);
  rep64 c5 = c(0x3fc99999999bf65c, 0.20000000000429707);
  rep64 c4 = c(0xbfd0000000000008, -0.25000000000000044);
  rep64 c3 = c(0x3fd5555555555555, 0.3333333333333333);
};
static_assert(low_zero_bits(ln_in_parts_constants{}.ln2_hi) >= 11);

// ln x for positive normal x. The tail is less than 2^-16 of the head, so that head + tail is not head; ln 1 is +0 and +0.
//
// ln x = (k ln 2 + ln c) + r - r^2/2 + r^3 (...). With 26 + 27 bits of z and 9 bits of 1/c, r is exact and in two parts besides,
// of which the upper has 26 bits: its square is exact. Each sum of head and next term keeps what it rounds away.
VORX_INLINE head_and_tail<f64x2> ln_in_parts(f64x2 x, const ln_in_parts_constants& k) {
  auto [e, z, offset] = reduce_to_ln_row(x, k);
  auto low = reinterpret_cast<const ln_row*>(row_address<0>(ln_j128_rows, as_i32(offset), 0));
  auto high = reinterpret_cast<const ln_row*>(row_address<2>(ln_j128_rows, as_i32(offset), 0));
  f64x2 reciprocal = load_halves(&low->reciprocal, &high->reciprocal);
  f64x2 a = load_aligned(&low->hi), b = load_aligned(&high->hi);
  f64x2 ln_hi = lower_lanes(a, b), ln_lo = upper_lanes(a, b);

  // To nearest: cut off, the square of r's upper part would exceed r itself for z just below 1.
  f64x2 z_head = as_float((as_int(z) + k.half_unit) & k.upper_half);
  f64x2 r_head = z_head * reciprocal - k.one, r_tail = (z - z_head) * reciprocal;
  f64x2 r = r_head + r_tail;
  f64x2 half_square = k.half * r_head * r_head, half_square_rest = k.half * r_tail * (r_head + r);

  auto first = fast_two_sum(e * k.ln2_hi + ln_hi, r);
  f64x2 head = first.head - half_square;
  f64x2 rounded_away = first.tail + ((first.head - head) - half_square);

  f64x2 r2 = r * r;
  f64x2 p = ((r * k.c9 + k.c8) * r + k.c7) * r2 + (r * k.c6 + k.c5);
  p = p * r2 + (r * k.c4 + k.c3);
  return {head, (rounded_away + (e * k.ln2_lo + ln_lo)) + (p * (r2 * r) - half_square_rest)};
}

// The same for one positive finite number, a subnormal one too.
inline head_and_tail<double> ln_in_parts_of_lane(double x) {
  bool subnormal = x < scalar(0x0010000000000000, 2.2250738585072014e-308);
  auto [head, tail] = ln_in_parts(all(subnormal ? x * power_of_two<double>(54) : x), constant_pool<ln_in_parts_constants>);
  head_and_tail<double> ln = {_mm_cvtsd_f64(head.v), _mm_cvtsd_f64(tail.v)};
  if (!subnormal) return ln;
  auto sum = two_sum(ln.head, scalar(0xc042b70887231f40, -37.42994775023408));  // 54 times the upper part of ln 2: exact
  return {sum.head, sum.tail + (ln.tail + scalar(0xbd8a1d51e4b03f10, -2.9688784301025202e-12))};
}

}  // namespace vorx

// Floating point to 64-bit integers. There is no packed instruction for it.
//
// Four floats: |r| is cut at 2^32 into two halves, both exact, that 32-bit conversions take; negation, range and NaN are applied
// to the halves, and two unpack instructions make the 64-bit lanes. Two doubles: the significand shifted left by its exponent or,
// below 2^52, the fraction field of the sum with 2^52.
//
// Without saturation, what is out of range, a NaN included, becomes 0x8000000000000000; the unsigned conversions take the
// magnitude. With saturation it becomes the nearest integer of the type, and a NaN 0.
#pragma once

#include "frame/kernel.h"

namespace vorx {

struct to_i64_f32_constants {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 ones = bits32(0xffffffff);
  rep32 top_bit = bits32(0x80000000);
  rep32 two_m32 = c(0x2f800000, 2.32830644e-10f);
  rep32 two_31 = c(0x4f000000, 2147483648.0f);
  rep32 two_32 = c(0x4f800000, 4294967296.0f);
  rep32 two_63 = c(0x5f000000, 9223372036854775808.0f);
  rep32 two_64 = c(0x5f800000, 18446744073709551616.0f);
};

// The halves of four 64-bit integers.
struct halves {
  i32x4 low, high;
  VORX_INLINE i64x4 joined() const { return {{_mm_unpacklo_epi32(low.v, high.v)}, {_mm_unpackhi_epi32(low.v, high.v)}}; }
};

// An integral value in [0, 2^32) as an unsigned integer: from 2^31 up less that, which the signed conversion takes.
VORX_INLINE i32x4 to_unsigned(f32x4 a, const to_i64_f32_constants& k) {
  i32x4 upper = f32x4(k.two_31) <= a;
  return to_int(a - (as_float(upper) & k.two_31)) ^ (upper << 31);
}

template <rounding direction, bool saturated>
struct to_i64_f32 : kernel<f32, to_i64_f32_constants> {
  static i64x4 path(f32x4 x, const constants& k) {
    f32x4 r = round_to_integral<direction>(x);
    f32x4 a = r & k.magnitude;
    f32x4 high = round_to_integral<downward>(a * k.two_m32);
    f32x4 low = a - high * k.two_32;
    // Negation of the halves: the carry goes up where the lower half is 0.
    i32x4 sign = r < f32x4{_mm_setzero_ps()}, zero = {_mm_setzero_si128()};
    halves h = {to_unsigned(low, k), to_int(high)};
    // An infinity or a NaN leaves NaN in the lower half; from 2^63 up the conversion gives 0x80000000, and its negative is
    // itself.
    if constexpr (!saturated) h.low = h.low & (low == low);
    h.high = (h.high ^ sign) - (sign & (h.low == zero));
    h.low = (h.low ^ sign) - sign;
    if constexpr (!saturated) return h.joined();
    i32x4 in_range = a < f32x4(k.two_63), nan = r != r;
    h.high = clear(nan, select(in_range, h.high, sign ^ k.magnitude));
    h.low = clear(nan, select(in_range, h.low, sign ^ k.ones));
    return h.joined();
  }
};

template <rounding direction, bool saturated>
struct to_u64_f32 : kernel<f32, to_i64_f32_constants> {
  static i64x4 path(f32x4 x, const constants& k) {
    f32x4 r = round_to_integral<direction>(x);
    f32x4 a = r & k.magnitude;
    f32x4 high = round_to_integral<downward>(a * k.two_m32);
    f32x4 low = a - high * k.two_32;
    i32x4 in_range = a < f32x4(k.two_64);
    halves h = {to_unsigned(low, k), to_unsigned(high, k)};
    if constexpr (!saturated) return halves{h.low & in_range, select(in_range, h.high, k.top_bit)}.joined();
    i32x4 nothing = (as_int(r) >> 31) | (r != r), beyond = in_range ^ k.ones;
    return halves{clear(nothing, h.low | beyond), clear(nothing, h.high | beyond)}.joined();
  }
};

struct to_i64_f64_constants {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 fraction = bits64(0x000fffffffffffff);
  rep64 hidden_bit = bits64(0x0010000000000000);
  rep64 shift_base = bits64(0x433);                           // 1023 + 52
  rep64 shifter = c(0x4330000000000000, 4503599627370496.0);  // 2^52
  rep32 two_52 = bits32(0x43300000);                          // high words
  rep32 two_63 = bits32(0x43e00000);
  rep32 two_64 = bits32(0x43f00000);
  rep64 top_bit = bits64(0x8000000000000000);
  rep64 largest_i64 = bits64(0x7fffffffffffffff);
  rep64 largest_u64 = bits64(0xffffffffffffffff);
};

struct fields_of_f64 {
  i32x4 high;  // the high word of |r|, in both words of its lane
  i64x2 value;

  fields_of_f64(f64x2 r, const to_i64_f64_constants& k) {
    f64x2 a = r & k.magnitude;
    high = duplicate_high_words(as_int(a));
    i64x2 significand = (as_int(a) & k.fraction) | k.hidden_bit;
    i64x2 count = shift_right_logical(as_int(a), 52) - k.shift_base;
    i64x2 small = as_i64(high < i32x4(k.two_52)) & as_int(a + k.shifter) & k.fraction;
    value = shift_left_each(significand, count) | small;
  }
};

template <rounding direction, bool saturated>
struct to_i64_f64 : kernel<f64, to_i64_f64_constants> {
  static i64x2 path(f64x2 x, const constants& k) {
    f64x2 r = round_to_integral<direction>(x);
    fields_of_f64 f(r, k);
    i64x2 sign = r < f64x2{_mm_setzero_pd()}, in_range = as_i64(f.high < i32x4(k.two_63));
    i64x2 result = (f.value ^ sign) - sign;
    if constexpr (!saturated) return select(in_range, result, k.top_bit);
    return clear(x != x, select(in_range, result, sign ^ k.largest_i64));
  }
};

template <rounding direction, bool saturated>
struct to_u64_f64 : kernel<f64, to_i64_f64_constants> {
  static i64x2 path(f64x2 x, const constants& k) {
    f64x2 r = round_to_integral<direction>(x);
    fields_of_f64 f(r, k);
    i64x2 in_range = as_i64(f.high < i32x4(k.two_64));
    if constexpr (!saturated) return select(in_range, f.value, k.top_bit);
    i64x2 nothing = as_i64(duplicate_high_words(as_int(r)) >> 31) | (x != x);
    return clear(nothing, select(in_range, f.value, k.largest_u64));
  }
};

}  // namespace vorx

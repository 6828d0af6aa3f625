// Integers to floating point, rounded in a direction. The integer is cut into chunks that are exact as floating-point numbers:
// their bits are put under the exponent of a power of two, which is then subtracted. The sum of the chunks is the one rounding,
// to nearest in the caller's mode; the other directions move it by one unit where its exact error says so. Zero is +0 in every
// direction.
#pragma once

#include "frame/kernel.h"

namespace vorx {

// One unit to be added to the bits of t = H + L, rounded to nearest, where t lies on the wrong side of the exact H + L. `sign` is
// all ones in negative lanes, whose t, H and L carry the sign; for magnitudes alone it is zero. t - H is exact.
template <rounding direction, class V, class I>
VORX_INLINE I unit_towards(V t, V high, V low, I sign, I one) {
  V kept = t - high;  // what t holds of the low chunk
  if constexpr (direction == to_nearest) return sign ^ sign;
  if constexpr (direction == upward) return (kept < low) & (sign | one);  // +1, or -1 where negative
  if constexpr (direction == downward || direction == toward_zero)
    return (low < kept) & ((sign ^ (sign == sign)) | one);  // -1, or +1
}

// All ones in negative lanes.
VORX_INLINE i32x4 where_negative(i32x4 x) { return x >> 31; }
VORX_INLINE i64x2 where_negative(i64x2 x) { return as_i64(duplicate_high_words(x) >> 31); }

// high + low of a magnitude, rounded once, with the sign of the integer x.
template <rounding direction, bool has_sign, class V, class I, class C>
VORX_INLINE V rounded_sum(V high, V low, I x, const C& k) {
  V t = high + low;
  I zero = {_mm_setzero_si128()};
  if constexpr (!has_sign) return as_float(as_int(t) + unit_towards<direction>(t, high, low, zero, I(k.one)));
  V s = as_float(x) & k.sign;
  if constexpr (direction == to_nearest || direction == toward_zero)
    return as_float(as_int(t) + unit_towards<direction>(t, high, low, zero, I(k.one))) | s;
  return as_float(as_int(t | s) + unit_towards<direction>(t | s, high | s, low | s, where_negative(x), I(k.one)));
}

struct from_i32_f32_constants {
  rep32 sign = bits32(0x80000000);
  rep32 low_bits = bits32(0x007fffff);
  rep32 one = bits32(1);
  rep32 two_23 = c(0x4b000000, 8388608.0f);
  rep32 two_46 = c(0x56800000, 70368744177664.0f);
};

template <rounding direction, bool has_sign>
struct from_i32_f32 : kernel<f32, from_i32_f32_constants> {
  static f32x4 path(i32x4 x, const constants& k) {
    i32x4 n = has_sign ? magnitude(x) : x;
    f32x4 low = as_float((n & k.low_bits) | k.two_23) - k.two_23;             // bits 0 to 22
    f32x4 high = as_float(shift_right_logical(n, 23) | k.two_46) - k.two_46;  // bits 23 to 31
    return rounded_sum<direction, has_sign>(high, low, x, k);
  }
};

struct from_u32_f64_constants {
  rep64 two_52 = c(0x4330000000000000, 4503599627370496.0);
};

// Every 32-bit integer is exact in double: all directions are the same.
template <rounding, bool has_sign>
struct from_i32_f64 : kernel<f64, std::conditional_t<has_sign, no_constants, from_u32_f64_constants>> {
  static f64x2 path(i32x4 x, [[maybe_unused]] const auto& k) {
    if constexpr (has_sign) return to_double(x);
    if constexpr (!has_sign) return as_float(extend_zero(x) | k.two_52) - k.two_52;
  }
};

// A 64-bit integer as the sum of its words, each exact in double: one rounding. The bits of the low word are put under the
// exponent of 2^52, those of the high word under that of 2^84, a signed one with 2^31 added to it; one subtraction takes all that
// away.
struct unsigned_words_constants {
  rep64 two_52 = c(0x4330000000000000, 4503599627370496.0);
  rep64 high = c(0x4530000000000000, 0x1p84);
  rep64 added = c(0x4530000000100000, 0x1.00000001p84);  // 2^84 + 2^52
};
struct signed_words_constants {
  rep64 two_52 = c(0x4330000000000000, 4503599627370496.0);
  rep64 high = c(0x4530000080000000, 0x1.000008p84);
  rep64 added = c(0x4530000080100000, 0x1.00000801p84);  // 2^84 + 2^63 + 2^52
};
template <bool has_sign>
using words_constants = std::conditional_t<has_sign, signed_words_constants, unsigned_words_constants>;

VORX_INLINE f64x2 sum_of_words(i64x2 x, const auto& k) {
  f64x2 low = as_float(as_i64(even_odd(as_i32(x), as_i32(k.two_52))));
  f64x2 high = as_float(shift_right_logical(x, 32) ^ k.high) - k.added;
  return high + low;
}

struct from_i64_f64_constants {
  rep64 sign = bits64(0x8000000000000000);
  rep64 low_bits = bits64(0x000fffffffffffff);
  rep64 one = bits64(1);
  rep64 two_52 = c(0x4330000000000000, 4503599627370496.0);
  rep64 two_104 = c(0x4670000000000000, 20282409603651670423947251286016.0);
};

template <rounding direction, bool has_sign>
struct from_i64_f64;

template <bool has_sign>
struct from_i64_f64<to_nearest, has_sign> : kernel<f64, words_constants<has_sign>> {
  static f64x2 path(i64x2 x, const words_constants<has_sign>& k) { return sum_of_words(x, k); }
};

template <rounding direction, bool has_sign>
struct from_i64_f64 : kernel<f64, from_i64_f64_constants> {
  static f64x2 path(i64x2 x, const constants& k) {
    i64x2 negative = where_negative(x);
    i64x2 n = has_sign ? (x ^ negative) - negative : x;
    f64x2 low = as_float((n & k.low_bits) | k.two_52) - k.two_52;
    f64x2 high = as_float(shift_right_logical(n, 52) | k.two_104) - k.two_104;
    return rounded_sum<direction, has_sign>(high, low, x, k);
  }
};

template <rounding direction, bool has_sign>
struct from_i64_f32;

struct from_i64_f32_nearest_constants : signed_words_constants {
  rep32 bias = bits32(0x7fe00000);   // 2^31 - 2^21 added to the high word:
  rep32 limit = bits32(0x7fbfffff);  // more than 2^31 - 2^22 - 1 if it is from -2^21 to 2^21 - 1
  rep64 low_bits = bits64(0x7ff);
};

// By way of double: an integer of more than 53 bits is cut to a multiple of 2^11 before, to an odd one where bits are lost, so
// that it is exact in double and the rounding to float still knows of them. (Unsigned integers are faster in chunks.)
template <>
struct from_i64_f32<to_nearest, true> : kernel<f32, from_i64_f32_nearest_constants> {
  static f32x4 path(i64x4 x, const constants& k) {
    f32x4 low = half(x.low, k);
    f32x4 high = half(x.high, behind(low, k));
    return as_float(join(as_int(low), as_int(high)));
  }

 private:
  static f32x4 half(i64x2 x, const constants& k) {
    i32x4 fits = duplicate_high_words(x) + k.bias > k.limit;  // 53 bits
    i64x2 cut = clear(as_i64(fits), as_int(k.low_bits));
    return to_float(sum_of_words(clear(cut, x | ((x & cut) + cut)), k));
  }
};

struct from_i64_f32_constants {
  rep32 sign = bits32(0x80000000);
  rep32 low_bits = bits32(0x007fffff);
  rep32 exponent = bits32(0xff800000);
  rep32 half_unit = bits32(0x0c000000);  // 24 in the exponent field
  rep32 one = bits32(1);
  rep32 two_23 = c(0x4b000000, 8388608.0f);
  rep32 two_46 = c(0x56800000, 70368744177664.0f);
  rep32 two_69 = c(0x62000000, 590295810358705651712.0f);
};

template <rounding direction, bool has_sign>
struct from_i64_f32 : kernel<f32, from_i64_f32_constants> {
  static f32x4 path(i64x4 x, const constants& k) {
    i32x4 negative = join_high_words(x.low, x.high) >> 31;
    i64x4 n = has_sign ? i64x4{without_sign(x.low), without_sign(x.high)} : x;
    auto chunk = [&](int shift) { return join_low_words(shift_right_logical(n.low, shift), shift_right_logical(n.high, shift)); };
    f32x4 c0 = as_float((chunk(0) & k.low_bits) | k.two_23) - k.two_23;   // bits 0 to 22
    f32x4 c1 = as_float((chunk(23) & k.low_bits) | k.two_46) - k.two_46;  // bits 23 to 45
    f32x4 c2 = as_float(chunk(46) | k.two_69) - k.two_69;                 // bits 46 to 63
    f32x4 result = direction == to_nearest ? nearest(c2, c1, c0, k) : directed(c2, c1, c0, negative, k);
    return has_sign ? result | (as_float(negative) & k.sign) : result;
  }

 private:
  static i64x2 without_sign(i64x2 x) {
    i64x2 negative = where_negative(x);
    return (x ^ negative) - negative;
  }

  // Two roundings that give the same as one: where the first sum was an exact tie that went down to even and bits remain below,
  // it is made odd, so that the second sum goes up.
  static f32x4 nearest(f32x4 c2, f32x4 c1, f32x4 c0, const constants& k) {
    f32x4 s = c2 + c1;
    f32x4 error = c1 + (c2 - s);
    i32x4 half = (as_int(s) & k.exponent) - k.half_unit;
    i32x4 tie = (as_int(error) == half) & (c0 != f32x4{_mm_setzero_ps()});
    return as_float(as_int(s) | (tie & k.one)) + c0;
  }

  // The magnitude s of the sum, moved by one unit where the exact error of both additions, e1 + e2, says that it is on the wrong
  // side.
  static f32x4 directed(f32x4 c2, f32x4 c1, f32x4 c0, i32x4 negative, const constants& k) {
    f32x4 t = c1 + c0, e1 = c0 + (c1 - t);
    f32x4 s = c2 + t, e2 = t + (c2 - s);
    f32x4 error = e1 + e2;
    f32x4 zero = {_mm_setzero_ps()};
    i32x4 up = (zero < error) & k.one, down = error < zero;  // +1 and -1
    i32x4 outward = direction == upward ? clear(negative, up) : negative & up;
    i32x4 inward = direction == upward ? negative & down : clear(negative, down);
    if constexpr (direction == toward_zero) return as_float(as_int(s) + down);
    if constexpr (!has_sign) return as_float(as_int(s) + (direction == upward ? up : down));
    return as_float(as_int(s) + (outward | inward));
  }
};

}  // namespace vorx

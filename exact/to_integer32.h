// Floating point to 32-bit integers: the value rounded in a direction, then converted, with or without saturation.
//
// Without saturation, what is out of range becomes 0x80000000 (signed), or the conversion of its magnitude, and 0x80000000 from
// 2^32 on (unsigned). With saturation, it becomes the nearest integer of the type; a NaN becomes 0 in the signed conversions, in
// the unsigned ones 0xffffffff with a clear sign bit and 0 with a set one. All range tests are on the rounded value.
#pragma once

#include "frame/kernel.h"

namespace vorx {

struct to_i32_f32_constants {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 limit = c(0x4f000000, 2147483648.0f);  // 2^31
};

template <rounding direction, bool saturated>
struct to_i32_f32 : kernel<f32, std::conditional_t<saturated, to_i32_f32_constants, no_constants>> {
  static i32x4 path(f32x4 x, [[maybe_unused]] const auto& k) {
    f32x4 r = round_to_integral<direction>(x);
    i32x4 converted = to_int(r);
    if constexpr (!saturated) return converted;
    if constexpr (saturated) {
      i32x4 nearest = (as_int(r) >> 31) ^ k.magnitude;  // 2^31 - 1, or -2^31 where the sign bit is set
      i32x4 result = select((as_int(r) & k.magnitude) < i32x4(k.limit), converted, nearest);
      return clear(r != r, result);
    }
  }
};

struct to_u32_f32_constants {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 exponent = bits32(0x7f800000);
  rep32 two_31 = c(0x4f000000, 2147483648.0f);
  rep32 two_32 = c(0x4f800000, 4294967296.0f);
  rep32 top_bit = bits32(0x80000000);
  rep32 ones = bits32(0xffffffff);
};

template <rounding direction, bool saturated>
struct to_u32_f32 : kernel<f32, to_u32_f32_constants> {
  static i32x4 path(f32x4 x, const constants& k) {
    f32x4 r = round_to_integral<direction>(x);
    f32x4 a = saturated ? r : r & k.magnitude;
    // From 2^31 up the signed conversion fails; there the fraction field moved to the top is the integer less its top bit.
    i32x4 big = (a & k.exponent) == f32x4(k.two_31);
    i32x4 converted = select(big, (as_int(a) << 8) | k.top_bit, to_int(a));
    if constexpr (!saturated) return converted;
    i32x4 result = select(r < f32x4(k.two_32), converted, k.ones);  // false for a NaN
    return clear(as_int(r) >> 31, result);
  }
};

struct to_i32_f64_constants {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 limit = bits32(0x41e00000);  // the high word of 2^31
};

// Results of double kernels are lanes 0 and 1; lanes 2 and 3 are zero.
template <rounding direction, bool saturated>
struct to_i32_f64 : kernel<f64, std::conditional_t<saturated, to_i32_f64_constants, no_constants>> {
  static i32x4 path(f64x2 x, [[maybe_unused]] const auto& k) {
    f64x2 r = round_to_integral<direction>(x);
    i32x4 converted = to_int(r);
    if constexpr (!saturated) return converted;
    if constexpr (saturated) {
      i32x4 high = pack_high_words(as_int(r));
      i32x4 nearest = (high >> 31) ^ k.magnitude;
      i32x4 result = select((high & k.magnitude) < i32x4(k.limit), converted, nearest);
      return low_half(clear(pack_high_words(r != r), result));
    }
  }
};

struct to_u32_f64_constants {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep32 exponent = bits32(0x7ff00000);
  rep32 two_31 = bits32(0x41e00000);  // high words of 2^31 and 2^32
  rep32 two_32 = bits32(0x41f00000);
  rep32 top_bit = bits32(0x80000000);
  rep32 ones = bits32(0xffffffff);
};

template <rounding direction, bool saturated>
struct to_u32_f64 : kernel<f64, to_u32_f64_constants> {
  static i32x4 path(f64x2 x, const constants& k) {
    f64x2 r = round_to_integral<direction>(x);
    f64x2 a = saturated ? r : r & k.magnitude;
    i32x4 big = (pack_high_words(as_int(a)) & k.exponent) == i32x4(k.two_31);
    i32x4 from_fraction = pack_high_words(as_int(a) << 11) | k.top_bit;
    i32x4 converted = select(big, from_fraction, to_int(a));
    if constexpr (!saturated) return low_half(converted);
    i32x4 high = pack_high_words(as_int(r));
    i32x4 result = select(high < i32x4(k.two_32), converted, k.ones);  // a positive NaN is not below 2^32
    return low_half(clear(high >> 31, result));
  }
};

}  // namespace vorx

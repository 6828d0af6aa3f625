// Range reduction by revolutions, for arguments of any size: x = 2 pi (integer + k/N) + r with N = 256 rows for float, 512 for
// double, and |r| <= pi/N. The significand of x times a stretch of the bits of 1/(2 pi), chosen by the exponent of x, is the
// exact fraction of |x| / (2 pi), to 64 bits for float and 128 for double; whole revolutions never appear.
#pragma once

#include <concepts>

#include "frame/kernel.h"
#include "frame/rare.h"
#include "tables/revolution.h"

namespace vorx {

// Row k of the tables (the low bits count) and r = high + low.
template <class V, class I>
struct reduced {
  I k;
  V high, low;
};
using reduced_f32 = reduced<f32x4, i32x4>;
using reduced_f64 = reduced<f64x2, i64x2>;

struct reduction_f32_constants {
  rep32 sign = bits32(0x80000000);
  rep32 significand = bits32(0x007fffff);
  rep32 hidden_bit = bits32(0x00800000);
  rep32 exponent_x4 = bits32(0x000003fc);
  rep32 one = c(0x3f800000, 1.0f);
  rep32 shifter = c(0x47400000, 49152.0f);  // 1.5 x 2^15: rounds a number near 1 to a multiple of 1/256
  rep32 mid_field = bits32(0x000001ff);
  rep32 mid_bias = c(0x34000000, 0x1p-23f);
  rep32 low_field = bits32(0x0003ffff);
  rep32 low_bias = c(0x28800000, 0x1p-46f);
  rep32 split = bits32(0xfffff000);
  rep32 two_pi_hi = c(0x40c91000, 6.283203125f);  // 12 significant bits: exact times 12 bits
  rep32 two_pi_lo = c(0xb795777a, -1.78178198e-05f);
  rep32 two_pi = c(0x40c90fdb, 6.28318548f);
};
static_assert(low_zero_bits(reduction_f32_constants{}.two_pi_hi) >= 12);

// Two 24-bit significands (even 32-bit lanes of m) times two rows of 96 bits: bits 32 to 95 of the products.
VORX_INLINE i64x2 times_row(i64x2 m, i32x4 row_a, i32x4 row_b) {
  i64x2 w01 =
      lower_lanes(as_i64(row_a), as_i64(row_b));  // most significant word in the even lanes, the next one in the odd lanes
  i64x2 w2 = upper_lanes(as_i64(row_a), as_i64(row_b));
  i64x2 high = multiply_even(m, w01) << 32;
  i64x2 middle = multiply_even(m, shift_right_logical(w01, 32));
  i64x2 low = shift_right_logical(multiply_even(m, w2), 32);
  return high + (middle + low);
}

// The 16 bytes from row E on, for the lane whose 4 E is given.
template <int lane>
VORX_INLINE i32x4 revolution_row(i32x4 exponent_x4) {
  return load_row(reinterpret_cast<const char*>(revolution_f32) + 3 * extract<lane>(exponent_x4));
}

VORX_INLINE reduced_f32 reduce(f32x4 x, const reduction_f32_constants& k) {
  // Bits 2^-1 to 2^-64 of the fraction of |x| / (2 pi), in two words.
  i32x4 exponent = shift_right_logical(as_int(x), 21) & k.exponent_x4;
  i64x2 m = as_i64((as_int(x) & k.significand) | k.hidden_bit);
  i64x2 even = times_row(m, revolution_row<0>(exponent), revolution_row<2>(exponent));
  i64x2 odd = times_row(shift_right_logical(m, 32), revolution_row<1>(exponent), revolution_row<3>(exponent));
  i32x4 high = even_odd(as_i32(shift_right_logical(even, 32)), as_i32(odd));
  i32x4 low = even_odd(as_i32(even), as_i32(odd << 32));

  // The fraction, with the sign of x, as the sum of three floats of 23, 23 and 18 bits; the first has 1 added to it and is split
  // into the nearest multiple of 1/256 and a rest d, |d| <= 1/512. A lane that is not finite becomes NaN by x - x.
  i32x4 sign = as_int(x) & k.sign;
  i32x4 mid_bias = sign | k.mid_bias, low_bias = sign | k.low_bias;
  f32x4 f = as_float(sign | k.one | shift_right_logical(high, 9));
  f32x4 g = f + k.shifter;
  f32x4 d = f - (g - k.shifter);
  f32x4 mid = as_float(mid_bias | ((high & k.mid_field) << 14) | shift_right_logical(low, 18)) - as_float(mid_bias);
  f32x4 lo = as_float(low_bias | ((low & k.low_field) << 5)) - as_float(low_bias) + (x - x);

  // s = sh + sl + tail, times 2 pi.
  f32x4 s = d + mid;
  f32x4 sh = s & k.split;
  f32x4 sl = s - sh;
  f32x4 tail = (d - s) + mid + lo;
  f32x4 a = sh * k.two_pi_hi;
  f32x4 b = sl * k.two_pi_hi + sh * k.two_pi_lo + (tail * k.two_pi + sl * k.two_pi_lo);
  f32x4 r = a + b;
  return {as_int(g), r, (a - r) + b};
}

struct reduction_f64_constants {
  rep64 sign = bits64(0x8000000000000000);
  rep32 exponent_x8 = bits32(0x00003ff8);
  rep64 significand = bits64(0x000fffffffffffff);
  rep64 hidden_bit = bits64(0x0010000000000000);
  rep64 low_word = bits64(0x00000000ffffffff);
  rep64 one = c(0x3ff0000000000000, 1.0);
  rep64 shifter = c(0x42a8000000000000, 13194139533312.0);  // 1.5 x 2^43: rounds a number near 1 to a multiple of 1/512
  rep64 mid_field = bits64(0x0000000000000fff);
  rep64 mid_bias = c(0x3cb0000000000000, 0x1p-52);
  rep64 low_field = bits64(0x0000000000ffffff);
  rep64 low_bias = c(0x3970000000000000, 0x1p-104);
  rep64 split = bits64(0xfffffffff8000000);
  rep64 two_pi_hi = c(0x401921fb54000000, 6.2831853032112122);  // 27 significant bits: exact times 26 bits
  rep64 two_pi_lo = c(0x3e310b4611a62633, 3.9683743187221617e-09);
  rep64 two_pi = c(0x401921fb54442d18, 6.2831853071795862);
};
static_assert(low_zero_bits(reduction_f64_constants{}.two_pi_hi) >= 26);

// 2^64 high + low
struct bits128 {
  i64x2 high, low;
};

// Two 53-bit significands times two rows of 192 bits: bits 64 to 191 of the products, by long multiplication in 32-bit digits.
// The upper digit of m has 21 bits, so its products are carried through in a chain of their own (v) and added digit by digit.
VORX_INLINE bits128 times_row(i64x2 m, const char* row_a, const char* row_b, const reduction_f64_constants& k) {
  i64x2 a = as_i64(load_row(row_a)), b = as_i64(load_row(row_b));
  i64x2 w54 = lower_lanes(a, b), w32 = upper_lanes(a, b);  // the lower digit in the even lanes
  i64x2 w10 = as_int(load_halves(row_a + 16, row_b + 16));
  i64x2 w5 = shift_right_logical(w54, 32), w3 = shift_right_logical(w32, 32), w1 = shift_right_logical(w10, 32);
  i64x2 m1 = shift_right_logical(m, 32);

  i64x2 v0 = multiply_even(m1, w10);
  i64x2 v1 = multiply_even(m1, w1) + shift_right_logical(v0, 32);
  i64x2 v2 = multiply_even(m1, w32) + shift_right_logical(v1, 32);
  i64x2 v3 = multiply_even(m1, w3) + shift_right_logical(v2, 32);
  i64x2 v4 = multiply_even(m1, w54) + shift_right_logical(v3, 32);

  // Never more than 2^64 - 1: (2^32 - 1)^2 and two digits.
  i64x2 t0 = multiply_even(m, w10);
  i64x2 t1 = multiply_even(m, w1) + shift_right_logical(t0, 32) + (v0 & k.low_word);
  i64x2 t2 = multiply_even(m, w32) + shift_right_logical(t1, 32) + (v1 & k.low_word);
  i64x2 t3 = multiply_even(m, w3) + shift_right_logical(t2, 32) + (v2 & k.low_word);
  i64x2 t4 = multiply_even(m, w54) + shift_right_logical(t3, 32) + (v3 & k.low_word);
  i64x2 t5 = multiply_even(m, w5) + shift_right_logical(t4, 32) + v4;
  return {(t5 << 32) | (t4 & k.low_word), (t3 << 32) | (t2 & k.low_word)};
}

VORX_INLINE reduced_f64 reduce(f64x2 x, const reduction_f64_constants& k) {
  // Bits 2^-1 to 2^-128 of the fraction of |x| / (2 pi), in two words.
  i32x4 exponent = shift_right_logical(words(x), 17) & k.exponent_x8;
  i64x2 m = (as_int(x) & k.significand) | k.hidden_bit;
  auto table = reinterpret_cast<const char*>(revolution_f64);
  auto [high, low] = times_row(m, table + 3 * extract<1>(exponent), table + 3 * extract<3>(exponent), k);

  // As for float: three parts of 52, 52 and 24 bits, multiples of 1/512.
  i64x2 sign = as_int(x) & k.sign;
  i64x2 mid_bias = sign | k.mid_bias, low_bias = sign | k.low_bias;
  f64x2 f = as_float(sign | k.one | shift_right_logical(high, 12));
  f64x2 g = f + k.shifter;
  f64x2 d = f - (g - k.shifter);
  f64x2 mid = as_float(mid_bias | ((high & k.mid_field) << 40) | shift_right_logical(low, 24)) - as_float(mid_bias);
  f64x2 lo = as_float(low_bias | ((low & k.low_field) << 28)) - as_float(low_bias) + (x - x);

  f64x2 s = d + mid;
  f64x2 sh = s & k.split;
  f64x2 sl = s - sh;
  f64x2 tail = (d - s) + mid + lo;
  f64x2 a = sh * k.two_pi_hi;
  f64x2 b = sl * k.two_pi_hi + sh * k.two_pi_lo + (tail * k.two_pi + sl * k.two_pi_lo);
  f64x2 r = a + b;
  return {as_int(g), r, (a - r) + b};
}

// The lanes of a lane test as 32-bit words; in double the high words count.
VORX_INLINE i32x4 as_words(i32x4 a) { return a; }
VORX_INLINE i32x4 as_words(i64x2 a) { return as_i32(a); }

// Adds to a kernel the choice of the large path: above a limit, strictly. A NaN is not large.
template <class Kernel>
struct with_large_path : Kernel {
  using V = typename Kernel::type::vector;
  static constexpr bool whole_vector = true;
  static i32x4 large(V x, const typename Kernel::constants& k) { return as_words(V(k.limit) < (x & k.magnitude)); }
};

// Adds the rare cases: infinities, whose result is NaN with the invalid flag, and NaN. Any other argument is left alone. The
// routine takes the argument and as many results as there are.
template <class Kernel>
struct with_rare_cases : Kernel {
  using V = typename Kernel::type::vector;
  using T = typename Kernel::type::scalar;

  static i32x4 special(V x, const typename Kernel::constants& k) { return as_words(as_int(x & k.magnitude)) > k.largest_finite; }

  static int rare(const T* x, std::same_as<T*> auto... results) {
    auto bits = bits_of(*x);
    if (!is_not_finite(bits)) return ordinary;
    constexpr uint64_t fraction = sizeof(T) == 4 ? 0x007fffff : 0x000fffffffffffff;
    bool infinite = (bits & fraction) == 0;
    T nan = infinite ? opaque(*x) * T(0) : opaque(*x) * *x;
    ((*results = nan), ...);
    return infinite ? domain_error : ordinary;
  }
};

}  // namespace vorx

// The double kernels of atan2 and atan2pi, and the rare cases of both types: zeros, infinities, NaN, and operands out of the
// range of floats or too far apart. The scheme is in arctangent.h; here the quotient t has a tail, for where x > 0 and c = 0 it
// is the whole result, and a negative x takes the second half of the table, which has pi - atan c.
#pragma once

#include "trig/arctangent.h"
#include "trig/over_pi.h"

namespace vorx {

// Whether an operand, or its high word, is outside the range of its kernel: one signed comparison of biased words.
VORX_INLINE i32x4 out_of_range(f32x4 a, const auto& k) { return as_int(a & k.magnitude) - k.smallest > k.range; }
VORX_INLINE i32x4 out_of_range(f64x2 a, const auto& k) { return (words(a) & k.high_magnitude) - k.smallest > k.range; }

// What picks the row for the point (x, y): the quotient of both operands as floats, from their high words, with the exponent of
// the larger one taken from both.
struct arctangent2_index_f64 {
  rep32 high_magnitude = bits32(0x7fffffff);
  rep32 exponent = bits32(0x7ff00000);
  rep32 bias = bits32(0x04000000);            // of the larger number: 2^-63 as a float
  rep32 smallest_float = bits32(0x00100000);  // stands for whatever is much smaller than the other operand
  rep32 first = bits32(0x3d780000);
  rep32 last = bits32(0x41800000);
  rep32 half_step = bits32(0x00040000);
  rep32 second_half = bits32(130 * sizeof(arctangent_row));

  VORX_INLINE arctangent_rows rows_of(f64x2 y, f64x2 x, const arctangent_row* table) const {
    i32x4 high = join_high_words(as_int(y), as_int(x)), size = high & high_magnitude;
    i32x4 larger = max(size, swap_halves(size));
    i32x4 shifted = max(size - ((larger & exponent) - bias), smallest_float);
    f32x4 numbers = as_float(shifted << 3);
    i32x4 quotient = as_int(numbers / as_float(upper_half(as_int(numbers))));
    i32x4 offset = shift_right_logical(max(min(quotient, last), first) + half_step, 19) << 5;
    offset = offset + ((upper_half(high) >> 31) & second_half);
    return gather_rows<0, 1>(table, offset, 0x7af << 5);
  }
};

template <class Unit>
struct arctangent2_f64_constants : Unit, arctangent2_index_f64 {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  rep64 upper_half = bits64(upper_half_f64);
  rep64 one = c(0x3ff0000000000000, 1.0);
  // Operands from 2^-450 to below 2^450, whose quotient has a normal tail: one signed comparison of biased high words.
  rep32 smallest = bits32(0xa3d00000);
  rep32 range = bits32(0xb83fffff);
};

template <class Unit>
struct arctangent2_f64_path : kernel<f64, arctangent2_f64_constants<Unit>> {
  using typename kernel<f64, arctangent2_f64_constants<Unit>>::constants;

  static f64x2 path(f64x2 y, f64x2 x, const constants& k) {
    auto [hi, lo, c] = k.rows_of(y, x, Unit::arctangents);
    f64x2 ay = y & k.magnitude, ax = x & k.magnitude;
    auto [xh, xl] = cut(ax, k.upper_half);
    f64x2 numerator = (ay - c * xh) - c * xl;  // exact products, one rounding
    f64x2 denominator = ax + c * ay;
    numerator = numerator ^ (x & k.sign);

    f64x2 inverse = as_float(k.one) / denominator;
    f64x2 t = numerator * inverse;
    f64x2 head = t & k.upper_half;
    auto [dh, dl] = cut(denominator, k.upper_half);
    f64x2 tail = ((numerator - head * dh) - head * dl) * inverse;
    f64x2 angle = k.sum(hi, head, tail, arctangent_rest(t, k) + lo);
    return angle ^ (y & k.sign);
  }
  static i32x4 special(f64x2 y, f64x2 x, const constants& k) { return out_of_range(y, k) | out_of_range(x, k); }
};

// ---- rare cases ----

// y / x for positive finite numbers in the unit of the result; radians are the quotient itself, also where it is subnormal.
VORX_INLINE double tiny_angle(double y, double x, const angle_in_radians_f64&) { return y / x; }
VORX_INLINE double tiny_angle(double y, double x, const angle_in_half_revolutions_f64&) {
  normalized a(y), b(x);
  double q = a.m / b.m;
  auto quotient = cut(q);
  auto [product_head, product_tail] = product(quotient, cut(b.m));
  double rest = ((a.m - product_head) - product_tail) / b.m;
  double angle = over_pi(quotient.head, quotient.tail + rest);
  return a.e - b.e < -1100 ? underflowed<double>() : scaled(angle, a.e - b.e);
}

// Any operands. Out of line, one copy for both types and all widths.
template <class Unit>
[[gnu::noinline]] void arctangent2_of(const double* y_lane, const double* x_lane, double* result) {
  double y = *y_lane, x = *x_lane;
  if (x != x || y != y) {
    *result = opaque(x) + y;
    return;
  }
  const double infinity = from_bits(uint64_t{0x7ff0000000000000});
  bool left = bits_of(x) >> 63;
  double ax = from_bits(bits_of(x) & ~(uint64_t{1} << 63)), ay = from_bits(bits_of(y) & ~(uint64_t{1} << 63));
  double angle;
  if (ay == 0 || (ax == infinity && ay != infinity)) {
    angle = left ? Unit::eighths[4] : 0;
  } else if (ax == 0 || ay == infinity) {
    angle = ax == infinity ? Unit::eighths[left ? 3 : 1] : Unit::eighths[2];
  } else {
    normalized a(ay), b(ax);
    int difference = a.e - b.e;
    if (difference > 64) {
      angle = Unit::eighths[2];
    } else if (difference < -64) {
      angle = left ? Unit::eighths[4] : tiny_angle(ay, ax, constant_pool<Unit>);
    } else {
      const auto& k = *hide(&constant_pool<arctangent2_f64_constants<Unit>>);
      f64x2 row = arctangent2_f64_path<Unit>::path(all(a.m * power_of_two<double>(difference)), all(left ? -b.m : b.m), k);
      angle = _mm_cvtsd_f64(row.v);
    }
  }
  *result = from_bits(bits_of(angle) | (bits_of(y) & (uint64_t{1} << 63)));
}

template <class Unit, class T>
VORX_INLINE int rare_arctangent2(const T* y, const T* x, T* result) {
  double wide_y = *y, wide_x = *x, angle;
  arctangent2_of<Unit>(&wide_y, &wide_x, &angle);
  *result = static_cast<T>(angle);
  bool is_tiny = bits_of(angle) << 1 < bits_of(static_cast<double>(std::numeric_limits<T>::min())) << 1;
  return is_tiny && *y != 0 && !is_not_finite(bits_of(*x)) ? underflow : ordinary;
}

}  // namespace vorx

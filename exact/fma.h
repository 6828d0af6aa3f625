// fma(x, y, z) = x y + z with one rounding, without a fused instruction: in scalar code, lane by lane.
//
// Both types round the sum to odd before the last rounding: truncate, and set the last bit if anything was lost. That bit then
// stands for all that follows it, so that the last rounding, to at least two bits less, sees on which side of a tie the exact sum
// lies (S. Boldo, G. Melquiond, "Emulation of FMA and correctly rounded sums: proved algorithms using rounding to odd", 2008).
// Round to nearest is assumed.
#pragma once

#include "exact/fields.h"
#include "exact/mad.h"
#include "frame/head_and_tail.h"

namespace vorx {

// The exact sum of both parts, rounded to odd: where there is a tail, one unit towards zero if it points there, and the last bit.
VORX_INLINE double round_to_odd(head_and_tail<double> sum) {
  f64x2 s = {_mm_set_sd(sum.head)}, tail = {_mm_set_sd(sum.tail)};
  i64x2 inexact = tail != f64x2{};
  i64x2 opposite = as_i64(duplicate_high_words(as_int(s ^ tail)) >> 31);
  i64x2 bits = (as_int(s) + (opposite & inexact)) | shift_right_logical(inexact, 63);
  return _mm_cvtsd_f64(as_float(bits).v);
}

// With an operand that is not finite: the first NaN, quiet; the addend where it alone is infinite.
template <class T>
VORX_INLINE T fma_of_non_finite(T x, T y, T z) {
  for (T a : {x, y, z})
    if (is_nan(bits_of(a))) return a + a;
  if (!is_not_finite(bits_of(x)) && !is_not_finite(bits_of(y))) return z;
  return x * y + z;
}

// The vector path is that of mad; no lane may keep its result.
template <class E>
struct scalar_fma : mad_kernel<E> {
  using V = typename E::vector;
  static constexpr double max_ulp = 0.5;
  static constexpr bool every_lane_special = true;
  static i32x4 special(V, V, V, const no_constants&) { return {_mm_set1_epi32(-1)}; }
};

// Float: the product is exact in double precision, whose exponents also hold every sum.
struct fma_f32 : scalar_fma<f32> {
  static int rare(const float* x, const float* y, const float* z, float* result) {
    double product = static_cast<double>(*x) * *y;
    head_and_tail<double> sum = two_sum<double>(product, *z);
    if (is_not_finite(bits_of(sum.head)))
      *result = fma_of_non_finite(*x, *y, *z);
    else
      *result = static_cast<float>(round_to_odd(sum));
    return ordinary;
  }
};

// Double: the product as a sum of two numbers, three error-free sums.
struct fma_f64 : scalar_fma<f64> {
  // x to 26 bits; what is left has 26 bits too.
  VORX_INLINE static double upper_part(double x) {
    i64x2 half_unit = {_mm_set_epi32(0, 0, 0, 0x04000000)}, upper_bits = {_mm_set_epi32(-1, -0x08000000, -1, -0x08000000)};
    return _mm_cvtsd_f64(as_float((as_int(f64x2{_mm_set_sd(x)}) + half_unit) & upper_bits).v);
  }

  // x y + z with a tail that is rounded to odd: head + tail rounds like the exact sum. Exact where no bit of x y is below 2^-1074
  // and nothing overflows.
  VORX_INLINE static head_and_tail<double> unrounded(double x, double y, double z) {
    double xh = upper_part(x), xl = x - xh;
    double yh = upper_part(y), yl = y - yh;
    double p = x * y;
    double e = ((xh * yh - p) + xh * yl + xl * yh) + xl * yl;  // x y = p + e (Dekker)
    head_and_tail<double> low = two_sum(z, e);
    head_and_tail<double> high = two_sum(p, low.head);
    return {high.head, round_to_odd(two_sum(high.tail, low.tail))};
  }

  static int rare(const double* x, const double* y, const double* z, double* result) {
    // With the biased exponents: x and y normal and below 2^1023, z below 2^1023, the last bit of x y at 2^-1074 or above, its
    // first below 2^1022.
    constexpr uint32_t largest = 1023 + 1022, lowest_sum = 2 * (1023 + 52) - 1074, highest_sum = 2 * (1023 - 1) + 1022;
    uint32_t ex = static_cast<uint32_t>(biased_exponent_of(bits_of(*x)));
    uint32_t ey = static_cast<uint32_t>(biased_exponent_of(bits_of(*y)));
    uint32_t ez = static_cast<uint32_t>(biased_exponent_of(bits_of(*z)));
    if (ex - 1 < largest && ey - 1 < largest && ez <= largest && ex + ey - lowest_sum <= highest_sum - lowest_sum) [[likely]] {
      head_and_tail<double> sum = unrounded(*x, *y, *z);
      *result = sum.head + sum.tail;
      return ordinary;
    }
    return scaled(x, y, z, result);
  }

  // Takes the exponent off a finite number that is not zero: what stays is in [1, 2).
  static int take_exponent(double& x) {
    int shift = 0;
    if (biased_exponent_of(bits_of(x)) == 0) x *= 0x1p54, shift = 54;
    int e = biased_exponent_of(bits_of(x)) - 1023;
    x = from_bits(with_exponent(bits_of(x), 1023));
    return e - shift;
  }

  // x 2^e in two steps: the first does not leave the range unless the result does, the second rounds at most once.
  static double scale(double x, int e) { return x * power_of_two<double>(e / 2) * power_of_two<double>(e - e / 2); }

  // Everything else. Finite numbers are brought near 1, and the sum back: where it becomes subnormal, it is rounded there, once.
  [[gnu::noinline]] static int scaled(const double* px, const double* py, const double* pz, double* result) {
    double x = *px, y = *py, z = *pz;
    if (is_not_finite(bits_of(x)) || is_not_finite(bits_of(y)) || is_not_finite(bits_of(z)))
      return *result = fma_of_non_finite(x, y, z), ordinary;
    if (is_zero(bits_of(x)) || is_zero(bits_of(y))) return *result = x * y + z, ordinary;
    if (is_zero(bits_of(z))) return *result = x * y, ordinary;  // not + z: a product that underflows to zero keeps its sign

    int e = take_exponent(x);
    e += take_exponent(y);
    int ez = take_exponent(z);
    // Of a z that is below the last bit of x y, or an x y that is below half a unit of z, only the sign matters.
    int d = ez - e;
    if (d > 60) d = 60;
    if (d < -120) d = -120;
    if (d == 60) e = ez - d;
    head_and_tail<double> sum = unrounded(x, y, z * power_of_two<double>(d));
    double s = sum.head + sum.tail;
    if (s == 0) return *result = s, ordinary;
    if (biased_exponent_of(bits_of(s)) - 1023 + e >= -1022) return *result = scale(s, e), ordinary;

    // A subnormal result: 2^-1074 becomes the last bit when 2^52 times as much is added; three sums as above, then taken off
    // again.
    if (e < -1200) e = -1200;  // nothing but the smallest subnormal or zero either way
    double shifter = power_of_two<double>(-1074 - e + 52);
    if (s < 0) shifter = -shifter;
    head_and_tail<double> shifted = two_sum(shifter, sum.head);
    double r = (shifted.head + round_to_odd(two_sum(shifted.tail, sum.tail))) - shifter;
    if (r != sum.head || sum.tail != 0) opaque(underflowed<double>());  // for the flag
    *result = from_bits(bits_of(scale(r, e)) | (bits_of(s) & sign_bit<uint64_t>));
    return ordinary;
  }
};

}  // namespace vorx

// hypot(x, y) = sqrt(x^2 + y^2). Float: the steps of sqrt on the sum. Double: the processor's square root, corrected by the exact
// residual of squares in halves. Sums of squares near both ends of the range are scaled in the scalar routines.
#pragma once

#include <limits>

#include "frame/head_and_tail.h"
#include "roots/sqrt.h"

namespace vorx {

// Of lanes with an infinity or a NaN: an infinity wins over a NaN.
template <class T>
VORX_INLINE bool hypot_is_special(T x, T y, T* result) {
  const T inf = std::numeric_limits<T>::infinity();
  if (x == inf || x == -inf || y == inf || y == -inf) return *result = inf, true;
  if (x != x || y != y) return *result = x + y, true;
  return false;
}

struct hypot_f32_constants {
  rep32 half = c(0x3f000000, 0.5f);
  // The sums from 9.3e-21 (0x1e300000) to 9.2e19 (0x60a00000), as bits: their differences wrap around to the lowest integers.
  rep32 smallest = bits32(0x1e300000 ^ 0x80000000);
  rep32 range = bits32(0x60a00000 - (0x1e300000 ^ 0x80000000));
};

// Accurate: 1.41 ULP on one processor, 1.48 with the least exact estimates. +inf where an argument is infinite, otherwise NaN for
// a NaN; hypot(+-0, +-0) = +0. No overflow or underflow but of the result.
template <class Estimate = hardware_reciprocal_sqrt>
struct hypot_f32_with : kernel<f32, hypot_f32_constants> {
  static constexpr double max_ulp = 1.5;

  static f32x4 path(f32x4 x, f32x4 y, const constants& k) {
    f32x4 s = x * x + y * y;
    f32x4 e = Estimate::estimate(s);
    f32x4 r = s * e, h = e * k.half;
    e = k.half - r * h;
    r = r + e * r, h = h + e * h;
    f32x4 d = r * r - s;
    return r - h * d;
  }
  static i32x4 special(f32x4 x, f32x4 y, const constants& k) { return (as_int(x * x + y * y) - k.smallest) > k.range; }

  static int rare(const float* x, const float* y, float* result) {
    if (hypot_is_special(*x, *y, result)) return ordinary;
    double a = *x, b = *y;  // the squares are exact
    *result = static_cast<float>(_mm_cvtsd_f64(_mm_sqrt_sd(_mm_setzero_pd(), _mm_set_sd(a * a + b * b))));
    return is_not_finite(bits_of(*result)) ? overflow : ordinary;
  }
};
using hypot_f32 = hypot_f32_with<>;

// Native: the sum of squares times the estimate for its root, where the sum is a normal number; NaN for zeros and for infinities.
template <class Estimate = hardware_reciprocal_sqrt>
struct hypot_f32_native_with : kernel<f32> {
  static constexpr double max_ulp = estimate_ulp + 3;  // of the sum and the product; 4157 on one processor
  static constexpr bool by_definition = true;
  static constexpr float domain[] = {0x1p-62f, 0x1p63f, -0x1p63f, 0x1p63f};
  static f32x4 path(f32x4 x, f32x4 y, const no_constants&) {
    f32x4 s = x * x + y * y;
    return s * Estimate::estimate(s);
  }
};
using hypot_f32_native = hypot_f32_native_with<>;

struct hypot_f64_constants {
  rep64 upper_half = bits64(upper_half_f64);
  // 1 / 2r to 2^-12.5: these bits less those of r make w / r with w in [0.694, 0.718], and w (c - w) is close to 1/2.
  rep64 reciprocal = bits64(0x7fd6395800000000);
  rep64 about_sqrt2 = c(0x3ff6a11b1d92b7fe, 1.4143325);
  // The sums from 2^-960 to 2^1021, by their high words.
  rep32 smallest = bits32(0x03f00000 ^ 0x80000000);
  rep32 range = bits32(0x7fbfffff - (0x03f00000 ^ 0x80000000));
};

struct hypot_f64_with_test_apart;

// Accurate: 0.501 ULP. Special results as above.
struct hypot_f64 : kernel<f64, hypot_f64_constants> {
  static constexpr double max_ulp = 0.501;
  template <int width>
  using at = std::conditional_t<(width > 2), hypot_f64_with_test_apart, hypot_f64>;

  // The root of the rounded sum, and what is missing: (x^2 + y^2 - r^2) / 2r. The squares of the heads are exact, and so is the
  // difference of the larger one and that of r, for both have 52 bits at most that count; all other terms are 2^-25 as large.
  struct root {
    f64x2 r, missing;
  };
  static head_and_tail<f64x2> square(f64x2 x, const hypot_f64_constants& k) {
    auto [h, l] = cut(x, k.upper_half);
    return {h * h, (x + h) * l};
  }
  static root root_of_sum(f64x2 x, f64x2 y, const hypot_f64_constants& k) {
    f64x2 r = sqrt(x * x + y * y);
    in_order(r, x);
    auto [x2, x_rest] = square(x, k);
    in_order(x_rest, y);
    auto [y2, y_rest] = square(y, behind(x_rest, k));
    f64x2 rest = x_rest + y_rest, high = max(x2, y2), low = min(x2, y2);
    in_order(rest, r);
    f64x2 rh = r & behind(rest, k).upper_half;
    f64x2 d = (high - rh * rh) + low;
    in_order(d, r);
    d = d + (rest - (r + rh) * (r - rh));
    in_order(d, r);
    f64x2 h = as_float(as_int(k.reciprocal) - as_int(r));
    h = h * (k.about_sqrt2 - h * r);
    return {r, d * h};
  }
  static f64x2 path(f64x2 x, f64x2 y, const constants& k) {
    auto [r, missing] = root_of_sum(x, y, k);
    return r + missing;
  }
  static i32x4 special(f64x2 x, f64x2 y, const constants& k) { return (words(x * x + y * y) - k.smallest) > k.range; }

  static int rare(const double* x, const double* y, double* result) {
    if (hypot_is_special(*x, *y, result)) return ordinary;
    const int n = __builtin_fabs(*x) < 1 && __builtin_fabs(*y) < 1 ? 600 : -600;
    f64x2 scale = all(power_of_two<double>(n));
    root s = root_of_sum(all(*x) * scale, all(*y) * scale, constant_pool<constants>);
    double r = _mm_cvtsd_f64(s.r.v), missing = _mm_cvtsd_f64(s.missing.v);

    if (r < power_of_two<double>(600 - 1022)) {  // subnormal, or a zero: rounded once, in the sum with 2^52 units
      const double shifter = power_of_two<double>(600 - 1022);
      head_and_tail<double> sum = two_sum(shifter, r);
      r = (sum.head + (sum.tail + missing)) - shifter, missing = 0;
    }
    *result = (r + missing) * power_of_two<double>(-n);
    return is_not_finite(bits_of(*result)) ? overflow : ordinary;
  }
};

// The same for more than one register, which has no room for the sums of the lane test: the path computes them again.
struct hypot_f64_with_test_apart : hypot_f64 {
  static i32x4 special(f64x2 x, f64x2 y, const constants& k) { return hypot_f64::special({opaque(x.v)}, {opaque(y.v)}, k); }
};

struct hypot_f64_native : kernel<f64> {
  static constexpr double max_ulp = 1.23;
  static constexpr double domain[] = {0x1p-510, 0x1p511, -0x1p511, 0x1p511};
  static f64x2 path(f64x2 x, f64x2 y, const no_constants&) { return sqrt(x * x + y * y); }
};

}  // namespace vorx

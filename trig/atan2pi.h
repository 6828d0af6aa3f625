// atan2pi(y, x) = atan2(y, x) / pi: the angle of the point (x, y) in half revolutions.
#pragma once

#include "trig/arctangent2.h"
#include "trig/arctangent_native.h"

namespace vorx {

struct atan2pi_f32_constants : arctangent_in_half_revolutions_f32 {
  // Operands from 2^-60 to below 2^60: one signed comparison of biased words.
  rep32 smallest = bits32(0xa1800000);
  rep32 range = bits32(0xbbffffff);
};

// Accurate: 1.54 ULP, where the result is a little less than a power of 2: a third of it is the rounding of the quotient. 1.25
// times as long as atan2; in double the arctangent alone would take 1.8 times. Special results: +-0, +-1 or multiples of 1/4 by
// the signs, for zeros and infinities; NaN for NaN.
struct atan2pi_f32 : kernel<f32, atan2pi_f32_constants> {
  static constexpr double max_ulp = 1.56;
  static constexpr float seams[] = {-1.0f, 1.0f};

  static f32x4 path(f32x4 y, f32x4 x, const constants& k) {
    f32x4 ax = x & k.magnitude, ay = y & k.magnitude;
    f32x4 swap = as_float(ax < ay);
    f32x4 u = min(ay, ax) / max(ay, ax);
    f32x4 r = k.add(swap & k.right_angle, u ^ (swap & k.sign), u * u);
    r = (r ^ (x & k.sign)) + (as_float(x < f32x4{}) & k.one);
    return r ^ (y & k.sign);
  }
  static i32x4 special(f32x4 y, f32x4 x, const constants& k) { return out_of_range(y, k) | out_of_range(x, k); }
  static int rare(const float* y, const float* x, float* result) {
    return rare_arctangent2<angle_in_half_revolutions_f64>(y, x, result);
  }
};

struct atan2pi_f64 : arctangent2_f64_path<angle_in_half_revolutions_f64> {
  static constexpr double max_ulp = 0.76;
  static constexpr double seams[] = {-0x1.f8p3, -0x1.f8p-5, 0x1.f8p-5, 0x1.f8p3};
  static int rare(const double* y, const double* x, double* result) {
    return rare_arctangent2<angle_in_half_revolutions_f64>(y, x, result);
  }
};

// Native: as atan2.
struct atan2pi_f32_native : native_arctangent2_f32<native_arctangent_in_half_revolutions_f32> {
  static constexpr double max_ulp = 3630;
  static constexpr float domain[] = {0x1p-126f, 0x1.fffffep127f};
};
struct atan2pi_f64_native : native_arctangent2_f64<native_arctangent_in_half_revolutions_f64> {
  static constexpr double max_ulp = 2.66e6;
  static constexpr double domain[] = {0x1p-900, 0x1p900};
};

}  // namespace vorx

// atan2(y, x), in radians: the angle of the point (x, y).
#pragma once

#include "trig/arctangent2.h"
#include "trig/arctangent_native.h"

namespace vorx {

struct atan2_f32_constants {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 sign = bits32(0x80000000);
  rep32 one = c(0x3f800000, 1.0f);
  rep32 half_pi = c(0x3fc90fdb, 1.57079637f);
  rep32 pi = c(0x40490fdb, 3.14159274f);
  // Operands from 2^-125 to below 2^123: one signed comparison of biased words.
  rep32 smallest = bits32(0x81000000);
  rep32 range = bits32(0xfbffffff);
  // atan u on |u| <= 1: relative error 2^-24.3 (tables/fits/polynomials.sollya)
  rep32 a8 = c(0x3b322cc0, 0.00271873176f);
  rep32 a7 = c(0xbc7f2631, -0.0155730704f);
  rep32 a6 = c(0x3d2bc384, 0.0419345051f);
  rep32 a5 = c(0xbd987629, -0.0744441226f);
  rep32 a4 = c(0x3dd96474, 0.10614863f);
  rep32 a3 = c(0xbe1161f8, -0.141975284f);
  rep32 a2 = c(0x3e4cb79f, 0.199919209f);
  rep32 a1 = c(0xbeaaaa49, -0.333330423f);
};

// Accurate: 3.45 ULP, where y is a little less than x: most of it is the rounding of the quotient and of Q. Special results: +-0,
// +-pi or multiples of pi/4 by the signs, for zeros and infinities; NaN for NaN. A quotient that underflows is rounded once.
struct atan2_f32 : kernel<f32, atan2_f32_constants> {
  static constexpr double max_ulp = 3.5;
  static constexpr float seams[] = {-1.0f, 1.0f};

  static f32x4 path(f32x4 y, f32x4 x, const constants& k) {
    f32x4 ax = x & k.magnitude, ay = y & k.magnitude;
    i32x4 swap = ax < ay;
    f32x4 u = min(ay, ax) / max(ay, ax);
    f32x4 v = u ^ (as_float(swap) & k.sign);
    f32x4 r = v * arctangent_factor(u * u, k);
    r = r + (as_float(as_int(v) >> 31) & k.half_pi);  // where swapped, v is negative: its sign lives longer than the mask
    r = (r ^ (x & k.sign)) + (as_float(x < f32x4{}) & k.pi);
    return r ^ (y & k.sign);
  }
  static i32x4 special(f32x4 y, f32x4 x, const constants& k) { return out_of_range(y, k) | out_of_range(x, k); }
  static int rare(const float* y, const float* x, float* result) { return rare_arctangent2<angle_in_radians_f64>(y, x, result); }
};

// Accurate: 0.54 ULP. Special results as for float.
struct atan2_f64 : arctangent2_f64_path<angle_in_radians_f64> {
  static constexpr double max_ulp = 0.55;
  static constexpr double seams[] = {-0x1.f8p3, -0x1.f8p-5, 0x1.f8p-5, 0x1.f8p3};
  static int rare(const double* y, const double* x, double* result) {
    return rare_arctangent2<angle_in_radians_f64>(y, x, result);
  }
};

// Native: relative error 2^-12 (float), 2^-31 (double) for y from 2^-900 to 2^900. NaN for two zeros and for two infinities, in
// double for any infinity; a NaN in x is lost in float.
struct atan2_f32_native : native_arctangent2_f32<native_arctangent_in_radians_f32> {
  static constexpr double max_ulp = 3620;
  static constexpr float domain[] = {0x1p-126f, 0x1.fffffep127f};
};
struct atan2_f64_native : native_arctangent2_f64<native_arctangent_in_radians_f64> {
  static constexpr double max_ulp = 2.66e6;
  static constexpr double domain[] = {0x1p-900, 0x1p900};
};

}  // namespace vorx

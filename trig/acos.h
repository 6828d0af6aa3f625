// acos(x), in radians: pi/2 - asin x below one half, above that 2 asin(s) or pi - 2 asin(s) with s = sqrt((1 - |x|)/2).
#pragma once

#include "trig/arcsine.h"
#include "trig/arcsine_native.h"

namespace vorx {

struct acos_f32_constants : arcsine_f32_constants {
  rep32 sign = bits32(0x80000000);
  rep32 half = c(0x3f000000, 0.5f);
  rep32 minus_one = c(0xbf800000, -1.0f);
  rep32 half_pi = c(0x3fc90fdb, 1.57079637f);
  rep32 pi = c(0x40490fdb, 3.14159274f);
};

// Accurate: 1.24 ULP. acos(1) = +0, NaN beyond 1 (invalid) and for NaN.
struct acos_f32 : kernel<f32, acos_f32_constants> {
  static constexpr double max_ulp = 1.24;
  static constexpr float seams[] = {-1.0f, -0.5f, 0.5f, 1.0f};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 n = x | k.sign;  // -|x|
    f32x4 w = n * k.half + k.half;
    f32x4 z = min(x * x, w);
    f32x4 root = sqrt(w);
    f32x4 q = root + root;
    i32x4 small = z < w;  // |x| < 1/2; false for a NaN
    f32x4 v = select(small, n, q) ^ (x & k.sign);
    f32x4 above = as_float(x < z) & k.pi;
    return k.arcsine(v, z) + select(small, k.half_pi, above);
  }
  static i32x4 special(f32x4 x, const constants& k) { return (x | k.sign) <= k.minus_one; }
  static int rare(const float* x, float* result) { return inverse_at_border(*x, 0.0f, scalar(0x40490fdb, 3.14159274f), result); }
};

// Accurate: 0.58 ULP. Special results as for float.
struct acos_f64 : arccosine_f64_path<arcsine_in_radians_f64> {
  static constexpr double max_ulp = 0.58;
  static constexpr double seams[] = {-1.0, -0.5, 0.5, 1.0};

  static int rare(const double* x, double* result) {
    return inverse_at_border(*x, 0.0, scalar(0x400921fb54442d18, 3.1415926535897931), result);
  }
};

// Native: NaN beyond 1 and for NaN.
struct acos_f32_native : native_arccosine<f32, native_arcsine_in_radians_f32> {
  static constexpr double max_ulp = 530;
};
struct acos_f64_native : native_arccosine<f64, native_arcsine_in_radians_f64> {
  static constexpr double max_ulp = 2.34e6;
};

}  // namespace vorx

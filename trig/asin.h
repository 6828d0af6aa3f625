// asin(x), in radians.
#pragma once

#include "trig/arcsine.h"
#include "trig/arcsine_native.h"

namespace vorx {

struct asin_f32_constants : arcsine_f32_constants {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 sign = bits32(0x80000000);
  rep32 half = c(0x3f000000, 0.5f);
  rep32 one = c(0x3f800000, 1.0f);
  rep32 half_pi = c(0x3fc90fdb, 1.57079637f);
};

// Accurate: 2.27 ULP. asin(+-0) = +-0, NaN beyond 1 (invalid) and for NaN.
struct asin_f32 : kernel<f32, asin_f32_constants> {
  static constexpr double max_ulp = 2.27;
  static constexpr float seams[] = {-1.0f, -0.5f, 0.5f, 1.0f};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 a = x & k.magnitude;
    f32x4 w = k.half - a * k.half;
    f32x4 z = min(a * a, w);
    f32x4 root = sqrt(w);
    f32x4 q = root + root;
    i32x4 small = a < k.half;  // false for a NaN
    f32x4 v = select(small, a, q ^ k.sign);
    f32x4 y = k.arcsine(v, z) + clear(as_float(small), k.half_pi);
    return y ^ (x & k.sign);
  }
  static i32x4 special(f32x4 x, const constants& k) { return as_float(k.one) <= (x & k.magnitude); }
  static int rare(const float* x, float* result) {
    const float half_pi = scalar(0x3fc90fdb, 1.57079637f);
    return inverse_at_border(*x, half_pi, -half_pi, result);
  }
};

// Accurate: 0.58 ULP. Special results as for float.
struct asin_f64 : arcsine_f64_path<arcsine_in_radians_f64> {
  static constexpr double max_ulp = 0.585;
  static constexpr double seams[] = {-1.0, -0.5, 0.5, 1.0};

  static i32x4 special(f64x2 x, const constants& k) { return as_i32(as_float(k.one) <= (x & k.magnitude)); }
  static int rare(const double* x, double* result) {
    const double half_pi = scalar(0x3ff921fb54442d18, 1.5707963267948966);
    return inverse_at_border(*x, half_pi, -half_pi, result);
  }
};

// Native: NaN beyond 1 and for NaN.
struct asin_f32_native : native_arcsine<f32, native_arcsine_in_radians_f32> {
  static constexpr double max_ulp = 555;
};
struct asin_f64_native : native_arcsine<f64, native_arcsine_in_radians_f64> {
  static constexpr double max_ulp = 2.45e6;
};

}  // namespace vorx

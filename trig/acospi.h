// acospi(x) = acos(x) / pi.
#pragma once

#include "trig/arcsine.h"
#include "trig/arcsine_native.h"

namespace vorx {

struct acospi_f32_constants : arcsine_in_half_revolutions_f32 {
  rep32 half = c(0x3f000000, 0.5f);
  rep32 minus_one = c(0xbf800000, -1.0f);
};

// Accurate: 1.00 ULP where |x| < 2^-11, 0.68 elsewhere. 1.5 times as long as acos. Special results: acospi(1) = +0, acospi(0) =
// 1/2, acospi(-1) = 1, NaN beyond 1 (invalid) and for NaN.
struct acospi_f32 : kernel<f32, acospi_f32_constants> {
  static constexpr double max_ulp = 1.005;
  static constexpr float seams[] = {-1.0f, -0.5f, 0.5f, 1.0f};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 n = x | k.sign, twice = n + n;
    f32x4 w = twice + k.two;
    f32x4 t = k.behind_leading(min(twice * twice, w));
    in_order(t, twice);
    i32x4 large = twice <= as_float(k.minus_one);
    f32x4 v = select(large, sqrt(w), n) ^ (x & k.sign);
    f32x4 above = as_float(as_int(x) >> 31) & k.one;
    return k.add(select(large, above, f32x4(k.half)), v, large, w, t);
  }
  static i32x4 special(f32x4 x, const constants& k) { return (x | k.sign) <= as_float(k.minus_one); }
  static int rare(const float* x, float* result) { return inverse_at_border(*x, 0.0f, 1.0f, result); }
};

// Accurate: 0.54 ULP. Special results as for float.
struct acospi_f64 : arccosine_f64_path<arcsine_in_half_revolutions_f64> {
  static constexpr double max_ulp = 0.55;
  static constexpr double seams[] = {-1.0, -0.5, 0.5, 1.0};
  static int rare(const double* x, double* result) { return inverse_at_border(*x, 0.0, 1.0, result); }
};

// Native: NaN beyond 1 and for NaN.
struct acospi_f32_native : native_arccosine<f32, native_arcsine_in_half_revolutions_f32> {
  static constexpr double max_ulp = 530;
};
struct acospi_f64_native : native_arccosine<f64, native_arcsine_in_half_revolutions_f64> {
  static constexpr double max_ulp = 2.34e6;
};

}  // namespace vorx

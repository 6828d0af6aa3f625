// asinpi(x) = asin(x) / pi.
#pragma once

#include "trig/arcsine.h"
#include "trig/arcsine_native.h"
#include "trig/over_pi.h"

namespace vorx {

template <class T>
VORX_INLINE int rare_asinpi(const T* x, T* result) {
  if (*x > -1 && *x < 1) return small_over_pi(*x, result);
  return inverse_at_border(*x, T(0.5), T(-0.5), result);
}

struct asinpi_f32_constants : arcsine_in_half_revolutions_f32 {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 minus_half = c(0xbf000000, -0.5f);
  // Magnitudes from 2^-60 to below 1, the products with which are normal: one signed comparison of biased words.
  rep32 smallest = bits32(0xa1800000);
  rep32 range = bits32(0x9dffffff);
};

// Accurate: 0.85 ULP. 1.5 times as long as asin; through double, with 0.51 ULP, it would be 2.3 times. Special results:
// asinpi(+-0) = +-0, NaN beyond 1 (invalid) and for NaN; asinpi(+-1) = +-1/2.
struct asinpi_f32 : kernel<f32, asinpi_f32_constants> {
  static constexpr double max_ulp = 0.85;
  static constexpr float seams[] = {-1.0f, -0.5f, -0x1p-60f, 0x1p-60f, 0.5f, 1.0f};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 a = x & k.magnitude, twice = a + a;
    f32x4 w = k.two - twice;
    f32x4 t = k.behind_leading(min(twice * twice, w));
    in_order(t, twice);
    i32x4 large = as_float(k.one) <= twice;
    f32x4 v = select(large, sqrt(w), a);
    f32x4 y = k.add(as_float(large) & k.minus_half, v, large, w, t);
    return y ^ ((x ^ as_float(large)) & k.sign);
  }
  static i32x4 special(f32x4 x, const constants& k) { return as_int(x & k.magnitude) - k.smallest > k.range; }
  static int rare(const float* x, float* result) { return rare_asinpi(x, result); }
};

struct asinpi_f64_constants : arcsine_f64_constants<arcsine_in_half_revolutions_f64> {
  // High words, from 2^-900, the same way.
  rep32 high_magnitude = bits32(0x7fffffff);
  rep32 smallest = bits32(0x87b00000);
  rep32 range = bits32(0xb83fffff);
};

// Accurate: 0.75 ULP, in the subnormal numbers, which are rounded twice; 0.57 elsewhere. Special results as for float.
struct asinpi_f64 : arcsine_f64_path<arcsine_in_half_revolutions_f64> {
  using constants = asinpi_f64_constants;
  static constexpr double max_ulp = 0.76;
  static constexpr double seams[] = {-1.0, -0.5, -0x1p-900, 0x1p-900, 0.5, 1.0};

  static i32x4 special(f64x2 x, const constants& k) { return (words(x) & k.high_magnitude) - k.smallest > k.range; }
  static int rare(const double* x, double* result) { return rare_asinpi(x, result); }
};

// Native: NaN beyond 1 and for NaN.
struct asinpi_f32_native : native_arcsine<f32, native_arcsine_in_half_revolutions_f32> {
  static constexpr double max_ulp = 705;
};
struct asinpi_f64_native : native_arcsine<f64, native_arcsine_in_half_revolutions_f64> {
  static constexpr double max_ulp = 3.1e6;
};

}  // namespace vorx

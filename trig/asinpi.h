// asinpi(x) = asin(x) / pi.
#pragma once

#include "trig/arcsine.h"
#include "trig/arcsine_native.h"
#include "trig/over_pi.h"

namespace vorx {

template <class E>
struct asinpi_constants
    : arcsine_constants<E, std::conditional_t<E::lanes == 4, arcsine_in_half_revolutions_f32, arcsine_in_half_revolutions_f64>> {
  // Magnitudes from 2^-60 (float), 2^-900 (double), whose products with the tail of 1/pi are normal, to below 1: one signed
  // comparison of biased words.
  rep32 high_magnitude = bits32(0x7fffffff);
  rep32 smallest = bits32(E::lanes == 4 ? 0xa1800000 : 0x87b00000);
  rep32 range = bits32(E::lanes == 4 ? 0x9dffffff : 0xb83fffff);
};

// Accurate: 0.60 ULP (float), 0.75 ULP (double, in the subnormal numbers, which are rounded twice; 0.57 elsewhere).
// Special results: asinpi(+-0) = +-0, NaN beyond 1 (invalid) and for NaN; asinpi(+-1) = +-1/2.
template <class E>
struct asinpi_kernel
    : arcsine_path<E, std::conditional_t<E::lanes == 4, arcsine_in_half_revolutions_f32, arcsine_in_half_revolutions_f64>> {
  using constants = asinpi_constants<E>;
  using T = typename E::scalar;

  static i32x4 special(typename E::vector x, const constants& k) {
    i32x4 words = {std::bit_cast<__m128i>(x)};
    return (words & k.high_magnitude) - k.smallest > k.range;
  }
  static int rare(const T* x, T* result) {
    if (*x > -1 && *x < 1) return small_over_pi(*x, result);
    return inverse_at_border(*x, T(0.5), T(-0.5), result);
  }
};
struct asinpi_f32 : asinpi_kernel<f32> {
  static constexpr double max_ulp = 0.605;
  static constexpr float seams[] = {-1.0f, -0.5f, -0x1p-60f, 0x1p-60f, 0.5f, 1.0f};
};
struct asinpi_f64 : asinpi_kernel<f64> {
  static constexpr double max_ulp = 0.76;
  static constexpr double seams[] = {-1.0, -0.5, -0x1p-900, 0x1p-900, 0.5, 1.0};
};

// Native: NaN beyond 1 and for NaN.
struct asinpi_f32_native : native_arcsine<f32, native_arcsine_in_half_revolutions_f32> {
  static constexpr double max_ulp = 705;
};
struct asinpi_f64_native : native_arcsine<f64, native_arcsine_in_half_revolutions_f64> {
  static constexpr double max_ulp = 3.1e6;
};

}  // namespace vorx

// acospi(x) = acos(x) / pi.
#pragma once

#include "trig/arcsine.h"
#include "trig/arcsine_native.h"

namespace vorx {

// Accurate: 0.55 ULP (float), 0.54 ULP (double). Special results: acospi(1) = +0, acospi(0) = 1/2, acospi(-1) = 1, NaN beyond 1
// (invalid) and for NaN.
struct acospi_f32 : arccosine_path<f32, arcsine_in_half_revolutions_f32> {
  static constexpr double max_ulp = 0.56;
  static constexpr float seams[] = {-1.0f, -0.5f, 0.5f, 1.0f};
  static int rare(const float* x, float* result) { return inverse_at_border(*x, 0.0f, 1.0f, result); }
};
struct acospi_f64 : arccosine_path<f64, arcsine_in_half_revolutions_f64> {
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

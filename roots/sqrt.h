// sqrt(x). Float: the processor's estimate of 1 / sqrt(x), one step for root and half its reciprocal together, and a correction
// by the residual. Double: the processor's square root.
#pragma once

#include "frame/rare.h"
#include "roots/estimates.h"

namespace vorx {

struct sqrt_f32_constants : positive_f32_constants {
  rep32 half = c(0x3f000000, 0.5f);
};

// Accurate: 0.75 ULP on one processor, 0.85 with the least exact estimates. sqrt(+-0) = +-0, sqrt(+inf) = +inf, NaN below 0 and
// for NaN.
template <class Estimate = hardware_reciprocal_sqrt>
struct sqrt_f32_with : kernel<f32, sqrt_f32_constants> {
  static constexpr double max_ulp = 0.86;
  static constexpr float seams[] = {0x1p-126f};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 y = Estimate::estimate(x);
    f32x4 s = x * y, h = y * k.half;
    f32x4 e = k.half - s * h;
    s = s + e * s, h = h + e * h;  // sqrt(x) and 1 / (2 sqrt(x)) with twice the bits
    f32x4 d = x - s * s;
    return s + h * d;
  }
  static i32x4 special(f32x4 x, const constants& k) { return not_positive(x, k); }

  static int rare(const float* x, float* result) {
    if (*x == 0) return *result = *x, ordinary;
    if (*x < 0) return *result = invalid<float>(), domain_error;
    if (is_not_finite(bits_of(*x))) return *result = *x + *x, ordinary;
    *result = _mm_cvtss_f32(_mm_sqrt_ss(_mm_set_ss(*x)));  // subnormal
    return ordinary;
  }
};
using sqrt_f32 = sqrt_f32_with<>;

// Native: x times the estimate, with the special results of the accurate kernel.
template <class Estimate = hardware_reciprocal_sqrt>
struct sqrt_f32_native_with : sqrt_f32_with<Estimate> {
  static constexpr double max_ulp = estimate_ulp + 2;  // of the product; 4157 on one processor
  static constexpr bool by_definition = true;
  static f32x4 path(f32x4 x, const sqrt_f32_constants&) { return x * Estimate::estimate(x); }
};
using sqrt_f32_native = sqrt_f32_native_with<>;

// Correctly rounded, accurate and native: the instruction has all special results, so there is no lane test.
struct sqrt_f64 : kernel<f64> {
  static constexpr double max_ulp = 0.5;
  static f64x2 path(f64x2 x, const no_constants&) { return sqrt(x); }
};
using sqrt_f64_native = sqrt_f64;

}  // namespace vorx

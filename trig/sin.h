// sin(x), x in radians. With n = round(|x| / pi) and r = |x| - n pi, |r| <= pi/2: sin |x| = (-1)^n sin r.
#pragma once

#include "trig/sine.h"

namespace vorx {

template <class E, class C>
struct sin_kernel : kernel<E, C> {
  using V = typename E::vector;

  static V path(V x, const C& k) {
    V y = x & k.magnitude;
    V t = y * k.inv_pi + k.shifter;
    V n = t - k.shifter;
    V r = k.last_parts(k.first_parts(y, n), n);
    V sine = k.sine(r ^ parity_sign(t), r * r);
    return sine ^ (x & k.sign);  // last, so that the sign of a zero stays
  }
};

// Accurate: 2.48 ULP, 0.51 ULP in vectors with a lane above 10000. Special results: NaN for an infinity (invalid) and for NaN;
// sin(-0) = -0.
struct sin_f32 : with_rare_cases<with_large_path<sin_kernel<f32, sine_f32_constants>>> {
  static constexpr double max_ulp = 2.48;
  static constexpr float seams[] = {-10000.0f, -0x1p-20f, 0x1p-20f, 10000.0f};
  static f32x4 large_path(f32x4 x) { return {sin_large<f32x4>(x.v)}; }
};

// Native: 1.4e-4 relative; without special results.
struct sin_f32_native : with_large_path<sin_kernel<f32, sine_f32_native_constants>> {
  static constexpr double max_ulp = 2330;
  static f32x4 large_path(f32x4 x) { return {sin_large<f32x4>(x.v)}; }
};

struct sin_f64_constants : sine_f64_constants {
  rep64 limit = c(0x4170000000000000, 16777216.0);
};

// Accurate: 3.86 ULP, 0.51 ULP in vectors with a lane above 2^24. Special results as for float.
struct sin_f64 : with_rare_cases<with_large_path<sin_kernel<f64, sin_f64_constants>>> {
  static constexpr double max_ulp = 3.86;
  static constexpr double seams[] = {-16777216.0, -0x1p-27, 0x1p-27, 16777216.0};
  static f64x2 large_path(f64x2 x) { return {sin_large<f64x2>(x.v)}; }
};

// Native: 6e-9 relative; three parts of pi for every argument.
struct sin_f64_native : sin_kernel<f64, sine_f64_native_constants> {
  static constexpr double max_ulp = 5.46e7;
  static constexpr double domain[] = {-10000.0, 10000.0};  // where it holds next to multiples of pi, too
};

}  // namespace vorx

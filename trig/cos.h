// cos(x), x in radians. With n = round((|x| + pi/2) / pi) and r = |x| - (n - 1/2) pi, |r| <= pi/2: cos x = (-1)^n sin r.
#pragma once

#include "trig/sine.h"

namespace vorx {

template <class E, class C>
struct cos_kernel : kernel<E, C> {
  using V = typename E::vector;

  static V path(V x, const C& k) {
    V y = x & k.magnitude;
    V t = (y + k.half_pi) * k.inv_pi + k.shifter;
    V m = t - k.shifter - k.half;
    V r = k.last_parts(k.first_parts(y, m), m);
    return k.sine(r ^ cosine_sign(t, y, k), r * r);
  }
};

// Accurate: 2.39 ULP, 0.51 ULP in vectors with a lane above 10000. Special results: NaN for an infinity (invalid) and for NaN;
// cos(+-0) = 1.
struct cos_f32 : with_rare_cases<with_large_path<cos_kernel<f32, sine_f32_constants>>> {
  static constexpr double max_ulp = 2.39;
  static constexpr float seams[] = {-10000.0f, 0.0f, 10000.0f};
  static f32x4 large_path(f32x4 x) { return {cos_large<f32x4>(x.v)}; }
};

// Native: 1.4e-4 relative; without special results, cos(0) = 1.000136.
struct cos_f32_native : with_large_path<cos_kernel<f32, sine_f32_native_constants>> {
  static constexpr double max_ulp = 2360;
  static f32x4 large_path(f32x4 x) { return {cos_large<f32x4>(x.v)}; }
};

// Accurate: 3.84 ULP, 0.51 ULP in vectors with a lane above 2^23. Special results as for float.
struct cos_f64 : with_rare_cases<with_large_path<cos_kernel<f64, sine_f64_constants>>> {
  static constexpr double max_ulp = 3.84;
  static constexpr double seams[] = {-8388608.0, 0.0, 8388608.0};
  static f64x2 large_path(f64x2 x) { return {cos_large<f64x2>(x.v)}; }
};

// Native: 6e-9 relative, cos(0) = 1 + 6e-9; three parts of pi for every argument.
struct cos_f64_native : cos_kernel<f64, sine_f64_native_constants> {
  static constexpr double max_ulp = 5.46e7;
  static constexpr double domain[] = {-10000.0, 10000.0};  // where it holds next to multiples of pi, too
};

}  // namespace vorx

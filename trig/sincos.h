// sin(x) and cos(x) together, x in radians; sincos and sincosreg differ only in where the cosine goes. With n = round(|x| / pi),
// r = |x| - n pi and h = 1/2 with the sign of r: sin |x| = (-1)^n sin r, cos x = -(-1)^n sgn(h) sin(|x| - (n + h) pi). Both
// arguments of the sine polynomial are in [-pi/2, pi/2] and exact where the result is small.
#pragma once

#include "trig/sine.h"

namespace vorx {

template <class E, class C>
struct sincos_kernel : kernel<E, C> {
  using V = typename E::vector;

  static two<V, V> path(V x, const C& k) {
    V y = x & k.magnitude;
    V t = y * k.inv_pi + k.shifter;
    V n = t - k.shifter;
    V r = k.first_parts(y, n);
    V side = r & k.sign;
    V m = n + (side | k.half);
    V flip = clear(side, k.sign) ^ cosine_sign(t, y, k);

    // Sine first, then cosine: both at once would need more than eight registers.
    const C& second = behind(flip, k);
    r = second.last_parts(r, n);
    V sine = second.sine(r ^ parity_sign(t), r * r) ^ (x & second.sign);

    const C& third = behind(sine, second);
    r = third.last_parts(third.first_parts(x & third.magnitude, m), m);
    return {sine, third.sine(r ^ flip, r * r)};
  }
};

template <class V>
VORX_INLINE two<V, V> sincos_large_path(V x) {
  V cosine;
  V sine = {sincos_large<V>(x.v, &cosine)};
  return {sine, cosine};
}

// Accurate: 2.48 ULP, 0.51 ULP in vectors with a lane above 10000. Special results: NaN for an infinity (invalid) and for NaN,
// twice; sin(-0) = -0, cos(+-0) = 1.
struct sincos_f32 : with_rare_cases<with_large_path<sincos_kernel<f32, sine_f32_constants>>> {
  static constexpr double max_ulp = 2.48;
  static constexpr float seams[] = {-10000.0f, -0x1p-20f, 0x1p-20f, 10000.0f};
  static two<f32x4, f32x4> large_path(f32x4 x) { return sincos_large_path(x); }
};

// Native: 1.4e-4 relative; without special results.
struct sincos_f32_native : with_large_path<sincos_kernel<f32, sine_f32_native_constants>> {
  static constexpr double max_ulp = 2330;
  static two<f32x4, f32x4> large_path(f32x4 x) { return sincos_large_path(x); }
};

// Accurate: 3.8 ULP, 0.51 ULP in vectors with a lane above 2^23. Special results as for float.
struct sincos_f64 : with_rare_cases<with_large_path<sincos_kernel<f64, sine_f64_constants>>> {
  static constexpr double max_ulp = 3.8;
  static constexpr double seams[] = {-8388608.0, -0x1p-20, 0x1p-20, 8388608.0};
  static two<f64x2, f64x2> large_path(f64x2 x) { return sincos_large_path(x); }
};

// Native: 6e-9 relative; three parts of pi for every argument.
struct sincos_f64_native : sincos_kernel<f64, sine_f64_native_constants> {
  static constexpr double max_ulp = 5.46e7;
  static constexpr double domain[] = {-10000.0, 10000.0};  // where it holds next to multiples of pi, too
};

// The same kernels: the shape of sincosreg returns both results in registers.
using sincosreg_f32 = sincos_f32;
using sincosreg_f32_native = sincos_f32_native;
using sincosreg_f64 = sincos_f64;
using sincosreg_f64_native = sincos_f64_native;

}  // namespace vorx

// sin(x) and cos(x) together, x in radians; sincos and sincosreg differ only in where the cosine goes. With n = round(|x| / pi),
// r = |x| - n pi and h = 1/2 with the sign of r: sin |x| = (-1)^n sin r, cos x = -(-1)^n sgn(h) sin(|x| - (n + h) pi). Both
// arguments of the sine polynomial are in [-pi/2, pi/2] and exact where the result is small.
//
// The first two parts of (n + h) pi are subtracted from |x| as n times and h times the parts: for n > 0 everything is a multiple
// of the last place of 1 and below 2 in the end, so that both ways are exact; for n = 0 they are the same operations.
#pragma once

#include "trig/sine.h"

namespace vorx {

template <class C>
struct sincos_f32_constants : C {
  rep32 half_pi_1 = c(0x3fc90000, 1.5703125f);  // h times the parts of pi
  rep32 half_pi_2 = c(0x39fda000, 4.83751297e-04f);
};

template <class C>
struct sincos_f64_constants : C {
  rep64 half_pi_1 = c(0x3ff921fb40000000, 1.5707962512969971);
  rep64 half_pi_2 = c(0x3e74442d00000000, 7.5497894158615964e-08);
};

template <class E, class C>
struct sincos_kernel : kernel<E, C> {
  using V = typename E::vector;

  static two<V, V> path(V x, const C& k) {
    V y = x & k.magnitude;
    V t = y * k.inv_pi + k.shifter;
    V n = t - k.shifter;
    V r = k.first_parts(y, n);
    V side = r & k.sign;
    V rc = r - (side | k.half_pi_1) - (side | k.half_pi_2);
    V flip = clear(side, k.sign) ^ cosine_sign(t, y, k);
    V m = n + (side | k.half);

    // The cosine's argument, then the sine, then the cosine: more at once would need more than eight registers.
    const C& first = behind(m, behind(flip, behind(rc, k)));
    rc = first.last_parts(rc, m);
    const C& second = behind(rc, first);
    r = second.last_parts(r, n);
    V sine = second.sine(r ^ parity_sign(t), r * r) ^ (x & second.sign);

    const C& third = behind(sine, second);
    return {sine, third.sine(rc ^ flip, rc * rc)};
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
struct sincos_f32 : with_rare_cases<with_large_path<sincos_kernel<f32, sincos_f32_constants<sine_f32_constants>>>> {
  static constexpr double max_ulp = 2.48;
  static constexpr float seams[] = {-10000.0f, -0x1p-20f, 0x1p-20f, 10000.0f};
  static two<f32x4, f32x4> large_path(f32x4 x) { return sincos_large_path(x); }
};

// Native: 1.4e-4 relative; without special results, cos(0) = 1.000136.
struct sincos_f32_native : with_large_path<sincos_kernel<f32, sincos_f32_constants<sine_f32_native_constants>>> {
  static constexpr double max_ulp = 2330;
  static two<f32x4, f32x4> large_path(f32x4 x) { return sincos_large_path(x); }
};

// Accurate: 3.86 ULP, 0.51 ULP in vectors with a lane above 2^23. Special results as for float.
struct sincos_f64 : with_rare_cases<with_large_path<sincos_kernel<f64, sincos_f64_constants<sine_f64_constants>>>> {
  static constexpr double max_ulp = 3.86;
  static constexpr double seams[] = {-8388608.0, -0x1p-27, 0x1p-27, 8388608.0};
  static two<f64x2, f64x2> large_path(f64x2 x) { return sincos_large_path(x); }
};

// Native: 6e-9 relative, cos(0) = 1 + 6e-9; three parts of pi for every argument.
struct sincos_f64_native : sincos_kernel<f64, sincos_f64_constants<sine_f64_native_constants>> {
  static constexpr double max_ulp = 5.46e7;
  static constexpr double domain[] = {-10000.0, 10000.0};  // where it holds next to multiples of pi, too
};

// The same kernels: the shape of sincosreg returns both results in registers.
using sincosreg_f32 = sincos_f32;
using sincosreg_f32_native = sincos_f32_native;
using sincosreg_f64 = sincos_f64;
using sincosreg_f64_native = sincos_f64_native;

}  // namespace vorx

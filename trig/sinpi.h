// sinpi(x) = sin(pi x). With n = round(|x|) and d = |x| - n, exact, |d| <= 1/2: sinpi |x| = (-1)^n sin(pi d).
#pragma once

#include "trig/half_revolutions.h"

namespace vorx {

template <class E, class C>
struct sinpi_kernel : kernel<E, C> {
  using V = typename E::vector;

  static V evaluate(V x, V y, const C& k) {
    V t = y + k.shifter;
    V d = y - (t - k.shifter);
    // The polynomial gives +0 for every integer, so that a zero has the sign of x.
    return sine_of_half_revolutions(d, t, k) ^ (x & k.sign);
  }
};

// Accurate: 2.14 ULP. Special results: NaN for an infinity and for NaN; +0 for positive and -0 for negative
// integers, sinpi(+-0) = +-0; exactly +-1 halfway between integers.
struct sinpi_f32 : with_one_nan<with_even_step<sinpi_kernel<f32, half_revolutions_sine_f32>>> {
  static constexpr double max_ulp = 2.14;
  static constexpr float seams[] = {-0x1p31f, -4194304.0f, -0x1p-20f, 0x1p-20f, 4194304.0f, 0x1p31f};
};

// Native: 1.4e-4 relative; without special results.
struct sinpi_f32_native : with_even_step<sinpi_kernel<f32, half_revolutions_sine_f32_native>> {
  static constexpr double max_ulp = 2300;
};

// Accurate: 3.40 ULP. Special results as for float.
struct sinpi_f64 : with_one_nan<with_even_step<sinpi_kernel<f64, half_revolutions_sine_f64>>> {
  static constexpr double max_ulp = 3.4;
  static constexpr double seams[] = {-0x1p59, -0x1p51, -0x1p-27, 0x1p-27, 0x1p51, 0x1p59};
};

// Native: 6e-9 relative; without special results.
struct sinpi_f64_native : with_even_step<sinpi_kernel<f64, half_revolutions_sine_f64_native>> {
  static constexpr double max_ulp = 5.46e7;
};

}  // namespace vorx

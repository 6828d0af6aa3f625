// cospi(x) = cos(pi x). With n = round(|x| + 1/2) and d = |x| - (n - 1/2), |d| <= 1/2: cospi x = (-1)^n sin(pi d). Below 1/4, d
// is rounded: the cosine is flat there.
#pragma once

#include "trig/half_revolutions.h"

namespace vorx {

template <class E, class C>
struct cospi_kernel : kernel<E, C> {
  using V = typename E::vector;

  static V evaluate(V, V y, const C& k) {
    V t = (y + k.half) + k.shifter;
    V d = y - ((t - k.shifter) - k.half);
    return sine_of_half_revolutions(d, t, k);
  }
};

// Accurate: 2.14 ULP. Special results: NaN for an infinity and for NaN; exactly +-1 for integers, +0 halfway
// between them.
struct cospi_f32 : with_one_nan<with_even_step<cospi_kernel<f32, half_revolutions_sine_f32>>> {
  static constexpr double max_ulp = 2.14;
  static constexpr float seams[] = {-0x1p31f, -4194304.0f, 0.0f, 4194304.0f, 0x1p31f};
};

// Native: 1.4e-4 relative; without special results, cospi(0) = 1.000136.
struct cospi_f32_native : with_even_step<cospi_kernel<f32, half_revolutions_sine_f32_native>> {
  static constexpr double max_ulp = 2300;
};

// Accurate: 3.40 ULP. Special results as for float.
struct cospi_f64 : with_one_nan<with_even_step<cospi_kernel<f64, half_revolutions_sine_f64>>> {
  static constexpr double max_ulp = 3.4;
  static constexpr double seams[] = {-0x1p59, -0x1p51, 0.0, 0x1p51, 0x1p59};
};

// Native: 6e-9 relative, cospi(0) = 1 + 6e-9; without special results.
struct cospi_f64_native : with_even_step<cospi_kernel<f64, half_revolutions_sine_f64_native>> {
  static constexpr double max_ulp = 5.46e7;
};

}  // namespace vorx

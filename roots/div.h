// div(x, y) = x / y, by the processor's division, which rounds correctly.
#pragma once

#include "roots/inv.h"

namespace vorx {

// Correctly rounded; special results are those of division. The lane tests are those of inv, on the divisor.
template <class E>
struct div_kernel : kernel<E> {
  using V = typename E::vector;
  using T = typename E::scalar;
  static constexpr double max_ulp = 0.5;

  static V path(V x, V y, const no_constants&) { return x / y; }
  static int rare(const T* x, const T* y, T* result) {
    *result = *x / *y;
    return *y == 0 ? singularity : ordinary;
  }
};
struct div_f32 : div_kernel<f32> {
  static i32x4 special(f32x4, f32x4 y, const no_constants& k) { return inv_f32::special(y, k); }
};
struct div_f64 : div_kernel<f64> {
  static i32x4 special(f64x2, f64x2 y, const no_constants& k) { return inv_f64::special(y, k); }
};

// Native: x times the estimate of 1 / y, for normal |y| below 2^126, where the estimate is a normal number, and normal quotients.
// x / 0 = +-inf, 0 / 0 is NaN. Beyond 2^126 the estimate may be +-0.
struct div_f32_native : kernel<f32> {
  static constexpr double max_ulp = estimate_ulp + 2;  // of the product; 5291 on one processor
  static constexpr bool by_definition = true;
  static constexpr float domain[] = {-0x1.fffffep127f, 0x1.fffffep127f, -0x1.ff8p125f, 0x1.ff8p125f};
  static f32x4 path(f32x4 x, f32x4 y, const no_constants&) { return x * estimate_reciprocal(y); }
};
struct div_f64_native : kernel<f64> {
  static constexpr double max_ulp = 0.5;
  static f64x2 path(f64x2 x, f64x2 y, const no_constants&) { return x / y; }
};

}  // namespace vorx

// inv(x) = 1 / x, by the processor's division, which rounds correctly.
#pragma once

#include "frame/rare.h"
#include "roots/estimates.h"

namespace vorx {

// 1 in every lane.
template <class V>
VORX_INLINE V one_in_registers() {
  return ones < V, 2, sizeof(V{}.v[0]) == 4 ? 23 : 52 > ();
}

// Correctly rounded. inv(+-0) = +-inf with division by zero raised, inv(+-inf) = +-0, NaN for NaN. The path has all of these
// right: the lane test only says which lanes have a status.
template <class E>
struct inv_kernel : kernel<E> {
  using V = typename E::vector;
  using T = typename E::scalar;
  static constexpr double max_ulp = 0.5;

  static V path(V x, const no_constants&) { return one_in_registers<V>() / x; }
  static int rare(const T* x, T* result) {
    *result = 1 / *x;
    return *x == 0 ? singularity : ordinary;
  }
};
struct inv_f32 : inv_kernel<f32> {
  static i32x4 special(f32x4 x, const no_constants&) { return is_zero(x); }
  static i32x4 is_zero(f32x4 x) { return x == f32x4{}; }
};
// The lane test of double flags subnormal numbers too, deliberately: the field of the exponent is 0.
struct inv_f64 : inv_kernel<f64> {
  static i32x4 special(f64x2 x, const no_constants&) { return has_no_exponent(x); }
  static i32x4 has_no_exponent(f64x2 x) { return (words(x) & ones<i32x4, 1, 20>()) == i32x4{}; }
};

// Native: the processor's estimate, for normal |x| below 2^126, where it is a normal number. inv(+-0) = +-inf, also for subnormal
// numbers; beyond 2^126 it may be +-0.
struct inv_f32_native : kernel<f32> {
  static constexpr double max_ulp = estimate_ulp;  // 4763 on one processor
  static constexpr bool by_definition = true;
  static constexpr float domain[] = {-0x1.ff8p125f, 0x1.ff8p125f};
  static f32x4 path(f32x4 x, const no_constants&) { return estimate_reciprocal(x); }
};
struct inv_f64_native : kernel<f64> {
  static constexpr double max_ulp = 0.5;
  static f64x2 path(f64x2 x, const no_constants& k) { return inv_f64::path(x, k); }
};

}  // namespace vorx

// pow(x, y) = x^y. Float: y ln x in two parts of floats, then e to that power. Lanes whose result is not between 2^-93 and 2^93,
// and all special arguments, go to the scalar routine, which works in double.
#pragma once

#include "explog/power_f32.h"
#include "explog/power_native.h"
#include "explog/power_rare.h"

namespace vorx {

struct pow_f32_constants : power_f32_constants {
  // e^q on |q| <= ln 2 / 2: relative error 2^-22.6 (tables/fits/polynomials.sollya)
  rep32 g5 = c(0x3c07d9fe, 0.00829171948f);
  rep32 g4 = c(0x3d2b8392, 0.0418735221f);
  rep32 g3 = c(0x3e2aacac, 0.166674316f);
  rep32 g2 = c(0x3effff34, 0.49999392f);
  rep32 g1 = c(0x3f7ffffe, 0.99999988f);
  rep32 g0 = c(0x3f800000, 1.0f);
  rep32 limit = c(0x42819f00, 64.810546875f);  // of |y ln x|
};

// Accurate: 10.1 ULP. Special results: pow(x, +-0) = pow(1, y) = 1, for NaN too; pow(-1, +-inf) = 1; NaN for x < 0 with y not an
// integer.
// +-0 to a negative power is an infinity, to a positive power a zero; the sign of x counts for odd y only.
struct pow_f32 : kernel<f32, pow_f32_constants> {
  static constexpr double max_ulp = 10.2;
  static constexpr float seams[] = {0x1p-126f, 0x1.fc0002p-1f, 1.0f, 0x1.03fffep0f};  // of x
  static constexpr bool test_on_path = true;

  // An infinite or NaN y makes a product that is not a number, and so is above the limit.
  static power_f32_halfway first_half(f32x4 x, f32x4 y, const constants& k) {
    auto ln = ln_of_power(x, k);
    in_register(x), in_register(y);
    auto product = times_ln(y, ln, k);
    in_register(x), in_register(y);
    return {product, not_in_power_range(x, k) | ((as_int(copy(product.head)) & k.magnitude) > k.limit)};
  }
  static f32x4 second_half(const power_f32_halfway& h, const constants& k) { return exp_of_product(h.product, k, k); }
  static f32x4 path(f32x4 x, f32x4 y, const constants& k) { return second_half(first_half(x, y, k), k); }
  static i32x4 large(f32x4 x, f32x4 y, const constants& k) { return first_half(x, y, k).flags; }
  // Lanes that are not large have the bits of the path.
  static f32x4 large_path(f32x4 x, f32x4 y) {
    const constants& k = constant_pool<constants>;
    f32x4 in_double = {powers_in_double(x.v, to_double(y).v, widen_high(y).v)};
    auto halfway = first_half(x, y, k);
    return select(halfway.flags, in_double, second_half(halfway, k));
  }
  static i32x4 special(f32x4 x, f32x4 y, const constants& k) { return not_positive_finite(x, k) | not_finite(y, k); }
  static int rare(const float* x, const float* y, float* result) {
    return special_power<float>(*x, *y, *y, parity_of(*y), result);
  }
};

// Accurate: 0.54 ULP. Special results as above.
struct pow_f64 : kernel<f64, power_f64_constants> {
  static constexpr double max_ulp = 0.54;
  static constexpr double seams[] = {0x1p-1022, 0x1.ffp-1, 1.0, 0x1.01p0};
  static constexpr bool test_on_path = true;

  static f64x2 path(f64x2 x, f64x2 y, const constants& k) { return exp_of_parts_normal(times_ln(y, ln_in_parts(x, k), k), k); }
  static i32x4 special(f64x2 x, f64x2 y, const constants& k) {
    return not_positive_normal(x, k) | exceeds_exponential(times_ln(y, ln_in_parts(x, k), k).head, k);
  }
  static int rare(const double* x, const double* y, double* result) {
    if (is_positive_finite(*x) && !is_not_finite(bits_of(*y))) return power_of_positive(*x, *y, result), ordinary;
    return special_power<double>(*x, *y, *y, parity_of(*y), result);
  }
};

// Native: 3116 ULP (1.9e-4 relative) for positive normal x and results in the normal range; unspecified for other x. Beyond the
// range +inf and +0.
struct pow_f32_native : kernel<f32, native_power_f32_constants> {
  static constexpr double max_ulp = 3170;
  static constexpr float domain[] = {0x1p-126f, 0x1.fffffep127f};
  static f32x4 path(f32x4 x, f32x4 y, const constants& k) { return native_exp2(native_log2(x, k) * y, k); }
};

// Native: 4.7e5 ULP (5.2e-11 relative) for the same arguments.
struct pow_f64_native : kernel<f64, native_power_f64_constants> {
  static constexpr double max_ulp = 4.74e5;
  static constexpr double domain[] = {0x1p-1022, 0x1.fffffffffffffp1023};
  static f64x2 path(f64x2 x, f64x2 y, const constants& k) { return native_power(x, y, k); }
};

}  // namespace vorx

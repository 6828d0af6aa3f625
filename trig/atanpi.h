// atanpi(x) = atan(x) / pi.
#pragma once

#include "trig/arctangent.h"
#include "trig/arctangent_native.h"
#include "trig/atan.h"
#include "trig/over_pi.h"

namespace vorx {

// Accurate: 1.00 ULP, 1.09 where the result is subnormal. 1.3 times as long as atan; through double, with 0.51 ULP, it would
// be 2.6 times. No lane is special: atanpi(+-0) = +-0, atanpi(+-inf) = +-1/2, NaN for NaN.
struct atanpi_f32 : kernel<f32, arctangent_in_half_revolutions_f32> {
  static constexpr double max_ulp = 1.09;
  static constexpr float seams[] = {-1.0f, 1.0f};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 a = x & k.magnitude;
    f32x4 u = min(a, k.one) / max(k.one, a);  // 1 / NaN: the order of the operands keeps the NaN
    f32x4 big = as_float(as_int(a) > as_int(k.one));
    return k.add(big & k.right_angle, u ^ (big & k.sign), u * u) ^ (x & k.sign);
  }
};

struct atanpi_f64_constants : arctangent_f64_constants<angle_in_half_revolutions_f64> {
  rep32 smallest = bits32(0x07b00000);  // high word of 2^-900
};
// Accurate: 0.75 ULP, in the subnormal numbers, which are rounded twice; 0.58 elsewhere. Special results as for float.
struct atanpi_f64 : arctangent_f64_path<angle_in_half_revolutions_f64> {
  using constants = atanpi_f64_constants;
  static constexpr double max_ulp = 0.76;
  static constexpr double seams[] = {-0x1.f8p3, -0x1.f8p-5, -0x1p-900, 0x1p-900, 0x1.f8p-5, 0x1.f8p3};
  static i32x4 special(f64x2 x, const constants& k) { return words(x & k.magnitude) < k.smallest; }
  static int rare(const double* x, double* result) { return small_over_pi(*x, result); }
};

struct atanpi_f32_native : native_arctangent_f32<native_arctangent_in_half_revolutions_f32> {
  static constexpr double max_ulp = 3630;
};
struct atanpi_f64_native : native_arctangent_f64<native_arctangent_in_half_revolutions_f64> {
  static constexpr double max_ulp = 2.66e6;
};

}  // namespace vorx

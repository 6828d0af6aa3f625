// exp2(x) = 2^n 2^r: float with n = round(x) and a polynomial on |r| <= 1/2; double with n = round(128 x) / 128, a table of
// 2^(j/128) and a polynomial on |r| <= 1/256. Both remainders are exact.
#pragma once

#include <array>

#include "explog/exponential.h"
#include "frame/kernel.h"
#include "frame/rare.h"
#include "tables/exp2_j128.h"

namespace vorx {

struct exp2_f32_constants {
  rep32 shifter = c(0x4b400000, 12582912.0f);  // 1.5 x 2^23: the sum carries n in its low bits
  // 2^r on |r| <= 1/2: relative error 2^-27.6 (tables/fits/polynomials.sollya)
  rep32 c6 = c(0x39213c8c, 1.53767120e-4f);
  rep32 c5 = c(0x3aaf7a51, 1.33878936e-3f);
  rep32 c4 = c(0x3c1d962c, 9.61832330e-3f);
  rep32 c3 = c(0x3d6357cf, 5.55036627e-2f);
  rep32 c2 = c(0x3e75fdef, 0.240226492f);
  rep32 c1 = c(0x3f317218, 0.693147182f);
  rep32 c0 = c(0x3f800000, 1.0f);
  rep32 magnitude = bits32(0x7fffffff);
  rep32 limit = c(0x42fc0000, 126.0f);  // beyond it 2^n leaves the normal range
};

// Accurate: 1.10 ULP, exact for an integer x. Special results: exp2(-inf) = +0, exp2(+inf) = +inf, NaN for NaN; +inf from 128 on,
// gradual underflow below -126, +0 from -150 on.
struct exp2_f32 : kernel<f32, exp2_f32_constants> {
  static constexpr double max_ulp = 1.11;
  static constexpr float seams[] = {-150, -126, 126, 128};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 t = x + k.shifter;  // n, in the low bits of t
    f32x4 r = x - (t - k.shifter);
    f32x4 p = horner(r, k.c6, k.c5, k.c4, k.c3, k.c2, k.c1, k.c0);
    return as_float(as_int(p) + (as_int(t) << 23));  // 2^n 2^r: n added to the exponent field
  }
  static i32x4 special(f32x4 x, const constants& k) { return (as_int(x) & k.magnitude) > k.limit; }

  static int rare(const float* x, float* result) {
    if (is_not_finite(bits_of(*x))) return exponential_of_not_finite(*x, result);
    if (*x >= 128) return *result = overflowed<float>(), overflow;
    if (*x <= -150) return *result = underflowed<float>(), underflow;
    return exp2_to_float(*x, result);
  }
};

// Native: 8.7e-5 relative; +inf from 128 on, +0 below -126 (no subnormal results), NaN for NaN.
struct exp2_f32_native : kernel<f32, native_exp2_f32_constants> {
  static constexpr double max_ulp = 1450;
  static f32x4 path(f32x4 x, const constants& k) { return native_exp2(x, k); }
};

struct exp2_f64_constants {
  rep64 shifter = c(0x42c8000000000000, 52776558133248.0);  // 1.5 x 2^45, with 1/128 as its last place
  rep64 index = bits64(0x7f);
  rep64 exponent = bits64(~0x7full);
  // 2^r - 1 on |r| <= 1/256: absolute error 2^-53.5 (tables/fits/polynomials.sollya)
  rep64 c4 = c(0x3f83b2ab5bb1268f, 9.618128524510964e-3);
  rep64 c3 = c(0x3fac6b09b180f045, 5.550413409989167e-2);
  rep64 c2 = c(0x3fcebfbdff82ca48, 0.24022650695913428);
  rep64 c1 = c(0x3fe62e42fefa3685, 0.6931471805598483);
  rep32 magnitude = high_words(0x7fffffff);
  rep32 limit = high_words(0x408fefff);  // the last high word below 1022
  std::array<double, 128> table = exp2_j128;
};

// Accurate: 1.64 ULP, exact for an integer x. Special results: exp2(-inf) = +0, exp2(+inf) = +inf, NaN for NaN; +inf from 1024
// on, gradual underflow below -1022, +0 from -1075 on.
struct exp2_f64 : kernel<f64, exp2_f64_constants> {
  static constexpr double max_ulp = 1.65;
  static constexpr double seams[] = {-1075, -1022, 1022, 1024};

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 t = x + k.shifter;
    f64x2 r = x - (t - k.shifter);
    f64x2 p = horner(r, k.c4, k.c3, k.c2, k.c1);  // (2^r - 1) / r
    f64x2 s = lookup(k.table.data(), as_int(t) & k.index);
    f64x2 y = s + r * s * p;
    return as_float(as_int(y) + ((as_int(t) & k.exponent) << 45));  // the integer part added to the exponent field
  }
  static i32x4 special(f64x2 x, const constants& k) { return (words(x) & k.magnitude) > k.limit; }

  static int rare(const double* x, double* result) {
    if (is_not_finite(bits_of(*x))) return exponential_of_not_finite(*x, result);
    if (*x >= 1024) return *result = overflowed<double>(), overflow;
    if (*x <= -1075) return *result = underflowed<double>(), underflow;
    double t = *x + scalar(0x42d8000000000000, 105553116266496.0);  // 1.5 x 2^46, with 1/64 as its last place
    double r = *x - (t - scalar(0x42d8000000000000, 105553116266496.0));
    return exp_in_steps(static_cast<int32_t>(bits_of(t)), r * scalar(0x3fe62e42fefa39ef, 0.6931471805599453), result);
  }
};

struct exp2_f64_native_constants {
  rep64 steps = c(0x4060000000000000, 128.0);
  native_exp2_f64_constants exp2;
};

// Native: 2960 ULP (3.3e-13 relative); +inf from 1024 on, +0 below -1022 (no subnormal results), NaN for NaN.
struct exp2_f64_native : kernel<f64, exp2_f64_native_constants> {
  static constexpr double max_ulp = 2960;
  static f64x2 path(f64x2 x, const constants& k) { return native_exp2(x * k.steps, k.exp2); }
};

}  // namespace vorx

// sinh(x), by the reduction of sinh_cosh.h.
#pragma once

#include "special/sinh_cosh.h"

namespace vorx {

// Accurate: 2.03 ULP. Special results: sinh(-0) = -0, sinh(+-inf) = +-inf, NaN for NaN; +-inf from 89.41599 on.
struct sinh_f32 : kernel<f32, sinh_cosh_f32_constants> {
  static constexpr double max_ulp = 2.03;
  static constexpr float seams[] = {-89.4159927f, -87.3365326f, 0.0f, 87.3365326f, 89.4159927f};

  static f32x4 path(f32x4 x, const constants& k) {
    auto [a, b, sinh_r, cosh_r_less_1] = sinh_cosh_terms(x & k.magnitude, k);
    return (a * sinh_r + b * cosh_r_less_1 + b) | (x & k.sign);
  }
  static i32x4 special(f32x4 x, const constants& k) { return (as_int(x) & k.magnitude) > k.limit; }

  static int rare(const float* x, float* result) {
    if (is_not_finite(bits_of(*x))) return *result = opaque(*x) + *x, ordinary;
    int status = half_exponential(from_bits(bits_of(*x) & 0x7fffffff), result);
    if (*x < 0) *result = -*result;
    return status;
  }
};

struct sinh_f32_native_constants {
  rep32 log2e = c(0x3fb8aa3b, 1.44269502f);
  rep32 shifter = c(0x4b400081, 12583041.0f);   // 1.5 x 2^23 + 129: the sum has n + 129 in its low bits
  rep32 largest = c(0x4b400102, 12583170.0f);   // n = 129
  rep32 smallest = c(0x4b400000, 12582912.0f);  // n = -129
  rep32 ln2 = c(0x3f317218, 0.693147182f);
  rep32 four = bits32(4u << 23);          // n + 129 less 4 is the exponent field of 2^(n-2), and
  rep32 twice_bias = bits32(254u << 23);  // 254 less n + 129 that of 2^(-n-2)
  // sinh r = r + c1 s1 r^3 and cosh r = 1 + c1 r^2 on |r| <= ln 2 / 2: relative error of the result 2^-12.7
  // (tables/fits/sinh_f32_native.sollya)
  rep32 c1 = c(0x3f00f27c, 0.5037f);
  rep32 s1 = c(0x3ea92457, 0.330355376f);
};

// Native: relative error 2^-12.6, at zero too; special results as above. n and r have the sign of x, and a power below the normal
// range is 0. A and B are halved, so that neither overflows where the result does not, and B is negated, so that -0 stays -0.
struct sinh_f32_native : kernel<f32, sinh_f32_native_constants> {
  static constexpr double max_ulp = 2360;
  static constexpr float seams[] = {-89.4159927f, 0.0f, 89.4159927f};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 t = max(min(x * k.log2e + k.shifter, k.largest), k.smallest);
    i32x4 e = as_int(t) << 23;
    f32x4 r = x - (t - k.shifter) * k.ln2;
    f32x4 low = as_float(as_i32(subtract_or_zero(as_i64(as_int(k.twice_bias)), as_i64(e))));
    f32x4 high = as_float(as_i32(subtract_or_zero(as_i64(e), as_i64(as_int(k.four)))));
    f32x4 a = (high + low) * r;
    f32x4 minus_b = low - high;
    f32x4 s = (a - minus_b) + (r * r * k.c1) * (a * k.s1 - minus_b);
    return s + s;
  }
};

struct sinh_f64_constants : sinh_cosh_f64_constants {
  rep64 small = c(0x3fc4000000000000, 0.15625);
  // sinh r on |r| <= 0.157: relative error 2^-60.7 (tables/fits/sinh_cosh_f64.sollya)
  rep64 s4 = c(0x3ec7211f7f2a595a, 2.75723777438533e-06);
  rep64 s3 = c(0x3f2a019fd56463c0, 0.00019841266721057176);
  rep64 s2 = c(0x3f81111111134efd, 0.008333333333588206);
  rep64 s1 = c(0x3fc555555555553e, 0.16666666666666602);
  // cosh r - 1 = r^2/2 + c2 r^4 on |r| <= ln 2 / 256: absolute error 2^-63.9 (the same)
  rep64 c2 = c(0x3fa55555a389f057, 0.041666675770983979);
};

// Accurate: 0.55 ULP. Special results: sinh(-0) = -0, sinh(+-inf) = +-inf, NaN for NaN; +-inf beyond 710.47586.
struct sinh_f64 : kernel<f64, sinh_f64_constants> {
  static constexpr double max_ulp = 0.55;
  static constexpr double seams[] = {-710.475860073944, -708.0009765625, -0.15625,        0.0,
                                     0.15625,           708.0009765625,  710.475860073944};

  // A is in one part, B in two. Below 0.156 n is 0: A = 1, B = 0, and nothing but the polynomial remains.
  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 y = x & k.magnitude;
    f64x2 n = clear(as_float(y < k.small), round_to_integral<to_nearest>(y * k.steps));
    f64x2 r = y - n * k.step_hi - n * k.step_lo;  // the first product is exact
    auto high = half_power(as_int(k.shifter + n), k);
    in_order(high.tail, n);
    const auto& k2 = behind(high.head, k);
    auto low = half_power(as_int(k2.shifter - n), k2);
    f64x2 b = high.head - low.head, a = high.head + low.head;
    f64x2 b_tail = ((high.head - b) - low.head) + (high.tail - low.tail);

    in_order(b_tail, r);
    f64x2 r2 = r * r;
    f64x2 sinh_r = r + r * (r2 * horner(r2, k2.s4, k2.s3, k2.s2, k2.s1));
    a = a * sinh_r;
    in_order(a, r2);
    f64x2 cosh_r_less_1 = r2 * (k2.half + r2 * k2.c2);
    f64x2 s = b + (b_tail + (a + b * cosh_r_less_1));
    return s | (x & k2.sign);
  }
  static i32x4 special(f64x2 x, const constants& k) { return words(x & k.magnitude) > k.limit; }

  static int rare(const double* x, double* result) {
    if (is_not_finite(bits_of(*x))) return *result = opaque(*x) + *x, ordinary;
    int status = half_exponential(from_bits(bits_of(*x) & 0x7fffffffffffffff), result);
    if (*x < 0) *result = -*result;
    return status;
  }
};

// Native: one part of each table value and of the step. Relative error 2^-37.8, at zero too, and 2^-35.7 beyond 710.46; special
// results as above.
struct sinh_f64_native : kernel<f64, sinh_cosh_f64_native_constants> {
  static constexpr double max_ulp = 322000;
  static constexpr double seams[] = {-710.475860073944, 0.0, 710.475860073944};

  static f64x2 path(f64x2 x, const constants& k) {
    auto [a, b, sinh_r, cosh_r_less_1] = sinh_cosh_terms(x & k.magnitude, k);
    return (b + (a * sinh_r + b * cosh_r_less_1)) | (x & k.sign);
  }
};

}  // namespace vorx

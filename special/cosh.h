// cosh(x), by the reduction of sinh_cosh.h.
#pragma once

#include "special/sinh_cosh.h"

namespace vorx {

// Accurate: 1.85 ULP. Special results: cosh(+-0) = 1, cosh(+-inf) = +inf, NaN for NaN; +inf from |x| = 89.41599 on.
struct cosh_f32 : kernel<f32, sinh_cosh_f32_constants> {
  static constexpr double max_ulp = 1.85;
  static constexpr float seams[] = {-89.4159927f, -87.3365326f, 0.0f, 87.3365326f, 89.4159927f};

  static f32x4 path(f32x4 x, const constants& k) {
    auto [a, b, sinh_r, cosh_r_less_1] = sinh_cosh_terms(x & k.magnitude, k);
    return b * sinh_r + a * cosh_r_less_1 + a;
  }
  // Inclusive, unlike the test of sinh.
  static i32x4 special(f32x4 x, const constants& k) {
    i32x4 a = as_int(x) & k.magnitude;
    return a > k.limit | a == k.limit;
  }

  static int rare(const float* x, float* result) {
    if (is_not_finite(bits_of(*x))) return *result = opaque(*x) * *x, ordinary;
    return half_exponential(from_bits(bits_of(*x) & 0x7fffffff), result);
  }
};

struct cosh_f32_native_constants {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 log2e = c(0x3fb8aa3b, 1.44269502f);
  rep32 shifter = c(0x4b40007d, 12583037.0f);  // 1.5 x 2^23 + 125: the sum has the exponent field of 2^(n-2) in its low bits
  rep32 largest = c(0x4b4000fe, 12583166.0f);  // field 254: n = 129
  rep32 ln2 = c(0x3f317218, 0.693147182f);
  // 2 e^r on |r| <= ln 2 / 2, twice the polynomial of native exp: relative error 2^-12.7 (tables/fits/polynomials.sollya)
  rep32 c3 = c(0x3ea963ac, 0.33083856f);
  rep32 c2 = c(0x3f80f2d6, 1.0074108f);
  rep32 c1 = c(0x400003de, 2.000236f);
  rep32 c0 = c(0x40000000, 2.0f);
  rep32 quarter = c(0x3e800000, 0.25f);
};

// Native: e^|x| with the polynomial of native exp, and its reciprocal. Relative error 2^-12.6; special results as above.
struct cosh_f32_native : kernel<f32, cosh_f32_native_constants> {
  static constexpr double max_ulp = 1825;
  static constexpr float seams[] = {-89.4159927f, 0.0f, 89.4159927f};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 y = x & k.magnitude;
    f32x4 t = min(k.largest, y * k.log2e + k.shifter);
    f32x4 r = y - (t - k.shifter) * k.ln2;
    f32x4 e = horner(r, k.c3, k.c2, k.c1, k.c0) * as_float(as_int(t) << 23);  // e^|x| / 2
    return e + k.quarter / e;
  }
};

struct cosh_f64_constants : sinh_cosh_f64_constants {
  // sinh r on |r| <= ln 2 / 256: relative error 2^-68.1 (tables/fits/sinh_cosh_f64.sollya)
  rep64 s2 = c(0x3f81111156a0d0fc, 0.008333335357840081);
  rep64 s1 = c(0x3fc55555555554b0, 0.16666666666666208);
  // cosh r - 1 = r^2/2 + c2 r^4 on |r| <= ln 2 / 256: absolute error 2^-63.9 (the same)
  rep64 c2 = c(0x3fa55555a389f057, 0.041666675770983979);
};

// Accurate: 0.525 ULP. Special results: cosh(+-0) = 1, cosh(+-inf) = +inf, NaN for NaN; +inf beyond |x| = 710.47586.
struct cosh_f64 : kernel<f64, cosh_f64_constants> {
  static constexpr double max_ulp = 0.525;
  static constexpr double seams[] = {-710.475860073944, -708.0009765625, 0.0, 708.0009765625, 710.475860073944};

  // A is in two parts, B in one.
  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 y = x & k.magnitude;
    f64x2 n = round_to_integral<to_nearest>(y * k.steps);
    f64x2 r = y - n * k.step_hi - n * k.step_lo;  // the first product is exact
    auto high = half_power(as_int(k.shifter + n), k);
    in_order(high.tail, n);
    const auto& k2 = behind(high.head, k);
    auto low = half_power(as_int(k2.shifter - n), k2);
    f64x2 a = high.head + low.head, b = high.head - low.head;
    f64x2 a_tail = ((high.head - a) + low.head) + (high.tail + low.tail);

    in_order(a_tail, r);
    f64x2 r2 = r * r;
    f64x2 sinh_r = r + r * (r2 * (k2.s1 + r2 * k2.s2));
    f64x2 cosh_r_less_1 = r2 * (k2.half + r2 * k2.c2);
    return a + (a_tail + (b * sinh_r + a * cosh_r_less_1));
  }
  static i32x4 special(f64x2 x, const constants& k) { return words(x & k.magnitude) > k.limit; }

  static int rare(const double* x, double* result) {
    if (is_not_finite(bits_of(*x))) return *result = opaque(*x) * *x, ordinary;
    return half_exponential(from_bits(bits_of(*x) & 0x7fffffffffffffff), result);
  }
};

// Native: one part of each table value and of the step. Relative error 2^-37.8, and 2^-35.7 beyond 710.46; special results as
// above.
struct cosh_f64_native : kernel<f64, sinh_cosh_f64_native_constants> {
  static constexpr double max_ulp = 322000;
  static constexpr double seams[] = {-710.475860073944, 0.0, 710.475860073944};

  static f64x2 path(f64x2 x, const constants& k) {
    auto [a, b, sinh_r, cosh_r_less_1] = sinh_cosh_terms(x & k.magnitude, k);
    return a + (b * sinh_r + a * cosh_r_less_1);
  }
};

}  // namespace vorx

// expm1(x) = e^x - 1 = S q + (S - 1) with S = 2^m 2^(j/N), n = round(x N / ln 2) = N m + j and q = e^r - 1: a table of 2^(j/N) in
// two parts, N = 64 for float and 128 for double, and a polynomial for q.
#pragma once

#include <array>

#include "explog/exp.h"
#include "explog/exponential.h"
#include "frame/kernel.h"
#include "frame/rare.h"
#include "tables/expm1_f32_pairs.h"
#include "tables/expm1_f64_pairs.h"

namespace vorx {

struct expm1_f32_constants {
  rep32 steps = c(0x42b8aa3b, 92.3324814f);      // 64 / ln 2
  rep32 step_hi = c(0x3c318000, 0.0108337402f);  // ln 2 / 64; low 15 bits zero: n * step_hi is exact
  rep32 step_lo = c(0xb65e8083, -3.31553815e-6f);
  rep32 shifter = c(0x49f0fe00, 1974208.0f);  // has 1/8 as its last place: 8 n in the low bits, and the bias 127 above
  rep32 offset = bits32(0x1f8);               // 8 j, the place of the pair in bytes
  rep32 exponent = bits32(0x1fe00);
  // e^r - 1 on |r| <= ln 2 / 128, c1 = 1: relative error 2^-29.0 (tables/fits/polynomials.sollya)
  rep32 c3 = c(0x3e2aaabf, 0.166666970f);
  rep32 c2 = c(0x3f00000f, 0.500000894f);
  rep32 minus_one = c(0xbf800000, -1.0f);
  rep32 sign = bits32(0x80000000);
  rep32 magnitude = bits32(0x7fffffff);
  rep32 limit = c(0x42ad496b, 86.6433945f);
  rep32 lowest = c(0xc2ae0000, -87.0f);      // native: m stays above -127, and the result is -1
  rep32 last_step = c(0x45fff800, 8191.0f);  // native: m stays below 128
  std::array<float, 128> table = expm1_f32_pairs;
};
static_assert(low_zero_bits(expm1_f32_constants{}.step_hi) >= 13);

// S from the table with its low part or without it: row 0 is exact either way, so that small results stay accurate.
enum table_parts { both, high_only };

// e^x - 1 from x and n. The sign of x is or-ed to the result for the sake of -0.
template <table_parts parts>
VORX_INLINE f32x4 expm1_from_steps(f32x4 x, f32x4 n, const expm1_f32_constants& k) {
  f32x4 r = x - n * k.step_hi - n * k.step_lo;
  i32x4 u = as_int(n + k.shifter);
  i32x4 scale = (u & k.exponent) << 14;  // 2^m
  auto [high, low] = gather_pairs(k.table.data(), u & k.offset);
  f32x4 s_hi = as_float(as_int(high) | scale);
  f32x4 s_lo = low * as_float(scale);
  f32x4 q = r + r * r * (k.c2 + k.c3 * r);
  if constexpr (parts == high_only) return (s_hi * q + (s_hi + k.minus_one)) | (x & k.sign);
  f32x4 y = (s_hi + s_lo) * q + ((s_hi + k.minus_one) + s_lo);
  return y | (x & k.sign);
}

// Accurate: 1.80 ULP. Special results: expm1(-0) = -0, expm1(-inf) = -1, expm1(+inf) = +inf, NaN for NaN; +inf above 88.72283, -1
// below -86.64339.
struct expm1_f32 : kernel<f32, expm1_f32_constants> {
  static constexpr double max_ulp = 1.81;
  static constexpr float seams[] = {-86.6433945f, 86.6433945f, 88.7228317f};

  static f32x4 path(f32x4 x, const constants& k) {
    return expm1_from_steps<both>(x, round_to_integral<to_nearest>(x * k.steps), k);
  }
  static i32x4 special(f32x4 x, const constants& k) { return not_less_equal(x & k.magnitude, k.limit); }

  // Beyond the limit 1 is less than a quarter of the last place of e^x, or e^x of that of 1.
  static int rare(const float* x, float* result) {
    if (is_not_finite(bits_of(*x))) return *result = *x < 0 ? -1.0f : opaque(*x) * *x, ordinary;
    if (*x < 0) return *result = opaque(-1.0f) + 0x1p-100f, ordinary;  // raises inexact
    if (*x > 90) return *result = overflowed<float>(), overflow;
    return exp2_to_float(*x * scalar(0x3ff71547652b82fe, 1.4426950408889634), result);  // log2(e)
  }
};

// Native: the accurate form without a lane test and without the low parts of the table, 26.7 ULP up to x = 88.7; a quotient or
// difference of exponentials would be worth nothing near zero. +inf above 88.72, -1 below -87, NaN for NaN.
struct expm1_f32_native : kernel<f32, expm1_f32_constants> {
  static constexpr double max_ulp = 26.8;
  static constexpr float seams[] = {-87.0f, 88.7228317f};

  static f32x4 path(f32x4 x, const constants& k) {
    x = max(k.lowest, x);  // in this order of operands a NaN stays
    return expm1_from_steps<high_only>(x, min(round_to_integral<to_nearest>(x * k.steps), k.last_step), k);
  }
};

struct expm1_f64_constants {
  rep64 steps = c(0x40671547652b82fe, 184.6649652337873);       // 128 / ln 2
  rep64 step_hi = c(0x3f762e42fef80000, 0.005415212347998022);  // ln 2 / 128; low 19 bits zero: n * step_hi is exact
  rep64 step_lo = c(0x3d41cf79abc9e3b4, 1.2655086083325438e-13);
  rep64 shifter = c(0x42f80000001ff800, 422212465196928.0);  // has 1/16 as its last place: 16 n in the low bits, 1023 above
  rep64 offset = bits64(0x7f0);                              // 16 j, the place of the pair in bytes
  rep64 exponent = bits64(0x3ff800);
  // e^r - 1 on |r| <= ln 2 / 256, c1 = 1: relative error 2^-56.1 (tables/fits/polynomials.sollya)
  rep64 c5 = c(0x3f81111168877f38, 8.333335878830547e-3);
  rep64 c4 = c(0x3fa55555c2a9c0f3, 0.04166667939432669);
  rep64 c3 = c(0x3fc555555555541d, 0.166666666666658);
  rep64 c2 = c(0x3fdffffffffffe5c, 0.4999999999999767);
  rep64 minus_one = c(0xbff0000000000000, -1.0);
  rep64 sign = bits64(0x8000000000000000);
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 limit = c(0x40861da04cbafe43, 707.7032713517041);
  rep64 lowest = c(0xc086200000000000, -708.0);       // native: m stays above -1023, and the result is -1
  rep64 last_step = c(0x40fffff000000000, 131071.0);  // native: m stays below 1024
  std::array<double, 256> table = expm1_f64_pairs;
};
static_assert(low_zero_bits(expm1_f64_constants{}.step_hi) >= 17);

template <table_parts parts>
VORX_INLINE f64x2 expm1_from_steps(f64x2 x, f64x2 n, const expm1_f64_constants& k) {
  f64x2 r = x - n * k.step_hi - n * k.step_lo;
  i64x2 u = as_int(n + k.shifter);
  i64x2 scale = (u & k.exponent) << 41;  // 2^m
  auto [high, low] = gather_pairs(k.table.data(), u & k.offset);
  f64x2 s_hi = as_float(as_int(high) | scale);
  f64x2 s_lo = low * as_float(scale);
  f64x2 r2 = r * r;
  f64x2 q = r + r2 * ((k.c2 + k.c3 * r) + r2 * (k.c4 + k.c5 * r));
  if constexpr (parts == high_only) return (s_hi * q + (s_hi + k.minus_one)) | (x & k.sign);
  f64x2 y = (s_hi + s_lo) * q + ((s_hi + k.minus_one) + s_lo);
  return y | (x & k.sign);
}

// Accurate: 2.96 ULP. Special results: expm1(-0) = -0, expm1(-inf) = -1, expm1(+inf) = +inf, NaN for NaN; +inf above 709.7827, -1
// below -707.7033.
struct expm1_f64 : kernel<f64, expm1_f64_constants> {
  static constexpr double max_ulp = 2.97;
  static constexpr double seams[] = {-707.7032713517041, 707.7032713517041, 709.782712893384};

  static f64x2 path(f64x2 x, const constants& k) {
    return expm1_from_steps<both>(x, round_to_integral<to_nearest>(x * k.steps), k);
  }
  static i32x4 special(f64x2 x, const constants& k) { return as_i32(not_less_equal(x & k.magnitude, k.limit)); }

  static int rare(const double* x, double* result) {
    if (*x > 0) return exp_f64::rare(x, result);  // 1 is far below the last place
    if (is_not_finite(bits_of(*x))) return *result = *x < 0 ? -1.0 : opaque(*x) * *x, ordinary;
    return *result = opaque(-1.0) + 0x1p-1000, ordinary;  // raises inexact
  }
};

// Native: as for float, 219.8 ULP (4.9e-14 relative) up to x = 709.7; +inf above 709.78, -1 below -708, NaN for NaN.
struct expm1_f64_native : kernel<f64, expm1_f64_constants> {
  static constexpr double max_ulp = 220;
  static constexpr double seams[] = {-708.0, 709.782712893384};

  static f64x2 path(f64x2 x, const constants& k) {
    x = max(k.lowest, x);  // in this order of operands a NaN stays
    return expm1_from_steps<high_only>(x, min(round_to_integral<to_nearest>(x * k.steps), k.last_step), k);
  }
};

}  // namespace vorx

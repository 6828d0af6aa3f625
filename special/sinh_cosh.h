// What sinh and cosh share. With n = round(|x| / ln 2) and r = |x| - n ln 2:
//
//   sinh |x| = A sinh r + B (cosh r - 1) + B
//   cosh |x| = B sinh r + A (cosh r - 1) + A,    A = (2^n + 2^-n) / 2, B = (2^n - 2^-n) / 2.
#pragma once

#include <array>

#include "explog/exponential.h"
#include "frame/head_and_tail.h"
#include "frame/kernel.h"
#include "tables/expm1_f64_pairs.h"

namespace vorx {

struct sinh_cosh_f32_constants {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 sign = bits32(0x80000000);
  rep32 log2e = c(0x3fb8aa3b, 1.44269502f);
  rep32 shifter = c(0x4b400000, 12582912.0f);  // 1.5 x 2^23: the sum carries n in its low bits
  rep32 ln2_hi = c(0x3f317200, 0.693145752f);  // low 9 bits zero: n * ln2_hi is exact
  rep32 ln2_lo = c(0x35bfbe8e, 1.42860677e-06f);
  rep32 half = c(0x3f000000, 0.5f);
  // sinh r on |r| <= ln 2 / 2, fixed term r: relative error 2^-26.1 (tables/fits/polynomials.sollya)
  rep32 s2 = c(0x3c091461, 0.0083666751f);
  rep32 s1 = c(0x3e2aaa57, 0.16666542f);
  // cosh r - 1 on |r| <= ln 2 / 2: absolute error 2^-33.1 (tables/fits/polynomials.sollya)
  rep32 c3 = c(0x3ab6a8a3, 0.00139357557f);
  rep32 c2 = c(0x3d2aaa72, 0.041666456f);
  rep32 c1 = c(0x3f000000, 0.5f);
  rep32 limit = c(0x42aeac4e, 87.3365326f);  // beyond it 2^-n leaves the normal range
};
static_assert(low_zero_bits(sinh_cosh_f32_constants{}.ln2_hi) >= 9);

struct sinh_cosh_f32_terms {
  f32x4 a, b;  // A and B
  f32x4 sinh_r, cosh_r_less_1;
};
VORX_INLINE sinh_cosh_f32_terms sinh_cosh_terms(f32x4 magnitude, const sinh_cosh_f32_constants& k) {
  f32x4 t = magnitude * k.log2e + k.shifter;
  i32x4 e = as_int(t) << 23;
  f32x4 n = t - k.shifter;
  f32x4 r = magnitude - n * k.ln2_hi - n * k.ln2_lo;                              // the first product is exact
  f32x4 high = as_float(as_int(k.half) + e), low = as_float(as_int(k.half) - e);  // 2^(n-1), 2^(-n-1); 0 for n = 126

  f32x4 r2 = r * r;
  f32x4 sinh_r = r + r * r2 * (k.s1 + k.s2 * r2);
  f32x4 cosh_r_less_1 = r2 * (k.c1 + r2 * (k.c2 + r2 * k.c3));
  return {high + low, high - low, sinh_r, cosh_r_less_1};
}

// e^a / 2 for a from 87 on, where it is sinh a and cosh a: 0.5006 ULP.
inline int half_exponential(float a, float* result) {
  if (a >= scalar(0x42b2d4fd, 89.4159927f)) return *result = overflowed<float>(), overflow;
  return exp2_to_float(a * scalar(0x3ff71547652b82fe, 1.4426950408889634) - 1, result);  // log2(e)
}

// ---- double: n = round(|x| 128 / ln 2) = 128 m + j, 2^(n/128) from a table in two parts ----

struct sinh_cosh_f64_constants {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  rep64 steps = c(0x40671547652b82fe, 184.6649652337873);       // 128 / ln 2
  rep64 step_hi = c(0x3f762e42fef80000, 0.005415212347998022);  // ln 2 / 128; low 19 bits zero: n * step_hi is exact
  rep64 step_lo = c(0x3d41cf79abc9e3b4, 1.2655086083325438e-13);
  rep64 shifter = c(0x42f80000001ff000, 422212465196800.0);  // has 1/16 as its last place: 16 n in the low bits, 1022 above
  rep64 offset = bits64(0x7f0);                              // 16 j, the place of the row in bytes
  rep64 exponent = bits64(0x3ff800);
  rep64 half = c(0x3fe0000000000000, 0.5);
  rep32 limit = high_words(0x40862000);  // of 708; beyond 708.39 the exponent of 2^-n leaves its field
  std::array<double, 256> table = expm1_f64_pairs;
};
static_assert(low_zero_bits(sinh_cosh_f64_constants{}.step_hi) >= 17);

// 2^(n/128) / 2 from u, which has n in its low bits.
VORX_INLINE head_and_tail<f64x2> half_power(i64x2 u, const sinh_cosh_f64_constants& k) {
  auto [high, low] = gather_columns(k.table.data(), u & k.offset);
  i64x2 scale = (u & k.exponent) << 41;
  return {as_float(as_int(high) | scale), low * as_float(scale)};
}

// e^a / 2 for a from 708 on: 0.51 ULP.
inline int half_exponential(double a, double* result) {
  if (a > scalar(0x408633ce8fb9f87d, 710.4758600739439)) return *result = overflowed<double>(), overflow;
  double n = static_cast<double>(static_cast<int>(a * scalar(0x40571547652b82fe, 92.33248261689366) + 0.5));  // 64 / ln 2
  double r = a - n * scalar(0x3f862e42fefa0000, 0.010830424696223417) - n * scalar(0x3d1cf79abc9e3b3a, 2.572804622327669e-14);
  return exp_in_steps(static_cast<int>(n) - 64, r, result);
}

// ---- double native ----

struct sinh_cosh_f64_native_constants {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  rep64 steps = c(0x40671547652b82fe, 184.6649652337873);     // 128 / ln 2
  rep64 step = c(0x3f762e42fefa39ef, 0.0054152123481245725);  // ln 2 / 128
  rep64 last_step = c(0x410003f800000000, 131199.0);          // m = 1024: 2^(n/128) / 2 is the largest
  rep64 shifter = c(0x42f80000001ff000, 422212465196800.0);
  rep64 lowest = c(0x42f8000000000000, 422212465065984.0);  // gives 0: 2^-n below the normal range
  rep64 offset = bits64(0x7f0);
  rep64 exponent = bits64(0x3ff800);
  // sinh r = r + r^3/6 and cosh r = 1 + r^2/2 on |r| <= ln 2 / 256: the next terms are below 2^-41 and 2^-38
  rep64 sixth = c(0x3fc5555555555555, 0.16666666666666666);
  rep64 half = c(0x3fe0000000000000, 0.5);
  std::array<double, 256> table = expm1_f64_pairs;
};

// 2^(n/128) from u, which has 16 n in its low bits and the bias of the exponent above, in one part.
VORX_INLINE f64x2 power_in_one_part(i64x2 u, const auto& k) {
  f64x2 high = gather(k.table.data(), u & k.offset);
  return as_float(as_int(high) | (u & k.exponent) << 41);
}

struct sinh_cosh_f64_terms {
  f64x2 a, b;  // A and B
  f64x2 sinh_r, cosh_r_less_1;
};
// n is held where 2^(n/128) / 2 is a normal number; what is beyond in r makes an infinity.
VORX_INLINE sinh_cosh_f64_terms sinh_cosh_terms(f64x2 magnitude, const sinh_cosh_f64_native_constants& k) {
  f64x2 n = min(round_to_integral<to_nearest>(magnitude * k.steps), k.last_step);
  f64x2 r = magnitude - n * k.step;
  f64x2 high = power_in_one_part(as_int(k.shifter + n), k);
  in_order(high, n);
  const auto& k2 = behind(high, k);
  f64x2 low = power_in_one_part(as_int(max(k2.shifter - n, k2.lowest)), k2);
  in_order(low, r);
  f64x2 r2 = r * r;
  return {high + low, high - low, r + r * r2 * k.sixth, r2 * k.half};
}

}  // namespace vorx

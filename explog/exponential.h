// What the exponentials share: the last steps of the scalar routines, and the native kernels of exp, exp2 and exp10.
#pragma once

#include <array>

#include "frame/kernel.h"
#include "frame/rare.h"
#include "tables/exp2_j128.h"
#include "tables/exp2_j64_pairs.h"

namespace vorx {

// ---- scalar routines ----

// e^-inf = +0, e^+inf = +inf, NaN for NaN; the same for the other bases.
template <class T>
VORX_INLINE int exponential_of_not_finite(T x, T* result) {
  *result = x < 0 ? T(0) : opaque(x) * x;
  return ordinary;
}

// 2^z, rounded from double: 0.5006 ULP. |z| <= 1000. The conversion raises overflow and underflow.
// 2^r with |r| <= 1/2 is a polynomial of degree 7 with constant term 1 (tables/fits/exp2_f32_rare, error 2^-33.0), so that 2^n
// is exact.
inline int exp2_to_float(double z, float* result) {
  double t = z + scalar(0x4338000000000000, 6755399441055744.0);  // n, in the low bits
  double r = z - (t - scalar(0x4338000000000000, 6755399441055744.0));
  double p = horner(r, scalar(0x3ef00dc4e57a1442, 1.5310083056014697e-05), scalar(0x3f244400329158d6, 0.000154614471542919),
                    scalar(0x3f55d874c79f776b, 0.0013333454539785304), scalar(0x3f83b2a1b6d1ac41, 0.009618056670850918),
                    scalar(0x3fac6b08dc5e38c4, 0.05550410928764074), scalar(0x3fcebfbe045f90ba, 0.24022650922336714),
                    scalar(0x3fe62e42fef95ec2, 0.6931471805537159), 1.0);
  double value = p * power_of_two<double>(static_cast<int32_t>(bits_of(t)));
  *result = static_cast<float>(value);
  return value >= 0x1.ffffffp127 ? overflow : value < 0x1p-126 ? underflow : ordinary;
}

// 2^m high (1 + q) for high in [1, 2) and |q| < 2^-7, with one rounding that counts: the sum is formed at the scale of 1 and then
// scaled exactly. Subnormal results are rounded to their own last place: with many bits left, the sum is taken apart at 2^-20,
// so that its upper part is exact at any scale and the lower part alone is rounded; with few bits left, the second rounding of
// the sum adds less than 2^-10 ULP.
inline int scaled(double high, double q, int m, double* result) {
  double product = high * q;
  double sum = high + product;
  if (m < -1022 || (m == -1022 && sum < 1)) {
    double scale = power_of_two<double>(m + 60), rest = scalar(0x3c30000000000000, 0x1p-60);
    if (m > -1033) {
      double upper = (sum + scalar(0x41f8000000000000, 6442450944.0)) - scalar(0x41f8000000000000, 6442450944.0);
      double lower = (high - upper) + product;
      *result = upper * scale * rest + lower * scale * rest;
    } else {
      *result = sum * scale * rest;
    }
    if (q != 0) *result += underflowed<double>();  // the bits that are rounded away may all be zero
    return underflow;
  }
  *result = m > 1023 ? sum * power_of_two<double>(m - 1) * 2 : sum * power_of_two<double>(m);
  return ordinary;
}

// 2^(n/64) e^r for |r| <= ln 2 / 128: 0.51 ULP.
inline int exp_in_steps(int32_t n, double r, double* result) {
  // (e^r - 1 - r) / r^2; of e^r - 1 on |r| <= ln 2 / 128: absolute error 2^-70.2 (tables/fits/polynomials.sollya)
  double p = horner(r, scalar(0x3f56c16a1c2a3ffd, 1.3888870459233254e-3), scalar(0x3f8111123aaf20d3, 8.333341995140497e-3),
                    scalar(0x3fa5555555558fcc, 4.166666666677052e-2), scalar(0x3fc55555555548f8, 0.1666666666665788), 0.5);
  const exp2_j64_pair& row = exp2_j64_pairs[n & 63];
  return scaled(row.high, p * (r * r) + r + row.low, n >> 6, result);
}

// ---- float native: 2^z for exp2 and exp10 ----

struct native_exp2_f32_constants {
  rep32 above = c(0x43000000, 128.0f);
  rep32 below = c(0xc2fe0000, -127.0f);
  rep32 shifter = c(0x4b40007f, 12583039.0f);  // 1.5 x 2^23 + 127: the sum has the exponent field of 2^n in its low bits
  rep32 c3 = c(0x3d9dd54a, 0.0770669729f);
  rep32 c2 = c(0x3e691bcb, 0.227645084f);
  rep32 c1 = c(0x3f31f32c, 0.695116758f);
  rep32 c0 = c(0x3f800000, 1.0f);
};

// 2^z = 2^n 2^r with n = floor(z) and r = z - n in [0, 1); 2^r is a cubic with constant term 1 (tables/fits/exp2_f32_native,
// error 2^-13.5). 2^n is a factor, so that a NaN stays one. z is held to the range in which 2^n goes from +0, below the normal
// range, to infinity.
VORX_INLINE f32x4 native_exp2(f32x4 z, const native_exp2_f32_constants& k) {
  z = max(k.below, min(k.above, z));  // in this order of operands a NaN stays
  f32x4 n = round_to_integral<downward>(z);
  f32x4 p = horner(z - n, k.c3, k.c2, k.c1, k.c0);
  return p * as_float(as_int(n + k.shifter) << 23);
}

// ---- double native: 2^(z/128) for exp, exp2 and exp10 ----

struct native_exp2_f64_constants {
  rep64 above = c(0x4100000000000000, 131072.0);              // 128 x 1024
  rep64 below = c(0xc0fff80000000000, -130944.0);             // -128 x 1023
  rep64 shifter = c(0x433800000001ff80, 6755399441186688.0);  // 1.5 x 2^52 + 128 x 1023: n + 128 x 1023 in the low bits
  rep64 index = bits64(127);
  rep64 exponent = bits64(0xfff0000000000000);
  rep64 c3 = c(0x3e5c7df9c760f237, 2.653532901068489e-08);
  rep64 c2 = c(0x3eeebfb881fd65b6, 1.4662222440331142e-05);
  rep64 c1 = c(0x3f762e42ff6dfccd, 0.005415212354704835);
  rep64 c0 = c(0x3ff0000000000000, 1.0);
  std::array<double, 128> table = exp2_j128;
};

// 2^(z/128) = 2^m 2^(j/128) 2^(r/128) with n = floor(z) = 128 m + j and r = z - n in [0, 1); 2^(r/128) is a cubic with constant
// term 1 (tables/fits/exp2_f64_native, error 2^-41.4). 2^m is a factor, so that a NaN stays one. z is held to the range in which
// 2^m goes from +0, below the normal range, to infinity.
VORX_INLINE f64x2 native_exp2(f64x2 z, const native_exp2_f64_constants& k) {
  z = max(k.below, min(k.above, z));  // in this order of operands a NaN stays
  f64x2 n = round_to_integral<downward>(z);
  f64x2 r = z - n;
  i64x2 t = as_int(n + k.shifter);
  f64x2 scale = as_float((t << 45) & k.exponent) * lookup(k.table.data(), t & k.index);
  return scale * horner(r, k.c3, k.c2, k.c1, k.c0);
}

}  // namespace vorx

// What the exponentials share: powers of two that the scalar routines put together from a table, and the double native kernels.
#pragma once

#include <array>

#include "frame/kernel.h"
#include "frame/rare.h"
#include "tables/exp2_j128.h"
#include "tables/exp2_j64_pairs.h"

namespace vorx {

// 2^m high (1 + q) for high in [1, 2) and |q| < 2^-6, with one rounding that counts: the sum is formed at the scale of 1 and then
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
    return underflow;
  }
  *result = m > 1023 ? sum * power_of_two<double>(m - 1) * 2 : sum * power_of_two<double>(m);
  return ordinary;
}

// ---- the double native kernels of exp, exp2 and exp10 ----

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
  return scale * ((k.c0 + r * k.c1) + (r * r) * (k.c2 + r * k.c3));
}

}  // namespace vorx

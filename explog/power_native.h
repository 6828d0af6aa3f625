// |x|^y of the native powers: 2^(y log2 |x|), without a lane test. x positive and normal; y log2 x is held to the range in which
// the result goes from +0, below the normal range, to infinity; a NaN y stays one.
#pragma once

#include "explog/exponential.h"
#include "explog/log_reduction.h"
#include "explog/power_in_double.h"

namespace vorx {

struct native_power_f32_constants : split_constants, native_exp2_f32_constants {
  // log2(1 + r) on |r| <= 1/3: relative error 2^-19.7 (tables/fits/log2_f32_native_power.sollya)
  rep32 p7 = c(0x3e7c73b7, 0.24653517f);
  rep32 p6 = c(0xbe8f5b71, -0.27999452f);
  rep32 p5 = c(0x3e923dc0, 0.28562737f);
  rep32 p4 = c(0xbeb77ecc, -0.35838926f);
  rep32 p3 = c(0x3ef640fb, 0.4809645f);
  rep32 p2 = c(0xbf38ac5a, -0.7213799f);
  rep32 p1 = c(0x3fb8aa39, 1.4426948f);
  rep32 magnitude = bits32(0x7fffffff);
};
VORX_INLINE f32x4 native_log2(f32x4 x, const native_power_f32_constants& k) {
  auto [n, r] = split_at_two_thirds(x, k);
  f32x4 r2 = r * r;
  f32x4 p = (r2 * k.p7 + (r * k.p6 + k.p5)) * r2 + (r * k.p4 + k.p3);
  return (p * r2 + (r * k.p2 + k.p1)) * r + n;
}

struct native_power_f64_constants : ln_by_row_constants, native_exp2_f64_constants {
  rep64 steps = c(0x40671547652b82fe, 184.6649652337873);  // 128 / ln 2
  rep64 magnitude = bits64(0x7fffffffffffffff);
};
VORX_INLINE f64x2 native_power(f64x2 x, f64x2 y, const native_power_f64_constants& k) {
  // In this order: y times a constant could overflow where ln x is 0.
  return native_exp2(ln_by_row(x, k) * k.steps * y, k);
}

}  // namespace vorx

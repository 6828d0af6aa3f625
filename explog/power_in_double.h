// x^y in double precision for results in float, where the float powers' path of floats does not do; and its logarithm.
#pragma once

#include "explog/ln_in_parts.h"
#include "tables/exp2_j128.h"

namespace vorx {

struct ln_by_row_constants : ln_reduction_constants {
  rep64 ln2 = c(0x3fe62e42fefa39ef, 0.6931471805599453);
  // ln(1 + r) on |r| <= 0.00587, l1 = 1: relative error 2^-43.6 (tables/fits/ln_of_float.sollya)
  rep64 l5 = c(0x3fc999dde90edb4e, 0.20000814323221977);
  rep64 l4 = c(0xbfd0001e1839f619, -0.2500071751199769);
  rep64 l3 = c(0x3fd555555536d42c, 0.3333333332223585);
  rep64 l2 = c(0xbfdfffffffef07cb, -0.4999999999382651);
};
// ln x for positive normal x: relative error 2^-43.
VORX_INLINE f64x2 ln_by_row(f64x2 x, const ln_by_row_constants& k) {
  auto [e, z, offset] = reduce_to_ln_row(x, k);
  auto [reciprocal, ln_c] = gather_pairs(&ln_j128_rows[0].reciprocal, offset);
  f64x2 r = z * reciprocal - k.one;
  f64x2 r2 = r * r;
  return (e * k.ln2 + ln_c) + (((r * k.l5 + k.l4) * r2 + (r * k.l3 + k.l2)) * r2 + r);
}

struct power_in_double_constants : ln_by_row_constants {
  rep64 steps = c(0x40671547652b82fe, 184.6649652337873);  // 128 / ln 2
  rep64 lowest = c(0xc0d3400000000000, -19712.0);          // 128 times -154: less than half the smallest subnormal float
  rep64 highest = c(0x40d0400000000000, 16640.0);          // 128 times 130
  rep64 shifter = c(0x4338000000000000, 6755399441055744.0);
  rep64 index = bits64(127);
  rep64 not_index = bits64(~127ull);
  // 2^(f/128) on |f| <= 1/2, e0 = 1: relative error 2^-41.2 (tables/fits/exp2_j128_to_float.sollya)
  rep64 e3 = c(0x3e5c6b07ce50cbdd, 2.6466406750392285e-08);
  rep64 e2 = c(0x3eeebfbf049a816b, 1.466226980834157e-05);
  rep64 e1 = c(0x3f762e42fefa4c08, 0.005415212348128591);
};

// For x a positive float and any finite y: 2^-35 relative, within 2^-154 and 2^130. 1^y and x^0 are exactly 1.
VORX_INLINE f64x2 power_in_double(f64x2 x, f64x2 y, const power_in_double_constants& k) {
  f64x2 u = min(max(ln_by_row(x, k) * (y * k.steps), k.lowest), k.highest);
  f64x2 t = u + k.shifter;  // 128 m + j, in the low bits
  f64x2 f = u - (t - k.shifter);
  f64x2 q = ((f * k.e3 + k.e2) * f + k.e1) * f;
  f64x2 high = lookup(exp2_j128.data(), as_int(t) & k.index);
  return as_float(as_int(high + high * q) + ((as_int(t) & k.not_index) << 45));
}

// Four lanes, or one, rounded to float: 0.5001 ULP. The conversion raises overflow and underflow.
[[gnu::noinline]] inline __m128 __attribute__((vectorcall))
powers_in_double(__m128 x, __m128d y_low, __m128d y_high) asm("\01vorx_powers_in_double");
inline __m128 __attribute__((vectorcall)) powers_in_double(__m128 x, __m128d y_low, __m128d y_high) {
  const power_in_double_constants& k = constant_pool<power_in_double_constants>;
  f64x2 low = power_in_double(to_double(f32x4{x}), {y_low}, k);
  return narrow(low, power_in_double(widen_high({x}), {y_high}, k)).v;
}
VORX_INLINE void power_of_positive(float x, double y, float* result) {
  f64x2 value = power_in_double(all(static_cast<double>(x)), all(y), constant_pool<power_in_double_constants>);
  _mm_store_ss(result, to_float(value).v);
}

}  // namespace vorx

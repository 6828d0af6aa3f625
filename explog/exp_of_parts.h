// e^(head + tail) in double precision: for powers, and for whatever else needs the exponential of more bits than a double has.
#pragma once

#include "explog/exponential.h"
#include "frame/head_and_tail.h"
#include "tables/exp2_j128_pairs.h"

namespace vorx {

struct exp_of_parts_constants {
  rep64 steps = c(0x40671547652b82fe, 184.6649652337873);        // 128 / ln 2
  rep64 shifter = c(0x4338000000000000, 6755399441055744.0);     // 1.5 x 2^52: the sum carries n in its low bits
  rep64 step_hi = c(0x3f762e42fefc0000, 0.0054152123482253955);  // ln 2 / 128; low 18 bits zero: n * step_hi is exact
  rep64 step_lo = c(0xbd3c610ca86c3899, -1.0082281460997769e-13);
  rep64 index = bits64(127);
  rep64 not_index = bits64(~127ull);
  // e^r - 1 - r on |r| <= 0.002712: absolute error 2^-63.6 (tables/fits/exp_of_parts.sollya); 2^-61.3 where a tail of 2^-11
  // makes |r| 0.0031
  rep64 c5 = c(0x3f8111115c46ca69, 0.008333335522228329);
  rep64 c4 = c(0x3fa55555ad10c112, 0.0416666768800288);
  rep64 c3 = c(0x3fc5555555555494, 0.1666666666666613);
  rep64 c2 = c(0x3fdfffffffffff57, 0.4999999999999906);
};
static_assert(low_zero_bits(exp_of_parts_constants{}.step_hi) >= 18);

// 2^m high (1 + rest), m = n div 128; high in [1, 2), |rest| < 0.0032. The scale belongs to the caller.
struct exponential_parts {
  f64x2 high, rest;
  i64x2 scaled;  // m in bits 7 to 18 (with sign), what is below it is zero and what is above it not wanted
};

// e^(head + tail) with an error below 2^-61 in `rest`, for |head| < 800 and |tail| < 2^-11.
VORX_INLINE exponential_parts exp_of_parts(head_and_tail<f64x2> x, const exp_of_parts_constants& k) {
  f64x2 t = x.head * k.steps + k.shifter;
  f64x2 n = t - k.shifter;
  f64x2 r = (x.head - n * k.step_hi) + (x.tail - n * k.step_lo);  // the first difference is exact
  i64x2 j = as_int(t) & k.index;
  auto [high, low] = gather_pairs(&exp2_j128_pairs[0].high, j << 4);
  f64x2 p = (r * k.c5 + k.c4) * (r * r) + (r * k.c3 + k.c2);
  return {high, r + (p * (r * r) + low), as_int(t) & k.not_index};
}

// The same as one number, where it is normal: 0.52 ULP. It gets the sign that `sign` has, as bits.
VORX_INLINE f64x2 exp_of_parts_normal(head_and_tail<f64x2> x, const exp_of_parts_constants& k, i64x2 sign = {}) {
  auto [high, rest, scaled] = exp_of_parts(x, k);
  return as_float(as_int(high + high * rest) + ((scaled << 45) + sign));
}

// The same of one lane, with gradual underflow, and overflow to infinity. Any head that is a number, infinite too.
inline int exp_of_parts_of_lane(head_and_tail<double> x, double* result) {
  if (x.head > 710) return *result = overflowed<double>(), overflow;
  if (x.head < -746) return *result = underflowed<double>(), underflow;
  auto [high, rest, m] = exp_of_parts({all(x.head), all(x.tail)}, constant_pool<exp_of_parts_constants>);
  return scaled(_mm_cvtsd_f64(high.v), _mm_cvtsd_f64(rest.v), static_cast<int32_t>(extract<0>(as_i32(m))) >> 7, result);
}

}  // namespace vorx

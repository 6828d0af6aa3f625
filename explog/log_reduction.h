// What the logarithms share: the split x = 2^k m that the float kernels start from, the reduction of the double kernels by a
// table of reciprocals, and the lane test.
#pragma once

#include "frame/kernel.h"

namespace vorx {

// The reciprocal estimate that picks rows of tables. Results depend on it in the last bit; tests put models of other processors
// in its place.
struct hardware_reciprocal {
  VORX_INLINE static f32x4 estimate(f32x4 a) { return estimate_reciprocal(a); }
};

// ---- float: x = 2^k m with m in [2/3, 4/3) ----

struct split_constants {
  rep32 two_thirds = bits32(0x3f2aaaab);
  rep32 significand = bits32(0x007fffff);
  rep32 one = c(0x3f800000, 1.0f);
};
struct split {
  f32x4 k, r;  // r = m - 1 in [-1/3, 1/3), exact
};
// Counted from 2/3, the exponent field of the difference is k and its significand that of m.
VORX_INLINE split split_at_two_thirds(f32x4 x, const split_constants& k) {
  i32x4 above = as_int(x) - k.two_thirds;
  f32x4 m = as_float((above & k.significand) + k.two_thirds);
  return {to_float(above >> 23), m - k.one};
}

// p(r) = c1 r + ... + c9 r^9: linear pairs, Horner's rule in r^2.
VORX_INLINE f32x4 polynomial_in_pairs(f32x4 r, const auto& k) {
  f32x4 r2 = r * r;
  f32x4 p = r * k.c9 + k.c8;
  p = p * r2 + (r * k.c7 + k.c6);
  p = p * r2 + (r * k.c5 + k.c4);
  p = p * r2 + (r * k.c3 + k.c2);
  return (p * r + k.c1) * r;
}

// ---- double: x = 2^k (1 + r) c with 1/c = j/512 or j/1024, j an integer from the reciprocal estimate ----

struct table_reduction_constants {
  rep64 significand = bits64(0x000fffffffffffff);
  rep64 scale = bits64(0x3f50000000000000);  // 2^-10: significands in [2^-10, 2^-9) have their reciprocals in (512, 1024]
  rep64 upper_part = bits64(0xfffffffffc000000);
  rep64 minus_one = c(0xbff0000000000000, -1.0);
  rep32 switch_point = c(0x44350000, 724.0f);  // about 1024 / sqrt 2
  rep32 bias = bits32(1022);
};
struct reciprocal_reduction {
  f64x2 r;        // |r| < 0.00135, one rounding
  f64x2 j;        // an integer in [512, 1024]
  f32x4 j_float;  // the same
};
// j is the reciprocal of the significand rounded to an integer, picked from the raw estimate: what counts is that r is computed
// for the j picked.
template <class Reciprocal>
VORX_INLINE reciprocal_reduction reduce_by_reciprocal(f64x2 x, const table_reduction_constants& k) {
  f64x2 m = (x & k.significand) | k.scale;
  f32x4 j_float = round_to_integral<to_nearest>(Reciprocal::estimate(to_float(m)));
  f64x2 j = to_double(j_float);
  f64x2 m_hi = m & k.upper_part;  // 27 bits: m_hi * j is exact, and so is m_lo * j
  f64x2 m_lo = m - m_hi;
  in_order(m_lo, m_hi);
  f64x2 r = (m_hi * j + k.minus_one) + m_lo * j;
  in_order(r, j_float);
  return {r, j, j_float};
}

struct table_entry {
  f64x2 k;      // an integer
  f64x2 log_c;  // -log(1/c)
};
// The float bits of j, shifted, are the offset of the table's entry. Up to the switch point the table is for c = 512/j, which is
// paired with k + 1, so that both sums are 0 on both sides of x = 1.
VORX_INLINE table_entry look_up(f64x2 x, f32x4 j, const double* table, const table_reduction_constants& k) {
  f64x2 log_c = gather(table, shift_right_logical(as_int(j), 11), 0x44000000 >> 11);
  i32x4 biased = shift_right_logical(pack_high_words(as_int(x)), 20);
  i32x4 above_switch = as_int(j) > k.switch_point;  // -1 where the table has 1024/j
  return {to_double((biased - k.bias) + above_switch), log_c};
}

// ---- double: ln(1 + r) of log and log1p ----

struct ln_polynomial_f64 {
  // ln(1 + r) on |r| <= 0.00135, c1 = 1: relative error 2^-52.5 (tables/fits/polynomials.sollya)
  rep64 c2 = c(0xbfdffffffffff81f, -0.49999999999988803);
  rep64 c3 = c(0x3fd55555555543c5, 0.33333333333308374);
  rep64 c4 = c(0xbfd0000148058ee1, -0.2500003054940248);
  rep64 c5 = c(0x3fc9999cacdb4d0a, 0.2000003665949424);
};
// ln(1 + r) - r
VORX_INLINE f64x2 ln_without_linear_term(f64x2 r, const ln_polynomial_f64& k) {
  f64x2 r2 = r * r;
  return r2 * ((k.c2 + k.c3 * r) + r2 * (k.c4 + k.c5 * r));
}

// ---- the lane test: whatever is not positive, normal and finite ----

struct positive_normal_f32_constants {
  rep32 smallest_normal = bits32(0x00800000);
  rep32 wrapped = bits32(0x01000000);
};
struct positive_normal_f64_constants {
  rep32 smallest_normal = bits32(0x00100000);  // of high words
  rep32 wrapped = bits32(0x00200000);
};
// One signed comparison: after the addition infinities and NaN are negative, or wrapped around to less than the bound.
VORX_INLINE i32x4 not_positive_normal(f32x4 x, const positive_normal_f32_constants& k) {
  return as_int(x) + k.smallest_normal < k.wrapped;
}
VORX_INLINE i32x4 not_positive_normal(f64x2 x, const positive_normal_f64_constants& k) {
  return words(x) + k.smallest_normal < k.wrapped;
}

}  // namespace vorx

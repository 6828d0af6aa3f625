// What asinh, acosh and atanh share: logarithms in double precision of numbers that are known in one part or in two, from the
// table of ln_in_parts.h. They are not used next to 1, where a logarithm is small: there each function has a polynomial.
#pragma once

#include "explog/ln_in_parts.h"
#include "frame/head_and_tail.h"
#include "frame/kernel.h"
#include "frame/rare.h"

namespace vorx {

// ---- one part ----

struct short_ln_constants : ln_reduction_constants {
  rep64 ln2 = c(0x3fe62e42fefa39ef, 0.6931471805599453);
  // ln(1 + r) on |r| <= 0.00587, c1 = 1: relative error 2^-34.5 (tables/fits/inverse_hyperbolic_f64.sollya)
  rep64 c4 = c(0xbfd00019995aff1f, -0.25000610328787504);
  rep64 c3 = c(0x3fd5556d47769185, 0.3333390424616243);
  rep64 c2 = c(0xbfdffffffff6fcd2, -0.499999999967213);
};

// ln v for normal v >= 1: relative error 2^-34, and ln 1 = 0.
VORX_INLINE f64x2 short_ln(f64x2 v, const short_ln_constants& k) {
  auto [e, z, offset] = reduce_to_ln_row(v, k);
  auto [reciprocal, ln_c] = gather_pairs(&ln_j128_rows[0].reciprocal, offset);
  f64x2 r = z * reciprocal - k.one;
  f64x2 p = horner(r, k.c4, k.c3, k.c2) * (r * r) + r;
  return e * k.ln2 + (ln_c + p);
}

// ---- two parts ----

struct ln_of_pair_constants : ln_reduction_constants {
  rep64 upper_half = bits64(upper_half_f64);
  rep64 half_unit = bits64(uint64_t(1) << 26);               // of the upper half
  rep64 twice_bias = bits64(uint64_t(2046) << 52);           // less the exponent field of 2^k: that of 2^-k
  rep64 ln2_hi = c(0x3fe62e42fefa3800, 0.6931471805598903);  // low 11 bits zero, like all ln c: k * ln2_hi + ln c is exact
  rep64 ln2_lo = c(0x3d2ef35793c76730, 5.497923018708371e-14);
  // ln(1 + r) - r on |r| <= 0.00587: absolute error 2^-59.9 (tables/fits/inverse_hyperbolic_f64.sollya)
  rep64 c6 = c(0xbfc5559e1d454da8, -0.1666753428386134);
  rep64 c5 = c(0x3fc999d712e6ce46, 0.2000073282521148);
  rep64 c4 = c(0xbfcfffffff9d315e, -0.24999999982027082);
  rep64 c3 = c(0x3fd55555553d543d, 0.3333333332460063);
  rep64 c2 = c(0xbfe0000000000009, -0.500000000000001);
};

// ln(head + tail) for 1 <= head < 2^1000 and a tail of a few units of it, as two parts: absolute error 2^-59 and 2^-60 of itself.
VORX_INLINE head_and_tail<f64x2> ln_of_pair(head_and_tail<f64x2> v, const ln_of_pair_constants& k) {
  i64x2 centred = as_int(v.head) + k.half_step;
  f64x2 inverse_power = as_float(k.twice_bias - (centred & k.exponent));
  f64x2 small = v.tail * inverse_power;
  f64x2 z = v.head * inverse_power;  // exact
  in_order(small, centred);
  i64x2 offset = shift_right_logical(centred, 52 - 7 - 5) & k.row_offset;
  f64x2 e = as_float(shift_right_logical(centred, 52) | k.integer) - k.biased;

  i32x4 words = as_i32(offset);
  auto low = reinterpret_cast<const ln_row*>(row_address<0>(ln_j128_rows, words, 0));
  auto high = reinterpret_cast<const ln_row*>(row_address<2>(ln_j128_rows, words, 0));
  f64x2 reciprocal = load_halves(&low->reciprocal, &high->reciprocal);
  f64x2 z_head = as_float((as_int(z) + k.half_unit) & k.upper_half);
  f64x2 r = (z_head * reciprocal - k.one) + ((z - z_head) + small) * reciprocal;  // the first product is exact
  f64x2 head = e * k.ln2_hi + load_halves(&low->hi, &high->hi);
  f64x2 tail = e * k.ln2_lo + load_halves(&low->lo, &high->lo);

  f64x2 p = horner(r, k.c6, k.c5, k.c4, k.c3, k.c2) * (r * r);
  auto sum = fast_two_sum(head, r);
  return {sum.head, sum.tail + (tail + p)};
}

// ---- roots ----

// sqrt(head + tail) in two parts, the second good to some bits; a head of 0 gives 0.
struct root_of_pair_constants {
  rep64 half = c(0x3fe0000000000000, 0.5);
  rep64 next_to_zero = c(0x2ff0000000000000, 0x1p-256);  // instead of a division by 0
};
VORX_INLINE head_and_tail<f64x2> root_of_pair(head_and_tail<f64x2> v, const auto& k) {
  f64x2 root = sqrt(v.head);
  f64x2 upper = root & k.upper_half;
  f64x2 remainder = ((v.head - upper * upper) - (root - upper) * (root + upper)) + v.tail;  // exact but for the last sum
  return {root, remainder * k.half / (root + k.next_to_zero)};
}

// x^2 in two parts, exact.
VORX_INLINE head_and_tail<f64x2> square(f64x2 x, f64x2 upper_half) {
  f64x2 upper = x & upper_half, product = x * x;
  return {product, (upper * upper - product) + (x - upper) * (x + upper)};
}

// ln(2x) for what is so large that asinh x and acosh x are that: 0.51 ULP.
inline double ln_of_twice(double x) {
  auto [head, tail] = ln_in_parts_of_lane(x);
  auto sum = two_sum(head, scalar(0x3fe62e42fefa39ef, 0.6931471805599453));
  return sum.head + (sum.tail + (tail + scalar(0x3c7abc9e3b39803f, 2.3190468138462996e-17)));
}

}  // namespace vorx

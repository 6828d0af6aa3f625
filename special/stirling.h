// log gamma(x) for large x by Stirling's series, as head and tail.
#pragma once

#include "explog/ln_in_parts.h"

namespace vorx {

struct stirling_constants {
  ln_in_parts_constants ln;
  rep64 constant = c(0x3fdacfe390c97d69, 0.4189385332046727);  // log(2 pi)/2 - 1/2
  rep64 constant_rest = c(0x3c73494bc9001442, 1.6728209650585413e-17);
  // 1/(12 x) - 1/(360 x^3) + ...: absolute error 2^-63 from 20 on, by the next term
  rep64 one_12th = c(0x3fb5555555555555, 0.08333333333333333);
  rep64 one_360th = c(0xbf66c16c16c16c17, -0.002777777777777778);
  rep64 one_1260th = c(0x3f4a01a01a01a01a, 0.0007936507936507937);
  rep64 one_1680th = c(0xbf43813813813814, -0.0005952380952380953);
  rep64 one_1188th = c(0x3f4b951e2b18ff23, 0.0008417508417508417);
  rep64 sixth_term = c(0xbf5f6ab0d9993c7d, -0.0019175269175269176);  // -691/360360
};

// For 20 <= x, as long as the result is finite; the ln of x besides. Head + tail is not head; error below 2^-60 of the head.
struct stirling_parts {
  head_and_tail<f64x2> value, ln;
};
VORX_INLINE stirling_parts stirling(f64x2 x, const stirling_constants& k) {
  const f64x2 upper_half = k.ln.upper_half, half = k.ln.half, one = k.ln.one;
  auto ln = ln_in_parts(x, k.ln);
  // (x - 1/2) (ln x - 1): the difference is exact, and so is the product of the upper halves.
  f64x2 a = x - half, a_rest = (x - a) - half, factor = ln.head - one;
  auto [head, tail] = product(cut(a, upper_half), cut(factor, upper_half));
  tail = tail + (a * ln.tail + a_rest * factor);
  auto sum = fast_two_sum<f64x2>(head, k.constant);

  f64x2 w = one / x, w2 = w * w;
  f64x2 series = w * horner(w2, k.sixth_term, k.one_1188th, k.one_1680th, k.one_1260th, k.one_360th, k.one_12th);
  tail = tail + (sum.tail + (series + k.constant_rest));
  return {fast_two_sum(sum.head, tail), ln};
}

}  // namespace vorx

// x^y = e^(y ln x) for doubles, ln x and y ln x as head and tail: the vector path that the double powers share.
#pragma once

#include "explog/exp_of_parts.h"
#include "explog/ln_in_parts.h"
#include "explog/log_reduction.h"

namespace vorx {

struct power_f64_constants : ln_in_parts_constants, exp_of_parts_constants, positive_normal_f64_constants {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep32 limit = high_words(0x40861fff);  // of |y ln x|, just below 708: beyond it 2^m may leave the normal range
};

// y ln x, the head exact for what it is the product of.
VORX_INLINE head_and_tail<f64x2> times_ln(f64x2 y, head_and_tail<f64x2> ln, const power_f64_constants& k) {
  auto [y_head, y_tail] = cut(y, k.upper_half);
  f64x2 head = (ln.head + ln.tail) & k.upper_half, tail = (ln.head - head) + ln.tail;
  return {head * y_head, tail * y + head * y_tail};
}
VORX_INLINE head_and_tail<double> times_ln(double y, head_and_tail<double> ln) {
  auto [y_head, y_tail] = cut(y);
  double head = cut(ln.head + ln.tail).head, tail = (ln.head - head) + ln.tail;
  return {head * y_head, tail * y + head * y_tail};
}

// The lane test of y ln x: large, infinite or not a number.
VORX_INLINE i32x4 exceeds_exponential(f64x2 product, const power_f64_constants& k) {
  return words(product & k.magnitude) > k.limit;
}

}  // namespace vorx

// x / pi of one lane, rounded once but for results in the last binades above the subnormal numbers and in these, which are
// rounded twice: 0.75 ULP.
#pragma once

#include <limits>

#include "frame/head_and_tail.h"

namespace vorx {

// A positive finite number as m 2^e, 1 <= m < 2.
struct normalized {
  double m;
  int e;
  VORX_INLINE explicit normalized(double x) : m(x), e(0) {
    if (x < scalar(0x0010000000000000, 0x1p-1022)) m *= 0x1p54, e = -54;
    e += static_cast<int>(bits_of(m) >> 52) - 1023;
    m = from_bits((bits_of(m) & 0x000fffffffffffff) | 0x3ff0000000000000);
  }
};

// x 2^e for e > -1200; a subnormal result is rounded once more.
VORX_INLINE double scaled(double x, int e) {
  int half = e / 2;
  return x * power_of_two<double>(half) * power_of_two<double>(e - half);
}

// (head + tail) / pi, head of 26 bits.
VORX_INLINE double over_pi(double head, double tail) {
  const double inv_pi = scalar(0x3fd45f306dc9c883, 0.31830988618379069);
  const double inv_pi_hi = scalar(0x3fd45f3068000000, 0.31830988079309464),
               inv_pi_lo = scalar(0x3e3727220a94fe14, 5.390696036528002e-09);
  return head * inv_pi_hi + (head * inv_pi_lo + tail * inv_pi);
}

// The result of asinpi and atanpi for a small x.
template <class T>
VORX_INLINE int small_over_pi(T x, T* result) {
  if (x == 0) return *result = x, ordinary;
  double wide = x;
  uint64_t sign = bits_of(wide) & 0x8000000000000000;
  normalized a(from_bits(bits_of(wide) ^ sign));
  auto [head, tail] = cut(a.m);
  double y = scaled(over_pi(head, tail), a.e);
  *result = static_cast<T>(from_bits(bits_of(y) | sign));
  return y < static_cast<double>(std::numeric_limits<T>::min()) ? underflow : ordinary;
}

}  // namespace vorx

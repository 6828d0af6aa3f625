// The rare cases of fmod, remainder and remquo: division of any x by any y, many quotient bits a step, every step exact.
//
// |x| = mx 2^ex, |y| = my 2^ey with significands in [1, 2). The remainder r of mx / my, kept within half of my on either side, is
// carried through the ex - ey bits of the quotient: r 2^k = q my + r' with q the nearest integer. A float's step has 29 bits: q
// my is exact in a double. A double's has 26: my is split, so that both products are exact. Everything is a multiple of the last
// bit of my, and r' is at most half of my, so that every difference has the bits for an exact result.
#pragma once

#include "exact/fields.h"

namespace vorx {

// The lane test: more quotient bits than the path takes, or a divisor out of its range, from `smallest` on (compared as in
// not_normal).
template <class V, class C>
VORX_INLINE i32x4 needs_long_division(V x, V y, const C& k) {
  i32x4 d = biased_exponent(x, k) - biased_exponent(y, k);
  return (d > k.quotient_bits) | ((magnitude_words(y, k) - k.smallest) > k.range);
}

template <class T>
struct division {
  using I = std::conditional_t<sizeof(T) == 4, uint32_t, uint64_t>;
  static constexpr int step_bits = sizeof(T) == 4 ? 29 : 26;

  bool is_trivial = true;  // the result is `trivial`, the quotient 0
  T trivial;
  double r, my;         // significands as above; r with the sign of the remainder of |x|
  double yh, yl;        // my = yh + yl
  int ey;               // exponent of the result's scale
  int bits;             // of the quotient that are still to come: -1 or more
  uint32_t quotient{};  // of magnitudes, its low 32 bits
  bool negative;        // sign of the quotient
  I sign;               // sign bit of x

  // Sorts out what needs no division.
  VORX_INLINE division(T x, T y) {
    I a = bits_of(x) & ~sign_bit<I>, b = bits_of(y) & ~sign_bit<I>;
    if (a >= infinity<I> || b > infinity<I> || b == 0) {
      T product = x * opaque(y);
      trivial = product / product;
      return;
    }
    trivial = x;
    sign = bits_of(x) & sign_bit<I>;
    negative = ((bits_of(x) ^ bits_of(y)) & sign_bit<I>) != 0;
    if (a == 0 || b == infinity<I>) return;
    int ex;
    r = significand(from_bits(a), ex);
    my = significand(from_bits(b), ey);
    bits = ex - ey;
    if (bits < -1) return;  // |x| is below half of |y|
    is_trivial = false;
    yh = sizeof(T) == 4 ? my : from_bits(bits_of(my) & 0xfffffffffc000000);
    yl = my - yh;
  }

  // x = significand * 2^e with the significand in [1, 2).
  VORX_INLINE static double significand(double x, int& e) {
    e = -1023;
    if (biased_exponent_of(bits_of(x)) == 0) x *= 0x1p54, e -= 54;  // doubles only
    e += biased_exponent_of(bits_of(x));
    return from_bits(with_exponent(bits_of(x), 1023));
  }

  // r 2^count = q my + r', |r'| at most half of my and a little more.
  VORX_INLINE void step(int count, double inverse) {
    double wide = r * power_of_two<double>(count);
    double shifted = wide * inverse + 0x1.8p52;  // q, in the low bits of the sum
    double q = shifted - 0x1.8p52;
    r = wide - q * yh - q * yl;
    quotient = (quotient << count) + static_cast<uint32_t>(bits_of(shifted));
  }
  // All bits of the quotient; the first step, whose r may be up to twice my, has one less than the others at most.
  VORX_INLINE void reduce() {
    if (bits < 0) {
      r *= 0.5;
      return;
    }
    double inverse = 1 / my;
    int first = static_cast<int>(static_cast<uint32_t>(bits) % step_bits);
    step(first, inverse);
    for (int left = bits - first; left > 0; left -= step_bits) step(step_bits, inverse);
  }

  // The remainders, from one within about half of my on either side.
  VORX_INLINE T remainder_towards_zero() {
    if (r < 0) r += my;
    return result();
  }
  VORX_INLINE T remainder_to_nearest() {
    double magnitude = r < 0 ? -r : r, rest = my - magnitude;  // the difference is exact where the comparison is close
    if (magnitude > rest || (magnitude == rest && (quotient & 1) != 0)) {
      quotient += r < 0 ? -1u : 1u;
      r -= r < 0 ? -my : my;
    }
    return result();
  }
  // r 2^ey with the sign of x brought in: exact, a multiple of the last bit of y, subnormal results too.
  VORX_INLINE T result() const {
    T scaled = static_cast<T>(r * power_of_two<double>(ey / 2) * power_of_two<double>(ey - ey / 2));
    return from_bits(bits_of(scaled) ^ sign);
  }
};

}  // namespace vorx

// The scalar side of the powers: special results, and powers of positive numbers in more bits than the result has.
#pragma once

#include "explog/log_rare.h"
#include "explog/power_f64.h"
#include "explog/power_in_double.h"

namespace vorx {

// What an exponent is as an integer: none, or its last bit.
enum class parity : int { fraction, odd, even };

// Infinities and NaN are no integers here.
template <class T>
VORX_INLINE parity parity_of(T y) {
  constexpr int fraction_bits = sizeof(T) == 4 ? 23 : 52, bias = sizeof(T) == 4 ? 127 : 1023;
  auto bits = bits_of(y);
  int e = static_cast<int>(bits >> fraction_bits & (2 * bias + 1)) - bias;
  if (e < 0 || e > bias) return parity::fraction;
  if (e > fraction_bits) return parity::even;
  bits = (bits | decltype(bits){1} << fraction_bits)
         << e;  // the lowest bit before the binary point is that of weight 2^fraction_bits
  if (bits & ((decltype(bits){1} << fraction_bits) - 1)) return parity::fraction;
  return bits >> fraction_bits & 1 ? parity::odd : parity::even;
}

template <class T>
VORX_INLINE bool is_negative(T x) {
  return bits_of(x) >> (8 * sizeof(T) - 1) != 0;
}

// x^y for a positive finite x and any finite y: float 0.5001 ULP, double 0.54 ULP, subnormal results rounded once.
inline void power_of_positive(double x, double y, double* result) {
  exp_of_parts_of_lane(times_ln(y, ln_in_parts_of_lane(x)), result);
}

// A power whose arguments are not a positive finite x with a finite y. `is` is what y is as an integer, and exact its value,
// where the y of the other type is rounded.
template <class T>
[[gnu::noinline]] int special_power(T x, T y, double exact, parity is, T* result) {
  T sign = is == parity::odd && is_negative(x) ? T(-1) : T(1);
  if (x == 1 || y == 0) {
    opaque(opaque(x) + y);  // a signalling NaN raises invalid
    return *result = 1, ordinary;
  }
  if (x != x || y != y) return *result = opaque(x) + y, ordinary;
  if (x == 0) {
    if (y > 0) return *result = sign * (opaque(x) * x), ordinary;
    return *result = sign / (opaque(x) * x), domain_error;
  }
  bool y_is_finite = !is_not_finite(bits_of(y));
  if (x == -1 && (is != parity::fraction || !y_is_finite)) return *result = sign, ordinary;
  if (!is_not_finite(bits_of(x)) && y_is_finite) {
    if (x < 0 && is == parity::fraction) return *result = invalid<T>(), domain_error;
    power_of_positive(from_bits(bits_of(x) << 1 >> 1), exact, result);
    return *result *= sign, ordinary;
  }
  // An infinity. 1 and -1 are done, so that x is above or below.
  bool large = from_bits(bits_of(x) << 1 >> 1) > 1;
  if (large && y > 0) return *result = y * (opaque(x) * x) * sign, ordinary;
  if (large || y > 0) return *result = sign * T(0), ordinary;
  return *result = opaque(y) * y, ordinary;
}

}  // namespace vorx

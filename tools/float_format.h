// The formats of the two element types as data, and values from and to their bits, which travel as uint64_t whatever the type:
// for tools and tests.
#pragma once

#include "frame/convention.h"
#include "frame/rare.h"

namespace vorx {

struct float_format {
  int bytes, precision, lowest_exponent, highest_exponent;  // values: 2^lowest_exponent is the smallest normal number
  uint64_t sign, infinity, quiet;                           // bits: the sign, +infinity, the bit that makes a NaN quiet

  constexpr uint64_t magnitude(uint64_t b) const { return b & (sign - 1); }
  constexpr bool is_nan(uint64_t b) const { return magnitude(b) > infinity; }
  constexpr bool is_infinite(uint64_t b) const { return magnitude(b) == infinity; }
  constexpr bool is_finite(uint64_t b) const { return magnitude(b) < infinity; }
  constexpr bool is_zero(uint64_t b) const { return magnitude(b) == 0; }
  constexpr bool is_negative(uint64_t b) const { return (b & sign) != 0; }
  constexpr bool is_signalling(uint64_t b) const { return is_nan(b) && !(b & quiet); }
  constexpr bool is_normal(uint64_t b) const { return is_finite(b) && magnitude(b) >> (precision - 1) != 0; }
  constexpr int fraction_bits() const { return precision - 1; }
  constexpr int bias() const { return highest_exponent; }
  constexpr uint64_t least_normal() const { return uint64_t{1} << fraction_bits(); }
  constexpr uint64_t mask() const { return sign | (sign - 1); }
  constexpr uint64_t default_nan() const { return sign | infinity | quiet; }  // what the processor makes of an invalid operation
};
inline constexpr float_format binary32{4, 24, -126, 127, 0x80000000, 0x7f800000, 0x00400000};
inline constexpr float_format binary64{8, 53, -1022, 1023, 0x8000000000000000, 0x7ff0000000000000, 0x0008000000000000};

constexpr const float_format& format_of(element e) { return e == element::f32 ? binary32 : binary64; }
template <class T>
inline constexpr element element_of = sizeof(T) == 4 ? element::f32 : element::f64;

// A T from its bits; a number rounded to a type, as bits (bits_of(T) is in frame/rare.h).
template <class T>
VORX_INLINE T value_of(uint64_t b) {
  if constexpr (sizeof(T) == 4)
    return from_bits(static_cast<uint32_t>(b));
  else
    return from_bits(b);
}
inline uint64_t bits_of(element e, long double x) {
  return e == element::f32 ? bits_of(static_cast<float>(x)) : bits_of(static_cast<double>(x));
}
// A number of either type as a double: exact for all but signalling NaNs, which become quiet.
inline double as_double(element e, uint64_t b) { return e == element::f32 ? value_of<float>(b) : value_of<double>(b); }

}  // namespace vorx

// What the scalar rare-case routines share: fields of a number, scaling, and special results made by arithmetic, so that the
// flag that belongs to them is raised.
#pragma once

#include <bit>
#include <cstdint>

#include "frame/kernel.h"

namespace vorx {

VORX_INLINE uint32_t bits_of(float x) { return std::bit_cast<uint32_t>(x); }
VORX_INLINE uint64_t bits_of(double x) { return std::bit_cast<uint64_t>(x); }
VORX_INLINE float from_bits(uint32_t b) { return std::bit_cast<float>(b); }
VORX_INLINE double from_bits(uint64_t b) { return std::bit_cast<double>(b); }

// Bits of which the compiler does not know that they are those of a number: clang 19 tests those by floating-point comparisons,
// which raise flags for signalling NaNs and subnormal numbers.
VORX_INLINE uint32_t only_bits(uint32_t b) {
  asm volatile("" : "+r"(b));
  return b;
}
VORX_INLINE uint64_t only_bits(uint64_t b) {
  asm volatile("" : "+A"(b));
  return b;
}

// Infinity or NaN, by the bits.
VORX_INLINE bool is_not_finite(uint32_t b) { return (b & 0x7f800000) == 0x7f800000; }
VORX_INLINE bool is_not_finite(uint64_t b) { return (b & 0x7ff0000000000000) == 0x7ff0000000000000; }

// 2^n for a normal 2^n.
template <class T>
VORX_INLINE T power_of_two(int n) {
  if constexpr (sizeof(T) == 4)
    return from_bits(static_cast<uint32_t>(n + 127) << 23);
  else
    return from_bits(static_cast<uint64_t>(static_cast<uint32_t>(n + 1023)) << 52);
}

// +infinity with overflow raised; +0 with underflow raised; NaN with invalid raised; -infinity with division by zero raised.
template <class T>
VORX_INLINE T overflowed() {
  T huge = opaque(power_of_two<T>(sizeof(T) == 4 ? 100 : 1000));
  return huge * huge;
}
template <class T>
VORX_INLINE T underflowed() {
  T tiny = opaque(power_of_two<T>(sizeof(T) == 4 ? -100 : -1000));
  return tiny * tiny;
}
template <class T>
VORX_INLINE T invalid() {
  T zero = opaque(T(0));
  return zero / zero;
}
template <class T>
VORX_INLINE T pole() {
  return T(-1) / opaque(T(0));
}

}  // namespace vorx

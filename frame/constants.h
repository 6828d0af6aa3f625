// Replicated constants: one value in every lane of a 16-byte aligned slot, given by its bits and checked against its decimal.
#pragma once

#include <bit>
#include <cstdint>

#include "frame/simd.h"

namespace vorx {

// A replicated constant converts to the register type that the expression asks for; it is used as a memory operand.
struct alignas(16) rep32 {
  uint32_t lane[4];
  VORX_INLINE operator f32x4() const { return {*reinterpret_cast<const __m128*>(lane)}; }
  VORX_INLINE operator i32x4() const { return {*reinterpret_cast<const __m128i*>(lane)}; }
};
struct alignas(16) rep64 {
  uint64_t lane[2];
  VORX_INLINE operator f64x2() const { return {*reinterpret_cast<const __m128d*>(lane)}; }
  VORX_INLINE operator i64x2() const { return {*reinterpret_cast<const __m128i*>(lane)}; }
};
VORX_INLINE f32x4 as_float(const rep32& a) { return a; }
VORX_INLINE f64x2 as_float(const rep64& a) { return a; }
VORX_INLINE i32x4 as_int(const rep32& a) { return a; }
VORX_INLINE i64x2 as_int(const rep64& a) { return a; }

// Masks and integers: bits only.
consteval rep32 bits32(uint32_t b) { return {{b, b, b, b}}; }
consteval rep64 bits64(uint64_t b) { return {{b, b}}; }
// A 32-bit integer in the high word of each 64-bit lane, zero below: for lane tests on high words.
consteval rep32 high_words(uint32_t b) { return {{0, b, 0, b}}; }

// Scalar constants: does not compile when the decimal does not round to the bits.
[[noreturn]] inline void decimal_does_not_round_to_bits() { __builtin_unreachable(); }
consteval float scalar(uint32_t bits, float decimal) {
  if (std::bit_cast<uint32_t>(decimal) != bits) decimal_does_not_round_to_bits();
  return decimal;
}
consteval double scalar(uint64_t bits, double decimal) {
  if (std::bit_cast<uint64_t>(decimal) != bits) decimal_does_not_round_to_bits();
  return decimal;
}

// Replicated constants, checked in the same way.
consteval rep32 c(uint32_t bits, float decimal) { return bits32(std::bit_cast<uint32_t>(scalar(bits, decimal))); }
consteval rep64 c(uint64_t bits, double decimal) { return bits64(std::bit_cast<uint64_t>(scalar(bits, decimal))); }

// Trailing zero bits of a constant's significand: the product with an integer below 2^n is exact when n are zero.
consteval int low_zero_bits(const rep32& a) { return std::countr_zero(a.lane[0]); }
consteval int low_zero_bits(const rep64& a) { return std::countr_zero(a.lane[0]); }

// p(x) by Horner's rule on registers or scalars, the coefficient of the highest power first; every product and sum is rounded.
template <class X, class First, class... Rest>
VORX_INLINE X horner(X x, const First& highest, const Rest&... rest) {
  X p = highest;
  ((p = x * p + static_cast<X>(rest)), ...);  // x first: its register takes the result
  return p;
}

}  // namespace vorx

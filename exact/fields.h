// The fields of a number, for kernels that take numbers apart: constants and steps that read the same in both types. Double
// kernels work on the high word of each lane (words 1 and 3); what they leave in the low words is not used.
#pragma once

#include "frame/kernel.h"
#include "frame/rare.h"

namespace vorx {

// Scalar view of a format.
template <class E>
struct format;
template <>
struct format<f32> {
  static constexpr int fraction_bits = 23, bias = 127, max_field = 0xff;
  static constexpr int normalise = 25;  // 2^25 makes any subnormal normal
};
template <>
struct format<f64> {
  static constexpr int fraction_bits = 52, bias = 1023, max_field = 0x7ff;
  static constexpr int normalise = 54;
};

// The words that hold sign and exponent.
VORX_INLINE i32x4 field_words(f32x4 x) { return as_int(x); }
VORX_INLINE i32x4 field_words(f64x2 x) { return words(x); }
VORX_INLINE i32x4 field_words(i32x4 a) { return a; }
VORX_INLINE i32x4 field_words(i64x2 a) { return as_i32(a); }

// The words without their sign, and the biased exponents in them: 0 to 255, or 0 to 2047.
template <class V, class C>
VORX_INLINE i32x4 magnitude_words(V x, const C& k) {
  return field_words(x & k.magnitude);
}
template <class V, class C>
VORX_INLINE i32x4 biased_exponent(V x, const C& k) {
  return shift_right_logical(magnitude_words(x, k), sizeof(x.v[0]) == 4 ? 23 : 20);
}

// One integer for each lane, packed: nothing to do for floats, the high words for doubles.
template <class E>
VORX_INLINE i32x4 pack_lanes(i32x4 a) {
  if constexpr (E::lanes == 4)
    return a;
  else
    return pack_high_words(as_i64(a));
}

// Flags every lane that is not a normal number. With w the sign and exponent word without its sign: w - smallest wraps to the
// lowest integers exactly for normal numbers, which leaves one signed comparison.
template <class E>
struct normal_constants {
  typename E::constant magnitude = pattern<E>(0x7fffffff, 0x7fffffffffffffff);
  rep32 smallest = bits32(E::lanes == 4 ? 0x80800000 : 0x80100000);
  rep32 range = bits32(E::lanes == 4 ? 0xfeffffff : 0xffdfffff);
};
template <class V, class C>
VORX_INLINE i32x4 not_normal(V x, const C& k) {
  return (magnitude_words(x, k) - k.smallest) > k.range;
}

// Scalar fields.
template <class I>
VORX_INLINE int biased_exponent_of(I bits) {
  if constexpr (sizeof(I) == 4)
    return static_cast<int>(bits >> 23 & 0xff);
  else
    return static_cast<int>(static_cast<uint32_t>(bits >> 32) >> 20 & 0x7ff);
}
// The bits with the exponent field replaced.
template <class I>
VORX_INLINE I with_exponent(I bits, int biased) {
  constexpr int shift = sizeof(I) == 4 ? 23 : 52;
  constexpr I field = sizeof(I) == 4 ? I{0x7f800000} : static_cast<I>(0x7ff0000000000000);
  return (bits & ~field) | static_cast<I>(static_cast<uint32_t>(biased)) << shift;
}
template <class I>
inline constexpr I sign_bit = I{1} << (8 * sizeof(I) - 1);
template <class I>
inline constexpr I infinity = sizeof(I) == 4 ? I{0x7f800000} : static_cast<I>(0x7ff0000000000000);
template <class I>
VORX_INLINE bool is_zero(I bits) {
  return (bits & ~sign_bit<I>) == 0;
}
template <class I>
VORX_INLINE bool is_nan(I bits) {
  return (bits & ~sign_bit<I>) > infinity<I>;
}

// What the selections between x and y share: lanes with an infinity or a NaN are special, and a NaN gives way to a number.
template <class E>
struct finite_constants {
  typename E::constant magnitude = pattern<E>(0x7fffffff, 0x7fffffffffffffff);
  rep32 largest = bits32(E::lanes == 4 ? 0x7f7fffff : 0x7fefffff);  // of a finite number's sign and exponent word
};
template <class V, class C>
VORX_INLINE i32x4 not_finite(V x, const C& k) {
  return magnitude_words(x, k) > k.largest;
}
template <class V, class C>
VORX_INLINE i32x4 not_finite(V x, V y, const C& k) {
  return max(magnitude_words(x, k), magnitude_words(y, k)) > k.largest;
}
// Without a NaN the path's result stands.
template <class T>
VORX_INLINE int choose_number(const T* x, const T* y, T* result) {
  if (is_nan(bits_of(*y))) *result = *x;
  if (is_nan(bits_of(*x))) *result = *y;
  return ordinary;
}

// The two parts of what has no fraction: an infinity or a zero gives a zero of its sign and itself, a NaN itself twice, quiet.
template <class T>
VORX_INLINE int split_special(const T* x, T* fraction, T* integral) {
  auto bits = bits_of(*x);
  if (is_nan(bits)) {
    *fraction = *integral = opaque(*x) + *x;
  } else {
    *fraction = from_bits(bits & sign_bit<decltype(bits)>);
    *integral = *x;
  }
  return ordinary;
}

}  // namespace vorx

// Numbers in two parts, head + tail, for what needs more bits than one register or scalar has. The parts of a sum do not overlap
// by more than a bit; those of a product may. T is f32x4, f64x2, float or double.
#pragma once

#include <type_traits>

#include "frame/rare.h"

namespace vorx {

template <class T>
struct head_and_tail {
  T head, tail;
};

// a + b exactly (Knuth); and for |a| >= |b| or a = 0 (Dekker).
template <class T>
VORX_INLINE head_and_tail<T> two_sum(T a, T b) {
  T s = a + b, of_b = s - a, of_a = s - of_b;
  return {s, (a - of_a) + (b - of_b)};
}
template <class T>
VORX_INLINE head_and_tail<T> fast_two_sum(T a, T b) {
  T s = a + b;
  return {s, (a - s) + b};
}

// The bits of half a significand: 26 of a double's, 12 of a float's. Products of two heads that are cut by them are exact.
constexpr uint64_t upper_half_f64 = 0xfffffffff8000000;
constexpr uint32_t upper_half_f32 = 0xfffff000;

// x = head + tail exactly, the head cut to the bits of the mask.
template <class T>
VORX_INLINE head_and_tail<T> cut(T x, std::type_identity_t<T> mask) {
  T head = x & mask;
  return {head, x - head};
}
VORX_INLINE head_and_tail<double> cut(double x) {
  double head = from_bits(bits_of(x) & upper_half_f64);
  return {head, x - head};
}

// x y of numbers whose heads have half a significand: the head is exact, the tail is rounded, to 2^-26 of a unit of the head for
// doubles.
template <class T>
VORX_INLINE head_and_tail<T> product(head_and_tail<T> x, head_and_tail<T> y) {
  return {x.head * y.head, (x.head * y.tail + x.tail * y.head) + x.tail * y.tail};
}

}  // namespace vorx

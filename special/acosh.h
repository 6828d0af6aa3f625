// acosh(x) = ln(x + sqrt(x^2 - 1)).
#pragma once

#include "explog/log1p.h"
#include "special/inverse_hyperbolic.h"

namespace vorx {

// NaN below 1, for -inf and for NaN; +inf for itself.
template <class T>
VORX_INLINE int acosh_of_special(T x, T* result) {
  if (x < 1) return *result = invalid<T>(), domain_error;
  return *result = opaque(x) * x, ordinary;
}

struct acosh_f32_constants : short_ln_constants {
  rep32 from_one = bits32(0x80000000 - 0x3f800000);  // carries 1 to the most negative integer, and what is less beyond
  rep32 largest = bits32(0x80000000 + 0x7f7fffff - 0x3f800000);
};

// Accurate: 0.505 ULP, through double, in which the square is exact. Special results: acosh(1) = +0, NaN below 1 and for NaN,
// acosh(+inf) = +inf.
struct acosh_f32 : kernel<f32, acosh_f32_constants> {
  static constexpr double max_ulp = 0.505;
  static constexpr float seams[] = {1.0f};

  static f64x2 of_two(f64x2 x, const constants& k) { return short_ln(x + sqrt(x * x - k.one), k); }
  static f32x4 path(f32x4 x, const constants& k) {
    f64x2 low = of_two(to_double(x), k);
    in_order(low, x);
    f64x2 high = of_two(widen_high(x), behind(low, k));
    return narrow(low, high);
  }
  static f32x4 lower_half(f32x4 x, const constants& k) { return to_float(of_two(to_double(x), k)); }
  static i32x4 special(f32x4 x, const constants& k) { return as_int(x) + k.from_one > k.largest; }

  static int rare(const float* x, float* result) { return acosh_of_special(*x, result); }
};

struct acosh_f32_native_constants : log1p_f32_native_constants {
  rep32 from_one = bits32(0x80000000 - 0x3f800000);
  rep32 largest = bits32(0x80000000 + 0x5d800000 - 0x3f800000);  // 2^60: its square is finite
};

// Native: log1p(t + sqrt(t (x + 1))) with t = x - 1, with the logarithm of native log1p. Relative error 2^-12.8, at 1 too;
// special results as above.
struct acosh_f32_native : kernel<f32, acosh_f32_native_constants> {
  static constexpr double max_ulp = 1480;
  static constexpr float seams[] = {1.0f, 0x1p60f};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 t = x - k.one;
    return log1p_f32_native::path(t + sqrt(t * (x + k.one)), k);
  }
  static i32x4 special(f32x4 x, const constants& k) { return as_int(x) + k.from_one > k.largest; }

  static int rare(const float* x, float* result) {
    if (!(*x >= 1) || is_not_finite(bits_of(*x))) return acosh_of_special(*x, result);
    _mm_store_ss(result, acosh_f32::path(all(*x), constant_pool<acosh_f32_constants>).v);
    return ordinary;
  }
};

// High words, the same way: from that of 1 to the last below 2^500. What is less than 1 has a high word below that of 1.
struct acosh_range_f64 {
  rep32 from_one = high_words(0x80000000 - 0x3ff00000);
  rep32 largest = high_words(0x80000000 + 0x5f2fffff - 0x3ff00000);
};
VORX_INLINE i32x4 not_from_one(f64x2 x, const acosh_range_f64& k) { return words(x) + k.from_one > k.largest; }

// What is not in [1, 2^500).
VORX_INLINE int acosh_outside(const double* x, double* result) {
  if (!(*x >= 1) || is_not_finite(bits_of(*x))) return acosh_of_special(*x, result);
  return *result = ln_of_twice(*x), ordinary;
}

struct acosh_f64_constants : ln_of_pair_constants, root_of_pair_constants, acosh_range_f64 {
  rep64 small = c(0x3f90000000000000, 0x1p-6);
  // acosh(1 + t) / sqrt(2t) on 0 <= t <= 1/64, a0 = 1: relative error 2^-58.7 (tables/fits/inverse_hyperbolic_f64.sollya)
  rep64 a5 = c(0xbf4681157411831a, -0.0006867747071162861);
  rep64 a4 = c(0x3f5f1b8f201744c2, 0.0018986604412599005);
  rep64 a3 = c(0xbf76db6d4623461c, -0.005580355502574654);
  rep64 a2 = c(0x3f933333331ab747, 0.018749999994432966);
  rep64 a1 = c(0xbfb555555555539b, -0.0833333333333272);
};

// Accurate: 0.555 ULP; next to 1 a polynomial in t = x - 1, which is exact, times sqrt(2t). Special results as for float.
struct acosh_f64 : kernel<f64, acosh_f64_constants> {
  static constexpr double max_ulp = 0.555;
  static constexpr double seams[] = {1.0, 1.015625, 0x1p500};

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 t = x - k.one;
    f64x2 next_to_one = as_float(t < k.small);
    auto z = square(x, k.upper_half);
    f64x2 less_one = z.head - k.one;
    f64x2 less_one_tail = ((z.head - less_one) - k.one) + z.tail;
    auto root = root_of_pair({select(as_int(next_to_one), t + t, less_one), clear(next_to_one, less_one_tail)}, k);
    auto v = fast_two_sum(x, root.head);
    auto ln = ln_of_pair({v.head, v.tail + root.tail}, k);

    f64x2 s = root.head + (root.tail + root.head * (t * horner(t, k.a5, k.a4, k.a3, k.a2, k.a1)));
    return select(as_int(next_to_one), s, ln.head + ln.tail);
  }
  static i32x4 special(f64x2 x, const constants& k) { return not_from_one(x, k); }

  static int rare(const double* x, double* result) { return acosh_outside(x, result); }
};

struct acosh_f64_native_constants : short_ln_constants, acosh_range_f64 {
  rep64 small = c(0x3f50000000000000, 0x1p-10);
  rep64 sixth = c(0x3fc5555555555555, 0.16666666666666666);
};

// Native: the same in one part; s - s^3/6 where s = sqrt(x^2 - 1) is below 2^-10. Relative error 2^-34.5; special results as
// above.
struct acosh_f64_native : kernel<f64, acosh_f64_native_constants> {
  static constexpr double max_ulp = 372000;
  static constexpr double seams[] = {1.0, 1.0000005, 0x1p500};

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 s = sqrt((x - k.one) * (x + k.one));
    f64x2 ln = short_ln(x + s, k);
    return select(s < k.small, s - s * s * (s * k.sixth), ln);
  }
  static i32x4 special(f64x2 x, const constants& k) { return not_from_one(x, k); }

  static int rare(const double* x, double* result) { return acosh_outside(x, result); }
};

}  // namespace vorx

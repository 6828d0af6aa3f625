// pown(x, n) = x^n for integers n: |x|^n as in pow, with the sign of x where n is odd.
#pragma once

#include "explog/pow.h"

namespace vorx {

// The sign of x where n is odd.
VORX_INLINE f32x4 sign_of_power(f32x4 x, i32x4 n) { return as_float(n << 31) & x; }
VORX_INLINE f64x2 sign_of_power(f64x2 x, i32x4 n) { return as_float(extend_zero(n) << 63) & x; }

struct pown_f32_constants : power_f32_constants {
  // e^q on |q| <= ln 2 / 2: relative error 2^-22.7 (tables/fits/polynomials.sollya). The constant term is not 1:
  // that is meant.
  rep32 g5 = c(0x3c0950ef, 0.00838111248f);
  rep32 g4 = c(0x3d2bb1b6, 0.0419175252f);
  rep32 g3 = c(0x3e2aa9c6, 0.166663259f);
  rep32 g2 = c(0x3efffe85, 0.499988705f);
  rep32 g1 = c(0x3f800001, 1.00000012f);
  rep32 g0 = c(0x3f800001, 1.00000012f);
  rep32 limit = c(0x42ae9a00, 87.30078125f);  // of |n ln x|
  rep32 longest = bits32(0x01000000);         // |n|: a longer n is rounded as a float
  rep32 smallest_normal = bits32(0x00800000);
  rep32 coarse_limit = c(0x42ae8000, 87.25f);
  rep32 short_bias = bits32(0x80001000);  // moves -4096 to the smallest integer
  rep32 shortest_end = bits32(0x80002000);
};

// Accurate: 12.2 ULP. pown(x, 0) = 1, for NaN too; 1^n = 1.00000012 for other n. +-0 to a negative power is an infinity, to a
// positive power a zero, with the sign of x for odd n only.
struct pown_f32 : kernel<f32, pown_f32_constants> {
  static constexpr double max_ulp = 12.3;
  static constexpr float seams[] = {0x1p-126f, 0x1.fc0002p-1f, 1.0f, 0x1.03fffep0f};
  static constexpr bool test_on_path = true;

  // Twelve bits of n at most: its product with the twelve of the logarithm is exact.
  static head_and_tail<f32x4> short_product(f32x4 x, i32x4 n, const constants& k) {
    auto [s_hi, s_lo] = twelve_bits_and_rest(ln_of_power<base::either_sign>(x, k), k);
    f32x4 y = to_float(n);
    return {s_hi * y, s_lo * y};
  }
  static f32x4 power_of_product(head_and_tail<f32x4> p, f32x4 x, i32x4 n, const constants& k) {
    in_register(x), in_register(n);
    i32x4 n_is_zero = n == i32x4{_mm_setzero_si128()};  // -1 where the exponential is 1.00000012
    return exp_of_product(p, k, k, n_is_zero | as_int(sign_of_power(x, n)));
  }

  struct halfway {
    f32x4 x;
    i32x4 n;
    head_and_tail<f32x4> product;
    i32x4 flags;
  };
  // The lane test lets through what is easy to tell, and it is less than what the path is right for. x that is not between the
  // smallest normal number and the largest has k = -127 or 128, or the logarithm of the latter: 87.33 or more, and so has its
  // product with any n but 0, for which the path makes 1 of them. Up to 87.25, the product's tail is less than 0.05: the result
  // is normal.
  static halfway first_half(f32x4 x, i32x4 n, const constants& k) {
    auto product = short_product(x, n, k);
    in_register(x), in_register(n);
    return {x, n, product,
            ((as_int(copy(product.head)) & k.magnitude) > k.coarse_limit) | (copy(n) + k.short_bias > k.shortest_end)};
  }
  static f32x4 second_half(const halfway& h, const constants& k) { return power_of_product(h.product, h.x, h.n, k); }
  static f32x4 path(f32x4 x, i32x4 n, const constants& k) { return second_half(first_half(x, n, k), k); }
  static i32x4 large(f32x4 x, i32x4 n, const constants& k) { return first_half(x, n, k).flags; }
  // Of the lanes that are large, those that the path of floats is right for with n in two parts have its bits; all others, and
  // no neighbour has any others beside them.
  static f32x4 large_path(f32x4 x, i32x4 n) {
    const constants& k = constant_pool<constants>;
    f32x4 ax = x & k.magnitude;
    auto product = times_ln(to_float(n), ln_of_power(ax, k), k);
    // Not exact as a float; results below the normal range.
    i32x4 too_long = as_int(k.longest) - magnitude(n), too_small = as_int(exp_of_product(product, k, k)) - k.smallest_normal;
    i32x4 too_large = not_in_power_range(ax, k) | ((as_int(product.head) & k.magnitude) > k.limit) | too_long | too_small;
    f32x4 in_floats = power_of_product(product, x, n, k);
    if (sign_mask(as_float(too_large)) == 0) return in_floats;
    f32x4 in_double = {powers_in_double(ax.v, to_double(n).v, to_double(upper_half(n)).v)};
    return select(too_large, in_double | sign_of_power(x, n), in_floats);
  }
  static i32x4 special(f32x4 x, i32x4, const constants& k) { return not_positive_finite(x & k.magnitude, k); }
  static int rare(const float* x, const int32_t* n, float* result) {
    return special_power<float>(*x, static_cast<float>(*n), *n, *n & 1 ? parity::odd : parity::even, result);
  }
};

struct pown_f64_constants : power_f64_constants {
  rep64 upper_word = bits64(0xffffffff00000000);         // 21 bits: the product with any n is exact
  rep64 product_magnitude = bits64(0x7fffffffffffffff);  // beside `magnitude`, which would be spilled for it
};

// Accurate: 0.54 ULP; any n is exact. Special results as above, but 1^n is 1.
struct pown_f64 : kernel<f64, pown_f64_constants> {
  static constexpr double max_ulp = 0.54;
  static constexpr double seams[] = {0x1p-1022, 0x1.ffp-1, 1.0, 0x1.01p0};
  static constexpr bool test_on_path = true;

  static head_and_tail<f64x2> product(f64x2 ax, i32x4 n, const constants& k) {
    auto ln = ln_in_parts(ax, k);
    f64x2 head = (ln.head + ln.tail) & k.upper_word, tail = (ln.head - head) + ln.tail, y = to_double(n);
    return {head * y, tail * y};
  }
  struct halfway {
    f64x2 x;
    i32x4 n;
    head_and_tail<f64x2> p;
    i32x4 flags;
  };
  // x that is not normal has k = -1023 or 1024, a logarithm beyond the limit, and so is its product with any n but 0, for which
  // the path makes 1 of every x.
  static halfway first_half(f64x2 x, i32x4 n, const constants& k) {
    auto p = product(copy(x) & k.magnitude, n, k);
    return {x, n, p, words(copy(p.head) & k.product_magnitude) > k.limit};
  }
  static f64x2 second_half(const halfway& h, const constants& k) {
    return exp_of_parts_normal(h.p, k, as_int(sign_of_power(h.x, h.n)));
  }
  static f64x2 path(f64x2 x, i32x4 n, const constants& k) { return second_half(first_half(x, n, k), k); }
  static i32x4 special(f64x2 x, i32x4 n, const constants& k) { return first_half(x, n, k).flags; }
  static int rare(const double* x, const int32_t* n, double* result) {
    return special_power<double>(*x, *n, *n, *n & 1 ? parity::odd : parity::even, result);
  }
};

// Native: 3214 ULP (1.9e-4 relative) for normal x and results in the normal range; unspecified for other x.
struct pown_f32_native : kernel<f32, native_power_f32_constants> {
  static constexpr double max_ulp = 3270;
  static f32x4 path(f32x4 x, i32x4 n, const constants& k) {
    return native_exp2(native_log2(x & k.magnitude, k) * to_float(n), k) | sign_of_power(x, n);
  }
};

// Native: 4.7e5 ULP (5.2e-11 relative) for the same arguments.
struct pown_f64_native : kernel<f64, native_power_f64_constants> {
  static constexpr double max_ulp = 4.76e5;
  static f64x2 path(f64x2 x, i32x4 n, const constants& k) {
    return native_power(x & k.magnitude, to_double(n), k) | sign_of_power(x, n);
  }
};

}  // namespace vorx

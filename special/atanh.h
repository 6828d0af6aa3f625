// atanh(x) = sign(x) log1p(2|x| / (1 - |x|)) / 2.
#pragma once

#include "explog/log_reduction.h"
#include "special/inverse_hyperbolic.h"

namespace vorx {

// atanh x of what the paths do not take, |x| >= 1 and NaN: a pole at +-1, NaN beyond.
template <class T>
VORX_INLINE int atanh_of_not_inside(T x, T* result) {
  if (x != x) return *result = opaque(x) * x, ordinary;
  if (x == 1 || x == -1) return *result = x / opaque(T(0)), singularity;
  return *result = invalid<T>(), domain_error;
}

struct atanh_f32_constants {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 sign = bits32(0x80000000);
  rep32 one = c(0x3f800000, 1.0f);
  rep32 half = c(0x3f000000, 0.5f);
  rep32 upper_half = bits32(0xfffff000);  // 12 bits: products of two such numbers are exact
  rep32 minus_two_thirds = bits32(0xbf2aaaab);
  rep32 exponent = bits32(0xff800000);
  rep32 half_ln2 = c(0x33317218, 4.131479e-08f);  // of 0.693147182 (0x3f317218), times 2^-23
  // ln(1 + r) on |r| <= 1/3, fixed term r: relative error 2^-24.6 (tables/fits/polynomials.sollya)
  rep32 c9 = c(0x3e0d84ed, 0.138202384f);
  rep32 c8 = c(0xbe1ad9e3, -0.151221797f);
  rep32 c7 = c(0x3e0fcb12, 0.140423089f);
  rep32 c6 = c(0xbe28ad37, -0.164723262f);
  rep32 c5 = c(0x3e4ce190, 0.200079203f);
  rep32 c4 = c(0xbe80058e, -0.250042379f);
  rep32 c3 = c(0x3eaaaa94, 0.333332658f);
  rep32 c2 = c(0xbf000000, -0.5f);
  rep32 below_one = bits32(0x3f7fffff);
};

// Accurate: 2.10 ULP. Special results: atanh(+-0) = +-0, atanh(+-1) = +-inf, NaN beyond and for NaN.
//
// All but two or three operations are one chain, so that what counts is how many of them wait at a time: hence the signs of d and
// s, which save copies, and the half of r.
template <class Reciprocal = hardware_reciprocal>
struct atanh_f32_with : kernel<f32, atanh_f32_constants> {
  static constexpr double max_ulp = 2.10;
  static constexpr float seams[] = {-1.0f, -0.2f, 0.0f, 0.2f, 1.0f};

  static f32x4 path(f32x4 x, const constants& k) {
    // q = 2a / (1 - a), and d = a - 1 = d_hi - d_lo: -q = q_hi + q_lo from the processor's estimate of the reciprocal of the
    // denominator's upper half, cut to 12 bits, and its error e.
    f32x4 a = x & k.magnitude;
    f32x4 d_hi = (a - k.one) & k.upper_half;
    f32x4 y = Reciprocal::estimate(d_hi) & k.upper_half;
    f32x4 d_lo = (d_hi + k.one) - a;  // the sum is exact: both are multiples of 2^-24
    f32x4 n = a + a;
    f32x4 n_hi = n & k.upper_half;
    f32x4 n_lo = n - n_hi;
    f32x4 e = (d_hi * y - k.one) - d_lo * y;
    e = e * e - e;
    f32x4 q_hi = n_hi * y;  // exact
    f32x4 q_tail = n_lo * y;
    f32x4 q_lo = e * q_hi + (q_tail + e * q_tail);

    // 1 + q = t - s. The first two sums of t are exact: 1 + s is but for the largest a, where it is off by 1 in 2^25, and q_hi is
    // so close to q that s takes it up.
    f32x4 s = (q_hi + q_lo) - k.one;
    f32x4 t = ((k.one + s) - q_hi) - q_lo;

    // -s = 2^m f with f in [2/3, 4/3), m in the exponent's place, and ln(2^m (1 + r)) / 2
    i32x4 m = (as_int(s) - k.minus_two_thirds) & k.exponent;
    f32x4 f_less_1 = as_float(as_int(s) - m) + k.one;  // negative
    in_order(f_less_1, t);
    f32x4 r = t * as_float(as_int(k.one) - m) - f_less_1;
    f32x4 half_r = r * k.half;
    f32x4 p = horner(r, k.c9, k.c8, k.c7, k.c6, k.c5, k.c4, k.c3, k.c2) * r * half_r + half_r;
    return (to_float(m) * k.half_ln2 + p) | (x & k.sign);
  }
  static i32x4 special(f32x4 x, const constants& k) { return (as_int(x) & k.magnitude) > k.below_one; }

  static int rare(const float* x, float* result) { return atanh_of_not_inside(*x, result); }

  // In one register the lane test is what the path needs anyway: a - 1 is negative for ordinary lanes only.
  struct of_one_register;
  template <int width>
  using at = std::conditional_t<width <= 4, of_one_register, atanh_f32_with>;
};
template <class Reciprocal>
struct atanh_f32_with<Reciprocal>::of_one_register : atanh_f32_with<Reciprocal> {
  static i32x4 special(f32x4 x, const atanh_f32_constants& k) { return {~as_int((x & k.magnitude) - k.one).v}; }
};
using atanh_f32 = atanh_f32_with<>;

struct atanh_f32_native_constants {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 sign = bits32(0x80000000);
  rep32 one = c(0x3f800000, 1.0f);
  rep32 sqrt_half = bits32(0x3f3504f3);
  rep32 exponent = bits32(0xff800000);
  rep32 half_ln2 = c(0x33317218, 4.131479e-08f);  // ln 2 / 2, times 2^-23
  // atanh w on |w| <= 0.1725, fixed term w: relative error 2^-14.9 (tables/fits/atanh_f32_native.sollya)
  rep32 c1 = c(0x3ead3d23, 0.338357061f);
};

// Native: with K the power of two next to (1 + a) / (1 - a), atanh a = ln(K) / 2 + atanh w, w = (1 + a - K (1 - a)) / (1 + a + K
// (1 - a)); w is a itself where K = 1. Relative error 2^-14.8 for |x| < 1, at zero too; unspecified elsewhere.
template <class Reciprocal = hardware_reciprocal>
struct atanh_f32_native_with : kernel<f32, atanh_f32_native_constants> {
  static constexpr double max_ulp = 495;
  static constexpr float domain[] = {-0x1.fffffep-1f, 0x1.fffffep-1f};
  static constexpr float seams[] = {-1.0f, -0.1715f, 0.0f, 0.1715f, 1.0f};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 a = x & k.magnitude;
    f32x4 d = k.one - a, n = k.one + a;
    i32x4 e = (as_int(n * Reciprocal::estimate(d)) - k.sqrt_half) & k.exponent;
    d = d * as_float(as_int(k.one) + e);
    f32x4 w = select(e == i32x4{_mm_setzero_si128()}, a, (n - d) / (n + d));
    f32x4 y = w + w * (w * w * k.c1);
    return (to_float(e) * k.half_ln2 + y) | (x & k.sign);
  }
};
using atanh_f32_native = atanh_f32_native_with<>;

struct atanh_f64_constants : ln_of_pair_constants {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  rep64 small = c(0x3fc0000000000000, 0.125);
  rep64 half = c(0x3fe0000000000000, 0.5);
  // atanh x on |x| <= 1/8: relative error 2^-58.6 (tables/fits/inverse_hyperbolic_f64.sollya)
  rep64 a6 = c(0x3fb4a476d76d728a, 0.08063452491246373);
  rep64 a5 = c(0x3fb740a0902cc9a3, 0.09082988281151087);
  rep64 a4 = c(0x3fbc71d4fe82ceda, 0.11111193860670757);
  rep64 a3 = c(0x3fc2492488eb00fe, 0.14285713849495346);
  rep64 a2 = c(0x3fc99999999f681e, 0.20000000001056234);
  rep64 a1 = c(0x3fd55555555554bc, 0.3333333333333248);
  rep32 below_one = high_words(0x3fefffff);
};

// Accurate: 0.54 ULP; the logarithm of (1 + a) / (1 - a) in two parts, halved; below 1/8 a polynomial. Special results as for
// float.
struct atanh_f64 : kernel<f64, atanh_f64_constants> {
  static constexpr double max_ulp = 0.54;
  static constexpr double seams[] = {-1.0, -0.125, 0.0, 0.125, 1.0};

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 a = x & k.magnitude;
    auto n = fast_two_sum<f64x2>(k.one, a);
    f64x2 d = k.one - a;
    f64x2 d_tail = (k.one - d) - a;
    f64x2 reciprocal = k.one / d;
    f64x2 q = n.head * reciprocal;
    f64x2 q_upper = q & k.upper_half, d_upper = d & k.upper_half;
    f64x2 d_lower = (d - d_upper) + d_tail;
    f64x2 remainder = ((n.head - q_upper * d_upper) - (q_upper * d_lower + (q - q_upper) * d)) + n.tail;
    auto ln = ln_of_pair({q, remainder * reciprocal}, k);

    f64x2 z = x * x;
    f64x2 near_zero = x + x * (z * horner(z, k.a6, k.a5, k.a4, k.a3, k.a2, k.a1));
    return select((x & k.magnitude) < k.small, near_zero, (ln.head + ln.tail) * k.half) | (x & k.sign);
  }
  static i32x4 special(f64x2 x, const constants& k) { return words(x & k.magnitude) > k.below_one; }

  static int rare(const double* x, double* result) { return atanh_of_not_inside(*x, result); }
};

struct atanh_f64_native_constants : short_ln_constants {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  rep64 small = c(0x3f50000000000000, 0x1p-10);
  rep64 third = c(0x3fd5555555555555, 0.3333333333333333);
  rep64 half = c(0x3fe0000000000000, 0.5);
};

// Native: the same in one part, x + x^3/3 below 2^-10. Relative error 2^-34.5 for |x| < 1, at zero too; unspecified elsewhere.
struct atanh_f64_native : kernel<f64, atanh_f64_native_constants> {
  static constexpr double max_ulp = 372000;
  static constexpr double domain[] = {-0x1.fffffffffffffp-1, 0x1.fffffffffffffp-1};
  static constexpr double seams[] = {-1.0, -0x1p-10, 0.0, 0x1p-10, 1.0};

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 a = x & k.magnitude;
    f64x2 ln = short_ln((k.one + a) / (k.one - a), k) * k.half;
    f64x2 w = x & k.magnitude;
    return select(w < k.small, w + w * w * (w * k.third), ln) | (x & k.sign);
  }
};

}  // namespace vorx

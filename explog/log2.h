// log2(x) = k + log2 m for x = 2^k m. Float: m in [2/3, 4/3), a polynomial in r = m - 1. Double: m in [1, 2), log2 m = log2 c +
// log2(1 + r) with c = 1 + i/128 the nearest point of a table and r = (m - c) / c.
#pragma once

#include "explog/log_rare.h"
#include "explog/log_reduction.h"
#include "tables/log2d_tab.h"

namespace vorx {

struct log2_f32_constants : split_constants, positive_normal_f32_constants {
  // log2(1 + r) on |r| <= 1/3: relative error 2^-23.9 (tables/fits/polynomials.sollya)
  rep32 c9 = c(0x3e554012, 0.208252221f);
  rep32 c8 = c(0xbe638e14, -0.222221673f);
  rep32 c7 = c(0x3e4d660b, 0.200584576f);
  rep32 c6 = c(0xbe727824, -0.236786425f);
  rep32 c5 = c(0x3e93dd07, 0.28879568f);
  rep32 c4 = c(0xbeb8b969, -0.360789567f);
  rep32 c3 = c(0x3ef637c0, 0.480894089f);
  rep32 c2 = c(0xbf38aa2b, -0.721346557f);
  rep32 c1 = c(0x3fb8aa3b, 1.44269502f);
};

// Accurate: 2.62 ULP. log2 of a power of two is exact; log2(+-0) = -inf, NaN below 0, log2(+inf) = +inf, NaN for NaN.
struct log2_f32 : kernel<f32, log2_f32_constants> {
  static constexpr double max_ulp = 2.62;
  static constexpr float seams[] = {0x1p-126f, 0x1.555556p-1f, 1.0f, 0x1.555556p0f};

  static f32x4 path(f32x4 x, const constants& k) {
    auto [n, r] = split_at_two_thirds(x, k);
    return polynomial_in_pairs(r, k) + n;
  }
  static i32x4 special(f32x4 x, const constants& k) { return not_positive_normal(x, k); }

  static int rare(const float* x, float* result) {
    if (!is_positive_finite(*x)) return special_logarithm(*x, result);
    auto [k, ln_m] = split_float(*x);
    return *result = static_cast<float>(k + ln_m * scalar(0x3ff71547652b82fe, 1.4426950408889634)), ordinary;
  }
};

struct log2_f64_constants : positive_normal_f64_constants {
  rep64 significand = bits64(0x000fffffffffffff);
  rep64 one = c(0x3ff0000000000000, 1.0);
  rep64 below_half = bits64(0x000003ff000003ff);  // makes the rounding of m agree with that of the index: half up
  rep64 rounder = c(0x42c0000000000000, 0x1p45);  // a sum with it is a multiple of 2^-7
  rep32 index_digits = bits32(0x3fc);             // of the upper ten digits of the significand
  rep32 index_half = bits32(4);
  rep32 bias = bits32(0x3ff);
  // log2(1 + r) on |r| <= 2^-8: relative error 2^-54.2 (tables/fits/polynomials.sollya)
  rep64 c6 = c(0xbfcec7316e9f33a2, -0.24045389081439078);
  rep64 c5 = c(0x3fd277801a1a2762, 0.28854372548140905);
  rep64 c4 = c(0xbfd715476521ed82, -0.36067376018737474);
  rep64 c3 = c(0x3fdec709dc32988b, 0.48089834693599504);
  rep64 c2 = c(0xbfe71547652b82ff, -0.7213475204444818);
  rep64 c1 = c(0x3ff71547652b82fe, 1.4426950408889634);
  rep64 infinity = bits64(0x7ff0000000000000);
  rep64 subnormal_exponent = c(0xc08ff00000000000, -1022.0);
  rep64 minus_one = c(0xbff0000000000000, -1.0);
};

struct log2d_rows {
  f64x2 hi, lo, reciprocal;
};
VORX_INLINE log2d_rows gather_rows(const log2d_row* table, i32x4 i) {  // i in lanes 0 and 1
  const log2d_row& row0 = table[extract<0>(i)];
  __m128d a = _mm_loadu_pd(&row0.hi);
  f64x2 reciprocal = {_mm_load_sd(&row0.reciprocal)};
  in_order(reciprocal, i);
  const log2d_row& row1 = table[extract<1>(i)];
  __m128d b = _mm_loadu_pd(&row1.hi);
  return {{_mm_unpacklo_pd(a, b)}, {_mm_unpackhi_pd(a, b)}, {_mm_loadh_pd(reciprocal.v, &row1.reciprocal)}};
}

struct log2_reduction {
  f64x2 r;         // |r| <= 2^-8
  f64x2 hi, lo;    // log2 c
  f64x2 exponent;  // of x
};
VORX_INLINE log2_reduction reduce_by_128ths(f64x2 x, const auto& k) {
  f64x2 m = (x & k.significand) | k.one;
  f64x2 c = ((m | k.below_half) + k.rounder) - k.rounder;

  i32x4 high = pack_high_words(as_int(x));
  i32x4 i = shift_right_logical((shift_right_logical(high, 10) & k.index_digits) + k.index_half, 3);
  auto [hi, lo, reciprocal] = gather_rows(log2d_tab, i);
  return {(m - c) * reciprocal, hi, lo, to_double(shift_right_logical(high, 20) - k.bias)};
}

struct log2_f64_path : kernel<f64, log2_f64_constants> {
  static f64x2 path(f64x2 x, const constants& k) {
    log2_reduction s = reduce_by_128ths(x, k);
    return evaluate(s, s.exponent, k);
  }
  static f64x2 evaluate(const log2_reduction& s, f64x2 exponent, const constants& k) {
    f64x2 r = s.r, r2 = r * r;
    f64x2 head = exponent + s.hi;
    f64x2 even = ((k.c6 * r2 + k.c4) * r2 + k.c2) * r2;
    f64x2 odd = (k.c5 * r2 + k.c3) * r2 * r;
    return (((even + odd) + s.lo) + k.c1 * r) + head;
  }
};

// Two lanes: every argument in line. A lane that is not positive, normal and finite sends both through the large path, which
// gives the other one the same bits.
struct log2_f64_in_line : log2_f64_path {
  static i32x4 large(f64x2 x, const constants& k) { return not_positive_normal(x, k); }

  // Subnormal lanes are normalised, special results made by arithmetic on their own lanes alone.
  static f64x2 large_path(f64x2 x) {
    const constants& k = constant_pool<constants>;
    i64x2 exponent = as_int(x) & k.infinity;
    i64x2 subnormal = as_i64(as_i32(exponent) == i32x4{_mm_setzero_si128()});
    f64x2 scaled = (x | k.one) - k.one;  // x * 2^1022 where x is subnormal
    log2_reduction s = reduce_by_128ths(select(subnormal, scaled, x), k);
    f64x2 y = evaluate(s, s.exponent + as_float(subnormal & k.subnormal_exponent), k);

    f64x2 one = k.one, zero = {opaque(_mm_setzero_pd())};  // or the divisions below would be done by the compiler
    i64x2 not_finite = as_i64(as_i32(exponent) == as_i32(k.infinity));
    f64x2 itself = select(not_finite, x, one);
    y = select(not_finite, itself * itself, y);
    i64x2 is_zero = x == zero;
    i64x2 negative = clear(x != x, clear(is_zero, as_int(x)));
    f64x2 zero_if_negative = select(negative, zero, one);
    y = select(negative, zero_if_negative / zero_if_negative, y);
    f64x2 zero_if_zero = select(is_zero, zero, one);
    return select(is_zero, k.minus_one / zero_if_zero, y);
  }
};

// Accurate: 2.12 ULP. Special results as above. No reciprocal estimate: the same bits on every processor.
struct log2_f64 : log2_f64_path {
  static constexpr double max_ulp = 2.12;
  static constexpr double seams[] = {0x1p-1022, 0x1.ffp-1, 1.0, 0x1.01p0};
  template <int width>
  using at = std::conditional_t<width == 2, log2_f64_in_line, log2_f64>;

  static i32x4 special(f64x2 x, const constants& k) { return not_positive_normal(x, k); }

  static int rare(const double* x, double* result) {
    if (!is_positive_finite(*x)) return special_logarithm(*x, result);
    f64x2 y = log2_f64_in_line::large_path({_mm_load1_pd(x)});
    return _mm_store_sd(result, y.v), ordinary;
  }
};

struct log2_f32_native_constants : split_constants {
  rep32 c4 = c(0xbecaa28b, -0.39577135f);
  rep32 c3 = c(0x3f03fa47, 0.51553768f);
  rep32 c2 = c(0xbf386dc4, -0.7204249f);
  rep32 c1 = c(0x3fb89a14, 1.4422021f);
};

// Native: relative error 3.5e-4 for positive normal x (tables/fits/log2_f32_native.sollya); exact for powers of two; unspecified
// elsewhere.
struct log2_f32_native : kernel<f32, log2_f32_native_constants> {
  static constexpr double max_ulp = 6770;
  static constexpr float domain[] = {0x1p-126f, 0x1.fffffep127f};
  static constexpr float seams[] = {0x1p-126f, 0x1.555556p-1f, 1.0f, 0x1.555556p0f};

  static f32x4 path(f32x4 x, const constants& k) {
    auto [n, r] = split_at_two_thirds(x, k);
    return r * horner(r, k.c4, k.c3, k.c2, k.c1) + n;
  }
};

struct log2_f64_native_constants {
  rep64 significand = bits64(0x000fffffffffffff);
  rep64 one = c(0x3ff0000000000000, 1.0);
  rep64 below_half = bits64(0x000003ff000003ff);
  rep64 rounder = c(0x42c0000000000000, 0x1p45);
  rep32 index_digits = bits32(0x3fc);
  rep32 index_half = bits32(4);
  rep32 bias = bits32(0x3ff);
  rep64 c4 = c(0xbfd71559dca827eb, -0.36067816303750416);
  rep64 c3 = c(0x3fdec71c53b3b1e8, 0.48090274976746494);
  rep64 c2 = c(0xbfe715476529654c, -0.7213475204290858);
  rep64 c1 = c(0x3ff71547652aef42, 1.4426950408805657);
};

// Native: relative error 1.6e-10, from the low part of log2 c that is left out, for positive normal x
// (tables/fits/log2_f64_native.sollya); unspecified elsewhere.
struct log2_f64_native : kernel<f64, log2_f64_native_constants> {
  static constexpr double max_ulp = 1.41e6;
  static constexpr double domain[] = {0x1p-1022, 0x1.fffffffffffffp1023};
  static constexpr double seams[] = {0x1p-1022, 0x1.ffp-1, 1.0, 0x1.01p0};

  static f64x2 path(f64x2 x, const constants& k) {
    log2_reduction s = reduce_by_128ths(x, k);
    return s.r * horner(s.r, k.c4, k.c3, k.c2, k.c1) + (s.exponent + s.hi);
  }
};

}  // namespace vorx

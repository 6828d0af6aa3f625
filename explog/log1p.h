// log1p(x) = ln(1 + x), accurate for small x: 1 + x as an exact pair, reduced by a table of (1 + x) c that a reciprocal estimate
// indexes; the small half of the pair joins after the reduction. The rows of the table are in two parts and contain the bias of
// the exponent, so that both sums with E ln 2, E the biased exponent, are exact; near x = 0 they are 0.
#pragma once

#include "explog/log_rare.h"
#include "explog/log_reduction.h"
#include "tables/log1pd_tab.h"
#include "tables/log1pf_tab.h"
#include "tables/logd_tab.h"

namespace vorx {

struct log1p_f32_constants {
  rep32 one = c(0x3f800000, 1.0f);
  rep32 minus_one = c(0xbf800000, -1.0f);  // apart from `one`, so that this need not stay in a register
  rep32 magnitude = bits32(0x7fffffff);
  rep32 tiny = c(0x39800000, 0x1p-12f);
  rep32 upper_part = bits32(0xffffff00);
  rep32 sign = bits32(0x80000000);
  rep32 exponent = bits32(0x7f800000);
  rep32 significand = bits32(0x007fffff);
  rep32 scale = bits32(0x3b800000);              // 2^-8: significands in [2^-8, 2^-7) have their reciprocals in (128, 256]
  rep32 less = bits32(0x7f800000 - 0x7b000000);  // the exponent field of 2^(119 - E) is 0x7b000000 less E; from its complement
  // ln(1 + r) on |r| <= 0.0043, c1 = 1: relative error 2^-27.2 (tables/fits/polynomials.sollya)
  rep32 c3 = c(0x3eaaab39, 0.333337575f);
  rep32 c2 = c(0xbf000036, -0.500003219f);
  rep32 ln2_hi = c(0x3f317200, 0.693145752f);  // low 9 bits zero, like those of ln2_lo: E * ln2 is exact in both parts
  rep32 ln2_lo = c(0x35bfbe00, 1.42859062e-06f);
  rep32 above_limit = bits32(0x057fffff);  // carries 1 + x beyond 2^118 into the sign
  rep32 smallest = bits32(0x06000000);     // above what 1 + x <= 0 becomes
};
static_assert(low_zero_bits(log1p_f32_constants{}.ln2_hi) >= 9 && low_zero_bits(log1p_f32_constants{}.ln2_lo) >= 9);

// Accurate: 0.75 ULP; a tiny x returns x. log1p(+-0) = +-0, log1p(-1) = -inf, NaN below -1, log1p(+inf) = +inf, NaN for NaN.
template <class Reciprocal = hardware_reciprocal>
struct log1p_f32_with : kernel<f32, log1p_f32_constants> {
  static constexpr double max_ulp = 0.75;
  static constexpr float seams[] = {-1.0f, -0x1p-12f, 0.0f, 0x1p-12f, 1.0f, 0x1p118f};

  static f32x4 path(f32x4 x, const constants& k) {
    // 1 + x = t_hi + t_lo; t_hi has 16 bits but for the smallest x. Exact below 2^40; beyond,
    // t_lo loses the 1, which no longer counts.
    f32x4 a = max(k.one, x), b = min(k.one, x);
    i32x4 keep = ((as_int(x) & k.magnitude) < k.tiny) | k.upper_part;
    f32x4 t_hi = (a + b) & as_float(keep);
    f32x4 t_lo = (a - t_hi) + b;

    // j ~ 256/significand. Its float bits, shifted, are the offset of its row.
    f32x4 s = (t_hi & k.significand) | k.scale;
    f32x4 j = round_to_integral<to_nearest>(Reciprocal::estimate(s));

    // 1 + r = (1 + x) j / 2^(E - 119): the product with t_hi is exact, c is what the sum of both parts loses.
    f32x4 scale = j * as_float(clear(as_int(t_hi), k.exponent) - k.less);
    f32x4 r_hi = t_hi * scale + k.minus_one;
    f32x4 r_lo = t_lo * scale;
    f32x4 r = r_hi + r_lo;
    f32x4 c = r_lo - (r - r_hi);
    f32x4 p = (k.c3 * r + k.c2) * (r * r) + c;

    in_order(p, j);
    auto [table_hi, table_lo] = gather_pairs(&log1pf_tab[0].hi, shift_right_logical(as_int(j), 13), 0x43000000 >> 13);
    f32x4 e = to_float(shift_right_logical(as_int(t_hi), 23));
    f32x4 head = e * k.ln2_hi + table_hi;
    f32x4 tail = e * k.ln2_lo + table_lo;
    f32x4 sum = head + r;
    f32x4 lost = r - (sum - head);
    return (((tail + lost) + p) + sum) | (x & k.sign);  // the sign is for -0
  }
  // 1 + x <= 0, 1 + x > 2^118 (where the scale leaves the normal range) or NaN.
  static i32x4 special(f32x4 x, const constants& k) { return as_int(x + k.one) + k.above_limit < k.smallest; }

  static int rare(const float* x, float* result) {
    float t = 1 + *x;  // for x > 2^118 this is x
    if (!is_positive_finite(t)) return special_logarithm(t, result);
    auto [k, ln_m] = split_float(t);
    return *result = static_cast<float>(k * scalar(0x3fe62e42fefa39ef, 0.6931471805599453) + ln_m), ordinary;
  }
};
using log1p_f32 = log1p_f32_with<>;

struct log1p_f64_constants {
  rep64 one = c(0x3ff0000000000000, 1.0);
  rep64 minus_one = c(0xbff0000000000000, -1.0);  // apart from `one`, so that this need not stay in a register
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 tiny = c(0x3e00000000000000, 0x1p-31);
  rep64 upper_part = bits64(0xfffffffffffffc00);
  rep64 sign = bits64(0x8000000000000000);
  rep64 exponent = bits64(0x7ff0000000000000);
  rep64 significand = bits64(0x000fffffffffffff);
  rep64 scale = bits64(0x3f50000000000000);  // 2^-10: significands in [2^-10, 2^-9) have their reciprocals in (512, 1024]
  rep64 less = bits64(0x7ff0000000000000 - 0x7f40000000000000);  // 2^(1013 - E) is 0x7f40000000000000 less E; from its complement
  ln_polynomial_f64 ln;
  rep64 ln2_hi =
      c(0x3fe62e42fefa0000, 0.6931471805582987);  // low 17 bits zero, like those of ln2_lo: E * ln2 is exact in both parts
  rep64 ln2_lo = c(0x3d7cf79abc9e0000, 1.6465949582866463e-12);
  rep64 above_limit = bits64(0x00c0000000000fff);  // carries 1 + x beyond 8.77779851006591e+304 into the sign
  rep32 smallest = bits32(0x01000000);             // above what 1 + x <= 0 becomes, in the high word
};
static_assert(low_zero_bits(log1p_f64_constants{}.ln2_hi) >= 12 && low_zero_bits(log1p_f64_constants{}.ln2_lo) >= 12);

// Accurate: 0.75 ULP. Special results as above.
template <class Reciprocal = hardware_reciprocal>
struct log1p_f64_with : kernel<f64, log1p_f64_constants> {
  static constexpr double max_ulp = 0.75;
  static constexpr double seams[] = {-1.0, -0x1p-31, 0.0, 0x1p-31, 1.0, 8.77779851006591e+304};

  static f64x2 path(f64x2 x, const constants& k) {
    // 1 + x = t_hi + t_lo; t_hi has 43 bits but for the smallest x. Exact below 2^96; beyond,
    // t_lo loses the 1, which no longer counts.
    f64x2 a = max(k.one, x), b = min(k.one, x);
    f64x2 keep = as_float((x & k.magnitude) < k.tiny) | k.upper_part;
    f64x2 t_hi = (x + k.one) & keep;
    f64x2 t_lo = (a - t_hi) + b;

    // j ~ 1024/significand. Its float bits, shifted, are the offset of its row.
    f64x2 s = (t_hi & k.significand) | k.scale;
    f32x4 j_float = round_to_integral<to_nearest>(Reciprocal::estimate(to_float(s)));

    // 1 + r = (1 + x) j / 2^(E - 1013): the product with t_hi is exact, c is what the sum of both parts loses.
    f64x2 j = to_double(j_float);
    f64x2 r_hi = s * j + k.minus_one;
    f64x2 r_lo = t_lo * (j * as_float(clear(as_int(t_hi), k.exponent) - k.less));
    f64x2 r = r_hi + r_lo;
    f64x2 c = r_lo - (r - r_hi);

    in_order(c, j_float);
    auto [table_hi, table_lo] = gather_pairs(&log1pd_tab[0].hi, shift_right_logical(as_int(j_float), 10), 0x44000000 >> 10);
    f64x2 e = to_double(shift_right_logical(pack_high_words(as_int(t_hi)), 20));
    f64x2 head = e * k.ln2_hi + table_hi;
    f64x2 tail = (e * k.ln2_lo + table_lo) + c;

    in_order(tail, r);
    f64x2 p = ln_without_linear_term(r, k.ln);
    f64x2 sum = head + r;
    f64x2 lost = r - (sum - head);
    return ((lost + (p + tail)) + sum) | (x & k.sign);  // the sign is for -0
  }
  // 1 + x <= 0, 1 + x > 8.77779851006591e+304 (where the scale leaves the normal range) or NaN.
  static i32x4 special(f64x2 x, const constants& k) { return as_i32(as_int(x + k.one) + k.above_limit) < k.smallest; }

  static int rare(const double* x, double* result) {
    double t = 1 + *x;  // for x > 8.8e304 this is x
    if (!is_positive_finite(t)) return special_logarithm(t, result);
    auto [head, tail] = ln_in_parts(t);
    return *result = head + tail, ordinary;
  }
};
using log1p_f64 = log1p_f64_with<>;

struct log1p_f32_native_constants : split_constants {
  rep32 minus_one = c(0xbf800000, -1.0f);
  rep32 sign = bits32(0x80000000);
  rep32 ln2 = c(0x3f317218, 0.693147182f);
  // ln(1 + r) on |r| <= 1/3, c1 = 1: relative error 2^-13.2 (tables/fits/polynomials.sollya)
  rep32 c5 = c(0x3e612933, 0.219883725f);
  rep32 c4 = c(0xbe88e8fe, -0.267402589f);
  rep32 c3 = c(0x3eaa7160, 0.332896233f);
  rep32 c2 = c(0xbf000000, -0.5f);
};

// Native: relative error 9.4e-5 for -1 < x < 2/3 2^128; a tiny x returns x; unspecified elsewhere.
struct log1p_f32_native : kernel<f32, log1p_f32_native_constants> {
  static constexpr double max_ulp = 1569;
  static constexpr float domain[] = {-0x1.fffffep-1f, 0x1.555554p127f};
  static constexpr float seams[] = {-1.0f, -0x1.555556p-2f, 0.0f, 0x1.555556p-2f, 1.0f};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 a = max(k.one, x), b = min(k.one, x);
    f32x4 t_hi = a + b;
    f32x4 t_lo = (a - t_hi) + b;

    // The split of t_hi at 2/3; t_lo is scaled along.
    i32x4 above = as_int(t_hi) - k.two_thirds;
    i32x4 n = above >> 23;
    f32x4 m = as_float((above & k.significand) + k.two_thirds);
    f32x4 r = (m + k.minus_one) + t_lo * as_float(as_int(k.one) - (n << 23));

    f32x4 q = r + r * r * horner(r, k.c5, k.c4, k.c3, k.c2);
    return (to_float(n) * k.ln2 + q) | (x & k.sign);
  }
};

struct log1p_f64_native_constants : table_reduction_constants {
  rep64 one = c(0x3ff0000000000000, 1.0);
  rep64 sign = bits64(0x8000000000000000);
  rep64 exponent = bits64(0x7ff0000000000000);
  rep64 less = bits64(0x7ff0000000000000 - 0x7f40000000000000);
  rep64 ln2 = c(0x3fe62e42fefa39ef, 0.6931471805599453);
  rep64 c3 = c(0x3fd55556dcb675fa, 0.33333369783380784);
  rep64 c2 = c(0xbfe000007a4e572b, -0.5000002278127104);
};

// Native: relative error 3.1e-10 (tables/fits/log1p_f64_native.sollya) for finite x > -1; a tiny x returns x; unspecified
// elsewhere.
template <class Reciprocal = hardware_reciprocal>
struct log1p_f64_native_with : kernel<f64, log1p_f64_native_constants> {
  static constexpr double max_ulp = 1.0e6;  // with the least exact table of estimates; 7.5e5 on one processor
  static constexpr double domain[] = {-0x1.fffffffffffffp-1, 0x1.fffffffffffffp1023};
  static constexpr double seams[] = {-1.0, 0.0, 0x1.6a0p-1, 1.0};

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 a = max(k.one, x), b = min(k.one, x);
    f64x2 t_hi = a + b;
    f64x2 t_lo = (a - t_hi) + b;
    in_order(t_lo, t_hi);
    auto s = reduce_by_reciprocal<Reciprocal>(t_hi, k);
    f64x2 power = as_float(subtract_or_zero(clear(as_int(t_hi), k.exponent), k.less));  // 0 where t_lo no longer counts
    f64x2 r = s.r + t_lo * (s.j * power);

    in_order(r, s.j_float);
    auto [n, ln_c] = look_up(t_hi, s.j_float, logd_tab, k);
    return ((r + r * r * (k.c2 + k.c3 * r) + ln_c) + n * k.ln2) | (x & k.sign);
  }
};
using log1p_f64_native = log1p_f64_native_with<>;

}  // namespace vorx

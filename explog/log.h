// log(x) = k ln 2 + ln m for x = 2^k m. Float: m in [2/3, 4/3), a polynomial in r = m - 1. Double: m = (1 + r) c with c and ln c
// from a table that a reciprocal estimate indexes, and a polynomial in the small r.
#pragma once

#include "explog/log_rare.h"
#include "explog/log_reduction.h"
#include "tables/logd_tab.h"

namespace vorx {

struct log_f32_constants : split_constants, positive_normal_f32_constants {
  rep32 ln2_hi = c(0x3f317200, 0.693145752f);  // low 9 bits zero: k * ln2_hi is exact
  rep32 ln2_lo = c(0x35bfbe8e, 1.42860677e-06f);
  // ln(1 + r) on |r| <= 1/3, c1 = 1: relative error 2^-27.3 (tables/fits/polynomials.sollya)
  rep32 c10 = c(0xbe0402c8, -0.12891686f);
  rep32 c9 = c(0x3e0f335d, 0.139844373f);
  rep32 c8 = c(0xbdf9889e, -0.121842608f);
  rep32 c7 = c(0x3e0f6b8c, 0.140058696f);
  rep32 c6 = c(0xbe2acee6, -0.16680488f);
  rep32 c5 = c(0x3e4ce814, 0.200104058f);
  rep32 c4 = c(0xbe7fff78, -0.249997973f);
  rep32 c3 = c(0x3eaaaa83, 0.333332151f);
  rep32 c2 = c(0xbf000000, -0.5f);
};
static_assert(low_zero_bits(log_f32_constants{}.ln2_hi) >= 9);

// Accurate: 0.98 ULP. log(1) = +0, log(+-0) = -inf, NaN below 0, log(+inf) = +inf, NaN for NaN.
struct log_f32 : kernel<f32, log_f32_constants> {
  static constexpr double max_ulp = 0.98;
  static constexpr float seams[] = {0x1p-126f, 0x1.555556p-1f, 1.0f, 0x1.555556p0f};

  static f32x4 path(f32x4 x, const constants& k) {
    auto [n, r] = split_at_two_thirds(x, k);
    f32x4 p = horner(r, k.c10, k.c9, k.c8, k.c7, k.c6, k.c5, k.c4, k.c3, k.c2);
    f32x4 q = p * r * r + r;                   // ln(1 + r)
    return n * k.ln2_hi + (n * k.ln2_lo + q);  // small terms first
  }
  static i32x4 special(f32x4 x, const constants& k) { return not_positive_normal(x, k); }

  static int rare(const float* x, float* result) {
    if (!is_positive_finite(*x)) return special_logarithm(*x, result);
    auto [k, ln_m] = split_float(*x);
    return *result = static_cast<float>(k * scalar(0x3fe62e42fefa39ef, 0.6931471805599453) + ln_m), ordinary;
  }
};

struct log_f64_constants : table_reduction_constants, positive_normal_f64_constants {
  rep64 ln2 = c(0x3fe62e42fefa39ef, 0.6931471805599453);
  ln_polynomial_f64 ln;
};

// Accurate: 1.60 ULP. Special results as above.
template <class Reciprocal = hardware_reciprocal>
struct log_f64_with : kernel<f64, log_f64_constants> {
  static constexpr double max_ulp = 1.6;
  static constexpr double seams[] = {0x1p-1022, 0x1.6a0p-1, 1.0, 0x1.6a0p0};

  static f64x2 path(f64x2 x, const constants& k) {
    auto [r, j, j_float] = reduce_by_reciprocal<Reciprocal>(x, k);
    auto [n, ln_c] = look_up(x, j_float, logd_tab, k);
    return ((r + ln_without_linear_term(r, k.ln)) + ln_c) + n * k.ln2;
  }
  static i32x4 special(f64x2 x, const constants& k) { return not_positive_normal(x, k); }

  static int rare(const double* x, double* result) {
    if (!is_positive_finite(*x)) return special_logarithm(*x, result);
    auto [head, tail] = ln_in_parts(*x);
    return *result = head + tail, ordinary;
  }
};
using log_f64 = log_f64_with<>;

struct log_f32_native_constants : split_constants {
  rep32 ln2 = c(0x3f317218, 0.693147182f);
  // ln(1 + r) on |r| <= 1/3, c1 = 1: relative error 2^-10.9 (tables/fits/polynomials.sollya)
  rep32 c4 = c(0xbe89233c, -0.267846942f);
  rep32 c3 = c(0x3eb4a830, 0.352845669f);
  rep32 c2 = c(0xbf000000, -0.5f);
};

// Native: relative error 5e-4 for positive normal x; unspecified elsewhere.
struct log_f32_native : kernel<f32, log_f32_native_constants> {
  static constexpr double max_ulp = 8315;
  static constexpr float domain[] = {0x1p-126f, 0x1.fffffep127f};
  static constexpr float seams[] = {0x1p-126f, 0x1.555556p-1f, 1.0f, 0x1.555556p0f};

  static f32x4 path(f32x4 x, const constants& k) {
    auto [n, r] = split_at_two_thirds(x, k);
    f32x4 q = r + r * r * horner(r, k.c4, k.c3, k.c2);
    return q + n * k.ln2;
  }
};

struct log_f64_native_constants : table_reduction_constants {
  rep64 ln2 = c(0x3fe62e42fefa39ef, 0.6931471805599453);
  // The first two of the accurate kernel: ln(1 + r) on |r| <= 0.00135, c1 = 1: relative error 2^-30.5
  // (tables/fits/polynomials.sollya)
  rep64 c2 = c(0xbfdffffffffff81f, -0.49999999999988803);
  rep64 c3 = c(0x3fd55555555543c5, 0.33333333333308374);
};

// Native: 2.6e6 ULP, below 5.8e-10 relative, for positive normal x; unspecified elsewhere.
template <class Reciprocal = hardware_reciprocal>
struct log_f64_native_with : kernel<f64, log_f64_native_constants> {
  static constexpr double max_ulp = 2.6e6;  // with the least exact table of estimates; 2.1e6 on one processor
  static constexpr double domain[] = {0x1p-1022, 0x1.fffffffffffffp1023};
  static constexpr double seams[] = {0x1p-1022, 0x1.6a0p-1, 1.0, 0x1.6a0p0};

  static f64x2 path(f64x2 x, const constants& k) {
    auto [r, j, j_float] = reduce_by_reciprocal<Reciprocal>(x, k);
    auto [n, ln_c] = look_up(x, j_float, logd_tab, k);
    f64x2 p = r + r * r * (k.c2 + k.c3 * r);
    return (p + ln_c) + n * k.ln2;
  }
};
using log_f64_native = log_f64_native_with<>;

}  // namespace vorx

// log10(x) = k log10 2 + log10 m for x = 2^k m. Float: m in [2/3, 4/3), a polynomial in r = m - 1. Double: m = (1 + r) c with c
// and log10 c from a table that a reciprocal estimate indexes, and a polynomial in the small r.
#pragma once

#include "explog/log_rare.h"
#include "explog/log_reduction.h"
#include "tables/log10d_tab.h"

namespace vorx {

struct log10_f32_constants : split_constants, positive_normal_f32_constants {
  rep32 lg2_hi = c(0x3e9a2100, 0.30103302f);  // low 8 bits zero: k * lg2_hi is exact
  rep32 lg2_lo = c(0xb64af600, -3.02435365e-06f);
  // log10(1 + r) on |r| <= 1/3: relative error 2^-24.3 (tables/fits/polynomials.sollya)
  rep32 c9 = c(0x3d8063b4, 0.0626901686f);
  rep32 c8 = c(0xbd890073, -0.0668953881f);
  rep32 c7 = c(0x3d775317, 0.060381975f);
  rep32 c6 = c(0xbd91fb27, -0.0712798163f);
  rep32 c5 = c(0x3db20b96, 0.0869361609f);
  rep32 c4 = c(0xbdde6e20, -0.108608484f);
  rep32 c3 = c(0x3e143ce5, 0.144763544f);
  rep32 c2 = c(0xbe5e5bc5, -0.217146948f);
  rep32 c1 = c(0x3ede5bd9, 0.434294492f);
};
static_assert(low_zero_bits(log10_f32_constants{}.lg2_hi) >= 8);

// Accurate: 2.63 ULP. log10(1) = +0, log10(+-0) = -inf, NaN below 0, log10(+inf) = +inf, NaN for NaN.
struct log10_f32 : kernel<f32, log10_f32_constants> {
  static constexpr double max_ulp = 2.63;
  static constexpr float seams[] = {0x1p-126f, 0x1.555556p-1f, 1.0f, 0x1.555556p0f};

  static f32x4 path(f32x4 x, const constants& k) {
    auto [n, r] = split_at_two_thirds(x, k);
    return (polynomial_in_pairs(r, k) + n * k.lg2_lo) + n * k.lg2_hi;
  }
  static i32x4 special(f32x4 x, const constants& k) { return not_positive_normal(x, k); }

  static int rare(const float* x, float* result) {
    if (!is_positive_finite(*x)) return special_logarithm(*x, result);
    auto [k, ln_m] = split_float(*x);
    double y = k * scalar(0x3fd34413509f79ff, 0.3010299956639812) + ln_m * scalar(0x3fdbcb7b1526e50e, 0.4342944819032518);
    return *result = static_cast<float>(y), ordinary;
  }
};

struct log10_f64_constants : table_reduction_constants, positive_normal_f64_constants {
  rep64 lg2 = c(0x3fd34413509f79ff, 0.3010299956639812);
  // log10(1 + r) on |r| <= 0.00135: relative error 2^-52.3 (tables/fits/polynomials.sollya)
  rep64 c1 = c(0x3fdbcb7b1526e50e, 0.4342944819032518);
  rep64 c2 = c(0xbfcbcb7b1526de36, -0.21714724095157728);
  rep64 c3 = c(0x3fc287a7636f341e, 0.14476482730097556);
  rep64 c4 = c(0xbfbbcb7d4efbe80b, -0.10857375315018218);
  rep64 c5 = c(0x3fb63c65231fbd16, 0.08685905559081095);
};

// Accurate: 2.11 ULP. Special results as above.
template <class Reciprocal = hardware_reciprocal>
struct log10_f64_with : kernel<f64, log10_f64_constants> {
  static constexpr double max_ulp = 2.11;
  static constexpr double seams[] = {0x1p-1022, 0x1.6a0p-1, 1.0, 0x1.6a0p0};

  static f64x2 path(f64x2 x, const constants& k) {
    auto [r, j, j_float] = reduce_by_reciprocal<Reciprocal>(x, k);
    auto [n, log10_c] = look_up(x, j_float, log10d_tab, k);
    f64x2 r2 = r * r;
    f64x2 p = k.c1 * r + r2 * ((k.c2 + k.c3 * r) + r2 * (k.c4 + k.c5 * r));  // log10(1 + r)
    return (p + log10_c) + n * k.lg2;
  }
  static i32x4 special(f64x2 x, const constants& k) { return not_positive_normal(x, k); }

  // log10 x = ln x * log10 e, both in two parts, with the product of the heads exact.
  static int rare(const double* x, double* result) {
    if (!is_positive_finite(*x)) return special_logarithm(*x, result);
    const double log10e = scalar(0x3fdbcb7b1526e50e, 0.4342944819032518);
    const double log10e_hi = scalar(0x3fdbcb7b10000000, 0.4342944771051407);  // 25 bits
    const double log10e_lo = scalar(0x3e349b9438ca9aae, 4.798111141615973e-09);
    auto [head, tail] = ln_in_parts(*x);
    double head_hi = from_bits(bits_of(head) & 0xfffffffff8000000);  // 26 bits
    return *result = head_hi * log10e_hi + ((head - head_hi) * log10e_hi + (head * log10e_lo + tail * log10e)), ordinary;
  }
};
using log10_f64 = log10_f64_with<>;

struct log10_f32_native_constants : split_constants {
  rep32 lg2 = c(0x3e9a209b, 0.30103f);
  rep32 c4 = c(0xbdf3ff43, -0.11913922f);
  rep32 c3 = c(0x3e1eeac6, 0.15519246f);
  rep32 c2 = c(0xbe5e1309, -0.21686949f);
  rep32 c1 = c(0x3ede4865, 0.43414608f);
};

// Native: relative error 3.5e-4 for positive normal x (tables/fits/log10_f32_native.sollya); unspecified elsewhere.
struct log10_f32_native : kernel<f32, log10_f32_native_constants> {
  static constexpr double max_ulp = 8150;
  static constexpr float domain[] = {0x1p-126f, 0x1.fffffep127f};
  static constexpr float seams[] = {0x1p-126f, 0x1.555556p-1f, 1.0f, 0x1.555556p0f};

  static f32x4 path(f32x4 x, const constants& k) {
    auto [n, r] = split_at_two_thirds(x, k);
    return r * horner(r, k.c4, k.c3, k.c2, k.c1) + n * k.lg2;
  }
};

struct log10_f64_native_constants : table_reduction_constants {
  rep64 lg2 = c(0x3fd34413509f79ff, 0.3010299956639812);
  rep64 c3 = c(0x3fc287a8a221d671, 0.14476497570619842);
  rep64 c2 = c(0xbfcbcb7c53da597b, -0.21714738935834163);
  rep64 c1 = c(0x3fdbcb7b1526e327, 0.4342944819032248);
};

// Native: relative error 1.6e-10 for positive normal x (tables/fits/log10_f64_native.sollya); unspecified elsewhere.
template <class Reciprocal = hardware_reciprocal>
struct log10_f64_native_with : kernel<f64, log10_f64_native_constants> {
  static constexpr double max_ulp = 1.34e6;
  static constexpr double domain[] = {0x1p-1022, 0x1.fffffffffffffp1023};
  static constexpr double seams[] = {0x1p-1022, 0x1.6a0p-1, 1.0, 0x1.6a0p0};

  static f64x2 path(f64x2 x, const constants& k) {
    auto [r, j, j_float] = reduce_by_reciprocal<Reciprocal>(x, k);
    auto [n, log10_c] = look_up(x, j_float, log10d_tab, k);
    return (r * horner(r, k.c3, k.c2, k.c1) + log10_c) + n * k.lg2;
  }
};
using log10_f64_native = log10_f64_native_with<>;

}  // namespace vorx

// rsqrt(x) = 1 / sqrt(x) = y (1 + t)^(-1/2) with y an estimate of few bits, so that the residual t = x y^2 - 1 is exact or nearly
// so, and a polynomial in t.
#pragma once

#include <limits>

#include "frame/head_and_tail.h"
#include "roots/estimates.h"

namespace vorx {

// What is not positive, normal and finite, but for subnormal numbers.
template <class T>
VORX_INLINE int special_rsqrt(T x, T* result) {
  if (x < 0) return *result = invalid<T>(), domain_error;
  *result = 1 / x;  // also of infinity and NaN
  return x == 0 ? singularity : ordinary;
}
template <class T>
VORX_INLINE bool is_positive_subnormal(T x) {
  return bits_of(x) - 1 < bits_of(std::numeric_limits<T>::min()) - 1;
}

struct rsqrt_f32_constants : positive_f32_constants {
  rep32 few_bits = bits32(0xffff8000);  // 9 bits of the significand
  rep32 one = c(0x3f800000, 1.0f);
  // (1 + t)^(-1/2) - 1 on |t| <= 0.0086, binomial: absolute error 2^-29.3 (tables/fits/polynomials.sollya)
  rep32 c3 = c(0xbea00000, -0.3125f);
  rep32 c2 = c(0x3ec00000, 0.375f);
  rep32 c1 = c(0xbf000000, -0.5f);
};

// Accurate: 0.98 ULP on one processor, 0.992 with the least exact estimates. rsqrt(+-0) = +-inf, rsqrt(+inf) = +0, NaN below 0
// and for NaN.
template <class Estimate = hardware_reciprocal_sqrt>
struct rsqrt_f32_with : kernel<f32, rsqrt_f32_constants> {
  static constexpr double max_ulp = 1.0;
  static constexpr float seams[] = {0x1p-126f};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 y = Estimate::estimate(x) & k.few_bits;
    f32x4 t = y * y * x - k.one;
    return y + y * (t * horner(t, k.c3, k.c2, k.c1));
  }
  static i32x4 special(f32x4 x, const constants& k) { return not_positive(x, k); }

  static int rare(const float* x, float* result) {
    if (!is_positive_subnormal(*x)) return special_rsqrt(*x, result);
    __m128d root = _mm_sqrt_sd(_mm_setzero_pd(), _mm_set_sd(*x));
    return *result = static_cast<float>(1 / _mm_cvtsd_f64(root)), ordinary;
  }
};
using rsqrt_f32 = rsqrt_f32_with<>;

// Native: the processor's estimate. rsqrt(+-0) = +-inf, also for subnormal numbers; rsqrt(+inf) = +0, NaN below 0 and for NaN.
struct rsqrt_f32_native : kernel<f32> {
  static constexpr double max_ulp = estimate_ulp;  // 2941 on one processor
  static constexpr bool by_definition = true;
  static f32x4 path(f32x4 x, const no_constants&) { return estimate_reciprocal_sqrt(x); }
};

// x = 4^n m with m in [1/2, 2).
struct even_split_constants {
  rep64 significand = bits64(0x001fffffffffffff);  // and the lowest bit of the exponent
  rep64 exponent = bits64(0x3fe0000000000000);
};
VORX_INLINE f64x2 without_even_exponent(f64x2 x, const even_split_constants& k) { return (x & k.significand) | k.exponent; }
// y / 2^n: the exponents of x and m differ by 2n.
VORX_INLINE f64x2 scaled_back(f64x2 y, f64x2 x, f64x2 m) {
  i32x4 n = as_i32(as_int(x) - as_int(m)) >> 1;
  return as_float(as_int(y) - as_i64(n));
}

struct rsqrt_f64_constants : positive_f64_constants, even_split_constants {
  rep32 twelve_bits = bits32(0xfffff000);
  rep64 upper_half = bits64(upper_half_f64);
  rep64 one = c(0x3ff0000000000000, 1.0);
  // ((1 + t)^(-1/2) - 1) / t, relative error 2^-52.9 (tables/fits/rsqrt_f64.sollya)
  rep64 c5 = c(0xbfcf923b9f771368, -0.24665017401107580);
  rep64 c4 = c(0x3fd17fff5225f614, 0.27343733808797421);
  rep64 c3 = c(0xbfd3ffffffb0f1a9, -0.31249999971239589);
  rep64 c2 = c(0x3fd8000000000646, 0.37500000000008916);
  rep64 c1 = c(0xbfe0000000000000, -0.5);
};

// Accurate: 0.505 ULP. Special results as above.
template <class Estimate = hardware_reciprocal_sqrt>
struct rsqrt_f64_with : kernel<f64, rsqrt_f64_constants> {
  static constexpr double max_ulp = 0.505;
  static constexpr double seams[] = {0x1p-1022};

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 m = without_even_exponent(x, k);
    f64x2 y = to_double(Estimate::estimate(to_float(m)) & k.twelve_bits);
    f64x2 y2 = y * y;  // 24 bits: the products with both halves of m are exact
    auto [mh, ml] = cut(m, k.upper_half);
    f64x2 t = (y2 * mh - k.one) + y2 * ml;
    y = y + y * (t * horner(t, k.c5, k.c4, k.c3, k.c2, k.c1));
    return scaled_back(y, x, m);
  }
  static i32x4 special(f64x2 x, const constants& k) { return not_positive(x, k); }

  static int rare(const double* x, double* result) {
    if (!is_positive_subnormal(*x)) return special_rsqrt(*x, result);
    f64x2 scaled = all(*x * power_of_two<double>(54));
    *result = _mm_cvtsd_f64(path(scaled, constant_pool<constants>).v) * power_of_two<double>(27);
    return ordinary;
  }
};
using rsqrt_f64 = rsqrt_f64_with<>;

struct rsqrt_f64_native_constants : even_split_constants {
  rep64 one = c(0x3ff0000000000000, 1.0);
  // ((1 + t)^(-1/2) - 1) / t, relative error 2^-22.5 (tables/fits/rsqrt_f64_native.sollya)
  rep64 c2 = c(0x3fd800005a1ebca6, 0.37500008393085194);
  rep64 c1 = c(0xbfe000002d0f5e38, -0.50000008393084894);
};

// Native: relative error 6.2e-11 for positive normal x, 1.7e-11 on one processor; unspecified elsewhere.
template <class Estimate = hardware_reciprocal_sqrt>
struct rsqrt_f64_native_with : kernel<f64, rsqrt_f64_native_constants> {
  static constexpr double max_ulp = 5.6e5;
  static constexpr double domain[] = {0x1p-1022, 0x1.fffffffffffffp1023};

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 m = without_even_exponent(x, k);
    f64x2 y = to_double(Estimate::estimate(to_float(m)));
    f64x2 t = y * y * m - k.one;
    y = y + y * (t * horner(t, k.c2, k.c1));
    return scaled_back(y, x, m);
  }
};
using rsqrt_f64_native = rsqrt_f64_native_with<>;

}  // namespace vorx

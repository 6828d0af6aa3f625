// exp10(x) = 2^m 2^(j/N) 10^r with n = round(x N log2(10)) = N m + j and r = x - n log10(2) / N: a table of 2^(j/N), N = 512 for
// float and 128 for double, and a polynomial for 10^r.
#pragma once

#include <array>

#include "explog/exponential.h"
#include "frame/kernel.h"
#include "frame/rare.h"
#include "tables/exp2_j128.h"
#include "tables/exp2_j512.h"

namespace vorx {

struct exp10_f32_constants {
  rep32 steps = c(0x44d49a78, 1700.82715f);       // 512 log2(10)
  rep32 shifter = c(0x4b400000, 12582912.0f);     // 1.5 x 2^23: the sum carries n in its low bits
  rep32 step_hi = c(0x3a1a0000, 5.87463379e-4f);  // log10(2) / 512; low 17 bits zero: n * step_hi is exact
  rep32 step_lo = c(0x35026a14, 4.85831379e-7f);
  rep32 index = bits32(0x1ff);
  rep32 exponent = bits32(~0x1ffu);
  // 10^r - 1 on |r| <= log10(2) / 1024: absolute error 2^-23.0 (tables/fits/polynomials.sollya)
  rep32 c1 = c(0x40135d8d, 2.30258489f);
  rep32 c0 = c(0x33f5fdea, 1.14548882e-7f);  // balances the error of the linear term; exp10(0) is 1.00000012 by it
  rep32 magnitude = bits32(0x7fffffff);
  rep32 limit = c(0x4217b818, 37.9297791f);  // beyond it 2^m leaves the normal range
  std::array<float, 512> table = exp2_j512;
};
static_assert(low_zero_bits(exp10_f32_constants{}.step_hi) >= 17);

// Accurate: 2.92 ULP. Special results: exp10(-inf) = +0, exp10(+inf) = +inf, NaN for NaN; +inf above 38.53184, gradual underflow
// below -37.92978, +0 below -45.15450.
struct exp10_f32 : kernel<f32, exp10_f32_constants> {
  static constexpr double max_ulp = 2.93;
  static constexpr float seams[] = {-45.1545f, -37.9297791f, 37.9297791f, 38.5318394f};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 t = x * k.steps + k.shifter;  // n, in the low bits of t
    f32x4 n = t - k.shifter;
    f32x4 r = x - n * k.step_hi - n * k.step_lo;  // the first product is exact
    f32x4 s = lookup(k.table.data(), as_int(t) & k.index);
    f32x4 y = s * (r * k.c1 + k.c0) + s;
    return as_float(as_int(y) + ((as_int(t) & k.exponent) << 14));  // 2^m: m added to the exponent field
  }
  static i32x4 special(f32x4 x, const constants& k) { return (as_int(x) & k.magnitude) > k.limit; }

  static int rare(const float* x, float* result) {
    if (is_not_finite(bits_of(*x))) return exponential_of_not_finite(*x, result);
    if (*x > 40) return *result = overflowed<float>(), overflow;
    if (*x < -50) return *result = underflowed<float>(), underflow;
    return exp2_to_float(*x * scalar(0x400a934f0979a371, 3.321928094887362), result);  // log2(10)
  }
};

struct exp10_f32_native_constants {
  rep32 log2_10 = c(0x40549a78, 3.32192802f);
  native_exp2_f32_constants exp2;
};

// Native: 9.2e-5 relative; +inf above 38.5318, +0 below -37.9298 (no subnormal results), NaN for NaN.
struct exp10_f32_native : kernel<f32, exp10_f32_native_constants> {
  static constexpr double max_ulp = 1540;
  static f32x4 path(f32x4 x, const constants& k) { return native_exp2(x * k.log2_10, k.exp2); }
};

struct exp10_f64_constants {
  rep64 steps = c(0x407a934f0979a371, 425.20679614558236);       // 128 log2(10)
  rep64 shifter = c(0x4338800000000000, 6896136929411072.0);     // the sum carries n in its low bits
  rep64 step_hi = c(0x3f63441350a00000, 0.0023517968411397305);  // log10(2) / 128; low 21 bits zero: n * step_hi is exact
  rep64 step_lo = c(0xbd10c0219dc1da99, -1.487744411497209e-14);
  rep64 index = bits64(0x7f);
  rep64 exponent = bits64(0xfff0000000000000);
  // 10^r - 1 on |r| <= log10(2) / 256: absolute error 2^-63.4 (tables/fits/polynomials.sollya)
  rep64 c5 = c(0x3fe144c03efafb54, 0.5396424512945068);
  rep64 c4 = c(0x3ff2bd767584db59, 1.1712555494866221);
  rep64 c3 = c(0x4000470591ccea8b, 2.0346785917911965);
  rep64 c2 = c(0x40053524c73ce8e3, 2.650949055239026);
  rep64 c1 = c(0x40026bb1bbb55516, 2.302585092994046);  // ln 10
  rep32 magnitude = high_words(0x7fffffff);
  rep32 limit = high_words(0x40733a70);  // of 307.6525; the last high word on the path
  std::array<double, 128> table = exp2_j128;
};
static_assert(low_zero_bits(exp10_f64_constants{}.step_hi) >= 18);

// Accurate: 1.25 ULP. Special results: exp10(-inf) = +0, exp10(+inf) = +inf, NaN for NaN; +inf above 308.2547, gradual underflow
// below -307.6526, +0 below -323.6072.
struct exp10_f64 : kernel<f64, exp10_f64_constants> {
  static constexpr double max_ulp = 1.26;
  static constexpr double seams[] = {-323.60724533877976, -307.652655568588784, -307.652587890625, 307.652587890625,
                                     308.2547155599167};

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 t = x * k.steps + k.shifter;
    f64x2 n = t - k.shifter;
    f64x2 r = x - n * k.step_hi - n * k.step_lo;  // the first product is exact
    // 2^m 2^(j/128): m added to the exponent field of the table's entry
    f64x2 s = as_float(as_int(lookup(k.table.data(), as_int(t) & k.index)) + ((as_int(t) << 45) & k.exponent));
    f64x2 p = horner(r, k.c5, k.c4, k.c3, k.c2, k.c1) * r;  // 10^r - 1
    return s * p + s;
  }
  static i32x4 special(f64x2 x, const constants& k) { return (words(x) & k.magnitude) > k.limit; }

  static int rare(const double* x, double* result) {
    if (is_not_finite(bits_of(*x))) return exponential_of_not_finite(*x, result);
    if (*x > scalar(0x40734413509f79fe, 308.2547155599167)) return *result = overflowed<double>(), overflow;
    if (*x < scalar(0xc07439b746e36b52, -323.60724533877976)) return *result = underflowed<double>(), underflow;

    // 10^x = 2^(n/64) 10^r with n = round(x 64 log2(10)).
    double t = *x * scalar(0x406a934f0979a371, 212.60339807279118) + scalar(0x4338000000000000, 6755399441055744.0);
    double n = t - scalar(0x4338000000000000, 6755399441055744.0);
    double r = *x - n * scalar(0x3f73441350a00000, 0.004703593682279461) - n * scalar(0xbd20c0219dc1da99, -2.975488822994418e-14);
    return exp_in_steps(static_cast<int32_t>(bits_of(t)), r * scalar(0x40026bb1bbb55516, 2.302585092994046), result);
  }
};

struct exp10_f64_native_constants {
  rep64 steps = c(0x407a934f0979a371, 425.20679614558236);  // 128 log2(10)
  native_exp2_f64_constants exp2;
};

// Native: 3630 ULP (4.1e-13 relative); +inf above 308.2547, +0 below -307.6526 (no subnormal results), NaN for NaN.
struct exp10_f64_native : kernel<f64, exp10_f64_native_constants> {
  static constexpr double max_ulp = 3630;
  static f64x2 path(f64x2 x, const constants& k) { return native_exp2(x * k.steps, k.exp2); }
};

}  // namespace vorx

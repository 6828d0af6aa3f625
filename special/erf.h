// erf(x) = 2/sqrt(pi) times the integral of e^(-t^2) from 0 to x.
#pragma once

#include <array>

#include "frame/head_and_tail.h"
#include "frame/kernel.h"
#include "frame/rare.h"
#include "special/cubic_rows.h"
#include "tables/erfd_tab.h"
#include "tables/erff_tab.h"

namespace vorx {

// +-1 for infinities, NaN for NaN.
template <class T>
VORX_INLINE int erf_of_not_finite(T x, T* result) {
  *result = x != x ? opaque(x) + x : x < 0 ? T(-1) : T(1);
  return ordinary;
}

struct erf_f32_constants : cubic_rows_constants {
  rep32 last_row = bits32(113 << 19);
  rep32 sign = bits32(0x80000000);
  rep32 largest = bits32(0x7f780000);  // of the starts of intervals of finite numbers
  alignas(16) std::array<double, 114 * 4> table = erff_tab;
};

// Accurate: 1.48 ULP; a table of cubics, evaluated in double. Special results: erf(-0) = -0, exactly +-1 from 4 on and for
// infinities, NaN for NaN.
struct erf_f32 : kernel<f32, erf_f32_constants> {
  static constexpr double max_ulp = 1.48;
  static constexpr float seams[] = {-4.0f, -0.03125f, 0.03125f, 4.0f};

  static f32x4 path(f32x4 x, const constants& k) {
    i32x4 offsets = cubic_row_offsets(as_int(x) & k.sixteenths, k.last_row, k);
    return cubic_of_rows(x, offsets, k.table.data(), k) | (x & k.sign);
  }
  static f32x4 lower_half(f32x4 x, const constants& k) {
    i32x4 offsets = cubic_row_offsets(as_int(x) & k.sixteenths, k.last_row, k);
    return to_float(lower_cubics_of_rows(x, offsets, k.table.data(), k)) | (x & k.sign);
  }
  static i32x4 special(f32x4 x, const constants& k) { return (as_int(x) & k.sixteenths) > k.largest; }

  static int rare(const float* x, float* result) { return erf_of_not_finite(*x, result); }
};

struct erf_f32_native_constants {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 sign = bits32(0x80000000);
  rep32 last = c(0x402ccccd, 2.70000005f);
  rep32 one = c(0x3f800000, 1.0f);
  // (1 + 1.45 x 2^-13) erf(x) / x in x^2, on |x| <= 2.7 (tables/fits/erf_f32_native, relative error 2^-12.1 of erf)
  rep32 c7 = c(0xb55acf85, -8.15133092e-07f);
  rep32 c6 = c(0x37efac69, 2.85713049e-05f);
  rep32 c5 = c(0xb9e77d5f, -0.000441531622f);
  rep32 c4 = c(0x3b844101, 0.00403606938f);
  rep32 c3 = c(0xbccb94ed, -0.0248512868f);
  rep32 c2 = c(0x3de37905, 0.11107067f);
  rep32 c1 = c(0xbec0491b, -0.37555775f);
  rep32 c0 = c(0x3f9073fa, 1.12853932f);
};

// Native: relative error 2^-12.1, a polynomial, cut off at 1. NaN for NaN, +-1 from 2.7 on and for infinities.
struct erf_f32_native : kernel<f32, erf_f32_native_constants> {
  static constexpr double max_ulp = 3593;

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 y = min(k.last, x & k.magnitude);  // in this order of operands a NaN stays
    f32x4 z = y * y;
    f32x4 p = y * horner(z, k.c7, k.c6, k.c5, k.c4, k.c3, k.c2, k.c1, k.c0);
    return min(k.one, p) | (x & k.sign);
  }
};

struct erf_f64_constants {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  rep32 largest = bits32(0x7fefffff);  // high word of finite numbers
  rep64 small = c(0x3fb0000000000000, 0.0625);
  rep64 tiny = c(0x0170000000000000, 0x1p-1000);
  rep64 last = c(0x4018000000000000, 6.0);  // erf 5.93 rounds to 1
  rep64 steps = c(0x4060000000000000, 128.0);
  rep64 shifter = c(0x4338000000000000, 6755399441055744.0);  // 1.5 x 2^52
  rep64 row_bytes = c(0x40a8000000000000, 3072.0);            // for one unit of r
  rep64 step = c(0x3f80000000000000, 0.0078125);
  rep64 eighth = c(0x3fc0000000000000, 0.125);
  rep64 rest = c(0x3f6baea08536da23, 0.0033791670955125737);  // 2/sqrt(pi) - 9/8
  // e^(r^2) times the integral of e^(-t^2) from r to r + d is d - r d^2 + a3 d^3 + ... + a6 d^6. In row 0, r = 0, it goes on to
  // d^9, and the polynomial is a fit for |d| < 1/16: relative error 2^-59.1 (tables/fits/erf_f64). In the others, with
  // |d| <= 1/256, these terms and the changes of a3 and a5 are below 2^-61.
  rep64 a3 = c(0xbfd5555555555478, -0.33333333333332105);
  rep64 a3_s = c(0x3fe5555555555555, 0.66666666666666663);
  rep64 a4_0 = c(0x3fe0000000000000, 0.5);
  rep64 a4_s = c(0xbfd5555555555555, -0.33333333333333331);
  rep64 a5 = c(0x3fb999999977fd2f, 0.09999999996943097);
  rep64 a5_s = c(0xbfd999999999999a, -0.40000000000000002);
  rep64 a5_ss = c(0x3fc1111111111111, 0.13333333333333333);
  rep64 a6_0 = c(0xbfc5555555555555, -0.16666666666666666);
  rep64 a6_s = c(0x3fcc71c71c71c71c, 0.22222222222222221);
  rep64 a6_ss = c(0xbfa6c16c16c16c17, -0.044444444444444446);
  rep64 a7 = c(0xbf986184823ed5c5, -0.023809500169326165);
  rep64 a9 = c(0x3f72eef674f04911, 0.00462242386039892);
  alignas(16) std::array<double, 769 * 3> table = erfd_tab;
};

// Accurate: 0.6 ULP. Special results as for float, +-1 from 5.93 on.
struct erf_f64 : kernel<f64, erf_f64_constants> {
  static constexpr double max_ulp = 0.6;
  static constexpr double seams[] = {-6.0, -5.921587195794508, -0.0625, -0x1p-1000, 0x1p-1000, 0.0625, 5.921587195794508, 6.0};

  // With r the multiple of 1/128 next to |x| and d = |x| - r: erf r + 2/sqrt(pi) e^(-r^2) (d - r d^2 + a3 d^3 + ...). Below 1/16
  // r is 0, and what the sum begins with is x + x/8.
  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 y = min(x & k.magnitude, k.last);
    f64x2 r = ((y * k.steps + k.shifter) - k.shifter) * k.step;
    r = clear(as_float(y < k.small), r);
    f64x2 d = y - r, s = r * r, z = d * d;
    f64x2 p4 = r * ((s * k.a4_s + k.a4_0) + ((s * k.a6_ss + k.a6_s) * s + k.a6_0) * z);
    f64x2 p3 = (s * k.a3_s + k.a3) + (((s * k.a5_ss + k.a5_s) * s + k.a5) + (z * k.a9 + k.a7) * z) * z;
    f64x2 p = z * ((p4 * d + p3) * d - r);

    in_order(p, r);
    in_order(r, x);  // comparisons are made again, or there are too few registers
    i32x4 offsets = to_int(r * k.row_bytes);
    auto [value, slope] = gather_pairs(k.table.data(), offsets);
    p = slope * p + gather(k.table.data() + 2, offsets);
    in_order(p, x);
    i64x2 small = (x & k.magnitude) < k.small;
    f64x2 rest = p + select(small, k.rest, slope) * d;
    f64x2 sum = select(small, d, value) + ((d * k.eighth & as_float(small)) + rest);
    return sum | (x & k.sign);
  }
  // What is not finite; and small numbers but zeros, where x/8 is not exact.
  static i32x4 special(f64x2 x, const constants& k) {
    f64x2 y = x & k.magnitude;
    return (words(y) > k.largest) | as_i32((y < k.tiny) & (y != f64x2{}));
  }

  static int rare(const double* x, double* result) {
    if (is_not_finite(bits_of(*x))) return erf_of_not_finite(*x, result);
    // 2/sqrt(pi) |x| as head + tail, 2^200 times as large.
    const uint64_t sign = bits_of(*x) & 0x8000000000000000;
    const double y = from_bits(bits_of(*x) ^ sign) * power_of_two<double>(200);
    auto [head, tail] = fast_two_sum(y, y * 0.125);
    tail += y * scalar(0x3f6baea08536da23, 0.0033791670955125737);
    double sum = head + tail;
    const bool subnormal = head < power_of_two<double>(-1022 + 200);
    if (subnormal) {  // rounded where the last place will be
      const double shifter = power_of_two<double>(52 - 1074 + 200);
      const double units = (head + shifter) - shifter;
      sum = units + ((((head - units) + tail) + 1.5 * shifter) - 1.5 * shifter);
    }
    *result = from_bits(bits_of(sum * power_of_two<double>(-200)) | sign);
    return subnormal ? underflow : ordinary;
  }
};

// Native: relative error 2^-32.1, three terms of the series from the nearest row. NaN for NaN, +-1 for infinities.
struct erf_f64_native : kernel<f64, erf_f64_constants> {
  static constexpr double max_ulp = 1.17e6;

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 y = min(k.last, x & k.magnitude);  // in this order of operands a NaN stays
    f64x2 r = ((min(y, k.last) * k.steps + k.shifter) - k.shifter) * k.step, d = y - r;
    auto [value, slope] = gather_pairs(k.table.data(), to_int(r * k.row_bytes));
    f64x2 p = d + d * d * ((r * r * k.a3_s + k.a3) * d - r);
    return (value + slope * p) | (x & k.sign);
  }
};

}  // namespace vorx

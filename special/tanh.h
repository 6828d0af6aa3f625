// tanh(x): float from cubics in double, native float a quotient of polynomials; double (e^(2|x|) - 1) / (e^(2|x|) + 1), with
// e^(2|x|) from a table and a polynomial.
#pragma once

#include <array>

#include "frame/head_and_tail.h"
#include "frame/kernel.h"
#include "special/cubic_rows.h"
#include "special/sinh_cosh.h"
#include "tables/expm1_f64_pairs.h"
#include "tables/tanhf_tab.h"

namespace vorx {

struct tanh_f32_constants : cubic_rows_constants {
  rep32 last_row = bits32(133 << 19);
  rep32 sign = bits32(0x80000000);
  rep32 limit = bits32(0x7f000000);
  alignas(16) std::array<double, 134 * 4> table = tanhf_tab;
};

// Accurate: 1.03 ULP; a table of cubics, evaluated in double. Special results: tanh(-0) = -0, exactly +-1 from 10 on and for
// infinities, NaN for NaN.
struct tanh_f32 : kernel<f32, tanh_f32_constants> {
  static constexpr double max_ulp = 1.03;
  static constexpr float seams[] = {-10.0f, -0.03125f, 0.03125f, 10.0f, 0x1.1p127f};

  static f32x4 path(f32x4 x, const constants& k) {
    i32x4 offsets = cubic_row_offsets(as_int(x) & k.sixteenths, k.last_row, k);
    return cubic_of_rows(x, offsets, k.table.data(), k) | (x & k.sign);
  }
  // From 1.8e38 on, and NaN.
  static i32x4 special(f32x4 x, const constants& k) { return (as_int(x) & k.sixteenths) > k.limit; }

  static int rare(const float* x, float* result) {
    *result = *x != *x ? opaque(*x) + *x : from_bits(0x3f800000 | (bits_of(*x) & 0x80000000));
    return ordinary;
  }
};

struct tanh_f32_native_constants {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 sign = bits32(0x80000000);
  rep32 largest = c(0x40a1d437, 5.05715513f);  // where the quotient is 1
  // x N(x^2) / D(x^2) on |x| <= 5: relative error 5.2e-5 (tables/fits/tanh_f32_native.sollya)
  rep32 n2 = c(0x3a2fc8e8, 0.000670565758f);
  rep32 n1 = c(0x3dd1c06f, 0.10241781920f);
  rep32 n0 = c(0x3f7ffc9a, 0.999948143959f);
  rep32 d2 = c(0x3c520a96, 0.01281990669667720f);
  rep32 d1 = c(0x3edef10a, 0.435432732105f);
  rep32 d0 = c(0x3f800000, 1.0f);
};

// Native: relative error 2^-13.5, at zero too; +-1 from 5.06 on and for infinities, NaN for NaN.
struct tanh_f32_native : kernel<f32, tanh_f32_native_constants> {
  static constexpr double max_ulp = 1365;
  static constexpr float seams[] = {-5.05715513f, 5.05715513f};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 a = min(k.largest, x & k.magnitude);  // in this order of operands a NaN stays
    f32x4 z = a * a;
    f32x4 y = a * horner(z, k.n2, k.n1, k.n0) / horner(z, k.d2, k.d1, k.d0);
    return y | (x & k.sign);
  }
};

struct tanh_f64_constants {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  rep64 largest = c(0x4034000000000000, 20.0);
  rep64 small = c(0x3fa999999999999a, 0.05);
  rep64 steps = c(0x40671547652b82fe, 184.6649652337873);       // 128 / ln 2
  rep64 step_hi = c(0x3f762e42fef80000, 0.005415212347998022);  // ln 2 / 128; low 19 bits zero: n * step_hi is exact
  rep64 step_lo = c(0x3d41cf79abc9e3b4, 1.2655086083325438e-13);
  rep64 shifter = c(0x42f80000001ff800, 422212465196928.0);  // has 1/16 as its last place: 16 n in the low bits, 1023 above
  rep64 offset = bits64(0x7f0);                              // 16 j, the place of the row in bytes
  rep64 exponent = bits64(0x3ff800);
  // e^r - 1 on |r| <= ln 2 / 256, c1 = 1: relative error 2^-56.1 (tables/fits/polynomials.sollya)
  rep64 c5 = c(0x3f81111168877f38, 8.333335878830547e-3);
  rep64 c4 = c(0x3fa55555c2a9c0f3, 0.04166667939432669);
  rep64 c3 = c(0x3fc555555555541d, 0.166666666666658);
  rep64 c2 = c(0x3fdffffffffffe5c, 0.4999999999999767);
  rep64 one = c(0x3ff0000000000000, 1.0);
  rep64 upper_half = bits64(upper_half_f64);
  // tanh x on |x| <= 0.05: relative error 2^-58.8 (tables/fits/tanh_f64.sollya)
  rep64 t4 = c(0x3f9656c38cb0a1ed, 0.021815352880510664);
  rep64 t3 = c(0xbfaba1b6476b5bd3, -0.05396813985651474);
  rep64 t2 = c(0x3fc1111110dcef6f, 0.1333333332385069);
  rep64 t1 = c(0xbfd555555555539c, -0.33333333333330883);
  std::array<double, 256> table = expm1_f64_pairs;
};
static_assert(low_zero_bits(tanh_f64_constants{}.step_hi) >= 17);

// Accurate: 0.57 ULP; tanh a = (E - 1) / (E + 1) with E = e^(2a), in parts; below 0.05 a polynomial. Special results: tanh(-0) =
// -0, +-1 from 19.1 on and for infinities, NaN for NaN. Every lane stays on the path.
struct tanh_f64 : kernel<f64, tanh_f64_constants> {
  static constexpr double max_ulp = 0.57;
  static constexpr double seams[] = {-20.0, -0.05, 0.0, 0.05, 20.0};

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 y = min(k.largest, x & k.magnitude);  // in this order of operands a NaN stays
    y = y + y;
    f64x2 n = round_to_integral<to_nearest>(y * k.steps);
    f64x2 r = y - n * k.step_hi - n * k.step_lo;  // the first product is exact
    i64x2 u = as_int(n + k.shifter);
    auto [high, low] = gather_pairs(k.table.data(), u & k.offset);
    i64x2 scale = (u & k.exponent) << 41;
    f64x2 s = as_float(as_int(high) | scale);
    f64x2 s_low = low * as_float(scale);

    in_order(s_low, r);
    f64x2 r2 = r * r;
    f64x2 q = r + r2 * ((k.c2 + k.c3 * r) + r2 * (k.c4 + k.c5 * r));
    f64x2 rest = s_low + s * q;  // E = s + rest

    // The quotient has 26 bits at first, so that its product with the upper half of the denominator is exact.
    const auto& k2 = behind(rest, k);
    f64x2 above = s - k2.one, below = s + k2.one;
    f64x2 above_rest = ((s - above) - k2.one) + rest, below_rest = ((s - below) + k2.one) + rest;
    f64x2 reciprocal = k2.one / (below + below_rest);
    f64x2 upper = below & k2.upper_half, lower = (below - upper) + below_rest;
    f64x2 quotient = ((above + above_rest) * reciprocal) & k2.upper_half;
    f64x2 remainder = ((above - quotient * upper) + above_rest) - quotient * lower;
    f64x2 t = quotient + remainder * reciprocal;

    const auto& k3 = behind(t, k);
    f64x2 z = x * x;
    f64x2 near_zero = x + x * (z * horner(z, k3.t4, k3.t3, k3.t2, k3.t1));
    return select((x & k3.magnitude) < k3.small, near_zero, t) | (x & k3.sign);
  }
};

struct tanh_f64_native_constants {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  rep64 largest = c(0x4034000000000000, 20.0);
  rep64 steps = c(0x40671547652b82fe, 184.6649652337873);     // 128 / ln 2
  rep64 step = c(0x3f762e42fefa39ef, 0.0054152123481245725);  // ln 2 / 128
  rep64 shifter = c(0x42f80000001ff800, 422212465196928.0);
  rep64 offset = bits64(0x7f0);
  rep64 exponent = bits64(0x3ff800);
  // e^r - 1 on |r| <= ln 2 / 256, c1 = 1: relative error 2^-32.1 (tables/fits/tanh_f64_native.sollya)
  rep64 c3 = c(0x3fc55555868044db, 0.1666666895621692);
  rep64 c2 = c(0x3fe000007afc271b, 0.500000229077361);
  rep64 two = c(0x4000000000000000, 2.0);
  rep64 one = c(0x3ff0000000000000, 1.0);
  std::array<double, 256> table = expm1_f64_pairs;
};

// Native: the quotient without correction, the table in one part. Relative error 2^-32.1, at zero too; special results as above.
struct tanh_f64_native : kernel<f64, tanh_f64_native_constants> {
  static constexpr double max_ulp = 1.67e6;
  static constexpr double seams[] = {-20.0, 0.0, 20.0};

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 a = min(k.largest, x & k.magnitude);
    f64x2 y = a + a;
    f64x2 n = round_to_integral<to_nearest>(y * k.steps);
    f64x2 r = y - n * k.step;
    f64x2 s = power_in_one_part(as_int(n + k.shifter), k);
    f64x2 e = s * (r + r * r * (k.c2 + r * k.c3)) + (s - k.one);  // e^(2a) - 1
    return e / (e + k.two) | (x & k.sign);
  }
};

}  // namespace vorx

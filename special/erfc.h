// erfc(x) = 1 - erf(x) = e^(-x^2) w(x) with w(x) = e^(x^2) erfc(x), which is smooth: a table of polynomials for x >= 0. Below,
// erfc(x) = 2 - erfc(-x).
#pragma once

#include <array>

#include "explog/exp_of_parts.h"
#include "special/relative_rows.h"
#include "tables/erfcx_rows.h"

namespace vorx {

// Where y >= 0 is in the tables: 64 pieces for each binade of y + 1/2.
struct erfcx_constants {
  rep64 half = c(0x3fe0000000000000, 0.5);
  rep64 last = c(0x403ba00000000000, 27.625);  // of y + 1/2
  rep64 piece = bits64(0xffffc00000000000);
  rep64 middle = bits64(0x0000200000000000);
  rep64 first = bits64(0x3fe0000000000000 >> 46);
};
struct erfcx_piece {
  f64x2 d;      // distance from the middle of the piece
  i64x2 index;  // of the piece, in the low words
};
// y is not negative. A NaN stays one, and has a piece.
VORX_INLINE erfcx_piece piece_of_erfcx(f64x2 y, const erfcx_constants& k) {
  f64x2 u = min(y + k.half, k.last);
  f64x2 middle = (u & k.piece) | k.middle;
  return {y - (middle - k.half), shift_right_logical(as_int(u), 46) - k.first};
}

struct erfcx_cubic_constants : erfcx_constants {
  alignas(16) std::array<double, 367 * 4> cubics = erfcx_cubics;
};
// w(y), relative error 2^-31.0.
VORX_INLINE f64x2 cubic_of_erfcx(f64x2 y, const erfcx_cubic_constants& k) {
  auto [d, index] = piece_of_erfcx(y, k);
  i64x2 offsets = index << 5;
  auto upper = gather_pairs(k.cubics.data() + 2, offsets);
  f64x2 p = upper.second * d + upper.first;
  auto lower = gather_pairs(k.cubics.data(), offsets);
  return (p * d + lower.second) * d + lower.first;
}

// ---- float and double native: e^(-x^2) as one number ----

struct erfc_by_cubics_constants : erfcx_cubic_constants {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  rep64 largest = c(0x403a9fbe76c8b439, 26.623999999999999);
  rep64 two = c(0x4000000000000000, 2.0);
  rep64 steps = c(0xc0671547652b82fe, -184.6649652337873);  // -128 / ln 2
  native_exp2_f64_constants exp2;
};

// Native: relative error 2^-30.8; no subnormal results, +0 from 26.6 on. NaN for NaN.
struct erfc_f64_native : kernel<f64, erfc_by_cubics_constants> {
  static constexpr double max_ulp = 4.6e6;

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 y = min(k.largest, x & k.magnitude);  // in this order of operands a NaN stays
    f64x2 r = native_exp2(y * y * k.steps, k.exp2) * cubic_of_erfcx(y, k);
    return select(as_int(x), k.two - r, r);
  }
};

// Accurate: 0.508 ULP, in double, rounded once. Special results: erfc(-inf) = 2, erfc(+inf) = +0, NaN for NaN; gradual underflow
// above 9.194, +0 above 10.055. No lane is special.
struct erfc_f32 : kernel<f32, erfc_by_cubics_constants> {
  static constexpr double max_ulp = 0.508;
  static constexpr float seams[] = {0.0f, 9.1945f, 10.0545f};

  static f32x4 path(f32x4 x, const constants& k) {
    f64x2 low = erfc_f64_native::path(to_double(x), k);
    in_order(low, x);
    return narrow(low, erfc_f64_native::path(widen_high(x), behind(low, k)));
  }
  static f32x4 lower_half(f32x4 x, const constants& k) { return to_float(erfc_f64_native::path(to_double(x), k)); }
};

struct erfc_f32_native_constants {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 largest = c(0x41219999, 10.0999994f);
  rep32 half = c(0x3f000000, 0.5f);
  rep32 one = c(0x3f800000, 1.0f);
  rep32 two = c(0x40000000, 2.0f);
  rep32 log2e = c(0xbfb8aa3b, -1.44269502f);
  native_exp2_f32_constants exp2;
  // w(x) / t on 0 <= x <= 10.1, t = 1 / (1 + x/2) (tables/fits/erfc_f32_native, error 2^-13.4)
  rep32 c4 = c(0xbe2c4072, -0.168214589f);
  rep32 c3 = c(0x3eee4ec9, 0.465444833f);
  rep32 c2 = c(0x3de826cc, 0.113355249f);
  rep32 c1 = c(0x3e9e6d46, 0.30942744f);
  rep32 c0 = c(0x3e8f65f4, 0.280074716f);
};

// Native: relative error 2^-12.4; no subnormal results, +0 above 9.19. NaN for NaN, 2 for -infinity.
struct erfc_f32_native : kernel<f32, erfc_f32_native_constants> {
  static constexpr double max_ulp = 2875;

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 y = min(k.largest, x & k.magnitude);  // in this order of operands a NaN stays
    f32x4 t = k.one / (y * k.half + k.one);
    f32x4 r = t * horner(t, k.c4, k.c3, k.c2, k.c1, k.c0) * native_exp2(y * y * k.log2e, k.exp2);
    return select(as_int(x), k.two - r, r);
  }
};

// ---- double ----

struct erfc_f64_constants : erfcx_constants {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  rep64 largest = c(0x403a8b1200000000, 26.543243408203125);  // 2^-1022 is at 26.5432584
  rep32 limit = bits32(0x403a8b11);                           // high word
  rep64 two = c(0x4000000000000000, 2.0);
  rep64 upper_half = bits64(upper_half_f64);
  exp_of_parts_constants exp;
  alignas(16) std::array<double, 367 * 8> rows = erfcx_rows;
};

// erfc y = 2^m (head + tail), m as exp_of_parts has it.
struct erfc_parts {
  f64x2 head, tail;
  i64x2 scaled;
};

// Accurate: 0.81 ULP, at the ends of the longest pieces. Special results: erfc(-inf) = 2, erfc(+inf) = +0, NaN for NaN; gradual
// underflow above 26.54326, +0 above 27.2263.
struct erfc_f64 : kernel<f64, erfc_f64_constants> {
  static constexpr double max_ulp = 0.82;
  static constexpr double seams[] = {-26.543243408203125, 0, 26.543243408203125, 27.23};

  // w(y) = head (1 + tail): relative error 2^-55.
  VORX_INLINE static head_and_tail<f64x2> w_of(f64x2 y, const constants& k) {
    auto [d, index] = piece_of_erfcx(y, k);
    return relative_row(k.rows.data(), index << 6, d);
  }

  // With y^2 as the exact square of its upper half and a rest. The head is the exact product of half significands.
  VORX_INLINE static erfc_parts parts_of(f64x2 y, const constants& k) {
    auto [w, b] = w_of(y, k);
    in_order(b, y);
    f64x2 upper = y & k.upper_half;
    auto [high, rest, m] = exp_of_parts({k.sign ^ f64x2(upper * upper), (upper - y) * (upper + y)}, behind(b, k).exp);
    f64x2 high_head = high & k.upper_half;
    f64x2 e = rest + (b + rest * b);
    return {high_head * w, (high - high_head) * w + high * w * e, m};
  }
  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 y = min(k.largest, x & k.magnitude);  // in this order of operands a NaN stays
    auto [head, tail, m] = parts_of(y, k);
    f64x2 r = as_float(as_int(head + tail) + (m << 45));
    return select(as_int(x), k.two - r, r);
  }
  // Above 26.5432, and positive NaN.
  static i32x4 special(f64x2 x, const constants& k) { return words(x) > k.limit; }

  static int rare(const double* x, double* result) {
    if (is_not_finite(bits_of(*x))) return *result = *x != *x ? opaque(*x) + *x : 0, ordinary;
    if (*x > 27.25) return *result = underflowed<double>(), underflow;
    const constants& k = constant_pool<constants>;
    auto [head, tail, m] = parts_of(all(*x), k);
    // erfc = 2^n h (1 + q) with h in [1, 2): w is next to 0.021, q below 2^-7.
    double h = _mm_cvtsd_f64(head.v) * 64, q = _mm_cvtsd_f64(tail.v) * 64 / h;
    int n = (static_cast<int32_t>(extract<0>(as_i32(m))) >> 7) - 6;
    if (h >= 2) h *= 0.5, n++;
    return scaled(h, q, n, result);
  }
};

}  // namespace vorx

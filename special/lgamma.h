// log |gamma(x)|. Rows of polynomials from 1/2 on, Stirling's series for what is above them, log gamma(1 + x) - log x below 1/2;
// scalar reflection for negative x. Where all lanes are in the rows, only these are evaluated; other vectors take the large path,
// which gives these lanes the same bits.
#pragma once

#include <array>
#include <limits>

#include "explog/ln_in_parts.h"
#include "special/reflection.h"
#include "special/relative_rows.h"
#include "special/stirling.h"
#include "tables/gammad_rows.h"
#include "tables/gammaf_rows.h"

namespace vorx {

// +inf at the poles and at infinities, overflow, NaN for NaN. False where there is work to do.
template <class T>
inline bool special_log_gamma(T x, T largest, T* result, int* status) {
  if (x != x) return *result = opaque(x) + x, *status = ordinary, true;
  if (is_not_finite(bits_of(x))) return *result = opaque(x) * x, *status = ordinary, true;
  if (x > largest) return *result = overflowed<T>(), *status = overflow, true;
  if (x <= 0 && is_integral(static_cast<double>(x))) return *result = -pole<T>(), *status = singularity, true;
  return false;
}

// The sign of gamma(x); 0 at its poles and for -inf and NaN.
inline int32_t sign_of_gamma(double x) {
  if (x > 0) return 1;
  if (x != x || is_integral(x)) return 0;
  return split_at_integer(-x).negative ? -1 : 1;
}

// ---- double ----

struct lgamma_f64_constants {
  rep64 first = c(0x3fe0000000000000, 0.5);
  rep64 last = c(0x403fffffffffffff, 31.999999999999996);
  rep32 first_ordinary = bits32(0x3fe00000);  // high words: of 1/2
  rep32 last_ordinary = bits32(0x403fffff);   // of numbers below 32
  rep32 smallest = bits32(0x00100000);        // of normal numbers
  rep32 largest = bits32(0x7f5754d8);         // of numbers whose result is finite, all with this high word
  rep64 one = c(0x3ff0000000000000, 1.0);
  rep64 two = c(0x4000000000000000, 2.0);
  rep64 between = c(0x3ff8000000000000, 1.5);
  rep64 piece = bits64(0xffffc00000000000);
  rep64 middle = bits64(0x0000200000000000);
  rep64 first_index = bits64(0x3fe0000000000000 >> 46);
  rep64 upper_half = bits64(upper_half_f64);
  alignas(16) std::array<double, 384 * 8> rows = lgammad_rows;
};

// Accurate: ULP for x >= 0, and for x < 0 wherever |log |gamma(x)|| > 4; between, next to the zeros below -2, the absolute error
// is below 1e-15. Special results: +inf at 0, at negative integers and at infinities, and above 2.559983e305; +0 at 1 and 2.
struct lgamma_f64 : kernel<f64, lgamma_f64_constants> {
  static constexpr double max_ulp = 0.64;
  static constexpr double domain[] = {-2, std::numeric_limits<double>::infinity()};
  static constexpr double max_absolute = 2e-16;  // beyond it
  static constexpr double seams[] = {0x1p-1022, 0.5, 1.0, 1.5, 2.0, 32.0, 2.559983e305, 2.5599833278516383e305};

  // log gamma(u) for u in [1/2, 32), in two parts; u = x + shift as it was rounded.
  VORX_INLINE static head_and_tail<f64x2> from_rows(f64x2 u, f64x2 x, f64x2 shift, const constants& k) {
    f64x2 middle = (u & k.piece) | k.middle;
    i64x2 offsets = (shift_right_logical(as_int(u), 46) - k.first_index) << 6;
    auto row = relative_row(k.rows.data(), offsets, x - (middle - shift));
    f64x2 zero = k.two - (as_float(u < k.between) & k.one);
    return times_relative(x - (zero - shift), row, k.upper_half);
  }
  VORX_INLINE static f64x2 clamped(f64x2 x, const constants& k) { return max(min(x, k.last), k.first); }

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 u = clamped(x, k);
    auto [head, tail] = from_rows(u, u, f64x2{}, k);
    return (head + tail) + f64x2{};  // not -0 at 1
  }

  // Not in [1/2, 32).
  static i32x4 large(f64x2 x, const constants& k) { return (words(x) < k.first_ordinary) | (words(x) > k.last_ordinary); }
  // Not a normal number with a finite result.
  static i32x4 special(f64x2 x, const constants& k) { return (words(x) < k.smallest) | (words(x) > k.largest); }
  static f64x2 large_path(f64x2 x) { return {on_large_path(x.v)}; }

  // One copy for all widths.
  [[gnu::noinline, gnu::force_align_arg_pointer]] static __m128d on_large_path(__m128d v) {
    const auto& k = constant_pool<constants>;
    const auto& s = constant_pool<stirling_constants>;
    f64x2 x = {v};
    i64x2 below = x < k.first, above = f64x2(k.last) < x;
    f64x2 shift = as_float(below) & k.one;
    auto row = from_rows(clamped(x + shift, k), select(above, k.last, x), shift, k);
    auto far = stirling(x, s);
    f64x2 small = (row.head + (row.tail - far.ln.tail)) - far.ln.head;
    return select(below, small, select(above, far.value.head + far.value.tail, (row.head + row.tail) + f64x2{})).v;
  }

  static int rare(const double* x, double* result) {
    if (int status; special_log_gamma(*x, 2.5599833278516383e305, result, &status)) return status;
    if (*x > 0) {
      if (*x > 1) return *result = _mm_cvtsd_f64(on_large_path(all(*x).v)), ordinary;  // next to the largest
      auto ln = ln_in_parts_of_lane(*x);
      return *result = -(ln.head + ln.tail), ordinary;
    }
    // log |gamma(x)| = -log(y |sin pi y| / pi) - log gamma(y), for small y -log(|sin pi y| / pi) - log gamma(1 + y).
    const double y = -*x, rest = split_at_integer(y).rest;
    const auto& k = constant_pool<constants>;
    head_and_tail<double> factor = sine_over_pi(rest < 0 ? -rest : rest);
    head_and_tail<f64x2> log_gamma;
    if (y < 0.5) {
      log_gamma = from_rows(clamped(all(1 + y), k), all(y), k.one, k);
    } else {
      factor = times(factor, {y, 0});
      log_gamma = y < 32 ? from_rows(all(y), all(y), f64x2{}, k) : stirling(all(y), constant_pool<stirling_constants>).value;
    }
    auto ln = ln_in_parts_of_lane(factor.head);
    auto sum = two_sum(ln.head, _mm_cvtsd_f64(log_gamma.head.v));
    *result = -(sum.head + (sum.tail + (_mm_cvtsd_f64(log_gamma.tail.v) + (ln.tail + factor.tail / factor.head))));
    return ordinary;
  }
};

// ---- float ----

struct lgamma_f32_constants {
  rep32 first_ordinary = c(0x3f000000, 0.5f);
  rep32 last_ordinary = c(0x420fffff, 35.9999962f);
  rep32 largest_finite = bits32(0x7f7fffff);
  rep32 one = bits32(1);
  rep64 first = c(0x3fe0000000000000, 0.5);
  rep64 last = c(0x4042000000000000, 36.0);
  rep64 shifter = c(0x4338000000000000, 6755399441055744.0);  // 1.5 x 2^52
  rep64 sixteen = c(0x4030000000000000, 16.0);
  rep64 sixteenth = c(0x3fb0000000000000, 0.0625);
  rep64 row_bytes = c(0x4048000000000000, 48.0);
  alignas(16) std::array<double, 577 * 6> rows = lgammaf_rows;
};

// Accurate: 0.51 ULP. In double, rounded once. Special results as for double, +inf above 4.085e36.
struct lgamma_f32 : kernel<f32, lgamma_f32_constants> {
  static constexpr double max_ulp = 0.51;
  static constexpr float seams[] = {0x1p-126f, 0.5f, 1.0f, 2.0f, 36.0f, 4.085003e36f};

  static f32x4 path(f32x4 x, const constants& k) {
    f64x2 low = from_rows(clamped(to_double(x), k), f64x2{}, k);
    in_order(low, x);
    const auto& again = behind(low, k);
    return narrow(low, from_rows(clamped(widen_high(x), again), f64x2{}, again));
  }
  static f32x4 lower_half(f32x4 x, const constants& k) { return to_float(from_rows(clamped(to_double(x), k), f64x2{}, k)); }
  VORX_INLINE static f64x2 clamped(f64x2 x, const constants& k) { return max(min(x, k.last), k.first); }

  // log gamma(x + shift), where shift is 0 or 1 and the sum in [1/2, 36]. Multiples of 1/16 are next to x.
  VORX_INLINE static f64x2 from_rows(f64x2 x, f64x2 shift, const constants& k) {
    f64x2 n = (x * k.sixteen + k.shifter) - k.shifter, d = x - n * k.sixteenth;
    i32x4 offsets = to_int((n + shift * k.sixteen) * k.row_bytes);
    auto c45 = gather_pairs(k.rows.data() + 4, offsets);
    f64x2 z = d * d;
    f64x2 p = c45.second * d + c45.first;
    auto c23 = gather_pairs(k.rows.data() + 2, offsets);
    p = p * z + (c23.second * d + c23.first);
    auto c01 = gather_pairs(k.rows.data(), offsets);
    return p * z + (c01.second * d + c01.first);
  }

  // Not in [1/2, 36).
  static i32x4 large(f32x4 x, const constants& k) { return (as_int(x) < k.first_ordinary) | (as_int(x) > k.last_ordinary); }
  // Not a positive finite number.
  static i32x4 special(f32x4 x, const constants& k) { return (as_int(x) < k.one) | (as_int(x) > k.largest_finite); }
  static f32x4 large_path(f32x4 x) { return {on_large_path(x.v)}; }

  // One copy for all widths.
  [[gnu::noinline, gnu::force_align_arg_pointer]] static __m128 on_large_path(__m128 v) {
    f32x4 x = {v};
    return narrow(any_positive(to_double(x)), any_positive(widen_high(x))).v;
  }
  VORX_INLINE static f64x2 any_positive(f64x2 x) {
    const auto& k = constant_pool<constants>;
    const auto& s = constant_pool<stirling_constants>;
    i64x2 below = x < k.first, above = f64x2(k.last) <= x;
    f64x2 shift = as_float(below) & s.ln.one;
    f64x2 row = from_rows(max(min(x, k.last), k.first - (as_float(below) & k.first)), shift, k);
    auto parts = ln_in_parts(x, s.ln);
    f64x2 ln = parts.head + parts.tail, w = s.ln.one / x;
    f64x2 far = (x - k.first) * (ln - s.ln.one) + (s.constant + (w * w * s.one_360th + s.one_12th) * w);
    return select(below, row - ln, select(above, far, row));
  }

  static int rare(const float* x, float* result) {
    if (int status; special_log_gamma(*x, std::numeric_limits<float>::max(), result, &status)) return status;
    double wide = static_cast<double>(*x), log_gamma;
    lgamma_f64::rare(&wide, &log_gamma);
    return *result = static_cast<float>(log_gamma), ordinary;
  }
};

}  // namespace vorx

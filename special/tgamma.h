// gamma(x). Rows of polynomials up to 20 (float up to 36, which is all), below 1 by gamma(x) = gamma(1 + x) / x; Stirling's
// series above; scalar reflection for negative x.
#pragma once

#include <array>
#include <limits>

#include "explog/exp_of_parts.h"
#include "special/reflection.h"
#include "special/stirling.h"
#include "tables/gammad_rows.h"
#include "tables/gammaf_rows.h"

namespace vorx {

// Poles, infinities and NaN; positive x too large. False where there is work to do: finite numbers above -infinity that are no
// poles.
template <class T>
inline bool special_gamma(T x, T largest, T* result, int* status) {
  if (x != x) return *result = opaque(x) + x, *status = ordinary, true;
  if (x == 0) return *result = 1 / opaque(x), *status = singularity, true;
  if (x > largest) {
    const bool infinite = is_not_finite(bits_of(x));
    return *result = infinite ? x : overflowed<T>(), *status = infinite ? ordinary : overflow, true;
  }
  if (x < 0 && is_integral(static_cast<double>(x))) return *result = invalid<T>(), *status = domain_error, true;
  return false;
}

struct tgamma_f32_constants {
  rep64 last = c(0x4042000000000000, 36.0);
  rep64 shifter = c(0x4338000000000000, 6755399441055744.0);  // 1.5 x 2^52
  rep64 sixteen = c(0x4030000000000000, 16.0);
  rep64 sixteenth = c(0x3fb0000000000000, 0.0625);
  rep64 one = c(0x3ff0000000000000, 1.0);
  rep64 row_bytes = c(0x4048000000000000, 48.0);
  rep32 infinity = bits32(0x7f800000);
  alignas(16) std::array<double, 561 * 6> rows = gammaf_rows;
};

// Accurate: 0.5012 ULP, in double, rounded once. Special results: +-inf at +-0, NaN at negative integers and -inf, +inf above
// 35.04; zeros below -42 have the sign of the result.
struct tgamma_f32 : kernel<f32, tgamma_f32_constants> {
  static constexpr double max_ulp = 0.5012;
  static constexpr float seams[] = {0.0f, 1.0f, 35.0401f};

  static f32x4 path(f32x4 x, const constants& k) {
    f64x2 low = in_double(to_double(x), k);
    in_order(low, x);
    return narrow(low, in_double(widen_high(x), behind(low, k)));
  }
  static f32x4 lower_half(f32x4 x, const constants& k) { return to_float(in_double(to_double(x), k)); }
  // gamma(x) for x >= 0, +inf for +inf. With c the multiple of 1/16 next to x: row of c, or of 1 + c for x < 1.
  VORX_INLINE static f64x2 in_double(f64x2 x, const constants& k) {
    f64x2 y = max(min(x, k.last), f64x2{});
    f64x2 n = (y * k.sixteen + k.shifter) - k.shifter, d = y - n * k.sixteenth;
    f64x2 below = as_float(y < k.one);
    i32x4 offsets = to_int((n + (below & k.sixteen)) * k.row_bytes);
    constexpr int before = 16 * 48;
    auto c45 = gather_pairs(k.rows.data() + 4, offsets, before);
    f64x2 z = d * d;
    f64x2 p = c45.second * d + c45.first;
    auto c23 = gather_pairs(k.rows.data() + 2, offsets, before);
    p = p * z + (c23.second * d + c23.first);
    auto c01 = gather_pairs(k.rows.data(), offsets, before);
    p = p * z + (c01.second * d + c01.first);
    return p / ((below & y) | clear(below, k.one));
  }
  // Negative numbers, -0, NaN.
  static i32x4 special(f32x4 x, const constants& k) { return (as_int(x) > k.infinity) | as_int(x); }

  static int rare(const float* x, float* result) {
    if (int status; special_gamma(*x, power_of_two<float>(127), result, &status)) return status;
    // gamma(y) / (x (x + 1) ... (y - 1)) with y in [1, 2): the sums are exact but for tiny x. Below -46, +-0.
    double y = static_cast<double>(*x), product = 1;
    if (y < -46) {
      *result = split_at_integer(-y).negative ? -underflowed<float>() : underflowed<float>();
      return underflow;
    }
    for (; y < 1; y += 1) product *= y;
    const double value = _mm_cvtsd_f64(in_double(all(y), constant_pool<constants>).v) / product;
    *result = static_cast<float>(value);
    const double magnitude = value < 0 ? -value : value;
    return magnitude < 0x1p-126 ? underflow : is_not_finite(bits_of(*result)) ? overflow : ordinary;
  }
};

struct tgamma_f64_constants {
  rep64 last = c(0x4034000000000000, 20.0);
  rep32 smallest = bits32(0x00100000);                        // high words: of normal numbers
  rep32 ordinary = bits32(0x4033ffff);                        // of numbers below 20
  rep32 largest = bits32(0x406573f9);                         // of numbers whose result is finite, all with this high word
  rep64 shifter = c(0x4338000000000000, 6755399441055744.0);  // 1.5 x 2^52
  rep64 one = c(0x3ff0000000000000, 1.0);
  rep64 two = c(0x4000000000000000, 2.0);
  rep64 sixteen = c(0x4030000000000000, 16.0);
  rep64 sixteenth = c(0x3fb0000000000000, 0.0625);
  rep64 half_of_that = c(0x3fa0000000000000, 0.03125);
  rep64 thirty_two = c(0x4040000000000000, 32.0);
  rep64 row_bytes = c(0x4054000000000000, 80.0);
  rep64 upper_half = bits64(upper_half_f64);
  alignas(16) std::array<double, 321 * 10> rows = gammad_rows;
};

// Accurate: 0.86 ULP, at the ends of the longest pieces. Special results as for float, +inf above 171.6243769563027; zeros below
// -184 have the sign of the result.
struct tgamma_f64 : kernel<f64, tgamma_f64_constants> {
  static constexpr double max_ulp = 0.86;
  static constexpr double seams[] = {-184.0, -170.5, 0x1p-1022, 1.0, 2.0, 20.0, 171.62437, 171.6243769563027};

  // gamma(y) = w (1 + b) for y in [1, 20]; for y in [0, 1) gamma(1 + y). Multiples of 1/16 are next to y, below 2 of 1/32.
  VORX_INLINE static head_and_tail<f64x2> row_of(f64x2 y, const constants& k) {
    f64x2 below_two = as_float(y < k.two), below_one = as_float(y < k.one);
    f64x2 n = (y * (k.sixteen + (below_two & k.sixteen)) + k.shifter) - k.shifter;
    f64x2 d = y - n * (k.sixteenth - (below_two & k.half_of_that));
    i32x4 offsets = to_int((n - (clear(below_one, below_two) & k.thirty_two)) * k.row_bytes);
    auto c78 = gather_pairs(k.rows.data() + 8, offsets);
    f64x2 z = d * d;
    f64x2 b = c78.second * d + c78.first;
    auto c56 = gather_pairs(k.rows.data() + 6, offsets);
    b = b * z + (c56.second * d + c56.first);
    auto c34 = gather_pairs(k.rows.data() + 4, offsets);
    b = b * z + (c34.second * d + c34.first);
    auto c12 = gather_pairs(k.rows.data() + 2, offsets);
    b = b * z + (c12.second * d + c12.first);
    auto c0 = gather_pairs(k.rows.data(), offsets);
    return {c0.first, b * d + c0.second};
  }

  // Below 1 divided by x: w times the upper half of 1/x, exact, and what that lacks.
  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 y = max(min(x, k.last), f64x2{});
    auto [w, b] = row_of(y, k);
    f64x2 below = as_float(y < k.one);
    f64x2 divisor = (below & y) | clear(below, k.one);
    f64x2 reciprocal = k.one / divisor & k.upper_half;
    auto parts = cut(divisor, k.upper_half);
    f64x2 e = (k.one - reciprocal * parts.head) - reciprocal * parts.tail;
    e = e + e * e;
    f64x2 head = w * reciprocal;
    return head + head * (b + (e + e * b));
  }

  // Not a normal number below 20.
  static i32x4 large(f64x2 x, const constants& k) { return (words(x) < k.smallest) | (words(x) > k.ordinary); }
  // Not a normal number with a finite result.
  static i32x4 special(f64x2 x, const constants& k) { return (words(x) < k.smallest) | (words(x) > k.largest); }
  static f64x2 large_path(f64x2 x) { return {large_tgamma(x.v)}; }
  // One copy for all widths.
  [[gnu::noinline, gnu::force_align_arg_pointer]] static __m128d large_tgamma(__m128d x);

  static int rare(const double* x, double* result) {
    if (int status; special_gamma(*x, 171.6243769563027, result, &status)) return status;
    const double y = *x < 0 ? -*x : *x;
    if (y < 0x1p-60) return *result = 1 / *x, is_not_finite(bits_of(*result)) ? overflow : ordinary;
    if (*x > 0) return *result = on_large_path(*x), ordinary;  // next to the largest

    auto [r, negative] = split_at_integer(y);
    const uint64_t sign = negative ? 0x8000000000000000 : 0;
    if (y > 190) return *result = from_bits(bits_of(underflowed<double>()) | sign), underflow;
    // |gamma(x)| = pi / (y sin(pi y) gamma(y))
    head_and_tail<double> d = sine_over_pi(r < 0 ? -r : r);
    int status = ordinary;
    double value;
    if (y < 20) {
      auto [w, b] = row_of(all(y), constant_pool<constants>);
      const double w_0 = _mm_cvtsd_f64(w.v);
      if (y >= 1) d = times(d, {y, 0});
      d = times(d, fast_two_sum(w_0, w_0 * _mm_cvtsd_f64(b.v)));
      const double q = 1 / d.head;
      value = q + q * (remainder(1, q, d.head) - q * d.tail);
    } else {
      d = times(d, {y, 0});
      auto s = stirling(all(y), constant_pool<stirling_constants>).value;
      auto [high, rest, m] = exp_of_parts({f64x2{} - s.head, f64x2{} - s.tail}, constant_pool<exp_of_parts_constants>);
      const double high_0 = _mm_cvtsd_f64(high.v), q = high_0 / d.head;
      const double correction = (remainder(high_0, q, d.head) - q * d.tail) / high_0 + _mm_cvtsd_f64(rest.v);
      // q brought to [1, 2)
      const int exponent = static_cast<int>(bits_of(q) >> 52) - 1023;
      const int scale = (static_cast<int32_t>(extract<0>(as_i32(m))) >> 7) + exponent;
      if (scale < -1076)
        value = underflowed<double>(), status = underflow;
      else
        status = scaled(q * power_of_two<double>(-exponent), correction, scale, &value);
    }
    return *result = from_bits(bits_of(value) | sign), status;
  }

 private:
  // a - q d, exact but for its own rounding where q is a/d rounded.
  static double remainder(double a, double q, double d) {
    auto [head, tail] = product(cut(q), cut(d));
    return (a - head) - tail;
  }
  static double on_large_path(double x) { return _mm_cvtsd_f64(large_tgamma(all(x).v)); }
};

inline __m128d tgamma_f64::large_tgamma(__m128d v) {
  const auto& k = constant_pool<constants>;
  f64x2 x = {v};
  auto s = stirling(max(x, k.last), constant_pool<stirling_constants>).value;
  f64x2 y = exp_of_parts_normal(s, constant_pool<exp_of_parts_constants>);
  return select(x < k.last, path(x, k), y).v;
}

}  // namespace vorx

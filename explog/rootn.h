// rootn(x, n) = x^(1/n) for integers n: |x|^(1/n) with the sign of x where n is odd. Float: in double, with the logarithm of
// native double log. Double: logarithm and 1/n in two parts, as in pow.
#pragma once

#include "explog/log.h"
#include "explog/pown.h"
#include "tables/exp2_j2048.h"

namespace vorx {

// Special results: NaN for n = 0, for x < 0 with even n, and for NaN. +-0 and +-inf give 0 or inf, for negative n the other one;
// the sign of x counts for odd n only.
template <class T>
[[gnu::noinline]] int special_root(T x, int32_t n, T* result, void (*root_of_positive)(T, int32_t, T*)) {
  if (x != x) return *result = opaque(x) + x, ordinary;
  if (n == 0 || (x < 0 && n % 2 == 0)) return *result = invalid<T>(), domain_error;
  T sign = n % 2 != 0 && is_negative(x) ? T(-1) : T(1);
  if (x == 0 && n < 0) return *result = sign / (opaque(x) * x), singularity;
  if (x == 0 || is_not_finite(bits_of(x))) return *result = sign * (n < 0 ? T(0) : opaque(x) * x), ordinary;
  root_of_positive(from_bits(bits_of(x) << 1 >> 1), n, result);
  return *result *= sign, ordinary;
}

// ---- float ----

struct rootn_f32_constants : power_f32_range_constants {
  rep32 magnitude = bits32(0x7fffffff);
  rep64 steps = c(0x40a71547652b82fe, 2954.639443740597);     // 2048 / ln 2
  rep64 shifter = c(0x4338000000000000, 6755399441055744.0);  // 1.5 x 2^52: the sum carries an integer in its low bits
  rep64 index = bits64(2047);
  rep64 not_index = bits64(~2047ull);
  // 2^(f/2048) = 1 + c1 f + c2 f (f - 1), the chord and what lies below it, on [0, 1]: relative error 2^-41.5
  // (tables/fits/exp2_j2048_chord.sollya)
  rep64 c2 = c(0x3e6ec1130cf43659, 5.728415574712312e-08);
  rep64 c1 = c(0x3f362f3904051fa1, 0.00033850805268231294);
  rep64 one = c(0x3ff0000000000000, 1.0);
  log_f64_native_constants ln;
};

// Accurate: 0.500001 ULP.
struct rootn_f32 : kernel<f32, rootn_f32_constants> {
  static constexpr double max_ulp = 0.501;
  static constexpr float seams[] = {0x1p-126f, 1.0f};

  static f64x2 root(f64x2 x, i32x4 n, const constants& k) {
    f64x2 u = log_f64_native::path(x, k.ln) / to_double(n) * k.steps;
    f64x2 whole = round_to_integral<downward>(u);
    f64x2 f = u - whole;
    i64x2 t = as_int(whole + k.shifter);
    f64x2 p = ((f - k.one) * k.c2 + k.c1) * f + k.one;
    return as_float(as_int(lookup(exp2_j2048.data(), t & k.index) * p) + ((t & k.not_index) << 41));
  }
  static f32x4 path(f32x4 x, i32x4 n, const constants& k) {
    f32x4 ax = x & k.magnitude;
    f64x2 low = root(to_double(ax), n, k);
    in_order(low, ax);
    return narrow(low, root(widen_high(ax), upper_half(n), behind(low, k))) | sign_of_power(x, n);
  }
  static f32x4 lower_half(f32x4 x, i32x4 n, const constants& k) {
    return to_float(root(to_double(x & k.magnitude), n, k)) | sign_of_power(x, n);
  }
  // |ln x / n| is below 104 for all others, whatever n is.
  static i32x4 special(f32x4 x, i32x4 n, const constants& k) {
    i32x4 negative_and_even = clear(n << 31, as_int(x));
    return not_in_power_range(x & k.magnitude, k) | negative_and_even | (n == i32x4{_mm_setzero_si128()});
  }
  static void root_of_positive(float x, int32_t n, float* result) { power_of_positive(x, 1.0 / n, result); }
  static int rare(const float* x, const int32_t* n, float* result) { return special_root(*x, *n, result, root_of_positive); }
};

// ---- double ----

// ln x / n as head and tail. Beyond 27 bits of n, the tail of 1/n is good to 2^-27 only; ln x / n is small then.
VORX_INLINE head_and_tail<f64x2> divided_ln(f64x2 n, head_and_tail<f64x2> ln, const power_f64_constants& k) {
  f64x2 y = k.one / n, y_head = y & k.upper_half, y_tail = (k.one - n * y_head) * y;
  f64x2 head = (ln.head + ln.tail) & k.upper_half, tail = (ln.head - head) + ln.tail;
  return {head * y_head, tail * y + head * y_tail};
}

// Accurate: 0.52 ULP; any n is exact.
struct rootn_f64 : kernel<f64, power_f64_constants> {
  static constexpr double max_ulp = 0.52;
  static constexpr double seams[] = {0x1p-1022, 0x1.ffp-1, 1.0, 0x1.01p0};
  static constexpr bool test_on_path = true;

  static head_and_tail<f64x2> quotient(f64x2 ax, i32x4 n, const constants& k) {
    return divided_ln(to_double(n), ln_in_parts(ax, k), k);
  }
  static f64x2 path(f64x2 x, i32x4 n, const constants& k) {
    return exp_of_parts_normal(quotient(x & k.magnitude, n, k), k, as_int(sign_of_power(x, n)));
  }
  // For n = 0 the quotient is not finite.
  static i32x4 special(f64x2 x, i32x4 n, const constants& k) {
    f64x2 ax = x & k.magnitude;
    i32x4 negative_and_even = clear(as_i32(extend_zero(n) << 63), words(x));
    return not_positive_normal(ax, k) | exceeds_exponential(quotient(ax, n, k).head, k) | negative_and_even;
  }
  static void root_of_positive(double x, int32_t n, double* result) {
    auto [head, tail] = ln_in_parts_of_lane(x);
    head_and_tail<f64x2> q = divided_ln(all(static_cast<double>(n)), {all(head), all(tail)}, constant_pool<constants>);
    exp_of_parts_of_lane({_mm_cvtsd_f64(q.head.v), _mm_cvtsd_f64(q.tail.v)}, result);
  }
  static int rare(const double* x, const int32_t* n, double* result) { return special_root(*x, *n, result, root_of_positive); }
};

// ---- native ----

// Native: 1479 ULP (8.8e-5 relative) for normal x, positive where n is even, and n other than 0; unspecified for others.
struct rootn_f32_native : kernel<f32, native_power_f32_constants> {
  static constexpr double max_ulp = 1500;
  static constexpr float domain[] = {0x1p-126f, 0x1.fffffep127f};
  static f32x4 path(f32x4 x, i32x4 n, const constants& k) {
    return native_exp2(native_log2(x & k.magnitude, k) / to_float(n), k) | sign_of_power(x, n);
  }
};

// Native: 4749 ULP (5.3e-13 relative) for the same arguments.
struct rootn_f64_native : kernel<f64, native_power_f64_constants> {
  static constexpr double max_ulp = 4830;
  static constexpr double domain[] = {0x1p-1022, 0x1.fffffffffffffp1023};
  static f64x2 path(f64x2 x, i32x4 n, const constants& k) {
    f64x2 u = ln_by_row(x & k.magnitude, k) * k.steps / to_double(n);
    return native_exp2(u, k) | sign_of_power(x, n);
  }
};

}  // namespace vorx

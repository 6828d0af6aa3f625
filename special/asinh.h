// asinh(x) = sign(x) ln(|x| + sqrt(x^2 + 1)).
#pragma once

#include "explog/log1p.h"
#include "special/inverse_hyperbolic.h"

namespace vorx {

struct asinh_f32_constants : short_ln_constants {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 sign = bits32(0x80000000);
  rep32 tiny = c(0x36800000, 0x1p-18f);
  rep32 largest_finite = bits32(0x7f7fffff);
};

// Accurate: 0.505 ULP, through double; a tiny x is returned. Special results: asinh(-0) = -0, asinh(+-inf) = +-inf, NaN for NaN.
struct asinh_f32 : kernel<f32, asinh_f32_constants> {
  static constexpr double max_ulp = 0.505;
  static constexpr float seams[] = {-0x1p-18f, 0.0f, 0x1p-18f};

  static f64x2 of_two(f64x2 y, const constants& k) { return short_ln(y + sqrt(y * y + k.one), k); }
  static f32x4 path(f32x4 x, const constants& k) {
    f64x2 low = of_two(to_double(x & k.magnitude), k);
    in_order(low, x);
    const auto& k2 = behind(low, k);
    f64x2 high = of_two(widen_high(x & k2.magnitude), k2);
    return finished(x, narrow(low, high), k2);
  }
  static f32x4 lower_half(f32x4 x, const constants& k) { return finished(x, to_float(of_two(to_double(x & k.magnitude), k)), k); }
  static f32x4 finished(f32x4 x, f32x4 y, const constants& k) { return select((x & k.magnitude) < k.tiny, x, y | (x & k.sign)); }
  static i32x4 special(f32x4 x, const constants& k) { return (as_int(x) & k.magnitude) > k.largest_finite; }

  static int rare(const float* x, float* result) { return *result = opaque(*x) + *x, ordinary; }
};

struct asinh_f32_native_constants : log1p_f32_native_constants {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 largest = c(0x5d800000, 0x1p60f);  // its square is finite
};

// Native: log1p(|x| + x^2 / (1 + sqrt(1 + x^2))), with the logarithm of native log1p. Relative error 2^-12.8, at zero too;
// special results as above.
struct asinh_f32_native : kernel<f32, asinh_f32_native_constants> {
  static constexpr double max_ulp = 1480;
  static constexpr float seams[] = {-0x1p60f, 0.0f, 0x1p60f};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 y = x & k.magnitude;
    f32x4 z = y * y;
    f32x4 u = y + z / (k.one + sqrt(k.one + z));
    return log1p_f32_native::path(u, k) | (x & k.sign);
  }
  static i32x4 special(f32x4 x, const constants& k) { return (as_int(x) & k.magnitude) > k.largest; }

  static int rare(const float* x, float* result) {
    if (is_not_finite(bits_of(*x))) return asinh_f32::rare(x, result);
    _mm_store_ss(result, asinh_f32::path(all(*x), constant_pool<asinh_f32_constants>).v);
    return ordinary;
  }
};

struct asinh_f64_constants : ln_of_pair_constants, root_of_pair_constants {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  rep64 small = c(0x3fc0000000000000, 0.125);
  // asinh x on |x| <= 1/8: relative error 2^-61.0 (tables/fits/inverse_hyperbolic_f64.sollya)
  rep64 a6 = c(0x3f91046078285be2, 0.016618258794632974);
  rep64 a5 = c(0xbf96e4b1f4da1cac, -0.022356777734356);
  rep64 a4 = c(0x3f9f1c6718729738, 0.030381785266079236);
  rep64 a3 = c(0xbfa6db6dafb081b6, -0.044642856308431275);
  rep64 a2 = c(0x3fb333333330fc85, 0.07499999999798675);
  rep64 a1 = c(0xbfc555555555551b, -0.16666666666666505);
  rep32 limit = high_words(0x5f2fffff);  // of 2^500, the last high word below it
};

// What is not below 2^500: infinities, NaN, and numbers whose square is not wanted any more.
VORX_INLINE int asinh_of_large(const double* x, double* result) {
  double y = from_bits(bits_of(*x) & 0x7fffffffffffffff);
  if (is_not_finite(bits_of(*x))) return *result = opaque(*x) + *x, ordinary;
  y = ln_of_twice(y);
  return *result = *x < 0 ? -y : y, ordinary;
}

// Accurate: 0.555 ULP; below 1/8 a polynomial. Special results as for float.
struct asinh_f64 : kernel<f64, asinh_f64_constants> {
  static constexpr double max_ulp = 0.555;
  static constexpr double seams[] = {-0x1p500, -0.125, 0.0, 0.125, 0x1p500};

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 y = x & k.magnitude;
    auto z = square(y, k.upper_half);
    auto sum = two_sum<f64x2>(k.one, z.head);
    auto root = root_of_pair({sum.head, sum.tail + z.tail}, k);
    auto v = fast_two_sum(root.head, y);
    auto ln = ln_of_pair({v.head, v.tail + root.tail}, k);

    f64x2 s = x * x;
    f64x2 near_zero = x + x * (s * horner(s, k.a6, k.a5, k.a4, k.a3, k.a2, k.a1));
    return select((x & k.magnitude) < k.small, near_zero, ln.head + ln.tail) | (x & k.sign);
  }
  static i32x4 special(f64x2 x, const constants& k) { return words(x & k.magnitude) > k.limit; }

  static int rare(const double* x, double* result) { return asinh_of_large(x, result); }
};

struct asinh_f64_native_constants : short_ln_constants {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  rep64 small = c(0x3f50000000000000, 0x1p-10);
  rep64 sixth = c(0x3fc5555555555555, 0.16666666666666666);
  rep32 limit = high_words(0x5f2fffff);
};

// Native: the same in one part, x - x^3/6 below 2^-10. Relative error 2^-34.5; special results as above.
struct asinh_f64_native : kernel<f64, asinh_f64_native_constants> {
  static constexpr double max_ulp = 372000;
  static constexpr double seams[] = {-0x1p500, -0x1p-10, 0.0, 0x1p-10, 0x1p500};

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 y = x & k.magnitude;
    f64x2 z = y * y;
    f64x2 ln = short_ln(y + sqrt(z + k.one), k);
    f64x2 w = x & k.magnitude;
    return select(w < k.small, w - w * w * (w * k.sixth), ln) | (x & k.sign);
  }
  static i32x4 special(f64x2 x, const constants& k) { return words(x & k.magnitude) > k.limit; }

  static int rare(const double* x, double* result) { return asinh_of_large(x, result); }
};

}  // namespace vorx

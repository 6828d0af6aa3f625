// exp(x) = 2^n e^r with n = round(x / ln 2) and |r| <= ln 2 / 2; e^r is a polynomial.
#pragma once

#include "frame/kernel.h"
#include "frame/rare.h"

namespace vorx {

struct exp_f32_constants {
  rep32 log2e = c(0x3fb8aa3b, 1.44269502f);
  rep32 shifter = c(0x4b400000, 12582912.0f);  // 1.5 x 2^23: the sum carries n in its low bits
  rep32 ln2_hi = c(0x3f317200, 0.693145752f);  // low 9 bits zero: n * ln2_hi is exact
  rep32 ln2_lo = c(0x35bfbe8e, 1.42860677e-06f);
  rep32 c5 = c(0x3c07d9fe, 0.00829171948f);
  rep32 c4 = c(0x3d2b8392, 0.0418735221f);
  rep32 c3 = c(0x3e2aacac, 0.166674316f);
  rep32 c2 = c(0x3effff34, 0.49999392f);
  rep32 c1 = c(0x3f7ffffe, 0.99999988f);
  rep32 c0 = c(0x3f800000, 1.0f);
  rep32 magnitude = bits32(0x7fffffff);
  rep32 limit = c(0x42aeac4f, 87.3365402f);  // beyond it 2^n leaves the normal range
};
static_assert(low_zero_bits(exp_f32_constants{}.ln2_hi) >= 9);

// Accurate: 2.93 ULP. Special results: exp(-inf) = +0, exp(+inf) = +inf, NaN for NaN; +inf above 88.72283, gradual underflow
// below -87.33654, +0 below -103.97208.
struct exp_f32 : kernel<f32, exp_f32_constants> {
  static constexpr double max_ulp = 2.94;
  static constexpr float seams[] = {-103.97208f, -87.33654f, 87.33654f, 88.72283f};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 t = x * k.log2e + k.shifter;  // n, in the low bits of t
    f32x4 n = t - k.shifter;
    f32x4 r = x - n * k.ln2_hi - n * k.ln2_lo;  // reduction: the first product is exact
    f32x4 p = horner(r, k.c5, k.c4, k.c3, k.c2, k.c1, k.c0);
    return as_float(as_int(p) + (as_int(t) << 23));  // 2^n e^r: n added to the exponent field
  }
  static i32x4 special(f32x4 x, const constants& k) { return (as_int(x) & k.magnitude) > k.limit; }

  static int rare(const float* x, float* result) {
    uint32_t bits = bits_of(*x);
    if (is_not_finite(bits)) {
      if (bits == 0xff800000) return *result = 0.0f, ordinary;
      return *result = opaque(*x) * *x, ordinary;
    }
    if (*x > scalar(0x42b17217, 88.7228317f)) return *result = overflowed<float>(), overflow;
    if (*x < scalar(0xc2cff1b4, -103.972076f)) return *result = underflowed<float>(), underflow;

    // The same reduction as on the path, with a polynomial of its own.
    float t = *x * scalar(0x3fb8aa3b, 1.44269502f) + scalar(0x4b400000, 12582912.0f);
    float k = t - scalar(0x4b400000, 12582912.0f);
    int n = static_cast<int16_t>(bits_of(t));
    float r = *x - k * scalar(0x3f317200, 0.693145752f) - k * scalar(0x35bfbe8e, 1.42860677e-06f);
    float p = horner(r, scalar(0x3c0950ef, 0.0083811125f), scalar(0x3d2bb1b6, 0.041917525f), scalar(0x3e2aa9c6, 0.16666326f),
                     scalar(0x3efffe85, 0.4999887f), scalar(0x3f800001, 1.0000001f), scalar(0x3f800001, 1.0000001f));
    if (*x < scalar(0xc2aeac4f, -87.3365402f)) {  // subnormal: one rounding, in the last product
      *result = p * power_of_two<float>(n + 60) * scalar(0x21800000, 0x1p-60f);
      return underflow;
    }
    if (n > 127)
      *result = p * power_of_two<float>(n - 1) * 2.0f;
    else
      *result = p * power_of_two<float>(n);
    return ordinary;
  }
};

struct exp_f32_native_constants {
  rep32 log2e = c(0x3fb8aa3b, 1.44269502f);
  rep32 shifter = c(0x4b400000, 12582912.0f);
  rep32 ln2 = c(0x3f317218, 0.693147182f);
  rep32 c3 = c(0x3e2963ac, 0.165419281f);
  rep32 c2 = c(0x3f00f2d6, 0.503705382f);
  rep32 c1 = c(0x3f8003de, 1.00011802f);
  rep32 c0 = c(0x3f800000, 1.0f);
};

// Native: 1813 ULP (1.1e-4 relative) for |x| <= 87.3; unspecified beyond, where the exponent wraps.
struct exp_f32_native : kernel<f32, exp_f32_native_constants> {
  static constexpr double max_ulp = 1814;

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 t = x * k.log2e + k.shifter;
    f32x4 r = x - (t - k.shifter) * k.ln2;
    f32x4 p = horner(r, k.c3, k.c2, k.c1, k.c0);
    return as_float(as_int(p) + (as_int(t) << 23));
  }
};

}  // namespace vorx

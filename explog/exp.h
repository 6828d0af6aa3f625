// exp(x) = 2^n e^r with n = round(x / ln 2) and |r| <= ln 2 / 2; e^r is a polynomial.
#pragma once

#include <array>

#include "explog/exponential.h"
#include "frame/kernel.h"
#include "frame/rare.h"
#include "tables/exp_f64_table.h"

namespace vorx {

struct exp_f32_constants {
  rep32 log2e = c(0x3fb8aa3b, 1.44269502f);
  rep32 shifter = c(0x4b400000, 12582912.0f);  // 1.5 x 2^23: the sum carries n in its low bits
  rep32 ln2_hi = c(0x3f317200, 0.693145752f);  // low 9 bits zero: n * ln2_hi is exact
  rep32 ln2_lo = c(0x35bfbe8e, 1.42860677e-06f);
  // e^r on |r| <= ln 2 / 2: relative error 2^-22.6 (tables/fits/polynomials.sollya)
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
    if (is_not_finite(bits_of(*x))) return exponential_of_not_finite(*x, result);
    if (*x > scalar(0x42b17217, 88.7228317f)) return *result = overflowed<float>(), overflow;
    if (*x < scalar(0xc2cff1b4, -103.972076f)) return *result = underflowed<float>(), underflow;

    // The same reduction as on the path, with a polynomial of its own: e^r on |r| <= ln 2 / 2, relative error 2^-22.7
    // (tables/fits/polynomials.sollya).
    float t = *x * scalar(0x3fb8aa3b, 1.44269502f) + scalar(0x4b400000, 12582912.0f);
    float k = t - scalar(0x4b400000, 12582912.0f);
    int n = static_cast<int16_t>(bits_of(t));
    float r = *x - k * scalar(0x3f317200, 0.693145752f) - k * scalar(0x35bfbe8e, 1.42860677e-06f);
    float p = horner(r, scalar(0x3c0950ef, 0.0083811125f), scalar(0x3d2bb1b6, 0.041917525f), scalar(0x3e2aa9c6, 0.16666326f),
                     scalar(0x3efffe85, 0.4999887f), scalar(0x3f800001, 1.0000001f), scalar(0x3f800001, 1.0000001f));
    if (*x < scalar(0xc2aeac4f, -87.3365402f)) {  // subnormal: one rounding, in the last product
      // The bits that are rounded away may all be zero: underflow is raised by a +0 of its own.
      *result = p * power_of_two<float>(n + 60) * scalar(0x21800000, 0x1p-60f) + underflowed<float>();
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
  // e^r on |r| <= ln 2 / 2: relative error 2^-12.7 (tables/fits/polynomials.sollya)
  rep32 c3 = c(0x3e2963ac, 0.165419281f);
  rep32 c2 = c(0x3f00f2d6, 0.503705382f);
  rep32 c1 = c(0x3f8003de, 1.00011802f);
  rep32 c0 = c(0x3f800000, 1.0f);
};

// Native: 1821 ULP (1.1e-4 relative) for |x| <= 87.3; unspecified beyond, where the exponent wraps.
struct exp_f32_native : kernel<f32, exp_f32_native_constants> {
  static constexpr double max_ulp = 1821;

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 t = x * k.log2e + k.shifter;
    f32x4 r = x - (t - k.shifter) * k.ln2;
    f32x4 p = horner(r, k.c3, k.c2, k.c1, k.c0);
    return as_float(as_int(p) + (as_int(t) << 23));
  }
};

struct exp_f64_constants {
  rep64 steps = c(0x40971547652b82fe, 1477.3197218702985);       // 1024 / ln 2
  rep64 shifter = c(0x4338000000000000, 6755399441055744.0);     // 1.5 x 2^52: the sum carries n in its low bits
  rep64 step_hi = c(0x3f462e42fec00000, 0.0006769015431018488);  // ln 2 / 1024; low 22 bits zero: n * step_hi is exact
  rep64 step_lo = c(0x3d5d1cf79abc9e3b, 4.137227896298129e-13);
  // C e^r on |r| <= ln 2 / 2048, with C the midpoint of c0 and c1, neighbours, and 1 as the coefficient of r^3: relative error
  // 2^-53.4 (tables/fits/polynomials.sollya)
  rep64 c2 = c(0x4008000002503ecd, 3.0000000172366073);
  rep64 c1 = c(0x4017fffffe3ca7b0, 5.999999973728265);
  rep64 c0 = c(0x4017fffffe3ca7af, 5.999999973728264);
  rep64 index = bits64(0x3ff);
  rep64 exponent = bits64(~0x3ffull);
  rep64 one = c(0x3ff0000000000000, 1.0);
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 tiny = c(0x3cb0000000000000, 0x1p-52);
  rep32 limit = high_words(0x4086232a);  // of 708.396; the last high word on the path
  std::array<double, 1024> table = exp_f64_table;
};
static_assert(low_zero_bits(exp_f64_constants{}.step_hi) >= 21);

// Accurate: 2.58 ULP; exactly 1 + x for |x| < 2^-52. Special results: exp(-inf) = +0, exp(+inf) = +inf, NaN for NaN; +inf above
// 709.7827, gradual underflow below -708.3964, +0 below -745.1332.
struct exp_f64 : kernel<f64, exp_f64_constants> {
  static constexpr double max_ulp = 2.58;
  static constexpr double seams[] = {-745.1332191019411, -708.3964185322641, -708.39599609375, -0x1p-52, 0x1p-52,
                                     708.39599609375,    709.782712893384};

  // e^x = 2^m 2^(j/1024) e^r with n = round(x 1024 / ln 2) = 1024 m + j and |r| <= ln 2 / 2048. The cubic has 1 as its leading
  // coefficient and approximates C e^r, C = 5.99999997; the table has 2^(j/1024) / C.
  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 t = x * k.steps + k.shifter;
    f64x2 n = t - k.shifter;
    f64x2 r = x - n * k.step_hi - n * k.step_lo;  // the first product is exact
    f64x2 p = horner(r, r + k.c2, k.c1, k.c0);
    f64x2 y = lookup(k.table.data(), as_int(t) & k.index) * p;
    y = as_float(as_int(y) + ((as_int(t) & k.exponent) << 42));  // 2^m: m added to the exponent field
    // The steps give 1 - 2^-53 at zero.
    return select((x & k.magnitude) < k.tiny, x + k.one, y);
  }
  static i32x4 special(f64x2 x, const constants& k) { return words(x & k.magnitude) > k.limit; }

  static int rare(const double* x, double* result) {
    if (is_not_finite(bits_of(*x))) return exponential_of_not_finite(*x, result);
    if ((bits_of(*x) >> 52 & 0x7ff) < 971) return *result = 1 + *x, ordinary;
    if (*x > scalar(0x40862e42fefa39ef, 709.782712893384)) return *result = overflowed<double>(), overflow;
    if (*x < scalar(0xc0874910d52d3051, -745.1332191019411)) return *result = underflowed<double>(), underflow;

    // e^x = 2^(n/64) e^r with n = round(x 64 / ln 2) and |r| <= ln 2 / 128.
    double t = *x * scalar(0x40571547652b82fe, 92.33248261689366) + scalar(0x4338000000000000, 6755399441055744.0);
    double n = t - scalar(0x4338000000000000, 6755399441055744.0);
    double r = *x - n * scalar(0x3f862e42fefa0000, 0.010830424696223417) - n * scalar(0x3d1cf79abc9e3b3a, 2.572804622327669e-14);
    return exp_in_steps(static_cast<int32_t>(bits_of(t)), r, result);
  }
};

struct exp_f64_native_constants {
  rep64 steps = c(0x40671547652b82fe, 184.6649652337873);  // 128 / ln 2
  native_exp2_f64_constants exp2;
};

// Native: 3405 ULP (3.8e-13 relative); +inf above 709.7827, +0 below -708.3964 (no subnormal results), NaN for NaN.
struct exp_f64_native : kernel<f64, exp_f64_native_constants> {
  static constexpr double max_ulp = 3405;
  static f64x2 path(f64x2 x, const constants& k) { return native_exp2(x * k.steps, k.exp2); }
};

}  // namespace vorx

// tan(x), x in radians. With n = round(|x| / (pi/2)) and r = |x| - n pi/2, |r| <= pi/4: tan |x| = tan r for even n, -1 / tan r
// for odd n, and tan r = N(r) / D(r), an odd over an even polynomial: odd n exchanges the two, so there is one division.
// Arguments too large for exact products with the parts of pi/2 take the large path (large_tan.h), together with all other lanes
// of their vector.
#pragma once

#include "trig/large_tan.h"
#include "trig/tan_quotient.h"

namespace vorx {

struct tan_f32_constants : tan_f32_quotient {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 sign = bits32(0x80000000);
  rep32 largest_finite = bits32(0x7f7fffff);
  rep32 limit = c(0x46010000, 8256.0f);
  rep32 two_over_pi = c(0x3f22f983, 0.636619747f);
  rep32 shifter = c(0x4b400000, 12582912.0f);  // 1.5 x 2^23: the sum carries n in its low bits
  rep32 half_pi_1 = c(0x3fc90000, 1.5703125f);
  rep32 half_pi_2 = c(0x39fd8000, 4.83512878e-04f);
  rep32 half_pi_3 = c(0x34a88000, 3.13855708e-07f);
  rep32 half_pi_4 = c(0x2e85a309, 6.07710063e-11f);
};
// n <= 5256 has 13 bits.
static_assert(low_zero_bits(tan_f32_constants{}.half_pi_1) >= 13 && low_zero_bits(tan_f32_constants{}.half_pi_2) >= 13 &&
              low_zero_bits(tan_f32_constants{}.half_pi_3) >= 13);

// Accurate: 4.56 ULP, 0.53 ULP in vectors with a lane above 8256. Special results: NaN for an infinity (invalid) and for NaN;
// tan(-0) = -0.
struct tan_f32 : with_rare_cases<with_large_path<kernel<f32, tan_f32_constants>>> {
  static constexpr double max_ulp = 4.56;
  static constexpr float seams[] = {-8256.0f, -0x1p-20f, 0x1p-20f, 8256.0f};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 y = x & k.magnitude;
    f32x4 t = y * k.two_over_pi + k.shifter;
    f32x4 n = t - k.shifter;
    f32x4 r = y - n * k.half_pi_1 - n * k.half_pi_2 - n * k.half_pi_3 - n * k.half_pi_4;
    f32x4 z = r * r;
    f32x4 numerator = k.numerator(r, z), denominator = k.denominator(z);

    i32x4 odd = as_int(t) << 31;  // decides by its sign bit, and is the sign of -1 / tan r
    f32x4 quotient = select(odd, denominator, numerator) / select(odd, numerator, denominator);
    return quotient ^ as_float(odd) ^ (x & k.sign);
  }
  static f32x4 large_path(f32x4 x) { return {tan_large(x.v)}; }
};

struct tan_f32_native_constants : tan_f32_quotient {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 sign = bits32(0x80000000);
  rep32 limit = c(0x46010000, 8256.0f);
  rep32 two_over_pi = c(0x3f22f983, 0.636619747f);
  rep32 shifter = c(0x4b400000, 12582912.0f);
  rep32 half_pi_1 = c(0x3fc90000, 1.5703125f);
  rep32 half_pi_2 = c(0x39fda000, 4.83751297e-04f);
  rep32 half_pi_3 = c(0x33a22169, 7.54979013e-08f);
};

// Native: three parts of pi/2, and the processor's estimate of the reciprocal instead of the division. No special results.
struct tan_f32_native : with_large_path<kernel<f32, tan_f32_native_constants>> {
  static constexpr double max_ulp = 6150;  // 1.5 x 2^-12 relative, by definition of the estimate; 5204 on one processor

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 y = x & k.magnitude;
    f32x4 t = y * k.two_over_pi + k.shifter;
    f32x4 n = t - k.shifter;
    f32x4 r = y - n * k.half_pi_1 - n * k.half_pi_2 - n * k.half_pi_3;
    f32x4 z = r * r;
    f32x4 numerator = k.numerator(r, z), denominator = k.denominator(z);

    i32x4 odd = as_int(t) << 31;
    f32x4 quotient = select(odd, denominator, numerator) * estimate_reciprocal(select(odd, numerator, denominator));
    return quotient ^ as_float(odd) ^ (x & k.sign);
  }
  static f32x4 large_path(f32x4 x) { return {tan_large(x.v)}; }
};

struct tan_f64_constants : tan_f64_quotient {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  rep32 largest_finite = bits32(0x7fefffff);  // high word
  rep64 limit = c(0x40ff400000000000, 128000.0);
  rep64 two_over_pi = c(0x3fe45f306dc9c883, 0.63661977236758138);
  rep64 shifter = c(0x4338000000000000, 6755399441055744.0);  // 1.5 x 2^52
  rep64 half_pi_1 = c(0x3ff921fb40000000, 1.5707962512969971);
  rep64 half_pi_2 = c(0x3e74442d00000000, 7.5497894158615964e-08);
  rep64 half_pi_3 = c(0x3cf8469880000000, 5.3903025299577648e-15);
  rep64 half_pi_4 = c(0x3b78cc51701b839a, 3.2820035428735005e-22);
};
// n <= 81488 has 17 bits.
static_assert(low_zero_bits(tan_f64_constants{}.half_pi_1) >= 17 && low_zero_bits(tan_f64_constants{}.half_pi_2) >= 17 &&
              low_zero_bits(tan_f64_constants{}.half_pi_3) >= 17);

struct tan_f64_path : kernel<f64, tan_f64_constants> {
  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 y = x & k.magnitude;
    f64x2 t = y * k.two_over_pi + k.shifter;
    f64x2 n = t - k.shifter;
    f64x2 r = y - n * k.half_pi_1 - n * k.half_pi_2 - n * k.half_pi_3;
    f64x2 z = r * r;  // before the last part of pi/2, on purpose: only the linear factor feels it
    r = r - n * k.half_pi_4;
    f64x2 numerator = k.numerator(r, z), denominator = k.denominator(z);

    i64x2 odd = as_int(t) << 63;
    f64x2 quotient = select(odd, denominator, numerator) / select(odd, numerator, denominator);
    return quotient ^ as_float(odd) ^ (x & k.sign);
  }
};

// Accurate: 5.1 ULP, 0.51 ULP in vectors with a lane above 128000. The standard allows 5; more than that is next to odd multiples
// of pi/4 around 127000, where the parts of pi/2 leave r 0.74 units off. 200 million random arguments stay below 4.52, a search
// in these places found 5.05 (tests/witnesses.csv). Special results as for float.
struct tan_f64 : with_rare_cases<with_large_path<tan_f64_path>> {
  static constexpr double max_ulp = 5.1;
  static constexpr double seams[] = {-128000.0, -0x1p-27, 0x1p-27, 128000.0};
  static f64x2 large_path(f64x2 x) { return {tan_large(x.v)}; }
};

// Native: the same without special results.
struct tan_f64_native : with_large_path<tan_f64_path> {
  static constexpr double max_ulp = 5.1;
  static f64x2 large_path(f64x2 x) { return {tan_large(x.v)}; }
};

}  // namespace vorx

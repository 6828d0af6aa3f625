// What sin, cos and sincos share on their ordinary path: subtracting multiples of pi in parts that are short enough for exact
// products, the odd polynomial for sin r on |r| <= pi/2, the choice of the large path, and what is left to the rare-case routine.
//
// Arguments too large for the parts take the large path (large_sine.h), together with all other lanes of their vector: the last
// bit of a lane may depend on whether a large one is beside it (3% of the float lanes, 10% of the double lanes).
#pragma once

#include "trig/large_sine.h"
#include "trig/sine_polynomials.h"

namespace vorx {

// The sign of sin r for the cosine of y, with what makes the cosine of zero exact where the polynomial misses it: off the
// critical path.
template <class V, class C>
VORX_INLINE V cosine_sign(V t, V y, const C& k) {
  if constexpr (requires { k.unit_at_zero; })
    return parity_sign(t) | (as_float(y == V{}) & k.unit_at_zero);
  else
    return parity_sign(t);
}

struct sine_f32_constants : sine_f32_polynomial {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 sign = bits32(0x80000000);
  rep32 largest_finite = bits32(0x7f7fffff);
  rep32 limit = c(0x461c4000, 10000.0f);
  rep32 inv_pi = c(0x3ea2f983, 0.318309873f);
  rep32 shifter = c(0x4b400000, 12582912.0f);  // 1.5 x 2^23: the sum carries n in its low bits
  rep32 half_pi = c(0x3fc90fdb, 1.57079637f);
  rep32 half = c(0x3f000000, 0.5f);
  rep32 pi_1 = c(0x40490000, 3.140625f);
  rep32 pi_2 = c(0x3a7da000, 9.67502594e-04f);
  rep32 pi_3 = c(0x34222000, 1.50990672e-07f);
  rep32 pi_4 = c(0x2cb4611a, 5.12668814e-12f);

  // y - n pi in two stages; after the first it is exact to half a unit.
  VORX_INLINE f32x4 first_parts(f32x4 y, f32x4 n) const { return y - n * pi_1 - n * pi_2; }
  VORX_INLINE f32x4 last_parts(f32x4 r, f32x4 n) const { return r - n * pi_3 - n * pi_4; }
};
// n and n - 1/2 have at most 13 bits, for n <= 3184: exact products with the first three parts.
static_assert(low_zero_bits(sine_f32_constants{}.pi_1) >= 13 && low_zero_bits(sine_f32_constants{}.pi_2) >= 13 &&
              low_zero_bits(sine_f32_constants{}.pi_3) >= 13);

// Three parts of pi and two coefficients.
struct sine_f32_native_constants : sine_f32_native_polynomial {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 sign = bits32(0x80000000);
  rep32 limit = c(0x461c4000, 10000.0f);
  rep32 inv_pi = c(0x3ea2f983, 0.318309873f);
  rep32 shifter = c(0x4b400000, 12582912.0f);
  rep32 half_pi = c(0x3fc90fdb, 1.57079637f);
  rep32 half = c(0x3f000000, 0.5f);
  rep32 pi_1 = c(0x40490000, 3.140625f);
  rep32 pi_2 = c(0x3a7da000, 9.67502594e-04f);
  rep32 pi_3 = c(0x34222169, 1.50995803e-07f);

  VORX_INLINE f32x4 first_parts(f32x4 y, f32x4 n) const { return y - n * pi_1 - n * pi_2; }
  VORX_INLINE f32x4 last_parts(f32x4 r, f32x4 n) const { return r - n * pi_3; }
};

struct sine_f64_constants : sine_f64_polynomial {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  rep32 largest_finite = bits32(0x7fefffff);       // high word
  rep64 limit = c(0x4160000000000000, 8388608.0);  // cos and sincos
  rep64 inv_pi = c(0x3fd45f306dc9c883, 0.31830988618379069);
  rep64 shifter = c(0x4338000000000000, 6755399441055744.0);  // 1.5 x 2^52
  rep64 half_pi = c(0x3ff921fb54442d18, 1.5707963267948966);
  rep64 half = c(0x3fe0000000000000, 0.5);
  rep64 pi_1 = c(0x400921fb40000000, 3.1415925025939941);
  rep64 pi_2 = c(0x3e84442d00000000, 1.5099578831723193e-07);
  rep64 pi_3 = c(0x3d08469880000000, 1.078060505991553e-14);
  rep64 pi_4 = c(0x3b88cc51701b839a, 6.5640070857470009e-22);
  // The polynomial gives 1 - 2^-53 for the cosine of zero. One unit more in r, for a zero argument, makes that 1.
  rep64 unit_at_zero = bits64(1);

  VORX_INLINE f64x2 first_parts(f64x2 y, f64x2 n) const { return y - n * pi_1 - n * pi_2; }
  VORX_INLINE f64x2 last_parts(f64x2 r, f64x2 n) const { return r - n * pi_3 - n * pi_4; }
};
// 24 bits for n <= 2^24 / pi, and for n - 1/2 where x <= 2^23.
static_assert(low_zero_bits(sine_f64_constants{}.pi_1) >= 24 && low_zero_bits(sine_f64_constants{}.pi_2) >= 24 &&
              low_zero_bits(sine_f64_constants{}.pi_3) >= 24);

// Three parts of pi, four coefficients, no large path: without meaning beyond about 2^52.
struct sine_f64_native_constants : sine_f64_native_polynomial {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  rep64 inv_pi = c(0x3fd45f306dc9c883, 0.31830988618379069);
  rep64 shifter = c(0x4338000000000000, 6755399441055744.0);
  rep64 half_pi = c(0x3ff921fb54442d18, 1.5707963267948966);
  rep64 half = c(0x3fe0000000000000, 0.5);
  rep64 pi_1 = c(0x400921fb40000000, 3.1415925025939941);
  rep64 pi_2 = c(0x3e84442d00000000, 1.5099578831723193e-07);
  rep64 pi_3 = c(0x3d08469898cc5170, 1.0780605716316238e-14);

  VORX_INLINE f64x2 first_parts(f64x2 y, f64x2 n) const { return y - n * pi_1 - n * pi_2; }
  VORX_INLINE f64x2 last_parts(f64x2 r, f64x2 n) const { return r - n * pi_3; }
};

}  // namespace vorx

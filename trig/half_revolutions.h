// What sinpi, cospi and tanpi share: angles in half revolutions, so that the reduction is exact and only what is left of it is
// multiplied by pi; and the step for arguments above the threshold, where adding the rounding constant no longer gives the
// nearest integer: it takes away even integers, which change no result.
#pragma once

#include "trig/large_sine.h"
#include "trig/sine_polynomials.h"

namespace vorx {

struct half_revolutions_f32 {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 sign = bits32(0x80000000);
  rep32 largest_finite = bits32(0x7f7fffff);
  rep32 threshold = bits32(0x4a800000);           // 2^22, the last argument that needs no step
  rep32 even_limit = c(0x4f000000, 0x1p31f);      // from here on all are multiples of 256
  rep32 even_shifter = c(0x4fc00000, 0x1.8p32f);  // rounds to a multiple of 512
  rep32 shifter = c(0x4b400000, 12582912.0f);     // 1.5 x 2^23: the sum carries n in its low bits
  rep32 pi = c(0x40490fdb, 3.14159274f);
  rep32 half = c(0x3f000000, 0.5f);
};

struct half_revolutions_f64 {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  rep32 largest_finite = bits32(0x7fefffff);                  // high word
  rep32 threshold = bits32(0x431fffff);                       // high word of the last argument below 2^51
  rep64 even_limit = c(0x43a0000000000000, 0x1p59);           // from here on all are multiples of 128
  rep64 even_shifter = c(0x43b8000000000000, 0x1.8p60);       // rounds to a multiple of 256
  rep64 shifter = c(0x4338000000000000, 6755399441055744.0);  // 1.5 x 2^52
  rep64 pi = c(0x400921fb54442d18, 3.1415926535897931);
  rep64 half = c(0x3fe0000000000000, 0.5);
};

// x less the nearest multiple of 512 (double: 256), |x| = y; a zero where x is too large for anything else to be left.
template <class V, class C>
VORX_INLINE V less_even_multiple(V x, V y, const C& k) {
  V s = as_float(y < V(k.even_limit)) & k.even_shifter;
  return x - ((x + s) - s);
}

// Adds to a kernel the step for arguments above the threshold, for the whole vector: it changes no bits of a lane that does not
// need it. The comparison is on the bits, so that every NaN is above the threshold, too.
//
//   V evaluate(V x, V y, const C& k);       the result; y is |x|, perhaps less an even integer
template <class Kernel>
VORX_OUT_OF_LINE bare<typename Kernel::V> evaluate_after_step(bare<typename Kernel::V> bare_x) {
  using V = typename Kernel::V;
  const auto& k = *hide(&constant_pool<typename Kernel::constants>);
  V x = {bare_x}, y = x & k.magnitude;
  return Kernel::evaluate(x, less_even_multiple(y, y, k), k).v;
}
template <class Kernel>
struct with_even_step : Kernel {
  using V = typename Kernel::V;
  using C = typename Kernel::constants;
  static V path(V x, const C& k) { return Kernel::evaluate(x, x & k.magnitude, k); }
  static i32x4 large(V x, const C& k) { return as_words(as_int(x & k.magnitude)) > k.threshold; }
  static V large_path(V x) { return {evaluate_after_step<Kernel>(x.v)}; }
};

// Adds the rare cases of sinpi and cospi: infinities and NaN become this NaN. That an infinity is no domain error is deliberate.
template <class Kernel>
struct with_one_nan : Kernel {
  using T = typename Kernel::type::scalar;
  static i32x4 special(typename Kernel::V x, const typename Kernel::constants& k) {
    return as_words(as_int(x & k.magnitude)) > k.largest_finite;
  }
  static int rare(const T* x, T* result) {
    if (is_not_finite(bits_of(*x))) *result = from_bits(~decltype(bits_of(*x)){0} >> 1);
    return ordinary;
  }
};

// sin(pi d) times (-1)^n for |d| <= 1/2; n is in the low bits of t.
template <class V, class C>
VORX_INLINE V sine_of_half_revolutions(V d, V t, const C& k) {
  V r = d * k.pi;
  V z = r * r;
  if constexpr (requires { k.unit_at_half; })
    return k.sine(r ^ (parity_sign(t) | (as_float(z == V(k.largest_square)) & k.unit_at_half)), z);
  else
    return k.sine(r ^ parity_sign(t), z);
}

struct half_revolutions_sine_f32 : half_revolutions_f32, sine_f32_polynomial {};
struct half_revolutions_sine_f32_native : half_revolutions_f32, sine_f32_native_polynomial {};
struct half_revolutions_sine_f64 : half_revolutions_f64, sine_f64_polynomial {
  // The polynomial gives 1 - 2^-53 for a quarter revolution. One unit more in r there makes that 1.
  rep64 largest_square = c(0x4003bd3cc9be45de, 2.4674011002723395);  // (pi/2)^2, as it comes out for |d| = 1/2 alone
  rep64 unit_at_half = bits64(1);
};
struct half_revolutions_sine_f64_native : half_revolutions_f64, sine_f64_native_polynomial {};

}  // namespace vorx

// tanpi(x) = tan(pi x). Accurate: with the multiple a_k of the table's step nearest to pi x and the rest d, exact, the tangent of
// a_k + pi d, pi d in two parts: float as in the large tangent (large_tan.h), double by the addition theorem. Native: with n =
// round(2 x) and d = x - n/2, tan(pi d) or -1 / tan(pi d), as in tan. All lanes take the step that takes away even integers
// (half_revolutions.h).
#pragma once

#include <array>

#include "frame/head_and_tail.h"
#include "tables/tanpi_pairs.h"
#include "trig/half_revolutions.h"
#include "trig/large_tan.h"
#include "trig/tan_quotient.h"

namespace vorx {

struct tanpi_f32_constants : large_tan_f32_constants {
  rep32 largest_finite = bits32(0x7f7fffff);
  rep32 least = c(0x04800000, 0x1p-118f);  // below it the products of pi d underflow
  rep32 even_limit = c(0x4f000000, 0x1p31f);
  rep32 even_shifter = c(0x4fc00000, 0x1.8p32f);
  rep32 step_shifter = c(0x47c00000, 98304.0f);  // 1.5 x 2^16: rounds to a multiple of 1/128
  rep32 infinity = bits32(0x7f800000);
  rep32 pi_hi = c(0x40491000, 3.1416015625f);  // 12 significant bits: exact times 12 bits
  rep32 pi_lo = c(0xb715777a, -8.9089102e-06f);
  rep32 pi = c(0x40490fdb, 3.14159274f);
};
static_assert(low_zero_bits(tanpi_f32_constants{}.pi_hi) >= 12);

// Where d = 0 at a multiple of 1/2: zeros with the sign of x, and infinities, both with the other sign for every odd integer.
// `odd` and `turned` have in their sign bits whether it is a pole, and whether the integer below is odd.
template <class V, class I, class C>
VORX_INLINE V zero_or_pole_of(V x, I odd, I turned, const C& k) {
  return select(odd, V(k.infinity), x & k.sign) ^ (as_float(turned) & k.sign);
}

struct tanpi_f32_path : kernel<f32, tanpi_f32_constants> {
  using V = f32x4;

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 y = less_even_multiple(x, x & k.magnitude, k);
    f32x4 t = y + k.step_shifter;
    f32x4 d = y - (t - k.step_shifter);

    i32x4 steps = as_int(t);  // its low bits count them
    i32x4 exact = (d == f32x4{}) & ((steps << 26) == i32x4{});
    f32x4 zero_or_pole = zero_or_pole_of(x, steps << 25, steps << 24, k);
    in_order(zero_or_pole, d);

    f32x4 high = d & k.split;
    f32x4 a = high * k.pi_hi, b = high * k.pi_lo + (d - high) * k.pi;
    f32x4 r = a + b;
    return select(exact, zero_or_pole, tangent_of_sum(steps, r, (a - r) + b, k));
  }
};

struct tanpi_f64_constants {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  rep32 largest_finite = bits32(0x7fefffff);  // high word
  rep64 least = c(0x0170000000000000, 0x1p-1000);
  rep64 even_limit = c(0x43a0000000000000, 0x1p59);
  rep64 even_shifter = c(0x43b8000000000000, 0x1.8p60);
  rep64 step_shifter = c(0x42a8000000000080, 0x1.8000000000080p43);  // rounds to a multiple of 1/512; 1/4 more
  rep64 row_mask = bits64(0xff);
  rep64 infinity = bits64(0x7ff0000000000000);
  rep64 one = c(0x3ff0000000000000, 1.0);
  rep64 upper_half = bits64(upper_half_f64);
  rep64 pi_hi = c(0x400921fb54000000, 3.1415926516056061);  // 27 significant bits: exact times 26 bits
  rep64 pi_lo = c(0x3e210b4611a62633, 1.9841871593610808e-09);
  rep64 pi = c(0x400921fb54442d18, 3.1415926535897931);
  // tan(pi d) = pi d (1 + c3 d^2 + c5 d^4) on |d| <= 1/1024 (tables/fits/tanpi_f64: relative error 2^-58.8)
  rep64 c5 = c(0x4029f9d447d6259e, 12.9879476975355);
  rep64 c3 = c(0x400a51a662525504, 3.2898681336761246);
  alignas(16) std::array<double, 256 * 2> table = tanpi_pairs;
};
static_assert(low_zero_bits(tanpi_f64_constants{}.pi_hi) >= 26);

// Double: with the multiple n/2 of 1/2 and the multiple k/512 next to what is left of x, |k| <= 128, T = tan(pi k / 512) and
// u = tan(pi d), it is N/D for even n and -D/N for odd n, with N = T + u and D = 1 - T u, each as head and tail. The quotient is
// a first part q of 26 bits, whose product with the upper half of the divisor is exact, and the remainder times the reciprocal.
struct tanpi_f64_path : kernel<f64, tanpi_f64_constants> {
  using V = f64x2;

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 y = less_even_multiple(x, x & k.magnitude, k);
    f64x2 t = y + k.step_shifter;  // the low bits are k + 128 (8 bits), whether n is odd, and whether the integer below is
    f64x2 d = y - (t - k.step_shifter);
    f64x2 z = d * d;
    f64x2 cubic = d * k.pi * z * (k.c3 + k.c5 * z);
    const constants& anew = behind(cubic, k);
    f64x2 high = d & anew.upper_half;
    f64x2 a = high * anew.pi_hi, b = (high * anew.pi_lo + (d - high) * anew.pi) + cubic;  // u = a + b

    in_order(b, t);
    auto [th, tl] = gather_pairs(k.table.data(), (as_int(t) & k.row_mask) << 4);
    auto [n, n_rest] = fast_two_sum(th, a);
    n_rest = n_rest + (tl + b);
    f64x2 p = th * a;
    f64x2 e = k.one - p;
    f64x2 e_rest = ((behind(p, k).one - e) - p) - th * b;

    // Above and below the line. The constants of the quotient come anew, or they would be kept in registers and spilled.
    i64x2 exact = n == f64x2{opaque(f64x2{}.v)};
    i64x2 odd = as_int(t) << 55;
    f64x2 above = select(odd, e, n), above_rest = select(odd, e_rest, n_rest);
    f64x2 below = select(odd, n, e), below_rest = select(odd, n_rest, e_rest);
    f64x2 divisor = below + below_rest;
    const constants& late = behind(divisor, k);
    f64x2 reciprocal = late.one / divisor;
    f64x2 q = (above + above_rest) * reciprocal & late.upper_half;
    f64x2 head = divisor & late.upper_half, tail = (below - head) + below_rest;
    f64x2 remainder = (above - q * head) + above_rest - q * tail;
    f64x2 quotient = (q + remainder * reciprocal) ^ (as_float(odd) & late.sign);
    in_order(quotient, t);
    return select(exact, zero_or_pole_of(x, as_int(t) << 55, as_int(t) << 54, behind(quotient, late)), quotient);
  }
};

// Adds the rare cases of tanpi: infinities and NaN as in tan, and tiny arguments.
template <class Path>
struct with_tiny_arguments : with_rare_cases<Path> {
  using base = with_rare_cases<Path>;
  using V = typename Path::V;
  using T = typename Path::type::scalar;

  static i32x4 special(V x, const typename Path::constants& k) {
    V y = x & k.magnitude;
    return base::special(x, k) | as_words((y < V(k.least)) & (y != V{}));
  }
  static int rare(const T* x, T* result) {
    if (is_not_finite(bits_of(*x))) return base::rare(x, result);
    *result = times_pi(*x);
    return ordinary;
  }

  // pi x, rounded once, for tiny x.
  VORX_INLINE static float times_pi(float x) { return static_cast<float>(x * 3.141592653589793); }
  VORX_INLINE static double times_pi(double x) {
    constexpr double up = 0x1p200, down = 0x1p-200;
    constexpr double first_normal = 0x1p-822;  // times `up`; and, as a summand, what rounds as subnormals do
    constexpr head_and_tail<double> pi = {scalar(0x400921fb54000000, 3.1415926516056061),
                                          scalar(0x3e210b4611a62633, 1.9841871593610808e-09)};
    uint64_t sign = bits_of(x) >> 63 << 63;
    auto [a, b] = product(cut(from_bits(bits_of(x) ^ sign) * up), pi);
    auto [y, rest] = fast_two_sum(a, b);
    if (y < first_normal) {
      double s = first_normal + y;
      y = (s + ((y - (s - first_normal)) + rest)) - first_normal;
    }
    return from_bits(bits_of(y * down) | sign);
  }
};

// Accurate: 0.53 ULP, with each processor's estimate of the reciprocal. Special results: NaN for an infinity (invalid) and for
// NaN; at zeros the sign of x for even integers and the other one for odd ones; at poles +infinity for n + 1/2 with even n,
// -infinity with odd n; exactly +-1 at odd multiples of 1/4.
struct tanpi_f32 : with_tiny_arguments<tanpi_f32_path> {
  static constexpr double max_ulp = 0.535;
  static constexpr float seams[] = {-0x1p31f, -0x1p-118f, 0.0f, 0x1p-118f, 0.25f, 0.5f, 0x1p31f};
};

// Accurate: 0.52 ULP. Special results as for float.
struct tanpi_f64 : with_tiny_arguments<tanpi_f64_path> {
  static constexpr double max_ulp = 0.518;
  static constexpr double seams[] = {-0x1p59, -0x1p-1000, 0.0, 0x1p-1000, 0.25, 0.5, 0x1p59};
};

struct tanpi_f32_native_constants : tan_f32_quotient {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 even_limit = c(0x4f000000, 0x1p31f);
  rep32 even_shifter = c(0x4fc00000, 0x1.8p32f);
  rep32 half_shifter = c(0x4ac00000, 0x1.8p22f);  // rounds to a multiple of 1/2; the sum carries n in its low bits
  rep32 pi = c(0x40490fdb, 3.14159274f);
};
struct tanpi_f64_native_constants : tan_f64_quotient {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 even_limit = c(0x43a0000000000000, 0x1p59);
  rep64 even_shifter = c(0x43b8000000000000, 0x1.8p60);
  rep64 half_shifter = c(0x4328000000000000, 0x1.8p51);
  rep64 pi = c(0x400921fb54442d18, 3.1415926535897931);
};

template <class E, class C>
struct tanpi_native_path : kernel<E, C> {
  using V = typename E::vector;

  static V path(V x, const C& k) {
    V y = less_even_multiple(x, x & k.magnitude, k);
    V t = y + k.half_shifter;
    V r = (y - (t - k.half_shifter)) * k.pi;
    V z = r * r;
    V numerator = k.numerator(r, z), denominator = k.denominator(z);
    auto odd = as_int(parity_sign(t));
    V quotient = divide(select(odd, denominator, numerator), select(odd, numerator, denominator));
    return quotient ^ as_float(odd);
  }
  static f32x4 divide(f32x4 a, f32x4 b) { return a * estimate_reciprocal(b); }
  static f64x2 divide(f64x2 a, f64x2 b) { return a / b; }
};

// Native: float with the processor's estimate of the reciprocal, 3.7e-4 relative; double with a division. Poles are infinities of
// either sign, zeros have the sign of the rest; no other special results.
struct tanpi_f32_native : tanpi_native_path<f32, tanpi_f32_native_constants> {
  static constexpr double max_ulp = 6150;  // 1.5 x 2^-12 relative, by definition of the estimate
};
struct tanpi_f64_native : tanpi_native_path<f64, tanpi_f64_native_constants> {
  static constexpr double max_ulp = 4.3;
};

}  // namespace vorx

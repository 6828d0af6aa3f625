// tanpi(x) = tan(pi x) = tan(pi d), d = x less the nearest integer. Accurate float: a quotient of polynomials in double
// precision. Accurate double: a table and the addition theorem. Native: with n = round(2 x) and d = x - n/2, tan(pi d) or -1 /
// tan(pi d), as in tan, after the step that takes away even integers (half_revolutions.h).
#pragma once

#include <array>

#include "frame/head_and_tail.h"
#include "tables/tanpi_pairs.h"
#include "trig/half_revolutions.h"
#include "trig/tan_quotient.h"

namespace vorx {

struct tanpi_f32_constants {
  rep32 sign = bits32(0x80000000);
  rep64 quarter = c(0x3fd0000000000000, 0.25);
  // (1/4 - z) tan(pi sqrt z) / sqrt z on 0 <= z <= 1/4: relative error 2^-38.7 (tables/fits/tanpi_f32)
  rep64 p3 = c(0xbf780a08d26fec75, -0.005868944607750772);
  rep64 p2 = c(0x3fcbc347dd842ddc, 0.21689699474551005);
  rep64 p1 = c(0xbfefe2aa33c7e35d, -0.9964190493911748);
  rep64 p0 = c(0x3fe921fb54442d18, 0.7853981633974483);
  rep64 q2 = c(0x3faa2b6f25233b61, 0.05111262634601733);
  rep64 q1 = c(0xbfe1dfa09f54a58b, -0.5585482704092767);
  rep64 q0 = c(0x3ff0000000000000, 1.0);
};

// Accurate: 0.5001 ULP. Special results: NaN for an infinity (invalid) and for NaN; at zeros the sign of x for even integers and
// the other one for odd ones; at poles +infinity for n + 1/2 with even n, -infinity with odd n; exactly +-1 at odd multiples of
// 1/4.
//
// With the nearest integer n, even where two are as near, and d = x - n, exact: tan(pi d) = d P(z) / ((1/4 - z) Q(z)) in
// double precision, z = d^2. 1/4 - z is exact wherever it is small, so the neighbours of the poles need no care.
struct tanpi_f32 : kernel<f32, tanpi_f32_constants> {
  static constexpr double max_ulp = 0.5001;
  static constexpr float seams[] = {-0.5f, 0.0f, 0.25f, 0.5f, 0x1p31f};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 d = less_integer(x, k);
    f64x2 low = tangent(to_double(d), k);
    return narrow(low, tangent(widen_high(d), behind(low, k)));
  }
  static f32x4 lower_half(f32x4 x, const constants& k) { return to_float(tangent(to_double(less_integer(x, k)), k)); }

  // x less n; an even n leaves a zero with the sign of x, an odd one a zero with the other sign. The subtraction gives +0: what
  // takes that sign before and gives it back after turns zeros only. (From 2^31 all are even, and so is what the conversion
  // gives.)
  VORX_INLINE static f32x4 less_integer(f32x4 x, const constants& k) {
    f32x4 turn = as_float(to_int(x) << 31) ^ (x & k.sign);
    return ((x ^ turn) - (round_to_integral<to_nearest>(x) ^ turn)) ^ turn;
  }
  VORX_INLINE static f64x2 tangent(f64x2 d, const constants& k) {
    f64x2 z = d * d;
    return d * horner(z, k.p3, k.p2, k.p1, k.p0) / ((k.quarter - z) * horner(z, k.q2, k.q1, k.q0));
  }
};

struct tanpi_f64_constants {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  // Magnitudes from 2^-1000, below which the products of pi d underflow, to finite ones: one signed comparison of biased words.
  rep32 smallest = bits32(0x81700000);
  rep32 range = bits32(0xfe7fffff);
  rep64 below_all = c(0x0160000000000000, 0x1p-1001);
  rep64 half = c(0x3fe0000000000000, 0.5);
  rep64 step_shifter = c(0x42a8000000000080, 0x1.8000000000080p43);  // rounds to a multiple of 1/512; 1/4 more
  rep64 infinity = bits64(0x7ff0000000000000);
  rep64 one = c(0x3ff0000000000000, 1.0);
  rep64 upper_half = bits64(upper_half_f64);
  rep64 pi_hi = c(0x400921fb54000000, 3.1415926516056061);  // 27 significant bits: exact times 26 bits
  rep64 pi_lo = c(0x3e210b4611a62633, 1.9841871593610808e-09);
  rep64 pi = c(0x400921fb54442d18, 3.1415926535897931);
  // tan(pi d) = pi d (1 + c3 d^2 + c5 d^4) on |d| <= 1/1024 (tables/fits/tanpi_f64: relative error 2^-58.8)
  rep64 c5 = c(0x4029f9d447d6259e, 12.9879476975355);
  rep64 c3 = c(0x400a51a662525504, 3.2898681336761246);
  alignas(16) std::array<double, 257 * 2> table = tanpi_pairs;
};
static_assert(low_zero_bits(tanpi_f64_constants{}.pi_hi) >= 26);

// Double: with the nearest integer and what is left of x, at most 1/2, and its multiple j/512 next to it: up to j = 127
// T = tan(pi j / 512), u = tan(pi d) and the tangent is N/D, N = T + u, D = 1 - T u; from there on T = tan(pi (256 - j) / 512), u
// = tan(-pi d) and it is D/N. All are heads and tails. The quotient is a first part q of 26 bits, whose product with the upper
// half of the divisor is exact, and the remainder times the reciprocal.
struct tanpi_f64_path : kernel<f64, tanpi_f64_constants> {
  using V = f64x2;

  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 rest = x - round_to_integral<to_nearest>(x);
    f64x2 size = min(rest & k.magnitude, k.half);  // 1/2 for NaN, so that there is a row for every lane
    f64x2 t = size + k.step_shifter;               // the low word is j + 128
    f64x2 d = size - (t - k.step_shifter);
    i64x2 turned = as_int(t) << 55;
    d = d ^ (as_float(turned) & k.sign);
    in_order(d, x);
    f64x2 with_sign = with_sign_of_result(rest, x, k);
    in_order(with_sign, d);

    f64x2 z = d * d;
    f64x2 cubic = d * k.pi * z * (k.c3 + k.c5 * z);
    const constants& anew = behind(cubic, k);
    f64x2 high = d & anew.upper_half;
    f64x2 a = high * anew.pi_hi, b = (high * anew.pi_lo + (d - high) * anew.pi) + cubic;  // u = a + b

    in_order(b, t);
    auto [th, tl] = gather_pairs(k.table.data() - 128 * 2, as_int(t) << 4);
    f64x2 n = th + a, n_tail = tl + b;
    f64x2 p = th * a, e_tail = th * b;
    f64x2 e = k.one - p;
    f64x2 n_rest = ((th - n) + a) + n_tail;
    f64x2 e_rest = ((behind(p, k).one - e) - p) - e_tail;

    // Above and below the line; for the reciprocal the nearest number will do.
    f64x2 divisor = select(turned, n + n_tail, e - e_tail);
    f64x2 above = select(turned, e, n), above_rest = select(turned, e_rest, n_rest);
    f64x2 below = select(turned, n, e), below_rest = select(turned, n_rest, e_rest);
    const constants& late = behind(divisor, k);
    f64x2 reciprocal = late.one / divisor;
    f64x2 head = divisor & late.upper_half, tail = (below - head) + below_rest;
    f64x2 q = above * reciprocal & behind(tail, late).upper_half;
    f64x2 remainder = (above - q * head) + (above_rest - q * tail);
    // At a pole infinity times zero came in between: the minimum of NaN and infinity is infinity.
    return min(q + remainder * reciprocal, late.infinity) ^ (with_sign & late.sign);
  }

  // Any number with the sign of the tangent: that of what is left of x; where nothing is left, x is an integer, the sign of x if
  // it is even, the other one if it is odd.
  VORX_INLINE static f64x2 with_sign_of_result(f64x2 rest, f64x2 x, const constants& k) {
    f64x2 halved = x * k.half;
    i64x2 odd = halved != round_to_integral<to_nearest>(halved);
    return rest + (((x ^ as_float(odd)) & k.sign) | k.below_all);
  }
};

// Accurate: 0.52 ULP. Special results as for float.
struct tanpi_f64 : with_rare_cases<tanpi_f64_path> {
  static constexpr double max_ulp = 0.518;
  static constexpr double seams[] = {-0.5, -0x1p-1000, 0.0, 0x1p-1000, 0.25, 0.5, 0x1p53};

  static i32x4 special(f64x2 x, const constants& k) { return words(x & k.magnitude) - k.smallest > k.range; }
  static int rare(const double* x, double* result) {
    if (is_not_finite(bits_of(*x))) return with_rare_cases::rare(x, result);
    return *result = times_pi(*x), ordinary;
  }

 private:
  // pi x, rounded once, for tiny x and zeros.
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

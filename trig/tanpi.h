// tanpi(x) = tan(pi x). Accurate: with the multiple a_k of the table's step nearest to pi x and the rest d, exact, the tangent of
// a_k + pi d as in the large tangent (large_tan.h), pi d in two parts. Native: with n = round(2 x) and d = x - n/2, tan(pi d) or
// -1 / tan(pi d), as in tan. All lanes take the step that takes away even integers (half_revolutions.h).
#pragma once

#include "frame/head_and_tail.h"
#include "trig/half_revolutions.h"
#include "trig/large_tan.h"
#include "trig/tan_quotient.h"

namespace vorx {

struct tanpi_f32_constants : large_tan_f32_constants {
  static constexpr int row_bits = 7;
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

struct tanpi_f64_constants : large_tan_f64_constants {
  static constexpr int row_bits = 8;
  rep32 largest_finite = bits32(0x7fefffff);  // high word
  rep64 least = c(0x0170000000000000, 0x1p-1000);
  rep64 even_limit = c(0x43a0000000000000, 0x1p59);
  rep64 even_shifter = c(0x43b8000000000000, 0x1.8p60);
  rep64 step_shifter = c(0x42b8000000000000, 0x1.8p44);  // rounds to a multiple of 1/256
  rep64 infinity = bits64(0x7ff0000000000000);
  rep64 pi_hi = c(0x400921fb54000000, 3.1415926516056061);  // 27 significant bits: exact times 26 bits
  rep64 pi_lo = c(0x3e210b4611a62633, 1.9841871593610808e-09);
  rep64 pi = c(0x400921fb54442d18, 3.1415926535897931);
};
static_assert(low_zero_bits(tanpi_f64_constants{}.pi_hi) >= 26);

template <class E, class C>
struct tanpi_path : kernel<E, C> {
  using V = typename E::vector;
  using I = typename E::integer_vector;

  static V path(V x, const C& k) {
    V y = less_even_multiple(x, x & k.magnitude, k);
    V t = y + k.step_shifter;
    V d = y - (t - k.step_shifter);

    // The zeros and poles: the low bits of t count steps; an odd integer more changes the sign.
    constexpr int word = 8 * sizeof(typename E::integer);
    I steps = as_int(t);
    I exact = (d == V{}) & ((steps << (word + 1 - C::row_bits)) == I{});
    V zero_or_pole = select(steps << (word - C::row_bits), V(k.infinity), x & k.sign);
    zero_or_pole = zero_or_pole ^ (as_float(steps << (word - 1 - C::row_bits)) & k.sign);
    in_order(zero_or_pole, d);

    V high = d & k.split;
    V a = high * k.pi_hi, b = high * k.pi_lo + (d - high) * k.pi;
    V r = a + b;
    return select(exact, zero_or_pole, tangent_of_sum(steps, r, (a - r) + b, k));
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
struct tanpi_f32 : with_tiny_arguments<tanpi_path<f32, tanpi_f32_constants>> {
  static constexpr double max_ulp = 0.535;
  static constexpr float seams[] = {-0x1p31f, -0x1p-118f, 0.0f, 0x1p-118f, 0.25f, 0.5f, 0x1p31f};
};

// Accurate: 0.51 ULP. Special results as for float.
struct tanpi_f64 : with_tiny_arguments<tanpi_path<f64, tanpi_f64_constants>> {
  static constexpr double max_ulp = 0.51;
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

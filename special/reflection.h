// What the gamma functions of negative arguments share: gamma(x) gamma(-x) = -pi / (x sin(pi x)), in scalar code.
#pragma once

#include "frame/head_and_tail.h"
#include "frame/rare.h"

namespace vorx {

// y > 0 that is no integer, by the nearest integer; and whether gamma(-y) is negative.
struct next_integer {
  double rest;  // y less the integer: exact, in [-1/2, 1/2]
  bool negative;
};
inline next_integer split_at_integer(double y) {
  double n = _mm_cvtsd_f64(round_to_integral<to_nearest>(all(y)).v);
  bool odd = bits_of(n + scalar(0x4330000000000000, 4503599627370496.0)) & 1;
  return {y - n, odd == (y < n)};
}
// Whether |x| is an integer or infinite.
inline bool is_integral(double x) { return _mm_cvtsd_f64(round_to_integral<toward_zero>(all(x)).v) == x; }

// a b, to about 2^-100 where both are to that.
inline head_and_tail<double> times(head_and_tail<double> a, head_and_tail<double> b) {
  auto [head, tail] = product(cut(a.head), cut(b.head));
  return fast_two_sum(head, tail + (a.head * b.tail + a.tail * b.head));
}

// sin(pi r) / pi for |r| <= 1/2, relative error 2^-57: r (1 - pi^2/6 r^2 + ...), Taylor's series with pi^2/6 and r^2 in two
// parts.
inline head_and_tail<double> sine_over_pi(double r) {
  const double z = r * r;
  auto [r_head, r_tail] = cut(r);
  auto [z_head, z_rest] = cut(r_head * r_head);
  const double z_tail = z_rest + r_tail * (r_head + r);
  const double p = horner(z, scalar(0x3de79788684225ea, 1.7165384749821432e-10),
                          scalar(0xbe3f5f9d970ca6df, -7.304711822217775e-09), scalar(0x3e90fc992ff39e13, 2.5312174041370274e-07),
                          scalar(0xbedd42498d1ce099, -6.975873661656381e-06), scalar(0x3f2374719fab3915, 0.000148428793031071),
                          scalar(0xbf633816aa4607ab, -0.0023460810354558235), scalar(0x3f9ac6805cf350a6, 0.0261478478176548),
                          scalar(0xbfc86a8e4720db67, -0.19075182412208422), scalar(0x3fe9f9cb402bc46c, 0.8117424252833536));
  constexpr double c = scalar(0x3ffa51a660000000, 1.644934058189392), c_rest = scalar(0x3e42983e991873d9, 8.658834346628666e-09);
  auto first = fast_two_sum(1.0, -(z_head * c));
  auto factor = fast_two_sum(first.head, first.tail + (z * z * p - (z_tail * c + z * c_rest)));
  return times({r, 0}, factor);
}

}  // namespace vorx

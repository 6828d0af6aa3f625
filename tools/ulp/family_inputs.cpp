#include "tools/ulp/family_inputs.h"

#include <map>
#include <string>

namespace vorx::ulp {
namespace {

struct maker {
  element type;
  const float_format& format;
  std::mt19937_64& random;

  double uniform(double low, double high) { return low + (high - low) * static_cast<double>(random() >> 11) * 0x1p-53; }
  int integer(int low, int high) { return low + static_cast<int>(random() % static_cast<uint64_t>(high - low + 1)); }
  uint64_t bits(long double x) const { return bits_of(type, x); }
  // 1 <= m < 2 with all fraction bits random; and with one more bit, set: the middle between two numbers.
  long double significand() {
    return 1 + static_cast<long double>(random() >> (64 - format.fraction_bits())) / two_to(format.fraction_bits());
  }
  long double middle() { return significand() + 1 / two_to(format.fraction_bits() + 1); }
  long double sign() { return random() % 2 ? 1 : -1; }
  int exponent() { return integer(format.lowest_exponent, format.highest_exponent); }
  // log2 of a result: mostly in range, also a little beyond the largest and the smallest.
  double result_exponent() {
    return random() % 4 ? uniform(format.lowest_exponent, format.highest_exponent + 1)
                        : uniform(format.lowest_exponent - format.precision - 4, format.highest_exponent + 4);
  }
};

using make = arguments (*)(maker&);

// x^y with a result in range: x anywhere, or next to one, and y = log2(result) / log2(x).
arguments powers(maker& m) {
  long double x = m.random() % 2 ? m.significand() * two_to(m.exponent() / 2)
                                 : 1 + m.sign() * m.significand() / two_to(m.integer(1, m.format.fraction_bits() - 1));
  long double y = m.result_exponent() / std::log2(x);
  if (m.random() % 4 == 0) y = std::nearbyint(y);
  if (m.random() % 8 == 0) x = -x, y = std::nearbyint(y);
  return {m.bits(x), m.bits(y), 0};
}

// x^n: n of any length, x so that the result is in range.
arguments integer_powers(maker& m) {
  int n = static_cast<int>(m.random() >> 33 >> m.random() % 31);
  if (n == 0) n = 1;
  long double x = std::exp2(static_cast<long double>(m.result_exponent() / n));
  return {m.bits(m.random() % 2 ? -x : x), static_cast<uint32_t>(m.random() % 2 ? n : -n), 0};
}
arguments integer_roots(maker& m) {
  int n = m.random() % 2 ? m.integer(-40, 40) : static_cast<int>(m.random() >> 32 >> m.random() % 31);
  return {m.bits((m.random() % 4 ? 1 : -1) * m.significand() * two_to(m.exponent())), static_cast<uint32_t>(n), 0};
}

// x 2^n next to both ends of the range.
arguments scalings(maker& m) {
  int e = m.exponent();
  int target = m.random() % 2 ? m.format.lowest_exponent - m.integer(-3, m.format.precision + 2)
                              : m.format.highest_exponent + m.integer(-2, 2);
  return {m.bits(m.sign() * m.significand() * two_to(e)), static_cast<uint32_t>(target - e), 0};
}

// Two numbers of similar size: quotients, angles and distances that are not trivial.
arguments similar(maker& m) {
  int e = m.exponent(), d = m.integer(-m.format.precision - 2, m.format.precision + 2);
  int f = std::min(std::max(e + d, m.format.lowest_exponent), m.format.highest_exponent);
  return {m.bits(m.sign() * m.significand() * two_to(e)), m.bits(m.sign() * m.significand() * two_to(f)), 0};
}
// x/y close to the middle between two numbers.
arguments quotients(maker& m) {
  if (m.random() % 2) return similar(m);
  long double y = m.significand();
  int e = m.exponent() / 2, f = m.exponent() / 2;
  return {m.bits(y * m.middle() * two_to(e)), m.bits(y * two_to(f)), 0};
}
// Remainders of numbers far apart, and of x close to a multiple (or half of one) of y.
arguments remainders(maker& m) {
  if (m.random() % 2) {
    arguments in = similar(m);
    long double y = as_double(m.type, in[1]);
    long double k = static_cast<long double>(m.random() >> (2 + m.random() % 61)) / 2;
    long double x = k * y;
    if (x == x && std::fabs(x) < two_to(m.format.highest_exponent)) in[0] = m.bits(x);
    return in;
  }
  return {m.bits(m.sign() * m.significand() * two_to(m.exponent())), m.bits(m.sign() * m.significand() * two_to(m.exponent())),
          0};
}

// x y + z with cancellation, or with a product of half a unit of z give or take very little.
arguments fused(maker& m) {
  int e = m.exponent() / 2, f = m.exponent() / 2;
  long double x = m.significand(), y = m.significand(), z = x * y;
  switch (m.random() % 4) {
    case 0:
      z = -z * (1 + m.sign() * two_to(-m.integer(1, m.format.precision + 3)));
      break;
    case 1:
      x = 1 + two_to(-m.integer(1, m.format.fraction_bits()));
      y = 1 - two_to(-m.integer(1, m.format.fraction_bits()));
      z = m.significand() * two_to(m.format.precision);
      break;
    case 2:
      z = m.significand() * two_to(m.integer(-m.format.precision - 2, 2 * m.format.precision + 2));
      break;
    default:
      z = -z;
  }
  long double a = m.sign() * x * two_to(e), b = m.sign() * y * two_to(f);
  return {m.bits(a), m.bits(b), m.bits((m.random() % 4 ? 1 : m.sign()) * (std::signbit(a * b) ? -z : z) * two_to(e + f))};
}

// f(x) next to a middle, by the inverse of f: squares, cubes, and their reciprocals.
arguments squares(maker& m) {
  long double r = m.middle();
  return {m.bits(r * r * two_to(2 * (m.exponent() / 2))), 0, 0};
}
arguments cubes(maker& m) {
  long double r = m.middle();
  return {m.bits(m.sign() * r * r * r * two_to(3 * (m.exponent() / 3))), 0, 0};
}
arguments reciprocals(maker& m) { return {m.bits(m.sign() / m.middle() * two_to(m.exponent())), 0, 0}; }
arguments reciprocal_squares(maker& m) {
  long double r = m.middle();
  return {m.bits(1 / (r * r) * two_to(2 * (m.exponent() / 2))), 0, 0};
}

// Integers of all lengths that are ties of the conversion, give or take one.
arguments tied_integers(maker& m) {
  int length = m.integer(1, 62), drop = std::max(0, length - m.format.precision);
  uint64_t n = 1ull << length | (m.random() >> (63 - length));
  if (drop > 0) n = (n >> drop << drop) + (1ull << (drop - 1)) + m.random() % 3 - 1;
  return {m.random() % 2 ? n : 0 - n, 0, 0};
}
// Numbers next to integers and halves.
arguments near_halves(maker& m) {
  long double n = static_cast<long double>(m.random() >> (1 + m.random() % 63)) / 2;
  uint64_t b = m.bits(m.sign() * n);
  return {b + m.random() % 5 - 2, 0, 0};
}

make maker_of(const std::string& name) {
  static const std::map<std::string, make> makers = {
      {"pow", powers},
      {"powr", powers},
      {"pown", integer_powers},
      {"rootn", integer_roots},
      {"ldexp", scalings},
      {"div", quotients},
      {"hypot", similar},
      {"atan2", similar},
      {"atan2pi", similar},
      {"fmod", remainders},
      {"remainder", remainders},
      {"remquo", remainders},
      {"fdim", similar},
      {"fmax", similar},
      {"fmin", similar},
      {"maxmag", similar},
      {"minmag", similar},
      {"nextafter", similar},
      {"fma", fused},
      {"mad", fused},
      {"sqrt", squares},
      {"cbrt", cubes},
      {"inv", reciprocals},
      {"rsqrt", reciprocal_squares},
      {"ceil", near_halves},
      {"floor", near_halves},
      {"round", near_halves},
      {"trunc", near_halves},
      {"rint", near_halves},
      {"nearbyint", near_halves},
      {"fract", near_halves},
      {"modf", near_halves},
      {"sinpi", near_halves},
      {"cospi", near_halves},
      {"tanpi", near_halves},
  };
  if (name.compare(0, 7, "cvtfpto") == 0) return near_halves;
  if (name.compare(0, 3, "cvt") == 0) return tied_integers;
  auto found = makers.find(name);
  return found == makers.end() ? nullptr : found->second;
}

}  // namespace

std::optional<arguments> family_input(const entry_point& kernel, std::mt19937_64& random) {
  make f = maker_of(kernel.of->name);
  if (!f) return {};
  maker m{kernel.type, format_of(kernel.type), random};
  arguments in = f(m);
  const shape& form = kernel.of->form;
  for (int a = 0; a < 3; a++)
    if (form.arguments[a] == kind::none)
      in[a] = 0;
    else if (lane_bytes(form.arguments[a], kernel.type) == 4)
      in[a] &= 0xffffffff;
  return in;
}

}  // namespace vorx::ulp

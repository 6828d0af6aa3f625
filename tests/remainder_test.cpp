// fmod, remainder, remquo: every lane, at every width, on the path, in the rare case and at the seam between them, against the C
// library's exact functions.
#include <gtest/gtest.h>

#include <cmath>

#include "exact/fmod.h"
#include "exact/remainder.h"
#include "tests/every_width.h"
#include "tests/kernel_calls.h"

using namespace vorx;

namespace {

template <class T>
class Remainder : public testing::Test {
 public:
  static constexpr const float_format& F = format_of(element_of<T>);
  static constexpr element type = element_of<T>;
  std::mt19937_64 generator{11};

  // Pairs at every distance of exponents, many with short significands (ties, zero remainders); multiples and halves of multiples
  // and their neighbours; pairs around each seam of the lane tests; and everything special against everything.
  std::vector<lane_case> pairs() {
    std::vector<lane_case> cases;
    auto add = [&](uint64_t x, uint64_t y) { cases.push_back({{x, y}, {}}); };
    auto number = [&](int field) {
      uint64_t fraction = generator() & (2 * F.quiet - 1);
      if (generator() % 2) fraction &= ~uint64_t{0} << generator() % F.fraction_bits();
      int last = static_cast<int>(F.infinity >> F.fraction_bits());
      uint64_t exponent = static_cast<uint64_t>(std::clamp(field, 0, last - 1));
      return (generator() & F.sign) | exponent << F.fraction_bits() | fraction;
    };
    int fields = static_cast<int>(F.infinity >> F.fraction_bits());
    for (int i = 0; i < 60000; i++) {
      int field = static_cast<int>(generator() % static_cast<unsigned>(fields));
      add(number(static_cast<int>(generator() % static_cast<unsigned>(fields))), number(field));
      for (int d : {-2, -1, 0, 1, 10, 11, 12, 25, 26, static_cast<int>(generator() % 80)}) add(number(field + d), number(field));
      T y = value_of<T>(number(fields / 2 - 40 + static_cast<int>(generator() % 80)));
      if (i % 4 == 0) y = value_of<T>(number(static_cast<int>(generator() % 3)));
      uint64_t multiple = bits_of(y * static_cast<T>(static_cast<double>(generator() % 100000) * 0.5));
      for (uint64_t d : {0, 1, -1}) add(multiple + d, bits_of(y));
    }
    for (int seam : sizeof(T) == 4 ? std::vector{1, 13, 242, 243} : std::vector{1, 2020, 2021})
      for (int i = 0; i < 2000; i++) {
        uint64_t y = static_cast<uint64_t>(seam) << F.fraction_bits();
        add(number(seam + i % 30), y + generator() % 4 - 2);
        add((F.infinity - 1) - generator() % 3, y - 1);
      }
    for (uint64_t x : interesting_values<T>(0, 1))
      for (uint64_t y : interesting_values<T>(0, 1)) add(x, y);
    return cases;
  }

  // NaN of the processor's rules for x y: the first NaN, or the one of an invalid operation.
  static uint64_t nan_result(uint64_t x, uint64_t y) {
    if (F.is_nan(x)) return x | F.quiet;
    if (F.is_nan(y)) return y | F.quiet;
    return F.default_nan();
  }
  static bool gives_nan(uint64_t x, uint64_t y) {
    return F.is_nan(x) || F.is_nan(y) || (x & ~F.sign) == F.infinity || (y & ~F.sign) == 0;
  }
};
using Types = testing::Types<float, double>;
TYPED_TEST_SUITE(Remainder, Types);

}  // namespace

TYPED_TEST(Remainder, Fmod) {
  using T = TypeParam;
  auto cases = this->pairs();
  for (lane_case& c : cases)
    c.out[0] = this->gives_nan(c.in[0], c.in[1]) ? this->nan_result(c.in[0], c.in[1])
                                                 : bits_of(std::fmod(value_of<T>(c.in[0]), value_of<T>(c.in[1])));
  run_every_width("fmod", this->type, cases);
}

TYPED_TEST(Remainder, RemainderAndQuotient) {
  using T = TypeParam;
  constexpr const float_format& F = format_of(element_of<T>);
  auto cases = this->pairs();
  for (lane_case& c : cases) {
    if (this->gives_nan(c.in[0], c.in[1])) {
      c.out[0] = this->nan_result(c.in[0], c.in[1]);
      continue;
    }
    // The low 31 bits of the quotient: three from the remainder by y, the rest from remainders by multiples of y, by powers of
    // two.
    T x = std::fabs(value_of<T>(c.in[0])), y = std::fabs(value_of<T>(c.in[1]));
    T r = std::remainder(x, y);
    uint32_t n = 0;
    if (y < value_of<T>(F.infinity)) {
      T rest = x;
      for (int bit = 30; bit >= 0; bit--) {
        T multiple = std::ldexp(y, bit);
        if (bit == 30 && std::isfinite(2 * multiple)) rest = std::fmod(rest, 2 * multiple);
        if (rest >= multiple) n |= 1u << bit, rest -= multiple;
      }
      if (r < 0 || (r == 0 && rest != 0)) n++;
    }
    n &= 0x7fffffff;
    if ((c.in[0] ^ c.in[1]) & F.sign) n = -n;
    c.out[0] = bits_of(r) ^ (c.in[0] & F.sign);
    c.out[1] = n;
  }
  run_every_width("remainder", this->type, cases);
  run_every_width("remquo", this->type, cases);
}

TYPED_TEST(Remainder, RaisesInvalidOnlyWhereTheResultIsNan) {
  using T = TypeParam;
  constexpr const float_format& F = format_of(element_of<T>);
  using M = std::conditional_t<sizeof(T) == 4, fmod_f32, fmod_f64>;
  using R = std::conditional_t<sizeof(T) == 4, remquo_f32, remquo_f64>;
  T result;
  int32_t quotient;
  auto flags = [&](uint64_t from, uint64_t by) {
    T x = value_of<T>(from), y = value_of<T>(by);
    return std::array{observe([&] { return M::rare(&x, &y, &result); }).flags & invalid_flag,
                      observe([&] { return R::rare(&x, &y, &result, &quotient); }).flags & invalid_flag};
  };
  constexpr std::array raised{uint32_t{invalid_flag}, uint32_t{invalid_flag}}, quiet{0u, 0u};
  uint64_t one = bits_of(T(1));
  EXPECT_EQ(flags(F.infinity, one), raised);
  EXPECT_EQ(flags(one, 0), raised);
  EXPECT_EQ(flags(F.infinity + 1, one), raised);  // a signalling NaN
  EXPECT_EQ(flags(F.infinity | F.quiet, one), quiet);
  EXPECT_EQ(flags(one, F.infinity), quiet);
  EXPECT_EQ(flags(F.infinity - 1, 1), quiet);
}

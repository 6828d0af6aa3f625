// fma: one rounding, for every operand. The reference is the C library's, and MPFR on a part of the cases.
#include <gtest/gtest.h>
#include <mpfr.h>

#include <cmath>

#include "tests/every_width.h"

using namespace vorx;

namespace {

template <class T>
class Fma : public testing::Test {
 public:
  static constexpr const float_format& F = format_of(element_of<T>);
  static constexpr element type = element_of<T>;
  static constexpr int fields = static_cast<int>(F.infinity >> F.fraction_bits()), bias = fields / 2;
  std::mt19937_64 generator{13};

  int below(int n) { return static_cast<int>(generator() % static_cast<unsigned>(n)); }
  uint64_t number(int field) {
    uint64_t fraction = generator() & (2 * F.quiet - 1);
    if (generator() % 2) fraction &= ~uint64_t{0} << below(F.fraction_bits());
    return (generator() & F.sign) | static_cast<uint64_t>(std::clamp(field, 0, fields - 1)) << F.fraction_bits() | fraction;
  }

  // Addends at every distance from the product, cancellation down to the last bit, and ties, with products anywhere, around the
  // subnormal numbers and around overflow; everything special with everything.
  std::vector<lane_case> cases() {
    std::vector<lane_case> all;
    auto add = [&](uint64_t x, uint64_t y, uint64_t z) { all.push_back({{x, y, z}, {}}); };
    for (int i = 0; i < (quick() ? 10000 : 100000); i++) {
      int ex = below(fields), ey = below(fields);
      if (i % 4 == 1) ey = bias - (ex - bias) + below(40) - 20;                              // near 1
      if (i % 4 == 2) ey = bias - (ex - bias) - bias - F.fraction_bits() + below(120) - 30;  // around the smallest numbers
      if (i % 4 == 3) ey = bias - (ex - bias) + bias + below(8) - 4;                         // around the largest numbers
      uint64_t x = number(ex), y = number(ey);
      T product = value_of<T>(x) * value_of<T>(y);
      int field = std::clamp(ex + ey - bias, 0, fields - 1);
      add(x, y, number(field + below(4 * F.fraction_bits()) - 2 * F.fraction_bits()));
      add(x, y, number(field + below(5) - 2));
      add(x, y, bits_of(product) ^ F.sign);
      add(x, y, (bits_of(product) ^ F.sign) + static_cast<uint64_t>(below(5) - 2));
      add(x, y, (generator() & F.sign) | static_cast<uint64_t>(below(4)));
      add(x, bits_of(T(1)), y);  // a sum
      // A tie of the sum, moved off or not by a product far below it.
      uint64_t z = number(field), half_unit = static_cast<uint64_t>(std::clamp(field - F.fraction_bits() - 1, 1, fields - 1));
      add(number(bias + below(2)), half_unit << F.fraction_bits() | (i & 1), z);
    }
    std::vector<uint64_t> values = interesting_values<T>(0, 1);
    for (int i = 0; i < (quick() ? 6000 : 60000); i++)
      add(values[generator() % values.size()], values[generator() % values.size()], values[generator() % values.size()]);
    return all;
  }

  static uint64_t nan_result(uint64_t x, uint64_t y, uint64_t z) {
    for (uint64_t b : {x, y, z})
      if (F.is_nan(b)) return b | F.quiet;
    return F.default_nan();
  }
};
using Types = testing::Types<float, double>;
TYPED_TEST_SUITE(Fma, Types);

// x y + z rounded once to the format of T: exact in MPFR, then one rounding, subnormal results included.
template <class T>
T correctly_rounded(T x, T y, T z) {
  constexpr bool is_float = sizeof(T) == 4;
  mpfr_set_emin(is_float ? -148 : -1073);
  mpfr_set_emax(is_float ? 128 : 1024);
  mpfr_t a, b, c, sum;
  mpfr_inits2(53, a, b, c, nullptr);
  mpfr_init2(sum, is_float ? 24 : 53);
  mpfr_set_d(a, x, MPFR_RNDN);
  mpfr_set_d(b, y, MPFR_RNDN);
  mpfr_set_d(c, z, MPFR_RNDN);
  int direction = mpfr_fma(sum, a, b, c, MPFR_RNDN);
  mpfr_subnormalize(sum, direction, MPFR_RNDN);
  T result = static_cast<T>(mpfr_get_d(sum, MPFR_RNDN));
  mpfr_clears(a, b, c, sum, nullptr);
  return result;
}

}  // namespace

TYPED_TEST(Fma, RoundsOnce) {
  using T = TypeParam;
  constexpr const float_format& F = format_of(element_of<T>);
  auto cases = this->cases();
  size_t subnormal = 0, infinite = 0, checked = 0;
  for (lane_case& c : cases) {
    T x = value_of<T>(c.in[0]), y = value_of<T>(c.in[1]), z = value_of<T>(c.in[2]);
    uint64_t result = bits_of(std::fma(x, y, z));
    c.out[0] = F.is_nan(result) ? this->nan_result(c.in[0], c.in[1], c.in[2]) : result;
    if (F.is_nan(result)) continue;
    subnormal += (result & ~F.sign) < 2 * F.quiet;
    infinite += (result & ~F.sign) == F.infinity;
    if (&c - cases.data() < 200000) {
      T reference = correctly_rounded(x, y, z);
      ASSERT_EQ(bits_of(reference), result) << "the references disagree";
      checked++;
    }
  }
  const size_t fraction = quick() ? 10 : 1;
  EXPECT_GT(subnormal, 50000 / fraction);
  EXPECT_GT(infinite, 10000 / fraction);
  EXPECT_GT(checked, 150000 / fraction);
  run_every_width("fma", this->type, cases);
}

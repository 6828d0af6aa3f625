// Selections between two operands, fdim and nextafter: every lane, at every width, against rules on the bits.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "exact/nextafter.h"
#include "tests/every_width.h"
#include "tests/kernel_calls.h"

using namespace vorx;

namespace {

template <class T>
class Selection : public testing::Test {
 public:
  static constexpr const float_format& F = format_of(element_of<T>);
  static constexpr element type = element_of<T>;
  using reference = std::function<uint64_t(uint64_t, uint64_t)>;

  // Every pair of the values whose order, sign or kind matters, and random pairs, equal and opposite ones among them.
  static void check(const char* function, const reference& wanted) {
    std::vector<lane_case> cases;
    auto add = [&](uint64_t x, uint64_t y) { cases.push_back({{x, y}, {wanted(x, y)}}); };
    std::vector<uint64_t> values = interesting_values<T>(0, 1);
    for (uint64_t x : values)
      for (uint64_t y : values) add(x, y);
    std::mt19937 generator(6);
    for (uint64_t x : interesting_values<T>(20000, 2)) {
      add(x, values[generator() % values.size()]);
      add(x, x);
      add(x, x ^ F.sign);
      add(x, x + 1);
    }
    run_every_width(function, type, cases);
  }
  static uint64_t magnitude(uint64_t b) { return b & ~F.sign; }
  // Numbers in their order, as integers; zeros are equal.
  static int64_t order(uint64_t b) { return b & F.sign ? -static_cast<int64_t>(magnitude(b)) : static_cast<int64_t>(b); }
};
using Types = testing::Types<float, double>;
TYPED_TEST_SUITE(Selection, Types);

}  // namespace

TYPED_TEST(Selection, NumberBeforeNanAndSecondOfEqualZeros) {
  constexpr const float_format& F = format_of(element_of<TypeParam>);
  this->check("fmax", [&](uint64_t x, uint64_t y) {
    if (F.is_nan(x)) return y;
    if (F.is_nan(y)) return x;
    return this->order(x) > this->order(y) ? x : y;
  });
  this->check("fmin", [&](uint64_t x, uint64_t y) {
    if (F.is_nan(x)) return y;
    if (F.is_nan(y)) return x;
    return this->order(x) < this->order(y) ? x : y;
  });
}

TYPED_TEST(Selection, MagnitudesAndFirstOfEqualZeros) {
  constexpr const float_format& F = format_of(element_of<TypeParam>);
  this->check("maxmag", [&](uint64_t x, uint64_t y) {
    if (F.is_nan(x)) return y;
    if (F.is_nan(y)) return x;
    uint64_t ax = this->magnitude(x), ay = this->magnitude(y);
    if (ax != ay) return ax > ay ? x : y;
    return this->order(y) > this->order(x) ? y : x;
  });
  this->check("minmag", [&](uint64_t x, uint64_t y) {
    if (F.is_nan(x)) return y;
    if (F.is_nan(y)) return x;
    uint64_t ax = this->magnitude(x), ay = this->magnitude(y);
    if (ax != ay) return ax < ay ? x : y;
    return this->order(y) < this->order(x) ? y : x;
  });
}

TYPED_TEST(Selection, Fdim) {
  using T = TypeParam;
  constexpr const float_format& F = format_of(element_of<T>);
  this->check("fdim", [&](uint64_t x, uint64_t y) {
    if (F.is_nan(y)) return y;
    if (F.is_nan(x)) return x;
    return this->order(y) < this->order(x) ? uint64_t{bits_of(value_of<T>(x) - value_of<T>(y))} : 0;
  });
}

TYPED_TEST(Selection, Nextafter) {
  using T = TypeParam;
  constexpr const float_format& F = format_of(element_of<T>);
  this->check("nextafter", [&](uint64_t x, uint64_t y) {
    if (F.is_nan(x) || F.is_nan(y)) return (F.is_nan(x) ? x : y) | F.quiet;
    if (this->order(x) == this->order(y)) return y;
    if (this->magnitude(x) == 0) return (y & F.sign) | 1;
    bool up = this->order(y) > this->order(x), negative = x & F.sign;
    return up != negative ? x + 1 : x - 1;
  });

  using K = std::conditional_t<sizeof(T) == 4, nextafter_f32, nextafter_f64>;
  T result;
  auto step = [&](uint64_t from, uint64_t to) {
    T x = value_of<T>(from), y = value_of<T>(to);
    return observe([&] { return K::rare(&x, &y, &result); });
  };
  uint64_t one = bits_of(T(1)), smallest_normal = 2 * F.quiet;
  EXPECT_EQ(step(one, F.infinity), (outcome{ordinary, 0}));
  EXPECT_EQ(step(F.infinity - 1, F.infinity), (outcome{overflow, overflow_flag | inexact_flag}));
  EXPECT_EQ(step(F.infinity, one), (outcome{ordinary, 0}));
  EXPECT_EQ(step(0, one), (outcome{underflow, underflow_flag | inexact_flag}));
  EXPECT_EQ(step(1, 0), (outcome{underflow, underflow_flag | inexact_flag}));
  EXPECT_EQ(step(smallest_normal, 0), (outcome{underflow, underflow_flag | inexact_flag}));
  EXPECT_EQ(step(smallest_normal - 1, one), (outcome{ordinary, 0}));
  EXPECT_EQ(step(0, F.sign), (outcome{ordinary, 0}));
}

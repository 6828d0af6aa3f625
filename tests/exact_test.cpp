// Rounding, decomposition and bit operations: every lane, at every width, against the C library's exact functions or the bits.
#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <functional>

#include "exact/ldexp.h"
#include "exact/logb.h"
#include "tests/every_width.h"
#include "tests/kernel_calls.h"

using namespace vorx;

namespace {

template <class T>
class Exact : public testing::Test {
 public:
  static constexpr const float_format& F = format_of(element_of<T>);
  static constexpr element type = element_of<T>;

  // Cases of a function of one argument; `reference` takes and gives bits.
  static std::vector<lane_case> unary(const std::function<lane_case(uint64_t)>& reference) {
    std::vector<lane_case> cases;
    for (uint64_t b : interesting_values<T>(20000, 1)) {
      lane_case c = reference(b);
      c.in[0] = b;
      cases.push_back(c);
    }
    return cases;
  }
  static uint64_t quieted(uint64_t b) { return b | F.quiet; }
  static bool is_special(uint64_t b) { return (b & ~F.sign) >= F.infinity || (b & ~F.sign) == 0; }
};
using Types = testing::Types<float, double>;
TYPED_TEST_SUITE(Exact, Types);

// What the processor gives for a op b where one is a NaN: the first NaN, quiet.
template <class T>
uint64_t nan_of(uint64_t a, uint64_t b) {
  constexpr const float_format& F = format_of(element_of<T>);
  return (F.is_nan(a) ? a : b) | F.quiet;
}

}  // namespace

TYPED_TEST(Exact, RoundsInEveryMode) {
  using T = TypeParam;
  constexpr const float_format& F = format_of(element_of<T>);
  struct {
    const char* name;
    T (*reference)(T);
    bool follows_mode, never_inexact;
  } const functions[] = {{"ceil", std::ceil, false, false},         {"floor", std::floor, false, false},
                         {"trunc", std::trunc, false, false},       {"rint", std::rint, true, false},
                         {"nearbyint", std::nearbyint, true, true}, {"round", std::round, false, false}};
  const int modes[] = {FE_TONEAREST, FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO};  // in the order of the control register
  for (const auto& f : functions)
    for (uint32_t mode = 0; mode < 4; mode++) {
      if (f.follows_mode) std::fesetround(modes[mode]);
      auto cases = this->unary([&](uint64_t b) {
        return lane_case{{}, {F.is_nan(b) ? this->quieted(b) : bits_of(f.reference(value_of<T>(b)))}};
      });
      std::fesetround(FE_TONEAREST);
      call_options options;
      options.mxcsr |= mode << 13;
      int raised = 0;
      run_every_width(f.name, this->type, cases, options, [&](uint32_t flags, auto lanes, int width) {
        bool moved = false, nan = false;
        for (int i = 0; i < width; i++) {
          uint64_t x = lanes[i]->in[0];
          nan |= F.is_nan(x);
          moved |= !F.is_nan(x) && x != lanes[i]->out[0];
        }
        if (width == 3 && std::string(f.name) != "nearbyint") return;  // the fourth lane rounds 0.75
        bool inexact = flags & inexact_flag;
        if (std::string(f.name) != "round" && !nan) EXPECT_EQ(inexact, moved && !f.never_inexact) << f.name;
        raised += inexact;
      });
      EXPECT_EQ(raised == 0, f.never_inexact) << f.name;
    }
}

TYPED_TEST(Exact, Fract) {
  using T = TypeParam;
  constexpr const float_format& F = format_of(element_of<T>);
  auto cases = this->unary([&](uint64_t b) {
    if (F.is_nan(b)) return lane_case{{}, {this->quieted(b), this->quieted(b)}};
    if (this->is_special(b)) return lane_case{{}, {b & F.sign, b}};
    T x = value_of<T>(b), floor = std::floor(x);
    return lane_case{{}, {bits_of(std::min(x - floor, std::nextafter(T(1), T(0)))), bits_of(floor)}};
  });
  run_every_width("fract", this->type, cases);
}

TYPED_TEST(Exact, Modf) {
  using T = TypeParam;
  constexpr const float_format& F = format_of(element_of<T>);
  auto cases = this->unary([&](uint64_t b) {
    if (F.is_nan(b)) return lane_case{{}, {this->quieted(b), this->quieted(b)}};
    if ((b & ~F.sign) == F.infinity) return lane_case{{}, {b & F.sign, b}};
    T whole, fraction = std::modf(value_of<T>(b), &whole);
    if (fraction == 0) fraction = 0;  // integral arguments have the fraction +0 here
    return lane_case{{}, {bits_of(fraction), bits_of(whole)}};
  });
  run_every_width("modf", this->type, cases);
}

TYPED_TEST(Exact, Frexp) {
  using T = TypeParam;
  constexpr const float_format& F = format_of(element_of<T>);
  auto cases = this->unary([&](uint64_t b) {
    if (this->is_special(b)) return lane_case{{}, {F.is_nan(b) ? this->quieted(b) : b, 0}};
    int n;
    T m = std::frexp(value_of<T>(b), &n);
    return lane_case{{}, {bits_of(m), static_cast<uint32_t>(n)}};
  });
  run_every_width("frexp", this->type, cases);
}

TYPED_TEST(Exact, IlogbAndLogb) {
  using T = TypeParam;
  constexpr const float_format& F = format_of(element_of<T>);
  auto integers = this->unary([&](uint64_t b) {
    if ((b & ~F.sign) == 0) return lane_case{{}, {0x80000000}};
    if (this->is_special(b)) return lane_case{{}, {0x7fffffff}};
    return lane_case{{}, {static_cast<uint32_t>(std::ilogb(value_of<T>(b)))}};
  });
  run_every_width("ilogb", this->type, integers);
  auto reals = this->unary([&](uint64_t b) {
    if ((b & ~F.sign) == 0) return lane_case{{}, {F.sign | F.infinity}};
    if (this->is_special(b)) return lane_case{{}, {b & ~F.sign}};  // a signalling NaN stays one
    return lane_case{{}, {bits_of(static_cast<T>(std::ilogb(value_of<T>(b))))}};
  });
  run_every_width("logb", this->type, reals);

  using I = std::conditional_t<sizeof(T) == 4, ilogb_f32, ilogb_f64>;
  using L = std::conditional_t<sizeof(T) == 4, logb_f32, logb_f64>;
  T zero = 0, infinity = value_of<T>(F.infinity), y;
  int32_t n;
  EXPECT_EQ(observe([&] { return I::rare(&zero, &n); }), (outcome{domain_error, 0}));
  EXPECT_EQ(observe([&] { return I::rare(&infinity, &n); }), (outcome{domain_error, 0}));
  EXPECT_EQ(observe([&] { return L::rare(&zero, &y); }), (outcome{domain_error, pole_flag}));
  EXPECT_EQ(observe([&] { return L::rare(&infinity, &y); }), (outcome{ordinary, 0}));
}

TYPED_TEST(Exact, Ldexp) {
  using T = TypeParam;
  constexpr const float_format& F = format_of(element_of<T>);
  std::vector<lane_case> cases;
  auto add = [&](uint64_t b, int32_t n) {
    T x = value_of<T>(b);
    cases.push_back({{b, static_cast<uint32_t>(n)}, {F.is_nan(b) ? this->quieted(b) : bits_of(std::ldexp(x, n))}});
  };
  std::mt19937 generator(3);
  for (uint64_t b : interesting_values<T>(3000, 2)) {
    // To both ends of the range, rounding included; anywhere; and where n + e wraps.
    int e = this->is_special(b) ? 0 : std::ilogb(value_of<T>(b));
    int lowest = (sizeof(T) == 4 ? -149 : -1074) - e, highest = (sizeof(T) == 4 ? 127 : 1023) - e;
    for (int d = -3; d <= 3; d++) add(b, lowest + d), add(b, highest + d);
    for (int i = 0; i < 4; i++) add(b, lowest + static_cast<int>(generator() % static_cast<unsigned>(highest - lowest)));
    for (int32_t n : {0, 65536, -65536, 65537, INT32_MAX, INT32_MIN, INT32_MAX - 300, INT32_MIN + 300}) add(b, n);
  }
  run_every_width("ldexp", this->type, cases);

  using K = std::conditional_t<sizeof(T) == 4, ldexp_f32, ldexp_f64>;
  T y;
  auto scaled = [&](T x, int32_t n) { return observe([&] { return K::rare(&x, &n, &y); }); };
  int smallest = sizeof(T) == 4 ? -149 : -1074;
  EXPECT_EQ(scaled(-1, INT32_MAX), (outcome{overflow, overflow_flag | inexact_flag}));
  EXPECT_EQ(bits_of(y), F.sign | F.infinity);
  EXPECT_EQ(scaled(-1, smallest - 1), (outcome{underflow, underflow_flag | inexact_flag}));
  EXPECT_EQ(bits_of(y), F.sign);
  EXPECT_EQ(scaled(T(1.5), smallest - 1), (outcome{ordinary, underflow_flag | inexact_flag}));
  EXPECT_EQ(bits_of(y), 1u);
  EXPECT_EQ(scaled(-1, smallest - 2), (outcome{underflow, underflow_flag | inexact_flag}));
  EXPECT_EQ(scaled(1, smallest), (outcome{ordinary, 0}));
}

TYPED_TEST(Exact, BitOperationsNeverQuiet) {
  using T = TypeParam;
  constexpr const float_format& F = format_of(element_of<T>);
  auto nothing_raised = [](uint32_t flags, auto, int) { EXPECT_EQ(flags, 0u); };
  run_every_width("fabs", this->type, this->unary([](uint64_t b) { return lane_case{{}, {b & ~F.sign}}; }), {}, nothing_raised);
  run_every_width("nan", this->type, this->unary([](uint64_t b) {
    return lane_case{{}, {b | F.infinity | F.quiet}};
  }),
                  {}, nothing_raised);
  std::vector<lane_case> cases;
  std::mt19937_64 generator(4);
  for (uint64_t x : interesting_values<T>(20000, 3)) {
    uint64_t y = generator() & (2 * F.sign - 1);
    cases.push_back({{x, y}, {(x & ~F.sign) | (y & F.sign)}});
  }
  run_every_width("copysign", this->type, cases, {}, nothing_raised);
}

TYPED_TEST(Exact, MadRoundsTwice) {
  using T = TypeParam;
  constexpr const float_format& F = format_of(element_of<T>);
  std::vector<lane_case> cases;
  auto values = interesting_values<T>(2000, 5);
  std::mt19937 generator(5);
  auto any = [&] { return values[generator() % values.size()]; };
  for (int i = 0; i < 200000; i++) {
    uint64_t x = any(), y = any(), z = any();
    volatile T product = value_of<T>(x) * value_of<T>(y);
    T sum = product + value_of<T>(z);
    uint64_t p = F.is_nan(x) || F.is_nan(y) ? nan_of<T>(x, y) : bits_of(T(product));
    cases.push_back({{x, y, z}, {F.is_nan(p) || F.is_nan(z) ? nan_of<T>(p, z) : bits_of(sum)}});
  }
  T a = std::is_same_v<T, float> ? T(1 + 0x1p-12) : T(1 + 0x1p-27),
    b = std::is_same_v<T, float> ? T(1 + 0x1p-11) : T(1 + 0x1p-26);
  cases.push_back({{bits_of(a), bits_of(a), bits_of(-b)}, {0}});
  run_every_width("mad", this->type, cases);
}

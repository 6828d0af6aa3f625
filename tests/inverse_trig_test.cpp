// Inverse trigonometric functions: what the tests by property do not know. Symmetries bit for bit, the steps of the double
// arctangents' table, the rare cases of two operands over all magnitudes, statuses and flags.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/every_width.h"
#include "tests/kernel_calls.h"
#include "tests/mpfr_error.h"
#include "trig/acos.h"
#include "trig/acospi.h"
#include "trig/asin.h"
#include "trig/asinpi.h"
#include "trig/atan.h"
#include "trig/atan2.h"
#include "trig/atan2pi.h"
#include "trig/atanpi.h"

using namespace vorx;

namespace {

// The results of an entry point of one lane.
template <class T>
T call(const std::string& function, T x, T y = 1) {
  argument_lane in{bits_of(x), bits_of(y)};
  result_lane out{};
  EXPECT_EQ(lane_caller(find_entry(function, element_of<T>, 1))(&in, &out), "");
  return value_of<T>(out[0]);
}

using two_arguments = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_srcptr, mpfr_rnd_t);

// |result - f(y, x)| in units of the last place of the exact value.
template <class T>
double error_of(two_arguments f, T y, T x, T result) {
  mpfr_t a, b, exact;
  mpfr_inits2(53, a, b, nullptr);
  mpfr_init2(exact, 160);
  mpfr_set_d(a, y, MPFR_RNDN);
  mpfr_set_d(b, x, MPFR_RNDN);
  f(exact, a, b, MPFR_RNDN);
  using limits = std::numeric_limits<T>;
  const long place = std::max<long>(mpfr_get_exp(exact), limits::min_exponent) - limits::digits;
  mpfr_sub_d(exact, exact, result, MPFR_RNDN);
  mpfr_mul_2si(exact, exact, -place, MPFR_RNDN);
  const double error = std::fabs(mpfr_get_d(exact, MPFR_RNDN));
  mpfr_clears(a, b, exact, nullptr);
  return std::isnan(error) ? std::numeric_limits<double>::infinity() : error;
}

struct of_one {
  const char* name;
  mpfr_function exact;
  double f32_bound, f64_bound;
};
const of_one arctangents[] = {{"atan", mpfr_atan, atan_f32::max_ulp, atan_f64::max_ulp},
                              {"atanpi", mpfr_atanpi, atanpi_f32::max_ulp, 0.6}};
const char* const odd_functions[] = {"asin", "asinpi", "atan", "atanpi"};

struct of_two {
  const char* name;
  two_arguments exact;
  double f32_bound, f64_bound, f64_rare_bound;
};
const of_two angles[] = {{"atan2", mpfr_atan2, atan2_f32::max_ulp, atan2_f64::max_ulp, 0.6},
                         {"atan2pi", mpfr_atan2pi, atan2pi_f32::max_ulp, 0.6, atan2pi_f64::max_ulp}};

template <class T>
struct InverseTrig : testing::Test {
  static double bound(const auto& f) { return sizeof(T) == 4 ? f.f32_bound : f.f64_bound; }
};
using types = testing::Types<float, double>;
TYPED_TEST_SUITE(InverseTrig, types);

TYPED_TEST(InverseTrig, OddFunctionsAndReflections) {
  using T = TypeParam;
  std::mt19937_64 random(1);
  for (int i = 0; i < 3000; i++) {
    const T x = static_cast<T>(std::ldexp(static_cast<double>(random() >> 11), -53 - i % 30)), y = call("atan", x);
    for (const char* f : odd_functions) EXPECT_EQ(bits_of(call(f, -x)), bits_of(-call(f, x))) << f << " of " << x;
    for (const of_two& f : angles) {
      const T angle = call(f.name, y, x);
      EXPECT_EQ(bits_of(call(f.name, -y, x)), bits_of(-angle)) << f.name << " of " << y << ", " << x;
      EXPECT_EQ(bits_of(call(f.name, y * T(1024), x * T(1024))), bits_of(angle)) << f.name << " of " << y << ", " << x;
    }
  }
}

// Next to the points where the table's row changes, which lie in the middle between its points, and to the points themselves.
TYPED_TEST(InverseTrig, StepsOfTheTable) {
  using T = TypeParam;
  std::mt19937_64 random(2);
  for (uint64_t step = 0x3fae8; step <= 0x40318; step += 8)
    for (int i = -6; i <= 6; i++) {
      const double at = value_of<double>((step << 32 << 12 >> 8) + static_cast<uint64_t>(static_cast<int64_t>(i)));
      const T x = std::nextafter(static_cast<T>(at), static_cast<T>(i * 100));
      for (const of_one& f : arctangents)
        EXPECT_LE(exact_value(f.exact, x).ulp_from(call(f.name, x)), this->bound(f)) << f.name << " of " << x;
      const T cosine = static_cast<T>(1 + static_cast<double>(random() >> 11) * 0x1p-53), sine = x * cosine;
      for (const of_two& f : angles)
        for (T side : {cosine, -cosine})
          EXPECT_LE(error_of(f.exact, sine, side, call(f.name, sine, side)), this->bound(f))
              << f.name << " of " << sine << ", " << side;
    }
}

// Operands of all magnitudes, subnormal ones too; quotients that overflow, underflow, or are just subnormal.
TYPED_TEST(InverseTrig, AnglesOfAllMagnitudes) {
  using T = TypeParam;
  using limits = std::numeric_limits<T>;
  std::mt19937_64 random(3);
  auto number = [&](int exponent) {
    T x = static_cast<T>(std::ldexp(1 + static_cast<double>(random() >> 11) * 0x1p-53, exponent));
    return random() % 2 ? x : -x;
  };
  const int lowest = limits::min_exponent - limits::digits, range = limits::max_exponent - 1 - lowest;
  int subnormal = 0;
  for (int i = 0; i < 20000; i++) {
    const int e = lowest + static_cast<int>(random() % static_cast<unsigned>(range));
    int d = static_cast<int>(random() % 140) - 70;
    if (i % 4 == 0) d = limits::min_exponent - static_cast<int>(random() % (limits::digits + 3));
    if (i % 4 == 1) d = static_cast<int>(random() % static_cast<unsigned>(2 * range)) - range;
    const T x = number(e), y = number(std::min(std::max(e + d, lowest), limits::max_exponent - 1));
    if (x == 0 || y == 0) continue;
    for (const of_two& f : angles) {
      const T angle = call(f.name, y, x);
      subnormal += angle != 0 && std::fabs(angle) < limits::min();
      EXPECT_LE(error_of(f.exact, y, x, angle), sizeof(T) == 4 ? f.f32_bound : std::max(f.f64_bound, f.f64_rare_bound))
          << f.name << " of " << y << ", " << x;
    }
  }
  EXPECT_GT(subnormal, 50);
}

template <class K>
void expect_border(scalar_of<K> at_one, scalar_of<K> at_minus_one) {
  using T = scalar_of<K>;
  constexpr T inf = std::numeric_limits<T>::infinity(), nan = std::numeric_limits<T>::quiet_NaN();
  EXPECT_FALSE(flagged<K>(std::nextafter(T(1), T(0))));
  EXPECT_FALSE(flagged<K>(-std::nextafter(T(1), T(0))));
  T y;
  auto rare = [&y](T x) { return observe([&] { return K::rare(&x, &y); }); };
  EXPECT_EQ(rare(1).status, ordinary);
  EXPECT_EQ(bits_of(y), bits_of(at_one));
  EXPECT_EQ(rare(-1).status, ordinary);
  EXPECT_EQ(bits_of(y), bits_of(at_minus_one));
  EXPECT_EQ(rare(nan), (outcome{ordinary, 0}));
  EXPECT_TRUE(std::isnan(y));
  for (T x : {std::nextafter(T(1), T(2)), T(-1.5), inf, -inf}) {
    EXPECT_TRUE(flagged<K>(x));
    EXPECT_EQ(rare(x), (outcome{domain_error, invalid_flag})) << x;
    EXPECT_TRUE(std::isnan(y)) << x;
  }
}

TEST(InverseTrigRareCases, BordersOfTheDomain) {
  const float half_pi = scalar(0x3fc90fdb, 1.57079637f), pi = scalar(0x40490fdb, 3.14159274f);
  const double half_pi_f64 = scalar(0x3ff921fb54442d18, 1.5707963267948966),
               pi_f64 = scalar(0x400921fb54442d18, 3.1415926535897931);
  expect_border<asin_f32>(half_pi, -half_pi);
  expect_border<asin_f64>(half_pi_f64, -half_pi_f64);
  expect_border<acos_f32>(0, pi);
  expect_border<acos_f64>(0, pi_f64);
  expect_border<asinpi_f32>(0.5f, -0.5f);
  expect_border<asinpi_f64>(0.5, -0.5);
  expect_border<acospi_f32>(0, 1);
  expect_border<acospi_f64>(0, 1);
}

template <class K>
void expect_angle(scalar_of<K> y, scalar_of<K> x, outcome expected) {
  scalar_of<K> angle;
  outcome seen = observe([&] { return K::rare(&y, &x, &angle); });
  seen.flags &= ~inexact_flag;
  EXPECT_EQ(seen, expected) << y << ", " << x;
}

TEST(InverseTrigRareCases, StatusesOfAngles) {
  const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
  for (float y : {0.0f, 1.0f, inf, nan})
    for (float x : {0.0f, 1.0f, inf, nan, -0.0f, -1.0f, -inf}) {
      expect_angle<atan2_f32>(y, x, {ordinary, 0});
      expect_angle<atan2_f64>(y, x, {ordinary, 0});
    }
  expect_angle<atan2_f32>(0x1p-120f, 0x1.8p20f, {underflow, underflow_flag});
  expect_angle<atan2_f64>(0x1p-1000, 0x1.8p60, {underflow, underflow_flag});
  expect_angle<atan2_f64>(0x1p-1000, -0x1p60, {ordinary, 0});
}

}  // namespace

// Gamma functions: statuses, flags and signs of the scalar routines, arguments next to poles and zeros, results below the normal
// range, and lanes whose bits must not depend on which path their vector takes. The reference is MPFR.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <random>

#include "special/lgammar.h"
#include "special/tgamma.h"
#include "tests/kernel_calls.h"
#include "tests/mpfr_error.h"

using namespace vorx;

namespace {

constexpr double inf = std::numeric_limits<double>::infinity(), nan_ = std::numeric_limits<double>::quiet_NaN();

int log_gamma(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t mode) {
  int sign;
  return mpfr_lgamma(r, &sign, x, mode);
}

// Fewer on an emulated processor.
const int inputs = std::getenv("VORX_QUICK") ? 300 : 5000;

struct stream {
  std::mt19937_64 random{1};
  double between(double low, double high) { return low + (high - low) * (static_cast<double>(random() >> 11) * 0x1p-53); }
};

template <class K>
bool left_to_rare(scalar_of<K> x) {
  return sign_mask(as_float(i32x4{K::special(all(x), constant_pool<typename K::constants>)})) & 8;
}
// The result as an entry point has it.
template <class K>
scalar_of<K> value_of(scalar_of<K> x) {
  scalar_of<K> y;
  if (left_to_rare<K>(x)) return K::rare(&x, &y), y;
  if constexpr (has_large_path<K>)
    if (flagged<K>(x)) return on_path<K>(x, K::large_path);
  return path_of<K>(x);
}

template <class K>
void expect_rare(double argument, double expected, outcome wanted, uint32_t flags_that_count = ~0u) {
  auto x = static_cast<scalar_of<K>>(argument), y = x;
  ASSERT_TRUE(left_to_rare<K>(x)) << argument;
  outcome seen = observe([&] { return K::rare(&x, &y); });
  seen.flags &= flags_that_count;
  EXPECT_EQ(seen, wanted) << argument;
  if (std::isnan(expected))
    EXPECT_TRUE(std::isnan(y)) << argument;
  else
    EXPECT_EQ(bits_of(y), bits_of(static_cast<scalar_of<K>>(expected))) << argument << " gives " << y;
}

template <class K>
void expect_special_gamma() {
  expect_rare<K>(-0.0, -inf, {singularity, pole_flag});
  expect_rare<K>(nan_, nan_, {ordinary, 0});
  for (double x : {-1.0, -2.0, -171.0, -1e10, -inf}) expect_rare<K>(x, nan_, {domain_error, invalid_flag}, ~inexact_flag);
  // The sign of a result that underflows.
  for (int n = 190; n < 200; n++) expect_rare<K>(-n - 0.5, n % 2 ? 0.0 : -0.0, {underflow, underflow_flag | inexact_flag});
}
TEST(Gamma, SpecialLanes) {
  expect_special_gamma<tgamma_f32>();
  expect_special_gamma<tgamma_f64>();
  expect_rare<tgamma_f64>(0.0, inf, {singularity, pole_flag});
  expect_rare<tgamma_f64>(inf, inf, {ordinary, 0});
  for (double x : {std::nextafter(171.6243769563027, inf), 172.0, 1e300})
    expect_rare<tgamma_f64>(x, inf, {overflow, overflow_flag | inexact_flag});
  for (double x : {0x1p-1074, -0x1p-1074})
    expect_rare<tgamma_f64>(x, x < 0 ? -inf : inf, {overflow, overflow_flag | inexact_flag});
  EXPECT_EQ(value_of<tgamma_f64>(0x1p-1023), 0x1p1023);
  EXPECT_TRUE(std::isfinite(value_of<tgamma_f64>(171.6243769563027)));
  EXPECT_EQ(path_of<tgamma_f32>(0.0f), INFINITY);
  EXPECT_EQ(path_of<tgamma_f32>(INFINITY), INFINITY);
  EXPECT_EQ(path_of<tgamma_f32>(36.0f), INFINITY);
}

template <class K>
void expect_special_log_gamma() {
  for (double x : {0.0, -0.0, -1.0, -2.0, -1e10}) expect_rare<K>(x, inf, {singularity, pole_flag}, ~inexact_flag);
  for (double x : {inf, -inf}) expect_rare<K>(x, inf, {ordinary, 0});
  expect_rare<K>(nan_, nan_, {ordinary, 0});
  for (scalar_of<K> x : {1, 2}) EXPECT_EQ(bits_of(value_of<K>(x)), 0u) << x;
}
TEST(Gamma, SpecialLanesOfTheLogarithm) {
  expect_special_log_gamma<lgamma_f32>();
  expect_special_log_gamma<lgamma_f64>();
  expect_rare<lgamma_f64>(std::nextafter(2.5599833278516383e305, inf), inf, {overflow, overflow_flag | inexact_flag});
  EXPECT_TRUE(std::isfinite(value_of<lgamma_f64>(2.5599833278516383e305)));
}

TEST(Gamma, Sign) {
  auto sign = [](double x) {
    double y;
    int32_t s;
    lgammar_f64::rare(&x, &y, &s);
    return s;
  };
  for (double x : {0.0, -0.0, -1.0, -2.0, -0x1p60, -inf, nan_}) EXPECT_EQ(sign(x), 0) << x;
  for (double x : {inf, 1e308, 0x1p-1074}) EXPECT_EQ(sign(x), 1) << x;
  for (int n = 0; n < 300; n++)
    for (double x : {-n - 0.25, -n - 0.5, -n - 0.75, std::nextafter(-n, -inf), std::nextafter(-n - 1, inf)})
      EXPECT_EQ(sign(x), n % 2 ? 1 : -1) << x;
  EXPECT_EQ(sign(-0x1p51 - 0.5), -1);
  EXPECT_EQ(sign(-0x1p51 + 0.5), 1);
  auto lanes = lgammar_f64::path(all(3.5), constant_pool<lgammar_f64::constants>).second;
  EXPECT_EQ(extract<0>(lanes), 1u);
  EXPECT_EQ(extract<1>(lanes), 1u);
}

TEST(Gamma, Factorials) {
  double factorial = 1;
  for (int n = 1; n <= 23; factorial *= n++) {
    EXPECT_EQ(value_of<tgamma_f64>(n), factorial) << n;
    EXPECT_EQ(value_of<tgamma_f32>(static_cast<float>(n)), static_cast<float>(factorial)) << n;
  }
}

template <class K>
void expect_error(mpfr_function f, scalar_of<K> x, double absolute = 0) {
  auto y = value_of<K>(x);
  exact_value exact(f, static_cast<double>(x));
  double error = exact.ulp_from(y);
  if (error > K::max_ulp && absolute > 0) error *= std::ldexp(1, std::ilogb(y) - 52) / absolute * K::max_ulp;
  ASSERT_LE(error, K::max_ulp) << std::hexfloat << x << " gives " << y;
}

// Both sides of every pole, and of the zeros below -2, which approach them: down to -25.
TEST(Gamma, NextToPolesAndZeros) {
  for (int n = 0; n <= 25; n += inputs < 1000 ? 8 : 1) {
    for (int i = 1; i < 64; i++)
      for (double side : {-1.0, 1.0}) {
        double x = -n + side * std::ldexp(1, -i);
        auto wide = [&](double at) {
          if (at == std::floor(at)) return;
          expect_error<tgamma_f64>(mpfr_gamma, at);
          expect_error<lgamma_f64>(log_gamma, at, lgamma_f64::max_absolute);
          auto narrow = static_cast<float>(at);
          if (narrow == std::floor(narrow)) return;
          expect_error<tgamma_f32>(mpfr_gamma, narrow);
          expect_error<lgamma_f32>(log_gamma, narrow);
        };
        for (double at : {x, std::nextafter(x, inf), std::nextafter(x, -inf)}) wide(at);
      }
    // A zero of the logarithm in each half of the interval below -n: bisection.
    for (double left : {-n - 0.5, double(-n - 1)}) {
      double low = left, high = left + 0.5;
      auto sign = [](double x) { return std::isfinite(value_of<lgamma_f64>(x)) && value_of<lgamma_f64>(x) < 0; };
      if (n < 2 || sign(low) == sign(high)) continue;
      while (std::nextafter(low, inf) < high) (sign((low + high) / 2) == sign(low) ? low : high) = (low + high) / 2;
      for (double at = low - 8 * (high - low); at < high + 8 * (high - low); at = std::nextafter(at, inf)) {
        if (at == std::floor(at)) continue;
        expect_error<lgamma_f64>(log_gamma, at, lgamma_f64::max_absolute);
        if (static_cast<float>(at) != std::floor(static_cast<float>(at)))
          expect_error<lgamma_f32>(log_gamma, static_cast<float>(at));
      }
    }
  }
}

// Rounded once, with underflow raised.
TEST(Gamma, SubnormalResults) {
  stream s;
  for (int i = 0; i < inputs; i++) {
    double x = s.between(-178, -170.7), y;
    if (x == std::floor(x) || !exact_value(mpfr_gamma, x).subnormal<double>()) continue;
    const outcome seen = observe([&] { return tgamma_f64::rare(&x, &y); });
    ASSERT_EQ(seen.status, underflow) << x;
    ASSERT_TRUE(seen.flags & underflow_flag) << x;
    ASSERT_LE(exact_value(mpfr_gamma, x).ulp_from(y), 0.65) << x;
    auto narrow = static_cast<float>(s.between(-42, -33));
    if (narrow != std::floor(narrow)) expect_error<tgamma_f32>(mpfr_gamma, narrow);
  }
}

// Ends of both ranges, ends of the pieces, and arguments whose path depends on the neighbours.
template <class K>
void expect_same_bits(double low, double high) {
  stream s;
  for (int i = 0; i < inputs; i++) {
    auto x = static_cast<scalar_of<K>>(s.between(low, high));
    if (!flagged<K>(x)) ASSERT_EQ(bits_of(path_of<K>(x)), bits_of(on_path<K>(x, K::large_path))) << x;
  }
}
TEST(Gamma, BothPathsAgree) {
  expect_same_bits<tgamma_f64>(0, 20);
  expect_same_bits<lgamma_f64>(0.5, 32);
  expect_same_bits<lgamma_f32>(0.5, 36);
}
TEST(Gamma, Seams) {
  for (double x : {0x1p-1022, 0x1p-600, 0x1p-53, 0.5, 1.0, 1.5, 2.0, 20.0, 32.0, 36.0, 171.0, 171.62, 171.62437})
    for (double at : {x, std::nextafter(x, 0), std::nextafter(x, inf)}) {
      expect_error<tgamma_f64>(mpfr_gamma, at);
      expect_error<lgamma_f64>(log_gamma, at);
    }
  for (double x : {0x1p20, 0x1p52, 0x1p53, 1e100, 2.5599e305}) expect_error<lgamma_f64>(log_gamma, x);
  for (int i = 1; i < 640; i++)
    for (double at : {(i + 0.5) / 32, std::nextafter((i + 0.5) / 32, 0)}) {
      expect_error<tgamma_f64>(mpfr_gamma, at);
      expect_error<lgamma_f64>(log_gamma, at);
      expect_error<tgamma_f32>(mpfr_gamma, static_cast<float>(at));
      expect_error<lgamma_f32>(log_gamma, static_cast<float>(at));
    }
}

}  // namespace

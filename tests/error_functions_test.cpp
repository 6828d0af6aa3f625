// Error functions: statuses and flags of the scalar routines, results below the normal range, relative errors of the natives, and
// what holds for every argument. The reference is MPFR.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <random>

#include "special/erf.h"
#include "special/erfc.h"
#include "tests/kernel_calls.h"
#include "tests/mpfr_error.h"

using namespace vorx;

namespace {

constexpr double inf = std::numeric_limits<double>::infinity(), nan_ = std::numeric_limits<double>::quiet_NaN();

// Fewer on an emulated processor.
const int inputs = std::getenv("VORX_QUICK") ? 300 : 5000;

struct stream {
  std::mt19937_64 random{1};
  double between(double low, double high) { return low + (high - low) * (static_cast<double>(random() >> 11) * 0x1p-53); }
  double sign() { return random() & 1 ? 1 : -1; }
};

template <class K>
outcome rare_of(scalar_of<K> x, scalar_of<K>& y) {
  EXPECT_TRUE(flagged<K>(x)) << x;
  return observe([&] { return K::rare(&x, &y); });
}
template <class K>
void expect_rare(scalar_of<K> x, scalar_of<K> expected, outcome wanted) {
  scalar_of<K> y;
  EXPECT_EQ(rare_of<K>(x, y), wanted) << x;
  if (std::isnan(expected))
    EXPECT_TRUE(std::isnan(y)) << x;
  else
    EXPECT_EQ(bits_of(y), bits_of(expected)) << x;
}

TEST(ErrorFunctions, SpecialLanes) {
  for (double sign : {1.0, -1.0}) {
    expect_rare<erf_f64>(sign * inf, sign, {ordinary, 0});
    expect_rare<erf_f32>(static_cast<float>(sign * inf), static_cast<float>(sign), {ordinary, 0});
    expect_rare<erf_f64>(sign * nan_, nan_, {ordinary, 0});
    expect_rare<erf_f32>(static_cast<float>(sign * nan_), NAN, {ordinary, 0});
  }
  expect_rare<erfc_f64>(nan_, nan_, {ordinary, 0});
  expect_rare<erfc_f64>(inf, 0, {ordinary, 0});
  for (double x : {27.2263, 28.0, 1e300}) expect_rare<erfc_f64>(x, 0, {underflow, underflow_flag | inexact_flag});
}

// The lanes that the vector paths take.
TEST(ErrorFunctions, LaneTests) {
  for (double x : {0.0, 0x1p-1000, 1e308}) EXPECT_FALSE(flagged<erf_f64>(x) || flagged<erf_f64>(-x)) << x;
  EXPECT_TRUE(flagged<erf_f64>(0x1.fffffffffffffp-1001));
  for (float x : {0.0f, 0x1p-149f, 0x1.fffffep127f}) EXPECT_FALSE(flagged<erf_f32>(x) || flagged<erf_f32>(-x)) << x;
  for (double x : {-inf, -nan_, -1e300, -30.0, -0.0, 0.0, 0x1p-1074, 26.5}) EXPECT_FALSE(flagged<erfc_f64>(x)) << x;
  EXPECT_TRUE(std::isnan(path_of<erfc_f64>(-nan_)));
}

// Results below the normal range are rounded once, and raise underflow.
TEST(ErrorFunctions, SubnormalResults) {
  stream s;
  for (int i = 0; i < inputs; i++) {
    double y, x = s.between(26.5433, 27.2262);
    ASSERT_EQ(rare_of<erfc_f64>(x, y), (outcome{underflow, underflow_flag | inexact_flag})) << x;
    ASSERT_LE(exact_value(mpfr_erfc, x).ulp_from(y), 0.505) << x;

    x = s.sign() * std::ldexp(s.between(1, 2), -1022 - static_cast<int>(s.random() % 52));
    rare_of<erf_f64>(x, y);
    ASSERT_LE(exact_value(mpfr_erf, x).ulp_from(y), 0.502) << x;

    auto f = static_cast<float>(s.between(9.19, 10.1));
    ASSERT_LE(exact_value(mpfr_erfc, static_cast<double>(f)).ulp_from(path_of<erfc_f32>(f)), erfc_f32::max_ulp) << f;
  }
}

template <class K>
void expect_odd() {
  stream s;
  for (int i = 0; i < inputs; i++) {
    auto x = static_cast<scalar_of<K>>(std::ldexp(s.between(1, 2), static_cast<int>(s.random() % 24) - 20));
    ASSERT_EQ(bits_of(path_of<K>(-x)), bits_of(-path_of<K>(x))) << x;
  }
}
TEST(ErrorFunctions, ErfIsOdd) {
  expect_odd<erf_f32>();
  expect_odd<erf_f64>();
  expect_odd<erf_f32_native>();
  expect_odd<erf_f64_native>();
}

// Ends of the pieces of the tables, from both sides.
template <class K>
void expect_errors_at(mpfr_function f, double x) {
  for (double y : {x, std::nextafter(x, 0), std::nextafter(x, inf), -x, -std::nextafter(x, inf)}) {
    if (flagged<K>(y)) continue;
    ASSERT_LE(exact_value(f, y).ulp_from(path_of<K>(y)), K::max_ulp) << std::hexfloat << y;
  }
}
TEST(ErrorFunctions, EndsOfPieces) {
  for (int i = 1; i < 770; i++) expect_errors_at<erf_f64>(mpfr_erf, (i + 0.5) / 128);
  for (int i = 1; i < 367; i++) expect_errors_at<erfc_f64>(mpfr_erfc, std::ldexp(1 + (i % 64) / 64.0, i / 64 - 1) - 0.5);
}

template <class K>
void expect_relative_error(mpfr_function f, double low, double high, double limit) {
  stream s;
  for (int i = 0; i < inputs; i++) {
    auto x = static_cast<scalar_of<K>>(s.between(low, high));
    ASSERT_LE(exact_value(f, static_cast<double>(x)).relative_distance(static_cast<double>(path_of<K>(x))), limit) << x;
  }
}
TEST(ErrorFunctions, Natives) {
  expect_relative_error<erf_f32_native>(mpfr_erf, -5, 5, 0x1p-12);
  expect_relative_error<erf_f64_native>(mpfr_erf, -7, 7, 0x1p-32);
  expect_relative_error<erfc_f32_native>(mpfr_erfc, -5, 9.19, 0x1p-12);
  expect_relative_error<erfc_f64_native>(mpfr_erfc, -7, 26.5, 0x1p-30);
  EXPECT_TRUE(std::isnan(path_of<erf_f32_native>(NAN)) && std::isnan(path_of<erf_f64_native>(nan_)));
  EXPECT_TRUE(std::isnan(path_of<erfc_f32_native>(NAN)) && std::isnan(path_of<erfc_f64_native>(nan_)));
  for (double x : {8.0, inf}) {
    EXPECT_EQ(path_of<erf_f32_native>(static_cast<float>(x)), 1);
    EXPECT_EQ(path_of<erf_f64_native>(-x), -1);
    EXPECT_EQ(path_of<erfc_f32_native>(static_cast<float>(-x)), 2);
    EXPECT_EQ(path_of<erfc_f64_native>(-x), 2);
  }
  EXPECT_EQ(path_of<erfc_f64_native>(inf), 0);
}

}  // namespace

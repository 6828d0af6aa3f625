// Roots: special results with their flags and statuses, the lane tests, the scalar routines' accuracy, and errors that do not
// depend on whose estimate of 1 / sqrt(x) the kernels start from. The reference is the x87's 64-bit significand: its error is
// below 2^-10 ULP of a double.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "roots/cbrt.h"
#include "roots/div.h"
#include "roots/hypot.h"
#include "roots/inv.h"
#include "roots/rcbrt.h"
#include "roots/rsqrt.h"
#include "roots/sqrt.h"
#include "tests/kernel_calls.h"
#include "tests/lanes.h"
#include "tests/model_estimates.h"

using namespace vorx;

namespace {

template <class T>
constexpr T inf = std::numeric_limits<T>::infinity();
template <class T>
constexpr T quiet_nan = std::numeric_limits<T>::quiet_NaN();
template <class T>
constexpr T least = std::numeric_limits<T>::denorm_min();
template <class T>
constexpr T largest = std::numeric_limits<T>::max();

int rounds() { return quick() ? 20000 : 100000; }

long double reciprocal_root(long double x) { return 1 / sqrtl(x); }
long double reciprocal_cube_root(long double x) { return 1 / cbrtl(x); }

// |y - exact| in units in the last place of exact.
template <class T>
long double error_of(T y, long double exact) {
  int exponent;
  std::frexp(exact, &exponent);
  exponent = std::max(exponent, std::numeric_limits<T>::min_exponent) - std::numeric_limits<T>::digits;
  return std::ldexp(std::abs(y - exact), -exponent);
}

// ---- special results ----

// The result, the status and the flags invalid, division by zero and overflow of a routine.
template <class K, class... T>
void expect_rare(scalar_of<K> expected, int status, uint32_t flags, const T&... x) {
  SCOPED_TRACE(::testing::PrintToString(std::make_tuple(x...)));
  scalar_of<K> y;
  const outcome seen = observe([&] { return K::rare(&x..., &y); });
  EXPECT_EQ(seen.status, status);
  EXPECT_EQ(seen.flags & (invalid_flag | pole_flag | overflow_flag), flags);
  if (std::isnan(expected))
    EXPECT_TRUE(std::isnan(y)) << y;
  else
    EXPECT_EQ(bits_of(y), bits_of(expected)) << y;
}

template <class K>
void expect_special(scalar_of<K> x, scalar_of<K> expected, int status, uint32_t flags) {
  EXPECT_TRUE(flagged<K>(x)) << x;
  expect_rare<K>(expected, status, flags, x);
}
template <class K>
void expect_no_negative_arguments() {
  using T = scalar_of<K>;
  for (T x : {-least<T>, T(-1), -largest<T>, -inf<T>}) expect_special<K>(x, quiet_nan<T>, domain_error, invalid_flag);
}
template <class K, class I, class D, class H>
void expect_special_results() {
  using T = scalar_of<K>;
  expect_no_negative_arguments<K>();
  expect_special<K>(T(0), inf<T>, singularity, pole_flag);
  expect_special<K>(-T(0), -inf<T>, singularity, pole_flag);
  expect_special<K>(inf<T>, T(0), ordinary, 0);
  expect_special<K>(quiet_nan<T>, quiet_nan<T>, ordinary, 0);

  expect_special<I>(T(0), inf<T>, singularity, pole_flag);
  expect_special<I>(-T(0), -inf<T>, singularity, pole_flag);
  expect_rare<D>(-inf<T>, singularity, pole_flag, T(1), -T(0));
  expect_rare<D>(quiet_nan<T>, singularity, invalid_flag, T(0), T(0));

  for (T nan : {quiet_nan<T>, -quiet_nan<T>}) {
    expect_rare<H>(inf<T>, ordinary, 0, nan, -inf<T>);
    expect_rare<H>(inf<T>, ordinary, 0, inf<T>, nan);
    expect_rare<H>(quiet_nan<T>, ordinary, 0, T(1), nan);
  }
  expect_rare<H>(T(0), ordinary, 0, -T(0), -T(0));
  expect_rare<H>(inf<T>, overflow, overflow_flag, largest<T>, -largest<T>);
  expect_rare<H>(largest<T>, ordinary, 0, largest<T>, least<T>);
  const T unit = std::ldexp(T(1), std::numeric_limits<T>::max_exponent - 5);
  expect_rare<H>(29 * unit, ordinary, 0, 20 * unit, 21 * unit);  // the sum of the arguments would overflow
  expect_rare<H>(5 * least<T>, ordinary, 0, 3 * least<T>, -4 * least<T>);
}

template <class C, class R>
void expect_special_cube_roots() {
  using T = scalar_of<C>;
  for (T sign : {T(1), T(-1)}) {
    expect_special<C>(sign * 0, sign * 0, ordinary, 0);
    expect_special<C>(sign * inf<T>, sign * inf<T>, ordinary, 0);
    expect_special<C>(sign * quiet_nan<T>, quiet_nan<T>, ordinary, 0);
    expect_special<R>(sign * 0, sign * inf<T>, singularity, pole_flag);
    expect_special<R>(sign * inf<T>, sign * 0, ordinary, 0);
    expect_special<R>(sign * quiet_nan<T>, quiet_nan<T>, ordinary, 0);
  }
}

TEST(Roots, SpecialResults) {
  expect_special_cube_roots<cbrt_f32, rcbrt_f32>();
  expect_special_cube_roots<cbrt_f64, rcbrt_f64>();
  expect_special_results<rsqrt_f32, inv_f32, div_f32, hypot_f32>();
  expect_special_results<rsqrt_f64, inv_f64, div_f64, hypot_f64>();
  expect_no_negative_arguments<sqrt_f32>();
  for (float x : {0.0f, -0.0f, inf<float>, quiet_nan<float>}) expect_special<sqrt_f32>(x, x, ordinary, 0);
}

// ---- lane tests ----

template <class K>
void expect_positive_normal_taken() {
  using T = scalar_of<K>;
  const T normal = std::numeric_limits<T>::min();
  EXPECT_FALSE(flagged<K>(normal));
  EXPECT_FALSE(flagged<K>(largest<T>));
  EXPECT_TRUE(flagged<K>(std::nextafter(normal, T(0))));
}
template <class K>
bool flagged_pair(scalar_of<K> x, scalar_of<K> y) {
  return sign_mask(as_float(K::special(all(x), all(y), constant_pool<typename K::constants>))) & 8;
}

TEST(Roots, LaneTests) {
  expect_positive_normal_taken<sqrt_f32>();
  expect_positive_normal_taken<sqrt_f32_native>();
  expect_positive_normal_taken<rsqrt_f32>();
  expect_positive_normal_taken<rsqrt_f64>();
  expect_positive_normal_taken<cbrt_f32>();
  expect_positive_normal_taken<cbrt_f64>();
  EXPECT_FALSE(flagged<inv_f32>(least<float>));
  EXPECT_TRUE(flagged<inv_f64>(-least<double>));
  EXPECT_TRUE(flagged<inv_f64>(std::nextafter(std::numeric_limits<double>::min(), 0.0)));
  EXPECT_FALSE(flagged<inv_f64>(std::numeric_limits<double>::min()));

  // The bounds of the sum of squares are 0x1e300000, that is 1.375 x 2^-67, and 0x60a00000, 1.25 x 2^66; 2^-960 and 2^1021.
  const float low = 1.25f * 0x1p-34f, high = 1.125f * 0x1p33f;
  EXPECT_TRUE(flagged_pair<hypot_f32>(low * 0.75f, 0));
  EXPECT_TRUE(flagged_pair<hypot_f32>(0, 3e-11f));
  EXPECT_FALSE(flagged_pair<hypot_f32>(low, low * 0.875f));
  EXPECT_FALSE(flagged_pair<hypot_f32>(high * 0.5f, high * 0.75f));
  EXPECT_TRUE(flagged_pair<hypot_f32>(high, high));
  EXPECT_TRUE(flagged_pair<hypot_f64>(0x1.fp-481, 0));
  EXPECT_FALSE(flagged_pair<hypot_f64>(0, -0x1p-480));
  EXPECT_FALSE(flagged_pair<hypot_f64>(0x1p510, 0x1.fp509));
  EXPECT_TRUE(flagged_pair<hypot_f64>(0x1.8p510, 0x1.8p510));
  for (double x : {0.0, inf<double>, quiet_nan<double>, -quiet_nan<double>}) EXPECT_TRUE(flagged_pair<hypot_f64>(0, x));
  for (float x : {0.0f, inf<float>, quiet_nan<float>, -quiet_nan<float>}) EXPECT_TRUE(flagged_pair<hypot_f32>(x, 0));
}

// ---- accuracy of the scalar routines ----

template <class K>
void expect_scalar_error(long double f(long double), long double bound = 0.501L) {
  using T = scalar_of<K>;
  std::mt19937_64 random(1);
  for (int i = 0; i < rounds(); i++) {
    T x = least<T> *
          static_cast<T>((random() >> (12 + random() % 50)) % (uint64_t(1) << (std::numeric_limits<T>::digits - 1)) + 1),
      y = 0;
    ASSERT_EQ(K::rare(&x, &y), ordinary);
    ASSERT_LE(error_of(y, f(x)), bound) << x;
  }
}
// Both ends of the range, one rounding also where the result is subnormal.
template <class K>
void expect_scalar_hypot_error() {
  using T = scalar_of<K>;
  std::mt19937_64 random(2);
  const int lowest = std::numeric_limits<T>::min_exponent - std::numeric_limits<T>::digits,
            range = std::numeric_limits<T>::digits;
  int subnormal = 0;
  auto any = [&](int exponent) {
    return std::ldexp(static_cast<T>(1 + static_cast<double>(random() >> 11) * 0x1p-53), exponent);
  };
  for (int i = 0; i < rounds(); i++) {
    const int e = i % 4 == 0 ? std::numeric_limits<T>::max_exponent - 2 - static_cast<int>(random() % 8)
                             : lowest + static_cast<int>(random() % static_cast<uint64_t>(range + 20));
    T x = any(e), y = any(e - static_cast<int>(random() % 30)), z = 0;
    ASSERT_TRUE(flagged_pair<K>(x, y));
    K::rare(&x, &y, &z);
    const long double exact = sqrtl(static_cast<long double>(x) * x + static_cast<long double>(y) * y);
    ASSERT_LE(error_of(z, exact), 0.502L) << std::hexfloat << x << " " << y;
    subnormal += z < std::numeric_limits<T>::min();
  }
  EXPECT_GT(subnormal, rounds() / 10);
}

TEST(Roots, ScalarRoutines) {
  expect_scalar_error<sqrt_f32>(sqrtl);
  expect_scalar_error<rsqrt_f32>(reciprocal_root);
  expect_scalar_error<rsqrt_f64>(reciprocal_root);
  expect_scalar_error<cbrt_f32>(cbrtl, cbrt_f32::max_ulp);
  expect_scalar_error<rcbrt_f32>(reciprocal_cube_root, rcbrt_f32::max_ulp);
  expect_scalar_error<cbrt_f64>(cbrtl, cbrt_f64::max_ulp);
  expect_scalar_error<rcbrt_f64>(reciprocal_cube_root, rcbrt_f64::max_ulp);
  expect_scalar_hypot_error<hypot_f32>();
  expect_scalar_hypot_error<hypot_f64>();
}

// ---- cube roots: the ends of the intervals of the tables, and the middles, where the root is that of the table ----

template <class K, class Function>
void for_each_end_and_middle(Function f) {
  using T = scalar_of<K>;
  const int fraction_bits = std::numeric_limits<T>::digits - 1;
  for (int exponent = std::numeric_limits<T>::min_exponent - 1; exponent < std::numeric_limits<T>::max_exponent; exponent++)
    for (int i = 0; i <= 64; i++)
      for (int units = -2; units <= 2; units++) {
        const T x = std::ldexp(T(1 + i / 64.0) + std::ldexp(T(units), -fraction_bits), exponent);
        if (x >= std::numeric_limits<T>::min() && x <= largest<T>) f(x);
      }
}
template <class K>
void expect_cube_roots(long double f(long double)) {
  for_each_end_and_middle<K>([&](auto x) {
    const auto y = path_of<K>(x), z = path_of<K>(-x);
    ASSERT_LE(error_of(y, f(x)), K::max_ulp) << std::hexfloat << x;
    ASSERT_EQ(bits_of(z), bits_of(-y)) << std::hexfloat << x;
  });
}

TEST(Roots, CubeRootsAtEndsOfIntervals) {
  expect_cube_roots<cbrt_f32>(cbrtl);
  expect_cube_roots<rcbrt_f32>(reciprocal_cube_root);
  expect_cube_roots<cbrt_f64>(cbrtl);
  expect_cube_roots<rcbrt_f64>(reciprocal_cube_root);
  expect_cube_roots<cbrt_f32_native>(cbrtl);
  expect_cube_roots<rcbrt_f32_native>(reciprocal_cube_root);
  expect_cube_roots<cbrt_f64_native>(cbrtl);
  expect_cube_roots<rcbrt_f64_native>(reciprocal_cube_root);
}

// Flagged lanes take the path with the others, too: whatever a lane holds, the row that it picks exists.
TEST(Roots, RowsOfTheTableExistForEveryExponent) {
  const auto& f = constant_pool<cbrt_f32_constants>;
  const auto& d = constant_pool<cbrt_f64_constants>;
  for (int biased = 0; biased < 2048; biased++) {
    const i32x4 field = {_mm_set1_epi32(biased)};
    for (int type = 0; type < (biased < 256 ? 2 : 1); type++) {
      const auto [third, rem] = type ? divide_exponent_by_three(field, f) : divide_exponent_by_three(field, d);
      const int moved = biased + 2 * (type ? 127 : 1023);
      EXPECT_EQ(extract<0>(third), static_cast<uint32_t>(moved / 3));
      EXPECT_EQ(extract<2>(rem), static_cast<uint32_t>(moved % 3));
    }
  }
}

// The quotient -1/c of the float kernels, where a table would have the number that is nearest: both ends.
TEST(Roots, ReciprocalsOfMiddles) {
  const auto& k = constant_pool<cbrt_f32_constants>;
  auto bits = [&](float minus_c) { return extract<0>(as_int(f32x4(k.one) / all(minus_c))); };
  EXPECT_EQ(bits(-1 - 1 / 64.0f), 0xbf7c0fc1);
  EXPECT_EQ(bits(-2 + 1 / 64.0f), 0xbf010204);
}

// ---- estimates of other processors ----

template <class K>
void expect_error(long double f(long double)) {
  using T = scalar_of<K>;
  std::mt19937_64 random(3);
  for (int i = 0; i < rounds(); i++) {
    T x = static_cast<T>(std::ldexp(1 + static_cast<double>(random() >> 11) * 0x1p-53, static_cast<int>(random() % 250) - 125));
    ASSERT_LE(error_of(path_of<K>(x), f(x)), K::max_ulp) << std::hexfloat << x;
  }
}
template <class K>
void expect_hypot_error() {
  std::mt19937_64 random(4);
  for (int i = 0; i < rounds(); i++) {
    auto any = [&] { return static_cast<float>(static_cast<double>(random() >> 11) * 0x1p-53); };
    const float x = any(), y = std::ldexp(any(), static_cast<int>(random() % 12));
    const f32x4 z = K::path(all(x), all(y), constant_pool<typename K::constants>);
    const long double exact = sqrtl(static_cast<long double>(x) * x + static_cast<long double>(y) * y);
    ASSERT_LE(error_of(_mm_cvtss_f32(z.v), exact), K::max_ulp) << std::hexfloat << x << " " << y;
  }
}
template <class Estimate>
void expect_errors() {
  expect_error<sqrt_f32_with<Estimate>>(sqrtl);
  expect_error<sqrt_f32_native_with<Estimate>>(sqrtl);
  expect_error<rsqrt_f32_with<Estimate>>(reciprocal_root);
  expect_error<rsqrt_f64_with<Estimate>>(reciprocal_root);
  expect_error<rsqrt_f64_native_with<Estimate>>(reciprocal_root);
  expect_hypot_error<hypot_f32_with<Estimate>>();
  expect_hypot_error<hypot_f32_native_with<Estimate>>();
}
double inverse_root(double x) { return 1 / std::sqrt(x); }

TEST(Roots, ErrorsHoldWithOtherProcessorsEstimates) {
  expect_errors<hardware_reciprocal_sqrt>();
  expect_errors<exact_estimate<inverse_root>>();
  expect_errors<twelve_bits<inverse_root>>();
  expect_errors<table_of_2048<inverse_root>>();
  expect_errors<off_everywhere<inverse_root, 1>>();
  expect_errors<off_everywhere<inverse_root, -1>>();
}

}  // namespace

// Powers: logarithms and exponentials in two parts, which no entry point shows; statuses and flags of the scalar routines; exact
// and halfway results; results at both ends of the range and lanes on both sides of the limits of the vector paths.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "explog/pow.h"
#include "explog/pown.h"
#include "explog/powr.h"
#include "explog/rootn.h"
#include "tests/kernel_calls.h"
#include "tests/lanes.h"
#include "tests/mpfr_error.h"

using namespace vorx;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN();

int samples(int n) { return quick() ? n / 10 : n; }

// |head + tail - f(x)| relative to f(x).
double distance_of_parts(mpfr_function f, double x, double head, double tail) {
  mpfr_t y;
  mpfr_init2(y, 200);
  mpfr_set_d(y, x, MPFR_RNDN);
  f(y, y, MPFR_RNDN);
  const double exact = mpfr_get_d(y, MPFR_RNDN);
  mpfr_sub_d(y, y, head, MPFR_RNDN);
  mpfr_sub_d(y, y, tail, MPFR_RNDN);
  const double distance = std::fabs(mpfr_get_d(y, MPFR_RNDN) / exact);
  mpfr_clear(y);
  return distance;
}

TEST(Powers, LogarithmInParts) {
  std::mt19937_64 random(1);
  for (int i = 0; i < samples(200000); i++) {
    double x = from_bits(random() >> 1);
    if (i % 4 == 1) x = 1 + std::ldexp(static_cast<double>(random()) - 0x1p63, -64 - i % 53);
    if (i % 4 == 2) x = from_bits(random() >> 12 >> i % 40);
    if (i % 4 == 3) x = from_bits((random() & 0xff) + (0x3fe0000000000000 + (random() & 0xff) * 0x0000100000000000) - 128);
    if (!(x > 0 && x < infinity) || x == 1) continue;
    auto [head, tail] = ln_in_parts_of_lane(x);
    ASSERT_LT(distance_of_parts(mpfr_log, x, head, tail), 0x1p-67) << x;
  }
  for (double x : {0.9942, 0.99420678, 1.00390624, 0.998046874}) {
    auto [head, tail] = ln_in_parts_of_lane(x);
    EXPECT_LT(distance_of_parts(mpfr_log, x, head, tail), 0x1p-67) << x;
  }
}

TEST(Powers, ExponentialOfParts) {
  std::mt19937_64 random(2);
  for (int i = 0; i < samples(200000); i++) {
    const double x = (static_cast<double>(random()) - 0x1p63) * 0x1p-54 * 1.38 / (1 << i % 16);  // up to 706
    const double tail = x * 0x1p-24 * (static_cast<double>(random() >> 11) * 0x1p-53 - 0.5);
    f64x2 y = exp_of_parts_normal({all(x), all(tail)}, constant_pool<exp_of_parts_constants>);
    mpfr_t sum, z;
    mpfr_inits2(160, sum, z, nullptr);
    mpfr_set_d(sum, x, MPFR_RNDN);
    mpfr_add_d(sum, sum, tail, MPFR_RNDN);
    mpfr_exp(z, sum, MPFR_RNDN);
    const long exponent = mpfr_get_exp(z);
    mpfr_sub_d(z, z, y.v[0], MPFR_RNDN);
    mpfr_mul_2si(z, z, 53 - exponent, MPFR_RNDN);
    const double ulp = std::fabs(mpfr_get_d(z, MPFR_RNDN));
    mpfr_clears(sum, z, nullptr);
    ASSERT_LT(ulp, 0.508) << x << " + " << tail;
  }
}

// ---- one lane, as an entry point takes it ----

template <class K>
scalar_of<K> lane_of(scalar_of<K> x, auto y) {
  using V = typename K::type::vector;
  auto second = [&] {
    if constexpr (std::is_integral_v<decltype(y)>)
      return i32x4{_mm_set1_epi32(y)};
    else
      return all(static_cast<scalar_of<K>>(y));
  }();
  const auto& k = constant_pool<typename K::constants>;
  auto flags = [](i32x4 lanes) { return (sign_mask(as_float(lanes)) & 8) != 0; };
  scalar_of<K> result;
  auto argument = static_cast<std::conditional_t<std::is_integral_v<decltype(y)>, int32_t, scalar_of<K>>>(y);
  if (flags(K::special(all(x), second, k))) return K::rare(&x, &argument, &result), result;
  V v;
  if constexpr (has_large_path<K>)
    v = flags(K::large(all(x), second, k)) ? K::large_path(all(x), second) : K::path(all(x), second, k);
  else
    v = K::path(all(x), second, k);
  std::memcpy(&result, &v, sizeof result);
  return result;
}

template <class K>
void expect_status(scalar_of<K> x, auto y, int status, uint32_t flags) {
  SCOPED_TRACE(std::to_string(x) + ", " + std::to_string(y));
  scalar_of<K> result;
  const outcome seen = observe([&] { return K::rare(&x, &y, &result); });
  EXPECT_EQ(seen.status, status);
  EXPECT_EQ(seen.flags & (invalid_flag | pole_flag), flags);
}
template <class Pow, class Powr, class Pown, class Rootn>
void expect_statuses() {
  using T = scalar_of<Pow>;
  const T inf = static_cast<T>(infinity), quiet = static_cast<T>(nan), signalling = std::numeric_limits<T>::signaling_NaN();
  expect_status<Pow>(T(1), quiet, ordinary, 0);
  expect_status<Pow>(T(1), signalling, ordinary, invalid_flag);
  expect_status<Pow>(signalling, T(0), ordinary, invalid_flag);
  expect_status<Pow>(T(-0.0), T(-3), domain_error, pole_flag);
  expect_status<Pow>(T(0), T(3), ordinary, 0);
  expect_status<Pow>(T(-2), T(0.5), domain_error, invalid_flag);
  expect_status<Pow>(T(-1), inf, ordinary, 0);
  expect_status<Pow>(-inf, T(-3), ordinary, 0);
  expect_status<Powr>(T(-2), T(2), domain_error, invalid_flag);
  expect_status<Powr>(T(1), inf, domain_error, invalid_flag);
  expect_status<Powr>(T(0), T(-1), singularity, pole_flag);
  expect_status<Pown>(T(-0.0), -3, domain_error, pole_flag);
  expect_status<Pown>(quiet, 0, ordinary, 0);
  expect_status<Rootn>(T(-8), 2, domain_error, invalid_flag);
  expect_status<Rootn>(T(8), 0, domain_error, invalid_flag);
  expect_status<Rootn>(T(-0.0), -3, singularity, pole_flag);
}
TEST(Powers, Statuses) {
  expect_statuses<pow_f32, powr_f32, pown_f32, rootn_f32>();
  expect_statuses<pow_f64, powr_f64, pown_f64, rootn_f64>();
}

// Which exponents are odd: up to where all numbers are even.
TEST(Powers, SignOfNegativeBase) {
  for (float y : {3.0f, 8388607.0f, 16777215.0f}) EXPECT_EQ(lane_of<pow_f32>(-1, y), -1) << y;
  for (float y : {2.0f, 8388608.0f, 16777216.0f, 1e30f}) EXPECT_EQ(lane_of<pow_f32>(-1, y), 1) << y;
  for (float y : {0.5f, 4194303.5f, 8388606.5f}) EXPECT_TRUE(std::isnan(lane_of<pow_f32>(-1, y))) << y;
  for (double y : {3.0, 4503599627370497.0, 9007199254740991.0}) EXPECT_EQ(lane_of<pow_f64>(-1, y), -1) << y;
  for (double y : {2.0, 4503599627370496.0, 9007199254740992.0, 1e300}) EXPECT_EQ(lane_of<pow_f64>(-1, y), 1) << y;
  for (double y : {0.5, 2251799813685247.5, 4503599627370494.5}) EXPECT_TRUE(std::isnan(lane_of<pow_f64>(-1, y))) << y;
  EXPECT_EQ(lane_of<pown_f64>(-1, 2147483647), -1);
  EXPECT_EQ(lane_of<pown_f64>(-1, -2147483647 - 1), 1);
  EXPECT_EQ(lane_of<pown_f32>(-1, 2147483647), -1);
  EXPECT_EQ(lane_of<rootn_f32>(-1, -2147483647), -1);
}

// Where the exact result is a number of the type, and where it is halfway between zero and the smallest one.
TEST(Powers, ExactResults) {
  std::mt19937_64 random(3);
  for (int i = 0; i < samples(20000); i++) {
    const int n = 1 + i % 7;
    const double x = std::ldexp(static_cast<double>((random() >> (64 - 52 / n)) | 1), -(i % 30));
    double power = 1;
    for (int j = 0; j < n; j++) power *= x;
    ASSERT_EQ(lane_of<pow_f64>(x, n * 1.0), power) << x << " " << n;
    ASSERT_EQ(lane_of<pown_f64>(-x, n), n % 2 ? -power : power) << x << " " << n;
    ASSERT_EQ(lane_of<rootn_f64>(power, n), x) << power << " " << n;
    ASSERT_EQ(lane_of<rootn_f32>(static_cast<float>(std::ldexp(1.0, n * (i % 16))), n), std::ldexp(1.0, i % 16)) << n;
  }
  for (int n = -1074; n <= 1023; n++) {
    ASSERT_EQ(lane_of<pow_f64>(2.0, n * 1.0), std::ldexp(1.0, n)) << n;
    ASSERT_EQ(lane_of<pown_f64>(2.0, n), std::ldexp(1.0, n)) << n;
    ASSERT_EQ(lane_of<pow_f64>(0.25, n * -0.5), std::ldexp(1.0, n)) << n;
    const double x = std::ldexp(1.0, n);
    ASSERT_EQ(lane_of<rootn_f64>(x, 1), x) << n;
    if (n > -1024) ASSERT_EQ(lane_of<rootn_f64>(x, -1), std::ldexp(1.0, -n)) << n;
    if (n >= -149 && n < 128 && std::abs(n) > 94) ASSERT_EQ(lane_of<pow_f32>(2.0f, n * 1.0f), std::ldexp(1.0f, n)) << n;
  }
  EXPECT_EQ(bits_of(lane_of<pow_f64>(2.0, -1075.0)), 0u);
  EXPECT_EQ(bits_of(lane_of<pow_f64>(std::nextafter(2.0, 1.0), -1075.0)), 1u);
  EXPECT_EQ(bits_of(lane_of<pow_f32>(2.0f, -150.0f)), 0u);
  EXPECT_EQ(bits_of(lane_of<pown_f32>(std::nextafter(-2.0f, 1.0f), -149)), 0x80000001u);
}

// ---- both ends of the range ----

template <class K>
double ulp_of_power(scalar_of<K> x, scalar_of<K> y) {
  using T = scalar_of<K>;
  const T result = lane_of<K>(x, y);
  mpfr_t z, w;
  mpfr_inits2(160, z, w, nullptr);
  mpfr_set_d(z, x, MPFR_RNDN);
  mpfr_set_d(w, y, MPFR_RNDN);
  mpfr_pow(z, z, w, MPFR_RNDN);
  constexpr int digits = std::numeric_limits<T>::digits, lowest = std::numeric_limits<T>::min_exponent;
  const long exponent = std::max<long>(mpfr_get_exp(z), lowest);
  // An infinity stands for the next power of two.
  if (std::isinf(result))
    mpfr_set_ui_2exp(w, 1, std::numeric_limits<T>::max_exponent, MPFR_RNDN);
  else
    mpfr_set_d(w, result, MPFR_RNDN);
  mpfr_sub(z, z, w, MPFR_RNDN);
  mpfr_mul_2si(z, z, digits - exponent, MPFR_RNDN);
  const double ulp = std::fabs(mpfr_get_d(z, MPFR_RNDN));
  mpfr_clears(z, w, nullptr);
  return std::isinf(result) && ulp < 1 ? 0 : ulp;
}

// log2 of the result from `low` to `high`, x anywhere and close to 1.
template <class K>
double largest_error(double low, double high) {
  using T = scalar_of<K>;
  std::mt19937_64 random(4);
  double largest = 0;
  for (int i = 0; i < samples(40000); i++) {
    const double u = static_cast<double>(random() >> 11) * 0x1p-53;
    auto x = static_cast<T>(i % 2 ? std::exp2(u * 20 - 10) : 1 + (u - 0.5) * std::exp2(-(i % 20)));
    if (x == 1) continue;
    auto y =
        static_cast<T>((low + (high - low) * static_cast<double>(random() >> 11) * 0x1p-53) / std::log2(static_cast<double>(x)));
    largest = std::max(largest, ulp_of_power<K>(x, y));
  }
  return largest;
}

TEST(Powers, EndsOfTheRange) {
  EXPECT_LT(largest_error<pow_f32>(127, 128), 0.51);
  EXPECT_LT(largest_error<pow_f32>(-127, -125), 0.51);
  EXPECT_LT(largest_error<pow_f32>(-151, -126), 0.51);
  EXPECT_LT(largest_error<pow_f64>(1023, 1024), 0.56);
  EXPECT_LT(largest_error<pow_f64>(-1023, -1021), 0.56);
  EXPECT_LT(largest_error<pow_f64>(-1076, -1022), 0.56);
  EXPECT_LT(largest_error<pow_f64>(-0x1p-40, 0x1p-40), 0.51);  // results next to 1
}

// The lane test of float pown is coarser than its path: a lane has the same bits on both sides of it.
TEST(Powers, LanesBesideALargeLane) {
  const auto& k = constant_pool<pown_f32_constants>;
  std::mt19937_64 random(5);
  int on_path = 0;
  for (int i = 0; i < samples(40000); i++) {
    const auto n = static_cast<int32_t>(random() >> 32) >> (i % 20 + 12);
    const float u = static_cast<float>(random() >> 40) * 0x1p-24f - 0.5f;
    const float x = (i % 2 ? std::exp2(u * 180 / static_cast<float>(n == 0 ? 1 : n)) : 1 + std::ldexp(u, -(i % 22)));
    const f32x4 xs = all(i % 3 ? x : -x);
    const i32x4 ns = {_mm_set1_epi32(n)};
    if (sign_mask(as_float(pown_f32::large(xs, ns, k))) != 0) continue;
    on_path++;
    ASSERT_EQ(bits_of(_mm_cvtss_f32(pown_f32::path(xs, ns, k).v)), bits_of(_mm_cvtss_f32(pown_f32::large_path(xs, ns).v)))
        << x << " " << n;
  }
  EXPECT_GT(on_path, samples(20000));
  // The path makes 1 of everything to the power 0, and takes no other power of what is no normal number.
  for (float x : {0.0f, -0.0f, 0x1p-149f, -0x1.fffffcp-127f, 0x1.fffffep127f, std::numeric_limits<float>::infinity(),
                  static_cast<float>(nan)})
    for (int32_t n : {0, 1, -1, 4096, -4097, std::numeric_limits<int32_t>::min()}) {
      const f32x4 xs = all(x);
      const i32x4 ns = {_mm_set1_epi32(n)};
      EXPECT_EQ(sign_mask(as_float(pown_f32::large(xs, ns, k))) == 0, n == 0) << x << " " << n;
      if (n == 0) EXPECT_EQ(_mm_cvtss_f32(pown_f32::path(xs, ns, k).v), 1) << x;
      const f64x2 xd = all(static_cast<double>(x) * (std::fabs(x) < 1 ? 0x1p-924 : 1));
      const bool flagged_f64 = sign_mask(as_float(pown_f64::special(xd, ns, constant_pool<pown_f64_constants>))) != 0;
      if (!(std::fabs(x) > 1 && std::isfinite(x))) EXPECT_EQ(flagged_f64, n != 0) << x << " " << n;
    }
}

}  // namespace

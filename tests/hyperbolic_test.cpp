// Hyperbolic functions: which lanes leave the path, what the scalar routines make of them, symmetry, and the special results that
// the native kernels keep.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "special/cosh.h"
#include "special/sinh.h"
#include "special/tanh.h"
#include "tests/hyperbolic_kernels.h"

using namespace vorx;

namespace {

void for_each_odd_kernel(auto f) {
  for_each_kernel<sinh_f32, sinh_f32_native, sinh_f64, sinh_f64_native, tanh_f32, tanh_f32_native, tanh_f64, tanh_f64_native>(f);
}
void for_each_even_kernel(auto f) { for_each_kernel<cosh_f32, cosh_f32_native, cosh_f64, cosh_f64_native>(f); }

TEST(Hyperbolic, LaneTests) {
  const float limit = scalar(0x42aeac4e, 87.3365326f);
  EXPECT_FALSE(flagged<sinh_f32>(limit));
  EXPECT_TRUE(flagged<sinh_f32>(std::nextafter(limit, 90.0f)));
  EXPECT_TRUE(flagged<cosh_f32>(limit));  // its test includes the limit
  EXPECT_FALSE(flagged<cosh_f32>(std::nextafter(limit, 0.0f)));
  EXPECT_FALSE(flagged<tanh_f32>(from_bits(0x7f07ffffu)));
  EXPECT_TRUE(flagged<tanh_f32>(from_bits(0x7f080000u)));
  for (float x : {inf<float>, -inf<float>, quiet_nan<float>, -quiet_nan<float>})
    EXPECT_TRUE(flagged<sinh_f32>(x) && flagged<cosh_f32>(x) && flagged<tanh_f32>(x)) << x;
  for (double x : {708.5, -708.5, inf<double>, -inf<double>, quiet_nan<double>, -quiet_nan<double>})
    EXPECT_TRUE(flagged<sinh_f64>(x) && flagged<cosh_f64>(x)) << x;
}

// f(-x) = -f(x) or f(x), bit for bit; the sign of zero is part of it.
template <class K>
void expect_symmetry(bool odd) {
  using T = scalar_of<K>;
  std::mt19937_64 random(1);
  for (int i = 0; i < 20000; i++) {
    T x = from_bits(static_cast<decltype(bits_of(T()))>(random()));
    if (i % 2) x = static_cast<T>(std::ldexp(static_cast<double>(random() % 1000000), static_cast<int>(random() % 40) - 50));
    if (x != x) continue;
    ASSERT_EQ(bits_of(result_of<K>(-x)), bits_of(odd ? -result_of<K>(x) : result_of<K>(x))) << x;
  }
}
TEST(Hyperbolic, Symmetry) {
  for_each_odd_kernel([]<class K>(std::type_identity<K>) { expect_symmetry<K>(true); });
  for_each_even_kernel([]<class K>(std::type_identity<K>) { expect_symmetry<K>(false); });
}

// Tiny numbers are their own sine and tangent, accurately; and 1 is the cosine of zero, natively too.
TEST(Hyperbolic, NextToZero) {
  auto expect_itself = []<class K>(std::type_identity<K>) {
    using T = scalar_of<K>;
    for (T x : {T(0), std::numeric_limits<T>::denorm_min(), std::numeric_limits<T>::min(),
                std::ldexp(T(1), sizeof(T) == 4 ? -20 : -30)})
      EXPECT_EQ(bits_of(result_of<K>(x)), bits_of(x)) << x;
  };
  for_each_kernel<sinh_f32, tanh_f32, sinh_f64, tanh_f64>(expect_itself);
  for_each_even_kernel([]<class K>(std::type_identity<K>) {
    using T = scalar_of<K>;
    for (T x : {T(0), std::numeric_limits<T>::denorm_min(), T(1e-10)}) EXPECT_EQ(result_of<K>(x), 1);
  });
}

// Above the overflow of e^x, up to their own overflow, which comes at the last argument with a finite result.
template <class Sinh, class Cosh>
void expect_upper_end(scalar_of<Sinh> from, scalar_of<Sinh> last) {
  using T = scalar_of<Sinh>;
  std::mt19937_64 random(2);
  for (int i = 0; i < 20000; i++) {
    T x = i == 0 ? last : from + (last - from) * static_cast<T>(static_cast<double>(random() >> 11) * 0x1p-53);
    ASSERT_LE(error_in_ulp(result_of<Sinh>(x), sinhl(x)), 0.52L) << x;
    ASSERT_LE(error_in_ulp(result_of<Cosh>(x), coshl(x)), 0.52L) << x;
  }
  const T beyond = std::nextafter(last, inf<T>);
  for (T x : {beyond, T(2 * beyond), std::numeric_limits<T>::max(), inf<T>}) {
    EXPECT_EQ(result_of<Sinh>(x), inf<T>) << x;
    EXPECT_EQ(result_of<Cosh>(x), inf<T>) << x;
  }
}
TEST(Hyperbolic, UpperEndOfTheRange) {
  expect_upper_end<sinh_f32, cosh_f32>(87.4f, 89.415985f);
  expect_upper_end<sinh_f64, cosh_f64>(708.1, scalar(0x408633ce8fb9f87d, 710.4758600739439));
}

TEST(Hyperbolic, NativeSpecialResults) {
  auto expect_growth = []<class K>(std::type_identity<K>) {
    using T = scalar_of<K>;
    const T end = sizeof(T) == 4 ? T(89.416) : T(710.476);
    for (T x : {end, T(2 * end), T(1000 * end), std::numeric_limits<T>::max(), inf<T>}) EXPECT_EQ(path_of<K>(x), inf<T>) << x;
    const T below = sizeof(T) == 4 ? T(89.41) : T(710.47);
    EXPECT_TRUE(std::isfinite(path_of<K>(below)));
    EXPECT_TRUE(std::isnan(path_of<K>(quiet_nan<T>)));
  };
  for_each_kernel<sinh_f32_native, cosh_f32_native, sinh_f64_native, cosh_f64_native>(expect_growth);
  auto expect_one = []<class K>(std::type_identity<K>) {
    using T = scalar_of<K>;
    for (T x : {T(20), T(100), std::numeric_limits<T>::max(), inf<T>}) EXPECT_EQ(result_of<K>(x), 1) << x;
    for (T x = T(0.001); x < 30; x *= T(1.0001)) ASSERT_LE(result_of<K>(x), 1) << x;
    EXPECT_TRUE(std::isnan(result_of<K>(quiet_nan<T>)));
  };
  for_each_kernel<tanh_f32, tanh_f32_native, tanh_f64, tanh_f64_native>(expect_one);
  EXPECT_EQ(path_of<tanh_f32>(10.0f), 1.0f);
  EXPECT_LT(path_of<tanh_f32_native>(5.05f), 1.0f);
}

// Statuses, and the flags invalid, division by zero and overflow.
template <class K>
void expect_rare(scalar_of<K> x, int status, uint32_t flags) {
  scalar_of<K> y;
  const outcome seen = observe([&] { return K::rare(&x, &y); });
  EXPECT_EQ(seen.status, status) << x;
  EXPECT_EQ(seen.flags & (invalid_flag | pole_flag | overflow_flag), flags) << x;
}
template <class K>
void expect_rare_growth() {
  using T = scalar_of<K>;
  for (T sign : {T(1), T(-1)}) {
    expect_rare<K>(sign * inf<T>, ordinary, 0);
    expect_rare<K>(sign * std::numeric_limits<T>::max(), overflow, overflow_flag);
    expect_rare<K>(sign * (sizeof(T) == 4 ? T(89) : T(710)), ordinary, 0);
    expect_rare<K>(sign * quiet_nan<T>, ordinary, 0);
  }
}
TEST(Hyperbolic, StatusesAndFlags) {
  expect_rare_growth<sinh_f32>();
  expect_rare_growth<cosh_f32>();
  expect_rare_growth<sinh_f64>();
  expect_rare_growth<cosh_f64>();
  for (float x : {3e38f, inf<float>, -inf<float>, quiet_nan<float>}) expect_rare<tanh_f32>(x, ordinary, 0);
}

}  // namespace

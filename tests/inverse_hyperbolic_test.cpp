// Inverse hyperbolic functions: which lanes leave the path and what becomes of them, symmetry, both ends of the ranges, and
// errors that do not depend on whose reciprocal estimate float atanh starts from.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "special/acosh.h"
#include "special/asinh.h"
#include "special/atanh.h"
#include "tests/hyperbolic_kernels.h"

using namespace vorx;

namespace {

// Result, status and the flags invalid and division by zero of a flagged argument.
template <class K>
void expect_rare(scalar_of<K> x, scalar_of<K> expected, int status, uint32_t flags) {
  SCOPED_TRACE(x);
  ASSERT_TRUE(flagged<K>(x));
  scalar_of<K> y;
  const outcome seen = observe([&] { return K::rare(&x, &y); });
  EXPECT_EQ(seen.status, status);
  EXPECT_EQ(seen.flags & (invalid_flag | pole_flag), flags);
  if (std::isnan(expected))
    EXPECT_TRUE(std::isnan(y)) << y;
  else
    EXPECT_EQ(bits_of(y), bits_of(expected)) << y;
}

TEST(InverseHyperbolic, SpecialResults) {
  for_each_kernel<asinh_f32, asinh_f32_native, asinh_f64, asinh_f64_native>([]<class K>(std::type_identity<K>) {
    using T = scalar_of<K>;
    for (T x : {inf<T>, -inf<T>, quiet_nan<T>}) expect_rare<K>(x, x, ordinary, 0);
  });
  for_each_kernel<acosh_f32, acosh_f32_native, acosh_f64, acosh_f64_native>([]<class K>(std::type_identity<K>) {
    using T = scalar_of<K>;
    expect_rare<K>(inf<T>, inf<T>, ordinary, 0);
    expect_rare<K>(quiet_nan<T>, quiet_nan<T>, ordinary, 0);
    expect_rare<K>(-quiet_nan<T>, quiet_nan<T>, ordinary, 0);
    for (T x : {std::nextafter(T(1), T(0)), T(0), -T(0), std::numeric_limits<T>::denorm_min(), T(-1), T(-100), -inf<T>})
      expect_rare<K>(x, quiet_nan<T>, domain_error, invalid_flag);
    EXPECT_FALSE(flagged<K>(1));
    EXPECT_EQ(bits_of(path_of<K>(1)), 0u);
  });
  for_each_kernel<atanh_f32, atanh_f32::at<4>, atanh_f64>([]<class K>(std::type_identity<K>) {
    using T = scalar_of<K>;
    for (T sign : {T(1), T(-1)}) {
      expect_rare<K>(sign, sign * inf<T>, singularity, pole_flag);
      expect_rare<K>(sign * std::nextafter(T(1), T(2)), quiet_nan<T>, domain_error, invalid_flag);
      expect_rare<K>(sign * inf<T>, quiet_nan<T>, domain_error, invalid_flag);
      expect_rare<K>(sign * quiet_nan<T>, quiet_nan<T>, ordinary, 0);
      EXPECT_FALSE(flagged<K>(sign * std::nextafter(T(1), T(0))));
    }
  });
}

// f(-x) = -f(x) bit for bit; tiny numbers and zeros come back as they are.
TEST(InverseHyperbolic, OddFunctions) {
  for_each_kernel<asinh_f32, asinh_f32_native, asinh_f64, asinh_f64_native, atanh_f32, atanh_f32_native, atanh_f64,
                  atanh_f64_native>([]<class K>(std::type_identity<K>) {
    using T = scalar_of<K>;
    std::mt19937_64 random(1);
    for (int i = 0; i < 20000; i++) {
      T x = static_cast<T>(std::ldexp(static_cast<double>(random() >> 11), -53 - static_cast<int>(random() % 60)));
      ASSERT_EQ(bits_of(result_of<K>(-x)), bits_of(-result_of<K>(x))) << x;
    }
    for (T x : {T(0), -T(0), std::numeric_limits<T>::denorm_min(), std::numeric_limits<T>::min(), T(1e-20)})
      EXPECT_EQ(bits_of(result_of<K>(x)), bits_of(x)) << x;
  });
}

// No square overflows early: up to the largest number, through the path, and through the scalar routine where it takes over.
TEST(InverseHyperbolic, HugeArguments) {
  for_each_kernel<asinh_f32, acosh_f32, asinh_f64, acosh_f64>([]<class K>(std::type_identity<K>) {
    using T = scalar_of<K>;
    std::mt19937_64 random(2);
    const int top = std::numeric_limits<T>::max_exponent;
    for (int i = 0; i < 20000; i++) {
      T x = i == 0 ? std::numeric_limits<T>::max()
                   : static_cast<T>(std::ldexp(1 + static_cast<double>(random() >> 12) * 0x1p-52,
                                               static_cast<int>(random() % (top - 40)) + 39));
      ASSERT_LE(error_in_ulp(result_of<K>(x), acoshl(x)), 0.51L) << x;
    }
  });
  for_each_kernel<asinh_f32_native, acosh_f32_native, asinh_f64_native, acosh_f64_native>([]<class K>(std::type_identity<K>) {
    using T = scalar_of<K>;
    for (T x = T(1e6); x < inf<T>; x *= T(1.7))
      ASSERT_LE(std::abs(result_of<K>(x) / acoshl(x) - 1), sizeof(T) == 4 ? 0x1p-12L : 0x1p-30L) << x;
  });
}

// acosh next to 1 and atanh next to 1, one number after the other.
TEST(InverseHyperbolic, NextToOne) {
  for_each_kernel<acosh_f32, acosh_f64>([]<class K>(std::type_identity<K>) {
    scalar_of<K> x = 1;
    for (int i = 0; i < 2000; i++) {
      x = std::nextafter(x, scalar_of<K>(2));
      ASSERT_LE(error_in_ulp(path_of<K>(x), acoshl(x)), 0.52L) << x;
    }
  });
  for_each_kernel<atanh_f32, atanh_f64>([]<class K>(std::type_identity<K>) {
    scalar_of<K> x = 1;
    for (int i = 0; i < 2000; i++) {
      x = std::nextafter(x, scalar_of<K>(0));
      ASSERT_LE(error_in_ulp(path_of<K>(x), atanhl(x)), K::max_ulp) << x;
    }
  });
  for_each_kernel<acosh_f32_native, acosh_f64_native>([]<class K>(std::type_identity<K>) {
    scalar_of<K> x = 1;
    for (int i = 0; i < 2000; i++) {
      x = std::nextafter(x, scalar_of<K>(2));
      ASSERT_LE(std::abs(path_of<K>(x) / acoshl(x) - 1), sizeof(x) == 4 ? 0x1p-12L : 0x1p-30L) << x;
    }
  });
}

// Estimates of the reciprocal as accurate as can be, and off by what the architecture allows.
template <int units>
struct scaled_reciprocal {
  static f32x4 estimate(f32x4 a) {
    float x[4];
    _mm_storeu_ps(x, a.v);
    for (float& v : x) v = static_cast<float>((1 + units * 1.5 / 4096) / static_cast<double>(v));
    return {_mm_loadu_ps(x)};
  }
};
template <class Reciprocal>
void expect_errors() {
  std::mt19937_64 random(3);
  for (int i = 0; i < 200000; i++) {
    float x = static_cast<float>(static_cast<double>(random() >> 11) * 0x1p-53);
    if (i % 2) x = std::ldexp(x, -static_cast<int>(random() % 8));
    if (!(x > 0) || x == 1) continue;
    ASSERT_LE(error_in_ulp(path_of<atanh_f32_with<Reciprocal>>(x), atanhl(x)), 2.2L) << x;
    ASSERT_LE(std::abs(path_of<atanh_f32_native_with<Reciprocal>>(x) / atanhl(x) - 1), 0x1p-12L) << x;
  }
}
TEST(InverseHyperbolic, ErrorsHoldWithOtherProcessorsEstimates) {
  expect_errors<hardware_reciprocal>();
  expect_errors<scaled_reciprocal<0>>();
  expect_errors<scaled_reciprocal<1>>();
  expect_errors<scaled_reciprocal<-1>>();
}

}  // namespace

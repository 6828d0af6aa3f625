// The exponentials: statuses, flags and accuracy of the scalar routines, which no entry point shows; the ends of the native
// range.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "explog/exp.h"
#include "explog/exp10.h"
#include "explog/exp2.h"
#include "explog/expm1.h"
#include "tests/kernel_calls.h"
#include "tests/lanes.h"
#include "tests/mpfr_error.h"

using namespace vorx;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

// The scalar routine on x; every power but the exact ones raises inexact, which is left out.
template <class K>
auto rare(scalar_of<K> x) {
  struct {
    scalar_of<K> result;
    int status;
    uint32_t flags;
  } o;
  const outcome seen = observe([&] { return K::rare(&x, &o.result); });
  o.status = seen.status;
  o.flags = seen.flags & ~inexact_flag;
  return o;
}

// Infinities, NaN and what is far out, of a base's power; `far` overflows.
template <class K>
void check_special_results(scalar_of<K> far) {
  using T = scalar_of<K>;
  auto bits = [](T x) { return bits_of(x); };
  T inf = std::numeric_limits<T>::infinity();
  auto at_inf = rare<K>(inf), at_minus_inf = rare<K>(-inf), above = rare<K>(far), below = rare<K>(-far);
  EXPECT_EQ(bits(at_inf.result), bits(inf));
  EXPECT_EQ(bits(at_minus_inf.result), bits(0));
  EXPECT_EQ(bits(above.result), bits(inf));
  EXPECT_EQ(bits(below.result), bits(0));
  EXPECT_EQ(at_inf.status, ordinary);
  EXPECT_EQ(at_minus_inf.status, ordinary);
  EXPECT_EQ(above.status, overflow);
  EXPECT_EQ(below.status, underflow);
  EXPECT_EQ(at_inf.flags, 0u);
  EXPECT_EQ(at_minus_inf.flags, 0u);
  EXPECT_EQ(above.flags, overflow_flag);
  EXPECT_EQ(below.flags, underflow_flag);

  auto quiet = rare<K>(std::numeric_limits<T>::quiet_NaN()), signalling = rare<K>(std::numeric_limits<T>::signaling_NaN());
  EXPECT_NE(quiet.result, quiet.result);
  EXPECT_EQ(quiet.flags, 0u);
  EXPECT_NE(signalling.result, signalling.result);
  EXPECT_EQ(signalling.flags, invalid_flag);
  EXPECT_EQ(signalling.status, ordinary);
}

// Random arguments of the routine in [low, high]: error, status and flags.
template <class K>
void check_routine(mpfr_function f, scalar_of<K> low, scalar_of<K> high, double limit) {
  using T = scalar_of<K>;
  std::mt19937_64 random(1);
  std::uniform_real_distribution<T> argument(low, high);
  double worst = 0;
  int checked = 0;
  const int tried = quick() ? 2000 : 20000;
  for (int i = 0; i < tried; i++) {
    T x = argument(random);
    if (!flagged<K>(x)) continue;
    checked++;
    exact_value exact(f, x);
    auto o = rare<K>(x);
    if (exact.overflows<T>()) {
      EXPECT_EQ(o.result, infinity) << x;
      EXPECT_EQ(o.status, overflow) << x;
      EXPECT_EQ(o.flags, overflow_flag) << x;
    } else {
      worst = std::max(worst, exact.ulp_from(o.result));
      EXPECT_EQ(o.status, exact.subnormal<T>() ? underflow : ordinary) << x;
      if (exact.subnormal<T>()) EXPECT_EQ(o.flags, underflow_flag) << x;
    }
  }
  EXPECT_GT(checked, tried / 2);
  EXPECT_LT(worst, limit);
}

// A native power: relative error in the normal range, infinity above, no more than the smallest normal number below.
template <class K>
void check_native(mpfr_function f, scalar_of<K> low, scalar_of<K> high, double limit) {
  using T = scalar_of<K>;
  std::mt19937_64 random(2);
  std::uniform_real_distribution<T> argument(low, high);
  double worst = 0;
  for (int i = 0; i < (quick() ? 2000 : 20000); i++) {
    T x = argument(random);
    worst = std::max(worst, exact_value(f, x).relative_distance(path_of<K>(x)));
  }
  EXPECT_LT(worst, limit);
  for (T x : {high * T(1.001), high * 2, std::numeric_limits<T>::max(), T(infinity)}) EXPECT_EQ(path_of<K>(x), infinity) << x;
  for (T x : {low * T(1.001), low * 2, std::numeric_limits<T>::lowest(), T(-infinity)})
    EXPECT_EQ(bits_of(path_of<K>(x)), bits_of(T(0))) << x;
}

// A NaN stays one whatever its payload, which stands where the integer part would be.
template <class K>
void check_nan_payloads() {
  using T = typename K::type::scalar;
  using I = typename K::type::integer;
  const I quiet_nan = bits_of(std::numeric_limits<T>::quiet_NaN());
  for (I payload = 0; payload < 4096; payload++)
    for (I sign : {I(0), I(1) << (8 * sizeof(I) - 1)}) {
      T y = path_of<K>(std::bit_cast<T>(quiet_nan | sign | payload));
      ASSERT_NE(y, y) << payload;
    }
}

}  // namespace

TEST(Exponentials, ScalarRoutinesAtInfinitiesAndNaN) {
  check_special_results<exp_f32>(1000);
  check_special_results<exp_f64>(1000);
  check_special_results<exp2_f32>(1e30f);
  check_special_results<exp2_f64>(1e300);
  check_special_results<exp10_f32>(1e30f);
  check_special_results<exp10_f64>(1e300);

  auto below = rare<expm1_f32>(-1e30f);
  EXPECT_EQ(below.result, -1);
  EXPECT_EQ(below.status, ordinary);
  EXPECT_EQ(below.flags, 0u);
  EXPECT_EQ(rare<expm1_f32>(-infinity).result, -1);
  EXPECT_EQ(rare<expm1_f32>(1e30f).status, overflow);
  EXPECT_EQ(rare<expm1_f64>(-1e300).result, -1);
  EXPECT_EQ(rare<expm1_f64>(-infinity).result, -1);
  EXPECT_EQ(rare<expm1_f64>(1e300).status, overflow);
  EXPECT_NE(rare<expm1_f32>(NAN).result, rare<expm1_f32>(NAN).result);
  EXPECT_NE(rare<expm1_f64>(NAN).result, rare<expm1_f64>(NAN).result);
}

TEST(Exponentials, ScalarRoutinesIntoSubnormalsAndOverflow) {
  check_routine<exp_f32>(mpfr_exp, -103.97f, -87.34f, 1.75);
  check_routine<exp_f32>(mpfr_exp, 87.34f, 88.8f, 2.65);
  check_routine<exp2_f32>(mpfr_exp2, -149.9f, -126, 0.51);
  check_routine<exp2_f32>(mpfr_exp2, 126, 128.1f, 0.51);
  check_routine<exp10_f32>(mpfr_exp10, -45.15f, -37.9f, 0.51);
  check_routine<exp10_f32>(mpfr_exp10, 37.9f, 38.6f, 0.51);
  check_routine<expm1_f32>(mpfr_expm1, 86.6f, 88.8f, 0.51);
  check_routine<exp_f64>(mpfr_exp, -745.1, -708.3, 0.52);
  check_routine<exp_f64>(mpfr_exp, 708.3, 709.8, 0.52);
  check_routine<exp2_f64>(mpfr_exp2, -1074.9, -1022, 0.52);
  check_routine<exp2_f64>(mpfr_exp2, 1022, 1024.1, 0.52);
  check_routine<exp10_f64>(mpfr_exp10, -323.6, -307.6, 0.52);
  check_routine<exp10_f64>(mpfr_exp10, 307.6, 308.3, 0.52);
  check_routine<expm1_f64>(mpfr_expm1, 707.7, 709.8, 0.52);
}

// Bits that a slip in a table, a coefficient or the order of operations changes: where the vector paths are at their worst.
TEST(Exponentials, WorstArgumentsOfThePaths) {
  auto error = [](auto y, mpfr_function f, double x) { return exact_value(f, x).ulp_from(y); };
  EXPECT_NEAR(error(path_of<exp_f32>(-5.89163828f), mpfr_exp, -5.89163828f), 2.93, 0.005);
  EXPECT_EQ(bits_of(path_of<exp10_f32>(0.0f)), 0x3f800001);  // by the constant term of its linear polynomial
}

TEST(Exponentials, DoubleExpOfTinyArguments) {
  for (double x : {0.0, -0.0, 0x1p-1074, -0x1p-1022, 0x1p-54, -0x1p-54, 0x1.8p-53, -0x1.8p-53, 0x1.fffffffffffffp-53,
                   -0x1.fffffffffffffp-53}) {
    EXPECT_EQ(bits_of(path_of<exp_f64>(x)), bits_of(1 + x)) << x;
    EXPECT_EQ(bits_of(rare<exp_f64>(x).result), bits_of(1 + x)) << x;
  }
}

TEST(Exponentials, NativeRange) {
  check_native<exp2_f32_native>(mpfr_exp2, -126, 128, 0x1p-13);
  check_native<exp10_f32_native>(mpfr_exp10, -37.92f, 38.53f, 0x1p-13);
  check_native<exp_f64_native>(mpfr_exp, -708.39, 709.78, 0x1p-40);
  check_native<exp2_f64_native>(mpfr_exp2, -1022, 1024, 0x1p-40);
  check_native<exp10_f64_native>(mpfr_exp10, -307.65, 308.25, 0x1p-40);
  for (float x : {88.73f, 1000.0f, 3e38f, float(infinity)}) EXPECT_EQ(path_of<expm1_f32_native>(x), infinity) << x;
  for (float x : {-86.7f, -1000.0f, -3e38f, -float(infinity)}) EXPECT_EQ(path_of<expm1_f32_native>(x), -1) << x;
  for (double x : {709.79, 1e4, 1e300, infinity}) EXPECT_EQ(path_of<expm1_f64_native>(x), infinity) << x;
  for (double x : {-707.8, -1e4, -1e300, -infinity}) EXPECT_EQ(path_of<expm1_f64_native>(x), -1) << x;
  check_nan_payloads<exp2_f32_native>();
  check_nan_payloads<exp10_f32_native>();
  check_nan_payloads<expm1_f32_native>();
  check_nan_payloads<exp_f64_native>();
  check_nan_payloads<exp2_f64_native>();
  check_nan_payloads<exp10_f64_native>();
  check_nan_payloads<expm1_f64_native>();
}

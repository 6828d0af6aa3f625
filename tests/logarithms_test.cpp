// Logarithms: special results with their flags and statuses, exact results, the scalar routines' accuracy, and errors that do not
// depend on whose reciprocal estimate picks the rows of the tables. The reference is the x87's 64-bit logarithm: its error is
// below 2^-10 ULP of a double.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "explog/log.h"
#include "explog/log10.h"
#include "explog/log1p.h"
#include "explog/log2.h"
#include "tests/kernel_calls.h"
#include "tests/model_estimates.h"

using namespace vorx;

namespace {

enum function { ln, base2, base10, one_plus };

long double reference(function f, long double x) {
  return f == ln ? logl(x) : f == base2 ? log2l(x) : f == base10 ? log10l(x) : log1pl(x);
}

// The unit in the last place of T at y.
template <class T>
long double unit(long double y) {
  int exponent;
  std::frexp(y, &exponent);
  return std::ldexp(1.0L, std::max(exponent, std::numeric_limits<T>::min_exponent) - std::numeric_limits<T>::digits);
}

// The result, the status where there is one, and the flags invalid and division by zero of a flagged argument.
template <class K>
void expect_special(scalar_of<K> x, scalar_of<K> expected, int status, uint32_t flags) {
  SCOPED_TRACE(x);
  using T = scalar_of<K>;
  ASSERT_TRUE(flagged<K>(x));
  T y;
  const outcome seen = observe([&] {
    if constexpr (has_large_path<K>)
      return y = on_path<K>(x, K::large_path), status;
    else
      return K::rare(&x, &y);
  });
  EXPECT_EQ(seen.status, status);
  EXPECT_EQ(seen.flags & (invalid_flag | pole_flag), flags);
  if (std::isnan(expected))
    EXPECT_TRUE(std::isnan(y)) << y;
  else
    EXPECT_EQ(bits_of(y), bits_of(expected)) << y;
}

template <class K>
void expect_special_results(scalar_of<K> pole_at) {
  using T = scalar_of<K>;
  constexpr T inf = std::numeric_limits<T>::infinity(), nan = std::numeric_limits<T>::quiet_NaN();
  expect_special<K>(pole_at, -inf, singularity, pole_flag);
  if (pole_at == 0) expect_special<K>(-pole_at, -inf, singularity, pole_flag);
  for (T below : {T(-1.5), -std::numeric_limits<T>::max(), -inf}) expect_special<K>(below, nan, domain_error, invalid_flag);
  if (pole_at == 0) expect_special<K>(-std::numeric_limits<T>::denorm_min(), nan, domain_error, invalid_flag);
  expect_special<K>(inf, inf, ordinary, 0);
  expect_special<K>(nan, nan, ordinary, 0);
  expect_special<K>(-nan, nan, ordinary, 0);
}

TEST(Logarithms, SpecialResults) {
  expect_special_results<log_f32>(0);
  expect_special_results<log2_f32>(0);
  expect_special_results<log10_f32>(0);
  expect_special_results<log1p_f32>(-1);
  expect_special_results<log_f64>(0);
  expect_special_results<log2_f64>(0);
  expect_special_results<log2_f64_in_line>(0);
  expect_special_results<log10_f64>(0);
  expect_special_results<log1p_f64>(-1);
}

template <class K>
void expect_taken_between(scalar_of<K> low, scalar_of<K> high) {
  using T = scalar_of<K>;
  constexpr T inf = std::numeric_limits<T>::infinity();
  EXPECT_FALSE(flagged<K>(low));
  EXPECT_FALSE(flagged<K>(high));
  EXPECT_TRUE(flagged<K>(std::nextafter(low, -inf)));
  EXPECT_TRUE(flagged<K>(std::nextafter(high, inf)));
}

TEST(Logarithms, LaneTests) {
  expect_taken_between<log_f32>(0x1p-126f, 0x1.fffffep127f);
  expect_taken_between<log_f64>(0x1p-1022, 0x1.fffffffffffffp1023);
  expect_taken_between<log2_f64>(0x1p-1022, 0x1.fffffffffffffp1023);
  expect_taken_between<log1p_f32>(scalar(0xbf7fffff, -0.99999994f), 0x1p118f);
  expect_taken_between<log1p_f64>(scalar(0xbfefffffffffffff, -0.9999999999999999), from_bits(uint64_t(0x7f3ffffffffff000)));
}

template <class... K>
void expect_zero_at_one() {
  for (uint64_t bits : {uint64_t(bits_of(path_of<K>(1)))...}) EXPECT_EQ(bits, 0u);
}
template <class K>
void expect_small_returned() {
  using T = scalar_of<K>;
  for (T x : {T(0), std::numeric_limits<T>::denorm_min(), std::numeric_limits<T>::min(), T(0x1p-80)})
    for (T y : {x, -x}) EXPECT_EQ(bits_of(path_of<K>(y)), bits_of(y)) << y;
}

TEST(Logarithms, ExactResults) {
  expect_zero_at_one<log_f32, log2_f32, log10_f32, log_f64, log2_f64, log10_f64>();
  expect_zero_at_one<log_f32_native, log2_f32_native, log10_f32_native, log_f64_native, log2_f64_native, log10_f64_native>();
  expect_small_returned<log1p_f32>();
  expect_small_returned<log1p_f64>();
  expect_small_returned<log1p_f32_native>();
  expect_small_returned<log1p_f64_native>();
  for (int n = -1074; n <= 1023; n++) {
    double x = std::ldexp(1.0, n);
    double z = 0;
    EXPECT_EQ(n < -1022 ? (log2_f64::rare(&x, &z), z) : path_of<log2_f64>(x), n);
    auto f = static_cast<float>(x);
    float y = 0;
    if (f == 0 || n > 127) continue;
    if (n < -126)
      EXPECT_EQ(log2_f32::rare(&f, &y), ordinary);
    else
      y = path_of<log2_f32>(f);
    EXPECT_EQ(y, n);
  }
}

// A special lane of two sends both through another path of double log2: the bits of the neighbour stay. At other widths the
// scalar routine gives the same bits.
TEST(Logarithms, PathsOfDoubleLog2Agree) {
  std::mt19937_64 random(1);
  const auto& k = constant_pool<log2_f64_constants>;
  for (int i = 0; i < 100000; i++) {
    double x[2], a[2], b[2];
    do x[0] = from_bits(random() & 0x7fffffffffffffff);
    while (flagged<log2_f64>(x[0]));
    x[1] = from_bits(random() & 0x800fffffffffffff);  // zero, subnormal or negative
    f64x2 v = {_mm_loadu_pd(x)};
    _mm_storeu_pd(a, log2_f64::path(v, k).v);
    _mm_storeu_pd(b, log2_f64_in_line::large_path(v).v);
    ASSERT_EQ(bits_of(a[0]), bits_of(b[0])) << x[0];
    log2_f64::rare(&x[1], &a[1]);
    ASSERT_EQ(bits_of(a[1]), bits_of(b[1])) << x[1];
    if (x[1] > 0) ASSERT_LT(std::abs(b[1] - log2l(x[1])), 0.6L * unit<double>(b[1])) << x[1];
  }
}

template <class K>
void expect_scalar_error(function f, double limit, auto next) {
  std::mt19937_64 random(2);
  for (int i = 0; i < 100000; i++) {
    auto x = next(random()), y = x;
    ASSERT_EQ(K::rare(&x, &y), ordinary);
    long double exact = reference(f, x);
    ASSERT_LE(std::abs(y - exact), limit * unit<decltype(x)>(exact)) << x;
  }
}

TEST(Logarithms, ScalarRoutines) {
  auto subnormal_float = [](uint64_t r) { return from_bits(uint32_t(r % 0x7fffff + 1)); };
  auto any_float = [](uint64_t r) { return from_bits(uint32_t(r % 0x7f7fffff + 1)); };
  for (auto next : {+subnormal_float, +any_float}) {
    expect_scalar_error<log_f32>(ln, 0.51, next);
    expect_scalar_error<log2_f32>(base2, 0.51, next);
    expect_scalar_error<log10_f32>(base10, 0.51, next);
  }
  expect_scalar_error<log1p_f32>(one_plus, 0.51, [](uint64_t r) { return from_bits(uint32_t(0x7a800001 + r % 0x4ffffff)); });
  auto subnormal = [](uint64_t r) { return from_bits((r >> 12 >> (r & 31)) | 1); };
  expect_scalar_error<log_f64>(ln, 0.51, subnormal);
  expect_scalar_error<log10_f64>(base10, 0.51, subnormal);
  expect_scalar_error<log1p_f64>(one_plus, 0.51,
                                 [](uint64_t r) { return from_bits(0x7f3ffffffffff001 + r % 0x00b0000000000ffe); });
}

// ---- reciprocal estimates of other processors ----

double reciprocal(double x) { return 1 / x; }

// Errors in units in the last place of the result, or of `floor` where the result is smaller.
template <class K>
void expect_error(function f, double floor, double bound = K::max_ulp) {
  using T = scalar_of<K>;
  std::mt19937_64 random(3);
  for (int i = 0; i < 100000; i++) {
    double u = static_cast<double>(random() >> 11) * 0x1p-53;
    double close = std::ldexp(1 + u, -2 - static_cast<int>(random() % 14)) * (random() & 1 ? 1 : -1);
    double x = i % 4 == 0 ? std::ldexp(1 + u, static_cast<int>(random() % 200) - 100) : i % 4 == 1 ? 0.5 + 1.5 * u : 1 + close;
    if (f == one_plus) x -= 1;
    auto rounded = static_cast<T>(x);
    if (flagged<K>(rounded)) continue;
    if constexpr (requires { K::domain; })
      if (!(rounded >= K::domain[0])) continue;
    long double exact = reference(f, rounded);
    long double in_units = std::abs(path_of<K>(rounded) - exact) / unit<T>(std::max<long double>(std::abs(exact), floor));
    ASSERT_LE(in_units, bound) << std::hexfloat << rounded;
  }
}
template <class Estimate>
void expect_errors() {
  expect_error<log_f64_with<Estimate>>(ln, 0);
  expect_error<log10_f64_with<Estimate>>(base10, 0);
  expect_error<log1p_f64_with<Estimate>>(one_plus, 0);
  expect_error<log1p_f32_with<Estimate>>(one_plus, 0);
  expect_error<log_f64_native_with<Estimate>>(ln, 0);
  expect_error<log10_f64_native_with<Estimate>>(base10, 0);
  expect_error<log1p_f64_native_with<Estimate>>(one_plus, 0);
}
// Off by the whole bound everywhere: near x = 1 the neighbours of the row that gives 0 are
// picked too early, and what cancels there costs bits of the small results. Elsewhere the claims hold.
template <class Estimate>
void expect_errors_at_the_bound() {
  expect_error<log_f64_with<Estimate>>(ln, 0, 4.3);
  expect_error<log10_f64_with<Estimate>>(base10, 0, 11.3);
  expect_error<log1p_f64_with<Estimate>>(one_plus, 0, 2.3);
  expect_error<log1p_f32_with<Estimate>>(one_plus, 0, 0.8);
  expect_error<log_f64_with<Estimate>>(ln, 0x1p-7);
  expect_error<log10_f64_with<Estimate>>(base10, 0x1p-7);
  expect_error<log1p_f64_with<Estimate>>(one_plus, 0x1p-7);
  expect_error<log1p_f32_with<Estimate>>(one_plus, 0x1p-7);
}

TEST(Logarithms, ErrorsHoldWithOtherProcessorsEstimates) {
  expect_errors<hardware_reciprocal>();
  expect_errors<exact_estimate<reciprocal>>();
  expect_errors<twelve_bits<reciprocal>>();
  expect_errors<table_of_2048<reciprocal>>();
  expect_errors_at_the_bound<off_everywhere<reciprocal, 1>>();
  expect_errors_at_the_bound<off_everywhere<reciprocal, -1>>();
}

}  // namespace

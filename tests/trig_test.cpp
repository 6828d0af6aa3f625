// Sine, cosine and tangent: what is particular to them. One large lane sends its whole vector through the large path; both paths
// must be right for every lane, next to multiples of pi/2 above all.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <random>
#include <sstream>

#include "tests/every_width.h"
#include "tests/kernel_calls.h"
#include "tests/mpfr_error.h"
#include "trig/cos.h"
#include "trig/sin.h"
#include "trig/sincos.h"
#include "trig/tan.h"

using namespace vorx;

namespace {

// The results of an entry point for as many arguments as it has lanes.
template <class T>
std::array<result_lane, 16> run(const entry_point& e, const std::vector<T>& x) {
  std::array<argument_lane, 16> in{};
  std::array<result_lane, 16> out{};
  for (int i = 0; i < e.width; i++) in[i] = {bits_of(x[i])};
  EXPECT_EQ(lane_caller(e)(in.data(), out.data()), "") << e.symbol();
  return out;
}

// A vector of so many lanes that holds x and, last, a huge argument.
template <class T>
std::vector<T> beside_huge(T x, int width) {
  std::vector<T> v(width, x);
  v.back() = static_cast<T>(1e20);
  return v;
}

// What there is to test in each function, once for each of its results.
template <class T>
struct traits {
  const char* name;
  int result;
  mpfr_function exact;
  T threshold;
  double ordinary_bound, large_bound;
};
template <class T>
std::vector<traits<T>> functions() {
  if constexpr (sizeof(T) == 4)
    return {{"sin", 0, mpfr_sin, 10000.0f, sin_f32::max_ulp, 0.55},
            {"cos", 0, mpfr_cos, 10000.0f, cos_f32::max_ulp, 0.55},
            {"tan", 0, mpfr_tan, 8256.0f, tan_f32::max_ulp, 0.6},
            {"sincos", 0, mpfr_sin, 10000.0f, sincos_f32::max_ulp, 0.55},
            {"sincos", 1, mpfr_cos, 10000.0f, sincos_f32::max_ulp, 0.55}};
  else
    return {{"sin", 0, mpfr_sin, 16777216.0, sin_f64::max_ulp, 0.55},
            {"cos", 0, mpfr_cos, 8388608.0, cos_f64::max_ulp, 0.55},
            {"tan", 0, mpfr_tan, 128000.0, tan_f64::max_ulp, 0.6},
            {"sincos", 0, mpfr_sin, 8388608.0, sincos_f64::max_ulp, 0.55},
            {"sincos", 1, mpfr_cos, 8388608.0, sincos_f64::max_ulp, 0.55}};
}

template <class T>
struct Trig : testing::Test {
  static constexpr element type = element_of<T>;
  static constexpr int width = sizeof(T) == 4 ? 4 : 2;
};
using types = testing::Types<float, double>;
TYPED_TEST_SUITE(Trig, types);

// Arguments close to multiples of pi/2: the hardest of every range of exponents, of both signs.
template <class T>
std::vector<T> hard_arguments() {
  std::vector<T> hard;
  std::ifstream file(VORX_TESTS "/hard_trig_arguments.csv");
  for (std::string line; std::getline(file, line);)
    if (line.compare(0, 4, sizeof(T) == 4 ? "f32," : "f64,") == 0) {
      T x = value_of<T>(std::stoull(line.substr(4), nullptr, 16));
      hard.insert(hard.end(), {x, -x});
    }
  return hard;
}

TYPED_TEST(Trig, LargePathNextToMultiplesOfHalfPi) {
  using T = TypeParam;
  std::vector<T> arguments = hard_arguments<T>();
  ASSERT_EQ(arguments.size(), sizeof(T) == 4 ? 32u : 256u);
  std::mt19937_64 random(1);
  for (int i = 0; i < 2000; i++)  // the numbers next to random multiples
    arguments.push_back(static_cast<T>(std::rint(std::ldexp(1.0 + (random() % 4096) / 4096.0, i % 40)) * 1.5707963267948966));
  for (const auto& f : functions<T>()) {
    const entry_point& e = find_entry(f.name, TestFixture::type, TestFixture::width);
    for (T x : arguments) {
      T y = value_of<T>(run(e, beside_huge(x, e.width))[0][f.result]);
      EXPECT_LE(exact_value(f.exact, x).ulp_from(y), f.large_bound) << e.symbol() << " result " << f.result << " of " << x;
    }
  }
}

// The same arguments through both paths.
TYPED_TEST(Trig, BothPathsKeepTheirBounds) {
  using T = TypeParam;
  std::mt19937_64 random(2);
  for (const auto& f : functions<T>()) {
    const entry_point& e = find_entry(f.name, TestFixture::type, TestFixture::width);
    for (int i = 0; i < 3000; i++) {
      T x = static_cast<T>(std::uniform_real_distribution<double>(-f.threshold, f.threshold)(random) / std::ldexp(1.0, i % 40));
      T ordinary = value_of<T>(run(e, std::vector<T>(e.width, x))[0][f.result]);
      T large = value_of<T>(run(e, beside_huge(x, e.width))[0][f.result]);
      EXPECT_LE(exact_value(f.exact, x).ulp_from(ordinary), f.ordinary_bound) << e.symbol() << " of " << x;
      EXPECT_LE(exact_value(f.exact, x).ulp_from(large), f.large_bound) << e.symbol() << " of " << x << " beside a large lane";
    }
  }
}

TYPED_TEST(Trig, LargePathHasRandomArgumentsOfAllSizes) {
  using T = TypeParam;
  std::mt19937_64 random(3);
  for (const auto& f : functions<T>()) {
    const entry_point& e = find_entry(f.name, TestFixture::type, TestFixture::width);
    for (int i = 0; i < 4000; i++) {
      T x = value_of<T>(sizeof(T) == 4 ? random() >> 32 : random());
      if (!std::isfinite(x)) continue;
      T y = value_of<T>(run(e, beside_huge(x, e.width))[0][f.result]);
      EXPECT_LE(exact_value(f.exact, x).ulp_from(y), f.large_bound) << e.symbol() << " of " << x;
    }
  }
}

// The comparison with the threshold is strict, and one lane above it decides for all: a lane whose two paths differ in their last
// bit shows which one was taken.
TYPED_TEST(Trig, OneLaneAboveTheThresholdDecidesForAll) {
  using T = TypeParam;
  const T infinity = std::numeric_limits<T>::infinity(), nan = std::numeric_limits<T>::quiet_NaN();
  for (const auto& f : functions<T>())
    for (int width : {2, 3, 4, 8, 16}) {
      const entry_point& e = find_entry(f.name, TestFixture::type, width);
      T x = 1;
      uint64_t ordinary = 0, large = 0;
      for (int tries = 0; ordinary == large; tries++, x = std::nextafter(x, T(2))) {
        ASSERT_LT(tries, 10000);
        ordinary = run(e, std::vector<T>(width, x))[0][f.result];
        large = run(e, beside_huge(x, width))[0][f.result];
        if (ordinary != large) break;
      }
      auto beside = [&](T other) {
        std::vector<T> v(width, x);
        v.back() = other;
        return run(e, v)[0][f.result];
      };
      EXPECT_EQ(beside(f.threshold), ordinary) << e.symbol();
      EXPECT_EQ(beside(-f.threshold), ordinary) << e.symbol();
      EXPECT_EQ(beside(std::nextafter(f.threshold, infinity)), large) << e.symbol();
      EXPECT_EQ(beside(-std::nextafter(f.threshold, infinity)), large) << e.symbol();
      EXPECT_EQ(beside(infinity), large) << e.symbol();
      EXPECT_EQ(beside(nan), ordinary) << e.symbol();
      EXPECT_EQ(beside(-nan), ordinary) << e.symbol();
    }
}

// Zeros keep their signs, the cosine of zero is one, tiny arguments come back as they are; infinities and NaN give NaN.
TYPED_TEST(Trig, ZerosTinyAndSpecialLanesInBothKindsOfVector) {
  using T = TypeParam;
  const T tiny = std::ldexp(T(1), sizeof(T) == 4 ? -20 : -27), infinity = std::numeric_limits<T>::infinity();
  const T least = std::numeric_limits<T>::denorm_min(), normal = std::numeric_limits<T>::min();
  std::vector<T> unchanged = {T(0), least, normal, tiny * T(0.7), tiny, static_cast<T>(1e-9)};
  if (sizeof(T) == 4) unchanged.push_back(static_cast<T>(1e-7));
  for (const auto& f : functions<T>())
    for (int width : {2, 4, 8, 16}) {
      const entry_point& e = find_entry(f.name, TestFixture::type, width);
      const bool cosine = f.exact == mpfr_cos;
      for (T magnitude : unchanged)
        for (T x : {magnitude, -magnitude}) {
          EXPECT_EQ(run(e, beside_huge(x, width))[0][f.result], bits_of(cosine ? T(1) : x)) << e.symbol() << " of " << x;
          if (magnitude == 0) EXPECT_EQ(run(e, std::vector<T>(width, x))[0][f.result], bits_of(cosine ? T(1) : x)) << e.symbol();
        }
      constexpr const float_format& F = format_of(element_of<T>);
      for (T x : {infinity, -infinity, std::numeric_limits<T>::quiet_NaN(), value_of<T>(F.infinity + 0x123)}) {
        EXPECT_TRUE(F.is_nan(run(e, std::vector<T>(width, x))[0][f.result])) << e.symbol() << " of " << x;
        EXPECT_TRUE(F.is_nan(run(e, beside_huge(x, width))[0][f.result])) << e.symbol() << " of " << x;
      }
      // A NaN keeps its payload on either path.
      EXPECT_EQ(run(e, beside_huge(value_of<T>(F.infinity + 0x123), width))[0][f.result], F.infinity + F.quiet + 0x123);
    }
}

TYPED_TEST(Trig, SincosAndSincosregAreTheSamePairs) {
  using T = TypeParam;
  for (bool native : {false, true})
    for (int width : widths) {
      const entry_point &by_pointer = find_entry("sincos", TestFixture::type, width, native),
                        &in_registers = find_entry("sincosreg", TestFixture::type, width, native);
      auto values = interesting_values<T>(500, 4);
      for (size_t first = 0; first + 16 <= values.size(); first += width) {
        std::vector<T> x;
        for (int i = 0; i < width; i++) x.push_back(value_of<T>(values[first + i]));
        auto a = run(by_pointer, x), b = run(in_registers, x);
        for (int i = 0; i < width; i++) EXPECT_EQ(a[i], b[i]) << by_pointer.symbol() << " of " << x[i];
      }
    }
}

// The rare-case routines: statuses and flags; what is finite is left alone.
template <class K, class T, class... More>
void expect_rare_case(More... more) {
  constexpr const float_format& F = format_of(element_of<T>);
  T results[1 + sizeof...(more)];
  auto rare = [&](uint64_t bits) {
    T x = value_of<T>(bits);
    std::fill(std::begin(results), std::end(results), T(42));
    return observe([&] {
      if constexpr (sizeof...(more) == 0)
        return K::rare(&x, &results[0]);
      else
        return K::rare(&x, &results[0], &results[1]);
    });
  };
  auto expect_results = [&](uint64_t bits) {
    for (T& r : results) EXPECT_EQ(bits_of(r), bits);
  };
  for (uint64_t sign : {uint64_t{0}, F.sign}) {
    EXPECT_EQ(rare(F.infinity | sign), (outcome{domain_error, invalid_flag}));
    expect_results(F.default_nan());
    EXPECT_EQ(rare((F.infinity + 0x123) | sign), (outcome{ordinary, invalid_flag}));  // signalling
    expect_results((F.infinity + F.quiet + 0x123) | sign);
    EXPECT_EQ(rare((F.infinity + F.quiet + 7) | sign), (outcome{ordinary, 0}));
    expect_results((F.infinity + F.quiet + 7) | sign);
    EXPECT_EQ(rare((F.infinity - 1) | sign), (outcome{ordinary, 0}));
    expect_results(bits_of(T(42)));
  }
}
TEST(TrigRareCases, StatusesAndFlags) {
  expect_rare_case<sin_f32, float>();
  expect_rare_case<cos_f32, float>();
  expect_rare_case<tan_f32, float>();
  expect_rare_case<sincos_f32, float>(0);
  expect_rare_case<sin_f64, double>();
  expect_rare_case<cos_f64, double>();
  expect_rare_case<tan_f64, double>();
  expect_rare_case<sincos_f64, double>(0);
}

}  // namespace

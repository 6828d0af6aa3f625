// sinpi, cospi and tanpi: what is particular to them. The reduction is exact, so integers, halves and quarters of every size have
// exact results with definite signs; above a threshold a whole vector takes a step that must change no other lane.
#include <cmath>
#include <limits>

#include "tests/every_width.h"
#include "tests/kernel_calls.h"
#include "tests/mpfr_error.h"
#include "trig/cospi.h"
#include "trig/sinpi.h"
#include "trig/tanpi.h"

using namespace vorx;

namespace {

template <class T>
struct HalfRevolutions : testing::Test {};
using types = testing::Types<float, double>;
TYPED_TEST_SUITE(HalfRevolutions, types);

// Quarter integers in every binade that has any, of both signs: small ones, ends of binades and what lies around their middle.
template <class T>
std::vector<T> quarter_integers() {
  std::vector<T> values;
  for (int i = 0; i < 64; i++) values.push_back(static_cast<T>(i * 0.25));
  for (int e = 3; e < std::numeric_limits<T>::max_exponent - 1; e++) {
    const T unit = std::ldexp(T(1), std::max(-2, e - std::numeric_limits<T>::digits + 1));
    for (T base : {std::ldexp(T(1), e), std::ldexp(T(1.5), e)})
      for (int i = -8; i <= 8; i++) values.push_back(base + static_cast<T>(i) * unit);
  }
  const size_t count = values.size();
  for (size_t i = 0; i < count; i++) values.push_back(-values[i]);
  return values;
}

// Where 4 x is an integer modulo 8, in [0, 8); exactly.
template <class T>
int eighth(T x) {
  return static_cast<int>(std::fmod(std::fmod(x, T(2)) + 2, T(2)) * 4);
}

TYPED_TEST(HalfRevolutions, IntegersAndHalvesOfAllSizes) {
  using T = TypeParam;
  std::vector<lane_case> sines, cosines;
  for (T x : quarter_integers<T>()) {
    const int k = eighth(x);
    if (k % 2 != 0) continue;
    const T sine = k == 2 ? T(1) : k == 6 ? T(-1) : std::copysign(T(0), x), cosine = k == 0 ? T(1) : k == 4 ? T(-1) : T(0);
    sines.push_back({{bits_of(x)}, {bits_of(sine)}});
    cosines.push_back({{bits_of(x)}, {bits_of(cosine)}});
  }
  ASSERT_GT(sines.size(), sizeof(T) == 4 ? 7000u : 60000u);
  run_every_width("sinpi", element_of<T>, sines);
  run_every_width("cospi", element_of<T>, cosines);
}

// Zeros, poles and +-1, with the signs that the neighbours and parity give them.
TYPED_TEST(HalfRevolutions, TangentOfQuartersOfAllSizes) {
  using T = TypeParam;
  constexpr T infinity = std::numeric_limits<T>::infinity();
  std::vector<lane_case> cases;
  for (T x : quarter_integers<T>()) {
    const int k = eighth(x);
    const T zero = k == 0 ? std::copysign(T(0), x) : std::copysign(T(0), -x);
    const T tangent = k % 4 == 0 ? zero : k == 2 ? infinity : k == 6 ? -infinity : k % 4 == 1 ? T(1) : T(-1);
    cases.push_back({{bits_of(x)}, {bits_of(tangent)}});
  }
  run_every_width("tanpi", element_of<T>, cases);
}

// Tiny arguments, in double done by the scalar routine, and those around: pi x in one rounding, subnormal results included.
TYPED_TEST(HalfRevolutions, TangentOfTinyArguments) {
  using T = TypeParam;
  using K = std::conditional_t<sizeof(T) == 4, tanpi_f32, tanpi_f64>;
  std::mt19937_64 random(2);
  int tiny = 0;
  for (int i = 0; i < 20000; i++) {
    const int exponent = std::numeric_limits<T>::min_exponent - 24 + i % 64;
    const T x = static_cast<T>(std::ldexp(static_cast<T>(random() >> 11), exponent - 52));
    T y = path_of<K>(x);
    if constexpr (sizeof(T) == 8)
      if (flagged<K>(x)) {
        EXPECT_EQ(K::rare(&x, &y), ordinary);
        tiny++;
      }
    EXPECT_LE(exact_value(mpfr_tanpi, x).ulp_from(y), K::max_ulp) << x;
  }
  if (sizeof(T) == 8) EXPECT_GT(tiny, 5000);
}

// Both paths of a kernel give the same bits for every lane that needs no step, so that a vector's other lanes decide nothing.
template <class K>
void expect_equal_paths() {
  using T = scalar_of<K>;
  std::mt19937_64 random(1);
  int lanes = 0;
  auto check = [&](T x) {
    if (flagged<K>(x)) return;
    const T ordinary = path_of<K>(x), after_step = on_path<K>(x, [](auto v) { return K::large_path(v); });
    EXPECT_EQ(bits_of(ordinary), bits_of(after_step)) << x;
    lanes++;
  };
  for (T x : quarter_integers<T>())
    for (T y : {x, std::nextafter(x, T(0)), std::nextafter(x, x * 2)}) check(y);
  for (int i = 0; i < 200000; i++) check(value_of<T>(sizeof(T) == 4 ? random() >> 32 : random()));
  for (int i = 0; i < 200000; i++) check(static_cast<T>(std::ldexp(static_cast<double>(random()), -12 - i % 64)));
  EXPECT_GT(lanes, 150000);
}
TEST(HalfRevolutionPaths, TheStepChangesNoOtherLane) {
  expect_equal_paths<sinpi_f32>();
  expect_equal_paths<sinpi_f64>();
  expect_equal_paths<sinpi_f32_native>();
  expect_equal_paths<sinpi_f64_native>();
  expect_equal_paths<cospi_f32>();
  expect_equal_paths<cospi_f64>();
  expect_equal_paths<cospi_f32_native>();
  expect_equal_paths<cospi_f64_native>();
}

// Infinities and NaN: results and statuses.
template <class K>
void expect_rare_case(uint64_t of_infinity, int status_of_infinity) {
  using T = scalar_of<K>;
  constexpr const float_format& F = format_of(element_of<T>);
  for (uint64_t sign : {uint64_t{0}, F.sign}) {
    T result = 42;
    auto rare = [&](uint64_t bits) {
      T x = value_of<T>(bits | sign);
      return observe([&] { return K::rare(&x, &result); });
    };
    const uint32_t flags = status_of_infinity == domain_error ? invalid_flag : 0;
    EXPECT_EQ(rare(F.infinity), (outcome{status_of_infinity, flags}));
    EXPECT_EQ(bits_of(result), of_infinity);
    EXPECT_EQ(rare(F.infinity + F.quiet + 7), (outcome{ordinary, 0}));
    EXPECT_TRUE(F.is_nan(bits_of(result)));
    EXPECT_EQ(rare(F.infinity + 0x123).status, ordinary);
    EXPECT_TRUE(F.is_nan(bits_of(result)) && (bits_of(result) & F.quiet) != 0);
  }
}
TEST(HalfRevolutionRareCases, OnlyTheTangentReportsInfinities) {
  expect_rare_case<sinpi_f32>(0x7fffffff, ordinary);
  expect_rare_case<cospi_f32>(0x7fffffff, ordinary);
  expect_rare_case<sinpi_f64>(0x7fffffffffffffff, ordinary);
  expect_rare_case<cospi_f64>(0x7fffffffffffffff, ordinary);
  expect_rare_case<tanpi_f64>(0xfff8000000000000, domain_error);
}

}  // namespace

// Operators on the vector types against the same on scalars, in every lane of every type. Compiled with -DCALLERS=name.
#include <vorx/vorx.hpp>

#include <cfenv>
#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

#include "tests/callers/headers.h"

namespace {

// What headers_fault says about the vector; also a function that deduces lanes and their type.
template <class T, int N>
const char* name_of(vorx::vec<T, N>) {
  return __PRETTY_FUNCTION__;
}

template <class T>
bool same(T a, T b) {
  return std::memcmp(&a, &b, sizeof a) == 0 || (a != a && b != b);
}

// Numbers of which each pair occurs in some lane; the compiler does not know them.
template <class T>
T number(unsigned i) {
  static volatile unsigned known_at_run_time = 0;
  i += known_at_run_time;
  if constexpr (std::is_floating_point_v<T>) {
    using limits = std::numeric_limits<T>;
    const T numbers[] = {
        T(1.5), T(-2.25), T(0), T(-0.0), limits::infinity(), limits::quiet_NaN(), limits::max(), limits::denorm_min(),
        T(3),   T(0.1)};
    return numbers[i % 10];
  } else {
    const T numbers[] = {3, 1, 7, 100, 12345, 2, std::is_signed_v<T> ? static_cast<T>(-5) : T(5), 3, 9, 77};
    return numbers[i % 10];
  }
}

#define FOR_LANES(GOT, EXPECTED, WHAT)                                       \
  do {                                                                       \
    const auto got = GOT;                                                    \
    for (int i = 0; i < N; i++) {                                            \
      const T x = a[i], y = b[i];                                            \
      (void)x, (void)y;                                                      \
      using lane = vorx::lane_of<std::decay_t<decltype(got)>>;               \
      const lane expected = static_cast<lane>(EXPECTED);                     \
      if (!same<lane>(got[i], expected)) headers_fault(WHAT, name_of(a), i); \
    }                                                                        \
  } while (false)
#define BOTH(OP) FOR_LANES(a OP b, x OP y, "a " #OP " b")
#define SCALARS(OP)                              \
  FOR_LANES(a OP s, x OP s, "a " #OP " scalar"); \
  FOR_LANES(s OP b, s OP y, "scalar " #OP " b")
#define COMPOUND(OP)                                    \
  do {                                                  \
    auto c = a, d = a;                                  \
    c OP## = b;                                         \
    FOR_LANES(c, x OP y, "a " #OP "= b");               \
    FOR_LANES(d OP## = s, x OP s, "a " #OP "= scalar"); \
    FOR_LANES(d, x OP s, "a after " #OP "= scalar");    \
  } while (false)
#define ARITHMETIC(OP) \
  BOTH(OP);            \
  SCALARS(OP);         \
  COMPOUND(OP)
#define COMPARISON(OP)                              \
  FOR_LANES(a OP b, -(x OP y), "a " #OP " b");      \
  FOR_LANES(a OP s, -(x OP s), "a " #OP " scalar"); \
  FOR_LANES(s OP b, -(s OP y), "scalar " #OP " b")

template <class T, int N>
void operators_on(unsigned first, unsigned second) {
  // What the registers carry beyond the last lane is 0 here: a division must not see it.
  vorx::vec<T, N> a{}, b{};
  for (int i = 0; i < N; i++) {
    a[i] = number<T>(first + static_cast<unsigned>(i));
    b[i] = number<T>(second + static_cast<unsigned>(i) * 3);
  }
  const T s = number<T>(first + second);
  ARITHMETIC(+);
  ARITHMETIC(-);
  ARITHMETIC(*);
  ARITHMETIC(/);
  COMPARISON(==);
  COMPARISON(!=);
  COMPARISON(<);
  COMPARISON(<=);
  COMPARISON(>);
  COMPARISON(>=);
  FOR_LANES(-a, -x, "-a");
  if constexpr (std::is_integral_v<T>) {
    ARITHMETIC(%);
    ARITHMETIC(&);
    ARITHMETIC(|);
    ARITHMETIC(^);
    FOR_LANES(~a, ~x, "~a");
    const auto shift = b & 31;
    FOR_LANES(a << shift, x << (y & 31), "a << b");
    FOR_LANES(a >> shift, x >> (y & 31), "a >> b");
    const int bits = static_cast<int>(s & 31);
    auto c = a, d = a;
    FOR_LANES(c <<= bits, x << bits, "a <<= scalar");
    FOR_LANES(d >>= shift, x >> (y & 31), "a >>= b");
    FOR_LANES(a >> bits, x >> bits, "a >> scalar");
  }

  const auto mask = a < b;
  static_assert(std::is_same_v<decltype(a < b), vorx::mask_of<decltype(a)>>);
  FOR_LANES(select(mask, a, b), x < y ? x : y, "select(a < b, a, b)");
  FOR_LANES(select(mask, a, s), x < y ? x : s, "select(a < b, a, scalar)");
  FOR_LANES(select(mask, s, b), x < y ? s : y, "select(a < b, scalar, b)");
  FOR_LANES(select(mask, s, T(1)), x < y ? s : T(1), "select(a < b, scalar, scalar)");
  FOR_LANES(select(~mask & (a == a), a, b), !(x < y) && x == x ? x : y, "select(~(a < b) & (a == a), a, b)");
  bool any_lane = false, all_lanes = true;
  for (int i = 0; i < N; i++) {
    any_lane |= a[i] < b[i];
    all_lanes &= a[i] < b[i];
  }
  if (any(mask) != any_lane) headers_fault("any", name_of(a), 0);
  if (all(mask) != all_lanes) headers_fault("all", name_of(a), 0);
  for (int i = 0; i < N; i++) {  // one lane decides
    vorx::mask_of<decltype(a)> one{}, but_one = ~one;
    one[i] = -1;
    but_one[i] = 0;
    if (!any(one) || all(one) || !any(but_one) || all(but_one) || any(one ^ one) || !all(one | ~one))
      headers_fault("any, all", name_of(a), i);
  }
}

template <class T>
void operators_of() {
  for (unsigned first = 0; first < 10; first++) {
    for (unsigned second = 0; second < 10; second++) {
      operators_on<T, 2>(first, second);
      operators_on<T, 3>(first, second);
      operators_on<T, 4>(first, second);
      operators_on<T, 8>(first, second);
      operators_on<T, 16>(first, second);
    }
  }
}

// A division of finite lanes raises no flag, whatever the registers carry beyond the last lane.
void division_beyond_the_last_lane() {
  vorx::float3 x{{1, 2, 3}}, y{{2, 4, number<float>(0) + 6.5f}};
  vorx::double3 z{{1, 2, 3}}, w{{2, 4, number<double>(0) + 6.5}};
  std::feclearexcept(FE_ALL_EXCEPT);
  vorx::float3 q = x / y;
  vorx::double3 r = z / w;
  if (std::fetestexcept(FE_INVALID | FE_DIVBYZERO)) headers_fault("flags of a division", "float3, double3", 3);
  if (q[1] != 0.5f || r[1] != 0.5) headers_fault("quotient", "float3, double3", 1);
}

template <class Vector>
Vector soften(Vector x) {
  return exp(-x * x);
}

void functions() {
  using T = float;
  constexpr int N = 8;
  vorx::float8 a{{-1, 2, 0.5f, -0.25f, 3, -4, 1, 0}}, b = 2 - a;
  FOR_LANES(soften(a), vorx::exp(-x * x), "exp(-x * x)");
  FOR_LANES(fmax(a, 1.0f), std::fmax(x, 1.0f), "fmax(a, scalar)");
  FOR_LANES(fmin(1, b), std::fmin(1.0f, y), "fmin(scalar, b)");
  FOR_LANES(fma(a, 2, b), std::fma(x, 2.0f, y), "fma(a, scalar, b)");
  FOR_LANES(fma(0.1f, a, 3), std::fma(0.1f, x, 3.0f), "fma(scalar, a, scalar)");
  FOR_LANES(ldexp(a, 3), std::ldexp(x, 3), "ldexp(a, scalar)");
  if (vorx::fabs(-1) != 1 || vorx::fmax(1, 2.5f) != 2.5 || vorx::fma(2, 3L, 0.5f) != 6.5 || vorx::ldexp(3, 2) != 12 ||
      vorx::exp(0) != 1)
    headers_fault("functions of integers", "double", 0);
  static_assert(std::is_same_v<decltype(vorx::exp(1)), double> && std::is_same_v<decltype(vorx::fmax(1, 2.5f)), double>);
  static_assert(std::is_same_v<decltype(vorx::exp(1.5f)), float>);
}

}  // namespace

extern "C" void CALLERS() {
  operators_of<float>();
  operators_of<double>();
  operators_of<int32_t>();
  operators_of<uint32_t>();
  operators_of<int64_t>();
  operators_of<uint64_t>();
  division_beyond_the_last_lane();
  functions();
}

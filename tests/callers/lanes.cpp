// Lanes from and to memory, conversions, and what becomes a view of an array, in C++. Compiled with -DCALLERS=name.
#include <vorx/array.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>
#if __cplusplus >= 202002L
#include <span>
#endif

#include "tests/callers/headers.h"

namespace {

using vorx::convert, vorx::rounding, vorx::saturation;

void check(bool holds, const char* what, const char* type, int lane) {
  if (!holds) headers_fault(what, type, lane);
}

template <class T, int N>
void memory_of(vorx::vec<T, N>) {
  using vector = vorx::vec<T, N>;
  const char* type = __PRETTY_FUNCTION__;
  constexpr std::size_t room = N + 2;
  T from[room];
  for (int i = 0; i < N + 2; i++) from[i] = static_cast<T>(i + 7);
  for (int n = 0; n < N + 3; n++) {  // N + 2: all lanes by the functions without n
    const bool whole = n == N + 2;
    const int all = std::min(n, N);
    const auto size = static_cast<std::size_t>(n);
    const auto x = whole ? vorx::load<vector>(from + 1) : vorx::load<vector>(from + 1, size, 3);
    for (int i = 0; i < N; i++) check(x[i] == (i < all ? from[i + 1] : T(3)), "load", type, i);
    T to[room] = {};
    if (whole)
      store(to + 1, x);
    else
      store(to + 1, x, size);
    for (int i = 0; i < N + 2; i++) check(to[i] == (i == 0 || i > all ? T(0) : from[i]), "store", type, i - 1);
  }
  const auto zeros = vorx::load<vector>(from, 0);
  for (int i = 0; i < N; i++) check(zeros[i] == 0, "load of no lane", type, i);
}

template <class T>
void memory() {
  memory_of(vorx::vec<T, 2>{});
  memory_of(vorx::vec<T, 3>{});
  memory_of(vorx::vec<T, 4>{});
  memory_of(vorx::vec<T, 8>{});
  memory_of(vorx::vec<T, 16>{});
}

// Values of which each rounding makes another integer, or that are beyond the range; To is an integer type.
template <class To, class From, int N>
void to_integers() {
  const char* type = __PRETTY_FUNCTION__;
  using integers = vorx::vec<To, N>;
  const bool is_signed = std::numeric_limits<To>::is_signed;
  const From values[] = {2.5f, 3.5f, 3.75f, 0, is_signed ? -2.5f : 1.5f, is_signed ? -3.75f : 1.25f};
  vorx::vec<From, N> x, beyond;
  for (int i = 0; i < N; i++) x[i] = values[i % 6], beyond[i] = i % 2 ? From(1e30f) : From(-1e30f);
  const auto got = convert<integers>(x), nearest = convert<integers>(x, rounding::to_nearest);
  const auto up = convert<integers>(x, rounding::up, saturation::on), down = convert<integers>(x, rounding::down);
  const auto saturated = convert<integers>(beyond, rounding::to_nearest, saturation::on);
  for (int i = 0; i < N; i++) {
    check(got[i] == static_cast<To>(std::trunc(x[i])), "convert", type, i);
    check(nearest[i] == static_cast<To>(std::nearbyint(x[i])), "convert, to nearest", type, i);
    check(up[i] == static_cast<To>(std::ceil(x[i])), "convert, up", type, i);
    check(down[i] == static_cast<To>(std::floor(x[i])), "convert, down", type, i);
    const To end = i % 2 ? std::numeric_limits<To>::max() : std::numeric_limits<To>::min();
    check(saturated[i] == end, "convert, saturated", type, i);
  }
  check(convert<To>(values[1]) == 3 && convert<To>(values[1], rounding::up) == 4, "convert of a scalar", type, 0);
}

// An integer between two floating values (for double, of 64 bits only).
template <class To, class From>
void from_integers() {
  const char* type = __PRETTY_FUNCTION__;
  constexpr int N = 4;
  constexpr int bits = std::numeric_limits<To>::digits;
  constexpr bool exact = std::numeric_limits<From>::digits <= bits;
  const From even = static_cast<From>(exact ? 8 : From(1) << bits);
  vorx::vec<From, N> n{{0, static_cast<From>(even + 1), static_cast<From>(even + 3), even}};
  const auto got = convert<vorx::vec<To, N>>(n), up = convert<vorx::vec<To, N>>(n, rounding::up);
  const auto down = convert<vorx::vec<To, N>>(n, rounding::down), zero = convert<vorx::vec<To, N>>(n, rounding::toward_zero);
  const To low = static_cast<To>(even), step = exact ? 1 : 2;
  check(got[1] == low + (exact ? 1 : 0) && got[2] == low + (exact ? 3 : 4), "convert", type, 1);
  check(up[1] == low + step && up[2] == low + (exact ? 3 : 4) && up[3] == low, "convert, up", type, 1);
  check(down[1] == low + (exact ? 1 : 0) && down[2] == low + (exact ? 3 : 2), "convert, down", type, 1);
  check(zero[1] == down[1] && zero[2] == down[2] && zero[0] == 0, "convert, toward zero", type, 1);
  check(convert<To>(n[1]) == got[1], "convert of a scalar", type, 0);
}

template <class Integer>
void conversions() {
  to_integers<Integer, float, 3>();
  to_integers<Integer, float, 16>();
  to_integers<Integer, double, 2>();
  to_integers<Integer, double, 8>();
  from_integers<float, Integer>();
  from_integers<double, Integer>();
}

// Arguments and results in different containers, the result in place of an argument, a part of an array.
void views() {
  const std::vector<float> x = {-1, 2, -3, 4, -5};
  std::array<float, 5> y;
  vorx::fabs(x, y);
  for (unsigned i = 0; i < 5; i++) check(y[i] == std::fabs(x[i]), "fabs", "vector to array", static_cast<int>(i));
  float z[5] = {1, 1, 3, 3, 3};
  vorx::fmax(y, z, z);
  for (unsigned i = 0; i < 5; i++) check(z[i] == std::fmax(y[i], i < 2 ? 1.0f : 3.0f), "fmax", "in place", static_cast<int>(i));
  vorx::fma({x.data() + 1, 3}, {z, 3}, {z, 3}, {z, 3});
  check(z[0] == 2 * 1 + 1 && z[1] == -3 * 2 + 2 && z[2] == 4 * 3 + 3 && z[3] == 4, "fma", "pointers and lengths", 0);
  std::vector<double> d = {1, 4, 0.5}, e(3);
  vorx::native::exp(d, e);
  check(std::fabs(e[1] - std::exp(4)) < 1e-9, "native::exp", "vectors of double", 1);
  std::vector<double> nothing;
  vorx::log(nothing, nothing);
#if __cplusplus >= 202002L
  const std::span<const double> part(d.data() + 1, 2);
  vorx::rint(part, std::span(e).first(2));
  check(e[0] == 4 && e[1] == 0, "rint", "spans", 0);
#endif
}

}  // namespace

extern "C" void CALLERS() {
  views();
  memory<float>();
  memory<double>();
  memory<int32_t>();
  memory<uint32_t>();
  memory<int64_t>();
  memory<uint64_t>();
  conversions<int32_t>();
  conversions<uint32_t>();
  conversions<int64_t>();
  conversions<uint64_t>();
}

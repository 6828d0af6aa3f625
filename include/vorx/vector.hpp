// The vector types in C++17: vorx::float8 is vorx::vec<float, 8>, which functions for any width or lane type deduce. Operators
// are in vorx/operators.hpp, lanes from and to memory in load and store below.
#pragma once

#if __cplusplus < 201703L
#error "vorx: the C++ headers need C++17 (-std=c++17); vorx/vorx.h serves C++11 and C"
#endif

#include <cstddef>
#include <cstring>
#include <type_traits>
#include <utility>

#include "vorx/types.h"

namespace vorx {

#define VORX_ALIASES(NAME)          \
  using NAME##2 = ::vorx_##NAME##2; \
  using NAME##3 = ::vorx_##NAME##3; \
  using NAME##4 = ::vorx_##NAME##4; \
  using NAME##8 = ::vorx_##NAME##8; \
  using NAME##16 = ::vorx_##NAME##16;
VORX_ALIASES(float)
VORX_ALIASES(double)
VORX_ALIASES(int)
VORX_ALIASES(uint)
VORX_ALIASES(long)
VORX_ALIASES(ulong)
#undef VORX_ALIASES

namespace detail {

template <class Lane, int Lanes>
struct vector_of {
  using type = vec<Lane, Lanes>;
};
template <class Lane>
struct vector_of<Lane, 1> {
  using type = Lane;
};

template <class Lane>
struct traits {
  static_assert(is_lane<Lane>::value, "neither a vector nor the type of a lane");
  using lane = Lane;
  static constexpr int lanes = 1;
};
template <class Lane, int Lanes>
struct traits<vec<Lane, Lanes>> {
  using lane = Lane;
  static constexpr int lanes = Lanes;
};

// A scalar operand: the vector beside it says what it is converted to.
template <class Lane>
struct scalar_beside {
  using type = Lane;
};
template <class Lane>
using scalar = typename scalar_beside<Lane>::type;

template <class Vector, std::size_t... J>
VORX_FUNCTION Vector fill_registers(__m128 all, std::index_sequence<J...>) {
  Vector x;
  ((x.xmm[J] = all), ...);
  return x;
}

// Full registers are moved one by one, which keeps vectors out of memory in gcc, too.
template <class Vector, class Lane, std::size_t... J>
VORX_FUNCTION Vector load_registers(const Lane* from, std::index_sequence<J...>) {
  Vector x;
  (std::memcpy(&x.xmm[J], from + J * (16 / sizeof(Lane)), 16), ...);
  return x;
}
template <class Vector, class Lane, std::size_t... J>
VORX_FUNCTION void store_registers(Lane* to, Vector x, std::index_sequence<J...>) {
  (std::memcpy(to + J * (16 / sizeof(Lane)), &x.xmm[J], 16), ...);
}

}  // namespace detail

// The vector of so many lanes; the lane type itself for one.
template <class Lane, int Lanes>
using vector_of = typename detail::vector_of<Lane, Lanes>::type;

// What a vector is made of; the type of a lane is a vector of one.
template <class Vector>
using lane_of = typename detail::traits<Vector>::lane;
template <class Vector>
inline constexpr int lanes_of = detail::traits<Vector>::lanes;

// One value in every lane.
template <class Vector>
VORX_FUNCTION Vector splat(lane_of<Vector> value) {
  using lane = lane_of<Vector>;
  if constexpr (lanes_of<Vector> == 1) {
    return value;
  } else {
    __m128 all;
    if constexpr (std::is_same_v<lane, float>)
      all = _mm_set1_ps(value);
    else if constexpr (std::is_same_v<lane, double>)
      all = _mm_castpd_ps(_mm_set1_pd(value));
    else if constexpr (sizeof(lane) == 4)
      all = _mm_castsi128_ps(_mm_set1_epi32(static_cast<int32_t>(value)));
    else
      all = _mm_castsi128_ps(_mm_set1_epi64x(static_cast<int64_t>(value)));
    return detail::fill_registers<Vector>(all, std::make_index_sequence<sizeof(Vector) / 16>{});
  }
}

// Lanes from memory of any alignment, and back; three lanes are three in memory.
template <class Vector>
VORX_FUNCTION Vector load(const lane_of<Vector>* from) {
  if constexpr (sizeof(Vector) == sizeof(lane_of<Vector>) * lanes_of<Vector>) {
    return detail::load_registers<Vector>(from, std::make_index_sequence<sizeof(Vector) / 16>{});
  } else {
    Vector x{};
    std::memcpy(&x, from, sizeof(lane_of<Vector>) * lanes_of<Vector>);
    return x;
  }
}
template <class T, int N>
VORX_FUNCTION void store(detail::scalar<T>* to, vec<T, N> x) {
  if constexpr (sizeof x == sizeof(T) * N) {
    detail::store_registers(to, x, std::make_index_sequence<sizeof x / 16>{});
  } else {
    std::memcpy(to, &x, sizeof(T) * N);
  }
}

// The first n lanes from memory, a value in the others; the first n lanes to memory, not a byte more. Where n is greater than the
// number of lanes, all of them, so that a loop needs no end of its own:
//
//   for (size_t i = 0; i < n; i += 8) store(y + i, exp(load<float8>(x + i, n - i, 1.0f)), n - i);
//
// The value should be an ordinary argument of the function: log of 0 raises a flag and takes the rare path.
template <class Vector>
VORX_FUNCTION Vector load(const lane_of<Vector>* from, std::size_t n, lane_of<Vector> others = 0) {
  constexpr std::size_t lanes = lanes_of<Vector>;
  Vector x = splat<Vector>(others);
  std::memcpy(&x, from, sizeof(lane_of<Vector>) * (n < lanes ? n : lanes));
  return x;
}
template <class T, int N>
VORX_FUNCTION void store(detail::scalar<T>* to, vec<T, N> x, std::size_t n) {
  constexpr std::size_t lanes = N;
  std::memcpy(to, &x, sizeof(T) * (n < lanes ? n : lanes));
}

}  // namespace vorx

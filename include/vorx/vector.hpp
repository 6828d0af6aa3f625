// The vector types in C++17: vorx::float8, vorx::vec<float, 8> for generic code, and lanes from and to memory.
#pragma once

#if __cplusplus < 201703L
#error "vorx: the C++ headers need C++17 (-std=c++17); vorx/vorx.h serves C++11 and C"
#endif

#include <cstring>
#include <type_traits>

#include "vorx/types.h"

namespace vorx {

namespace detail {

template <class Lane, int Lanes>
struct vector_of;
template <class Lane>
struct vector_of<Lane, 1> {
  using type = Lane;
};

template <class Vector>
struct traits {
  using lane = Vector;
  static constexpr int lanes = 1;
};
template <class Lane, int Lanes>
struct traits_of_vector {
  using lane = Lane;
  static constexpr int lanes = Lanes;
};

}  // namespace detail

#define VORX_ALIAS(NAME, LANE, LANES)                            \
  using NAME##LANES = ::vorx_##NAME##LANES;                      \
  namespace detail {                                             \
  template <>                                                    \
  struct vector_of<LANE, LANES> {                                \
    using type = NAME##LANES;                                    \
  };                                                             \
  template <>                                                    \
  struct traits<NAME##LANES> : traits_of_vector<LANE, LANES> {}; \
  }
#define VORX_ALIASES(NAME, LANE) \
  VORX_ALIAS(NAME, LANE, 2)      \
  VORX_ALIAS(NAME, LANE, 3)      \
  VORX_ALIAS(NAME, LANE, 4)      \
  VORX_ALIAS(NAME, LANE, 8)      \
  VORX_ALIAS(NAME, LANE, 16)
VORX_ALIASES(float, float)
VORX_ALIASES(double, double)
VORX_ALIASES(int, int32_t)
VORX_ALIASES(uint, uint32_t)
VORX_ALIASES(long, int64_t)
VORX_ALIASES(ulong, uint64_t)
#undef VORX_ALIASES
#undef VORX_ALIAS

// The vector of so many lanes; the lane type itself for one.
template <class Lane, int Lanes>
using vec = typename detail::vector_of<Lane, Lanes>::type;

template <class Vector>
using lane_of = typename detail::traits<Vector>::lane;
template <class Vector>
inline constexpr int lanes_of = detail::traits<Vector>::lanes;

// Lanes from memory of any alignment, and back; three lanes are three in memory.
template <class Vector>
VORX_FUNCTION Vector load(const lane_of<Vector>* from) {
  Vector x{};
  std::memcpy(&x, from, sizeof(lane_of<Vector>) * lanes_of<Vector>);
  return x;
}
template <class Vector>
VORX_FUNCTION void store(lane_of<Vector>* to, const Vector& x) {
  std::memcpy(to, &x, sizeof(lane_of<Vector>) * lanes_of<Vector>);
}

// One value in every lane.
template <class Vector>
VORX_FUNCTION Vector splat(lane_of<Vector> value) {
  if constexpr (lanes_of<Vector> == 1) {
    return value;
  } else {
    Vector x{};
    for (int i = 0; i < lanes_of<Vector>; i++) x.lane[i] = value;
    return x;
  }
}

}  // namespace vorx

// Calls of kernels without their entry points: the path and the lane test on one lane, and scalar routines with the status that
// they return and the exception flags that they raise.
#pragma once

#include <cstring>
#include <ostream>

#include "frame/kernel.h"

namespace vorx {

template <class K>
using scalar_of = typename K::type::scalar;

// One lane through a vector path, beside neighbours of 1.
template <class K>
scalar_of<K> on_path(scalar_of<K> x, auto path) {
  typename K::type::vector v = all(scalar_of<K>(1));
  std::memcpy(&v, &x, sizeof x);
  v = path(v);
  std::memcpy(&x, &v, sizeof x);
  return x;
}
template <class K>
scalar_of<K> path_of(scalar_of<K> x) {
  return on_path<K>(x, [](auto v) { return K::path(v, constant_pool<typename K::constants>); });
}

// Whether x leaves the path, for the scalar routine or with its whole vector.
template <class K>
bool flagged(scalar_of<K> x) {
  i32x4 lanes = {_mm_setzero_si128()};
  if constexpr (has_large_path<K>)
    lanes = K::large(all(x), constant_pool<typename K::constants>);
  else if constexpr (has_lane_test<K>)
    lanes = K::special(all(x), constant_pool<typename K::constants>);
  return sign_mask(as_float(lanes)) & 8;  // the highest lane of either type
}

enum flag : uint32_t {
  invalid_flag = 1,
  denormal_flag = 2,
  pole_flag = 4,
  overflow_flag = 8,
  underflow_flag = 16,
  inexact_flag = 32
};

// The status that a routine returned (frame/kernel.h) and the flags that it raised; whether an operand was subnormal is left out.
struct outcome {
  int status;
  uint32_t flags;
  bool operator==(const outcome&) const = default;
};
inline std::ostream& operator<<(std::ostream& s, const outcome& o) { return s << "status " << o.status << " flags " << o.flags; }

template <class Routine>
outcome observe(Routine routine) {
  int (*volatile call)(Routine&) = [](Routine& r) -> int { return r(); };  // stays between the accesses to the flags
  const uint32_t before = _mm_getcsr();
  _mm_setcsr(before & ~0x3fu);
  const int status = call(routine);
  const uint32_t after = _mm_getcsr();
  _mm_setcsr(before);
  return {status, after & 0x3f & ~denormal_flag};
}

}  // namespace vorx

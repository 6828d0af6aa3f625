// What the tests of the hyperbolic functions and of their inverses share.
#pragma once

#include <cmath>
#include <limits>
#include <type_traits>

#include "frame/rare.h"
#include "tests/kernel_calls.h"

namespace vorx {

template <class T>
inline constexpr T inf = std::numeric_limits<T>::infinity();
template <class T>
inline constexpr T quiet_nan = std::numeric_limits<T>::quiet_NaN();

// The distance from the exact value, in units of the last place of T there. The x87's functions have 11 bits more than a double.
template <class T>
long double error_in_ulp(T y, long double exact) {
  int exponent;
  std::frexp(exact, &exponent);
  return std::abs(y - exact) / std::ldexp(1.0L, exponent - std::numeric_limits<T>::digits);
}

// Path or scalar routine, as an entry point would choose.
template <class K>
scalar_of<K> result_of(scalar_of<K> x) {
  scalar_of<K> y = path_of<K>(x);
  if constexpr (has_lane_test<K>)
    if (flagged<K>(x)) K::rare(&x, &y);
  return y;
}

template <class... K>
void for_each_kernel(auto f) {
  (f(std::type_identity<K>{}), ...);
}

}  // namespace vorx

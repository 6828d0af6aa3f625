// powr(x, y) = e^(y ln x) for x >= 0: the vector paths of pow; what is special follows the definition.
#pragma once

#include "explog/pow.h"

namespace vorx {

// NaN for a NaN, x < 0, (+-0, +-0), (+inf, +-0) and (1, +-inf). Zeros of either sign count as +0: +inf for y < 0, +0 for y > 0.
template <class T>
[[gnu::noinline]] int special_powr(T x, T y, T* result) {
  if (x != x || y != y) return *result = opaque(x) + y, ordinary;
  bool x_is_infinite = is_not_finite(bits_of(x)), y_is_infinite = is_not_finite(bits_of(y));
  if (x < 0 || (x == 0 && y == 0) || (x_is_infinite && y == 0) || (x == 1 && y_is_infinite))
    return *result = invalid<T>(), domain_error;
  if (x == 0 && y < 0) return *result = 1 / (opaque(x) * x), singularity;
  // What is left is infinity and 0.
  if ((x > 1) == (y > 0)) return *result = std::numeric_limits<T>::infinity(), ordinary;
  return *result = 0, ordinary;
}

// Accurate: 10.1 ULP. Special results above.
struct powr_f32 : pow_f32 {
  static int rare(const float* x, const float* y, float* result) { return special_powr(*x, *y, result); }
};

// Accurate: 0.54 ULP. Special results above.
struct powr_f64 : pow_f64 {
  static int rare(const double* x, const double* y, double* result) {
    if (is_positive_finite(*x) && !is_not_finite(bits_of(*y))) return power_of_positive(*x, *y, result), ordinary;
    return special_powr(*x, *y, result);
  }
};

using powr_f32_native = pow_f32_native;
using powr_f64_native = pow_f64_native;

}  // namespace vorx

// log |gamma(x)| and the sign of gamma(x).
#pragma once

#include "special/lgamma.h"

namespace vorx {

// Special results: as lgamma; the sign is +1 or -1, 0 at the poles, which are 0 and the negative integers, and for -inf and NaN.
template <class Logarithm>
struct lgammar_kernel : Logarithm {
  using constants = typename Logarithm::constants;
  using V = typename Logarithm::type::vector;
  using T = typename Logarithm::type::scalar;

  // +1 wherever there is no rare-case routine.
  VORX_INLINE static i32x4 positive() { return as_int(ones<f32x4, 31, 0>()); }

  static two<V, i32x4> path(V x, const constants& k) { return {Logarithm::path(x, k), positive()}; }
  static two<V, i32x4> lower_half(V x, const constants& k) requires has_lower_half<Logarithm> {
    return {Logarithm::lower_half(x, k), positive()};
  }
  static two<V, i32x4> large_path(V x) { return {Logarithm::large_path(x), positive()}; }

  static int rare(const T* x, T* result, int32_t* sign) {
    *sign = sign_of_gamma(static_cast<double>(*x));
    return Logarithm::rare(x, result);
  }
};
using lgammar_f32 = lgammar_kernel<lgamma_f32>;
using lgammar_f64 = lgammar_kernel<lgamma_f64>;

}  // namespace vorx

// nan(code): the quiet NaN with the code or-ed in. The code is deliberately not masked: its bits above the fraction reach the
// exponent, which is all ones already, and the sign.
#pragma once

#include "frame/kernel.h"

namespace vorx {

template <class E>
struct nan_kernel : kernel<E> {
  using V = typename E::vector;
  static V path(typename E::integer_vector code, const no_constants&) {
    constexpr int quiet_bit = E::lanes == 4 ? 22 : 51;
    V quiet = ones<V, 1, quiet_bit>();  // 0x7fc00000, 0x7ff8000000000000
    return as_float(code) | quiet;
  }
};
using nan_f32 = nan_kernel<f32>;
using nan_f64 = nan_kernel<f64>;

}  // namespace vorx

// ceil, floor, trunc, rint, nearbyint: one instruction each. They differ in its immediate only: rint and nearbyint follow the
// caller's rounding mode, nearbyint without raising the inexact flag. NaN comes back quiet, infinities and zeros as they are.
#pragma once

#include "frame/kernel.h"

namespace vorx {

template <class E, rounding mode>
struct rounding_kernel : kernel<E> {
  using V = typename E::vector;
  static V path(V x, const no_constants&) { return round_to_integral<mode>(x); }
};

using ceil_f32 = rounding_kernel<f32, upward>;
using ceil_f64 = rounding_kernel<f64, upward>;
using floor_f32 = rounding_kernel<f32, downward>;
using floor_f64 = rounding_kernel<f64, downward>;
using trunc_f32 = rounding_kernel<f32, toward_zero>;
using trunc_f64 = rounding_kernel<f64, toward_zero>;
using rint_f32 = rounding_kernel<f32, current>;
using rint_f64 = rounding_kernel<f64, current>;
using nearbyint_f32 = rounding_kernel<f32, current_quiet>;
using nearbyint_f64 = rounding_kernel<f64, current_quiet>;

}  // namespace vorx

// ilogb(x): the unbiased exponent of x, floor(log2 |x|), as an integer; logb(x): the same as a floating-point number.
#pragma once

#include "exact/fields.h"

namespace vorx {

template <class E>
struct logb_constants : normal_constants<E> {
  rep32 bias = bits32(format<E>::bias);
};

// floor(log2 |x|) of a subnormal x.
template <class T, class F>
VORX_INLINE int exponent_of_subnormal(const T* x) {
  return biased_exponent_of(bits_of(*x * power_of_two<T>(F::normalise))) - F::bias - F::normalise;
}

// Special results: -2^31 for zeros, 2^31 - 1 for infinities and NaN.
template <class E>
struct ilogb_kernel : kernel<E, logb_constants<E>> {
  using typename kernel<E, logb_constants<E>>::constants;
  using V = typename E::vector;
  using T = typename E::scalar;
  using I = typename E::integer;

  static i32x4 path(V x, const constants& k) { return pack_lanes<E>(biased_exponent(x, k) - k.bias); }
  static i32x4 special(V x, const constants& k) { return not_normal(x, k); }

  static int rare(const T* x, int32_t* n) {
    I bits = only_bits(bits_of(*x));
    if (is_zero(bits)) return *n = INT32_MIN, domain_error;
    if (is_not_finite(bits)) return *n = INT32_MAX, domain_error;
    *n = exponent_of_subnormal<T, format<E>>(x);
    return ordinary;
  }
};
using ilogb_f32 = ilogb_kernel<f32>;
using ilogb_f64 = ilogb_kernel<f64>;

// Special results: -infinity for zeros, +infinity for both infinities, a NaN as it is but for its sign bit, which is cleared. At
// a zero the status is deliberately a domain error, as for ilogb, although the pole raises division by zero.
template <class E>
struct logb_kernel : kernel<E, logb_constants<E>> {
  using typename kernel<E, logb_constants<E>>::constants;
  using V = typename E::vector;
  using T = typename E::scalar;
  using I = typename E::integer;

  static V path(V x, const constants& k) {
    i32x4 n = pack_lanes<E>(biased_exponent(x, k) - k.bias);
    if constexpr (E::lanes == 4)
      return to_float(n);
    else
      return to_double(n);
  }
  static i32x4 special(V x, const constants& k) { return not_normal(x, k); }

  static int rare(const T* x, T* result) {
    I bits = only_bits(bits_of(*x));
    if (is_zero(bits)) return *result = pole<T>(), domain_error;
    if (is_not_finite(bits)) return *result = from_bits(bits & ~sign_bit<I>), ordinary;
    *result = static_cast<T>(exponent_of_subnormal<T, format<E>>(x));
    return ordinary;
  }
};
using logb_f32 = logb_kernel<f32>;
using logb_f64 = logb_kernel<f64>;

}  // namespace vorx

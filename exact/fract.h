// fract(x) = x - floor(x), below 1; second result floor(x).
//
// Where a small negative x gives a difference that rounds to 1, the result is the largest number below 1.
#pragma once

#include "exact/fields.h"

namespace vorx {

template <class E>
struct fract_constants {
  typename E::constant below_one = pattern<E>(0x3f7fffff, 0x3fefffffffffffff);
  typename E::constant magnitude = pattern<E>(0x7fffffff, 0x7fffffffffffffff);
  rep32 largest = bits32(E::lanes == 4 ? 0x7f7fffff : 0x7fefffff);  // of a finite number's sign and exponent word
};

// Special results: zeros give themselves twice, infinities a zero of their sign and themselves, NaN itself twice, quiet.
template <class E>
struct fract_kernel : kernel<E, fract_constants<E>> {
  using typename kernel<E, fract_constants<E>>::constants;
  using V = typename E::vector;
  using IV = typename E::integer_vector;
  using T = typename E::scalar;
  static constexpr T seams[] = {-1, 0, 1};

  static two<V, V> path(V x, const constants& k) {
    V floor = round_to_integral<downward>(x);
    return {min(x - floor, k.below_one), floor};
  }
  static i32x4 special(V x, const constants& k) {
    IV a = as_int(x & k.magnitude);
    return field_words(a == IV{}) | (field_words(a) > k.largest);
  }
  static int rare(const T* x, T* fraction, T* floor) { return split_special(x, fraction, floor); }
};
using fract_f32 = fract_kernel<f32>;
using fract_f64 = fract_kernel<f64>;

}  // namespace vorx

// Models of other processors' estimates of 1 / x or 1 / sqrt(x), which are at most 1.5 x 2^-12 off: kernels take one in the place
// of the instruction. f is the function on doubles.
#pragma once

#include "frame/rare.h"

namespace vorx {

template <class Estimate>
f32x4 each_lane(f32x4 a, Estimate estimate) {
  float x[4];
  _mm_storeu_ps(x, a.v);
  for (float& v : x) v = static_cast<float>(estimate(static_cast<double>(v)));
  return {_mm_loadu_ps(x)};
}
inline double to_twelve_bits(double x) { return from_bits((bits_of(x) + (uint64_t(1) << 40)) & ~((uint64_t(1) << 41) - 1)); }

template <auto f>
struct exact_estimate {
  static f32x4 estimate(f32x4 a) { return each_lane(a, f); }
};
template <auto f>
struct twelve_bits {
  static f32x4 estimate(f32x4 a) {
    return each_lane(a, [](double x) { return to_twelve_bits(f(x)); });
  }
};
// The values in the middles of 2^11 intervals, to 12 bits: for reciprocals, this is where the architecture's bound comes from.
template <auto f>
struct table_of_2048 {
  static f32x4 estimate(f32x4 a) {
    return each_lane(
        a, [](double x) { return to_twelve_bits(f(from_bits((bits_of(x) & ~((uint64_t(1) << 41) - 1)) | uint64_t(1) << 40))); });
  }
};
// Off by the whole bound in the same direction everywhere, as no table is.
template <auto f, int sign>
struct off_everywhere {
  static f32x4 estimate(f32x4 a) {
    return each_lane(a, [](double x) { return (1 + sign * 1.5 / 4096) * f(x); });
  }
};

}  // namespace vorx

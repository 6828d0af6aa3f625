// What the roots share: the estimate of the reciprocal square root that they start from, and the lane test for arguments that are
// not positive.
#pragma once

#include "frame/kernel.h"

namespace vorx {

// The processor's estimate, at most 1.5 x 2^-12 off, like that of reciprocals. Results depend on it in the last bit; tests put
// models of other processors in its place.
struct hardware_reciprocal_sqrt {
  VORX_INLINE static f32x4 estimate(f32x4 a) { return estimate_reciprocal_sqrt(a); }
};
constexpr double estimate_ulp = 1.5 * 4096;  // for the estimates themselves: significands close to 2

// Flags whatever is not positive, normal and finite. The difference wraps around to the lowest integers exactly for what is; the
// comparison is strict, so that the largest number stays on the path.
struct positive_f32_constants {
  rep32 smallest = bits32(0x80800000);
  rep32 range = bits32(0xfeffffff);
};
struct positive_f64_constants {  // of high words
  rep32 smallest = bits32(0x80100000);
  rep32 range = bits32(0xffdfffff);
};
VORX_INLINE i32x4 not_positive(f32x4 x, const positive_f32_constants& k) { return (as_int(x) - k.smallest) > k.range; }
VORX_INLINE i32x4 not_positive(f64x2 x, const positive_f64_constants& k) { return (words(x) - k.smallest) > k.range; }

}  // namespace vorx

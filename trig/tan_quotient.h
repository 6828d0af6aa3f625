// tan r on |r| <= pi/4 as the quotient of an odd and an even polynomial: what tan and native tanpi share.
#pragma once

#include "frame/constants.h"

namespace vorx {

struct tan_f32_quotient {
  // tan r = r N(r^2) / D(r^2) on |r| <= pi/4: relative error 2^-25.0 (tables/fits/polynomials.sollya)
  rep32 n1 = c(0xbdc433b8, -0.0958017707f);
  rep32 n0 = c(0x3f800000, 1.0f);
  rep32 d2 = c(0x3c1f3375, 0.00971685816f);
  rep32 d1 = c(0xbedbb7af, -0.42913577f);
  rep32 d0 = c(0x3f800000, 1.0f);

  VORX_INLINE f32x4 numerator(f32x4 r, f32x4 z) const { return r * horner(z, n1, n0); }  // z = r^2
  VORX_INLINE f32x4 denominator(f32x4 z) const { return horner(z, d2, d1, d0); }
};
struct tan_f64_quotient {
  // tan r = r N(r^2) / D(r^2) on |r| <= pi/4: relative error 2^-54.0 (tables/fits/polynomials.sollya)
  rep64 n3 = c(0xbedf637dea7c0b2c, -7.483634966612065e-06);
  rep64 n2 = c(0x3f66fc6fe2982a7b, 0.0028059182411699891);
  rep64 n1 = c(0xbfc06b97bf03648a, -0.12828347040957438);
  rep64 n0 = c(0x3ff0000000000000, 1.0);
  rep64 d3 = c(0xbf2b525b10d0a168, -0.00020844804422038708);
  rep64 d2 = c(0x3f97e7b68d9a55f3, 0.023344852822068728);
  rep64 d1 = c(0xbfdd8b2134d70767, -0.46161680374290487);
  rep64 d0 = c(0x3ff0000000000000, 1.0);

  VORX_INLINE f64x2 numerator(f64x2 r, f64x2 z) const { return r * horner(z, n3, n2, n1, n0); }
  VORX_INLINE f64x2 denominator(f64x2 z) const { return horner(z, d3, d2, d1, d0); }
};

}  // namespace vorx

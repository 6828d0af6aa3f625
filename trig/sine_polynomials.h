// sin r on |r| <= pi/2 by an odd polynomial, and the sign that n half revolutions give it: what the functions of angles in
// radians (sine.h) and in half revolutions (half_revolutions.h) share.
#pragma once

#include "frame/kernel.h"

namespace vorx {

struct sine_f32_polynomial {
  // sin r on |r| <= pi/2: relative error 2^-26.6 (tables/fits/polynomials.sollya)
  rep32 s4 = c(0x362edef8, 2.60578054e-06f);
  rep32 s3 = c(0xb94fb7ff, -0.000198096022f);
  rep32 s2 = c(0x3c08876a, 0.00833306648f);
  rep32 s1 = c(0xbe2aaaa6, -0.166666597f);

  // sin r; z = r^2.
  VORX_INLINE f32x4 sine(f32x4 r, f32x4 z) const { return r + r * z * horner(z, s4, s3, s2, s1); }
};
struct sine_f32_native_polynomial {
  // sin r on |r| <= pi/2: relative error 2^-12.8 (tables/fits/polynomials.sollya)
  rep32 s2 = c(0x3bfae3c1, 0.00765654491f);
  rep32 s1 = c(0xbe2a1dc5, -0.166129187f);

  VORX_INLINE f32x4 sine(f32x4 r, f32x4 z) const { return r + r * z * horner(z, s2, s1); }
};
struct sine_f64_polynomial {
  // sin r on |r| <= pi/2: relative error 2^-52.2 (tables/fits/polynomials.sollya)
  rep64 s7 = c(0xbd69f1517e9f65f0, -7.3733445331106646e-13);
  rep64 s6 = c(0x3de60e6bee01d83e, 1.6048095404959637e-10);
  rep64 s5 = c(0xbe5ae6355aaa4a53, -2.5051880273862881e-08);
  rep64 s4 = c(0x3ec71de3806add1a, 2.7557316600552628e-06);
  rep64 s3 = c(0xbf2a01a019a659dd, -0.00019841269825056256);
  rep64 s2 = c(0x3f8111111110a573, 0.0083333333332855416);
  rep64 s1 = c(0xbfc55555555554a8, -0.16666666666666186);

  VORX_INLINE f64x2 sine(f64x2 r, f64x2 z) const { return r + r * z * horner(z, s7, s6, s5, s4, s3, s2, s1); }
};
struct sine_f64_native_polynomial {
  // sin r on |r| <= pi/2: relative error 2^-27.2 (tables/fits/polynomials.sollya)
  rep64 s4 = c(0x3ec5dbdf0e4c7dee, 2.605780638722852e-06);
  rep64 s3 = c(0xbf29f6ffeea73463, -0.00019809602902257352);
  rep64 s2 = c(0x3f8110ed3804ca96, 0.0083330662460856901);
  rep64 s1 = c(0xbfc55554bc836587, -0.16666659550427829);

  VORX_INLINE f64x2 sine(f64x2 r, f64x2 z) const { return r + r * z * horner(z, s4, s3, s2, s1); }
};

// (-1)^n as a sign bit: n is in the low bits of t.
VORX_INLINE f32x4 parity_sign(f32x4 t) { return as_float(as_int(t) << 31); }
VORX_INLINE f64x2 parity_sign(f64x2 t) { return as_float(as_int(t) << 63); }
}  // namespace vorx
